#include "results/listing.h"

#include "results_support.h"

namespace kigumi::test {

namespace {

using ListingTest = CoreTest;

TEST_F(ListingTest, WritesTheListingByteForByte) {
    make_portal_result(result);
    set_name(result.stress[1].jname, "柱頭");
    const fs::path path = work_file(work_dir, "結果.txt");
    ASSERT_EQ(save_listing(result, path), 0);
    std::string text = read_file(path).value_or("");
    // The folder differs from run to run; the name itself is "結果.txt" in code page 932.
    const std::string folder = utf8_of(work_file(work_dir, ""));
    ASSERT_EQ(text.substr(0, folder.size()), folder);
    EXPECT_NE(text.find("\x8c\x8b\x89\xca.txt     3\r\n No    "), std::string::npos);
    expect_golden("portal-listing.txt", text.substr(folder.size()));
}

TEST_F(ListingTest, RefusesAnEmptyResultAndALockedPlace) {
    EXPECT_EQ(save_listing(result, work_file(work_dir, "out.txt")), -1);
    EXPECT_FALSE(fs::exists(work_file(work_dir, "out.txt")));
    make_portal_result(result);
    EXPECT_EQ(save_listing(result, work_file(work_dir, "missing/out.txt")), -1);
    expect_messages({"保存するデータが存在しない", "書きこみに失敗しました"});
}

} // namespace

} // namespace kigumi::test
