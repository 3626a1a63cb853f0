#include "sight/screen_grid.h"

#include <cmath>
#include <limits>
#include <numeric>

namespace kigumi::hidden_line {

namespace {

// Cells a body: below it the lists grow long, above it the bodies lie in too many cells. Measured
// on floors of 1000 to 10000 members.
constexpr double cells_a_body = 2.0;
constexpr int most_rows = 512;

// The inner boundaries that divide the values into `parts` parts of as many each.
std::vector<double> quantiles(std::vector<double>& values, int parts) {
    std::vector<double> boundaries;
    std::sort(values.begin(), values.end());
    const std::size_t count = values.size();
    for (int i = 1; i < parts && count > 0; ++i) {
        boundaries.push_back(
            values[count * static_cast<std::size_t>(i) / static_cast<std::size_t>(parts)]);
    }
    return boundaries;
}

int position_in(const std::vector<double>& boundaries, double value) {
    return static_cast<int>(std::upper_bound(boundaries.begin(), boundaries.end(), value) -
                            boundaries.begin());
}

} // namespace

ScreenGrid::ScreenGrid(const Scene& scene) {
    const double cells = cells_a_body * static_cast<double>(scene.occluders.size());
    side_ = std::clamp(static_cast<int>(std::sqrt(cells)), 1, most_rows);
    divide(scene);
    list_bodies(runs_of(scene));
}

int ScreenGrid::row_of(double y) const {
    return position_in(rows_, y);
}

int ScreenGrid::column_of(double x) const {
    return position_in(columns_, x);
}

void ScreenGrid::divide(const Scene& scene) {
    constexpr std::size_t samples_a_part = 16;
    const std::size_t wanted = samples_a_part * static_cast<std::size_t>(side_);
    const std::size_t step = std::max<std::size_t>(1, scene.edges.size() / wanted);
    std::vector<double> xs, ys;
    for (std::size_t i = 0; i < scene.edges.size(); i += step) {
        const SightPoint a = sight_point(scene.edges[i].a);
        const SightPoint b = sight_point(scene.edges[i].b);
        xs.push_back(0.5 * (a.x + b.x));
        ys.push_back(0.5 * (a.y + b.y));
    }
    rows_ = quantiles(ys, side_);
    columns_ = quantiles(xs, side_);
    side_ = static_cast<int>(rows_.size()) + 1;
}

std::vector<ScreenGrid::Run> ScreenGrid::runs_of(const Scene& scene) const {
    std::vector<int> order(scene.occluders.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&scene](int i, int j) {
        return scene.occluders[static_cast<std::size_t>(i)].nearest <
               scene.occluders[static_cast<std::size_t>(j)].nearest;
    });
    struct Range {
        double low = std::numeric_limits<double>::max();
        double high = std::numeric_limits<double>::lowest();
    };
    std::vector<Range> range(static_cast<std::size_t>(side_));
    std::vector<Run> runs;
    for (const int body : order) {
        const Occluder& occluder = scene.occluders[static_cast<std::size_t>(body)];
        int first = side_;
        int last = -1;
        for (int i = 0; i < occluder.n_lines; ++i) {
            const SightLine& line =
                scene.outlines[static_cast<std::size_t>(occluder.first_line + i)];
            for_rows(line, [&](int row, double x1, double x2) {
                Range& r = range[static_cast<std::size_t>(row)];
                r.low = std::min({r.low, x1, x2});
                r.high = std::max({r.high, x1, x2});
                first = std::min(first, row);
                last = std::max(last, row);
                return true;
            });
        }
        for (int row = first; row <= last; ++row) {
            Range& r = range[static_cast<std::size_t>(row)];
            runs.push_back({body, row, column_of(r.low), column_of(r.high)});
            r = Range{};
        }
    }
    return runs;
}

void ScreenGrid::list_bodies(const std::vector<Run>& runs) {
    start_.assign(static_cast<std::size_t>(side_ * side_) + 1, 0);
    const auto cell = [this](const Run& run, int column) {
        return static_cast<std::size_t>(run.row * side_ + column);
    };
    for (const Run& run : runs) {
        for (int column = run.first; column <= run.last; ++column) {
            ++start_[cell(run, column) + 1];
        }
    }
    std::partial_sum(start_.begin(), start_.end(), start_.begin());
    bodies_.resize(start_.back());
    std::vector<std::size_t> at(start_.begin(), start_.end() - 1);
    for (const Run& run : runs) {
        for (int column = run.first; column <= run.last; ++column) {
            bodies_[at[cell(run, column)]++] = run.body;
        }
    }
}

} // namespace kigumi::hidden_line
