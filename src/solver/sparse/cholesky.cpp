#include "solver/sparse/cholesky.h"

#include <algorithm>
#include <cstring>

namespace frameslv {

namespace {

// Columns of a child that one thread adds at a time.
constexpr size_t added_columns = 64;

// Updates from here on get pages of their own, given back when they have been packed.
constexpr size_t large_update = size_t{1} << 22; // numbers

// The lower triangle of a square, column after column; where element (0, j) would stand.
size_t packed_column(size_t rows, size_t j) {
    return j * rows - j * (j + 1) / 2;
}

void pack_lower(const double* square, size_t rows, double* to) {
    for (size_t j = 0; j < rows; j++)
        std::memcpy(to + packed_column(rows, j) + j, square + j * rows + j,
                    (rows - j) * sizeof(double));
}

// Writes to every page of a fresh panel once. Adding to it would read it first, and a page that is
// read before it is written costs two faults.
void touch(double* panel, size_t numbers) {
    constexpr size_t page = 4096 / sizeof(double);
    for (size_t i = 0; i < numbers; i += page)
        panel[i] = 0.0;
}

} // namespace

Cholesky::Cholesky(Symbolic symbolic, std::vector<Edge> ends, std::vector<FreeDofs> free,
                   int most_threads)
    : symbolic_(std::move(symbolic)), ends_(std::move(ends)), free_(std::move(free)),
      place_(symbolic_.order.size()),
      team_(std::make_unique<Team>(useful_threads(most_threads, symbolic_.flops))),
      update_(symbolic_.fronts.size(), nullptr), kept_(symbolic_.fronts.size()),
      pivots_(static_cast<size_t>(symbolic_.offset.back()), 0.0),
      workers_(static_cast<size_t>(team_->size())), buffers_(workers_.size()) {
    for (size_t k = 0; k < place_.size(); k++)
        place_[static_cast<size_t>(symbolic_.order[k])] = static_cast<int>(k);
    tasks_ = share_out(symbolic_, team_->size());
    sort_members();
    panels_ = Pages(symbolic_.panel_numbers);
    for (Worker& worker : workers_)
        worker.position.resize(place_.size());
}

// The members by the place at which the first of their ends is eliminated.
void Cholesky::sort_members() {
    const auto place_of = [this](const Edge& ends) {
        const auto& [a, b] = ends;
        if (a < 0 || b < 0)
            return a < 0 && b < 0 ? -1 : place_[static_cast<size_t>(std::max(a, b))];
        return std::min(place_[static_cast<size_t>(a)], place_[static_cast<size_t>(b)]);
    };
    member_start_.assign(place_.size() + 1, 0);
    for (const Edge& ends : ends_)
        if (const int place = place_of(ends); place >= 0)
            member_start_[static_cast<size_t>(place) + 1]++;
    for (size_t k = 0; k < place_.size(); k++)
        member_start_[k + 1] += member_start_[k];
    members_.resize(member_start_.back());
    std::vector<size_t> fill(member_start_.begin(), member_start_.end() - 1);
    for (size_t i = 0; i < ends_.size(); i++)
        if (const int place = place_of(ends_[i]); place >= 0)
            members_[fill[static_cast<size_t>(place)]++] = i;
}

bool Cholesky::factorise(const Blocks& blocks, std::span<const double> scale, double shift) {
    blocks_ = &blocks;
    scale_ = scale;
    shift_ = shift;
    failed_ = false;
    std::atomic<size_t> next{0};
    if (used_)
        std::memset(panels_.data(), 0, factor_bytes());
    used_ = true;
    team_->run([&](int id) {
        Worker& worker = workers_[static_cast<size_t>(id)];
        for (size_t i = next++; i < tasks_.subtrees.size() && !failed_; i = next++)
            do_subtree(tasks_.subtrees[i], worker, static_cast<size_t>(id));
        worker.stack = Pages();
        worker.square = Pages();
        worker.stack_numbers = worker.square_numbers = 0;
    });
    for (const int f : tasks_.top)
        if (!failed_)
            do_top(f);
    return !failed_;
}

// A square of below x below for an update, its lower triangle zero: the worker's, which holds up to
// `most` numbers, or for a large one `own`.
double* Cholesky::square_for(size_t below, size_t most, Worker& worker, Pages& own) const {
    if (below * below >= large_update) {
        own = Pages(below * below + Kernels::slack);
        return own.data();
    }
    if (worker.square_numbers < most) {
        worker.square = Pages(most + Kernels::slack);
        worker.square_numbers = most;
    }
    double* square = worker.square.data();
    for (size_t j = 0; j < below; j++)
        std::memset(square + j * below + j, 0, (below - j) * sizeof(double));
    return square;
}

void Cholesky::do_subtree(const Tasks::Subtree& subtree, Worker& worker, size_t id) {
    if (worker.stack_numbers < subtree.stack) {
        worker.stack = Pages(subtree.stack);
        worker.stack_numbers = subtree.stack;
    }
    DenseEliminator dense(nullptr, buffers_, id);
    double* stack = worker.stack.data();
    size_t used = 0;
    for (int f = subtree.first; f <= subtree.root && !failed_; f++) {
        const size_t below = static_cast<size_t>(front(f).below);
        Pages own;
        double* update = square_for(below, std::min(subtree.square, large_update), worker, own);
        update_[static_cast<size_t>(f)] = update;
        set_positions(f, worker);
        add_members(f, worker);
        for (const int child : front(f).children) {
            const size_t rows = static_cast<size_t>(front(child).below);
            add_update(child, f, runs_of(child, worker), 0, rows, update);
            used -= packed_numbers(rows);
        }
        if (!eliminate(f, dense))
            failed_ = true;
        double* packed = stack + used;
        if (f == subtree.root) {
            kept_[static_cast<size_t>(f)] = Pages(packed_numbers(below), Pages::Size::small);
            packed = kept_[static_cast<size_t>(f)].data();
        }
        pack_lower(update, below, packed);
        update_[static_cast<size_t>(f)] = packed;
        used += packed_numbers(below);
    }
}

void Cholesky::do_top(int f) {
    const size_t below = static_cast<size_t>(front(f).below);
    Pages square(below * below + Kernels::slack);
    update_[static_cast<size_t>(f)] = square.data();
    set_positions(f, workers_[0]);
    add_members(f, workers_[0]);
    for (const int child : front(f).children) {
        const size_t rows = static_cast<size_t>(front(child).below);
        const std::vector<Run> runs = runs_of(child, workers_[0]);
        std::atomic<size_t> next{0};
        team_->run([&](int) {
            for (size_t j = next.fetch_add(added_columns); j < rows;
                 j = next.fetch_add(added_columns))
                add_update(child, f, runs, j, std::min(rows, j + added_columns), square.data());
        });
        kept_[static_cast<size_t>(child)] = Pages();
    }
    DenseEliminator dense(team_.get(), buffers_, 0);
    if (!eliminate(f, dense))
        failed_ = true;
    kept_[static_cast<size_t>(f)] = Pages(packed_numbers(below));
    double* packed = kept_[static_cast<size_t>(f)].data();
    pack_lower(square.data(), below, packed);
    update_[static_cast<size_t>(f)] = packed;
}

// One thread fills panel after panel; several, at most all panels with each thread's stack and
// square at their largest, and the updates of the subtrees' roots.
size_t Cholesky::needed_bytes() const {
    size_t used = 0, one = 0, stack = 0, square = 0, kept = 0;
    for (const Front& own : symbolic_.fronts) {
        const size_t below = static_cast<size_t>(own.below);
        const size_t panels = own.panel + own.height() * static_cast<size_t>(own.columns);
        one = std::max(one, panels + used + below * below);
        for (const int child : own.children)
            used -= packed_numbers(static_cast<size_t>(front(child).below));
        used += packed_numbers(below);
    }
    for (const Tasks::Subtree& subtree : tasks_.subtrees) {
        stack = std::max(stack, subtree.stack);
        square = std::max(square, subtree.square);
        kept += packed_numbers(static_cast<size_t>(front(subtree.root).below));
    }
    for (const int f : tasks_.top)
        square = std::max(square, static_cast<size_t>(front(f).below) *
                                      static_cast<size_t>(front(f).below));
    const size_t threads = static_cast<size_t>(team_->size());
    const size_t several = symbolic_.panel_numbers + kept + threads * (stack + square);
    return (threads == 1 ? one : several) * sizeof(double);
}

bool Cholesky::eliminate(int f, DenseEliminator& dense) {
    const Front& own = front(f);
    if (shift_ > 0.0)
        for (size_t j = 0; j < static_cast<size_t>(own.columns); j++)
            panel(f)[j * own.height() + j] += shift_;
    return dense.eliminate(panel(f), static_cast<size_t>(own.columns),
                           update_[static_cast<size_t>(f)], static_cast<size_t>(own.below),
                           pivots_.data() + symbolic_.offset[static_cast<size_t>(own.first)]);
}

void Cholesky::set_positions(int f, Worker& worker) const {
    const Front& own = front(f);
    int at = 0;
    const auto set = [&](int place) {
        const size_t p = static_cast<size_t>(place);
        worker.position[p] = at;
        at += symbolic_.offset[p + 1] - symbolic_.offset[p];
    };
    for (int place = own.first; place < own.last; place++)
        set(place);
    for (size_t i = own.row_start; i < own.row_end; i++)
        set(symbolic_.rows[i]);
}

void Cholesky::add_members(int f, Worker& worker) {
    touch(panel(f), front(f).height() * static_cast<size_t>(front(f).columns));
    const size_t first = member_start_[static_cast<size_t>(front(f).first)];
    const size_t last = member_start_[static_cast<size_t>(front(f).last)];
    StiffnessBlocks blocks;
    for (size_t i = first; i < last; i++) {
        const auto [a, b] = ends_[members_[i]];
        (*blocks_)(members_[i], blocks);
        const int place_a = a < 0 ? -1 : place_[static_cast<size_t>(a)];
        const int place_b = b < 0 ? -1 : place_[static_cast<size_t>(b)];
        if (a >= 0)
            add_block(f, worker, static_cast<size_t>(a), static_cast<size_t>(a), blocks.ii);
        if (b >= 0)
            add_block(f, worker, static_cast<size_t>(b), static_cast<size_t>(b), blocks.jj);
        if (a < 0 || b < 0)
            continue;
        if (place_a > place_b)
            add_block(f, worker, static_cast<size_t>(a), static_cast<size_t>(b), blocks.ij);
        else
            add_block(f, worker, static_cast<size_t>(b), static_cast<size_t>(a),
                      blocks.ij.transpose());
    }
}

// Columns of a vertex that is eliminated in a later front lie in this front's update.
void Cholesky::add_block(int f, const Worker& worker, size_t row_vertex, size_t column_vertex,
                         const Matrix6& block) {
    const Front& own = front(f);
    const size_t row_place = static_cast<size_t>(place_[row_vertex]);
    const size_t column_place = static_cast<size_t>(place_[column_vertex]);
    const FreeDofs& rows = free_[row_vertex];
    const FreeDofs& columns = free_[column_vertex];
    const double* row_scale = scale_.data() + symbolic_.offset[row_place];
    const double* column_scale = scale_.data() + symbolic_.offset[column_place];
    const size_t at_row = static_cast<size_t>(worker.position[row_place]);
    const size_t at_column = static_cast<size_t>(worker.position[column_place]);
    const size_t k = static_cast<size_t>(own.columns);
    const size_t below = static_cast<size_t>(own.below);
    double* to = at_column < k
                     ? panel(f) + at_column * own.height() + at_row
                     : update_[static_cast<size_t>(f)] + (at_column - k) * below + (at_row - k);
    const size_t ld = at_column < k ? own.height() : below;
    for (int c = 0; c < columns.count; c++)
        for (int r = 0; r < rows.count; r++)
            to[static_cast<size_t>(c) * ld + static_cast<size_t>(r)] +=
                block(rows.dof[static_cast<size_t>(r)], columns.dof[static_cast<size_t>(c)]) *
                (row_scale[r] * column_scale[c]);
}

std::vector<Cholesky::Run> Cholesky::runs_of(int child, const Worker& worker) const {
    std::vector<Run> runs;
    const Front& own = front(child);
    size_t from = 0;
    for (size_t i = own.row_start; i < own.row_end; i++) {
        const size_t place = static_cast<size_t>(symbolic_.rows[i]);
        const size_t count =
            static_cast<size_t>(symbolic_.offset[place + 1] - symbolic_.offset[place]);
        const size_t to = static_cast<size_t>(worker.position[place]);
        if (!runs.empty() && runs.back().to + runs.back().count == to)
            runs.back().count += count;
        else
            runs.push_back({from, to, count});
        from += count;
    }
    return runs;
}

// Adds the columns `first` to `last` of the child's update, which is packed.
void Cholesky::add_update(int child, int f, const std::vector<Run>& runs, size_t first, size_t last,
                          double* update) const {
    const Front& own = front(f);
    const size_t rows = static_cast<size_t>(front(child).below);
    const size_t k = static_cast<size_t>(own.columns);
    const size_t below = static_cast<size_t>(own.below);
    const double* from = update_[static_cast<size_t>(child)];
    for (auto run = runs.begin(); run != runs.end(); ++run) {
        const size_t start = std::max(first, run->from);
        const size_t end = std::min(last, run->from + run->count);
        for (size_t j = start; j < end; j++) {
            const size_t column = run->to + (j - run->from);
            // Where row 0 of the front would stand.
            double* to =
                column < k ? panel(f) + column * own.height() : update + (column - k) * below - k;
            const double* source = from + packed_column(rows, j);
            const size_t done = j - run->from;
            for (size_t i = done; i < run->count; i++)
                to[run->to + i] += source[run->from + i];
            for (auto other = run + 1; other != runs.end(); ++other)
                for (size_t i = 0; i < other->count; i++)
                    to[other->to + i] += source[other->from + i];
        }
    }
}

} // namespace frameslv
