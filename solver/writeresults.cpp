// SPDX-License-Identifier: GPL-3.0-or-later
// Result files.
#include "solver/writeresults.h"

#include <algorithm>
#include <array>

#include "solver/gather.h"
#include "solver/members.h"
#include "solver/ranks.h"
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
    writerows(out, m.nnodes(), 512, [&](int i, rowtext& text) {
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
        writerows(out, m.nnodes(), 512, [&](int i, rowtext& text) {
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

// --- lines --------------------------------------------------------------------------------------

static void putlinestress(const element& e, const double* ends, rowtext& text) {
    text.put(e.number);
    text.putrounded(middleof(e));
    const linestress stress = linestressof(e, ends);
    for (int end = 0; end < 2; ++end) {
        const double* const at = stress.data() + end * linevalues;
        const double record[recordvalues] = {at[0], 0, 0, 0, 0, 0, 0, at[1], at[2], at[3], 0, 0, 0};
        text.putrounded(at, 1);
        text.put("0,0,0,0,0,0");
        text.putrounded(at + 1, linevalues - 1);
        text.put("0,0");
        const double combined = combinedstress(record);
        text.putrounded(&combined, 1);
    }
    text.endline();
}

void writelines(const model& m, const settings& s, const dofmap& d, const displacements& u,
                const lineends& r) {
    textout stresses(m.base + ".LES"), members(m.base + ".MEM");
    const std::array<textout*, 2> files = {&stresses, &members};
    const bool shared = !allranks().alone();
    lineends gathered;
    for (int lc = 1; lc <= r.cases; ++lc) {
        if (shared) gathered = gathercase(m, r, lc);
        const lineends& all = shared ? gathered : r;
        const memberwriter member(m, s, d, u, lc);
        writerows(files, int(all.elements.size()), 32, [&](int i, std::array<rowtext, 2>& texts) {
            const element e = elementat(m, s, all.elements[std::size_t(i)]);
            const double* const ends = all.of(shared ? 1 : lc, std::size_t(i));
            putlinestress(e, ends, texts[0]);
            member.put(e, ends, texts[1]);
        });
        for (textout* const out : files) out->raw("END").endline();
    }
    for (textout* const out : files) out->commit();
}

// --- plates -------------------------------------------------------------------------------------

// The four files are written at once: an element's number, corners and axes serve them all.
void writeplatestresses(const model& m, const settings& s, const platestresses& r, int cases) {
    textout global(m.base + ".NSR"), local(m.base + ".NSL"), globalmean(m.base + ".NSA"),
        localmean(m.base + ".NLA");
    const std::array<textout*, 4> files = {&global, &local, &globalmean, &localmean};
    const bool shared = !allranks().alone();
    platestresses gathered;
    meanslots slots;
    for (int lc = 1; lc <= cases; ++lc) {
        if (shared) gathered = gathercase(m, r, lc);
        const platestresses& all = shared ? gathered : r;
        const int at = shared ? 1 : lc;
        if (lc == 1) slots = findslots(m, s, all);
        const std::vector<facestress> means = findmeans(m, s, all, slots, at);
        writerows(files, int(all.elements.size()), 64, [&](int i, std::array<rowtext, 4>& texts) {
            const element e = elementat(m, s, all.elements[std::size_t(i)]);
            const mat3& axes = slots.axes[std::size_t(i)];
            const recordplane plane = recordplaneof(e, axes);
            for (int c = 0; c < e.nodes; ++c) {
                const int corner = all.first[std::size_t(i)] + c;
                const double* const own = all.of(at, corner);
                const facestress mean = meanat(slots, means, corner);
                double records[4][recordvalues];
                globalrecord(plane, facestressof(e, axes, own), records[0]);
                localrecord(e, own, records[1]);
                globalrecord(plane, mean, records[2]);
                localrecord(mean, axes, records[3]);
                const std::size_t begin = texts[0].content().size();
                texts[0].put(e.number);
                texts[0].putrounded(e.x[c]);
                const std::string_view place = texts[0].content().substr(begin);
                for (std::size_t k = 1; k < texts.size(); ++k) texts[k].put(place);
                for (std::size_t k = 0; k < texts.size(); ++k) {
                    texts[k].putrounded(records[k], recordvalues);
                    texts[k].endline();
                }
            }
        });
        for (textout* const out : files) out->raw("END").endline();
    }
    for (textout* const out : files) out->commit();
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
