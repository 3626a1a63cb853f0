// The one way in which the core speaks to the user.
#pragma once

#include "base/fault.h"

#include <functional>
#include <string_view>
#include <vector>

namespace kigumi {

using MessageSink = std::function<void(const Fault&)>;

// Shows one message (UTF-8, without a line end) and, where it tells of a failure, the reason. Where
// it appears is the sink's business: standard error for the commands, a message box for the
// windows, a list for tests.
void show_message(std::string_view sentence, std::string_view reason = {});
void show_message(const Fault& fault);

// Shows the message and returns -1, for a function that gives up.
int refuse(std::string_view sentence, std::string_view reason = {});
int refuse(const Fault& fault);

// Takes the messages of this thread as long as it lives; then the sink before it takes them again.
// Without any, and with an empty one, they go to standard error. Sinks end in the opposite order of
// their making.
class ScopedMessageSink {
  public:
    explicit ScopedMessageSink(MessageSink sink);
    ~ScopedMessageSink();
    ScopedMessageSink(const ScopedMessageSink&) = delete;
    ScopedMessageSink& operator=(const ScopedMessageSink&) = delete;

  private:
    friend void show_message(const Fault& fault);

    MessageSink sink_;
    const ScopedMessageSink* outer_;
};

// Keeps the messages of this thread in a list instead of showing them, as long as it lives.
class CollectedMessages {
  public:
    CollectedMessages() : sink_([this](const Fault& fault) { faults.push_back(fault); }) {}

    std::vector<Fault> faults; // in order

  private:
    ScopedMessageSink sink_;
};

// Writes a line to the console only (standard error); no window ever shows it.
void write_console(std::string_view text);

} // namespace kigumi
