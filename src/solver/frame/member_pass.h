// One pass through the members for several load vectors at a time.
#pragma once

#include "solver/frame/jointed.h"
#include "solver/sparse/kernels.h"

namespace frame_analysis {

// A number for each of the load vectors.
template <size_t width> struct Lanes { double v[width]; };

// Six of them for each node, or what one node or end has: translations or forces, then rotations or
// moments.
template <size_t width> using LanesSix = std::array<Lanes<width>, 6>;
template <size_t width> using NodeLanes = std::vector<LanesSix<width>>;
// Local axes, I first.
template <size_t width> using EndLanes = std::array<LanesSix<width>, 2>;

// What the load vectors of a pass have in common, and their gravity.
template <size_t width> struct Pass {
    const Frame& frame;
    const std::vector<Jointed>& members;
    const std::vector<char>& axial; // 0 for a member that carries no axial force
    std::array<Lanes<width>, 3> gravity{};
    bool weighs = false; // some gravity is not zero
    // Where the end forces of each load vector go, one a member; empty: nowhere.
    std::vector<std::array<Six, 2>*> ends;
};

// Subtracts from `left` what the nodes exert on the members' ends under these displacements, if
// any, and their weight, in global axes; to `pass.ends` it goes in local axes. With `stretch` (one
// a member) the axial stiffness times the elongation of every member is left there, also of those
// that carry no axial force. For 1 or Kernels::wide_block load vectors.
template <size_t width>
void subtract_members(const Pass<width>& pass, const NodeLanes<width>* moved,
                      NodeLanes<width>& left, std::vector<Lanes<width>>* stretch);

} // namespace frame_analysis
