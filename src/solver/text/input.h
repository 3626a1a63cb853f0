// Reading FRAMESLV.IN.
#pragma once

#include "solver/base/fault.h"
#include "solver/model/model.h"

#include <string>
#include <string_view>

namespace frameslv {

// Reads the nine blocks of an input text into `model`: x, y and z levels, members, sections,
// materials, nodes, supports, loads (docs/solver.md gives the fields). Items are separated by
// blanks, tabs or commas, records by LF or CR LF; blank lines between records are skipped. Support
// lines of one node join (held if any holds), load lines of one node add up. References between the
// tables are not looked up here, except a support's and a load's node; see check_model. A fault
// names the line, 1-based.
Fault read_input(std::string_view text, Model& model);

} // namespace frameslv
