// SPDX-License-Identifier: GPL-3.0-or-later
// Tiles, each worked on by one thread with the sequential dense routines.
#include "solver/equations/front.h"

#include <atomic>
#include <vector>

#include "solver/base/blas.h"
#include "solver/equations/onecolumn.h"

static const int tileheight = 512;  // of those that threads share
static const double one = 1, minus = -1, zero = 0;

template <typename Work>
static void eachtile(int count, loopsharer* threads, Work work) {
    if (threads != nullptr && count > 1) return threads->each(count, work);
    for (int t = 0; t < count; ++t) work(t);
}

namespace {
// Rows of a block of columns: tile 0 is the square at the diagonal, and what lies below is parted
// only where there is somebody to share it with.
struct tiles {
    tiles(int square, int tall, bool shared)
        : square(square), tall(tall), each(shared ? tileheight : std::max(tall - square, 1)) {}
    int count() const { return 1 + (tall - square + each - 1) / each; }
    int first(int t) const { return t == 0 ? 0 : square + (t - 1) * each; }
    int height(int t) const { return t == 0 ? square : std::min(each, tall - first(t)); }
    int square, tall, each;
};
}  // namespace

// c -= a b' for one tile, c = -a b' where fresh; of the square at the diagonal the lower half.
static void subtract(bool diagonal, int rows, int columns, int depth, const double* a,
                     const double* b, int from, double* c, int to, bool fresh) {
    const double* const keep = fresh ? &zero : &one;
    if (diagonal)
        dsyrk_("L", "N", &columns, &depth, &minus, a, &from, keep, c, &to);
    else
        dgemm_("N", "T", &rows, &columns, &depth, &minus, a, &from, b, &from, keep, c, &to);
}

// The rows of a tile become those of the factor, by the triangle of its block of columns: the
// library's own solution is slow, so that products do what lies between narrow triangles.
static void dividebytriangle(int rows, int columns, const double* triangle, double* tile,
                             int tall) {
    const int narrow = 24;
    for (int c = 0; c < columns; c += narrow) {
        const int wide = std::min(narrow, columns - c), rest = columns - c - wide;
        const double* const own = triangle + c + std::int64_t(c) * tall;
        double* const x = tile + std::int64_t(c) * tall;
        dtrsm_("R", "L", "T", "N", &rows, &wide, &one, own, &tall, x, &tall);
        if (rest > 0)
            dgemm_("N", "T", &rows, &rest, &wide, &minus, x, &tall, own + wide, &tall, &one,
                   x + std::int64_t(wide) * tall, &tall);
    }
}

// Block j of the columns from those before it.
static bool eliminateblock(const staircase& s, int j, double* columns, loopsharer* threads) {
    const int top = j * s.width(), wide = s.wide(j), tall = s.tall(j);
    const tiles t(wide, tall, threads != nullptr);
    double* const block = columns + s.place(j);
    std::atomic<bool> good{true};
    eachtile(t.count(), threads, [&](int i) {
        const int row = t.first(i), height = t.height(i);
        for (int k = 0; k < j; ++k) {
            const double* const before = columns + s.place(k) + top - k * s.width();
            subtract(i == 0, height, wide, s.width(), before + row, before, s.tall(k), block + row,
                     tall, false);
        }
        if (i > 0) return;
        int info = 0;
        dpotrf_("L", &wide, block, &tall, &info);
        if (info != 0) good = false;
    });
    if (!good) return false;
    eachtile(t.count() - 1, threads, [&](int i) {
        dividebytriangle(t.height(i + 1), wide, block, block + t.first(i + 1), tall);
    });
    return true;
}

static void fillupdate(const staircase& s, const double* columns, double* update,
                       loopsharer* threads) {
    const int below = s.rows - s.columns;
    const staircase u{below, below};
    struct tile {
        int block, number;
    };
    std::vector<tile> list;
    for (int j = 0; j < u.blocks(); ++j)
        for (int i = 0; i < tiles(u.wide(j), u.tall(j), threads != nullptr).count(); ++i)
            list.push_back({j, i});
    eachtile(int(list.size()), threads, [&](int at) {
        const auto [j, i] = list[std::size_t(at)];
        const tiles t(u.wide(j), u.tall(j), threads != nullptr);
        const int top = s.columns + j * u.width(), row = t.first(i);
        double* const to = update + u.place(j) + row;
        for (int k = 0; k < s.blocks(); ++k) {
            const double* const from = columns + s.place(k) + top - k * s.width();
            subtract(i == 0, t.height(i), u.wide(j), s.wide(k), from + row, from, s.tall(k), to,
                     u.tall(j), k == 0);
        }
    });
}

bool eliminate(const staircase& s, double* columns, double* update, loopsharer* threads) {
    for (int j = 0; j < s.blocks(); ++j)
        if (!eliminateblock(s, j, columns, threads)) return false;
    fillupdate(s, columns, update, threads);
    return true;
}

// --- solution -----------------------------------------------------------------------------------

// x becomes the solution of the triangle at the diagonal, or of its transpose.
static void solvetriangle(const char* trans, int n, const double* l, int tall, double* x,
                          int stride, int sides) {
    const int next = 1;
    if (sides == 1)
        dtrsv_("L", trans, "N", &n, l, &tall, x, &next);
    else
        dtrsm_("L", "L", trans, "N", &n, &sides, &one, l, &tall, x, &stride);
}

// y -= l x, or l' x; l: rows x columns.
static void subtractproduct(const char* trans, int rows, int columns, const double* l, int tall,
                            const double* x, double* y, int stride, int sides) {
    const int next = 1;
    if (sides == 1) {
        dgemv_(trans, &rows, &columns, &minus, l, &tall, x, &next, &one, y, &next);
        return;
    }
    const bool plain = *trans == 'N';
    dgemm_(trans, "N", plain ? &rows : &columns, &sides, plain ? &columns : &rows, &minus, l, &tall,
           x, &stride, &one, y, &stride);
}

// What the blocks do below their triangles is parted alike for any number of threads: products of
// fewer rows may round otherwise.
void solveforward(const staircase& s, const double* columns, double* x, int sides,
                  loopsharer* threads) {
    if (sides == 1 && threads == nullptr) return forwardonecolumn(s, columns, x);
    for (int j = 0; j < s.blocks(); ++j) {
        const int wide = s.wide(j), tall = s.tall(j);
        const double* const block = columns + s.place(j);
        double* const own = x + j * s.width();
        const tiles t(wide, tall, true);
        solvetriangle("N", wide, block, tall, own, s.rows, sides);
        eachtile(t.count() - 1, threads, [&](int i) {
            const int row = t.first(i + 1);
            subtractproduct("N", t.height(i + 1), wide, block + row, tall, own, own + row, s.rows,
                            sides);
        });
    }
}

void solvebackward(const staircase& s, const double* columns, double* x, int sides,
                   loopsharer* threads) {
    if (sides == 1 && threads == nullptr) return backwardonecolumn(s, columns, x);
    const int narrow = 16;  // columns of a part
    for (int j = s.blocks() - 1; j >= 0; --j) {
        const int wide = s.wide(j), tall = s.tall(j), below = tall - wide;
        const double* const block = columns + s.place(j);
        double* const own = x + j * s.width();
        const int parts = below > 0 ? (wide + narrow - 1) / narrow : 0;
        eachtile(parts, threads, [&](int i) {
            const int first = i * narrow, count = std::min(narrow, wide - first);
            subtractproduct("T", below, count, block + wide + std::int64_t(first) * tall, tall,
                            own + wide, own + first, s.rows, sides);
        });
        solvetriangle("T", wide, block, tall, own, s.rows, sides);
    }
}
