// Elimination of the columns of one front.
#pragma once

#include "solver/sparse/kernels.h"
#include "solver/sparse/team.h"

namespace frameslv {

// Packed operands of one thread; kept between fronts.
struct PackBuffers {
    std::vector<double> a, b;
};

// Eliminates fronts, alone or with a team. The order in which numbers are added up does not depend
// on the team: the result is the same, bit by bit.
class DenseEliminator {
  public:
    // `team` null: alone, in the buffers of `own`. With a team the buffers of all its threads.
    DenseEliminator(Team* team, std::vector<PackBuffers>& buffers, size_t own,
                    const Kernels& set = kernels())
        : kernels_(set), team_(team), buffers_(buffers), own_(own) {}

    // The first `columns` columns of the front stand in `panel` (height columns + below, which is
    // also its column distance), the rest, lower triangle of below x below, in `update`. In place:
    // the columns of L, and what is left of the update. False at a pivot that is not positive.
    bool eliminate(double* panel, size_t columns, double* update, size_t below, double* pivots);

  private:
    bool eliminate_columns(size_t first, size_t last);
    bool eliminate_block(size_t first, size_t last);
    // C -= A A^T for the lower part of C, rows x columns; A rows x depth begins at C's first row.
    void subtract_square(double* c, size_t ldc, const double* a, size_t rows, size_t columns,
                         size_t depth);
    void subtract_packed(double* c, size_t ldc, const double* a, size_t rows, size_t columns,
                         size_t depth);
    void each(size_t count, const std::function<void(size_t, PackBuffers&)>& act);

    const Kernels& kernels_;
    Team* team_;
    std::vector<PackBuffers>& buffers_;
    size_t own_;
    double* panel_ = nullptr;
    size_t height_ = 0;
    double* pivots_ = nullptr;
};

} // namespace frameslv
