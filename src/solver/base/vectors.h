// Places, and what a node has six of.
#pragma once

#include <Eigen/Dense>

#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace frameslv {

// The six unknowns of a node: three translations, three rotations about the global axes.
constexpr size_t dof_count = 6;
using Six = std::array<double, dof_count>;

using Matrix6 = Eigen::Matrix<double, 6, 6>;
using Vector6 = Eigen::Matrix<double, 6, 1>;

// Forces and moments, or displacements and rotations, of every node in global axes.
using NodeVectors = std::vector<Vector6>;

struct Point {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

inline double distance(const Point& a, const Point& b) {
    return std::hypot(b.x - a.x, b.y - a.y, b.z - a.z);
}

// The stiffness of a member in global axes as the 6 x 6 blocks of its ends; ji is the transpose of
// ij.
struct StiffnessBlocks {
    Matrix6 ii;
    Matrix6 ij;
    Matrix6 jj;
};

} // namespace frameslv
