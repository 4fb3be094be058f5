// SPDX-License-Identifier: GPL-3.0-or-later
// Result files.
#include "solver/results/writeresults.h"

#include <algorithm>
#include <array>

#include "solver/results/members.h"
#include "solver/results/records.h"
#include "solver/results/sharedrows.h"
#include "solver/results/stressmeans.h"

// The name of a case as the trailer of its block: without blanks.
static std::string trailerof(const model& m, int lc) {
    std::string name;
    for (const char c : m.cases[std::size_t(lc)].name)
        if (std::string_view(" \t\r\n\",").find(c) == std::string_view::npos) name += c;
    return name.empty() ? "LC" + std::to_string(lc) : name;
}

// A row for each node, made by row(i, text) of the node i from 0.
template <typename Row>
static void writenodes(resultfile& out, const model& m, const dofmap& d, Row row) {
    std::vector<int> counted;
    for (int i = 0; i < m.nnodes(); ++i)
        if (d.nodes->counts(std::size_t(i))) counted.push_back(i);
    writeshared(
        std::array<textout*, 1>{out.get()}, int(counted.size()), m.allnodes(), 512,
        [&](int i) { return m.nameofnode(counted[std::size_t(i)] + 1); },
        [&](int i, std::array<rowtext, 1>& text) { row(counted[std::size_t(i)], text[0]); });
}

static void writenoderows(resultfile& out, const model& m, const dofmap& d, const double* values) {
    writenodes(out, m, d, [&](int i, rowtext& text) {
        text.put(values + std::size_t(i) * std::size_t(d.pernode), d.pernode);
        text.endline();
    });
}

void writedisplacements(const model& m, const dofmap& d, const displacements& u) {
    resultfile out(m.base + ".rvp");
    out.line(m.allnodes(), d.anadof);
    for (int lc = 1; lc <= u.cases; ++lc) {
        writenoderows(out, m, d, u.of(d, lc));
        out.quotedline(trailerof(m, lc));
    }
    out.commit();
}

void writereactions(const model& m, const dofmap& d, const displacements& u, const reactionset& r) {
    resultfile out(m.base + ".KRT");
    out.line(m.allnodes(), d.anadof);
    for (int lc = 1; lc <= u.cases; ++lc) {
        const double* const at = r.force.data() + std::size_t(lc - 1) * d.equation.size();
        const auto dofs = std::size_t(d.pernode);
        writenodes(out, m, d, [&](int i, rowtext& text) {
            text.put(m.nameofnode(i + 1));
            text.put(at + std::size_t(i) * dofs, d.pernode);
            text.endline();
        });
        double sum[6] = {};
        for (std::size_t i = 0; i < d.equation.size(); ++i)
            if (d.nodes->counts(i / dofs)) sum[i % dofs] += at[i];
        allranks().sum(sum, 6);
        rowtext total;
        total.put(0);
        total.put(sum, d.pernode);
        out.rawline(total.content());
        out.quotedline(trailerof(m, lc));
    }
    out.commit();
}

void writemodes(const model& m, const dofmap& d, const modeset& r) {
    resultfile out(m.base + ".EIG");
    out.line(d.anadof, r.count());
    for (int mode = 1; mode <= r.count(); ++mode) {
        out.line(r.value[std::size_t(mode - 1)]);
        writenoderows(out, m, d, r.of(d, mode));
    }
    out.commit();
}

// --- lines --------------------------------------------------------------------------------------

static void putlinestress(const element& e, const double* ends, rowtext& text) {
    text.put(e.name);
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
    resultfile stresses(m.base + ".LES"), members(m.base + ".MEM");
    const std::array<textout*, 2> files = {stresses.get(), members.get()};
    const auto numberof = [&](int i) { return m.nameof(r.elements[std::size_t(i)]); };
    for (int lc = 1; lc <= r.cases; ++lc) {
        const memberwriter member(m, s, d, u, lc);
        writeshared(files, int(r.elements.size()), m.allelements(), 32, numberof,
                    [&](int i, std::array<rowtext, 2>& texts) {
                        const element e = elementat(m, s, r.elements[std::size_t(i)]);
                        const double* const ends = r.of(lc, std::size_t(i));
                        putlinestress(e, ends, texts[0]);
                        member.put(e, ends, texts[1]);
                    });
        for (resultfile* const out : {&stresses, &members}) out->rawline("END");
    }
    stresses.commit();
    members.commit();
}

// --- plates -------------------------------------------------------------------------------------

// The four files are written at once: an element's number, corners and axes serve them all.
using platetexts = std::array<rowtext, 4>;
static void putplate(const model& m, const settings& s, const platestresses& r,
                     const meanslots& slots, const std::vector<facestress>& means, int lc,
                     int place, platetexts& texts) {
    const element e = elementat(m, s, r.elements[std::size_t(place)]);
    const mat3& axes = slots.axes[std::size_t(place)];
    const recordplane plane = recordplaneof(e, axes);
    for (int c = 0; c < e.nodes; ++c) {
        const int corner = r.first[std::size_t(place)] + c;
        const double* const own = r.of(lc, corner);
        const facestress mean = meanat(slots, means, corner);
        double records[4][recordvalues];
        globalrecord(plane, facestressof(e, axes, own), records[0]);
        localrecord(e, own, records[1]);
        globalrecord(plane, mean, records[2]);
        localrecord(mean, axes, records[3]);
        const std::size_t begin = texts[0].content().size();
        texts[0].put(e.name);
        texts[0].putrounded(e.x[c]);
        const std::string_view where = texts[0].content().substr(begin);
        for (std::size_t k = 1; k < texts.size(); ++k) texts[k].put(where);
        for (std::size_t k = 0; k < texts.size(); ++k) {
            texts[k].putrounded(records[k], recordvalues);
            texts[k].endline();
        }
    }
}

void writeplatestresses(const model& m, const settings& s, const platestresses& r, int cases) {
    resultfile global(m.base + ".NSR"), local(m.base + ".NSL"), globalmean(m.base + ".NSA"),
        localmean(m.base + ".NLA");
    const std::array<textout*, 4> files = {global.get(), local.get(), globalmean.get(),
                                           localmean.get()};
    std::vector<int> own;  // places; the others are here for the means
    for (std::size_t i = 0; i < r.elements.size(); ++i)
        if (isown(m, r.elements[i])) own.push_back(int(i));
    const auto numberof = [&](int i) {
        return m.nameof(r.elements[std::size_t(own[std::size_t(i)])]);
    };
    const meanslots slots = findslots(m, s, r);
    for (int lc = 1; lc <= cases; ++lc) {
        const std::vector<facestress> means = findmeans(m, s, r, slots, lc);
        writeshared(files, int(own.size()), m.allelements(), 64, numberof,
                    [&](int i, platetexts& texts) {
                        putplate(m, s, r, slots, means, lc, own[std::size_t(i)], texts);
                    });
        for (resultfile* const out : {&global, &local, &globalmean, &localmean})
            out->rawline("END");
    }
    for (resultfile* const out : {&global, &local, &globalmean, &localmean}) out->commit();
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
    out.line(m.allnodes(), long(halfbandwidth), m.allelements());
    out.commit();
}
