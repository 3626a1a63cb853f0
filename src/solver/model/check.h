// What is settled about a frame before any stiffness is built.
#pragma once

#include "solver/base/fault.h"
#include "solver/model/model.h"
#include "solver/sparse/graph.h"

#include <functional>

namespace frameslv {

// Gives back the coordinates that the input form's one decimal has cut off: a node named
// "X%02dY%02dZ%02d" after 0-based positions in the level tables takes the three level values when
// all of them agree with its coordinates to half a unit of that decimal (0.05). Other nodes stay as
// read.
void snap_to_levels(Model& model);

// Refuses a frame that cannot be computed, naming the node or member: no nodes or members, unknown
// node, section or material numbers, section or material values of a used section or material that
// are not positive, a negative density, a coordinate or level beyond single precision, a Poisson's
// ratio outside (-1, 0.5], zero length, a load too large, a node without members (harmless when
// wholly held).
Fault check_model(const Model& model);

// What decides whether a frame is held.
struct Skeleton {
    std::vector<Point> at;                         // of each node
    std::vector<std::array<bool, dof_count>> held; // wholly or by a spring
    std::vector<Edge> members;                     // their nodes
    std::function<std::string(size_t node)> label; // for messages
};

// Refuses a frame that is not held: no support at all, a connected part without support, or a part
// that its supports let move as a rigid body. All joints are rigid and all member stiffnesses are
// positive, so that a connected part has no motion without resistance but the six rigid ones; the
// part is held exactly when the supports' conditions on these six have rank 6. Joints that give
// leave these six as they are: such a frame is refused rightly, though it may be loose otherwise. A
// node without members must be wholly held, or be found by its stiffness.
Fault check_held(const Skeleton& frame);
Fault check_held(const Model& model);

// The connected parts of a frame that has passed check_model, each named by its first node:
// "節点 5 を含む部分 (節点 2 個)". Held nodes without members are left out.
std::vector<std::string> part_labels(const Model& model);

// "x 方向に動きます", "x 軸まわりに回転します" and so on, for messages about an unknown 0..5.
const char* motion_label(size_t dof);

} // namespace frameslv
