#include "project/json_tree.h"

#include "base/format.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace kigumi {

namespace {

using Json = nlohmann::json;

// Grows the tree as the parser meets the values. Every function but parse_error answers whether to
// go on.
class TreeBuilder : public nlohmann::json_sax<Json> {
  public:
    TreeBuilder(std::string_view text, JsonValue& root) : text_(text), root_(root) {}

    bool null() override { return add(JsonValue::Type::null) != nullptr; }
    bool boolean(bool truth) override {
        JsonValue* value = add(JsonValue::Type::boolean);
        return value != nullptr && (value->truth = truth, true);
    }
    bool number_integer(number_integer_t number) override {
        return add_whole(static_cast<double>(number), static_cast<float>(number));
    }
    bool number_unsigned(number_unsigned_t number) override {
        return add_whole(static_cast<double>(number), static_cast<float>(number));
    }
    bool number_float(number_float_t number, const string_t& token) override {
        JsonValue* value = add(JsonValue::Type::number);
        if (value == nullptr) {
            return false;
        }
        value->number = number;
        const auto [end, error] =
            std::from_chars(token.data(), token.data() + token.size(), value->single);
        if (error != std::errc() || end != token.data() + token.size()) {
            value->single = std::numeric_limits<float>::quiet_NaN();
        }
        return true;
    }
    bool string(string_t& text) override {
        JsonValue* value = add(JsonValue::Type::text);
        return value != nullptr && (value->text = std::move(text), true);
    }
    bool binary(binary_t&) override { return false; }
    bool start_object(std::size_t) override { return open(JsonValue::Type::object); }
    bool start_array(std::size_t) override { return open(JsonValue::Type::array); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }
    bool key(string_t& key) override {
        std::vector<std::string>& keys = open_.back()->keys;
        if (std::find(keys.begin(), keys.end(), key) != keys.end()) {
            keys.push_back(std::move(key));
            return refuse("同じ名前の項目が二つあります");
        }
        if (keys.size() == most_json_keys) {
            return refuse("項目が多すぎます");
        }
        keys.push_back(std::move(key));
        return true;
    }
    bool parse_error(std::size_t position, const std::string&,
                     const nlohmann::detail::exception&) override {
        const auto end =
            text_.begin() + static_cast<std::ptrdiff_t>(std::min(position, text_.size()));
        const auto line = 1 + std::count(text_.begin(), end, '\n');
        fault =
            text_format("%ld 行目: %s", static_cast<long>(line),
                        position > text_.size() ? "途中で終わっています" : "JSON として読めません");
        return false;
    }

    std::string fault;

  private:
    bool add_whole(double number, float single) {
        JsonValue* value = add(JsonValue::Type::number);
        if (value == nullptr) {
            return false;
        }
        value->whole = true;
        value->number = number;
        value->single = single;
        return true;
    }
    JsonValue* add(JsonValue::Type type) {
        if (++count_ > most_json_values) {
            refuse("値が多すぎます");
            return nullptr;
        }
        JsonValue* value = &root_;
        if (!open_.empty()) {
            value = &open_.back()->items.emplace_back();
        }
        value->type = type;
        return value;
    }
    bool open(JsonValue::Type type) {
        if (open_.size() == deepest_json) {
            return refuse("入れ子が深すぎます");
        }
        JsonValue* value = add(type);
        if (value == nullptr) {
            return false;
        }
        open_.push_back(value);
        return true;
    }
    bool close() {
        open_.pop_back();
        return true;
    }
    // The pointer leads to the item that is open: the key read last, or the place of the next item.
    bool refuse(const char* why) {
        std::string pointer;
        for (const JsonValue* each : open_) {
            pointer += '/';
            if (each->type == JsonValue::Type::array) {
                const bool innermost = each == open_.back();
                pointer += std::to_string(each->items.size() - (innermost ? 0 : 1));
            } else if (!each->keys.empty()) {
                pointer += each->keys.back();
            }
        }
        fault = pointer + ": " + why;
        return false;
    }

    std::string_view text_;
    JsonValue& root_;
    std::vector<JsonValue*> open_; // the arrays and objects around the next value
    std::size_t count_ = 0;
};

template <class Number> bool append_number(std::string& to, Number number) {
    if (!std::isfinite(number)) {
        to += "null";
        return false;
    }
    // A zero's sign is kept by the fraction; within these bounds digits read better than exponents.
    constexpr Number least = static_cast<Number>(1e-4);
    constexpr Number largest = static_cast<Number>(1e9);
    const Number size = std::fabs(number);
    const bool zero = std::fpclassify(number) == FP_ZERO;
    char digits[64];
    const auto end = zero || (size >= least && size < largest)
                         ? std::to_chars(digits, std::end(digits), number, std::chars_format::fixed)
                         : std::to_chars(digits, std::end(digits), number);
    to.append(digits, end.ptr);
    if (zero && std::signbit(number)) {
        to += ".0";
    }
    return true;
}

} // namespace

bool parse_json(std::string_view text, JsonValue& root, std::string& fault) {
    root = {};
    TreeBuilder builder(text, root);
    if (Json::sax_parse(text.begin(), text.end(), &builder)) {
        return true;
    }
    fault = builder.fault;
    return false;
}

void append_json(std::string& to, std::string_view text) {
    to += '"';
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            to += '\\';
            to += c;
        } else if (static_cast<unsigned char>(c) < ' ') {
            to += text_format("\\u%04x", c);
        } else {
            to += c;
        }
    }
    to += '"';
}

bool append_json(std::string& to, float number) {
    return append_number(to, number);
}

bool append_json(std::string& to, double number) {
    return append_number(to, number);
}

} // namespace kigumi
