// The hand-drawn data file (手書データ, .tgk) and the kept sheet positions of its nodes.
//
// A sketch is saved with the places of its nodes on the drawing sheet. Those places stand in the
// nodes' X, Y; the old-node table keeps a copy of them, so that the sheet can be shown, and saved,
// as it was drawn after other places were put there (place_on_sheet of draw/projection.h).
// docs/formats/tegaki.md describes the file.
#pragma once

#include "base/files.h"
#include "model/model.h"
#include "model/sketch.h"

namespace kigumi {

// Writes the nodes and members, unfinished ones too. Sheet positions are the kept ones where
// OnSaveOld is 1 (a node drawn since then, and not kept yet, has its own X, Y), else those of the
// model. 0, or -1 with the message "Can't open TEGAKI_FILE" when the file cannot be written, or
// with another message when a name holds a blank or a double quote, which could not be read back;
// an existing file is then as before.
int save_tegaki_data(const Model& model, const SketchPlaces& sketch_places,
                     const fs::path& file_name);

// Replaces the whole model (reset_model) by the file's nodes and members and keeps their sheet
// positions. Members get category 0. Section and material numbers are those of the file while
// their tables are empty: check_size and assign_materials follow before they are used. 0, or -1
// with "Can't open TEGAKI_FILE" or a message telling line and fault; the model, and the kept
// positions, are then as before.
int load_tegaki_data(Model& model, SketchPlaces& sketch_places, const fs::path& file_name);

// Keeps every node's X, Y (sheet units), for the nodes as they now stand in the table. To be
// called while the sheet is shown, and after every change that renumbers nodes.
void save_old_node(const Model& model, SketchPlaces& sketch_places);

// Keeps X, Y of the nodes appended since the table was made; what was kept stays. To be called
// after a node was drawn on the sheet; nothing while OnSaveOld is 0.
void append_old_node(const Model& model, SketchPlaces& sketch_places);

// Puts the kept positions back into the nodes' X, Y, and the nodes' X, Y into the members' XS, YS
// and XL, YL. Nothing while OnSaveOld is 0.
void load_old_node(Model& model, const SketchPlaces& sketch_places);

// Empties the table and sets OnSaveOld to 0: for every command that makes a model otherwise than
// by load_tegaki_data.
void forget_old_node(SketchPlaces& sketch_places);

} // namespace kigumi
