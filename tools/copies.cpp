// SPDX-License-Identifier: GPL-3.0-or-later
// Copies of what is selected with all that belongs to it: supports, loads, releases, groups.
#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <vector>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/modelitems.h"
#include "core/modelsize.h"
#include "core/numtext.h"
#include "core/runtime.h"
#include "core/views.h"
#include "edit/selection.h"
#include "tools/appended.h"
#include "tools/elementaxes.h"
#include "tools/sweep.h"

namespace {
struct dofrow {
    int node, dof;  // 1..6
    double value;
};
struct left {
    int supports = 0, masses = 0, sections = 0;  // what could not turn with the rest
};
}  // namespace

static const double rounding = 1e-6;  // of a direction: what rounding leaves of a right angle

// --- what is copied -----------------------------------------------------------------------------

static std::vector<int> nodestocopy() {
    std::vector<bool> marks = marksof(selectednodes(), nnodes());
    for (const int e : selectedelements())
        for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k)
            if (const int n = int(elems(e, k)); n >= 1 && n <= nnodes())
                marks[std::size_t(n)] = true;
    std::vector<int> list;
    for (int n = 1; n <= nnodes(); ++n)
        if (marks[std::size_t(n)]) list.push_back(n);
    return list;
}

// --- vectors at nodes ---------------------------------------------------------------------------

// Three values along x, y, z, forces or moments, turned; parts of no size are 0.
static std::array<double, 3> turnedvector(const std::array<double, 3>& v, const motion& by) {
    const point3 d = by.direction(v);
    const double size = lengthof(d);
    std::array<double, 3> out{};
    for (std::size_t k = 0; k < 3; ++k) out[k] = std::fabs(d[k]) <= rounding * size ? 0 : d[k];
    return out;
}

// The axis that an axis of the model turns to, 0..2, and its sense; -1 where it is none.
static int axisafter(int k, const motion& by, double& sense) {
    point3 axis{};
    axis[std::size_t(k)] = 1;
    const point3 d = by.direction(axis);
    for (int j = 0; j < 3; ++j)
        if (std::fabs(std::fabs(d[std::size_t(j)]) - 1) <= rounding) {
            sense = d[std::size_t(j)] < 0 ? -1 : 1;
            return j;
        }
    return -1;
}

static std::map<int, std::vector<dofrow>> bynode(const std::vector<dofrow>& rows) {
    std::map<int, std::vector<dofrow>> table;
    for (const dofrow& r : rows) table[r.node].push_back(r);
    return table;
}

// Supports of one node after the motion. All three held at 0 are held in any axes.
static std::vector<dofrow> turnedsupports(const std::vector<dofrow>& rows, const motion& by,
                                          left& l) {
    std::vector<dofrow> out;
    for (const int kind : {0, 3}) {
        int clamped = 0;
        for (const dofrow& r : rows)
            if ((r.dof > 3) == (kind == 3) && r.value == 0) ++clamped;
        for (const dofrow& r : rows) {
            if ((r.dof > 3) != (kind == 3)) continue;
            double sense = 1;
            const int axis = axisafter(r.dof - 1 - kind, by, sense);
            if (axis >= 0)
                out.push_back({r.node, axis + 1 + kind, sense * r.value});
            else if (clamped == 3)
                out.push_back(r);
            else
                ++l.supports;
        }
    }
    return out;
}

static std::vector<dofrow> turnedforces(const std::vector<dofrow>& rows, const motion& by) {
    std::vector<dofrow> out;
    for (const int kind : {0, 3}) {
        std::array<double, 3> sum{};
        for (const dofrow& r : rows)
            if ((r.dof > 3) == (kind == 3)) sum[std::size_t(r.dof - 1 - kind)] += r.value;
        sum = turnedvector(sum, by);
        for (int k = 0; k < 3; ++k)
            if (sum[std::size_t(k)] != 0)
                out.push_back({rows.front().node, k + 1 + kind, sum[std::size_t(k)]});
    }
    return out;
}

// Masses have no sense: they follow their axis, and three alike are alike in any axes.
static std::vector<dofrow> turnedmasses(const std::vector<dofrow>& rows, const motion& by,
                                        left& l) {
    std::vector<dofrow> out;
    for (const int kind : {0, 3}) {
        std::array<double, 3> mass{};
        for (const dofrow& r : rows)
            if ((r.dof > 3) == (kind == 3)) mass[std::size_t(r.dof - 1 - kind)] = r.value;
        const bool alike = mass[0] == mass[1] && mass[1] == mass[2];
        for (const dofrow& r : rows) {
            if ((r.dof > 3) != (kind == 3)) continue;
            double sense = 1;
            const int axis = alike ? -1 : axisafter(r.dof - 1 - kind, by, sense);
            if (!alike && axis < 0) ++l.masses;
            out.push_back({r.node, axis < 0 ? r.dof : axis + 1 + kind, r.value});
        }
    }
    return out;
}

// --- the copies ---------------------------------------------------------------------------------

namespace {
// All that is written once it is known to fit.
struct copybook {
    std::vector<int> nodes, elements, graphics;  // that are copied
    std::vector<std::vector<int>> number;        // by copy: new number of a node, by old one
    std::vector<dofrow> supports;                // new rows
    std::vector<std::vector<dofrow>> forces;     // by load case
    std::vector<std::vector<elementloadrow>> loads;
};
}  // namespace

static std::vector<dofrow> supportrows() {
    std::vector<dofrow> rows;
    for (int i = 1; i <= ncon; ++i) rows.push_back({connode(i), condof(i), double(conval(i))});
    return rows;
}

static std::vector<dofrow> forcerows(int lc) {
    std::vector<dofrow> rows;
    for (int i = 1; i <= loadnode(lc, 0); ++i)
        rows.push_back({loadnode(lc, i), loaddof(lc, i), double(loadval(lc, i))});
    return rows;
}

// Rows of the nodes that are copied, turned for each copy.
template <typename Turn>
static std::vector<dofrow> copiedrows(const copybook& book, const std::vector<dofrow>& rows,
                                      const motion& by, Turn turn) {
    std::vector<dofrow> out;
    const auto table = bynode(rows);
    for (std::size_t c = 0; c < book.number.size(); ++c)
        for (const auto& [node, own] : table) {
            if (node < 1 || std::size_t(node) >= book.number[c].size()) continue;
            const int to = book.number[c][std::size_t(node)];
            if (to == 0) continue;
            for (dofrow r : turn(own, by.times(int(c) + 1))) {
                r.node = to;
                out.push_back(r);
            }
        }
    return out;
}

static void checkrows(std::size_t rows, const std::string& where) {
    if (growfor({{sizeconditions, long(rows)}})) return;
    throw runtimeerror{errargument, where + " would have " + numbertext(double(rows)) + " rows, " +
                                        numbertext(modelsize(sizeconditions)) +
                                        " are declared. Increase 'Boundary Condition per "
                                        "loadcase' with [File,Model size..]"};
}

static void fillbook(copybook& book, const motion& by, int copies, left& l) {
    int next = nnodes();
    for (int c = 0; c < copies; ++c) {
        book.number.emplace_back(std::size_t(nnodes()) + 1, 0);
        for (const int n : book.nodes) book.number.back()[std::size_t(n)] = ++next;
    }
    book.supports = copiedrows(book, supportrows(), by, [&](const auto& rows, const motion& m) {
        return turnedsupports(rows, m, l);
    });
    checkrows(std::size_t(ncon) + book.supports.size(), "The constraints");
    for (int lc = 1; lc <= nlc(); ++lc) {
        const bool masses = int(lctype(lc)) != 0;
        book.forces.push_back(
            copiedrows(book, forcerows(lc), by, [&](const auto& rows, const motion& m) {
                return masses ? turnedmasses(rows, m, l) : turnedforces(rows, m);
            }));
        checkrows(std::size_t(loadnode(lc, 0)) + book.forces.back().size(),
                  "Load case " + numbertext(lc));
    }
}

// Most rows that the loads of the copied elements can become: across a line whose level axes do
// not turn with it a load has two parts.
static void checkelementloads(const copybook& book, const motion& by) {
    const std::vector<bool> copied = marksof(book.elements, nelems());
    for (int lc = 1; lc <= nlc(); ++lc) {
        std::size_t rows = std::size_t(elemload(lc, 0, 0)), each = 0;
        for (int i = 1; i <= int(elemload(lc, 0, 0)); ++i) {
            const int e = int(elemload(lc, i, 0));
            if (e < 1 || e > nelems() || !copied[std::size_t(e)]) continue;
            const bool parts = by.angle != 0 && nodesoftype(elems(e, 0)) == 2;
            each += parts && int(elemload(lc, i, 1)) != 1 ? 2 : 1;
        }
        rows += each * book.number.size();
        checkrows(rows, "Load case " + numbertext(lc));
    }
}

static void copyelement(int e, const std::vector<int>& number) {
    const int to = nelems() + 1;
    copyitem(items::element, e, to);
    for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k)
        elems(to, k) = float(number[std::size_t(elems(e, k))]);
    for (int v = 1; v <= nviews; ++v)
        if (elemvis(v, to) && viewselnum(v) != 0) ++viewselnum(v);
    setcount(items::element, to);
}

static void copynodes(const copybook& book, const motion& by) {
    for (const int n : book.nodes) {
        const int to = nnodes() + 1;
        copyitem(items::node, n, to);
        const point3 at = by.place({nodes(0, n, 0), nodes(0, n, 1), nodes(0, n, 2)});
        for (int k = 0; k < 3; ++k) {
            nodes(0, to, k) = float(at[std::size_t(k)]);
            nodes(1, to, k) = 0;
        }
        setcount(items::node, to);
    }
}

static void copygraphics(const copybook& book, const motion& by) {
    for (const int g : book.graphics) {
        const int to = ngraphics() + 1;
        copyitem(items::graphic, g, to);
        for (int j = 1; j <= 3; ++j)
            setdefinitionpoint(graphics, to, j, by.place(definitionpoint(graphics, g, j)));
        graphics(0, 0, 0) = float(to);
    }
}

// The loads of the elements of one copy, first of which is numbered `first`.
static void copyelementloads(const copybook& book, const motion& by, int first, left& l) {
    std::map<int, int> copyof;
    std::map<int, elementaxes> turned;
    for (std::size_t i = 0; i < book.elements.size(); ++i) {
        const int e = book.elements[i];
        copyof[e] = first + int(i);
        elementaxes axes = axesofelement(e);
        for (point3& a : axes) a = by.direction(a);
        if (nodesoftype(elems(e, 0)) == 2 &&
            lengthof(axes[1] - axesofelement(first + int(i))[1]) > rounding)
            ++l.sections;
        turned[e] = axes;
    }
    for (int lc = 1; lc <= nlc(); ++lc) {
        const int count = int(elemload(lc, 0, 0));
        int rows = count;
        for (int i = 1; i <= count; ++i) {
            const auto at = copyof.find(int(elemload(lc, i, 0)));
            const int direction = int(elemload(lc, i, 1));
            if (at == copyof.end() || direction < 1 || direction > 3) continue;
            for (const elementloadrow& r :
                 turnedload({at->second, direction, double(elemload(lc, i, 2))}, turned[at->first],
                            axesofelement(at->second))) {
                ++rows;
                elemload(lc, rows, 0) = float(r.element);
                elemload(lc, rows, 1) = float(r.direction);
                elemload(lc, rows, 2) = float(r.value);
            }
        }
        elemload(lc, 0, 0) = float(rows);
    }
}

static void writerows(const copybook& book) {
    for (const dofrow& r : book.supports) {
        ++ncon;
        connode(ncon) = r.node;
        condof(ncon) = r.dof;
        conval(ncon) = float(r.value);
    }
    for (int lc = 1; lc <= nlc(); ++lc)
        for (const dofrow& r : book.forces[std::size_t(lc) - 1]) {
            const int i = loadnode(lc, 0) + 1;
            loadnode(lc, i) = r.node;
            loaddof(lc, i) = r.dof;
            loadval(lc, i) = float(r.value);
            loadnode(lc, 0) = i;
        }
}

static std::string noteon(const left& l) {
    std::string text;
    const auto add = [&](int count, const char* what) {
        if (count > 0) text += (text.empty() ? "" : "\n") + numbertext(count) + what;
    };
    add(l.supports,
        " support(s) point along no axis of the model after the turn and were left out.");
    add(l.masses, " mass(es) that differ by direction could not be turned and stay as they are.");
    add(l.sections,
        " line element(s) stand turned about their own axis: the rotation of a section belongs to "
        "its "
        "group.");
    return text;
}

std::string copyselected(const motion& by, int copies) {
    if (copies < 1) throw runtimeerror{errargument, "At least one copy is needed."};
    copybook book;
    left l;
    book.nodes = nodestocopy();
    book.elements = selectedelements();
    for (int i = 1; i <= graphsel(0, 0); ++i) book.graphics.push_back(graphsel(i, 0));
    if (book.nodes.empty() && book.graphics.empty())
        throw runtimeerror{errargument, "Select the nodes, elements or graphic elements to copy."};
    const auto times = [&](std::size_t count) { return long(count) * copies; };
    needroomfor(times(book.nodes.size()), times(book.elements.size()), times(book.graphics.size()));
    fillbook(book, by, copies, l);
    checkelementloads(book, by);
    const lastitems before = lastitemsnow();
    for (int c = 0; c < copies; ++c) {
        const motion m = by.times(c + 1);
        copynodes(book, m);
        const int first = nelems() + 1;
        for (const int e : book.elements) copyelement(e, book.number[std::size_t(c)]);
        copygraphics(book, m);
        copyelementloads(book, m, first, l);
    }
    writerows(book);
    emptyselection();
    selectappended(before);
    return noteon(l);
}
