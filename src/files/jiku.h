// The axis data file (軸データ, .jik): a frame as a list of member axes.
#pragma once

#include "base/files.h"
#include "model/model.h"
#include "solid/solid.h"

#include <vector>

namespace kigumi {

// Shift added to all coordinates of a written axis data file, cm (座標移動).
struct Shift {
    float dx = 0.0f, dy = 0.0f, dz = 0.0f;
};

// Writes all members in table order, with a label before each group of one category and the volume
// of each group (全データ変換). 0, or -1 after the message "Error: Unable to open JIKU_FILE".
int save_jiku_data(const Model& model, const fs::path& path, const Shift& shift);

// Writes only the members at these positions, as member lines and 999.
int save_jiku_selection(const Model& model, const fs::path& path, const std::vector<int>& positions,
                        const Shift& shift);

// Appends the members of an axis data file to the model, each in the category of the group label
// before it (kind_none without one, its own in a unit line), finding or adding their nodes, widens
// the model bounds and writes the volume summary Youseki.dat into the working directory. The number
// of members read, or -1: after a message when a line is wrong (the members before it stay),
// without one when the file cannot be opened; `reason` then says why, or in which line the file is
// wrong.
int load_jiku_data(Model& model, Solids& solids, const fs::path& work_dir, const fs::path& path,
                   std::string* reason = nullptr);

// Timber of a member, m³: its length × width × thickness.
double beam_volume(const Beam& beam);

} // namespace kigumi
