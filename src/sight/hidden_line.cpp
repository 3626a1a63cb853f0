#include "sight/hidden_line.h"

#include "base/float.h"
#include "sight/edge_cutter.h"

#include <algorithm>
#include <cmath>
#include <thread>

namespace kigumi {

namespace {

using namespace hidden_line;

int thread_count(int wanted, std::size_t edges) {
    constexpr int most = 8;
    constexpr std::size_t worth_a_thread = 1000;
    const int cores = static_cast<int>(std::thread::hardware_concurrency());
    const int useful = static_cast<int>(std::min<std::size_t>(edges / worth_a_thread, most));
    return wanted > 0 ? wanted : std::clamp(cores, 1, std::max(useful, 1));
}

bool is_point(const Segment& s) {
    return same_float(s.X1, s.X2) && same_float(s.Y1, s.Y2);
}

// The segment of a seen piece; the ends of the edge keep their places to the last bit.
VisibleSegment segment_of(const ViewCoefficients& v, const SceneEdge& edge, Piece piece) {
    const auto place = [&](double part) {
        return to_perspective(v, part <= 0.0   ? edge.a
                                 : part >= 1.0 ? edge.b
                                               : point_between(edge.a, edge.b, part));
    };
    const PlanePoint from = place(piece.from);
    const PlanePoint to = place(piece.to);
    const bool joint_line = edge.own[1] >= 0;
    return {{from.X, from.Y, to.X, to.Y},
            edge.record,
            !joint_line && piece.from <= 0.0 && piece.to >= 1.0};
}

} // namespace

double hidden_line_tolerance(std::span<const Trio> records) {
    constexpr double rounding = 4.0 / (1 << 24);
    constexpr double lost_turn = 3.0e-6;
    double largest = 0.0;
    double longest = 0.0;
    for (const Trio& trio : records) {
        for (const TrioEdge& edge : trio_edges) {
            double square = 0.0;
            for (int axis = 0; axis < 3; ++axis) {
                const double from = trio.vertex[edge.from][axis];
                const double along = trio.vertex[edge.to][axis] - from;
                largest = std::max(largest, std::fabs(from));
                square += along * along;
            }
            longest = std::max(longest, square);
        }
    }
    return rounding * largest + lost_turn * std::sqrt(longest);
}

std::optional<std::vector<VisibleSegment>> remove_hidden_lines(std::span<const Trio> records,
                                                               const ViewCoefficients& v,
                                                               const HiddenLineOptions& options) {
    const double tolerance =
        options.tolerance > 0.0 ? options.tolerance : hidden_line_tolerance(records);
    const Scene scene = make_scene(records, v, tolerance, options.joints);
    if (options.progress && !options.progress(0.0)) {
        return std::nullopt;
    }
    const auto pieces = seen_pieces(
        scene, tolerance, thread_count(options.threads, scene.edges.size()), options.progress);
    if (!pieces) {
        return std::nullopt;
    }
    std::vector<VisibleSegment> segments;
    segments.reserve(pieces->size());
    for (const SeenPiece& seen : *pieces) {
        const SceneEdge& edge = scene.edges[static_cast<std::size_t>(seen.edge)];
        const VisibleSegment segment = segment_of(v, edge, seen.piece);
        if (!is_point(segment.line)) {
            segments.push_back(segment);
        }
    }
    return segments;
}

} // namespace kigumi
