// The displaced shape (節点変位): result members moved by the magnified displacements.
#pragma once

#include "analysis/result.h"

namespace kigumi {

// Rebuilds `heni_node` and `heni_beam` of `result` from its nodes, members and displacements, with
// the displacements magnified by `scale` (1, 5 or 10). A displacement whose number is no result
// node's leaves its entry unset (no = 0); where names differ in their matched part a message is
// shown and the work goes on. 0; -1 after "部材の検索に失敗しました" when an end of a member is not
// found exactly once among the displaced nodes: members before it are then already displaced.
int get_new_beam(Result& result, float scale);

} // namespace kigumi
