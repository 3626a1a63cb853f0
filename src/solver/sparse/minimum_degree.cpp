#include "solver/sparse/minimum_degree.h"

#include <Eigen/OrderingMethods>
#include <Eigen/SparseCore>

namespace frameslv {

std::vector<int> minimum_degree(const Graph& graph) {
    using Pattern = Eigen::SparseMatrix<double, Eigen::ColMajor, int>;
    // The ordering takes a vertex without a diagonal entry for one to be left to the end.
    std::vector<int> start{0};
    std::vector<int> row;
    start.reserve(graph.start.size());
    row.reserve(graph.next.size() / 2 + graph.start.size());
    for (int v = 0; v < graph.size(); v++) {
        for (const int other : graph.neighbours(v))
            if (other < v)
                row.push_back(other);
        row.push_back(v);
        start.push_back(static_cast<int>(row.size()));
    }
    const std::vector<double> ones(row.size(), 1.0);
    const Eigen::Map<const Pattern> upper(graph.size(), graph.size(),
                                          static_cast<Eigen::Index>(row.size()), start.data(),
                                          row.data(), ones.data());
    const Pattern pattern(upper);
    Eigen::PermutationMatrix<Eigen::Dynamic, Eigen::Dynamic, int> order;
    Eigen::AMDOrdering<int>()(pattern.selfadjointView<Eigen::Upper>(), order);
    return {order.indices().data(), order.indices().data() + graph.size()};
}

} // namespace frameslv
