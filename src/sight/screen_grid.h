// Finds the bodies that lie over a line of the picture.
#pragma once

#include "sight/sight_scene.h"

#include <algorithm>

namespace kigumi::hidden_line {

// A grid over the picture whose rows and columns each hold as many edges, so that a crowd in the
// distance is divided as well as what stands near. Every cell lists the bodies whose outline
// touches it, the nearest first.
class ScreenGrid {
  public:
    explicit ScreenGrid(const Scene& scene);

    // Calls visit(bodies) for the cells that the line passes through until it returns false; a
    // body can lie in many of them.
    template <class Visit> void for_cells(const SightLine& line, Visit visit) const {
        for_rows(line, [&](int row, double x1, double x2) {
            const int last = column_of(std::max(x1, x2));
            for (int column = column_of(std::min(x1, x2)); column <= last; ++column) {
                if (!visit(bodies_in(row, column))) {
                    return false;
                }
            }
            return true;
        });
    }

  private:
    // The columns that a body covers in a row.
    struct Run {
        int body, row, first, last;
    };

    int row_of(double y) const;
    int column_of(double x) const;
    std::span<const int> bodies_in(int row, int column) const {
        const std::size_t cell = static_cast<std::size_t>(row * side_ + column);
        return {bodies_.data() + start_[cell], start_[cell + 1] - start_[cell]};
    }
    // Calls part(row, x1, x2) with the ends of the line's part in each row that it passes.
    template <class Part> void for_rows(const SightLine& line, Part part) const {
        const auto [low, high] =
            std::minmax(line.from, line.to, [](SightPoint p, SightPoint q) { return p.y < q.y; });
        const int first = row_of(low.y);
        const int last = row_of(high.y);
        const double slope = first < last ? (high.x - low.x) / (high.y - low.y) : 0.0;
        double x = low.x;
        for (int row = first; row <= last; ++row) {
            const double end = row < last
                                   ? low.x + (rows_[static_cast<std::size_t>(row)] - low.y) * slope
                                   : high.x;
            if (!part(row, x, end)) {
                return;
            }
            x = end;
        }
    }
    void divide(const Scene& scene);
    std::vector<Run> runs_of(const Scene& scene) const;
    void list_bodies(const std::vector<Run>& runs);

    int side_;                           // rows and columns
    std::vector<double> rows_, columns_; // inner boundaries
    std::vector<std::size_t> start_;
    std::vector<int> bodies_;
};

} // namespace kigumi::hidden_line
