// The body of the kernels for vectors of KERNEL_LANES numbers, included by one source file for each
// width, which is compiled for processors that have it. Nothing else may be included here: an
// inline function of a library would be compiled for that processor too, and the linker might take
// it for the whole program.
#include "solver/sparse/kernels.h"

namespace frameslv {

namespace {

constexpr size_t lanes = KERNEL_LANES;
constexpr size_t tile_vectors = 2;
constexpr size_t tile_rows = tile_vectors * lanes;
constexpr size_t tile_columns = Kernels::tile_columns;

#if KERNEL_LANES > 1
typedef double Vector
    __attribute__((vector_size(KERNEL_LANES * sizeof(double)), aligned(sizeof(double)), may_alias));
#if defined(__clang__)
#define KERNEL_UNROLL _Pragma("unroll")
#else
#define KERNEL_UNROLL _Pragma("GCC unroll 6")
#endif
#else
typedef double Vector;
#define KERNEL_UNROLL
#endif

inline Vector load(const double* from) {
    return *reinterpret_cast<const Vector*>(from);
}

inline void store(double* to, Vector value) {
    *reinterpret_cast<Vector*>(to) = value;
}

struct Tile {
    Vector part[tile_columns][tile_vectors];
};

static_assert(tile_rows <= Kernels::slack && tile_columns <= Kernels::slack);

inline Tile product_tile(size_t depth, const double* a, size_t lda, const double* b, size_t ldb) {
    Tile sum = {};
    for (size_t p = 0; p < depth; p++) {
        const Vector upper = load(a);
        const Vector lower = load(a + lanes);
        KERNEL_UNROLL
        for (size_t j = 0; j < tile_columns; j++) {
            sum.part[j][0] += upper * b[j];
            sum.part[j][1] += lower * b[j];
        }
        a += lda;
        b += ldb;
    }
    return sum;
}

// A tile kept in memory, for its edges.
struct Buffer {
    double at[tile_columns * tile_rows];
};

inline Buffer spread(const Tile& tile) {
    Buffer buffer;
    for (size_t j = 0; j < tile_columns; j++)
        for (size_t v = 0; v < tile_vectors; v++)
            store(buffer.at + j * tile_rows + v * lanes, tile.part[j][v]);
    return buffer;
}

inline void subtract_tile(double* c, size_t ldc, const Tile& tile, size_t rows, size_t columns) {
    if (rows == tile_rows && columns == tile_columns) {
        KERNEL_UNROLL
        for (size_t j = 0; j < tile_columns; j++)
            for (size_t v = 0; v < tile_vectors; v++) {
                double* at = c + j * ldc + v * lanes;
                store(at, load(at) - tile.part[j][v]);
            }
        return;
    }
    const Buffer buffer = spread(tile);
    for (size_t j = 0; j < columns; j++)
        for (size_t i = 0; i < rows; i++)
            c[j * ldc + i] -= buffer.at[j * tile_rows + i];
}

inline size_t smaller(size_t a, size_t b) {
    return a < b ? a : b;
}

void subtract_product(const Kernels::Product& p) {
    for (size_t j = 0, tile = 0; j < p.columns; j += tile_columns, tile++) {
        const size_t columns = smaller(tile_columns, p.columns - j);
        // The first tile that reaches below the diagonal.
        const size_t first = j > p.below ? (j - p.below) / tile_rows : 0;
        for (size_t t = first; t * tile_rows < p.rows; t++) {
            const size_t i = t * tile_rows;
            const Tile sum =
                product_tile(p.depth, p.a + t * p.a_step, p.lda, p.b + tile * p.b_step, p.ldb);
            subtract_tile(p.c + j * p.ldc + i, p.ldc, sum, smaller(tile_rows, p.rows - i), columns);
        }
    }
}

// One column block of L^T X^T = B^T: the columns of a tile of X from `first` on, once those before
// have been taken off.
inline void solve_tile(const double* l, size_t ldl, const double* inverses, double* x, size_t ldx,
                       size_t columns) {
    for (size_t v = 0; v < tile_vectors; v++) {
        Vector solved[tile_columns];
        for (size_t j = 0; j < columns; j++) {
            Vector value = load(x + j * ldx + v * lanes);
            for (size_t p = 0; p < j; p++)
                value -= solved[p] * l[p * ldl + j];
            solved[j] = value * inverses[j];
            store(x + j * ldx + v * lanes, solved[j]);
        }
    }
}

void solve_whole_tile(const double* l, size_t ldl, size_t n, const double* inverses, double* x,
                      size_t ldx) {
    for (size_t j = 0; j < n; j += tile_columns) {
        const size_t columns = smaller(tile_columns, n - j);
        if (j > 0)
            subtract_tile(x + j * ldx, ldx, product_tile(j, x, ldx, l + j, ldl), tile_rows,
                          columns);
        const double* corner = l + j * ldl + j;
        if (columns == tile_columns)
            solve_tile(corner, ldl, inverses + j, x + j * ldx, ldx, tile_columns);
        else
            solve_tile(corner, ldl, inverses + j, x + j * ldx, ldx, columns);
    }
}

void solve_rows(const double* l, size_t ldl, size_t n, const double* inverses, double* x,
                size_t ldx, size_t rows) {
    size_t i = 0;
    for (; i + tile_rows <= rows; i += tile_rows)
        solve_whole_tile(l, ldl, n, inverses, x + i, ldx);
    if (i == rows)
        return;
    constexpr size_t most_columns = 96;
    double edge[most_columns * tile_rows + Kernels::slack];
    for (size_t j = 0; j < n; j++)
        for (size_t k = 0; k < tile_rows; k++)
            edge[j * tile_rows + k] = i + k < rows ? x[j * ldx + i + k] : 0.0;
    solve_whole_tile(l, ldl, n, inverses, edge, tile_rows);
    for (size_t j = 0; j < n; j++)
        for (size_t k = 0; i + k < rows; k++)
            x[j * ldx + i + k] = edge[j * tile_rows + k];
}

// The Cholesky factor of a block of up to tile_columns columns.
bool factor_corner(double* a, size_t lda, size_t n, double* pivots, double* inverses) {
    for (size_t j = 0; j < n; j++) {
        double pivot = a[j * lda + j];
        for (size_t p = 0; p < j; p++)
            pivot -= a[p * lda + j] * a[p * lda + j];
        if (!(pivot > 0.0))
            return false;
        pivots[j] = pivot;
        const double root = __builtin_sqrt(pivot);
        const double inverse = 1.0 / root;
        inverses[j] = inverse;
        a[j * lda + j] = root;
        for (size_t i = j + 1; i < n; i++) {
            double value = a[j * lda + i];
            for (size_t p = 0; p < j; p++)
                value -= a[p * lda + i] * a[p * lda + j];
            a[j * lda + i] = value * inverse;
        }
    }
    return true;
}

bool factor(double* a, size_t lda, size_t n, double* pivots, double* inverses) {
    for (size_t j = 0; j < n; j += tile_columns) {
        const size_t columns = smaller(tile_columns, n - j);
        double* corner = a + j * lda + j;
        if (j > 0)
            subtract_product({corner, lda, a + j, lda, tile_rows, a + j, lda, tile_columns, n - j,
                              columns, j, 0});
        if (!factor_corner(corner, lda, columns, pivots + j, inverses + j))
            return false;
        solve_rows(corner, lda, columns, inverses + j, corner + columns, lda, n - j - columns);
    }
    return true;
}

constexpr size_t vector_columns = 4; // taken together where a matrix meets one vector

void subtract_multiple(const double* a, size_t lda, size_t rows, size_t columns, const double* x,
                       double* y) {
    size_t j = 0;
    for (; j + vector_columns <= columns; j += vector_columns, a += vector_columns * lda) {
        size_t i = 0;
        for (; i + lanes <= rows; i += lanes) {
            Vector value = load(y + i);
            for (size_t k = 0; k < vector_columns; k++)
                value -= load(a + k * lda + i) * x[j + k];
            store(y + i, value);
        }
        for (; i < rows; i++)
            for (size_t k = 0; k < vector_columns; k++)
                y[i] -= a[k * lda + i] * x[j + k];
    }
    for (; j < columns; j++, a += lda)
        for (size_t i = 0; i < rows; i++)
            y[i] -= a[i] * x[j];
}

double sum_of(Vector value) {
    double parts[lanes];
    store(parts, value);
    double sum = 0.0;
    for (const double part : parts)
        sum += part;
    return sum;
}

void subtract_transposed(const double* a, size_t lda, size_t rows, size_t columns, const double* y,
                         double* x) {
    size_t j = 0;
    for (; j + vector_columns <= columns; j += vector_columns, a += vector_columns * lda) {
        Vector sum[vector_columns] = {};
        size_t i = 0;
        for (; i + lanes <= rows; i += lanes)
            for (size_t k = 0; k < vector_columns; k++)
                sum[k] += load(a + k * lda + i) * load(y + i);
        for (size_t k = 0; k < vector_columns; k++) {
            double rest = sum_of(sum[k]);
            for (size_t r = i; r < rows; r++)
                rest += a[k * lda + r] * y[r];
            x[j + k] -= rest;
        }
    }
    for (; j < columns; j++, a += lda) {
        double sum = 0.0;
        for (size_t i = 0; i < rows; i++)
            sum += a[i] * y[i];
        x[j] -= sum;
    }
}

// The numbers of one row of a block of vectors. A template takes the block: it would drop what the
// row's type says of alignment.
#if KERNEL_LANES > 1
struct Narrow {
    typedef double Row __attribute__((vector_size(Kernels::block * sizeof(double)),
                                      aligned(sizeof(double)), may_alias));
};
struct Wide {
    typedef double Row __attribute__((vector_size(Kernels::wide_block * sizeof(double)),
                                      aligned(sizeof(double)), may_alias));
};
#else
template <size_t width> struct RowOf { double part[width]; };
template <size_t width> inline RowOf<width> operator*(const RowOf<width>& a, double b) {
    RowOf<width> c;
    for (size_t k = 0; k < width; k++)
        c.part[k] = a.part[k] * b;
    return c;
}
template <size_t width> inline RowOf<width>& operator+=(RowOf<width>& a, const RowOf<width>& b) {
    for (size_t k = 0; k < width; k++)
        a.part[k] += b.part[k];
    return a;
}
template <size_t width> inline RowOf<width>& operator-=(RowOf<width>& a, const RowOf<width>& b) {
    for (size_t k = 0; k < width; k++)
        a.part[k] -= b.part[k];
    return a;
}
struct Narrow {
    typedef RowOf<Kernels::block> Row;
};
struct Wide {
    typedef RowOf<Kernels::wide_block> Row;
};
#endif

// `group` rows, or columns, together: enough sums at a time to keep the processor busy.
template <size_t group, class Block>
inline void multiples_group(const double* a, size_t lda, size_t columns,
                            const typename Block::Row* x, typename Block::Row* y) {
    typename Block::Row sum[group] = {};
    for (size_t j = 0; j < columns; j++)
        for (size_t k = 0; k < group; k++)
            sum[k] += x[j] * a[j * lda + k];
    for (size_t k = 0; k < group; k++)
        y[k] -= sum[k];
}

template <size_t group, class Block>
inline void transposeds_group(const double* a, size_t lda, size_t rows,
                              const typename Block::Row* y, typename Block::Row* x) {
    typename Block::Row sum[group] = {};
    for (size_t i = 0; i < rows; i++)
        for (size_t k = 0; k < group; k++)
            sum[k] += y[i] * a[k * lda + i];
    for (size_t k = 0; k < group; k++)
        x[k] -= sum[k];
}

// As many sums as the registers hold.
template <class Block>
constexpr size_t large_group = sizeof(typename Block::Row) == sizeof(double) * Kernels::block ? 8
                               : lanes >= 8                                                   ? 8
                               : lanes >= 4                                                   ? 4
                                                                                              : 2;
template <class Block> constexpr size_t small_group = large_group<Block> / 2;

template <class Block>
void subtract_multiples(const double* a, size_t lda, size_t rows, size_t columns, const double* x,
                        double* y) {
    const typename Block::Row* from = reinterpret_cast<const typename Block::Row*>(x);
    typename Block::Row* to = reinterpret_cast<typename Block::Row*>(y);
    size_t i = 0;
    for (; i + large_group<Block> <= rows; i += large_group<Block>)
        multiples_group<large_group<Block>, Block>(a + i, lda, columns, from, to + i);
    for (; i + small_group<Block> <= rows; i += small_group<Block>)
        multiples_group<small_group<Block>, Block>(a + i, lda, columns, from, to + i);
    for (; i < rows; i++)
        multiples_group<1, Block>(a + i, lda, columns, from, to + i);
}

template <class Block>
void subtract_transposeds(const double* a, size_t lda, size_t rows, size_t columns, const double* y,
                          double* x) {
    const typename Block::Row* from = reinterpret_cast<const typename Block::Row*>(y);
    typename Block::Row* to = reinterpret_cast<typename Block::Row*>(x);
    size_t j = 0;
    for (; j + large_group<Block> <= columns; j += large_group<Block>)
        transposeds_group<large_group<Block>, Block>(a + j * lda, lda, rows, from, to + j);
    for (; j + small_group<Block> <= columns; j += small_group<Block>)
        transposeds_group<small_group<Block>, Block>(a + j * lda, lda, rows, from, to + j);
    for (; j < columns; j++)
        transposeds_group<1, Block>(a + j * lda, lda, rows, from, to + j);
}

template <class Block> void solve_triangles(const double* l, size_t ldl, size_t n, double* x) {
    typename Block::Row* to = reinterpret_cast<typename Block::Row*>(x);
    for (size_t j = 0; j < n; j++, l += ldl) {
        const typename Block::Row value = to[j] * (1.0 / l[j]);
        to[j] = value;
        for (size_t i = j + 1; i < n; i++)
            to[i] -= value * l[i];
    }
}

template <class Block>
void solve_transposed_triangles(const double* l, size_t ldl, size_t n, double* x) {
    typename Block::Row* to = reinterpret_cast<typename Block::Row*>(x);
    for (size_t j = n; j-- > 0;) {
        typename Block::Row value = to[j];
        for (size_t i = j + 1; i < n; i++)
            value -= to[i] * l[j * ldl + i];
        to[j] = value * (1.0 / l[j * ldl + j]);
    }
}

} // namespace

extern const Kernels KERNEL_NAME;
const Kernels KERNEL_NAME = {tile_rows,
                             subtract_product,
                             factor,
                             solve_rows,
                             subtract_multiple,
                             subtract_transposed,
                             {subtract_multiples<Narrow>, subtract_transposeds<Narrow>,
                              solve_triangles<Narrow>, solve_transposed_triangles<Narrow>},
                             {subtract_multiples<Wide>, subtract_transposeds<Wide>,
                              solve_triangles<Wide>, solve_transposed_triangles<Wide>}};

} // namespace frameslv
