// Look-ups in the model and the operations that keep its tables in step.
#pragma once

#include "model/model.h"

namespace kigumi {

// Number of the first node at exactly (x, y, z), cm; a node with an empty name and flag 0 is
// appended when there is none. -1, with a message, when the node table is full.
int find_or_add_node(float x, float y, float z);

// Tells find_or_add_node that node coordinates were changed otherwise than by appending.
void forget_node_index();

// Appends a member from (xs, ys, zs) to (xl, yl, zl), cm, finding or adding its nodes: empty names,
// section and material -1, screen points 0. Returns its position, or -1, with a message, when the
// member or node table is full.
int append_beam(const float (&start)[3], const float (&end)[3], float haba, float atumi, int kind,
                int flag);

// Appends a support or a load at a node; -1, with a message, when the table is full.
int append_fix(int no, int ix, int iy, int iz);
int append_load(int no, float fx, float fy, float fz);

// Length between the member's ends, cm, in extended precision, stored as float.
float beam_length(const Beam& beam);

// Makes the support and load tables from the node flags (1: held in x, y and z; 2: 200 kgf down).
// -1, with a message, when one of them would overflow; the tables are then as before.
int make_fix_and_load();

// Rebuilds the level tables from the nodes, names every node "X%02dY%02dZ%02d" by its 0-based
// levels and copies the names into the members. 0, or -1 with a message when there are more levels
// in a direction than the table holds; nothing is changed then.
int save_level_name();

// Rebuilds the sections from the members' width, thickness and length and gives each member its
// section number (`size`, `mat`) and flag 2. 0, or -1 with a message when there are more sections
// than the table holds; nothing is changed then.
int check_size();

// Area, moments of inertia and torsion constant of section position k from its width and thickness.
void compute_section(int k);

// Torsion coefficient β by r = atumi / haba, in J = β·atumi·haba³ (table of rectangles).
float torsion_coefficient(float r);

// One material of default values for each section; every member's `mat` becomes its `size`.
void assign_materials();

// Sections, materials, then levels and names: what follows every replacement of the model.
int rebuild_tables();

// Removes the member at position n and rebuilds the nodes from the members' plane points, within
// the snap radius of each other. `kind` stays with the position, not with the member. Supports and
// loads go: they name nodes by numbers that the rebuilding gives away anew.
void del_beam(int n);

// Position of the first node whose plane point lies closer to (X, Y) than the snap radius, or -1.
int search_2dim_node(float X, float Y);

// The radius of search_2dim_node and of picking, plane units; 10 at start.
extern float snap_radius;

// 1 when there is at least one member and every member has flag 2; else -1.
int check_all_beam();

// 1 when every node has flag 2, and then names every node on a grid of 99 steps over the model's
// extent and copies the names into the members; else -1. Deliberate: y is measured from the
// smallest x.
int check_all_node();

// Pushes the name and place of the node at position `node` into the members that use it.
void copy_node_to_beams(int node);

// Gives every member this section, cm, and flag 2.
void set_all_beam_section(float haba, float atumi);

// Writes every node and member to the trace log.
void check_all_node_beam();

// Orders the nodes by z, then y, then x, ascending, member numbers following. 1, or -1 with the
// message "ソートができません" when a member names a node outside the table.
int sort_node();

// The smallest and largest x, y and z of the nodes, cm; all 0 without nodes.
struct Extent {
    float low[3];
    float high[3];
};
Extent node_extent();

// Describes the first fault of the tables (counts, numbers, ends, names, coordinates), or null when
// they are sound. Names are compared only when `names` is true.
const char* find_model_fault(bool names);

} // namespace kigumi
