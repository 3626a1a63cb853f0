// Free-format reading of numbers and words, and of lines, from text in memory.
#pragma once

#include <string>
#include <string_view>

namespace kigumi {

// Reads blank-separated items one after the other. Every function returns false, and leaves its
// argument alone, when there is no such item; a number must fill its whole item, be finite and fit.
class Scanner {
  public:
    explicit Scanner(std::string_view text) : text_(text) {}

    bool next(int& value);
    bool next(float& value);
    bool next(double& value);
    // The characters up to the next blank.
    bool next(std::string_view& word);
    // True when nothing but blanks is left.
    bool at_end();
    // 1-based number of the line on which the next item stands.
    int line() const { return line_; }

  private:
    void skip_blanks();
    std::string_view peek_word();

    std::string_view text_;
    size_t at_ = 0;
    int line_ = 1;
};

// Reads the whole of `word` as a number; false when it is none, is not finite or does not fit.
bool parse_number(std::string_view word, int& value);
bool parse_number(std::string_view word, float& value);
bool parse_number(std::string_view word, double& value);

// Hands out the lines of a text, without CR and LF.
class LineReader {
  public:
    explicit LineReader(std::string_view text) : text_(text) {}
    bool next(std::string_view& line);
    // 1-based number of the line handed out last.
    int number() const { return number_; }

  private:
    std::string_view text_;
    size_t at_ = 0;
    int number_ = 0;
};

} // namespace kigumi
