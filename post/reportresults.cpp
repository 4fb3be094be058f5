// SPDX-License-Identifier: GPL-3.0-or-later
// The report's sections on masses, displacements and nodal forces.
#include <cmath>
#include <string>

#include "core/journal.h"
#include "core/model.h"
#include "core/session.h"
#include "core/textfile.h"
#include "core/views.h"
#include "post/plotunits.h"
#include "post/postproces.h"
#include "post/reportsections.h"

static const char* const nothing = "NO ANALYSIS PERFORMED";

// --- masses -------------------------------------------------------------------------------------

// The whole of some masses: centre weighted by mass, radii of gyration about the axes through that
// centre. Parallel axes: M kx^2 = sum of m (kx^2 + dy^2 + dz^2).
static massrow wholeof(const std::vector<massrow>& rows) {
    massrow whole;
    for (const massrow& row : rows) whole.mass += row.mass;
    const double divisor = whole.mass == 0 ? 1 : whole.mass;
    for (const massrow& row : rows)
        for (int k = 0; k < 3; ++k) whole.centre[k] += row.mass * row.centre[k] / divisor;
    for (int k = 0; k < 3; ++k) {
        double sum = 0;
        for (const massrow& row : rows) {
            sum += row.mass * row.gyration[k] * row.gyration[k];
            for (int j = 0; j < 3; ++j) {
                const double off = row.centre[j] - whole.centre[j];
                if (j != k) sum += row.mass * off * off;
            }
        }
        whole.gyration[k] = std::sqrt(sum / divisor);
    }
    return whole;
}

static void writemass(reporttext& r, const std::string& name, const massrow& row) {
    r.out.cut(name).zone().sci(row.mass);
    for (const double c : row.centre) r.out.zone().sci(c);
    for (const double k : row.gyration) r.out.zone().sci(k);
    r.out.end();
}

void writemasses(reporttext& r, const analysiskind& kind) {
    std::vector<massrow> rows;
    std::string reason;
    const bool good = guarded(
        [&] { rows = readmasses(); },
        [&](const runtimeerror& e) { reason = e.number == errfilenotfound ? nothing : e.what; });
    if (reason == nothing && !kind.valid) return;  // the line about the analysis tells it
    section(r, "******************  MASS REPORT *******************");
    if (!good) {
        r.out.line(reason);
        return;
    }
    r.out.line(
        "Group         Mass          CoGx          CoGy          CoGz          Kxx           Kyy"
        "           Kzz");
    r.out.line(
        "              [W]            [L]           [L]           [L]          [L]           [L]"
        "           [L]");
    std::vector<massrow> groupmass(std::size_t(ngroups()) + 1);
    for (const massrow& row : rows)
        if (row.group >= 1 && row.group <= ngroups()) groupmass[std::size_t(row.group)] = row;
    for (int g = 1; g <= ngroups(); ++g) writemass(r, groupname(g), groupmass[std::size_t(g)]);
    writemass(r, "Total", wholeof(groupmass));
}

// --- displacements and forces -------------------------------------------------------------------

// Values of a node by analysis code: which of the six, and how the headings go on.
namespace {
struct valueset {
    int count;
    int index[6];
    const char *displacements, *displacementunits, *forces, *forceunits;
};
}  // namespace

static const valueset valuesets[] = {
    {3, {0, 1, 2}, "            DZ", "           [L]", "            FZ", "           [F]"},
    {2, {0, 1}, "", "", "", ""},
    {3, {0, 1, 5}, "            RZ", "           [DEG]", "            MZ", "           [F.L]"},
    {6,
     {0, 1, 2, 3, 4, 5},
     "            DZ            RX            RY            RZ",
     "           [L]           [DEG]         [DEG]         [DEG]",
     "            FZ            MX            MY            MZ",
     "           [F]           [F.L]         [F.L]         [F.L]"},
};
static const valueset* values = valuesets;  // of the analysis in hand

analysiskind readkind() {
    analysiskind kind;
    kind.valid = guarded(
        [&] {
            textin in(findnocase(modelname + ".rvp"));
            kind.anadof = readheader(in);
        },
        [&](const runtimeerror& e) {
            if (e.number != errfilenotfound) kind.reason = e.what;
        });
    values = &valuesets[kind.anadof];
    return kind;
}

void writekind(reporttext& r, const analysiskind& kind) {
    static const char* const sentences[] = {
        "Two Dimensional analysis X Y Z degree of freedom",
        "Two Dimensional analysis X Y degree of freedom",
        "Three Dimensional analysis X Y RZ degree of freedom",
        "Three Dimensional analysis X Y Z RX RY RZ degree of freedom",
    };
    if (!kind.valid) return;
    r.out.line(sentences[kind.anadof]);
    if (isresultstale()) note(r, staletext);
    r.out.empty(2);
}

void writenoanalysis(reporttext& r, const analysiskind& kind) {
    if (!kind.reason.empty()) r.out.line(kind.reason);
    r.out.line(nothing);
}

static void writenumberandname(reporttext& r, int c) {
    counted(r, "Loadcombination number = ", c);
    r.out.line("Loadcombination Name = " + shownname(lcombname(c)));
}

static void writedisplacementrows(reporttext& r) {
    r.out.text("               DX            DY").text(values->displacements).end();
    r.out.line(
        unitline(std::string("NO             [L]           [L]") + values->displacementunits));
    for (int n = 1; n <= nnodes(); ++n) {
        r.out.raw(n);
        for (int k = 0; k < values->count; ++k) {
            const int i = values->index[k];
            r.out.zone().raw(i < 3 ? nodes(1, n, i) : float(todegrees(nodes(0, n, i - 3))));
        }
        r.out.end();
    }
}

// However the section ends, the rotations in set 0 of nodes make room for the geometry.
namespace {
struct geometryback {
    ~geometryback() { reloadmodel(); }
};
}  // namespace

void writedisplacements(reporttext& r) {
    section(r, "******************  DISPLACEMENTS REPORT *******************");
    r.out.line("NODAL DIPLACEMENTS PER LOAD COMBINATION");
    dashline(r);
    const geometryback back;
    for (int c = 1; c <= ncomb(); ++c) {
        curlcomb = c;
        const bool read = readdispreport();
        writenumberandname(r, c);
        note(r, reportnote);
        if (read)
            writedisplacementrows(r);
        else
            r.out.line(nothing);
        dashline(r);
    }
}

static void writeforcerows(reporttext& r) {
    r.out.text("               FX            FY").text(values->forces).end();
    r.out.line(unitline(std::string("NO             [F]           [F]") + values->forceunits));
    const int total = nnodes() + 1;
    for (int n = 1; n <= total; ++n) {
        if (n < total)
            r.out.raw(n);
        else
            r.out.text("Total");
        for (int k = 0; k < values->count; ++k) {
            const double value = dispres(0, n, values->index[k] + 1);
            r.out.zone();
            if (n < total)
                r.out.raw(value);
            else
                r.out.sci(value);
        }
        r.out.end();
    }
}

void writeforces(reporttext& r) {
    section(r, "******************  NODAL FORCES REPORT  *******************");
    r.out.line("NODAL FORCES PER LOAD COMBINATION");
    dashline(r);
    for (int c = 1; c <= ncomb(); ++c) {
        curlcomb = c;
        const bool read = readkrt();
        writenumberandname(r, c);
        note(r, reportnote);
        if (read)
            writeforcerows(r);
        else
            r.out.line(nothing);
        r.out.line("----------------------------------------------------------- ");
    }
}
