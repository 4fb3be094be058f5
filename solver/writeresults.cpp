// SPDX-License-Identifier: GPL-3.0-or-later
// Result files.
#include "solver/writeresults.h"

#include <algorithm>

#include "solver/records.h"
#include "solver/rowtext.h"
#include "solver/stressmeans.h"

// The name of a case as the trailer of its block: without blanks.
static std::string trailerof(const model& m, int lc) {
    std::string name;
    for (const char c : m.cases[std::size_t(lc)].name)
        if (std::string_view(" \t\r\n\",").find(c) == std::string_view::npos) name += c;
    return name.empty() ? "LC" + std::to_string(lc) : name;
}

static void writenoderows(textout& out, const model& m, const dofmap& d, const double* values) {
    writerows(out, m.nnodes(), [&](int i, rowtext& text) {
        text.put(values + std::size_t(i) * std::size_t(d.pernode), d.pernode);
        text.endline();
    });
}

void writedisplacements(const model& m, const dofmap& d, const displacements& u) {
    textout out(m.base + ".rvp");
    out.line(m.nnodes(), d.anadof);
    for (int lc = 1; lc <= u.cases; ++lc) {
        writenoderows(out, m, d, u.of(d, lc));
        out.quoted(trailerof(m, lc)).endline();
    }
    out.commit();
}

void writereactions(const model& m, const dofmap& d, const displacements& u, const reactionset& r) {
    textout out(m.base + ".KRT");
    out.line(m.nnodes(), d.anadof);
    for (int lc = 1; lc <= u.cases; ++lc) {
        const double* const at = r.force.data() + std::size_t(lc - 1) * d.equation.size();
        writerows(out, m.nnodes(), [&](int i, rowtext& text) {
            text.put(i + 1);
            text.put(at + std::size_t(i) * std::size_t(d.pernode), d.pernode);
            text.endline();
        });
        double sum[6] = {};
        for (int i = 0; i < d.dofs(); ++i) sum[i % d.pernode] += at[i];
        rowtext total;
        total.put(0);
        total.put(sum, d.pernode);
        total.endline();
        out.raw(total.content());
        out.quoted(trailerof(m, lc)).endline();
    }
    out.commit();
}

void writemodes(const model& m, const dofmap& d, const modeset& r) {
    textout out(m.base + ".EIG");
    out.line(d.anadof, r.count());
    for (int mode = 1; mode <= r.count(); ++mode) {
        out.line(r.value[std::size_t(mode - 1)]);
        writenoderows(out, m, d, r.of(d, mode));
    }
    out.commit();
}

void writelinestresses(const model& m, const settings& s, const linestresses& r) {
    textout out(m.base + ".LES");
    for (int lc = 1; lc <= r.cases; ++lc) {
        writerows(out, int(r.elements.size()), [&](int i, rowtext& text) {
            const element e = elementat(m, s, r.elements[std::size_t(i)]);
            text.put(e.number);
            text.put(middleof(e));
            const double* const value = r.of(std::size_t(i), lc);
            for (int end = 0; end < 2; ++end) {
                const double* const at = value + end * linevalues;
                double record[recordvalues] = {at[0], 0,     0,     0, 0, 0, 0,
                                               at[1], at[2], at[3], 0, 0, 0};
                record[recordvalues - 1] = combinedstress(record);
                text.put(record, recordvalues);
            }
            text.endline();
        });
        out.raw("END").endline();
    }
    out.commit();
}

// --- plates -------------------------------------------------------------------------------------

static void putcorner(const element& e, int corner, const double* record, rowtext& text) {
    text.put(e.number);
    text.put(e.x[corner]);
    text.put(record, recordvalues);
    text.endline();
}

namespace {
enum class axesof { element, model };
}

static void makerecord(const element& e, axesof which, const double* corner, double* record) {
    if (which == axesof::element)
        localrecord(e, corner, record);
    else
        globalrecord(e, stressaxes(e), corner, record);
}

static void writecorners(textout& out, const model& m, const settings& s, const platestresses& r,
                         int lc, axesof which) {
    writerows(out, int(r.elements.size()), [&](int i, rowtext& text) {
        const element e = elementat(m, s, r.elements[std::size_t(i)]);
        for (int c = 0; c < e.nodes; ++c) {
            double record[recordvalues];
            makerecord(e, which, r.of(lc, r.first[std::size_t(i)] + c), record);
            putcorner(e, c, record, text);
        }
    });
    out.raw("END").endline();
}

static void writemeans(textout& out, const model& m, const settings& s, const platestresses& r,
                       const meanslots& slots, const std::vector<facestress>& means, axesof which) {
    writerows(out, int(r.elements.size()), [&](int i, rowtext& text) {
        const element e = elementat(m, s, r.elements[std::size_t(i)]);
        const mat3& axes = slots.axes[std::size_t(i)];
        for (int c = 0; c < e.nodes; ++c) {
            const facestress mean = meanat(slots, means, r.first[std::size_t(i)] + c);
            double record[recordvalues];
            if (which == axesof::element)
                localrecord(mean, axes, record);
            else
                globalrecord(e, axes, mean, record);
            putcorner(e, c, record, text);
        }
    });
    out.raw("END").endline();
}

void writeplatestresses(const model& m, const settings& s, const platestresses& r, int cases) {
    for (const axesof which : {axesof::model, axesof::element}) {
        textout out(m.base + (which == axesof::model ? ".NSR" : ".NSL"));
        for (int lc = 1; lc <= cases; ++lc) writecorners(out, m, s, r, lc, which);
        out.commit();
    }
    const meanslots slots = findslots(m, s, r);
    textout global(m.base + ".NSA"), local(m.base + ".NLA");
    for (int lc = 1; lc <= cases; ++lc) {
        const std::vector<facestress> means = findmeans(m, s, r, slots, lc);
        writemeans(global, m, s, r, slots, means, axesof::model);
        writemeans(local, m, s, r, slots, means, axesof::element);
    }
    global.commit();
    local.commit();
}

void writemasses(const model& m, const std::vector<massproperties>& masses) {
    textout out(m.base + ".EMS");
    for (int g = 1; g <= m.ngroups(); ++g) {
        const massproperties& p = masses[std::size_t(g)];
        out.line(g, p.mass, p.centre[0], p.centre[1], p.centre[2], p.radius[0], p.radius[1],
                 p.radius[2]);
    }
    out.commit();
}

void writesummary(const model& m, std::int64_t halfbandwidth) {
    textout out(m.base + ".DAT");
    out.line(m.nnodes(), long(halfbandwidth), m.nelems());
    out.commit();
}
