// Win3D mesh: points and faces of the solids as text.
#pragma once

#include "base/files.h"
#include "solid/solid.h"

namespace kigumi {

// Writes the point table, then a face for every triangle of TRIO.DAT; nothing is rebuilt, and
// points of earlier builds of this model are written too. Before any build only the line "Faces:"
// is written and TRIO.DAT is not needed. 0, or -1 after the message
// "Error: Unable to open TRIO_FILE 04" or "Error: Unable to open OUT_FILE"; no file, or the old
// one, is left then.
int save_win3d(const Solids& solids, const fs::path& path);

} // namespace kigumi
