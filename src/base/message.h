// The one way in which the core speaks to the user.
#pragma once

#include <functional>
#include <string_view>

namespace kigumi {

using MessageSink = std::function<void(std::string_view)>;

// Shows one message (UTF-8, without a line end). Where it appears is the sink's business: standard
// error for the commands, a message box for the windows, a list for tests.
void show_message(std::string_view text);

// Shows the message and returns -1, for a function that gives up.
int refuse(std::string_view text);

// Replaces the sink and returns the one before. An empty sink stands for standard error.
MessageSink set_message_sink(MessageSink sink);

// Writes a line to the console only (standard error); no window ever shows it.
void write_console(std::string_view text);

} // namespace kigumi
