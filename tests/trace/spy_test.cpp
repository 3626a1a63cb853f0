#include "trace/spy.h"

#include "support.h"

namespace kigumi {
namespace {

class Spy : public test::CoreTest {
  protected:
    void TearDown() override {
        spy_close();
        CoreTest::TearDown();
    }
    std::string log() { return read_file(work_file(work_dir, "SPY.TXT")).value_or("(no log)"); }
};

TEST_F(Spy, OnlyWhatStandsInTheBufferIsWritten) {
    ASSERT_TRUE(spy_open(work_dir));
    spy("Enter make_hashira()");
    spy("Pass %5d of %s", 3, "柱");
    spy_write();
    spy("Enter make_waku()");
    spy("T %12.5e", 90.9f);
    spy_now("done");
    spy("never written");
    spy_close();
    EXPECT_EQ(log(), "Spy Start\r\nPass     3 of \x92\x8c\r\ndone\r\n");
}

TEST_F(Spy, OddTextsOfASecondRun) {
    ASSERT_TRUE(spy_open(work_dir));
    spy_now("first run");
    ASSERT_TRUE(spy_open(work_dir)); // starts anew
    spy_now("100%d");
    spy_now("%s", std::string(1000, 'x').c_str()); // is cut
    EXPECT_EQ(log(), "Spy Start\r\n100%d\r\n" + std::string(255, 'x') + "\r\n");
}

TEST_F(Spy, WithoutALogNothingHappens) {
    spy_now("lost");
    EXPECT_FALSE(spy_is_open());
    EXPECT_FALSE(spy_open(work_dir / "missing"));
    spy_now("lost");
    EXPECT_FALSE(fs::exists(work_file(work_dir, "SPY.TXT")));
}

} // namespace
} // namespace kigumi
