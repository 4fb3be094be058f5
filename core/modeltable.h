// SPDX-License-Identifier: GPL-3.0-or-later
// The model as one table: a row an array, with what its numbers mean and where its count stands.
//
// What is done to the whole model goes over these rows: allocation, keeping aside, values of
// scripts, steps back, the renumbering of references. A new array or column is one row here; a
// number that a higher floor holds and that names an item is registered with holdreference.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "core/array.h"

// What an index counts, and what a number may refer to.
enum class items {
    none,
    node,
    element,
    group,
    constraint,
    loadcase,
    nodalload,    // of one load case
    elementload,  // of one load case
    combination,
    graphic,
    patch,
};

enum class roles {
    model,      // what the user makes
    shown,      // goes with the model and is no change of it: which elements are shown, which
                // group is current, flags that follow from the elements
    selection,  // lists of what is selected
    buffer,     // of copies, generators and imports
    work,       // scratch room of one routine
    result,     // what the solver computed
};

enum class kinds { number, count, code, flag, angle, colour, text };

// What becomes of a reference whose item goes.
enum class losses {
    zero,     // 0: none, or a hole
    leaves,   // its row leaves the list
    instead,  // the item that takes the place
    stays,    // keeps the old number
};

// One cell or several equal ones of an item's row, counted over all its inner indices.
struct column {
    int first = 0, last = 0;
    const char* caption = "";
    const char* unit = "";  // F force, L length, T time; empty for none
    kinds kind = kinds::number;
    const char* file = "";  // extension of the file that holds it; empty for none
    items refers = items::none;
    losses lost = losses::zero;
};

// Upper bound of an index: `least`, or `factor` times a declared size where that is more.
struct bound {
    long least = 0;
    int size = 0;  // of modelsize, 0 for none
    long factor = 1;
    long upper() const;
};

// The arrays that a row can stand for.
template <template <typename> typename Wrap>
using arraykinds =
    std::variant<Wrap<array1<int>>, Wrap<array1<float>>, Wrap<array1<double>>, Wrap<array1<Flag>>,
                 Wrap<array1<Integer>>, Wrap<array1<std::string>>, Wrap<array2<int>>,
                 Wrap<array2<float>>, Wrap<array2<double>>, Wrap<array2<Flag>>, Wrap<array3<float>>,
                 Wrap<array3<double>>, Wrap<array3<Integer>>>;
template <typename T>
using aspointer = T*;
template <typename T>
using asvalue = T;
using arraypointer = arraykinds<aspointer>;
using arrayvalue = arraykinds<asvalue>;

struct modelarray {
    const char* name;
    const char* caption;
    arraypointer cells;
    std::vector<bound> bounds;
    roles role = roles::model;
    items of = items::none;  // what its rows are; none for lists and scratch room
    int along = 1;           // the index that counts them; the one before it chooses the list
    // Lists 0..lists() hold something of the model, each with rows 0..count(list).
    std::function<long()> lists = {};
    std::function<long(long list)> count = {};
    std::vector<column> columns = {};
    bool mechanical = false;  // results depend on it
    // What a row of no item holds, where that is not 0: the colour of a group to come.
    int (*blank)(long i) = nullptr;
};

using scalarpointer = std::variant<int*, double*, bool*, Flag*, Integer*, std::string*>;

struct modelscalar {
    const char* name;
    const char* caption;
    scalarpointer value;
    roles role = roles::model;
    bool mechanical = false;
};

const std::vector<modelarray>& modelarrays();
const std::vector<modelscalar>& modelscalars();
const modelarray* findarray(const std::string& name);    // null for none
const modelscalar* findscalar(const std::string& name);  // null for none

// One list of an array: its cells stand side by side, `width` cells a row.
template <typename T>
struct stretch {
    T* begin = nullptr;
    long rows = 0;  // that there is room for, row 0 included
    long width = 1;
    T* row(long i) const { return begin + i * width; }
};

template <typename T>
stretch<T> stretchof(array1<T>& a, int, long) {
    return {a.block.cells.get(), a.upper + 1, 1};
}
template <typename T>
stretch<T> stretchof(array2<T>& a, int along, long list) {
    const long inner = a.upper2 + 1;
    if (a.upper1 < 0) return {};
    if (along == 1) return {a.block.cells.get(), a.upper1 + 1, inner};
    return {a.row(list).data(), inner, 1};
}
template <typename T>
stretch<T> stretchof(array3<T>& a, int along, long list) {
    const long inner = a.upper3 + 1;
    if (a.upper1 < 0) return {};
    if (along == 1) return {a.block.cells.get(), a.upper1 + 1, (a.upper2 + 1) * inner};
    return {a.row(list, 0).data(), a.upper2 + 1, inner};
}

// Lists that an array has, whether they are in use or not: 0..lastlist.
long lastlist(const modelarray& row);

// Calls take(stretch) for one list of a row, with the type of its cells.
template <typename Take>
void withstretch(const modelarray& row, long list, Take take) {
    std::visit([&](auto* a) { take(stretchof(*a, row.along, list)); }, row.cells);
}

// Rows first..last as those of no item. What is empty already is not written: an untouched page
// costs no memory.
template <typename T>
void blankrows(const modelarray& row, stretch<T> s, long first, long last) {
    for (T* cell = s.row(first); cell < s.row(last + 1); ++cell)
        if (*cell != T()) *cell = T();
    if constexpr (std::is_same_v<T, int>)
        for (long i = first; row.blank && i <= last; ++i) *s.row(i) = row.blank(i);
}

// Numbers of higher floors that name an item: a group on show, the number in work of a dialog.
struct heldreference {
    const char* caption;
    items refers;
    losses lost;
    std::function<std::span<int>()> numbers;
};
std::vector<heldreference>& heldreferences();
void holdreference(const char* caption, items refers, losses lost,
                   std::function<std::span<int>()> numbers);

// How many items of a kind there are; `list` is the load case of a load.
long countof(items of, long list = 0);
void setcount(items of, long count, long list = 0);
