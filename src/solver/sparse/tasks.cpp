#include "solver/sparse/tasks.h"

#include <algorithm>

namespace frameslv {

namespace {

// A share may take this much longer than the mean before a subtree is cut; each cut leaves a front
// that the threads have to do together.
constexpr double uneven_share = 1.05;
constexpr size_t most_subtrees = 32; // a thread

size_t update_numbers(const Front& front) {
    return packed_numbers(static_cast<size_t>(front.below));
}

std::vector<Tasks::Subtree> all_subtrees(const Symbolic& symbolic) {
    std::vector<Tasks::Subtree> all(symbolic.fronts.size());
    std::vector<size_t> with_own(symbolic.fronts.size()); // the stack with the root's update
    for (size_t f = 0; f < all.size(); f++) {
        const Front& front = symbolic.fronts[f];
        Tasks::Subtree& own = all[f];
        own.first = own.root = static_cast<int>(f);
        const double k = front.columns;
        const double r = front.below;
        own.flops = k * k * k / 3.0 + k * k * r + k * r * r;
        size_t waiting = 0;
        for (const int child : front.children) {
            const Tasks::Subtree& part = all[static_cast<size_t>(child)];
            own.first = std::min(own.first, part.first);
            own.flops += part.flops;
            own.stack = std::max(own.stack, waiting + with_own[static_cast<size_t>(child)]);
            own.square = std::max(own.square, part.square);
            waiting += update_numbers(symbolic.fronts[static_cast<size_t>(child)]);
        }
        // An update is packed where those of its children stood.
        own.stack = std::max(own.stack, waiting);
        with_own[f] = std::max(own.stack, update_numbers(front));
        own.square = std::max(own.square,
                              static_cast<size_t>(front.below) * static_cast<size_t>(front.below));
    }
    return all;
}

// How long the threads take when each takes the largest subtree left, by the ideal.
double unevenness(const std::vector<Tasks::Subtree>& sorted, int threads) {
    std::vector<double> share(static_cast<size_t>(threads), 0.0);
    double sum = 0.0;
    for (const Tasks::Subtree& subtree : sorted) {
        *std::min_element(share.begin(), share.end()) += subtree.flops;
        sum += subtree.flops;
    }
    return *std::max_element(share.begin(), share.end()) * threads / std::max(sum, 1.0);
}

} // namespace

Tasks share_out(const Symbolic& symbolic, int threads) {
    const std::vector<Tasks::Subtree> all = all_subtrees(symbolic);
    Tasks tasks;
    const auto larger = [](const Tasks::Subtree& a, const Tasks::Subtree& b) {
        return a.flops > b.flops || (!(a.flops < b.flops) && a.root < b.root);
    };
    for (size_t f = 0; f < all.size(); f++)
        if (symbolic.fronts[f].parent < 0)
            tasks.subtrees.push_back(all[f]);
    std::sort(tasks.subtrees.begin(), tasks.subtrees.end(), larger);
    if (threads < 2)
        return tasks;
    while (unevenness(tasks.subtrees, threads) > uneven_share &&
           tasks.subtrees.size() < most_subtrees * static_cast<size_t>(threads)) {
        const int root = tasks.subtrees.front().root;
        tasks.subtrees.erase(tasks.subtrees.begin());
        tasks.top.push_back(root);
        for (const int child : symbolic.fronts[static_cast<size_t>(root)].children)
            tasks.subtrees.push_back(all[static_cast<size_t>(child)]);
        std::sort(tasks.subtrees.begin(), tasks.subtrees.end(), larger);
    }
    std::sort(tasks.top.begin(), tasks.top.end());
    return tasks;
}

} // namespace frameslv
