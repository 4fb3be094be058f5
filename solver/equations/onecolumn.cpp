// SPDX-License-Identifier: GPL-3.0-or-later
// Some columns at a time are read straight through, from the diagonal down, by the widest vectors
// of the processor; a library that takes the triangle first and then what lies below it in separate
// calls is half as fast on small fronts.
#include "solver/equations/onecolumn.h"

// Clang names the clones so that no other file finds them.
#if defined(__x86_64__) && !defined(__clang__)
#define WIDESTVECTORS [[gnu::target_clones("avx512f", "arch=haswell", "default")]]
#else
#define WIDESTVECTORS
#endif
#define INLINED [[gnu::always_inline]] static inline

using eight [[gnu::vector_size(64), gnu::aligned(8), gnu::may_alias]] = double;
static const int eights = 8, some = 4;  // numbers of a vector; columns at a time

INLINED eight& eightat(double* p) {
    return *reinterpret_cast<eight*>(p);
}

INLINED const eight& eightat(const double* p) {
    return *reinterpret_cast<const eight*>(p);
}

// Solves for the first `wide` of y and takes what they make of the other rows off; column: the
// first, from its diagonal.
template <int wide>
INLINED void forward(int rows, const double* column, int tall, double* y) {
    const double* l[wide];
    double found[wide];
    for (int k = 0; k < wide; ++k) {
        l[k] = column + std::int64_t(k) * tall;
        double rest = y[k];
        for (int j = 0; j < k; ++j) rest -= l[j][k] * found[j];
        y[k] = found[k] = rest / l[k][k];
    }
    int i = wide;
    for (; i + eights <= rows; i += eights) {
        eight sum = found[0] * eightat(l[0] + i);
        for (int k = 1; k < wide; ++k) sum += found[k] * eightat(l[k] + i);
        eightat(y + i) -= sum;
    }
    for (; i < rows; ++i) {
        double sum = 0;
        for (int k = 0; k < wide; ++k) sum += found[k] * l[k][i];
        y[i] -= sum;
    }
}

// Takes what the other rows make of the first `wide` of y off and solves for these.
template <int wide>
INLINED void backward(int rows, const double* column, int tall, double* y) {
    const double* l[wide];
    eight sums[wide] = {};
    for (int k = 0; k < wide; ++k) l[k] = column + std::int64_t(k) * tall;
    int i = wide;
    for (; i + eights <= rows; i += eights) {
        const eight other = eightat(y + i);
        for (int k = 0; k < wide; ++k) sums[k] += other * eightat(l[k] + i);
    }
    for (int k = wide - 1; k >= 0; --k) {
        const eight& s = sums[k];
        double sum = ((s[0] + s[4]) + (s[2] + s[6])) + ((s[1] + s[5]) + (s[3] + s[7]));
        for (int j = i; j < rows; ++j) sum += y[j] * l[k][j];
        for (int j = k + 1; j < wide; ++j) sum += y[j] * l[k][j];
        y[k] = (y[k] - sum) / l[k][k];
    }
}

WIDESTVECTORS void forwardonecolumn(const staircase& s, const double* columns, double* x) {
    for (int b = 0; b < s.blocks(); ++b) {
        const int wide = s.wide(b), tall = s.tall(b);
        double* const own = x + b * s.width();
        const auto diagonal = [&](int c) {
            return columns + s.place(b) + c + std::int64_t(c) * tall;
        };
        int c = 0;
        for (; c + some <= wide; c += some) forward<some>(tall - c, diagonal(c), tall, own + c);
        for (; c < wide; ++c) forward<1>(tall - c, diagonal(c), tall, own + c);
    }
}

WIDESTVECTORS void backwardonecolumn(const staircase& s, const double* columns, double* x) {
    for (int b = s.blocks() - 1; b >= 0; --b) {
        const int tall = s.tall(b);
        double* const own = x + b * s.width();
        const auto diagonal = [&](int c) {
            return columns + s.place(b) + c + std::int64_t(c) * tall;
        };
        int c = s.wide(b);
        for (; c % some != 0; --c) backward<1>(tall - c + 1, diagonal(c - 1), tall, own + c - 1);
        for (; c > 0; c -= some)
            backward<some>(tall - c + some, diagonal(c - some), tall, own + c - some);
    }
}
