// What the windows know of the model as a piece of work: its file, and whether it is saved.
#pragma once

#include "files/jiku.h"
#include "model/model.h"

#include <QString>

namespace kigumi {

struct Document {
    fs::path file;        // file it was read from or saved to last; empty for a new frame
    bool changed = false; // changed since then
    // Changed since they were written as solver input: supports or loads; sections or materials.
    bool roles_changed = false;
    bool sections_changed = false;
    Shift shift; // 座標移動 of written axis data, cm; a new model starts at 0

    void set_generated();
    void set_read(const fs::path& path);
    void set_saved(const fs::path& path);
    // The solver input was written.
    void set_data_saved();
    void set_empty();
};

// Counts, bounds and timber volume of the model in one line, for status bars.
QString document_summary(const Model& model, const Document& document);

// What a sketch still lacks, or that it lacks nothing ("節点 3/12 未入力　部材 2/20 未入力").
QString sketch_summary(const Model& model);

// File name for titles; 名称未設定 for a frame that has none.
QString document_name(const Document& document);

} // namespace kigumi
