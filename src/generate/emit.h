// Appending generated members.
#pragma once

#include "model/model.h"

namespace kigumi {

// A point of a generated frame, cm, each coordinate already rounded to its stored value.
struct FramePoint {
    float x, y, z;
};

// Appends a generated member of width `haba` and thickness `atumi`, cm, with its trace line. 0, or
// -1 when a table is full.
int emit_beam(Model& model, FramePoint start, FramePoint end, float haba, float atumi, int kind);

// The same for a square member.
inline int emit_beam(Model& model, FramePoint start, FramePoint end, float width, int kind) {
    return emit_beam(model, start, end, width, width, kind);
}

} // namespace kigumi
