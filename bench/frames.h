// Frames and results for the measurements.
#pragma once

#include <string>

namespace kigumi::bench {

// Square floors of about 2500, 5000 and 10000 members.
constexpr int cells_of[3] = {16, 23, 33};
constexpr int full_cells = cells_of[2];

// Sets the parameters of a square floor.
void set_floor(int cells);

// The generators of a floor and sort_node on an empty model, without the solids.
void generate_floor();

// A floor with its sections, materials, levels and names.
void make_floor(int cells);

// The result files of a floor of about 3000 members, as the solver would write them, forces made
// up.
struct ResultFiles {
    std::string listing, displacements;
};
ResultFiles make_result_files();

} // namespace kigumi::bench
