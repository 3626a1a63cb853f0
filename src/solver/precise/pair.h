// Numbers of twice the precision: an unevaluated sum of two, about 32 digits.
//
// T. J. Dekker, A floating-point technique for extending the available precision, Numer. Math. 18
// (1971). V is double or a vector of them. Everything here has internal linkage: sources that are
// compiled for processors with wider registers include it too, and the linker must not take their
// code for the whole program. Products must not be fused with sums.
#pragma once

namespace frameslv {

namespace {

template <class V> struct Pair { V high, low; };

// What rounding takes off the product p = a b.
#if defined(PAIR_FUSED)
template <class V> inline V product_error(V a, V b, V p) {
    return PAIR_FUSED(a, b, p);
}
#else
template <class V> inline V product_error(V a, V b, V p) {
    constexpr double splitter = 134217729.0; // 2^27 + 1
    const V a_scaled = a * splitter;
    const V a_high = a_scaled - (a_scaled - a);
    const V a_low = a - a_high;
    const V b_scaled = b * splitter;
    const V b_high = b_scaled - (b_scaled - b);
    const V b_low = b - b_high;
    return ((a_high * b_high - p) + a_high * b_low + a_low * b_high) + a_low * b_low;
}
#endif

// a + b for |a| >= |b|.
template <class V> inline Pair<V> quick_sum(V a, V b) {
    const V s = a + b;
    return {s, b - (s - a)};
}

template <class V> inline Pair<V> exact_sum(V a, V b) {
    const V s = a + b;
    const V part = s - a;
    return {s, (a - (s - part)) + (b - part)};
}

template <class V> inline Pair<V> exact_difference(V a, V b) {
    const V minus_b = -b;
    return exact_sum(a, minus_b);
}

template <class V> inline Pair<V> exact_product(V a, V b) {
    const V p = a * b;
    return {p, product_error(a, b, p)};
}

// Errors below are some 2^-104, of the sum of sizes where values are added.
template <class V> inline Pair<V> operator+(Pair<V> a, Pair<V> b) {
    const Pair<V> s = exact_sum(a.high, b.high);
    const V low = s.low + (a.low + b.low);
    return quick_sum(s.high, low);
}

template <class V> inline Pair<V> operator-(Pair<V> a) {
    return {-a.high, -a.low};
}

template <class V> inline Pair<V> operator-(Pair<V> a, Pair<V> b) {
    return a + (-b);
}

template <class V> inline Pair<V> operator*(Pair<V> a, Pair<V> b) {
    const Pair<V> p = exact_product(a.high, b.high);
    const V cross = a.high * b.low + a.low * b.high;
    const V low = p.low + cross;
    return quick_sum(p.high, low);
}

// Times a number without a second part.
template <class V> inline Pair<V> times(Pair<V> a, V b) {
    const Pair<V> p = exact_product(a.high, b);
    const V cross = a.low * b;
    const V low = p.low + cross;
    return quick_sum(p.high, low);
}

// Times a power of two.
template <class V> inline Pair<V> scaled(Pair<V> a, double power) {
    return {a.high * power, a.low * power};
}

template <class V> inline Pair<V> paired(V a) {
    return {a, a - a};
}

// 1 / a.
template <class V> inline Pair<V> reciprocal(Pair<V> a) {
    const V guess = 1.0 / a.high;
    const Pair<V> left = paired(guess - guess + 1.0) - times(a, guess);
    return quick_sum(guess, V(guess * left.high));
}

// 1 / sqrt(a) from a guess that is good to nearly all digits of a double.
template <class V> inline Pair<V> reciprocal_root(Pair<V> a, V guess) {
    const Pair<V> left = paired(guess - guess + 1.0) - a * exact_product(guess, guess);
    return quick_sum(guess, V(guess * left.high * 0.5));
}

} // namespace

} // namespace frameslv
