// SPDX-License-Identifier: GPL-3.0-or-later
// Room for every array of the table.
#include "core/allocmodel.h"

#include <algorithm>
#include <fstream>
#include <limits>
#include <string>
#include <variant>
#include <vector>

#include "core/model.h"
#include "core/modeltable.h"
#include "core/platform.h"

template <typename T>
static void allocate(array1<T>& a, const std::vector<bound>& bounds) {
    a.alloc(bounds[0].upper());
}
template <typename T>
static void allocate(array2<T>& a, const std::vector<bound>& bounds) {
    a.alloc(bounds[0].upper(), bounds[1].upper());
}
template <typename T>
static void allocate(array3<T>& a, const std::vector<bound>& bounds) {
    a.alloc(bounds[0].upper(), bounds[1].upper(), bounds[2].upper());
}

// Results get their room where they are read.
static void allocate(const modelarray& row) {
    std::visit([&](auto* a) { row.role == roles::result ? a->clear() : allocate(*a, row.bounds); },
               row.cells);
    if (row.blank) withstretch(row, 0, [&](auto s) { blankrows(row, s, 0, s.rows - 1); });
}

static double bytesofsizes() {
    double sum = 0;
    for (const modelarray& row : modelarrays()) {
        if (row.role == roles::result) continue;
        double bytes = std::visit(
            [](const auto* a) { return double(sizeof(*a->block.cells.get())); }, row.cells);
        for (const bound& b : row.bounds) bytes *= double(b.upper() + 1);
        sum += bytes;
    }
    return sum;
}

// What the machine can give at this moment; no limit where it does not tell.
static double freebytes() {
    const double kibibyte = 1024;
    std::ifstream in("/proc/meminfo");
    std::string name, unit;
    double amount = 0, sum = 0;
    while (in >> name >> amount && std::getline(in, unit))
        if (name == "MemAvailable:" || name == "SwapFree:") sum += amount * kibibyte;
    return sum > 0 ? sum : std::numeric_limits<double>::infinity();
}

bool allocmodel() {
    return guarded(
        [] {
            // Not by trying: a machine that runs out of memory stands still for minutes before.
            if (bytesofsizes() > freebytes()) throw memoryerror();
            for (const modelarray& row : modelarrays()) allocate(row);
        },
        [](const runtimeerror&) {
            theplatform().message("Out of Memory, Reduce size of declaired model", icons::exclamation);
        });
}

void clearcounts() {
    for (const items of :
         {items::node, items::element, items::group, items::constraint, items::graphic})
        setcount(of, 0);
    for (const heldreference& held : heldreferences())
        if (held.lost == losses::zero) std::ranges::fill(held.numbers(), 0);
    nload = 0;
    resultflag = 0;
    stressloaded = false;
    maxdisp = 0;
    hasmass = hasplates = false;
}
