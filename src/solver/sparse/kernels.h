// The dense kernels of the factorisation, one set for each width of vector registers.
#pragma once

#include <cstddef>

namespace frameslv {

// Matrices are column by column; `ld` is the distance of columns in numbers. Kernels may read up
// to `slack` numbers beyond the last one of an operand and throw them away.
struct Kernels {
    static constexpr size_t slack = 16;
    // Tiles of the product: rows by columns.
    size_t tile_rows;
    static constexpr size_t tile_columns = 6;

    // C -= A B^T for the entries of C in row i and column j with i + below >= j; tiles that hold
    // one such entry are done whole. A stands in tiles of tile_rows rows, B in tiles of
    // tile_columns rows, `a_step` and `b_step` numbers apart.
    struct Product {
        double* c;
        size_t ldc;
        const double* a;
        size_t lda, a_step;
        const double* b;
        size_t ldb, b_step;
        size_t rows, columns, depth, below;
    };
    void (*subtract_product)(const Product& product);

    // L with L L^T = A for the lower triangle of the n x n matrix A, in place. Notes the pivots,
    // the squares of L's diagonal, and 1 / diagonal. False at a pivot that is not positive; what is
    // noted from there on is void.
    bool (*factor)(double* a, size_t lda, size_t n, double* pivots, double* inverses);

    // X := X L^-T for `rows` rows of n columns; L as left by `factor`.
    void (*solve_rows)(const double* l, size_t ldl, size_t n, const double* inverses, double* x,
                       size_t ldx, size_t rows);

    // y -= A x and x -= A^T y for A of rows x columns.
    void (*subtract_multiple)(const double* a, size_t lda, size_t rows, size_t columns,
                              const double* x, double* y);
    void (*subtract_transposed)(const double* a, size_t lda, size_t rows, size_t columns,
                                const double* y, double* x);

    // The same for several vectors at a time, and x := L^-1 x and x := L^-T x for the lower
    // triangle of the n x n matrix L: the numbers of a row stand together.
    struct Block {
        void (*subtract_multiples)(const double* a, size_t lda, size_t rows, size_t columns,
                                   const double* x, double* y);
        void (*subtract_transposeds)(const double* a, size_t lda, size_t rows, size_t columns,
                                     const double* y, double* x);
        void (*solve_triangles)(const double* l, size_t ldl, size_t n, double* x);
        void (*solve_transposed_triangles)(const double* l, size_t ldl, size_t n, double* x);
    };
    static constexpr size_t block = 4;
    static constexpr size_t wide_block = 8;
    Block narrow, wide; // for `block` and `wide_block` vectors
};

// The set for the widest registers of this processor.
const Kernels& kernels();

// The sets that this processor can run, the widest first; a null pointer ends them.
const Kernels* const* usable_kernels();

} // namespace frameslv
