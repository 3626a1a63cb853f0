#include "solver/modes/lanczos.h"

#include <algorithm>
#include <random>

namespace frameslv {

namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

constexpr Index band = 4;
// A vector is nothing new when orthogonalisation leaves less than this part of it.
constexpr double least_new = 1e-12;
// A pair counts as found when its residual is below this part of its eigenvalue, whose own error
// is the square of that.
constexpr double found_residual = 1e-8;
constexpr Index check_every = 8; // steps
// The iteration may take this many vectors, and this many more for each pair.
constexpr Index first_vectors = 120;
constexpr Index vectors_a_pair = 20;

class BandLanczos {
  public:
    BandLanczos(Index n, int count, const MatrixXd& known, double least,
                const std::function<VectorXd(const VectorXd&)>& apply)
        : count_(count), most_(std::min(n, first_vectors + vectors_a_pair * count)), known_(known),
          least_(least), apply_(apply), basis_(n, std::min(n, 2 * band)),
          projected_(MatrixXd::Zero(most_ + band, most_)) {
        start(n);
    }

    EigenPairs run() {
        EigenPairs pairs;
        pairs.vectors.resize(basis_.rows(), 0);
        pairs.converged = size_ == 0; // nothing is left beside what is known
        while (applied_ < size_ && applied_ < most_) {
            step();
            const bool last = applied_ == size_ || applied_ == most_;
            if (!last && applied_ % check_every != 0)
                continue;
            pairs = pairs_now();
            if (pairs.converged)
                break;
        }
        return pairs;
    }

  private:
    void start(Index n);
    void step();
    // Takes off what lies in the basis; returns the coefficients.
    VectorXd orthogonalise(VectorXd& v) const;
    bool append(const VectorXd& v, double norm, double before);
    EigenPairs pairs_now() const;

    Index count_;
    Index most_;
    const MatrixXd& known_;
    double least_;
    const std::function<VectorXd(const VectorXd&)>& apply_;
    MatrixXd basis_;
    MatrixXd projected_; // basis^T C basis for the vectors applied so far
    Index size_ = 0;     // vectors of the basis
    Index applied_ = 0;  // how many of them C has been applied to
};

VectorXd BandLanczos::orthogonalise(VectorXd& v) const {
    const auto basis = basis_.leftCols(size_);
    VectorXd along = VectorXd::Zero(size_);
    for (int twice = 0; twice < 2; twice++) { // W. Kahan: twice is enough
        if (known_.cols() > 0)
            v -= known_ * (known_.transpose() * v);
        const VectorXd part = basis.transpose() * v;
        v -= basis * part;
        along += part;
    }
    return along;
}

bool BandLanczos::append(const VectorXd& v, double norm, double before) {
    if (!(norm > least_new * before) || size_ == basis_.rows())
        return false;
    if (size_ == basis_.cols())
        basis_.conservativeResize(Eigen::NoChange, std::min(basis_.rows(), 2 * size_));
    basis_.col(size_++) = v / norm;
    return true;
}

void BandLanczos::start(Index n) {
    std::mt19937 random(1); // deliberate: the same start every time
    for (Index k = 0; k < std::min(band, n); k++) {
        VectorXd v(n);
        for (Index i = 0; i < n; i++)
            v(i) = static_cast<double>(random()) / static_cast<double>(std::mt19937::max()) - 0.5;
        const double before = v.norm();
        orthogonalise(v);
        append(v, v.norm(), before);
    }
}

void BandLanczos::step() {
    const Index j = applied_++;
    VectorXd v = apply_(basis_.col(j));
    const double before = v.norm();
    projected_.col(j).head(size_) = orthogonalise(v);
    const double norm = v.norm();
    const Index at = size_;
    if (at < projected_.rows() && append(v, norm, before))
        projected_(at, j) = norm;
}

EigenPairs BandLanczos::pairs_now() const {
    const MatrixXd square = projected_.topLeftCorner(applied_, applied_);
    const Eigen::SelfAdjointEigenSolver<MatrixXd> solver(0.5 * (square + square.transpose()));
    EigenPairs pairs;
    pairs.converged = true;
    Index found = 0;
    const double least = std::max(least_, least_new * solver.eigenvalues().cwiseAbs().maxCoeff());
    while (found < std::min(count_, applied_) &&
           solver.eigenvalues()(applied_ - 1 - found) > least) {
        const Index at = applied_ - 1 - found++;
        const VectorXd beyond = projected_.block(applied_, 0, size_ - applied_, applied_) *
                                solver.eigenvectors().col(at);
        if (beyond.norm() > found_residual * solver.eigenvalues()(at))
            pairs.converged = false;
    }
    if (found < count_ && applied_ < size_)
        pairs.converged = false;
    pairs.values = solver.eigenvalues().reverse().head(found);
    pairs.vectors =
        basis_.leftCols(applied_) * solver.eigenvectors().rightCols(found).rowwise().reverse();
    return pairs;
}

} // namespace

EigenPairs largest_eigenpairs(Index n, int count, const MatrixXd& known, double least,
                              const std::function<VectorXd(const VectorXd&)>& apply) {
    return BandLanczos(n, count, known, least, apply).run();
}

} // namespace frameslv
