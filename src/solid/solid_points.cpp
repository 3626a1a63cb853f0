// The point table: distinct vertices, found again by their exact coordinates.
#include "base/float_index.h"
#include "base/format.h"
#include "base/message.h"
#include "solid/solid_store.h"
#include "trace/spy.h"

namespace kigumi {

namespace {

// Makes the index tell the places of all points; anew when others emptied the table.
void follow_points(Solids& solids) {
    PointIndex& index = solids.point_index;
    if (solids.points.size() < index.count) {
        index = {};
    }
    for (; index.count < solids.points.size(); ++index.count) {
        const SolidPoint& p = solids.points[index.count];
        index.first.add(p.x, p.y, p.z, position_of(p.no));
    }
}

} // namespace

int solid_store::find_or_add_point(Solids& solids, float x, float y, float z) {
    follow_points(solids);
    const int found = solids.point_index.first.find(x, y, z);
    if (found >= 0) {
        return number_at(found);
    }
    if (solids.points.size() >= static_cast<size_t>(point_capacity)) {
        return -1;
    }
    solids.points.push_back({number_at(static_cast<int>(solids.points.size())), x, y, z});
    return solids.points.back().no;
}

void solid_store::report_full() {
    show_message(text_format("頂点が多すぎます（最大 %d 個）", point_capacity));
}

int register_point(Solids& solids, float x, float y, float z) {
    const int no = solid_store::find_or_add_point(solids, x, y, z);
    if (no < 0) {
        solid_store::report_full();
    }
    return no;
}

void reset_bounds(Solids& solids) {
    solids.X_MIN = solids.Y_MIN = solids.Z_MIN = 9999.9f;
    solids.X_MAX = solids.Y_MAX = solids.Z_MAX = -9999.9f;
}

void widen_bounds(Solids& solids, float x, float y, float z) {
    const auto widen = [](float& low, float& high, float value) {
        low = value < low ? value : low;
        high = value > high ? value : high;
    };
    widen(solids.X_MIN, solids.X_MAX, x);
    widen(solids.Y_MIN, solids.Y_MAX, y);
    widen(solids.Z_MIN, solids.Z_MAX, z);
}

void clear_points(Solids& solids) {
    spy("Enter clear_points()");
    solids.points.clear();
    follow_points(solids);
}

} // namespace kigumi
