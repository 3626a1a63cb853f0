#include "solver/sparse/dense.h"

#include <algorithm>
#include <atomic>

namespace frameslv {

namespace {

// Columns that are eliminated at once: their triangle stays in the first-level cache.
constexpr size_t block_columns = 48;
// Products of up to this many numbers an operand are done where they stand, larger ones packed.
constexpr size_t unpacked_numbers = 24000;
// Packed operands: rows of A that stay in the second-level cache at this depth.
constexpr size_t pack_depth = 240;
constexpr size_t pack_rows = 192;
// Rows solved by one thread at a time.
constexpr size_t solved_rows = 96;

// Tiles of `tile` rows of a column-by-column matrix, each row by row of its transpose; short tiles
// are filled with zeros.
template <size_t tile>
void pack_tiles(const double* from, size_t ld, size_t rows, size_t depth, double* to) {
    size_t i = 0;
    for (; i + tile <= rows; i += tile, to += tile * depth)
        for (size_t p = 0; p < depth; p++)
            for (size_t k = 0; k < tile; k++)
                to[p * tile + k] = from[p * ld + i + k];
    if (i == rows)
        return;
    for (size_t p = 0; p < depth; p++)
        for (size_t k = 0; k < tile; k++)
            to[p * tile + k] = i + k < rows ? from[p * ld + i + k] : 0.0;
}

// The same for the tiles of any set of kernels.
void pack(const double* from, size_t ld, size_t rows, size_t depth, size_t tile, double* to) {
    switch (tile) {
    case 16:
        return pack_tiles<16>(from, ld, rows, depth, to);
    case 8:
        return pack_tiles<8>(from, ld, rows, depth, to);
    case Kernels::tile_columns:
        return pack_tiles<Kernels::tile_columns>(from, ld, rows, depth, to);
    case 4:
        return pack_tiles<4>(from, ld, rows, depth, to);
    default:
        return pack_tiles<2>(from, ld, rows, depth, to);
    }
}

size_t pieces(size_t whole, size_t piece) {
    return (whole + piece - 1) / piece;
}

} // namespace

// Calls act(0) ... act(count - 1), by all threads of the team if there is one.
void DenseEliminator::each(size_t count, const std::function<void(size_t, PackBuffers&)>& act) {
    if (team_ == nullptr || count < 2) {
        for (size_t i = 0; i < count; i++)
            act(i, buffers_[own_]);
        return;
    }
    std::atomic<size_t> next{0};
    team_->run([&](int id) {
        for (size_t i = next++; i < count; i = next++)
            act(i, buffers_[static_cast<size_t>(id)]);
    });
}

bool DenseEliminator::eliminate(double* panel, size_t columns, double* update, size_t below,
                                double* pivots) {
    panel_ = panel;
    height_ = columns + below;
    pivots_ = pivots;
    if (!eliminate_columns(0, columns))
        return false;
    subtract_square(update, below, panel + columns, below, below, columns);
    return true;
}

bool DenseEliminator::eliminate_columns(size_t first, size_t last) {
    if (last - first <= block_columns)
        return eliminate_block(first, last);
    const size_t half = pieces(last - first, 2 * Kernels::tile_columns) * Kernels::tile_columns;
    const size_t middle = first + half;
    if (!eliminate_columns(first, middle))
        return false;
    subtract_square(panel_ + middle * height_ + middle, height_, panel_ + first * height_ + middle,
                    height_ - middle, last - middle, half);
    return eliminate_columns(middle, last);
}

bool DenseEliminator::eliminate_block(size_t first, size_t last) {
    double inverses[block_columns];
    const size_t columns = last - first;
    const double* corner = panel_ + first * height_ + first;
    if (!kernels_.factor(panel_ + first * height_ + first, height_, columns, pivots_ + first,
                         inverses))
        return false;
    const size_t rows = height_ - last;
    // Reading whole tiles, the kernel reaches below a corner that ends within one, into rows that
    // another thread may be solving.
    double copy[block_columns * block_columns + Kernels::slack];
    size_t corner_height = height_;
    if (team_ != nullptr && columns % Kernels::tile_columns != 0) {
        for (size_t j = 0; j < columns; j++)
            std::copy_n(corner + j * height_, columns, copy + j * columns);
        std::fill_n(copy + columns * columns, Kernels::slack, 0.0);
        corner = copy;
        corner_height = columns;
    }
    each(pieces(rows, solved_rows), [&](size_t piece, PackBuffers&) {
        const size_t i = piece * solved_rows;
        kernels_.solve_rows(corner, corner_height, columns, inverses,
                            panel_ + first * height_ + last + i, height_,
                            std::min(solved_rows, rows - i));
    });
    return true;
}

void DenseEliminator::subtract_square(double* c, size_t ldc, const double* a, size_t rows,
                                      size_t columns, size_t depth) {
    if (rows * depth <= unpacked_numbers) {
        kernels_.subtract_product({c, ldc, a, height_, kernels_.tile_rows, a, height_,
                                   Kernels::tile_columns, rows, columns, depth, 0});
        return;
    }
    const size_t chunks = pieces(depth, pack_depth);
    for (size_t k = 0; k < chunks; k++) {
        const size_t first = depth * k / chunks;
        const size_t last = depth * (k + 1) / chunks;
        subtract_packed(c, ldc, a + first * height_, rows, columns, last - first);
    }
}

void DenseEliminator::subtract_packed(double* c, size_t ldc, const double* a, size_t rows,
                                      size_t columns, size_t depth) {
    std::vector<double>& b = buffers_[own_].b;
    const size_t packed_columns = pieces(columns, Kernels::tile_columns) * Kernels::tile_columns;
    if (b.size() < packed_columns * depth)
        b.resize(packed_columns * depth);
    const size_t strip = pack_rows; // a multiple of tile_columns too
    each(pieces(columns, strip), [&](size_t piece, PackBuffers&) {
        const size_t j = piece * strip;
        pack(a + j, height_, std::min(strip, columns - j), depth, Kernels::tile_columns,
             b.data() + j * depth);
    });
    const size_t strips = pieces(rows, strip);
    each(strips, [&](size_t piece, PackBuffers& own) {
        // From the bottom, where the strips are longest.
        const size_t i = (strips - 1 - piece) * strip;
        const size_t some = std::min(strip, rows - i);
        if (own.a.size() < strip * pack_depth)
            own.a.resize(strip * pack_depth);
        pack(a + i, height_, some, depth, kernels_.tile_rows, own.a.data());
        kernels_.subtract_product({c + i, ldc, own.a.data(), kernels_.tile_rows,
                                   kernels_.tile_rows * depth, b.data(), Kernels::tile_columns,
                                   Kernels::tile_columns * depth, some, std::min(columns, i + some),
                                   depth, i});
    });
}

} // namespace frameslv
