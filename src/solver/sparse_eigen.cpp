#include "solver/sparse.h"

#include <Eigen/OrderingMethods>
#include <Eigen/SparseCholesky>

#include <algorithm>

namespace frameslv {

namespace {

template <class Index> class EigenFactoriser : public Factoriser {
  public:
    bool factorise(const SymmetricMatrix& matrix, double shift) override {
        Matrix copy(matrix.n, matrix.n);
        copy.resizeNonZeros(static_cast<Eigen::Index>(matrix.row.size()));
        std::copy(matrix.row.begin(), matrix.row.end(), copy.innerIndexPtr());
        std::copy(matrix.value.begin(), matrix.value.end(), copy.valuePtr());
        std::transform(matrix.start.begin(), matrix.start.end(), copy.outerIndexPtr(),
                       [](std::int64_t at) { return static_cast<Index>(at); });
        ldlt_.setShift(shift);
        ldlt_.compute(copy);
        if (ldlt_.info() != Eigen::Success)
            return false;
        pivots_ = ldlt_.vectorD();
        return true;
    }
    std::span<const double> pivots() const override {
        return {pivots_.data(), static_cast<size_t>(pivots_.size())};
    }
    void solve(std::span<double> vector) const override {
        Eigen::Map<Eigen::VectorXd> x(vector.data(), static_cast<Eigen::Index>(vector.size()));
        ldlt_.matrixL().solveInPlace(x);
        x.array() /= pivots_.array();
        ldlt_.matrixU().solveInPlace(x);
    }

  private:
    using Matrix = Eigen::SparseMatrix<double, Eigen::ColMajor, Index>;

    Eigen::SimplicialLDLT<Matrix, Eigen::Upper, Eigen::NaturalOrdering<Index>> ldlt_;
    Eigen::VectorXd pivots_;
};

} // namespace

std::unique_ptr<Factoriser> make_factoriser(int n) {
    constexpr int most_for_int = 65536; // n (n - 1) / 2 entries of L still count in 31 bits
    if (n <= most_for_int)
        return std::make_unique<EigenFactoriser<int>>();
    return std::make_unique<EigenFactoriser<std::int64_t>>();
}

std::vector<int> order_vertices(const std::vector<int>& start, const std::vector<int>& row) {
    using Graph = Eigen::SparseMatrix<double, Eigen::ColMajor, int>;
    const Eigen::Index n = static_cast<Eigen::Index>(start.size()) - 1;
    // The ordering takes a vertex without a diagonal entry for one to be left to the end.
    std::vector<int> full_start{0};
    std::vector<int> full_row;
    full_start.reserve(start.size());
    full_row.reserve(row.size() + start.size());
    for (size_t j = 0; j + 1 < start.size(); j++) {
        full_row.insert(full_row.end(), row.begin() + start[j], row.begin() + start[j + 1]);
        full_row.push_back(static_cast<int>(j));
        full_start.push_back(static_cast<int>(full_row.size()));
    }
    const std::vector<double> ones(full_row.size(), 1.0);
    const Eigen::Map<const Graph> upper(n, n, static_cast<Eigen::Index>(full_row.size()),
                                        full_start.data(), full_row.data(), ones.data());
    const Graph graph(upper);
    Eigen::PermutationMatrix<Eigen::Dynamic, Eigen::Dynamic, int> order;
    Eigen::AMDOrdering<int>()(graph.selfadjointView<Eigen::Upper>(), order);
    return {order.indices().data(), order.indices().data() + n};
}

} // namespace frameslv
