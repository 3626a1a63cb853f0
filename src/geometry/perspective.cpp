#include "geometry/perspective.h"

#include "base/message.h"
#include "geometry/segment_file.h"
#include "trace/spy.h"

namespace kigumi {

std::vector<VisibleSegment> visible_segments(std::span<const Trio> records,
                                             const ViewCoefficients& v) {
    std::vector<VisibleSegment> segments;
    segments.reserve(records.size());
    const auto eye = [&v](const float(&p)[3]) { return to_eye(v, p[0], p[1], p[2]); };
    for (std::size_t i = 0; i < records.size(); ++i) {
        const Trio& trio = records[i];
        for (const TrioEdge& edge : trio_edges) {
            if ((trio.hyoji & edge.bit) == 0) {
                continue;
            }
            const auto segment =
                perspective_edge(v, eye(trio.vertex[edge.from]), eye(trio.vertex[edge.to]));
            if (segment) {
                segments.push_back({*segment, static_cast<int>(i)});
            }
        }
    }
    return segments;
}

namespace {

void draw_visible(Canvas& canvas, const std::vector<VisibleSegment>& visible,
                  const TrioColour& colour) {
    int pen = colour_black;
    canvas.set_pen(pen_solid, 1, pen);
    for (const auto& [line, record] : visible) {
        const int wanted = colour ? colour(record) : colour_black;
        if (wanted != pen) {
            pen = wanted;
            canvas.set_pen(pen_solid, 1, pen);
        }
        canvas.move(line.X1, line.Y1);
        canvas.line(line.X2, line.Y2);
    }
    if (pen != colour_black) {
        canvas.set_pen(pen_solid, 1, colour_black);
    }
}

} // namespace

int draw_perspective(Canvas& canvas, DrawArea& area, const TrioColour& colour) {
    spy("Enter draw_perspective()");
    const auto records = read_trio_file();
    if (!records) {
        show_message("Error: Unable to open TRIO_FILE jikuire 03");
        return -1;
    }
    const ViewCoefficients v = view_coefficients(view.Rho, view.Theta, view.Phi);
    const std::vector<VisibleSegment> visible = visible_segments(*records, v);
    std::vector<Segment> segments;
    segments.reserve(visible.size());
    for (const VisibleSegment& seen : visible) {
        segments.push_back(seen.line);
    }
    const PlaneBounds bounds = segment_bounds(segments);
    get_world(area, bounds.xmin, bounds.ymin, bounds.xmax, bounds.ymax);
    if (save_segment_file(area, segments) < 0) {
        return -1;
    }
    canvas.set_area(area);
    draw_visible(canvas, visible, colour);
    return 0;
}

} // namespace kigumi
