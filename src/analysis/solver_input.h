// Writers of the model as input of the frame solver and of the textbook frame program.
#pragma once

#include "base/files.h"
#include "model/model.h"

namespace kigumi {

// Writes the whole model (levels, members, sections, materials, nodes, supports, loads) as FrameSlv
// input (.bon, FRAMESLV.IN; docs/formats/solver-input.md). Lengths cm, forces kgf. Level, section
// and material tables must be current. 0, or -1 after "Error: Unable to open BonFile"; an old file
// is then whole.
int save_honegumi(const Model& model, const fs::path& path);

// Writes the whole model as input of the textbook frame program 「フレームラボ」 (.ydu;
// docs/formats/textbook-input.md). 0, or -1 after "Error: Unable to open GraFile".
int save_honegra(const Model& model, const fs::path& path);

} // namespace kigumi
