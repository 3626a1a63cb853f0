// Solving with the factor.
#include "solver/sparse/cholesky.h"

#include <algorithm>

namespace frameslv {

namespace {

// Columns of which the triangle is solved by itself, the rows below by the kernels.
constexpr size_t triangle = 16;

void lower_triangle(const double* l, size_t ld, size_t n, double* x) {
    for (size_t j = 0; j < n; j++) {
        x[j] /= l[j * ld + j];
        for (size_t i = j + 1; i < n; i++)
            x[i] -= l[j * ld + i] * x[j];
    }
}

void upper_triangle(const double* l, size_t ld, size_t n, double* x) {
    for (size_t j = n; j-- > 0;) {
        for (size_t i = j + 1; i < n; i++)
            x[j] -= l[j * ld + i] * x[i];
        x[j] /= l[j * ld + j];
    }
}

// What does the work for one vector, or for a block of them, whose numbers of one unknown stand
// together.
struct Steps {
    decltype(Kernels::Block::solve_triangles) lower, upper;
    decltype(Kernels::subtract_multiple) subtract_multiple, subtract_transposed;
};

template <size_t width> Steps steps() {
    const Kernels& k = kernels();
    if (width == 1)
        return {lower_triangle, upper_triangle, k.subtract_multiple, k.subtract_transposed};
    const Kernels::Block& block = width == Kernels::block ? k.narrow : k.wide;
    return {block.solve_triangles, block.solve_transposed_triangles, block.subtract_multiples,
            block.subtract_transposeds};
}

} // namespace

template <size_t width>
void Cholesky::lower_front(int f, std::span<double> x, Worker& worker) const {
    const Front& own = front(f);
    const size_t k = static_cast<size_t>(own.columns);
    const size_t height = own.height();
    const size_t start = static_cast<size_t>(symbolic_.offset[static_cast<size_t>(own.first)]);
    worker.vector.assign(height * width, 0.0);
    double* y = worker.vector.data();
    double* own_x = x.data() + start * width;
    std::copy_n(own_x, k * width, y);
    set_positions(f, worker);
    for (const int child : own.children) {
        const double* from = handed_up_.data() + front(child).below_start * width;
        for (const Run& run : runs_of(child, worker))
            for (size_t i = 0; i < run.count * width; i++)
                y[run.to * width + i] += from[run.from * width + i];
    }
    const Steps step = steps<width>();
    for (size_t j = 0; j < k; j += triangle) {
        const size_t n = std::min(triangle, k - j);
        const double* l = panel(f) + j * height + j;
        step.lower(l, height, n, y + j * width);
        step.subtract_multiple(l + n, height, height - j - n, n, y + j * width,
                               y + (j + n) * width);
    }
    std::copy_n(y, k * width, own_x);
    std::copy(y + k * width, y + height * width, handed_up_.data() + own.below_start * width);
}

template <size_t width>
void Cholesky::upper_front(int f, std::span<double> x, Worker& worker) const {
    const Front& own = front(f);
    const size_t k = static_cast<size_t>(own.columns);
    const size_t height = own.height();
    const size_t start = static_cast<size_t>(symbolic_.offset[static_cast<size_t>(own.first)]);
    worker.vector.resize(height * width);
    double* y = worker.vector.data();
    double* own_x = x.data() + start * width;
    std::copy_n(own_x, k * width, y);
    double* to = y + k * width;
    for (size_t i = own.row_start; i < own.row_end; i++) {
        const size_t place = static_cast<size_t>(symbolic_.rows[i]);
        const auto at = [&](size_t p) {
            return x.data() + static_cast<size_t>(symbolic_.offset[p]) * width;
        };
        to = std::copy(at(place), at(place + 1), to);
    }
    const Steps step = steps<width>();
    for (size_t j = (k - 1) / triangle * triangle; j < k; j -= triangle) {
        const size_t n = std::min(triangle, k - j);
        const double* l = panel(f) + j * height + j;
        step.subtract_transposed(l + n, height, height - j - n, n, y + (j + n) * width,
                                 y + j * width);
        step.upper(l, height, n, y + j * width);
    }
    std::copy_n(y, k * width, own_x);
}

template <size_t width> void Cholesky::solve_lower_as(std::span<double> x) const {
    handed_up_.resize(std::max(handed_up_.size(), symbolic_.below_total * width));
    std::atomic<size_t> next{0};
    team_->run([&](int id) {
        Worker& worker = workers_[static_cast<size_t>(id)];
        for (size_t i = next++; i < tasks_.subtrees.size(); i = next++)
            for (int f = tasks_.subtrees[i].first; f <= tasks_.subtrees[i].root; f++)
                lower_front<width>(f, x, worker);
    });
    for (const int f : tasks_.top)
        lower_front<width>(f, x, workers_[0]);
}

template <size_t width> void Cholesky::solve_upper_as(std::span<double> x) const {
    for (size_t i = tasks_.top.size(); i-- > 0;)
        upper_front<width>(tasks_.top[i], x, workers_[0]);
    std::atomic<size_t> next{0};
    team_->run([&](int id) {
        Worker& worker = workers_[static_cast<size_t>(id)];
        for (size_t i = next++; i < tasks_.subtrees.size(); i = next++)
            for (int f = tasks_.subtrees[i].root; f >= tasks_.subtrees[i].first; f--)
                upper_front<width>(f, x, worker);
    });
}

void Cholesky::solve_lower(std::span<double> x) const {
    solve_lower_as<1>(x);
}

void Cholesky::solve_upper(std::span<double> x) const {
    solve_upper_as<1>(x);
}

void Cholesky::solve_block(std::span<double> x) const {
    solve_lower_as<Kernels::block>(x);
    solve_upper_as<Kernels::block>(x);
}

void Cholesky::solve_wide_block(std::span<double> x) const {
    solve_lower_as<Kernels::wide_block>(x);
    solve_upper_as<Kernels::wide_block>(x);
}

} // namespace frameslv
