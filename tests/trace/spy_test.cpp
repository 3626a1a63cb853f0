#include "trace/spy.h"

#include "support.h"

#include <optional>
#include <thread>

namespace kigumi {
namespace {

class Spy : public test::CoreTest {
  protected:
    std::string log() { return read_file(work_file(work_dir, "SPY.TXT")).value_or("(no log)"); }
};

TEST_F(Spy, OnlyWhatStandsInTheBufferIsWritten) {
    std::optional<SpyLog> kept(work_dir);
    spy("Enter make_hashira()");
    spy("Pass %5d of %s", 3, "柱");
    spy_write();
    spy("Enter make_waku()");
    spy("T %12.5e", 90.9f);
    spy_now("done");
    spy("never written");
    kept.reset();
    EXPECT_EQ(log(), "Spy Start\r\nPass     3 of \x92\x8c\r\ndone\r\n");
}

TEST_F(Spy, OddTextsOfASecondRun) {
    {
        const SpyLog first(work_dir);
        spy_now("first run");
    }
    const SpyLog second(work_dir); // starts anew
    spy_now("100%d");
    spy_now("%s", std::string(1000, 'x').c_str()); // is cut
    EXPECT_EQ(log(), "Spy Start\r\n100%d\r\n" + std::string(255, 'x') + "\r\n");
}

TEST_F(Spy, LogsOfTwoThreadsAndOfOneWithinAnother) {
    fs::create_directories(work_dir / "inner");
    const SpyLog outer(work_dir);
    std::thread([] {
        EXPECT_FALSE(spy_is_open());
        spy_now("another thread");
    }).join();
    {
        const SpyLog inner(work_dir / "inner");
        spy_now("inner");
    }
    spy_now("outer");
    EXPECT_EQ(log(), "Spy Start\r\nouter\r\n");
    EXPECT_EQ(read_file(work_dir / "inner" / "SPY.TXT"), "Spy Start\r\ninner\r\n");
}

TEST_F(Spy, WithoutALogNothingHappens) {
    spy_now("lost");
    EXPECT_FALSE(spy_is_open());
    const SpyLog nowhere(work_dir / "missing");
    EXPECT_FALSE(spy_is_open());
    spy_now("lost");
    EXPECT_FALSE(fs::exists(work_file(work_dir, "SPY.TXT")));
}

} // namespace
} // namespace kigumi
