// SPDX-License-Identifier: GPL-3.0-or-later
// Arrays of the model database: indices run from 0 to an upper bound that is included, every
// access is checked in every build, and the last index is contiguous in memory.
//
// Cells of plain numbers come from zeroed pages, so declaring room for a large model costs memory
// only where a value is written. Arrays are not copied; the model exists once.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <span>
#include <type_traits>
#include <utility>

#include "core/runtime.h"

// 16-bit signed whole number. Storing a number that does not fit throws overflowerror.
struct Integer {
    Integer() = default;
    template <typename T, typename = std::enable_if_t<std::is_arithmetic_v<T> || std::is_enum_v<T>>>
    Integer(T number) {  // NOLINT: assigned from numbers and codes everywhere
        const double d = double(number);
        if (!(d >= -32768.0 && d <= 32767.0))
            throw overflowerror(std::to_string(d) + " does not fit a 16-bit number");
        value = std::int16_t(d);
    }
    operator int() const { return value; }
    std::int16_t value;
};

// Truth held in 16 bits: True is -1, any other value than 0 counts as true.
struct Flag {
    Flag() = default;
    Flag(bool b) : value(b ? -1 : 0) {}  // NOLINT
    operator bool() const { return value != 0; }
    std::int16_t value;
};

// Owner of one zeroed block of cells.
template <typename T>
struct cellblock {
    static constexpr bool plain = std::is_trivially_default_constructible_v<T>;
    struct release {
        void operator()(T* p) const {
            if constexpr (plain)
                std::free(p);
            else
                delete[] p;
        }
    };
    void alloc(std::size_t n) {
        cells.reset();
        count = 0;
        if (n > std::numeric_limits<std::ptrdiff_t>::max() / sizeof(T)) throw memoryerror();
        if constexpr (plain) {
            cells.reset(static_cast<T*>(std::calloc(n ? n : 1, sizeof(T))));
        } else {
            cells.reset(new (std::nothrow) T[n]());
        }
        if (!cells) throw memoryerror();
        count = n;
    }
    std::unique_ptr<T[], release> cells;
    std::size_t count = 0;
};

// Number of cells of an index 0..upper.
inline std::size_t cellsof(long upper) {
    if (upper < -1) throw subscripterror(upper, 0);
    return std::size_t(upper + 1);
}

template <typename T>
struct array1 {  // (0..upper)
    void alloc(long u) {
        upper = -1;
        block.alloc(cellsof(u));
        upper = u;
    }
    void clear() {
        block.alloc(0);
        upper = -1;
    }
    T& operator()(long i) { return block.cells[place(i)]; }
    const T& operator()(long i) const { return block.cells[place(i)]; }
    std::span<T> row() { return {block.cells.get(), std::size_t(upper + 1)}; }
    std::span<const T> row() const { return {block.cells.get(), std::size_t(upper + 1)}; }
    std::size_t place(long i) const {
        if (i < 0 || i > upper) [[unlikely]]
            throw subscripterror(i, upper);
        return std::size_t(i);
    }
    long upper = -1;  // included; -1 while nothing is allocated
    cellblock<T> block;
};

template <typename T>
struct array2 {  // (0..upper1, 0..upper2)
    void alloc(long u1, long u2) {
        upper1 = upper2 = -1;
        block.alloc(product(cellsof(u1), cellsof(u2)));
        upper1 = u1;
        upper2 = u2;
    }
    void clear() {
        block.alloc(0);
        upper1 = upper2 = -1;
    }
    T& operator()(long i, long j) { return block.cells[place(i, j)]; }
    const T& operator()(long i, long j) const { return block.cells[place(i, j)]; }
    std::span<T> row(long i) { return {&block.cells[place(i, 0)], std::size_t(upper2 + 1)}; }
    std::span<const T> row(long i) const {
        return {&block.cells[place(i, 0)], std::size_t(upper2 + 1)};
    }
    std::size_t place(long i, long j) const {
        if (i < 0 || i > upper1) [[unlikely]]
            throw subscripterror(i, upper1);
        if (j < 0 || j > upper2) [[unlikely]]
            throw subscripterror(j, upper2);
        return std::size_t(i) * std::size_t(upper2 + 1) + std::size_t(j);
    }
    static std::size_t product(std::size_t a, std::size_t b) {
        if (b != 0 && a > std::numeric_limits<std::size_t>::max() / b) throw memoryerror();
        return a * b;
    }
    long upper1 = -1, upper2 = -1;  // included
    cellblock<T> block;
};

template <typename T>
struct array3 {  // (0..upper1, 0..upper2, 0..upper3)
    void alloc(long u1, long u2, long u3) {
        upper1 = upper2 = upper3 = -1;
        block.alloc(array2<T>::product(array2<T>::product(cellsof(u1), cellsof(u2)), cellsof(u3)));
        upper1 = u1;
        upper2 = u2;
        upper3 = u3;
    }
    void clear() {
        block.alloc(0);
        upper1 = upper2 = upper3 = -1;
    }
    T& operator()(long i, long j, long k) { return block.cells[place(i, j, k)]; }
    const T& operator()(long i, long j, long k) const { return block.cells[place(i, j, k)]; }
    std::span<T> row(long i, long j) {
        return {&block.cells[place(i, j, 0)], std::size_t(upper3 + 1)};
    }
    std::span<const T> row(long i, long j) const {
        return {&block.cells[place(i, j, 0)], std::size_t(upper3 + 1)};
    }
    std::size_t place(long i, long j, long k) const {
        if (i < 0 || i > upper1) [[unlikely]]
            throw subscripterror(i, upper1);
        if (j < 0 || j > upper2) [[unlikely]]
            throw subscripterror(j, upper2);
        if (k < 0 || k > upper3) [[unlikely]]
            throw subscripterror(k, upper3);
        return (std::size_t(i) * std::size_t(upper2 + 1) + std::size_t(j)) *
                   std::size_t(upper3 + 1) +
               std::size_t(k);
    }
    long upper1 = -1, upper2 = -1, upper3 = -1;  // included
    cellblock<T> block;
};
