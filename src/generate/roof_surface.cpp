#include "generate/roof_surface.h"

#include "base/float.h"
#include "generate/generate.h"

#include <algorithm>

namespace kigumi {

namespace {

// Every pitch from 0 to `extent`, and its middle where `ridge` says that the ridge runs there.
std::vector<int> grid_lines(int extent, bool ridge) {
    std::vector<int> lines;
    for (int line = 0; line <= extent; ++line) {
        if (line % 2 == 0 || (ridge && 2 * line == extent)) {
            lines.push_back(line);
        }
    }
    return lines;
}

} // namespace

RoofSurface::RoofSurface(const Param& param)
    : param_(param), hip_(param.YaneType == 1), ridge_along_x_(param.NX >= param.NY),
      extent_x_(2 * param.NX), extent_y_(2 * param.NY), depth_(std::min(param.NX, param.NY)),
      floor_level_(storey_level(param, param.N_Sou, 5)) {
    const bool pyramid = hip_ && extent_x_ == extent_y_;
    lines_x_ = grid_lines(extent_x_, pyramid || !ridge_along_x_);
    lines_y_ = grid_lines(extent_y_, pyramid || ridge_along_x_);
}

bool RoofSurface::on_floor() const {
    return same_float(girder_level(), floor_level_);
}

int RoofSurface::rafter_run(RoofSide side, int along) const {
    const int to_ridge = extent(!side.along_x) / 2;
    return hip_ ? std::min({along, extent(side.along_x) - along, to_ridge}) : to_ridge;
}

std::vector<int> RoofSurface::cut(bool along_x, int from, int to) const {
    std::vector<int> stops = {from};
    for (const int line : lines(along_x)) {
        if (from < line && line < to) {
            stops.push_back(line);
        }
    }
    if (from < to) {
        stops.push_back(to);
    }
    return stops;
}

float RoofSurface::level(int steps) const {
    const double rise = static_cast<double>(param_.YaneTakasa) * steps / depth_;
    return round_once(static_cast<double>(floor_level_) + param_.YaneHashira + rise);
}

FramePoint RoofSurface::point(RoofSide side, int along, int inwards, float z) const {
    const int across = side.far ? extent(!side.along_x) - inwards : inwards;
    return side.along_x ? FramePoint{half_pitch(param_, along), half_pitch(param_, across), z}
                        : FramePoint{half_pitch(param_, across), half_pitch(param_, along), z};
}

FramePoint RoofSurface::surface_point(RoofSide side, int along, int inwards) const {
    const int across = side.far ? extent(!side.along_x) - inwards : inwards;
    return point(side, along, inwards,
                 level(side.along_x ? steps_at(along, across) : steps_at(across, along)));
}

int RoofSurface::steps_at(int x, int y) const {
    const int from_x = std::min(x, extent_x_ - x);
    const int from_y = std::min(y, extent_y_ - y);
    return hip_ ? std::min(from_x, from_y) : ridge_along_x_ ? from_y : from_x;
}

} // namespace kigumi
