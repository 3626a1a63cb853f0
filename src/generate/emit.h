// Appending generated members.
#pragma once

#include "model/lookup.h"

namespace kigumi {

// A point of a generated frame, cm, each coordinate already rounded to its stored value.
struct FramePoint {
    float x, y, z;
};

// Appends a generated square member with its trace line. 0, or -1 when a table is full.
int emit_beam(FramePoint start, FramePoint end, float width, int kind);

} // namespace kigumi
