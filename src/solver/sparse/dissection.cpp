#include "solver/sparse/dissection.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>

namespace frameslv {

namespace {

// Parts of up to this many vertices are ordered by minimum degree; measured on space floors, 16 to
// 50 serve alike.
constexpr int leaf_size = 32;
// Planes leave at least this part of the vertices on either side.
constexpr double least_share = 0.4;
// What a part of the vertices more on one side weighs against the same part of the parting set.
constexpr double uneven_weight = 0.5;
// How many planes of one direction are compared.
constexpr size_t most_planes = 3;
// Directions of the planes' normals: the grid's axes and the diagonals in plan.
constexpr std::array<std::array<double, 3>, 5> normals = {
    {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 0}, {1, -1, 0}}};

class Dissector {
  public:
    Dissector(const Graph& graph, const std::vector<Point>& at) : graph_(graph) {
        const size_t n = at.size();
        side_.assign(n, none);
        local_.assign(n, -1);
        for (size_t d = 0; d < normals.size(); d++) {
            height_[d].resize(n);
            const auto& [a, b, c] = normals[d];
            for (size_t v = 0; v < n; v++)
                height_[d][v] = static_cast<float>(a * at[v].x + b * at[v].y + c * at[v].z);
        }
        order_.resize(n);
        for (size_t v = 0; v < n; v++)
            order_[v] = static_cast<int>(v);
    }

    std::vector<int> run() {
        part(0, order_.size());
        return std::move(order_);
    }

  private:
    using Mark = unsigned char;
    static constexpr Mark none = 0; // not in the set that is being parted
    static constexpr Mark low = 1;
    static constexpr Mark high = 2;
    static constexpr Mark between = 3;

    struct Cut {
        size_t direction = 0;
        float height = 0.0F; // the low side lies below
        Mark thinner = low;  // the side whose ends are taken
        double cost = std::numeric_limits<double>::infinity();
    };

    void part(size_t first, size_t last);
    Cut best_cut(size_t first, size_t last);
    void try_planes(size_t direction, size_t first, size_t last, Cut& best);
    void try_plane(size_t first, size_t last, Cut cut, Cut& best);
    void mark_sides(size_t first, size_t last, const Cut& cut);
    void thin_out(size_t first, size_t last);
    bool touches(int vertex, Mark side) const {
        for (const int other : graph_.neighbours(vertex))
            if (side_[static_cast<size_t>(other)] == side)
                return true;
        return false;
    }
    void order_leaf(size_t first, size_t last);

    const Graph& graph_;
    std::array<std::vector<float>, normals.size()> height_;
    std::vector<int> order_;
    std::vector<Mark> side_;
    std::vector<int> local_;
    std::vector<float> heights_;
};

void Dissector::mark_sides(size_t first, size_t last, const Cut& cut) {
    const std::vector<float>& height = height_[cut.direction];
    for (size_t i = first; i < last; i++) {
        const size_t v = static_cast<size_t>(order_[i]);
        side_[v] = height[v] < cut.height ? low : high;
    }
}

void Dissector::try_plane(size_t first, size_t last, Cut cut, Cut& best) {
    mark_sides(first, last, cut);
    double count[4] = {0, 0, 0, 0};
    double ends[4] = {0, 0, 0, 0};
    for (size_t i = first; i < last; i++) {
        const int v = order_[i];
        const Mark own = side_[static_cast<size_t>(v)];
        count[own]++;
        ends[own] += touches(v, own == low ? high : low) ? 1 : 0;
    }
    for (const Mark thinner : {low, high}) {
        const Mark other = thinner == low ? high : low;
        const double rest = count[thinner] - ends[thinner];
        const double uneven = std::abs(rest - count[other]) / static_cast<double>(last - first);
        // Work grows with the cube of the set; unevenness costs on the levels that follow.
        const double cost = ends[thinner] * (1.0 + uneven_weight * uneven);
        if (rest > 0 && count[other] > 0 && cost < best.cost) {
            best = cut;
            best.thinner = thinner;
            best.cost = cost;
        }
    }
}

void Dissector::try_planes(size_t direction, size_t first, size_t last, Cut& best) {
    const size_t n = last - first;
    heights_.resize(n);
    for (size_t i = 0; i < n; i++)
        heights_[i] = height_[direction][static_cast<size_t>(order_[first + i])];
    const auto from =
        heights_.begin() + static_cast<std::ptrdiff_t>(least_share * static_cast<double>(n));
    const auto to = heights_.begin() +
                    static_cast<std::ptrdiff_t>((1.0 - least_share) * static_cast<double>(n));
    std::nth_element(heights_.begin(), from, heights_.end());
    std::nth_element(from, to, heights_.end());
    std::sort(from, to + 1);
    // The planes next to the middle, one for each height that some vertex has.
    const auto end = std::unique(from, to + 1);
    const float middle = *(from + (end - from) / 2);
    std::sort(from, end,
              [middle](float a, float b) { return std::abs(a - middle) < std::abs(b - middle); });
    size_t tried = 0;
    for (auto at = from; at != end && tried < most_planes; ++at, ++tried)
        try_plane(first, last, {direction, *at}, best);
}

Dissector::Cut Dissector::best_cut(size_t first, size_t last) {
    Cut best;
    for (size_t d = 0; d < normals.size(); d++)
        try_planes(d, first, last, best);
    return best;
}

// Hands vertices of the parting set that no longer touch one side to the other side.
void Dissector::thin_out(size_t first, size_t last) {
    for (size_t i = first; i < last; i++) {
        const int v = order_[i];
        Mark& own = side_[static_cast<size_t>(v)];
        if (own != between)
            continue;
        const bool at_low = touches(v, low);
        const bool at_high = touches(v, high);
        if (!at_low || !at_high)
            own = at_low ? low : high;
    }
}

void Dissector::part(size_t first, size_t last) {
    if (last - first <= leaf_size) {
        order_leaf(first, last);
        return;
    }
    const Cut cut = best_cut(first, last);
    if (std::isinf(cut.cost)) {
        for (size_t i = first; i < last; i++)
            side_[static_cast<size_t>(order_[i])] = none;
        order_leaf(first, last);
        return;
    }
    mark_sides(first, last, cut);
    const Mark other = cut.thinner == low ? high : low;
    for (size_t i = first; i < last; i++) {
        const int v = order_[i];
        if (side_[static_cast<size_t>(v)] == cut.thinner && touches(v, other))
            side_[static_cast<size_t>(v)] = between;
    }
    thin_out(first, last);
    const auto begin = order_.begin() + static_cast<std::ptrdiff_t>(first);
    const auto end = order_.begin() + static_cast<std::ptrdiff_t>(last);
    const auto is = [this](Mark mark) {
        return [this, mark](int v) { return side_[static_cast<size_t>(v)] == mark; };
    };
    const auto low_end = std::stable_partition(begin, end, is(low));
    const auto high_end = std::stable_partition(low_end, end, is(high));
    for (auto v = begin; v != end; ++v)
        side_[static_cast<size_t>(*v)] = none;
    const size_t a = static_cast<size_t>(low_end - order_.begin());
    const size_t b = static_cast<size_t>(high_end - order_.begin());
    part(first, a);
    part(a, b);
}

// Minimum degree on the part and the vertices around it, which are eliminated later.
void Dissector::order_leaf(size_t first, size_t last) {
    const size_t inner = last - first;
    std::vector<int> vertex(order_.begin() + static_cast<std::ptrdiff_t>(first),
                            order_.begin() + static_cast<std::ptrdiff_t>(last));
    for (size_t i = 0; i < inner; i++)
        local_[static_cast<size_t>(vertex[i])] = static_cast<int>(i);
    for (size_t i = 0; i < inner; i++)
        for (const int other : graph_.neighbours(vertex[i]))
            if (local_[static_cast<size_t>(other)] < 0) {
                local_[static_cast<size_t>(other)] = static_cast<int>(vertex.size());
                vertex.push_back(other);
            }
    const size_t words = (vertex.size() + 63) / 64;
    std::vector<std::uint64_t> near(inner * words, 0); // of every inner vertex, itself included
    for (size_t i = 0; i < inner; i++) {
        const auto set = [&](size_t k) {
            near[i * words + k / 64] |= std::uint64_t{1} << (k % 64);
        };
        set(i);
        for (const int other : graph_.neighbours(vertex[i]))
            set(static_cast<size_t>(local_[static_cast<size_t>(other)]));
    }
    const auto degree = [&](size_t i) {
        int count = 0;
        for (size_t w = 0; w < words; w++)
            count += std::popcount(near[i * words + w]);
        return count;
    };
    std::vector<int> degrees(inner);
    for (size_t i = 0; i < inner; i++)
        degrees[i] = degree(i);
    for (size_t k = 0; k < inner; k++) {
        const size_t least =
            static_cast<size_t>(std::min_element(degrees.begin(), degrees.end()) - degrees.begin());
        order_[first + k] = vertex[least];
        degrees[least] = std::numeric_limits<int>::max();
        const std::uint64_t* row = &near[least * words];
        for (size_t i = 0; i < inner; i++) {
            if (degrees[i] == std::numeric_limits<int>::max() ||
                ((row[i / 64] >> (i % 64)) & 1) == 0)
                continue;
            for (size_t w = 0; w < words; w++)
                near[i * words + w] |= row[w];
            near[i * words + least / 64] &= ~(std::uint64_t{1} << (least % 64));
            degrees[i] = degree(i);
        }
    }
    for (const int v : vertex)
        local_[static_cast<size_t>(v)] = -1;
}

} // namespace

std::vector<int> dissect(const Graph& graph, const std::vector<Point>& at) {
    return Dissector(graph, at).run();
}

} // namespace frameslv
