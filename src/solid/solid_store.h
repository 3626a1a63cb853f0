// What the parts of the solid store share with each other and with nobody else.
#pragma once

#include "solid/solid.h"

namespace kigumi {

namespace solid_store {

// As register_point, but silent when the table is full.
int find_or_add_point(Solids& solids, float x, float y, float z);

// Appends the box of a member; -1, and no triangle, when the point table is full. No message.
int append_box(Solids& solids, const Beam& beam);

// Tells the user that the point table is full.
void report_full();

} // namespace solid_store

} // namespace kigumi
