#include "base/message.h"

#include <cstdio>
#include <string>
#include <utility>

namespace kigumi {

namespace {

thread_local const ScopedMessageSink* innermost = nullptr;

} // namespace

ScopedMessageSink::ScopedMessageSink(MessageSink sink)
    : sink_(std::move(sink)), outer_(std::exchange(innermost, this)) {}

ScopedMessageSink::~ScopedMessageSink() {
    innermost = outer_;
}

void show_message(const Fault& fault) {
    if (innermost != nullptr && innermost->sink_) {
        innermost->sink_(fault);
        return;
    }
    std::fprintf(stderr, "%s\n", fault.text().c_str());
}

void show_message(std::string_view sentence, std::string_view reason) {
    show_message(Fault{std::string(sentence), std::string(reason)});
}

int refuse(const Fault& fault) {
    show_message(fault);
    return -1;
}

int refuse(std::string_view sentence, std::string_view reason) {
    return refuse(Fault{std::string(sentence), std::string(reason)});
}

void write_console(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stderr);
    if (text.empty() || text.back() != '\n') {
        std::fputc('\n', stderr);
    }
}

} // namespace kigumi
