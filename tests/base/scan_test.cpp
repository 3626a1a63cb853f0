#include "base/scan.h"

#include <gtest/gtest.h>

#include <vector>

namespace kigumi {
namespace {

struct Word {
    const char* text;
    bool is_int, is_float;
    double value;
};

const Word words[] = {
    {"12", true, true, 12.0},
    {"+1", true, true, 1.0},
    {".5", false, true, 0.5},
    {"1.5E+02", false, true, 150.0},
    {"1e-60", false, true, 0.0}, // below every float, so zero
    {"2147483648", false, true, 2147483648.0},
    {"", false, false, 0.0},
    {"+-1", false, false, 0.0},
    {"0x10", false, false, 0.0},
    {"1,5", false, false, 0.0},
    {"1e999", false, false, 0.0},
    {"nan", false, false, 0.0},
    {"1.5D+02", false, false, 0.0},
    {"********", false, false, 0.0},
};

TEST(Number, IsReadWholeOrNotAtAll) {
    for (const Word& word : words) {
        int whole = 99;
        float single = 99.0f;
        EXPECT_EQ(parse_number(word.text, whole), word.is_int) << word.text;
        EXPECT_EQ(parse_number(word.text, single), word.is_float) << word.text;
        EXPECT_EQ(whole, word.is_int ? static_cast<int>(word.value) : 99);
        EXPECT_FLOAT_EQ(single, word.is_float ? static_cast<float>(word.value) : 99.0f);
    }
}

TEST(Scanner, ReadsItemsAndKeepsItsPlaceAtAFault) {
    Scanner scan(" 3\t1.5\r\n\f name 4.0 9");
    int whole = 0;
    float single = 0.0f;
    std::string_view word;
    EXPECT_TRUE(scan.next(whole) && scan.next(single) && scan.next(word));
    EXPECT_EQ(whole, 3);
    EXPECT_FLOAT_EQ(single, 1.5f);
    EXPECT_EQ(word, "name");
    EXPECT_EQ(scan.line(), 2);
    EXPECT_FALSE(scan.next(whole)); // 4.0 is no integer, and stays
    EXPECT_EQ(whole, 3);
    double wide = 0.0;
    EXPECT_TRUE(scan.next(wide));
    EXPECT_FALSE(scan.at_end());
    EXPECT_TRUE(scan.next(whole));
    EXPECT_TRUE(scan.at_end());
    EXPECT_FALSE(scan.next(word));
    EXPECT_EQ(word, "name");
}

std::vector<std::string> lines_of(std::string_view text) {
    std::vector<std::string> lines;
    LineReader reader(text);
    for (std::string_view line; reader.next(line);) {
        lines.emplace_back(line);
        EXPECT_EQ(reader.number(), static_cast<int>(lines.size()));
    }
    return lines;
}

TEST(LineReader, LineEnds) {
    using Lines = std::vector<std::string>;
    EXPECT_EQ(lines_of(""), Lines{});
    EXPECT_EQ(lines_of("a\r\nb\r\n"), (Lines{"a", "b"}));
    EXPECT_EQ(lines_of("a\nb"), (Lines{"a", "b"}));
    EXPECT_EQ(lines_of("a\r\n\r\n\nb\n"), (Lines{"a", "", "", "b"}));
    EXPECT_EQ(lines_of("a\rcut\nb"), (Lines{"a", "b"})); // a line ends at its first CR
}

} // namespace
} // namespace kigumi
