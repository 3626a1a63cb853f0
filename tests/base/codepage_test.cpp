#include "base/codepage.h"

#include <gtest/gtest.h>

namespace kigumi {
namespace {

TEST(CodePage, GoesThereAndBack) {
    const std::pair<const char*, const char*> texts[] = {
        {"軸ファイル", "\x8e\xb2\x83\x74\x83\x40\x83\x43\x83\x8b"},
        {"表示", "\x95\x5c\x8e\xa6"}, // a second byte that is a backslash
        {"－～", "\x81\x7c\x81\x60"},
        {"Ⅰ", "\x87\x54"},
        {"髙﨑", "\xfb\xfc\xfa\xb1"}, // extensions
    };
    for (const auto& [utf8, bytes] : texts) {
        EXPECT_EQ(to_cp932(utf8), bytes);
        EXPECT_EQ(from_cp932(bytes).value_or("(invalid)"), utf8);
    }
}

TEST(CodePage, WhatHasNoCodeBecomesAQuestionMark) {
    EXPECT_EQ(to_cp932("柱🪵A"), "\x92\x8c?A");
    EXPECT_EQ(to_cp932("한글"), "??");
    EXPECT_EQ(to_cp932("\xff柱"), "?\x92\x8c");
    EXPECT_EQ(to_cp932("柱\xe6\x9f"), "\x92\x8c?"); // cut off in a character
}

TEST(CodePage, BytesOutsideTheCodePageAreNoText) {
    EXPECT_FALSE(from_cp932("A\xfd\xfe"));
    EXPECT_FALSE(from_cp932("\x92")); // the second byte is missing
    EXPECT_FALSE(from_cp932("\x92\x20"));
    EXPECT_EQ(from_cp932("\x92\x8c").value_or(""), "柱"); // the next one is whole
}

// Longer than any buffer of the converter, with characters across its seams.
TEST(CodePage, LongTexts) {
    std::string utf8 = "A";
    std::string bytes = "A";
    for (int i = 0; i < 5000; ++i) {
        utf8 += "柱";
        bytes += "\x92\x8c";
    }
    EXPECT_EQ(to_cp932(utf8), bytes);
    EXPECT_EQ(from_cp932(bytes).value_or(""), utf8);
}

} // namespace
} // namespace kigumi
