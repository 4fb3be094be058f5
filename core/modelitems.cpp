// SPDX-License-Identifier: GPL-3.0-or-later
// Items and references by the rows of the table.
#include "core/modelitems.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"

// Arrays that hold one row of each item.
static bool holds(const modelarray& row, items of) {
    return row.of == of && (row.role == roles::model || row.role == roles::shown);
}

static bool isload(items of) {
    return of == items::nodalload || of == items::elementload;
}

// Calls take(row, stretch) for every list in which the items of a kind have their row: the one of
// a load case, or both sets of the nodes and all views of the elements.
template <typename Take>
static void eachrowof(items of, long list, Take take) {
    for (const modelarray& row : modelarrays()) {
        if (!holds(row, of)) continue;
        const long first = isload(of) ? list : 0, last = isload(of) ? list : lastlist(row);
        for (long l = first; l <= last; ++l) withstretch(row, l, [&](auto s) { take(row, s); });
    }
}

void copyitem(items of, long from, long to, long list) {
    eachrowof(of, list,
              [&](const modelarray&, auto s) { std::copy_n(s.row(from), s.width, s.row(to)); });
}

void emptyitems(items of, long first, long last, long list) {
    eachrowof(of, list, [&](const modelarray& row, auto s) { blankrows(row, s, first, last); });
}

long roomof(items of, long list) {
    long room = std::numeric_limits<long>::max();
    eachrowof(of, list, [&](const modelarray&, auto s) { room = std::min(room, s.rows - 1); });
    return room;
}

int appenditems(items of, long count, long list) {
    const long before = countof(of, list), room = roomof(of, list);
    if (before + count > room) throw subscripterror(before + count, room);
    eachrowof(of, list, [&](const modelarray& row, auto s) {
        blankrows(row, s, before + 1, before + count);
    });
    setcount(of, before + count, list);
    return int(before + 1);
}

// Results, and the places before the last move, go by the numbers as they were.
static void numberschanged(items of) {
    const bool hasresults = of == items::node || of == items::element;
    if (hasresults) dropresults();
    if (hasresults || of == items::graphic) dropundo();
}

void closeitems(items of, const newnumbers& number) {
    const long count = countof(of);
    long kept = 0;
    eachrowof(of, 0, [&](const modelarray& row, auto s) {
        kept = 0;
        for (long i = 1; i <= count; ++i) {
            if (number[std::size_t(i)] != kept + 1) continue;
            if (++kept != i) std::move(s.row(i), s.row(i + 1), s.row(kept));
        }
        blankrows(row, s, kept + 1, count);
    });
    setcount(of, kept);
    numberschanged(of);
}

void orderitems(items of, const std::vector<int>& order) {
    eachrowof(of, 0, [&](const modelarray&, auto s) {
        using cell = std::remove_pointer_t<decltype(s.begin)>;
        const auto count = long(order.size());
        std::vector<cell> before(std::make_move_iterator(s.row(1)),
                                 std::make_move_iterator(s.row(count + 1)));
        for (long i = 1; i <= count; ++i) {
            const auto from = before.begin() + (long(order[std::size_t(i - 1)]) - 1) * s.width;
            std::move(from, from + s.width, s.row(i));
        }
    });
    numberschanged(of);
}

// --- references ---------------------------------------------------------------------------------

// Cells of a column that mean something: an element has as many corners as its type.
template <typename T>
static long lastcell(const modelarray& row, const column& c, const T* cells) {
    if constexpr (std::is_same_v<T, float>)
        if (row.cells == arraypointer(&elems) && c.refers == items::node)
            return nodesoftype(cells[0]);
    return c.last;
}

namespace {
struct follower {
    const newnumbers& number;
    int instead;

    bool isgone(long n) const {
        return n >= 1 && std::size_t(n) < number.size() && number[std::size_t(n)] == 0;
    }
    template <typename T>
    T renumbered(T value, losses lost) const {
        const auto n = long(value);
        if (n < 1 || std::size_t(n) >= number.size()) return value;
        const int to = number[std::size_t(n)];
        if (to != 0) return T(to);
        return lost == losses::stays ? value : lost == losses::instead ? T(instead) : T(0);
    }
};
}  // namespace

// The count of a list that rows can leave stands in its first cell.
template <typename T>
static void closelist(const modelarray& row, long list, stretch<T> s, const column& c,
                      const follower& f) {
    std::vector<bool> listed(row.role == roles::selection && s.width == 1 ? f.number.size() : 0);
    long kept = 0;
    const long count = row.count(list);
    for (long i = 1; i <= count; ++i) {
        T* const cells = s.row(i);
        if (f.isgone(long(cells[c.first]))) continue;
        cells[c.first] = f.renumbered(cells[c.first], c.lost);
        const auto n = std::size_t(cells[c.first]);
        if (n < listed.size() && listed[n]) continue;
        if (n < listed.size()) listed[n] = true;
        if (++kept != i) std::copy_n(cells, s.width, s.row(kept));
    }
    if (kept == count) return;
    blankrows(row, s, kept + 1, count);
    s.begin[0] = T(kept);
}

template <typename T>
static void followcolumn(const modelarray& row, long list, stretch<T> s, const column& c,
                         const follower& f) {
    if (c.lost == losses::leaves) return closelist(row, list, s, c, f);
    const long count = std::min(row.count(list), s.rows - 1);
    for (long i = 1; i <= count; ++i) {
        T* const cells = s.row(i);
        const long last = lastcell(row, c, cells);
        for (long k = c.first; k <= last; ++k) cells[k] = f.renumbered(cells[k], c.lost);
    }
}

// Calls take(row, list, stretch of numbers, column) for every column that refers to items.
template <typename Take>
static void eachreference(Take take) {
    for (const modelarray& row : modelarrays())
        for (const column& c : row.columns) {
            if (c.refers == items::none) continue;
            for (long list = 0; list <= row.lists(); ++list)
                withstretch(row, list, [&](auto s) {
                    if constexpr (!std::is_same_v<decltype(s), stretch<std::string>> &&
                                  !std::is_same_v<decltype(s), stretch<Flag>>)
                        take(row, list, s, c);
                });
        }
}

void followitems(items of, const newnumbers& number, int instead) {
    const follower f{number, instead};
    eachreference([&](const modelarray& row, long list, auto s, const column& c) {
        if (c.refers == of) followcolumn(row, list, s, c, f);
    });
    for (const heldreference& held : heldreferences())
        if (held.refers == of)
            for (int& n : held.numbers()) n = f.renumbered(n, held.lost);
}

static const char* captionof(items of) {
    static const std::pair<items, const char*> captions[] = {
        {items::node, "Node"},       {items::element, "Element"}, {items::group, "Group"},
        {items::graphic, "Graphic"}, {items::patch, "Patch"},
    };
    for (const auto& [kind, caption] : captions)
        if (kind == of) return caption;
    return "Item";
}

std::vector<std::string> checkreferences() {
    std::vector<std::string> faults;
    const auto check = [&](const std::string& where, items of, long n) {
        if (n < 0 || n > countof(of))
            faults.push_back(where + ": " + captionof(of) + " " + numbertext(n) +
                             " does not exist");
    };
    eachreference([&](const modelarray& row, long list, auto s, const column& c) {
        if (c.lost == losses::stays || row.role == roles::buffer) return;
        const long count = std::min(row.count(list), s.rows - 1);
        for (long i = 1; i <= count; ++i)
            for (long k = c.first; k <= lastcell(row, c, s.row(i)); ++k)
                check(row.caption + (" " + numbertext(i)), c.refers, long(s.row(i)[k]));
    });
    for (const heldreference& held : heldreferences())
        for (const int n : held.numbers()) check(held.caption, held.refers, n);
    return faults;
}
