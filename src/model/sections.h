// The tables of sections and materials: made from the members, and changed by the user.
#pragma once

#include "model/model.h"

#include <string_view>

namespace kigumi {

// Rebuilds the sections from the members' width, thickness and length and gives each member its
// section number (`size`, `mat`) and flag 2. Members of which different things were changed
// (Model::edit) get sections of their own, and what was changed of them is laid on the table. 0, or
// -1 with a message when there are more sections than the table holds; nothing is changed then.
int check_size(Model& model);

// Area, moments of inertia and torsion constant of section position k from its width and thickness.
void compute_section(Model& model, int k);

// Torsion coefficient β by r = atumi / haba, in J = β·atumi·haba³ (table of rectangles).
float torsion_coefficient(float r);

// One material of default values for each section, with what was changed of its members laid on it;
// every member's `mat` becomes its `size`.
void assign_materials(Model& model);

// Sections, materials, then levels and names: what follows every replacement of the model.
int rebuild_tables(Model& model);

enum class Change { none, stored, refused };

// Gives section position k a width and thickness, cm, and a turn about the member's axis, degrees,
// and computes its properties anew. The members' own haba and atumi stay; the change is kept for
// each of its members, and survives the rebuilding of the tables. Nothing is changed when
// all three values are those of the table, or, after "巾の値に誤りがあります" or
// "厚みの値に誤りがあります", when one is not above 0 or too large for the properties.
Change change_section(Model& model, int k, float haba, float atumi, float angle);

// Gives material position k a Young's modulus, Poisson's ratio and mass density, kept for each of
// its members as the change of a section is. Refused, after
// "ヤング率の値に誤りがあります", "ポワソン比の値に誤りがあります" or
// "質量密度の値に誤りがあります", when one is not above 0; nothing is changed then.
Change change_material(Model& model, int k, float E, float poisson, float density);

// Gives every member of material position k a timber, by its id; empty is 任意材料. Refused, after
// "樹種の名前が長すぎます", when the id is longer than a member's edit holds. The values of the
// material stay: change_material gives them.
Change change_species(Model& model, int k, std::string_view id);

// Forgets what was changed of the section of the member at this position, for a member that gets a
// width and thickness of its own.
void forget_section_edit(Model& model, int member);

// What a member is made of, as the tables say now: the one place that new outputs ask.
struct MemberSection {
    float haba, atumi; // cm
    float angle;       // turn about the member's axis, degrees
    float A;           // cm²
    float Iy, Iz, J;   // cm⁴
    float E, poisson, density;
    std::string_view species; // id of the timber, valid while the model stands; empty: 任意材料
};

// Of the member at this position, 0-based. While it has no section number, by its own width,
// thickness and edit.
MemberSection section_of(const Model& model, int member);

// True when the section table has another width or thickness for the member at this position than
// the member itself, for whom an edit of the table leaves haba and atumi alone.
bool differs_from_table(const Model& model, int member);
// How many members differ.
int count_differing(const Model& model);

} // namespace kigumi
