#include "solver/text/records.h"

#include <algorithm>
#include <charconv>

namespace frameslv {

namespace {

// All that parts words for those who read the results: a name that held one would be two there.
bool is_blank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// from_chars takes no leading plus; a number may have one.
std::string_view without_plus(std::string_view word) {
    const bool plus = word.size() > 1 && word[0] == '+' && word[1] != '-';
    return plus ? word.substr(1) : word;
}

bool parse_integer(std::string_view word, int& value) {
    word = without_plus(word);
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    return error == std::errc{} && end == word.data() + word.size();
}

// Decimal text only: "inf" and "nan", which from_chars takes, are no numbers here.
bool parse_real(std::string_view word, double& value) {
    word = without_plus(word);
    if (word.find_first_not_of("+-.0123456789eE") != std::string_view::npos)
        return false;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    return error == std::errc{} && end == word.data() + word.size();
}

} // namespace

bool lacks_line_end(std::string_view text) {
    const size_t end = text.rfind('\n');
    const std::string_view last = text.substr(end == std::string_view::npos ? 0 : end + 1);
    return !std::all_of(last.begin(), last.end(), is_blank);
}

RecordReader::RecordReader(std::string_view text) : text_(text) {
    constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
    if (text_.starts_with(byte_order_mark))
        text_.remove_prefix(byte_order_mark.size());
}

bool RecordReader::fail(const std::string& what) {
    fault_ = {Exit::bad_text, text_of("FRAMESLV.IN %d行目: %s", line_, what.c_str())};
    return false;
}

bool RecordReader::next_line(std::string_view& line) {
    if (at_ >= text_.size())
        return false;
    line_++;
    const size_t end = text_.find('\n', at_);
    line = text_.substr(at_, end - at_);
    at_ = end == std::string_view::npos ? text_.size() + 1 : end + 1;
    return true;
}

bool RecordReader::split(std::string_view line, bool blank_first) {
    fields_.clear();
    by_comma_ = by_blank_ = false;
    bool comma = !blank_first; // the last separator was a comma, or a comma may not come yet
    size_t i = 0;
    while (i < line.size()) {
        if (is_blank(line[i])) {
            i++;
        } else if (line[i] == ',') {
            if (comma)
                return fail("カンマの間に値がありません");
            comma = true;
            by_comma_ = true;
            i++;
        } else {
            const size_t start = i;
            by_blank_ = by_blank_ || (!comma && !fields_.empty());
            while (i < line.size() && line[i] != ',' && !is_blank(line[i]))
                i++;
            fields_.push_back(line.substr(start, i - start));
            comma = false;
        }
    }
    return true;
}

bool RecordReader::next(const char* block, size_t least, size_t most, bool blank_first) {
    fields_.clear();
    std::string_view line;
    while (fields_.empty()) {
        if (!next_line(line)) {
            line_++;
            return fail(text_of("%sのデータの途中でファイルが終わっています", block));
        }
        if (!split(line, blank_first))
            return false;
    }
    if (size() < least || size() > most)
        return fail(text_of("%sの項目の数 %zu が合いません", block, size()));
    return true;
}

bool RecordReader::expect_end() {
    std::string_view line;
    while (next_line(line)) {
        if (!split(line, false))
            return false;
        if (size() > 0)
            return fail("荷重の個数より多くの行があります");
    }
    return true;
}

bool RecordReader::integer(size_t i, int& value) {
    if (parse_integer(field(i), value))
        return true;
    return fail(text_of("「%s」は整数ではありません", printable(field(i)).c_str()));
}

bool RecordReader::real(size_t i, double& value) {
    if (parse_real(field(i), value))
        return true;
    return fail(text_of("「%s」は数値ではありません", printable(field(i)).c_str()));
}

bool RecordReader::is_real(size_t i) const {
    double value = 0.0;
    return parse_real(field(i), value);
}

bool RecordReader::expect_names(const char* block, size_t first) {
    for (size_t i = first; i < size(); i++)
        if (by_comma_ && by_blank_ && is_real(i))
            return fail(text_of("%sの名前「%s」が数値です (小数点にカンマは使えません)", block,
                                printable(field(i)).c_str()));
    return true;
}

bool RecordReader::expect_count(const char* block, int count, size_t items) {
    constexpr size_t item_bytes = 2; // one digit and a separator
    const size_t shortest = items * item_bytes;
    // The last record may lack its line end.
    const size_t left = at_ < text_.size() ? text_.size() - at_ + 1 : 0;
    if (count < 0)
        return fail(text_of("%sの個数 %d が負です", block, count));
    // The values of a level block may begin on the line of the count itself.
    const size_t room = left + (fields_.empty() ? 0 : fields_.size() * item_bytes);
    if (static_cast<size_t>(count) > room / shortest)
        return fail(text_of("%sの個数 %d がファイルの大きさに合いません", block, count));
    return true;
}

} // namespace frameslv
