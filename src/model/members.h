// Members: appended, measured, deleted, kept in step with their nodes.
#pragma once

#include "model/model.h"

namespace kigumi {

// Appends a member from (xs, ys, zs) to (xl, yl, zl), cm, finding or adding its nodes: empty names,
// section and material -1, screen points 0. Returns its position, or -1, with a message, when the
// member or node table is full.
int append_beam(Model& model, const float (&start)[3], const float (&end)[3], float haba,
                float atumi, int kind, int flag);

// Length between the member's ends, cm, in extended precision, stored as float.
float beam_length(const Beam& beam);

// Removes the member at position n and rebuilds the nodes from the members' plane points, within
// the snap radius of each other. `kind` stays with the position, not with the member; what was
// changed of a member goes with it. Supports and loads go: they name nodes by numbers that the
// rebuilding gives away anew.
void del_beam(Model& model, int n);

// 1 when there is at least one member and every member has flag 2; else -1.
int check_all_beam(const Model& model);

// Pushes the name and place of the node at position `node` into the members that use it.
void copy_node_to_beams(Model& model, int node);

// Gives every member this section, cm, in place of what was changed of its section, and flag 2.
void set_all_beam_section(Model& model, float haba, float atumi);

// Writes every node and member to the trace log.
void check_all_node_beam(const Model& model);

} // namespace kigumi
