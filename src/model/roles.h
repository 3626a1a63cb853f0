// Roles of the nodes (拘束, 荷重) and the two tables made from them, kept in step: a node has one
// role, and at most one record, in the table of that role.
#pragma once

#include "model/model.h"

#include <array>

#include <string_view>

namespace kigumi {

// Appends a support or a load at a node; -1, with a message, when the table is full.
int append_fix(Model& model, int no, int ix, int iy, int iz);
int append_load(Model& model, int no, float fx, float fy, float fz);

// Makes the support and load tables from the node flags (1: held in x, y and z; 2: 200 kgf down).
// -1, with a message, when one of them would overflow; the tables are then as before.
int make_fix_and_load(Model& model);

// Role of the node at position `node`; of a node that the search has found, the role before.
int role_of(const Model& model, int node);

// True when any node is restrained or loaded.
bool any_role(const Model& model);

// Makes every node plain, empties both tables and forgets that they were edited.
void clear_roles(Model& model);

// What picking does: a node that has the role becomes plain, any other node takes it. A found node
// stays found. The tables are not touched: make_fix_and_load makes them from the flags.
void pick_role(Model& model, int node, int role);

// Makes the node at position `node` restrained (any value but 0 holds the direction) or loaded,
// kgf. Its record is replaced where it stands or appended; a record of the other kind is dropped.
// 0, or -1, with a message, when the table is full; nothing is changed then.
int put_fix(Model& model, int node, int ix, int iy, int iz);
int put_load(Model& model, int node, float fx, float fy, float fz);

// Removes the record at position `at`, closing the gap, and makes its node plain.
void delete_fix(Model& model, int at);
void delete_load(Model& model, int at);

// Position of the record of node number `no`, or -1.
int find_fix(const Model& model, int no);
int find_load(const Model& model, int no);

// Gives every record of the load table this force, kgf.
void set_all_loads(Model& model, float fx, float fy, float fz);

// Position of the first node whose name begins with the first nine characters of `text`, or is the
// text when that is shorter; -1 when there is none, and bad_node_id when the 1st, 4th and 7th
// characters are not X, Y and Z.
constexpr int bad_node_id = -2;
int find_node_id(const Model& model, std::string_view text);

// Levels of one direction, 0-based, both included.
struct LevelRange {
    int first, last;
};
// Ranges along x, y and z.
using LevelRanges = std::array<LevelRange, 3>;

// All levels of the model.
LevelRanges all_levels(const Model& model);

// Marks with role_found every node whose levels, read from its name, lie in the ranges, and no
// other; returns how many. Their roles are remembered.
int find_nodes(Model& model, const LevelRanges& ranges);
// Gives every found node its role back.
void forget_found(Model& model);
// Gives every found node this role.
void turn_found(Model& model, int role);

} // namespace kigumi
