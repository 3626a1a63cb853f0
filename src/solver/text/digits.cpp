#include "solver/text/digits.h"

#include <array>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace frameslv {

namespace {

constexpr int places = 8; // after the point
constexpr std::uint64_t least_digits = 100'000'000;
constexpr int widest_exponent = 40; // results beyond are rare
constexpr int exact_powers = 27;    // 10^27 has 63 bits without its trailing zeros

using Powers = std::array<long double, widest_exponent + places + 1>;

constexpr Powers make_powers() {
    Powers powers{};
    powers[0] = 1.0L;
    for (size_t k = 1; k < powers.size(); k++)
        powers[k] = powers[k - 1] * 10.0L;
    return powers;
}

constexpr Powers powers = make_powers();

// How far from a half the product below may be wrong, in units of its last digit: one rounding of
// the product and some of the powers beyond the exact ones.
constexpr long double uncertain =
    1e9L * static_cast<long double>(LDBL_EPSILON) * (widest_exponent + places - exact_powers + 2);

char* write_exactly(char* to, double value) {
    return std::to_chars(to, to + most_digits, value, std::chars_format::scientific, places).ptr;
}

int exponent_of(double size) {
    constexpr double log10_of_2 = 0.30102999566398120;
    int binary = 0;
    std::frexp(size, &binary);
    return static_cast<int>(std::floor((binary - 1) * log10_of_2));
}

} // namespace

char* write_digits(char* to, double value) {
    const double size = std::abs(value);
    int exponent = size > 0.0 ? exponent_of(size) : 0;
    if (!(size > 0.0) || exponent < -widest_exponent || exponent >= widest_exponent)
        return write_exactly(to, value);
    const auto scaled_by = [size](int shift) {
        const long double power = powers[static_cast<size_t>(std::abs(shift))];
        return shift < 0 ? size / power : size * power;
    };
    long double scaled = scaled_by(places - exponent);
    if (scaled >= 10.0L * least_digits)
        scaled = scaled_by(places - ++exponent);
    std::uint64_t digits = static_cast<std::uint64_t>(scaled);
    const long double rest = scaled - static_cast<long double>(digits);
    if (digits < least_digits || std::abs(rest - 0.5L) <= uncertain)
        return write_exactly(to, value);
    digits += rest > 0.5L ? 1 : 0;
    if (digits == 10 * least_digits)
        return write_exactly(to, value);
    if (value < 0.0)
        *to++ = '-';
    for (int k = places + 1; k >= 2; k--, digits /= 10)
        to[k] = static_cast<char>('0' + digits % 10);
    to[0] = static_cast<char>('0' + digits);
    to[1] = '.';
    to += places + 2;
    *to++ = 'e';
    *to++ = exponent < 0 ? '-' : '+';
    const int e = std::abs(exponent);
    *to++ = static_cast<char>('0' + e / 10);
    *to++ = static_cast<char>('0' + e % 10);
    return to;
}

} // namespace frameslv
