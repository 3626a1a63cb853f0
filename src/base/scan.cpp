#include "base/scan.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace kigumi {

namespace {

bool is_blank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

template <class Number> bool parse(std::string_view word, Number& value) {
    if (word.size() > 1 && word[0] == '+' && word[1] != '-') {
        word.remove_prefix(1);
    }
    Number parsed{};
    const char* end = word.data() + word.size();
    const auto result = std::from_chars(word.data(), end, parsed);
    if (result.ec != std::errc() || result.ptr != end) {
        return false;
    }
    if constexpr (std::is_floating_point_v<Number>) {
        if (!std::isfinite(parsed)) {
            return false;
        }
    }
    value = parsed;
    return true;
}

// A number too small for its type is zero, not an error.
template <class Number> bool parse_floating(std::string_view word, Number& value) {
    if (parse(word, value)) {
        return true;
    }
    // Deliberate: a copy. Of long double the standard library (g++ 12) reads on behind the word, to
    // the next zero byte.
    const std::string terminated(word);
    long double wide = 0.0L;
    if (!parse(std::string_view(terminated), wide) || std::fabs(wide) > 1.0L) {
        return false;
    }
    value = static_cast<Number>(wide);
    return true;
}

} // namespace

bool parse_number(std::string_view word, int& value) {
    return parse(word, value);
}

bool parse_number(std::string_view word, float& value) {
    return parse_floating(word, value);
}

bool parse_number(std::string_view word, double& value) {
    return parse_floating(word, value);
}

void Scanner::skip_blanks() {
    while (at_ < text_.size() && is_blank(text_[at_])) {
        line_ += text_[at_] == '\n' ? 1 : 0;
        ++at_;
    }
}

std::string_view Scanner::peek_word() {
    skip_blanks();
    size_t end = at_;
    while (end < text_.size() && !is_blank(text_[end])) {
        ++end;
    }
    return text_.substr(at_, end - at_);
}

bool Scanner::next(std::string_view& word) {
    const std::string_view found = peek_word();
    if (found.empty()) {
        return false;
    }
    word = found;
    at_ += found.size();
    return true;
}

bool Scanner::next(int& value) {
    const std::string_view word = peek_word();
    if (!parse_number(word, value)) {
        return false;
    }
    at_ += word.size();
    return true;
}

bool Scanner::next(float& value) {
    const std::string_view word = peek_word();
    if (!parse_number(word, value)) {
        return false;
    }
    at_ += word.size();
    return true;
}

bool Scanner::next(double& value) {
    const std::string_view word = peek_word();
    if (!parse_number(word, value)) {
        return false;
    }
    at_ += word.size();
    return true;
}

bool Scanner::at_end() {
    return peek_word().empty();
}

bool LineReader::next(std::string_view& line) {
    if (at_ >= text_.size()) {
        return false;
    }
    ++number_;
    const size_t end = text_.find('\n', at_);
    line = text_.substr(at_, end == std::string_view::npos ? end : end - at_);
    at_ = end == std::string_view::npos ? text_.size() : end + 1;
    const size_t cut = line.find('\r');
    line = line.substr(0, cut);
    return true;
}

} // namespace kigumi
