// Numbers as text, fast.
#pragma once

namespace frameslv {

// The most characters that write_digits leaves, its sign and exponent included.
constexpr int most_digits = 24;

// Writes `value` with nine significant digits, "-1.23456789e+00", correctly rounded, just as
// std::to_chars does, to which it leaves the few values that are too near a tie. Returns the end.
char* write_digits(char* to, double value);

} // namespace frameslv
