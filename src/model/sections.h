// The tables of sections and materials: made from the members, and changed by the user.
#pragma once

#include "model/model.h"

namespace kigumi {

// Rebuilds the sections from the members' width, thickness and length and gives each member its
// section number (`size`, `mat`) and flag 2. 0, or -1 with a message when there are more sections
// than the table holds; nothing is changed then.
int check_size(Model& model);

// Area, moments of inertia and torsion constant of section position k from its width and thickness.
void compute_section(Model& model, int k);

// Torsion coefficient β by r = atumi / haba, in J = β·atumi·haba³ (table of rectangles).
float torsion_coefficient(float r);

// One material of default values for each section; every member's `mat` becomes its `size`.
void assign_materials(Model& model);

// Sections, materials, then levels and names: what follows every replacement of the model.
int rebuild_tables(Model& model);

enum class Change { none, stored, refused };

// Gives section position k a width and thickness, cm, and a turn about the member's axis, degrees,
// and computes its properties anew. The members' own haba and atumi stay. Nothing is changed when
// all three values are those of the table, or, after "巾の値に誤りがあります" or
// "厚みの値に誤りがあります", when one is not above 0 or too large for the properties.
Change change_section(Model& model, int k, float haba, float atumi, float angle);

// Gives material position k a Young's modulus, Poisson's ratio and mass density. Refused, after
// "ヤング率の値に誤りがあります", "ポワソン比の値に誤りがあります" or
// "質量密度の値に誤りがあります", when one is not above 0; nothing is changed then.
Change change_material(Model& model, int k, float E, float poisson, float density);

} // namespace kigumi
