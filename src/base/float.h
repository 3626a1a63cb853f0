// Exact comparison and single rounding of single-precision values.
#pragma once

namespace kigumi {

// True when both values are equal to the last bit (+0 equals -0; NaN equals nothing).
// Coordinates and section keys are matched this way on purpose.
inline bool same_float(float a, float b) {
    return !(a < b) && !(a > b) && a <= b;
}

// Rounds a value that was evaluated in double to a stored float, once.
inline float round_once(double value) {
    return static_cast<float>(value);
}

} // namespace kigumi
