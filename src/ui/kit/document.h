// What the windows know of the project as a piece of work: its file, and whether it is saved.
#pragma once

#include "project/gate.h"

#include <QString>

#include <map>

namespace kigumi {

struct Document {
    fs::path file; // it was read from or saved to last; empty for work that has none
    // The file from a step of the history (its number; 0: the start) on, until the next entry.
    std::map<std::uint64_t, fs::path> file_of_step;
};

// True when no file holds the work as it stands: it was changed since it was saved or read. An
// empty project is nothing to save. An unfinished sketch is work.
bool is_unsaved(const Work& work);

// Nothing but what axis data can hold: no supports, loads, changed sections or materials.
bool fits_axis_data(const Project& project);

// Counts, bounds and timber volume of the model in one line, for status bars.
QString document_summary(const Project& project);

// What a sketch still lacks, or that it lacks nothing ("節点 3/12 未入力　部材 2/20 未入力").
QString sketch_summary(const Model& model);

// File name for titles; 名称未設定 for work that has none.
QString document_name(const Document& document);

// The same with the mark * behind it while the work is not saved.
QString marked_name(const Document& document, bool unsaved);

} // namespace kigumi
