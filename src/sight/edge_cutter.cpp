#include "sight/edge_cutter.h"

#include "sight/screen_grid.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <system_error>
#include <thread>

namespace kigumi::hidden_line {

namespace {

using Pieces = std::vector<SeenPiece>;

double length_of(const SceneEdge& edge) {
    const double x = edge.b.xe - edge.a.xe;
    const double y = edge.b.ye - edge.a.ye;
    const double z = edge.b.ze - edge.a.ze;
    return std::sqrt(x * x + y * y + z * z);
}

// Works on one edge after another.
class EdgeCutter {
  public:
    EdgeCutter(const Scene& scene, const ScreenGrid& grid, double tolerance)
        : scene_(scene), grid_(grid), tolerance_(tolerance),
          tested_for_(scene.occluders.size(), -1) {}

    // Appends what is seen of edge `i`.
    void cut(int i, Pieces& seen);

  private:
    bool find_hidden(int i);
    bool test(int i, std::span<const int> bodies);
    void append_seen(int i, Pieces& seen);

    const Scene& scene_;
    const ScreenGrid& grid_;
    const double tolerance_;
    std::vector<int> tested_for_; // of each body: the last edge tested with it
    std::vector<Piece> hidden_;
};

void EdgeCutter::cut(int i, Pieces& seen) {
    if (find_hidden(i)) {
        append_seen(i, seen);
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
        if (tested_for == i || body == edge.own[0] || body == edge.own[1]) {
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

void EdgeCutter::append_seen(int i, Pieces& seen) {
    const double joint = tolerance_ / length_of(scene_.edges[static_cast<std::size_t>(i)]);
    std::sort(hidden_.begin(), hidden_.end(),
              [](const Piece& p, const Piece& q) { return p.from < q.from; });
    double seen_from = 0.0;
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
            seen.push_back({i, {seen_from, hidden.from}});
        }
        seen_from = hidden.to;
    }
    if (1.0 - seen_from > joint || seen_from <= 0.0) {
        seen.push_back({i, {seen_from, 1.0}});
    }
}

// Shares the edges among threads in blocks; the pieces of every block are kept apart, so that their
// order does not depend on who made them.
class Workshop {
  public:
    Workshop(const Scene& scene, double tolerance)
        : scene_(scene), grid_(scene), tolerance_(tolerance),
          blocks_((scene.edges.size() + edges_a_block - 1) / edges_a_block) {}

    std::optional<Pieces> run(int threads, const Progress& progress);

  private:
    static constexpr std::size_t edges_a_block = 256;

    void work(const Progress& progress);
    void cut_block(EdgeCutter& cutter, std::size_t block);

    const Scene& scene_;
    const ScreenGrid grid_;
    const double tolerance_;
    std::vector<Pieces> blocks_;
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
    EdgeCutter cutter(scene_, grid_, tolerance_);
    for (std::size_t block = next_++; block < blocks_.size() && !stopped_; block = next_++) {
        cut_block(cutter, block);
        if (progress &&
            !progress(static_cast<double>(block + 1) / static_cast<double>(blocks_.size()))) {
            stopped_ = true;
        }
    }
}

std::optional<Pieces> Workshop::run(int threads, const Progress& progress) {
    std::vector<std::thread> helpers;
    try {
        for (int i = 1; i < threads; ++i) {
            helpers.emplace_back([this] { work({}); });
        }
    } catch (const std::system_error&) {
        // No more threads to be had: those that are there do the work.
    }
    work(progress);
    for (std::thread& helper : helpers) {
        helper.join();
    }
    if (stopped_) {
        return std::nullopt;
    }
    Pieces pieces;
    for (const Pieces& block : blocks_) {
        pieces.insert(pieces.end(), block.begin(), block.end());
    }
    return pieces;
}

} // namespace

std::optional<std::vector<SeenPiece>> seen_pieces(const Scene& scene, double tolerance, int threads,
                                                  const Progress& progress) {
    return Workshop(scene, tolerance).run(threads, progress);
}

} // namespace kigumi::hidden_line
