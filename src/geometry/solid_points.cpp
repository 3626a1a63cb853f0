// The point table: distinct vertices, found again by their exact coordinates.
#include "base/float_index.h"
#include "base/format.h"
#include "base/message.h"
#include "geometry/solid_store.h"
#include "trace/spy.h"

namespace kigumi {

namespace {

// Positions of the first `count` registered points; made anew when others emptied the table.
struct PointIndex {
    FloatIndex first;
    size_t count = 0;

    void follow() {
        if (solids.points.size() < count) {
            first.clear();
            count = 0;
        }
        for (; count < solids.points.size(); ++count) {
            const SolidPoint& p = solids.points[count];
            first.add(p.x, p.y, p.z, position_of(p.no));
        }
    }
};

PointIndex& point_index() {
    static PointIndex index;
    return index;
}

} // namespace

int solid_store::find_or_add_point(float x, float y, float z) {
    PointIndex& index = point_index();
    index.follow();
    const int found = index.first.find(x, y, z);
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

int register_point(float x, float y, float z) {
    follow_model();
    const int no = solid_store::find_or_add_point(x, y, z);
    if (no < 0) {
        solid_store::report_full();
    }
    return no;
}

void clear_points() {
    spy("Enter clear_points()");
    solids.points.clear();
    point_index().follow();
}

} // namespace kigumi
