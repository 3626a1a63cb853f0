// The result files.
#pragma once

#include "solver/base/fault.h"
#include "solver/modes/modes.h"
#include "solver/statics/solve.h"

#include <filesystem>
#include <string>

namespace frameslv {

// The texts of frameslv.zlv (level tables), frameslv.lst (nodes and member forces) and frameslv.dsp
// (displacements), and of frameslv.mod (natural modes) and frameslv.buc (buckling modes), which
// stay empty, and are not written, where they were not asked for: ASCII as far as the names are, CR
// LF, nine significant digits. docs/solver.md gives the fields and the sign convention.
struct ResultTexts {
    std::string zlv;
    std::string lst;
    std::string dsp;
    std::string mod;
    std::string buc;
    std::string notes; // of frameslv.not, UTF-8
};

// The names under which nodes go out. Readers split at blanks and compare the first nine bytes
// only, so a name that is empty, or agrees with an earlier one in nine bytes, is replaced by
// "N%08d" of the node's number (or the next such name that is free).
std::vector<std::string> result_names(const Model& model);

// Section forces of one member: on a section with the outward normal I -> J, what the part beyond
// exerts; x across the width (local y), y along the depth (local z), z along the member (local x).
// 1 at I, 2 at J.
struct SectionForces {
    double p1, p2;   // axial, tension positive
    double xv1, xv2; // shear across the width
    double yv1, yv2; // shear along the depth
    double xm1, xm2; // moment about the width axis
    double ym1, ym2; // moment about the depth axis
    double zm;       // torsion
};
SectionForces section_forces(const EndForces& forces);

// Fills in the first three texts.
void add_result_texts(const Model& model, const Solution& solution, ResultTexts& texts);

// The texts of the two mode files.
std::string natural_mode_text(const Model& model, const std::vector<Mode>& modes);
std::string buckling_mode_text(const Model& model, const std::vector<Mode>& modes);

// Removes the result files of an earlier run, and what one that was ended has left half written.
Fault remove_results(const std::filesystem::path& folder);

// Writes the files under temporary names and renames them together; results of an earlier run and
// frameslv.err go then. Where the writing fails, nothing of the new ones is left, and the earlier
// ones stay.
Fault write_results(const std::filesystem::path& folder, const ResultTexts& texts);

// Writes frameslv.not alone, for a run without results.
Fault write_notes(const std::filesystem::path& folder, const Notes& notes);

// The temporary names; a null pointer is the last.
const char* const* temporary_names();

// Writes frameslv.err; a failure is passed over, as the text goes to standard error too.
void write_error_file(const std::filesystem::path& folder, const std::string& text);

} // namespace frameslv
