#include "solver/sparse/cholesky.h"

#include <algorithm>
#include <cstring>

namespace frameslv {

namespace {

// Columns of a child that one thread adds at a time.
constexpr size_t added_columns = 64;

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
        worker.stack_numbers = 0;
    });
    for (const int f : tasks_.top)
        if (!failed_)
            do_top(f);
    return !failed_;
}

void Cholesky::do_subtree(const Tasks::Subtree& subtree, Worker& worker, size_t id) {
    if (worker.stack_numbers < subtree.stack) {
        worker.stack = Pages(subtree.stack + Kernels::slack);
        worker.stack_numbers = subtree.stack;
    }
    DenseEliminator dense(nullptr, buffers_, id);
    double* stack = worker.stack.data();
    size_t used = 0;
    Pages& kept = kept_[static_cast<size_t>(subtree.root)];
    const size_t left = static_cast<size_t>(front(subtree.root).below);
    if (left > 0)
        kept = Pages(left * left + Kernels::slack, Pages::Size::small);
    for (int f = subtree.first; f <= subtree.root && !failed_; f++) {
        const size_t below = static_cast<size_t>(front(f).below);
        double* update = f == subtree.root ? kept.data() : stack + used;
        for (size_t j = 0; j < below && f != subtree.root; j++)
            std::memset(update + j * below + j, 0, (below - j) * sizeof(double));
        update_[static_cast<size_t>(f)] = update;
        set_positions(f, worker);
        add_members(f, worker);
        size_t popped = 0;
        for (const int child : front(f).children) {
            const size_t rows = static_cast<size_t>(front(child).below);
            add_update(child, f, runs_of(child, worker), 0, rows, update);
            popped += rows * rows;
        }
        if (popped > 0 && f != subtree.root) {
            update_[static_cast<size_t>(f)] = update - popped;
            std::memmove(update - popped, update, below * below * sizeof(double));
        }
        used += below * below - popped;
        if (!eliminate(f, dense))
            failed_ = true;
    }
}

void Cholesky::do_top(int f) {
    const size_t below = static_cast<size_t>(front(f).below);
    Pages& update = kept_[static_cast<size_t>(f)];
    update = Pages(below * below + Kernels::slack);
    update_[static_cast<size_t>(f)] = update.data();
    set_positions(f, workers_[0]);
    add_members(f, workers_[0]);
    for (const int child : front(f).children) {
        const size_t rows = static_cast<size_t>(front(child).below);
        const std::vector<Run> runs = runs_of(child, workers_[0]);
        std::atomic<size_t> next{0};
        team_->run([&](int) {
            for (size_t j = next.fetch_add(added_columns); j < rows;
                 j = next.fetch_add(added_columns))
                add_update(child, f, runs, j, std::min(rows, j + added_columns), update.data());
        });
        kept_[static_cast<size_t>(child)] = Pages();
    }
    DenseEliminator dense(team_.get(), buffers_, 0);
    if (!eliminate(f, dense))
        failed_ = true;
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

// Adds the columns `first` to `last` of the child's update.
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
            const double* source = from + j * rows;
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
