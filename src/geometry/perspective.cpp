#include "geometry/perspective.h"

#include "base/message.h"
#include "geometry/segment_file.h"
#include "trace/spy.h"

namespace kigumi {

std::vector<Segment> visible_segments(std::span<const Trio> records, const ViewCoefficients& v) {
    std::vector<Segment> segments;
    segments.reserve(records.size());
    const auto eye = [&v](const float(&p)[3]) { return to_eye(v, p[0], p[1], p[2]); };
    for (const Trio& trio : records) {
        for (const TrioEdge& edge : trio_edges) {
            if ((trio.hyoji & edge.bit) == 0) {
                continue;
            }
            const auto segment =
                perspective_edge(v, eye(trio.vertex[edge.from]), eye(trio.vertex[edge.to]));
            if (segment) {
                segments.push_back(*segment);
            }
        }
    }
    return segments;
}

int draw_perspective(Canvas& canvas, DrawArea& area) {
    spy("Enter draw_perspective()");
    const auto records = read_trio_file();
    if (!records) {
        show_message("Error: Unable to open TRIO_FILE jikuire 03");
        return -1;
    }
    const ViewCoefficients v = view_coefficients(view.Rho, view.Theta, view.Phi);
    const std::vector<Segment> segments = visible_segments(*records, v);
    const PlaneBounds bounds = segment_bounds(segments);
    get_world(area, bounds.xmin, bounds.ymin, bounds.xmax, bounds.ymax);
    if (save_segment_file(area, segments) < 0) {
        return -1;
    }
    canvas.set_area(area);
    draw_segments(canvas, segments);
    return 0;
}

} // namespace kigumi
