// SPDX-License-Identifier: GPL-3.0-or-later
// The sums of a run.
#include "solver/results/sumfile.h"

#include <Eigen/Geometry>
#include <cmath>
#include <filesystem>

#include "core/largest.h"
#include "core/numtext.h"
#include "core/runtime.h"
#include "core/textfile.h"
#include "solver/base/parallel.h"
#include "solver/elements/surface.h"
#include "solver/loads/loads.h"

// --- loads by kind ------------------------------------------------------------------------------

static vec6 wrench(const vec3& at, const vec3& force) {
    vec6 w;
    w << force, at.cross(force);
    return w;
}

// What the analysis has no direction for falls away.
static vec6 nodalsum(const model& m, const dofmap& d, const loadcase& c) {
    vec6 sum = vec6::Zero();
    for (const nodalrow& row : c.nodal) {
        if (d.place[row.dof] < 0 || !d.nodes->counts(std::size_t(row.node - 1))) continue;
        vec3 at = m.nodes[std::size_t(row.node)];
        if (m.twod) at.z() = 0;
        if (row.dof <= 3)
            sum += wrench(at, row.value * vec3::Unit(row.dof - 1));
        else
            sum[row.dof - 1] += row.value;
    }
    allranks().sum(sum.data(), sum.size());
    return sum;
}

static vec6 rowsum(const element& e, const elementrow& row, const dofmap& d) {
    const auto met = [&](vec3 load) {
        for (int k = 0; k < 3; ++k)
            if (d.place[k + 1] < 0) load[k] = 0;
        return load;
    };
    if (kindof(e.type).fam != family::plate) {
        const vec3 load = row.value * lineaxes(e).row(row.direction - 1).transpose();
        return wrench(middleof(e), lengthof(e) * met(load));
    }
    vec6 sum = vec6::Zero();
    for (const surfacepoint& p : surfacepoints(e.nodes, 3)) {
        const surfaceshape n = shapesat(e.nodes, p.place);
        sum += wrench(surfaceat(e, n), p.weight * met(plateload(e, row, surfacenormal(e, n))));
    }
    return sum;
}

static vec6 elementsum(const model& m, const settings& s, const dofmap& d, const loadcase& c) {
    const int piece = 4096, rows = int(c.element.size());
    std::vector<vec6> sums(std::size_t((rows + piece - 1) / piece), vec6::Zero());
    parallelpieces(int(sums.size()), 1, [&](int first, int last, int) {
        for (int i = first * piece; i < std::min(last * piece, rows); ++i) {
            const elementrow& row = c.element[std::size_t(i)];
            if (isown(m, row.element))
                sums[std::size_t(i / piece)] += rowsum(elementat(m, s, row.element), row, d);
        }
    });
    vec6 sum = vec6::Zero();
    for (const vec6& one : sums) sum += one;
    allranks().sum(sum.data(), sum.size());
    return sum;
}

// --- rows ---------------------------------------------------------------------------------------

namespace {
// Text of rows: put takes what a row holds, end ends it.
class rows {
  public:
    rows& quoted(const std::string& words) {
        comma();
        text += '"';
        for (const char c : words) text += c == '"' ? '\'' : c == '\r' || c == '\n' ? ' ' : c;
        text += '"';
        return *this;
    }
    rows& put(double value) {
        comma();
        text += numbertext(std::isfinite(value) ? value : 0.0);
        return *this;
    }
    rows& put(const vec6& values, const vec6& rounding) {
        for (int k = 0; k < 6; ++k) put(std::fabs(values[k]) <= rounding[k] ? 0 : values[k]);
        return *this;
    }
    void end() {
        text += "\r\n";
        started = false;
    }
    const std::string& content() const { return text; }

  private:
    void comma() {
        if (started) text += ',';
        started = true;
    }
    std::string text;
    bool started = false;
};
}  // namespace

// Largest translation (first 1) or rotation (first 4) of a case.
static largestof largest(const model& m, const dofmap& d, const double* u, int first) {
    return findlargest(*d.nodes, std::size_t(m.nnodes()), [&](std::size_t i) {
        double square = 0;
        for (int dof = first; dof < first + 3; ++dof)
            if (d.place[dof] >= 0) square += std::pow(u[d.index(int(i) + 1, d.place[dof])], 2);
        return std::sqrt(square);
    });
}

static void putwarnings(const runlog& log, int lc, rows& text) {
    std::vector<std::string> told;
    for (std::size_t i = 0; i < log.warnings().size(); ++i)
        if (log.caseof(i) == 0 || log.caseof(i) == lc) told.push_back(log.warnings()[i]);
    text.quoted("warnings").put(double(told.size())).end();
    for (const std::string& one : told) text.quoted("warning").quoted(one).end();
}

static const char* massword(int type) {
    static const char* const words[] = {"wave", "wind", "buoyancy"};
    return type >= casewave ? words[type - casewave] : "acceleration";
}

static void putloads(const model& m, const settings& s, const results& r, int lc, rows& text) {
    const loadcase& c = m.cases[std::size_t(lc)];
    const vec6 &applied = r.reactions.load[std::size_t(lc)],
               &reaction = r.reactions.reaction[std::size_t(lc)];
    // What is left of loads that balance among themselves is none, and no fault of the balance.
    const vec6 left = 1e-6 * r.reactions.least[std::size_t(lc)];
    vec6 rounding = left;
    for (const int half : {0, 3}) {
        const double sum =
            std::max(applied.segment<3>(half).norm(), reaction.segment<3>(half).norm());
        rounding.segment<3>(half) = rounding.segment<3>(half).cwiseMax(1e-11 * sum);
    }
    vec6 rest = applied;
    const auto kind = [&](const char* name, const vec6& sum) {
        text.quoted("load").quoted(name).put(sum, rounding).end();
        rest -= sum;
    };
    double any[2] = {double(!c.nodal.empty()), double(!c.element.empty())};
    allranks().most(any, 2);
    if (c.type == caseapplied && any[0] != 0) kind("nodal", nodalsum(m, r.dofs, c));
    if (any[1] != 0) kind("element", elementsum(m, s, r.dofs, c));
    if (c.type != caseapplied) kind(massword(c.type), vec6(rest));
    text.quoted("applied").put(applied, rounding).end();
    text.quoted("reactions").put(reaction, rounding).end();
    text.quoted("difference").put(vec6(applied + reaction), left).end();
}

std::string staticsums(const model& m, const settings& s, const results& r, const runlog& log) {
    const dofmap& d = r.dofs;
    double held = 0;
    const auto counted = [&](std::size_t node) { return d.nodes->counts(node); };
    for (const helddirection& h : d.held) held += counted(std::size_t(h.owner - 1));
    for (std::size_t i = 0; i < d.heldplain.size(); ++i)
        if (d.heldplain[i]) held += counted(i / std::size_t(d.pernode));
    allranks().sum(&held, 1);
    rows text;
    for (int lc = 1; lc <= r.u.cases; ++lc) {
        text.quoted("case").put(lc).quoted(m.cases[std::size_t(lc)].name).end();
        if (!r.reactions.load.empty()) putloads(m, s, r, lc, text);
        text.quoted("residual").put(r.residual[std::size_t(lc - 1)]).end();
        const largestof way = largest(m, d, r.u.of(d, lc), 1);
        const largestof turn = largest(m, d, r.u.of(d, lc), 4);
        text.quoted("translation").put(way.size).put(way.item).end();
        text.quoted("rotation").put(turn.size).put(turn.item).end();
        text.quoted("held").put(held).end();
        putwarnings(log, lc, text);
    }
    return text.content();
}

std::string modesums(const results& r, const runlog& log) {
    rows text;
    for (int i = 0; i < r.modes.count(); ++i) {
        const double square = r.modes.value[std::size_t(i)];
        text.quoted("mode").put(i + 1).put(square);
        text.put(square < 0 ? 0 : std::sqrt(square) / (2 * M_PI));
        for (int k = 0; k < 3; ++k) {
            const double total = r.modes.totalmass[k];
            text.put(total > 0 ? r.modes.effectivemass[std::size_t(i)][k] / total : 0);
        }
        text.end();
    }
    putwarnings(log, 0, text);
    return text.content();
}

// --- the file -----------------------------------------------------------------------------------

namespace {
struct sumpart {
    std::string head, tables;  // with their line ends
};
}  // namespace

static const char* const kindnames[] = {"static", "modes"};

static std::string headof(int kind, const std::string& checksum, int count) {
    rows head;
    head.quoted(kindnames[kind]).quoted(checksum).put(count).end();
    return head.content();
}

// What the file holds of a kind; nothing where there is no file, or another one of its name.
static void readparts(const std::string& path, sumpart* parts) {
    for (const int kind : {0, 1}) parts[kind] = {headof(kind, "", 0), ""};
    std::string text;
    guarded([&] { text = readwhole(path); }, [](const runtimeerror&) {});
    int kind = 0;
    for (std::size_t at = 0, line = 0; at < text.size(); ++line) {
        const std::size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
        const std::string row = text.substr(at, end - at);
        at = end;
        if (line < 2) {
            if (row.find(kindnames[line]) != 1) return;
            parts[line].head = row;
        } else {
            // The rows of modes stand last.
            if (row.starts_with("\"mode\"")) kind = 1;
            parts[kind].tables += row;
        }
    }
}

static void writeparts(const std::string& path, const sumpart* parts) {
    textout out(path);
    for (const int kind : {0, 1}) out.raw(parts[kind].head);
    for (const int kind : {0, 1}) out.raw(parts[kind].tables);
    out.commit();
}

void writesums(const std::string& base, runkind kind, const std::string& checksum, int count,
               const std::string& tables) {
    sumpart parts[2];
    readparts(base + ".sum", parts);
    parts[int(kind)] = {headof(int(kind), checksum, count), tables};
    writeparts(base + ".sum", parts);
}

void dropsums(const std::string& base, runkind kind) {
    sumpart parts[2];
    const std::string path = base + ".sum";
    readparts(path, parts);
    std::error_code ec;
    if (parts[1 - int(kind)].tables.empty()) {
        std::filesystem::remove(path, ec);
        return;
    }
    parts[int(kind)] = {headof(int(kind), "", 0), ""};
    writeparts(path, parts);
}
