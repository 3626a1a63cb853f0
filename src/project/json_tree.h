// A JSON text as a tree, with bounds on everything that a stranger's file could blow up.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kigumi {

struct JsonValue {
    enum class Type : unsigned char { null, boolean, number, text, array, object };

    Type type = Type::null;
    bool truth = false;           // of a boolean
    bool whole = false;           // a number written without fraction and exponent
    float single = 0.0f;          // a number read as single precision; not finite when it is beyond
    double number = 0.0;          // the same in double precision
    std::string text;             // UTF-8, may hold any character
    std::vector<JsonValue> items; // of an array, or of an object in the order of `keys`
    std::vector<std::string> keys; // of an object, each once
};

constexpr std::size_t deepest_json = 16; // arrays and objects within each other
constexpr std::size_t most_json_values = 1000000;
constexpr std::size_t most_json_keys = 64; // of one object

// Reads the whole text. False, with a few Japanese words and the line or the JSON pointer of the
// place in `fault`, when it is no JSON or passes one of the bounds above.
bool parse_json(std::string_view text, JsonValue& root, std::string& fault);

// Appends a text in quotes, and numbers in the shortest decimal form that reads back to the same
// bits. False, and "null", for a number that is not finite.
void append_json(std::string& to, std::string_view text);
bool append_json(std::string& to, float number);
bool append_json(std::string& to, double number);

} // namespace kigumi
