// The roof's surface: a height field over the plan on the lattice of half pitches.
//
// x and y are counted in half pitches from the corner (0, 0), as in half_pitch(). The surface rises
// in equal steps a half pitch from the girders to the ridge: in the hip roof from all four sides,
// in the gable roof from the two sides along the ridge. The ridge runs along the longer side, along
// x where both are equal.
#pragma once

#include "generate/emit.h"
#include "generate/param.h"

#include <vector>

namespace kigumi {

// One of the four sides of the plan.
struct RoofSide {
    bool along_x; // it runs along x
    bool far;     // at the far end of the other axis
};
constexpr RoofSide roof_sides[] = {{true, false}, {true, true}, {false, false}, {false, true}};

// The surface for these parameters, which live longer than it.
class RoofSurface {
  public:
    explicit RoofSurface(const Param& param);

    bool hip() const { return hip_; }
    bool ridge_along_x() const { return ridge_along_x_; }
    // Half pitches from the girders to the ridge, in plan.
    int depth() const { return depth_; }
    // Extent of the plan along x or y, half pitches.
    int extent(bool along_x) const { return along_x ? extent_x_ : extent_y_; }
    // True when the girders lie on the top floor's frame: there are no roof posts.
    bool on_floor() const;

    // True when rafters rise from this side.
    bool is_eave(RoofSide side) const { return hip_ || side.along_x == ridge_along_x_; }
    // Half pitches from the side to the hip or ridge, inwards at `along`.
    int rafter_run(RoofSide side, int along) const;

    // The grid lines across an axis, ascending: every pitch, and the ridge where it falls between.
    const std::vector<int>& lines(bool along_x) const { return along_x ? lines_x_ : lines_y_; }
    // `from`, the lines between, and `to`; one item where both are equal.
    std::vector<int> cut(bool along_x, int from, int to) const;

    // Level of the top floor; level of the girders; level `steps` half pitches up the slope, cm.
    float floor_level() const { return floor_level_; }
    float girder_level() const { return level(0); }
    float level(int steps) const;

    // The point at `along` on a side and `inwards` from it, at a level or on the surface.
    FramePoint point(RoofSide side, int along, int inwards, float z) const;
    FramePoint surface_point(RoofSide side, int along, int inwards) const;

  private:
    int steps_at(int x, int y) const;

    const Param& param_;
    bool hip_;
    bool ridge_along_x_;
    int extent_x_, extent_y_;
    int depth_;
    float floor_level_;
    std::vector<int> lines_x_, lines_y_;
};

} // namespace kigumi
