// The seam behind which a sparse direct factoriser stands. Another one needs only a class of its
// own and a line in make_factoriser.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace frameslv {

// Upper triangle of a symmetric matrix, column by column, rows ascending, 0-based, diagonal last.
struct SymmetricMatrix {
    int n = 0;
    std::vector<std::int64_t> start; // n + 1 entries: where each column begins
    std::vector<int> row;
    std::vector<double> value;
};

// K = L D L^T in the order in which the unknowns stand: the caller has reduced the fill.
class Factoriser {
  public:
    virtual ~Factoriser() = default;

    // Factorises `matrix` + `shift` x identity. False when a pivot is exactly zero.
    virtual bool factorise(const SymmetricMatrix& matrix, double shift) = 0;

    // D of the last factorisation that succeeded, n values.
    virtual std::span<const double> pivots() const = 0;

    // Replaces the right-hand side by the solution.
    virtual void solve(std::span<double> vector) const = 0;
};

// A factoriser for `n` unknowns.
std::unique_ptr<Factoriser> make_factoriser(int n);

// A vertex order of little fill (approximate minimum degree) for an undirected graph, whose edges
// stand as the strict upper triangle of a pattern: rows of column j, all below j, are j's
// neighbours. Result: the vertices in the order of elimination.
std::vector<int> order_vertices(const std::vector<int>& start, const std::vector<int>& row);

} // namespace frameslv
