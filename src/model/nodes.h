// Nodes: found, appended, put in order, measured.
#pragma once

#include "model/model.h"

namespace kigumi {

// Number of the first node at exactly (x, y, z), cm; a node with an empty name and flag 0 is
// appended when there is none. -1, with a message, when the node table is full.
int find_or_add_node(Model& model, float x, float y, float z);

// Tells find_or_add_node that node coordinates were changed otherwise than by appending.
void forget_node_index(Model& model);

// Position of the first node whose plane point lies closer to (X, Y) than the snap radius, or -1.
int search_2dim_node(const Model& model, float X, float Y);

// Orders the nodes by z, then y, then x, ascending, member numbers following. 1, or -1 with the
// message "ソートができません" when a member names a node outside the table.
int sort_node(Model& model);

// The smallest and largest x, y and z of the nodes, cm; all 0 without nodes.
struct Extent {
    float low[3];
    float high[3];
};
Extent node_extent(const Model& model);

// True when `no` is the number of a node of the model.
bool names_a_node(const Model& model, int no);

} // namespace kigumi
