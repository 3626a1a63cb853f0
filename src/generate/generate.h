// Generators of the space floor (スペース床), its columns, storeys, terrace and roof.
//
// Every generator reads `param` and appends members (flag 2, section and material -1) to the model;
// nodes are found or added by exact coordinates, so every coordinate comes from one expression in
// double, rounded once. Result 0, or -1 when a table is full or a step failed (after a message).
#pragma once

#include "generate/param.h"
#include "model/model.h"
#include "solid/solid.h"

#include <string>
#include <string_view>

namespace kigumi {

// One of the six levels of a storey's frame, cm. Storey 1 to 3; level 0 column base (or nothing
// without columns), 1 to 3 quarters of the column, 4 bottom chords (zb), 5 top chords (zt). The one
// place where z is computed: storeys share nodes to the bit. Without columns the heights are
// ignored and levels 0 to 4 of storey 1 are `Lowest`.
float storey_level(const Param& param, int storey, int level);
constexpr int levels_a_storey = 6;

// m half pitches: m·T·0.5, cm.
float half_pitch(const Param& param, int m);

// Four corner posts; restarts the members at 0.
int make_hashira(Model& model, const Param& param);
// Perimeter frame at both levels, in half pitches.
int make_waku(Model& model, const Param& param);
// Chords: top lines through the cell centres, bottom lines on the boundaries.
int make_genzai(Model& model, const Param& param);
// Four diagonals a cell, top centre to bottom corners.
int make_shazai(Model& model, const Param& param);
// Braces in the four perimeter faces.
int make_sujikai(Model& model, const Param& param);
// Outer columns under each corner, type I or II; sets GaichuStart and GaichuEnd.
int make_gaichu(Model& model, const Param& param);
// Copies storey 1 to storey 2, or to storeys 2 and 3.
int make_2kai(Model& model, const Param& param);
int make_3kai(Model& model, const Param& param);
// Eaves around the top floor.
int make_terrace(Model& model, const Param& param);
// Roof: hip (YaneType 1) or gable (2).
int make_yane2(Model& model, const Param& param);

// Runs the generators in their fixed order on an empty model, then sort_node and make_men. 0, or -1
// when a storey generator failed; the model then holds the members made so far.
int make_unit(Model& model, const Param& param, Solids& solids);

// Expands one unit line of an axis data file ("2 nx ny T D ...") into members with flag 0 and
// widens the model bounds. -1 with a message when the line is malformed or a table is full.
int bunkai_shazai(Model& model, Solids& solids, std::string_view line);

} // namespace kigumi
