// Grid levels and the names that are made of them.
#pragma once

#include "model/model.h"

namespace kigumi {

// Rebuilds the level tables from the nodes, names every node "X%02dY%02dZ%02d" by its 0-based
// levels and copies the names into members, supports and loads. 0, or -1 with a message when there
// are more levels in a direction than the table holds; nothing is changed then.
int save_level_name(Model& model);

// 1 when every node has flag 2, and then names every node on a grid of 99 steps over the model's
// extent and copies the names into members, supports and loads; else -1. Deliberate: y is measured
// from the smallest x.
int check_all_node(Model& model);

} // namespace kigumi
