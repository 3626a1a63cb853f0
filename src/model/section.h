// Changes of one section or material by the user; every member that has its number takes them.
#pragma once

namespace kigumi {

enum class Change { none, stored, refused };

// Gives section position k a width and thickness, cm, and a turn about the member's axis, degrees,
// and computes its properties anew. The members' own haba and atumi stay. Nothing is changed when
// all three values are those of the table, or, after "巾の値に誤りがあります" or
// "厚みの値に誤りがあります", when one is not above 0 or too large for the properties.
Change change_section(int k, float haba, float atumi, float angle);

// Gives material position k a Young's modulus, Poisson's ratio and mass density. Refused, after
// "ヤング率の値に誤りがあります", "ポワソン比の値に誤りがあります" or
// "質量密度の値に誤りがあります", when one is not above 0; nothing is changed then.
Change change_material(int k, float E, float poisson, float density);

} // namespace kigumi
