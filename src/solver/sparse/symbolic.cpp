#include "solver/sparse/symbolic.h"

#include "solver/sparse/dissection.h"
#include "solver/sparse/kernels.h"
#include "solver/sparse/minimum_degree.h"

#include <algorithm>
#include <numeric>

namespace frameslv {

namespace {

// Up to this many vertices minimum degree fills no more than dissection does.
constexpr int small_graph = 1000;

// Fronts are merged into their parents when the merged panel has at most `columns` columns and at
// most this share of stored zeros; the measured optimum is flat around these.
struct Relaxation {
    int columns;
    double zeros;
};
constexpr Relaxation relaxations[] = {{24, 0.8}, {96, 0.25}, {192, 0.1}, {1 << 30, 0.03}};

// A group of columns with one pattern below them.
struct Super {
    std::vector<int> columns; // places, ascending
    std::vector<int> rows;    // places below, ascending
    int parent = -1;
    double columns_wide = 0.0; // in unknowns
    double rows_high = 0.0;
    double zeros = 0.0; // stored in its panel
    bool merged = false;
};

class Analysis {
  public:
    Analysis(const Graph& graph, const std::vector<int>& unknowns, const std::vector<int>& order)
        : graph_(graph), unknowns_(unknowns), order_(order), n_(order.size()) {}

    Symbolic run() {
        make_tree();
        put_in_postorder();
        collect_supers();
        merge_supers();
        order_children();
        return lay_out();
    }

  private:
    void make_tree();
    void put_in_postorder();
    void collect_supers();
    bool continues(int place, int super) const;
    void start_super(int place);
    void merge_supers();
    bool worth_merging(const Super& child, const Super& parent) const;
    void merge(Super& child, Super& parent);
    void order_children();
    Symbolic lay_out();
    void count(Symbolic& symbolic) const;

    int wide(int place) const { return unknowns_[order_[place]]; }
    void rank_vertices() {
        rank_.resize(n_);
        for (size_t k = 0; k < n_; k++)
            rank_[order_[k]] = static_cast<int>(k);
    }

    const Graph& graph_;
    const std::vector<int>& unknowns_;
    std::vector<int> order_;
    size_t n_;
    std::vector<int> rank_;   // place of each vertex
    std::vector<int> parent_; // of each place in the elimination tree, -1 at a root
    std::vector<Super> supers_;
    std::vector<int> super_of_; // of each place
    std::vector<int> mark_;     // the super in whose rows a place was seen last
    std::vector<std::vector<int>> children_;
    std::vector<int> sequence_; // supers, children first
};

// J. W. H. Liu, The role of elimination trees in sparse factorization, SIAM J. Matrix Anal. Appl.
// 11 (1990), algorithm 4.2, with path compression.
void Analysis::make_tree() {
    rank_vertices();
    parent_.assign(n_, -1);
    std::vector<int> ancestor(n_, -1);
    for (size_t k = 0; k < n_; k++)
        for (const int vertex : graph_.neighbours(order_[k])) {
            int i = rank_[vertex];
            while (i >= 0 && i < static_cast<int>(k)) {
                const int next = ancestor[i];
                ancestor[i] = static_cast<int>(k);
                if (next < 0)
                    parent_[i] = static_cast<int>(k);
                i = next;
            }
        }
}

void Analysis::put_in_postorder() {
    std::vector<int> first(n_, -1), next(n_, -1), roots, sequence, stack;
    for (size_t k = n_; k-- > 0;) {
        if (parent_[k] < 0) {
            roots.push_back(static_cast<int>(k));
            continue;
        }
        next[k] = first[parent_[k]];
        first[parent_[k]] = static_cast<int>(k);
    }
    sequence.reserve(n_);
    stack = roots;
    while (!stack.empty()) {
        const int k = stack.back();
        const int child = first[k];
        if (child < 0) {
            sequence.push_back(k);
            stack.pop_back();
        } else {
            first[k] = next[child];
            stack.push_back(child);
        }
    }
    std::vector<int> place(n_), order(n_), parent(n_);
    for (size_t k = 0; k < n_; k++)
        place[sequence[k]] = static_cast<int>(k);
    for (size_t k = 0; k < n_; k++) {
        order[k] = order_[sequence[k]];
        const int above = parent_[sequence[k]];
        parent[k] = above < 0 ? -1 : place[above];
    }
    order_ = std::move(order);
    parent_ = std::move(parent);
    rank_vertices();
}

// Whether column `place` has just the pattern that `super`, its only child, leaves below.
bool Analysis::continues(int place, int super) const {
    for (const int vertex : graph_.neighbours(order_[place]))
        if (rank_[vertex] > place && mark_[rank_[vertex]] != super)
            return false;
    return true;
}

void Analysis::start_super(int place) {
    const int super = static_cast<int>(supers_.size());
    supers_.emplace_back();
    std::vector<int>& rows = supers_.back().rows;
    const auto see = [&](int row) {
        if (row > place && mark_[row] != super) {
            mark_[row] = super;
            rows.push_back(row);
        }
    };
    for (const int vertex : graph_.neighbours(order_[place]))
        see(rank_[vertex]);
    for (const int child : children_[place])
        for (const int row : supers_[child].rows)
            see(row);
    std::sort(rows.begin(), rows.end());
}

void Analysis::collect_supers() {
    super_of_.resize(n_);
    mark_.assign(n_, -1);
    children_.assign(n_, {}); // supers whose first row below is this place
    for (int place = 0; place < static_cast<int>(n_); place++) {
        const int last = place > 0 ? super_of_[place - 1] : -1;
        const bool only = children_[place].size() == 1 && children_[place][0] == last;
        if (!only || !continues(place, last))
            start_super(place);
        else
            supers_[last].rows.erase(supers_[last].rows.begin());
        const int own = only && static_cast<int>(supers_.size()) - 1 == last
                            ? last
                            : static_cast<int>(supers_.size()) - 1;
        super_of_[place] = own;
        Super& super = supers_[own];
        super.columns.push_back(place);
        super.columns_wide += wide(place);
        if (!super.rows.empty())
            children_[super.rows.front()].push_back(own);
    }
    for (Super& super : supers_) {
        super.parent = super.rows.empty() ? -1 : super_of_[super.rows.front()];
        for (const int row : super.rows)
            super.rows_high += wide(row);
    }
}

bool Analysis::worth_merging(const Super& child, const Super& parent) const {
    const double width = child.columns_wide + parent.columns_wide;
    const double zeros =
        child.zeros + parent.zeros +
        child.columns_wide * (parent.columns_wide + parent.rows_high - child.rows_high);
    const double size = width * (width + 1.0) / 2.0 + width * parent.rows_high;
    for (const auto& [columns, share] : relaxations)
        if (width <= columns)
            return zeros <= share * size;
    return false;
}

void Analysis::merge(Super& child, Super& parent) {
    parent.zeros += child.zeros +
                    child.columns_wide * (parent.columns_wide + parent.rows_high - child.rows_high);
    parent.columns_wide += child.columns_wide;
    const auto middle = static_cast<std::ptrdiff_t>(child.columns.size());
    child.columns.insert(child.columns.end(), parent.columns.begin(), parent.columns.end());
    std::inplace_merge(child.columns.begin(), child.columns.begin() + middle, child.columns.end());
    parent.columns = std::move(child.columns);
    child.merged = true;
    child.rows = {};
}

void Analysis::merge_supers() {
    children_.assign(supers_.size(), {});
    for (size_t s = 0; s < supers_.size(); s++)
        if (supers_[s].parent >= 0)
            children_[supers_[s].parent].push_back(static_cast<int>(s));
    for (size_t s = 0; s < supers_.size(); s++) {
        std::vector<int> kept;
        std::vector<int> offered = children_[s];
        std::stable_sort(offered.begin(), offered.end(), [this](int a, int b) {
            return supers_[a].rows_high > supers_[b].rows_high;
        });
        for (const int child : offered) {
            if (!worth_merging(supers_[child], supers_[s])) {
                kept.push_back(child);
                continue;
            }
            merge(supers_[child], supers_[s]);
            kept.insert(kept.end(), children_[child].begin(), children_[child].end());
        }
        children_[s] = std::move(kept);
    }
}

// Children in the order that keeps the stack of waiting updates lowest. J. W. H. Liu, On the
// storage requirement in the out-of-core multifrontal method for sparse factorization, ACM Trans.
// Math. Softw. 12 (1986).
void Analysis::order_children() {
    std::vector<double> peak(supers_.size(), 0.0);
    const auto update = [this](int s) { return supers_[s].rows_high * supers_[s].rows_high; };
    for (size_t s = 0; s < supers_.size(); s++) {
        if (supers_[s].merged)
            continue;
        std::vector<int>& children = children_[s];
        std::stable_sort(children.begin(), children.end(),
                         [&](int a, int b) { return peak[a] - update(a) > peak[b] - update(b); });
        double waiting = 0.0;
        for (const int child : children) {
            peak[s] = std::max(peak[s], waiting + peak[child]);
            waiting += update(child);
        }
        peak[s] = std::max(peak[s], waiting + update(static_cast<int>(s)));
    }
    std::vector<std::pair<int, size_t>> stack; // super, children done
    for (size_t root = 0; root < supers_.size(); root++) {
        if (supers_[root].merged || supers_[root].parent >= 0)
            continue;
        stack.emplace_back(static_cast<int>(root), 0);
        while (!stack.empty()) {
            auto& [super, done] = stack.back();
            if (done == children_[super].size()) {
                sequence_.push_back(super);
                stack.pop_back();
            } else {
                stack.emplace_back(children_[super][done++], 0);
            }
        }
    }
}

Symbolic Analysis::lay_out() {
    Symbolic symbolic;
    std::vector<int> place(n_), front_of(supers_.size());
    symbolic.order.reserve(n_);
    symbolic.offset.push_back(0);
    symbolic.fronts.resize(sequence_.size());
    for (size_t f = 0; f < sequence_.size(); f++) {
        const Super& super = supers_[sequence_[f]];
        Front& front = symbolic.fronts[f];
        front_of[sequence_[f]] = static_cast<int>(f);
        front.first = static_cast<int>(symbolic.order.size());
        for (const int column : super.columns) {
            place[column] = static_cast<int>(symbolic.order.size());
            symbolic.order.push_back(order_[column]);
            symbolic.offset.push_back(symbolic.offset.back() + wide(column));
        }
        front.last = static_cast<int>(symbolic.order.size());
    }
    for (size_t f = 0; f < sequence_.size(); f++) {
        const Super& super = supers_[sequence_[f]];
        Front& front = symbolic.fronts[f];
        for (const int child : children_[sequence_[f]]) {
            front.children.push_back(front_of[child]);
            symbolic.fronts[front_of[child]].parent = static_cast<int>(f);
        }
        front.row_start = symbolic.rows.size();
        for (const int row : super.rows)
            symbolic.rows.push_back(place[row]);
        front.row_end = symbolic.rows.size();
        std::sort(symbolic.rows.begin() + static_cast<std::ptrdiff_t>(front.row_start),
                  symbolic.rows.end());
    }
    count(symbolic);
    return symbolic;
}

void Analysis::count(Symbolic& symbolic) const {
    for (Front& front : symbolic.fronts) {
        front.columns = symbolic.offset[front.last] - symbolic.offset[front.first];
        for (size_t i = front.row_start; i < front.row_end; i++)
            front.below +=
                symbolic.offset[symbolic.rows[i] + 1] - symbolic.offset[symbolic.rows[i]];
        front.panel = symbolic.panel_numbers;
        front.below_start = symbolic.below_total;
        // Kernels read on into the gap, never into a panel that another thread may be filling.
        symbolic.panel_numbers +=
            front.height() * static_cast<size_t>(front.columns) + Kernels::slack;
        symbolic.below_total += static_cast<size_t>(front.below);
        const double k = front.columns;
        const double r = front.below;
        symbolic.entries += k * (k + 1.0) / 2.0 + k * r;
        symbolic.flops += k * k * k / 3.0 + k * k * r + k * r * r;
    }
}

} // namespace

Symbolic analyse(const Graph& graph, const std::vector<int>& unknowns,
                 const std::vector<int>& order) {
    return Analysis(graph, unknowns, order).run();
}

Symbolic best_symbolic(const Graph& graph, const std::vector<int>& unknowns,
                       const std::vector<Point>& at) {
    Symbolic by_degree = analyse(graph, unknowns, minimum_degree(graph));
    if (graph.size() <= small_graph)
        return by_degree;
    Symbolic dissected = analyse(graph, unknowns, dissect(graph, at));
    return dissected.flops < by_degree.flops ? std::move(dissected) : std::move(by_degree);
}

} // namespace frameslv
