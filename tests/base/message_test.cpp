#include "base/message.h"

#include <gtest/gtest.h>

#include <thread>

namespace kigumi {
namespace {

TEST(Fault, TextHasWhatThereIs) {
    EXPECT_EQ((Fault{"読めません", "a.jik: フォルダです"}).text(),
              "読めません（a.jik: フォルダです）");
    EXPECT_EQ((Fault{"読めません", {}}).text(), "読めません");
    EXPECT_EQ((Fault{{}, "a.jik: フォルダです"}).text(), "a.jik: フォルダです");
}

TEST(Messages, GoToTheInnermostSinkOfTheThread) {
    CollectedMessages outer;
    show_message("一", "甲");
    {
        CollectedMessages inner;
        EXPECT_EQ(refuse("二", "乙"), -1);
        std::thread([] {
            CollectedMessages other;
            show_message(Fault{"三", "丙"});
            EXPECT_EQ(other.faults, (std::vector<Fault>{{"三", "丙"}}));
        }).join();
        EXPECT_EQ(inner.faults, (std::vector<Fault>{{"二", "乙"}}));
    }
    EXPECT_EQ(refuse(Fault{"四", {}}), -1);
    EXPECT_EQ(outer.faults, (std::vector<Fault>{{"一", "甲"}, {"四", {}}}));
}

TEST(Messages, WithoutASinkGoToStandardError) {
    ::testing::internal::CaptureStderr();
    show_message("書けません", "満杯です");
    {
        const ScopedMessageSink none(MessageSink{});
        show_message("読めません");
    }
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "書けません（満杯です）\n読めません\n");
}

} // namespace
} // namespace kigumi
