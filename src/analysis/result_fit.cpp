#include "analysis/result_fit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <set>

namespace kigumi {

namespace {

using Place = std::array<double, 3>;

// The input holds tenths of a cm; a solver prints six digits at least.
bool is_near(double a, double b) {
    constexpr double tenth = 0.1;
    constexpr double digits = 1.0e-5;
    return std::fabs(a - b) <= tenth + digits * std::fabs(b);
}

// The nodes of a frame by their places: in cells wider than two places may lie apart.
class Places {
  public:
    explicit Places(const std::vector<FrameShape::Point>& nodes) : nodes_(nodes) {
        for (const FrameShape::Point& node : nodes) {
            cell_ = std::max({cell_, 1.0 + 2.0e-5 * std::fabs(node.x),
                              1.0 + 2.0e-5 * std::fabs(node.y), 1.0 + 2.0e-5 * std::fabs(node.z)});
        }
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            cells_[cell_of({nodes[i].x, nodes[i].y, nodes[i].z})].push_back(static_cast<int>(i));
        }
        first_.reserve(nodes.size());
        for (const FrameShape::Point& node : nodes) {
            first_.push_back(near({node.x, node.y, node.z}).front());
        }
    }
    // Positions of all nodes at this place, ascending.
    std::vector<int> near(const Place& at) const {
        constexpr int neighbours = 27;
        const Place middle = cell_of(at);
        std::vector<int> found;
        for (int i = 0; i < neighbours; ++i) {
            const auto cell = cells_.find(
                {middle[0] + i % 3 - 1, middle[1] + i / 3 % 3 - 1, middle[2] + i / 9 - 1});
            if (cell == cells_.end()) {
                continue;
            }
            for (const int position : cell->second) {
                const FrameShape::Point& node = nodes_[static_cast<std::size_t>(position)];
                if (is_near(at[0], node.x) && is_near(at[1], node.y) && is_near(at[2], node.z)) {
                    found.push_back(position);
                }
            }
        }
        std::sort(found.begin(), found.end());
        return found;
    }
    // One position for all nodes at the place of this one.
    int first_at(int node) const { return first_[static_cast<std::size_t>(node)]; }

  private:
    Place cell_of(const Place& at) const {
        return {std::floor(at[0] / cell_), std::floor(at[1] / cell_), std::floor(at[2] / cell_)};
    }

    const std::vector<FrameShape::Point>& nodes_;
    double cell_ = 1.0; // cm
    std::map<Place, std::vector<int>> cells_;
    std::vector<int> first_;
};

// Gives each record one of its candidates: first those of its own number, then in order.
class Dealer {
  public:
    explicit Dealer(std::size_t takers) : of_(takers, -1) {}

    // `candidates` of the record at position `taker`, and whether one bears its number.
    template <class SameNumber>
    void offer(std::size_t taker, std::vector<int> candidates, SameNumber same) {
        for (const int candidate : candidates) {
            if (same(candidate) && taken_.insert(candidate).second) {
                of_[taker] = candidate;
                return;
            }
        }
        waiting_.emplace_back(taker, std::move(candidates));
    }
    std::vector<int> deal() {
        for (const auto& [taker, candidates] : waiting_) {
            for (const int candidate : candidates) {
                if (taken_.insert(candidate).second) {
                    of_[taker] = candidate;
                    break;
                }
            }
        }
        return std::move(of_);
    }

  private:
    std::vector<int> of_;
    std::set<int> taken_;
    std::vector<std::pair<std::size_t, std::vector<int>>> waiting_;
};

std::vector<int> match_nodes(const FrameShape& frame, const Places& places,
                             std::span<const Setuten> nodes) {
    Dealer dealer(nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const Setuten& node = nodes[i];
        dealer.offer(i, places.near({node.x, node.y, node.z}), [&](int at) {
            return frame.nodes[static_cast<std::size_t>(at)].no == node.OldNo;
        });
    }
    return dealer.deal();
}

using Ends = std::pair<int, int>;

Ends ends_of(int a, int b) {
    return {std::min(a, b), std::max(a, b)};
}

std::vector<int> match_members(const FrameShape& frame, const Places& places,
                               std::span<const Stress> members) {
    std::map<Ends, std::vector<int>> between;
    for (std::size_t i = 0; i < frame.bars.size(); ++i) {
        const FrameShape::Bar& bar = frame.bars[i];
        if (bar.start < 0 || bar.end < 0) {
            continue;
        }
        between[ends_of(places.first_at(bar.start), places.first_at(bar.end))].push_back(
            static_cast<int>(i));
    }
    Dealer dealer(members.size());
    for (std::size_t i = 0; i < members.size(); ++i) {
        const Stress& member = members[i];
        const std::vector<int> start = places.near({member.xi, member.yi, member.zi});
        const std::vector<int> end = places.near({member.xj, member.yj, member.zj});
        if (start.empty() || end.empty()) {
            continue;
        }
        const auto found =
            between.find(ends_of(places.first_at(start.front()), places.first_at(end.front())));
        if (found != between.end()) {
            dealer.offer(i, found->second, [&](int at) {
                return frame.bars[static_cast<std::size_t>(at)].no == member.no;
            });
        }
    }
    return dealer.deal();
}

// The displacements are those of the listed nodes, each node once.
bool same_nodes(const ResultRecords& results) {
    std::set<int> listed;
    std::set<int> moved;
    for (const Setuten& node : results.nodes) {
        listed.insert(node.OldNo);
    }
    for (const Disp& node : results.displacements) {
        moved.insert(node.old_no);
    }
    return listed.size() == results.nodes.size() && listed == moved;
}

bool all_found(const std::vector<int>& positions) {
    return std::find(positions.begin(), positions.end(), -1) == positions.end();
}

// The first `count` records of a table.
template <class Table> auto first_of(const Table& table, int count) {
    return std::span(table).first(static_cast<size_t>(count));
}

} // namespace

FrameShape model_shape(const Model& model) {
    FrameShape frame;
    for (int i = 0; i < model.N_Node; ++i) {
        const Node& node = model.node[i];
        frame.nodes.push_back({number_at(i), node.x, node.y, node.z});
    }
    for (int i = 0; i < model.N_Beam; ++i) {
        const Beam& beam = model.beam[i];
        const auto known = [&model](int no) { return no >= 1 && no <= model.N_Node; };
        const bool joined = known(beam.noi) && known(beam.noj);
        frame.bars.push_back({number_at(i), joined ? position_of(beam.noi) : -1,
                              joined ? position_of(beam.noj) : -1});
    }
    return frame;
}

ResultRecords stored_results(const Result& result) {
    return {first_of(result.setuten, result.N_Setuten), first_of(result.stress, result.N_Stress),
            first_of(result.disp, result.N_Setuten)};
}

ResultMatch match_results(const FrameShape& frame, const ResultRecords& results) {
    const Places places(frame.nodes);
    ResultMatch match;
    match.node = match_nodes(frame, places, results.nodes);
    match.member = match_members(frame, places, results.members);
    match.fits = all_found(match.node) && all_found(match.member) &&
                 results.members.size() == frame.bars.size() && same_nodes(results);
    return match;
}

bool results_fit(const Model& model, const Result& result) {
    return match_results(model_shape(model), stored_results(result)).fits;
}

} // namespace kigumi
