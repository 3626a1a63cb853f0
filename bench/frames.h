// Frames and results for the measurements.
#pragma once

#include "project/project.h"

#include <memory>
#include <string>

namespace kigumi::bench {

// Square floors of about 2500, 5000 and 10000 members.
constexpr int cells_of[3] = {16, 23, 33};
constexpr int full_cells = cells_of[2];

// A folder of its own, removed with all that is in it.
class WorkFolder {
  public:
    WorkFolder();
    ~WorkFolder();
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    fs::path path;
};

// The project of one measurement, with its working directory.
struct Workplace {
    Workplace() { project->work_dir = folder.path; }

    const WorkFolder folder;
    const std::unique_ptr<Project> project = std::make_unique<Project>(); // some MB
};

// Sets the parameters of a square floor.
void set_floor(Param& param, int cells);

// The generators of a floor and sort_node on an empty model, without the solids.
void generate_floor(Model& model, const Param& param);

// A floor with its sections, materials, levels and names.
void make_floor(Model& model, Param& param, int cells);

// The result files of a floor of about 3000 members, as the solver would write them, forces made
// up.
struct ResultFiles {
    std::string listing, displacements;
};
ResultFiles make_result_files(Model& model, Param& param);

} // namespace kigumi::bench
