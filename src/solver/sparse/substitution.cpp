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

} // namespace

void Cholesky::lower_front(int f, std::span<double> x, Worker& worker) const {
    const Front& own = front(f);
    const size_t k = static_cast<size_t>(own.columns);
    const size_t height = own.height();
    const size_t start = static_cast<size_t>(symbolic_.offset[static_cast<size_t>(own.first)]);
    worker.vector.assign(height, 0.0);
    double* y = worker.vector.data();
    std::copy_n(x.begin() + static_cast<std::ptrdiff_t>(start), k, y);
    set_positions(f, worker);
    for (const int child : own.children) {
        const double* from = handed_up_.data() + front(child).below_start;
        for (const Run& run : runs_of(child, worker))
            for (size_t i = 0; i < run.count; i++)
                y[run.to + i] += from[run.from + i];
    }
    for (size_t j = 0; j < k; j += triangle) {
        const size_t n = std::min(triangle, k - j);
        const double* l = panel(f) + j * height + j;
        lower_triangle(l, height, n, y + j);
        kernels().subtract_multiple(l + n, height, height - j - n, n, y + j, y + j + n);
    }
    std::copy_n(y, k, x.begin() + static_cast<std::ptrdiff_t>(start));
    std::copy(y + k, y + height, handed_up_.begin() + static_cast<std::ptrdiff_t>(own.below_start));
}

void Cholesky::upper_front(int f, std::span<double> x, Worker& worker) const {
    const Front& own = front(f);
    const size_t k = static_cast<size_t>(own.columns);
    const size_t height = own.height();
    const size_t start = static_cast<size_t>(symbolic_.offset[static_cast<size_t>(own.first)]);
    worker.vector.resize(height);
    double* y = worker.vector.data();
    std::copy_n(x.begin() + static_cast<std::ptrdiff_t>(start), k, y);
    double* to = y + k;
    for (size_t i = own.row_start; i < own.row_end; i++) {
        const size_t place = static_cast<size_t>(symbolic_.rows[i]);
        to = std::copy(x.begin() + symbolic_.offset[place], x.begin() + symbolic_.offset[place + 1],
                       to);
    }
    for (size_t j = (k - 1) / triangle * triangle; j < k; j -= triangle) {
        const size_t n = std::min(triangle, k - j);
        const double* l = panel(f) + j * height + j;
        kernels().subtract_transposed(l + n, height, height - j - n, n, y + j + n, y + j);
        upper_triangle(l, height, n, y + j);
    }
    std::copy_n(y, k, x.begin() + static_cast<std::ptrdiff_t>(start));
}

void Cholesky::solve_lower(std::span<double> x) const {
    handed_up_.resize(symbolic_.below_total);
    std::atomic<size_t> next{0};
    team_->run([&](int id) {
        Worker& worker = workers_[static_cast<size_t>(id)];
        for (size_t i = next++; i < tasks_.subtrees.size(); i = next++)
            for (int f = tasks_.subtrees[i].first; f <= tasks_.subtrees[i].root; f++)
                lower_front(f, x, worker);
    });
    for (const int f : tasks_.top)
        lower_front(f, x, workers_[0]);
}

void Cholesky::solve_upper(std::span<double> x) const {
    for (size_t i = tasks_.top.size(); i-- > 0;)
        upper_front(tasks_.top[i], x, workers_[0]);
    std::atomic<size_t> next{0};
    team_->run([&](int id) {
        Worker& worker = workers_[static_cast<size_t>(id)];
        for (size_t i = next++; i < tasks_.subtrees.size(); i = next++)
            for (int f = tasks_.subtrees[i].root; f >= tasks_.subtrees[i].first; f--)
                upper_front(f, x, worker);
    });
}

} // namespace frameslv
