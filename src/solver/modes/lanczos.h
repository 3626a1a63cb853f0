// The largest eigenvalues of a symmetric operator.
#pragma once

#include <Eigen/Dense>

#include <functional>

namespace frameslv {

struct EigenPairs {
    Eigen::VectorXd values;  // descending
    Eigen::MatrixXd vectors; // columns, orthonormal
    bool converged = false;
};

// The `count` largest eigenvalues above zero, and above `least`, of the symmetric operator `apply`
// (y = C x) on vectors of `n` numbers, by Lanczos iteration on a band with full orthogonalisation
// (A. Ruhe, Implementation aspects of band Lanczos algorithms, Math. Comp. 33 (1979)): eigenvalues
// that coincide up to the width of the band, four, are found. The orthonormal columns of `known`
// are left out, so that a further call finds more of them. Fewer come back where there are no
// more. The same call gives the same bits.
EigenPairs largest_eigenpairs(Eigen::Index n, int count, const Eigen::MatrixXd& known, double least,
                              const std::function<Eigen::VectorXd(const Eigen::VectorXd&)>& apply);

} // namespace frameslv
