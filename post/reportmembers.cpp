// SPDX-License-Identifier: GPL-3.0-or-later
// The report's sections on members and on the balance of a run.
#include <algorithm>
#include <cmath>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/textfile.h"
#include "post/balance.h"
#include "post/members.h"
#include "post/plotunits.h"
#include "post/reportsections.h"

// --- members ------------------------------------------------------------------------------------

static void writesigns(reporttext& r) {
    for (const char* const row : {
             "Forces act as positive on the face that looks along e1, deflections along the axes:",
             "        e2                             e3                                         ",
             "        |    +-----+ Vy                |    +-----+ Vz                            ",
             "        |    |     |--> N              |    |     |--> N, T                       ",
             "        +-e1 +-----+ ) Mz              +-e1 +-----+ ) My, clockwise               ",
             "N pulls; Mz > 0 stretches the side of -e2, My > 0 that of +e3.",
         })
        r.out.line(row);
    r.out.empty();
}

static void writestation(reporttext& r, int e, const memberline& m, int i) {
    r.out.raw(e).zone().sci(double(i) / (memberstations - 1));
    for (const auto& value : m.value) r.out.zone().sci(value[i]);
    r.out.end();
}

void writemembers(reporttext& r) {
    section(r, "******************  MEMBER FORCES REPORT  *******************", 1);
    writesigns(r);
    const std::vector<int> members = allmembers();
    if (members.empty()) return r.out.line("Member forces not calculated");
    for (int c = 1; c <= ncomb(); ++c) {
        counted(r, "Loadcombination number = ", c);
        r.out.line("Loadcombination Name = " + shownname(lcombname(c)));
        r.out.text("EL NO").zone().text("PLACE");
        for (const quantityrow& row : quantityrows) r.out.zone().text(headed(row.label, row.unit));
        r.out.end();
        for (const int e : members)
            if (const memberline* const m = memberin(e, c))
                for (const int i : tellingstations(*m)) writestation(r, e, *m, i);
        note(r, membernote);
        dashline(r);
    }
}

// --- balance ------------------------------------------------------------------------------------

void writebalance(reporttext& r) {
    section(r, "******************  BALANCE OF LOADS AND REACTIONS  *******************", 1);
    const balance b = readbalance();
    if (b.cases.empty()) return r.out.line(b.fault);
    const int labelwidth = 2 * zonewidth;
    for (const balancerow& row : balancepage(b)) {
        r.out.text(row.cells[0]);
        if (row.cells.size() > 1) r.out.column(labelwidth);
        for (std::size_t k = 1; k < row.cells.size(); ++k) r.out.zone().text(row.cells[k]);
        if (row.red && !row.head) r.out.text("  <--");
        r.out.end();
    }
    dashline(r);
}
