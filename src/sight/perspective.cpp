#include "sight/perspective.h"

#include "base/message.h"
#include "draw/segment_file.h"
#include "trace/spy.h"

#include <algorithm>
#include <cmath>

namespace kigumi {

namespace {

constexpr double crumb_pixels = 0.5;

// All flagged edges.
std::vector<VisibleSegment> flagged_edges(std::span<const Trio> records,
                                          const ViewCoefficients& v) {
    std::vector<VisibleSegment> lines;
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
                lines.push_back({*segment, static_cast<int>(i)});
            }
        }
    }
    return lines;
}

std::vector<Segment> segments_of(std::span<const VisibleSegment> lines) {
    std::vector<Segment> segments;
    segments.reserve(lines.size());
    for (const VisibleSegment& seen : lines) {
        segments.push_back(seen.line);
    }
    return segments;
}

int keep_lines(Solids& solids, PerspectiveLines& perspective, const fs::path& work_dir,
               std::span<const Trio> records, const PerspectiveKey& key, const Progress& progress) {
    const ViewCoefficients v = view_coefficients(key.Rho, key.Theta, key.Phi);
    if (project_trio_file(solids, work_dir, v) < 0) {
        return -1;
    }
    HiddenLineOptions options;
    options.joints = key.joints != 0;
    options.progress = progress;
    perspective.preparing = true;
    auto seen = remove_hidden_lines(records, v, options);
    perspective.preparing = false;
    perspective.key = key;
    perspective.complete = seen.has_value();
    perspective.lines = seen ? std::move(*seen) : flagged_edges(records, v);
    perspective.bounds = segment_bounds(segments_of(perspective.lines));
    return perspective.complete ? perspective_ready : perspective_stopped;
}

void draw_visible(Canvas& canvas, std::span<const VisibleSegment> visible,
                  const TrioColour& colour) {
    int pen = colour_black;
    canvas.set_pen(pen_solid, 1, pen);
    for (const VisibleSegment& seen : visible) {
        const int wanted = colour ? colour(seen.record) : colour_black;
        if (wanted != pen) {
            pen = wanted;
            canvas.set_pen(pen_solid, 1, pen);
        }
        canvas.move(seen.line.X1, seen.line.Y1);
        canvas.line(seen.line.X2, seen.line.Y2);
    }
    if (pen != colour_black) {
        canvas.set_pen(pen_solid, 1, colour_black);
    }
}

PerspectiveKey wanted_key(const View& view, const Solids& solids) {
    return {trio_edition(solids), view.Rho, view.Theta, view.Phi, view.joints};
}

} // namespace

std::vector<VisibleSegment> without_crumbs(std::span<const VisibleSegment> lines, double shortest) {
    std::vector<VisibleSegment> left;
    left.reserve(lines.size());
    for (const VisibleSegment& seen : lines) {
        const Segment& s = seen.line;
        if (seen.whole || std::hypot(s.X2 - s.X1, s.Y2 - s.Y1) >= shortest) {
            left.push_back(seen);
        }
    }
    return left;
}

std::vector<VisibleSegment> visible_segments(std::span<const Trio> records,
                                             const ViewCoefficients& v, double shortest) {
    return without_crumbs(*remove_hidden_lines(records, v), shortest);
}

int prepare_perspective(const View& view, Solids& solids, PerspectiveLines& perspective,
                        const fs::path& work_dir, const Progress& progress) {
    spy("Enter prepare_perspective()");
    const auto records = saved_records(solids);
    if (!records) {
        return refuse("Error: Unable to open TRIO_FILE jikuire 03");
    }
    const PerspectiveKey key = wanted_key(view, solids);
    if (perspective.complete && perspective.key == key) {
        return perspective_ready;
    }
    return keep_lines(solids, perspective, work_dir, *records, key, progress);
}

std::span<const VisibleSegment> perspective_lines(const Solids& solids,
                                                  const PerspectiveLines& perspective) {
    return perspective.key.edition == trio_edition(solids)
               ? std::span<const VisibleSegment>(perspective.lines)
               : std::span<const VisibleSegment>();
}

bool is_nothing_in_sight(const Solids& solids, const PerspectiveLines& perspective) {
    return solids.n_trio > 0 && perspective_lines(solids, perspective).empty();
}

int draw_perspective(const View& view, Solids& solids, PerspectiveLines& perspective,
                     const fs::path& work_dir, Canvas& canvas, DrawArea& area,
                     const TrioColour& colour) {
    spy("Enter draw_perspective()");
    const PerspectiveLines& picture = perspective;
    const auto records = saved_records(solids);
    if (!records) {
        return refuse("Error: Unable to open TRIO_FILE jikuire 03");
    }
    if (picture.preparing && picture.key.edition != trio_edition(solids)) {
        return 0;
    }
    if (!picture.preparing && !(picture.key == wanted_key(view, solids)) &&
        keep_lines(solids, perspective, work_dir, *records, wanted_key(view, solids), {}) < 0) {
        return -1;
    }
    if (picture.lines.empty() && !records->empty() && !picture.preparing) {
        return refuse(nothing_in_sight);
    }
    const PlaneBounds& bounds = picture.bounds;
    get_world(area, bounds.xmin, bounds.ymin, bounds.xmax, bounds.ymax);
    const double crumb = crumb_pixels * (static_cast<double>(area.world.xmax) - area.world.xmin) /
                         std::max(1, area.crt.right - area.crt.left);
    if (save_segment_file(work_dir, area, segments_of(without_crumbs(picture.lines, crumb))) < 0) {
        return -1;
    }
    canvas.set_area(area);
    draw_visible(canvas, without_crumbs(picture.lines, crumb / canvas.zoom()), colour);
    return 0;
}

} // namespace kigumi
