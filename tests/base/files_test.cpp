#include "base/files.h"
#include "base/files_platform.h"
#include "support.h"

#include <fstream>

namespace kigumi {
namespace {

class Files : public test::CoreTest {
  protected:
    // Names of everything in the working directory, hidden files too.
    std::vector<std::string> names() {
        std::vector<std::string> found;
        for (const auto& entry : fs::directory_iterator(work_dir)) {
            found.push_back(utf8_of(entry.path().filename()));
        }
        return found;
    }
};

TEST_F(Files, SavedBytesReplaceTheOldFileWhole) {
    const fs::path path = work_file(work_dir, "軸.jik");
    const std::string bytes("a\0b\r\n\x92\x8c", 7);
    ASSERT_EQ(save_file(path, "a longer text than the next"), 0);
    ASSERT_EQ(save_file(path, bytes, nullptr, Sync::no), 0);
    EXPECT_EQ(read_file(path), bytes);
    ASSERT_EQ(save_file(path, {}), 0);
    EXPECT_EQ(read_file(path), "");
    EXPECT_EQ(names(), std::vector<std::string>{"軸.jik"});
}

TEST_F(Files, WriteProtectedFileIsKept) {
    const fs::path path = work_file(work_dir, "kept.jik");
    ASSERT_EQ(save_file(path, "old"), 0);
    fs::permissions(path, fs::perms::owner_read | fs::perms::group_read);
    std::string reason;
    EXPECT_EQ(save_file(path, "new", &reason), -1);
    EXPECT_EQ(reason, utf8_of(path) + ": アクセスが許可されていません");
    EXPECT_EQ(read_file(path), "old");
    EXPECT_EQ(names(), std::vector<std::string>{"kept.jik"});
    fs::permissions(path, fs::perms::owner_all);
}

TEST_F(Files, LongestNameCanBeSaved) {
    std::string name;
    for (int i = 0; i < 83; ++i) {
        name += "柱";
    }
    const fs::path path = work_file(work_dir, name + ".jik"); // 253 of 255 bytes
    std::string reason;
    EXPECT_EQ(save_file(path, "text", &reason), 0) << reason;
    EXPECT_EQ(reason, "");
    EXPECT_EQ(read_file(path), "text");
}

TEST_F(Files, TemporariesOfAKilledProgramAreTakenAwayAndThoseOfALivingOneKept) {
    std::ofstream(work_file(work_dir, ".kigumi-0")) << "half";
    ASSERT_EQ(save_file(work_file(work_dir, "a"), "text"), 0);
    EXPECT_EQ(names(), std::vector<std::string>{"a"});
    fs::path living;
    std::FILE* const kept = create_beside(work_file(work_dir, "b"), living);
    ASSERT_NE(kept, nullptr);
    fs::create_directory(work_file(work_dir, ".kigumi-1"));
    ASSERT_EQ(save_file(work_file(work_dir, "a"), "other"), 0);
    EXPECT_EQ(read_file(work_file(work_dir, "a")), "other");
    EXPECT_EQ(names().size(), 3u);
    std::fputs("whole", kept);
    EXPECT_TRUE(close_and_rename(kept, living, work_file(work_dir, "b")));
    EXPECT_EQ(read_file(work_file(work_dir, "b")), "whole");
    EXPECT_EQ(names().size(), 3u);
}

#ifndef _WIN32
TEST_F(Files, PermissionsAndLinksStay) {
    const fs::path path = work_file(work_dir, "own.jik");
    const fs::path link = work_file(work_dir, "link.jik");
    ASSERT_EQ(save_file(path, "old"), 0);
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("own.jik", link);
    ASSERT_EQ(save_file(link, "new"), 0);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(read_file(path), "new");
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}
#endif

TEST_F(Files, FileThatIsTooLargeIsNotRead) {
    const fs::path path = work_file(work_dir, "large");
    { std::ofstream(path) << 'x'; }
    fs::resize_file(path, largest_file + 1); // sparse
    std::string reason;
    EXPECT_FALSE(read_file(path, &reason));
    EXPECT_EQ(reason, utf8_of(path) + ": ファイルが大きすぎます");
}

TEST(TextWriter, LinesAreCodePage932AndEndInCrLf) {
    TextWriter out;
    out.line("%s %5.1f", "柱", 12.0);
    out.line("%s", std::string(500, 'x').c_str()); // longer than the usual line
    out.text("end\n");
    EXPECT_EQ(out.bytes(), "\x92\x8c  12.0\r\n" + std::string(500, 'x') + "\r\nend\n");
}

} // namespace
} // namespace kigumi
