#include "base/message.h"

#include <cstdio>
#include <utility>

namespace kigumi {

namespace {

MessageSink& current_sink() {
    thread_local MessageSink sink;
    return sink;
}

} // namespace

void show_message(std::string_view text) {
    if (const MessageSink& sink = current_sink()) {
        sink(text);
        return;
    }
    std::fprintf(stderr, "%.*s\n", static_cast<int>(text.size()), text.data());
}

int refuse(std::string_view text) {
    show_message(text);
    return -1;
}

MessageSink set_message_sink(MessageSink sink) {
    return std::exchange(current_sink(), std::move(sink));
}

void write_console(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stderr);
    if (text.empty() || text.back() != '\n') {
        std::fputc('\n', stderr);
    }
}

} // namespace kigumi
