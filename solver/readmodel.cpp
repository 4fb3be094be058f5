// SPDX-License-Identifier: GPL-3.0-or-later
// Reading of the model's files.
#include "solver/readmodel.h"

#include <cmath>
#include <exception>
#include <future>

#include "core/numtext.h"
#include "solver/base/parallel.h"
#include "solver/base/refuse.h"
#include "solver/dofs/deal.h"
#include "solver/elements/kinds.h"
#include "solver/processes/ranks.h"
#include "solver/processes/stretch.h"

static const double pi = 3.14159265358979;  // of the files
static const double mostvalue = 1e30;       // larger numbers overflow in products of four of them
static const double leastvalue = 1e-30;     // of properties: smaller ones vanish in them
static const double mostturns = 100;        // of angles: larger ones are known to no degree
static const int oldfields = 10, oldparameters = 4;

static double boundednumber(textin& in) {
    const double value = in.number();
    if (!(std::fabs(value) <= mostvalue))
        in.fail(erroverflow, "the number " + numbertext(value) + " is too large");
    return value;
}

static double property(textin& in) {
    const double value = boundednumber(in);
    if (value != 0 && std::fabs(value) < leastvalue)
        in.fail(errtype, "the number " + numbertext(value) + " is too small for a property; 0 or " +
                             numbertext(leastvalue) + " and more is one");
    return value;
}

static double angle(textin& in, double turn) {
    const double value = boundednumber(in);
    if (std::fabs(value) > mostturns * turn)
        in.fail(errtype, "the angle " + numbertext(value) + " is too large; give it within " +
                             numbertext(mostturns * turn));
    return value;
}

// A count of items of which each takes at least this many bytes of the file.
static int countof(textin& in, std::size_t leastbytes, const char* what) {
    const int count = in.count();
    if (std::size_t(count) * leastbytes > in.size() + leastbytes)
        in.fail(errtype, "the file tells " + std::to_string(count) + " " + what +
                             ", but it is too short to hold them");
    return count;
}

// For rows of three values; no more than the file has, whatever it tells.
template <typename Row>
static void makeroom(std::vector<Row>& rows, int count, const textin& in) {
    const std::size_t rowbytes = 6;
    rows.reserve(rows.size() + std::min(std::size_t(count), in.size() / rowbytes));
}

// More rows than a count tells are a file that was edited or spoilt: what follows plays no part.
static void telltail(textin& in, runlog& log) {
    if (!in.atend())
        log.warn(in.name() +
                 " goes on behind its last row; what follows is left out. Correct the "
                 "count above the rows, or save the model again");
}

// --- .tek and .rot ------------------------------------------------------------------------------

static elementdef readelement(textin& in, int nnodes) {
    elementdef e;
    const long type = in.whole();
    if (type < 1 || type > lasttype)
        in.fail(errtype, "element type " + std::to_string(type) +
                             " is not in the catalogue; 1 to " + std::to_string(lasttype) + " are");
    e.type = int(type);
    for (int k = 0; k < kindof(e.type).nodes; ++k) {
        const long n = in.whole();
        if (n < 1 || n > nnodes)
            in.fail(errtype, "the element uses node " + std::to_string(n) +
                                 ", which does not exist; the model has nodes 1 to " +
                                 std::to_string(nnodes));
        e.node[k] = int(n);
    }
    e.group = in.count();
    return e;
}

// The view records behind the elements are the workbench's; more than those are elements that the
// first line does not count.
static void passviews(textin& in, runlog& log) {
    const int views = 4, values = 8;
    for (int k = 0; k < views * values && !in.atend(); ++k) in.word();
    telltail(in, log);
}

namespace {
struct counts {
    int nodes, elements;
};
}  // namespace

// With room for the stretches of this process: from then on the model has its size.
static counts readcounts(textin& in, model& m) {
    const std::size_t nodebytes = 6, elementbytes = 6;
    counts all{};
    all.nodes = countof(in, nodebytes, "nodes");
    all.elements = countof(in, elementbytes, "elements");
    m.nodes.assign(std::size_t(stretches(all.nodes).count()) + 1, vec3::Zero());
    m.elements.assign(std::size_t(stretches(all.elements).count()) + 1, {});
    return all;
}

static void readitems(textin& in, const counts& all, model& m, runlog& log) {
    const stretches nodes(all.nodes), elements(all.elements);
    for (int n = 1; n <= all.nodes; ++n) {
        vec3 at;
        for (int k = 0; k < 3; ++k) at[k] = boundednumber(in);
        if (nodes.holds(n)) m.nodes[std::size_t(n + 1 - nodes.first())] = at;
    }
    for (int e = 1; e <= all.elements; ++e) {
        const elementdef def = readelement(in, all.nodes);
        if (elements.holds(e)) m.elements[std::size_t(e + 1 - elements.first())] = def;
    }
    passviews(in, log);
}

void readtek(textin& in, model& m, runlog& log) {
    const counts all = readcounts(in, m);
    readitems(in, all, m, log);
    if (!allranks().alone()) namestretch(m, all.nodes, all.elements);
}

void readrot(textin& in, model& m, runlog& log) {
    int next = 1;  // of the elements that are held
    for (int e = 1; e <= m.allelements(); ++e) {
        const double turn = angle(in, 2 * pi);
        if (next <= m.nelems() && m.nameof(next) == e) m.elements[std::size_t(next++)].turn = turn;
    }
    telltail(in, log);
}

// --- groups -------------------------------------------------------------------------------------

static void readgroups(textin& in, model& m, int fields) {
    const int n = in.count();
    m.groups.assign(1, {});
    for (int g = 1; g <= n; ++g) {
        groupdata group;
        group.name = in.quoted();
        for (int k = 1; k <= fields; ++k)
            group.field[k] = k == fieldrotation ? angle(in, 360) : property(in);
        m.groups.push_back(std::move(group));
    }
}

void readmlt(textin& in, model& m, runlog& log) {
    readgroups(in, m, groupfields);
    for (int g = 1; g <= m.ngroups(); ++g)
        for (int i = 0; i < 6; ++i)
            for (int j = 0; j < 6; ++j) m.groups[std::size_t(g)].spring(i, j) = boundednumber(in);
    telltail(in, log);
}

// Ten fields a group, no matrices.
static void readoldmlt(textin& in, model& m) {
    readgroups(in, m, oldfields);
    if (!in.atend()) in.fail(errtype, "the file goes on behind the last group");
}

// --- constraints and loads ----------------------------------------------------------------------

// Rows node,dof,value of the nodes that are held. Rows of node 0 or of a node that does not exist
// are left out, as the workbench does; returns how many.
static int readrows(textin& in, int count, const model& m, std::vector<nodalrow>& rows) {
    int dropped = 0;
    makeroom(rows, count, in);
    for (int i = 0; i < count; ++i) {
        const long node = in.whole();
        const int dof = in.wholewithin(1, 6, "a degree of freedom");
        const double value = boundednumber(in);
        if (node < 1 || node > m.allnodes())
            ++dropped;
        else if (const int place = m.placeofnode(int(node)); place > 0)
            rows.push_back({place, dof, value});
    }
    return dropped;
}

static void telldropped(runlog& log, int dropped, const textin& in, const char* what) {
    if (dropped > 0)
        log.warn(in.name() + ": " + std::to_string(dropped) + " row(s) name " + what +
                 " that does not exist; they are left out");
}

void readvpl(textin& in, model& m, runlog& log) {
    const int scaledz = 3;  // the file holds this translation scaled like an angle
    telldropped(log, readrows(in, in.count(), m, m.constraints), in, "a node");
    for (nodalrow& row : m.constraints)
        if (row.dof == scaledz) row.value = row.value * 180 / pi;
    telltail(in, log);
}

static void readcases(textin& in, model& m, int parameters) {
    const int n = in.count();
    m.cases.assign(1, {});
    for (int lc = 1; lc <= n; ++lc) {
        loadcase c;
        c.name = in.quoted();
        c.type = in.wholewithin(caseapplied, casebuoyancy, "a type of load case");
        for (int k = 0; k < parameters; ++k) c.par[k] = boundednumber(in);
        m.cases.push_back(std::move(c));
    }
}

void readlcd(textin& in, model& m, runlog& log) {
    readcases(in, m, caseparameters);
    telltail(in, log);
}

// Four parameters a case.
static void readoldlcd(textin& in, model& m) {
    readcases(in, m, oldparameters);
    if (!in.atend()) in.fail(errtype, "the file goes on behind the last case");
}

// The next block's case. Without .lcd the first file of blocks decides how many cases there are.
static loadcase* nextcase(model& m, int lc, bool counted) {
    if (lc <= m.ncases()) return &m.cases[std::size_t(lc)];
    if (counted) return nullptr;
    m.cases.push_back({});
    return &m.cases.back();
}

// A file that ends between two blocks looks whole.
static void tellmissing(const textin& in, const model& m, int blocks, runlog& log) {
    if (blocks < m.ncases())
        log.warn(in.name() + " ends before the loads of case " + std::to_string(blocks + 1) +
                 "; the model has " + std::to_string(m.ncases()) +
                 " load case(s). If it was cut short, save the model again");
}

void readknk(textin& in, model& m, runlog& log) {
    const bool counted = m.ncases() > 0;
    int dropped = 0, lc = 0;
    while (!in.atend()) {
        loadcase spare;
        loadcase* const c = nextcase(m, ++lc, counted);
        const int count = in.count();
        dropped += readrows(in, count, m, (c ? c : &spare)->nodal);
        if (!c && count > 0)
            log.warn(in.name() + ": the loads of case " + std::to_string(lc) +
                     " are left out, the model has fewer load cases");
    }
    telldropped(log, dropped, in, "a node");
    tellmissing(in, m, lc, log);
}

void readell(textin& in, model& m, runlog& log) {
    const bool counted = m.ncases() > 0;
    int dropped = 0, lc = 0;
    while (!in.atend()) {
        loadcase spare;
        loadcase* const c = nextcase(m, ++lc, counted);
        const int count = in.count();
        std::vector<elementrow>& rows = (c ? c : &spare)->element;
        makeroom(rows, count, in);
        for (int i = 0; i < count; ++i) {
            const long e = in.whole();
            const int direction = in.wholewithin(1, 3, "a direction");
            const double value = boundednumber(in);
            if (e < 1 || e > m.allelements())
                ++dropped;
            else if (const int place = m.placeof(int(e)); place > 0)
                rows.push_back({place, direction, value});
        }
        if (!c && count > 0)
            log.warn(in.name() + ": the element loads of case " + std::to_string(lc) +
                     " are left out, the model has fewer load cases");
    }
    telldropped(log, dropped, in, "an element");
    tellmissing(in, m, lc, log);
}

// --- the set ------------------------------------------------------------------------------------

// Reads one file in its present layout or, where that fails, in its old one. A file that fits
// neither is refused with what the present layout misses.
template <typename Present, typename Old>
static void readeither(const std::string& path, runlog& log, Present present, Old old) {
    const std::string content = readwhole(path);
    guarded(
        [&] {
            textin in(content, path);
            present(in);
        },
        [&](const runtimeerror& fault) {
            textin again(content, path);
            if (!guarded([&] { old(again); }, [](const runtimeerror&) {})) throw fault;
            log.line(path + " has the old layout");
        });
}

// The workbench writes every file of the set; one that was left behind takes its part of the model
// with it.
static bool foundside(const std::string& path, runlog& log) {
    if (isthere(path)) return true;
    log.warn("There is no " + path +
             "; the model lacks what it would tell. If it was lost, save the model again");
    return false;
}

template <typename Read>
static void readside(const std::string& base, const char* extension, runlog& log, Read read) {
    const std::string path = findnocase(base + extension);
    if (!foundside(path, log)) return;
    textin in(path, textin::inmemory::piece);
    read(in);
}

void checkreferences(const model& m) {
    refusefirstof(m, [&](int e) {
        const int g = m.elements[std::size_t(e)].group;
        if (g < 1 || g > m.ngroups())
            refuse("Element " + std::to_string(m.nameof(e)) + " is in group " + std::to_string(g) +
                   ", which does not exist; the model has " + std::to_string(m.ngroups()) +
                   " group(s). Give the element another group");
    });
}

static void readrotations(model& m, runlog& log) {
    readside(m.base, ".rot", log, [&](textin& in) { readrot(in, m, log); });
}

// What needs no more of nodes and elements than how many there are.
static void readconditions(model& m, runlog& log) {
    const std::string mlt = findnocase(m.base + ".mlt");
    if (!isthere(mlt)) refuse("The element groups " + mlt + " are missing; save the model again");
    readeither(
        mlt, log, [&](textin& in) { readmlt(in, m, log); }, [&](textin& in) { readoldmlt(in, m); });
    readside(m.base, ".vpl", log, [&](textin& in) { readvpl(in, m, log); });
    const std::string lcd = findnocase(m.base + ".lcd");
    if (foundside(lcd, log))
        readeither(
            lcd, log, [&](textin& in) { readlcd(in, m, log); },
            [&](textin& in) { readoldlcd(in, m); });
    if (m.cases.empty()) m.cases.resize(1);
    readside(m.base, ".knk", log, [&](textin& in) { readknk(in, m, log); });
    readside(m.base, ".ell", log, [&](textin& in) { readell(in, m, log); });
    if (m.ncases() == 0) m.cases.resize(2);  // there is always one case
}

// Side by side. What is told, and which fault where there are several, is as if the files had been
// read one behind the other.
static void readwholemodel(textin& tek, model& m, runlog& log) {
    enum part { geometry, conditions, parts };
    std::exception_ptr fault[parts];
    runlog behind;
    std::packaged_task<counts()> measure([&] { return readcounts(tek, m); });
    const std::shared_future<counts> all = measure.get_future().share();
    const auto read = [&](int one) {
        if (one == geometry) {
            measure();
            readitems(tek, all.get(), m, log);
            readrotations(m, log);
        } else {
            all.get();
            readconditions(m, behind);
        }
    };
    parallelpieces(parts, 1, [&](int first, int last, int) {
        for (int one = first; one < last; ++one) try {
                read(one);
            } catch (...) {
                fault[one] = std::current_exception();
            }
    });
    if (fault[geometry]) std::rethrow_exception(fault[geometry]);
    log.tell(behind.since({}));
    for (const std::exception_ptr& one : fault)
        if (one) std::rethrow_exception(one);
}

model readmodel(const std::string& base, runlog& log) {
    model m;
    m.base = base;
    const std::string tek = findnocase(base + ".tek");
    const bool alone = allranks().alone();
    onhosts([&] {
        if (!isthere(tek)) refuse("There is no model " + tek + "; save it first");
        textin in(tek, textin::inmemory::piece);
        alone ? readwholemodel(in, m, log) : readtek(in, m, log);
    });
    if (!alone) {  // one file behind the other: a single thread of each process talks to the others
        allranks().checksame("The file " + tek,
                             std::to_string(m.allnodes()) + " " + std::to_string(m.allelements()));
        dealmodel(m);
        onhosts([&] {
            readrotations(m, log);
            readconditions(m, log);
        });
    }
    checkreferences(m);
    return m;
}
