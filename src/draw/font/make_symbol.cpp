// Makes symbol.cod from its readable source (docs/formats/symbol-cod.md).
// Usage: make_symbol SOURCE TARGET

#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr int characters = 256;
constexpr size_t table_bytes = size_t{2} * characters;
constexpr size_t largest_font = 65535;
constexpr int box = 0x7F; // stands for every character without a glyph of its own
constexpr size_t most_strokes = 255;

struct Stroke {
    bool draws;
    int x, y; // units of the cell
};

struct Source {
    std::array<std::vector<Stroke>, characters> glyph;
    std::array<bool, characters> present{};
    std::string fault;
};

// Reads "x,y" with the whole of `word`.
bool parse_point(const std::string& word, Stroke& stroke) {
    int used = 0;
    const int got = std::sscanf(word.c_str(), "%d,%d%n", &stroke.x, &stroke.y, &used);
    return got == 2 && static_cast<size_t>(used) == word.size() && stroke.x >= -2 &&
           stroke.x <= 13 && stroke.y >= -1 && stroke.y <= 14;
}

// Reads the lines of a glyph: points of one line after the other, ";" between lines.
bool parse_strokes(std::istringstream& words, std::vector<Stroke>& strokes) {
    bool draws = false;
    std::string word;
    while (words >> word) {
        if (word == ";") {
            draws = false;
            continue;
        }
        Stroke stroke{draws, 0, 0};
        if (!parse_point(word, stroke)) {
            return false;
        }
        strokes.push_back(stroke);
        draws = true;
    }
    return strokes.size() <= most_strokes;
}

// Reads "CODE NAME : strokes", the code in hexadecimal digits.
bool parse_glyph(const std::string& line, Source& source) {
    std::istringstream words(line);
    unsigned code = 0;
    std::string name;
    std::string colon;
    if (!(words >> std::hex >> code >> name >> colon) || colon != ":" || code >= characters ||
        source.present[code]) {
        return false;
    }
    source.present[code] = true;
    return parse_strokes(words, source.glyph[code]);
}

Source read_source(const char* path) {
    Source source;
    std::ifstream file(path);
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (!line.empty() && line[0] != '#' && !parse_glyph(line, source)) {
            source.fault = "line " + std::to_string(number) + ": no glyph";
            return source;
        }
    }
    for (int c = 0x20; c <= box; ++c) {
        if (!source.present[c]) {
            source.fault = "no glyph for character " + std::to_string(c);
        }
    }
    return source;
}

void append_glyph(std::string& font, const std::vector<Stroke>& strokes) {
    font += static_cast<char>(strokes.size());
    for (const Stroke& stroke : strokes) {
        font += static_cast<char>(stroke.draws ? 1 : 0);
        font += static_cast<char>((stroke.y + 1) * 16 + stroke.x + 2);
    }
}

std::string make_font(const Source& source) {
    std::string font(table_bytes, '\0');
    std::array<size_t, characters> start{};
    for (size_t c = 0; c < characters; ++c) {
        if (source.present[c]) {
            start[c] = font.size();
            append_glyph(font, source.glyph[c]);
        }
    }
    for (size_t c = 0; c < characters; ++c) {
        const size_t at = source.present[c] ? start[c] : start[box];
        font[2 * c] = static_cast<char>(at / 256);
        font[2 * c + 1] = static_cast<char>(at % 256);
    }
    return font;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::fprintf(stderr, "usage: make_symbol SOURCE TARGET\n");
        return 2;
    }
    const Source source = read_source(arguments[1]);
    if (!source.fault.empty()) {
        std::fprintf(stderr, "%s: %s\n", arguments[1], source.fault.c_str());
        return 1;
    }
    const std::string font = make_font(source);
    std::ofstream file(arguments[2], std::ios::binary);
    file << font;
    if (font.size() > largest_font || !file.flush()) {
        std::fprintf(stderr, "%s: cannot be written\n", arguments[2]);
        return 1;
    }
    return 0;
}
