#include "geometry/hidden_line.h"

#include "geometry/screen_grid.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <thread>

namespace kigumi {

namespace hidden_line {

namespace {

using Lines = std::vector<VisibleSegment>;

// Works on one edge after another.
class EdgeCutter {
  public:
    EdgeCutter(const Scene& scene, const ScreenGrid& grid, const ViewCoefficients& v,
               double tolerance)
        : scene_(scene), grid_(grid), v_(v), tolerance_(tolerance),
          tested_for_(scene.occluders.size(), -1) {}

    // Appends what is seen of edge `i`.
    void cut(int i, Lines& seen);

  private:
    bool find_hidden(int i);
    bool test(int i, std::span<const int> bodies);
    void append_seen(const SceneEdge& edge, Lines& seen);
    void append(const SceneEdge& edge, Piece piece, Lines& seen) const;

    const Scene& scene_;
    const ScreenGrid& grid_;
    const ViewCoefficients& v_;
    const double tolerance_;
    std::vector<int> tested_for_; // of each body: the last edge tested with it
    std::vector<Piece> hidden_;
};

void EdgeCutter::cut(int i, Lines& seen) {
    if (find_hidden(i)) {
        append_seen(scene_.edges[static_cast<std::size_t>(i)], seen);
    }
}

// Collects the hidden pieces; false when the whole edge is hidden.
bool EdgeCutter::find_hidden(int i) {
    const SceneEdge& edge = scene_.edges[static_cast<std::size_t>(i)];
    hidden_.clear();
    bool any_seen = true;
    grid_.for_cells({sight_point(edge.a), sight_point(edge.b)}, [&](std::span<const int> bodies) {
        any_seen = test(i, bodies);
        return any_seen;
    });
    return any_seen;
}

bool EdgeCutter::test(int i, std::span<const int> bodies) {
    const SceneEdge& edge = scene_.edges[static_cast<std::size_t>(i)];
    const double farthest = std::max(edge.a.ze, edge.b.ze);
    for (const int body : bodies) {
        const Occluder& occluder = scene_.occluders[static_cast<std::size_t>(body)];
        if (occluder.nearest >= farthest) {
            return true;
        }
        int& tested_for = tested_for_[static_cast<std::size_t>(body)];
        if (tested_for == i || body == edge.own) {
            continue;
        }
        tested_for = i;
        Piece piece;
        if (!hidden_piece(scene_, occluder, edge, piece)) {
            continue;
        }
        if (piece.from <= 0.0 && piece.to >= 1.0) {
            return false;
        }
        hidden_.push_back(piece);
    }
    return true;
}

void EdgeCutter::append_seen(const SceneEdge& edge, Lines& seen) {
    const double length = std::sqrt((edge.b.xe - edge.a.xe) * (edge.b.xe - edge.a.xe) +
                                    (edge.b.ye - edge.a.ye) * (edge.b.ye - edge.a.ye) +
                                    (edge.b.ze - edge.a.ze) * (edge.b.ze - edge.a.ze));
    const double joint = tolerance_ / length;
    std::sort(hidden_.begin(), hidden_.end(), [](const Piece& p, const Piece& q) {
        return p.from < q.from || (p.from <= q.from && p.to < q.to);
    });
    double seen_from = 0.0;
    double hidden_to = 0.0;
    std::size_t next = 0;
    while (next < hidden_.size()) {
        Piece hidden = hidden_[next++];
        while (next < hidden_.size() && hidden_[next].from <= hidden.to + joint) {
            hidden.to = std::max(hidden.to, hidden_[next++].to);
        }
        if (hidden.to - hidden.from <= joint) {
            continue;
        }
        if (hidden.from - seen_from > joint) {
            append(edge, {seen_from, hidden.from}, seen);
        }
        seen_from = hidden_to = hidden.to;
    }
    if (1.0 - hidden_to > joint || hidden_to <= 0.0) {
        append(edge, {seen_from, 1.0}, seen);
    }
}

void EdgeCutter::append(const SceneEdge& edge, Piece piece, Lines& seen) const {
    const auto at = [&edge](double t) {
        return EyePoint{edge.a.xe + t * (edge.b.xe - edge.a.xe),
                        edge.a.ye + t * (edge.b.ye - edge.a.ye),
                        edge.a.ze + t * (edge.b.ze - edge.a.ze)};
    };
    const bool from_start = piece.from <= 0.0;
    const bool to_end = piece.to >= 1.0;
    const PlanePoint from = to_perspective(v_, from_start ? edge.a : at(piece.from));
    const PlanePoint to = to_perspective(v_, to_end ? edge.b : at(piece.to));
    seen.push_back({{from.X, from.Y, to.X, to.Y}, edge.record, from_start && to_end});
}

// Shares the edges among threads in blocks; the lines of every block are kept apart, so that their
// order does not depend on who made them.
class Workshop {
  public:
    Workshop(const Scene& scene, const ViewCoefficients& v, double tolerance)
        : scene_(scene), grid_(scene), v_(v), tolerance_(tolerance),
          blocks_((scene.edges.size() + edges_a_block - 1) / edges_a_block) {}

    std::optional<Lines> run(int threads, const Progress& progress);

  private:
    static constexpr std::size_t edges_a_block = 256;

    void work(const Progress& progress);
    void cut_block(EdgeCutter& cutter, std::size_t block);

    const Scene& scene_;
    const ScreenGrid grid_;
    const ViewCoefficients& v_;
    const double tolerance_;
    std::vector<Lines> blocks_;
    std::atomic<std::size_t> next_{0};
    std::atomic<bool> stopped_{false};
};

void Workshop::cut_block(EdgeCutter& cutter, std::size_t block) {
    const std::size_t end = std::min(scene_.edges.size(), (block + 1) * edges_a_block);
    for (std::size_t i = block * edges_a_block; i < end; ++i) {
        cutter.cut(static_cast<int>(i), blocks_[block]);
    }
}

void Workshop::work(const Progress& progress) {
    EdgeCutter cutter(scene_, grid_, v_, tolerance_);
    for (std::size_t block = next_++; block < blocks_.size() && !stopped_; block = next_++) {
        cut_block(cutter, block);
        if (progress &&
            !progress(static_cast<double>(block) / static_cast<double>(blocks_.size()))) {
            stopped_ = true;
        }
    }
}

std::optional<Lines> Workshop::run(int threads, const Progress& progress) {
    std::vector<std::thread> helpers;
    for (int i = 1; i < threads; ++i) {
        helpers.emplace_back([this] { work({}); });
    }
    work(progress);
    for (std::thread& helper : helpers) {
        helper.join();
    }
    if (stopped_) {
        return std::nullopt;
    }
    std::size_t count = 0;
    for (const Lines& block : blocks_) {
        count += block.size();
    }
    Lines lines;
    lines.reserve(count);
    for (const Lines& block : blocks_) {
        lines.insert(lines.end(), block.begin(), block.end());
    }
    return lines;
}

int thread_count(int wanted, std::size_t edges) {
    constexpr int most = 8;
    constexpr std::size_t worth_a_thread = 1000;
    const int cores = static_cast<int>(std::thread::hardware_concurrency());
    const int useful = static_cast<int>(std::min<std::size_t>(edges / worth_a_thread, most));
    return wanted > 0 ? wanted : std::clamp(cores, 1, std::max(useful, 1));
}

} // namespace

} // namespace hidden_line

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
    using namespace hidden_line;
    const double tolerance =
        options.tolerance > 0.0 ? options.tolerance : hidden_line_tolerance(records);
    const Scene scene = make_scene(records, v, tolerance);
    if (options.progress && !options.progress(0.0)) {
        return std::nullopt;
    }
    return Workshop(scene, v, tolerance)
        .run(thread_count(options.threads, scene.edges.size()), options.progress);
}

} // namespace kigumi
