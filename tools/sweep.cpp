// SPDX-License-Identifier: GPL-3.0-or-later
// Sweeps of drawn lines and nodes into elements, projections, and motions.
#include "tools/sweep.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/runtime.h"
#include "core/session.h"
#include "edit/move.h"
#include "edit/selection.h"
#include "tools/Graphics.h"
#include "tools/appended.h"
#include "tools/spacecells.h"
#include "view/moddraw.h"

[[noreturn]] static void refuse(const std::string& text) {
    throw runtimeerror{errargument, text};
}

// --- motions ------------------------------------------------------------------------------------

static point3 turned(const point3& p, const point3& axis, double angle) {
    const double c = std::cos(angle), s = std::sin(angle);
    return c * p + s * cross(axis, p) + (1 - c) * dot(axis, p) * axis;
}

point3 motion::direction(const point3& d) const {
    return angle == 0 ? d : turned(d, axis, angle);
}

point3 motion::place(const point3& p) const {
    return through + direction(p - through) + way;
}

motion motion::times(int count) const {
    motion m = *this;
    m.angle = count * angle;
    m.way = double(count) * way;
    return m;
}

motion shiftby(const point3& way) {
    if (!(lengthof(way) > 0)) refuse("The way has no length.");
    motion m;
    m.way = way;
    return m;
}

motion turnabout(const point3& through, const point3& axis, double angle) {
    if (!(lengthof(axis) > 0)) refuse("The direction of the axis has no length.");
    if (angle == 0) refuse("The angle is 0.");
    motion m;
    m.through = through;
    m.axis = 1 / lengthof(axis) * axis;
    m.angle = angle;
    return m;
}

// --- what is swept ------------------------------------------------------------------------------

namespace {
// Points of the model that are there already, or places where nodes are to be made.
struct seed {
    std::vector<int> node;  // 0 for a new one
    std::vector<point3> at;
    std::vector<std::pair<int, int>> edges;  // by index: become shells
    std::vector<int> tips;                   // become beams

    int add(int n, const point3& p) {
        node.push_back(n);
        at.push_back(p);
        return int(at.size()) - 1;
    }
};
}  // namespace

// Places of graphic elements that meet are one.
class meetingplaces {
  public:
    int find(seed& s, const point3& p) {
        const int known = cells.around(
            p, [&](int i) { return lengthof(s.at[std::size_t(i) - 1] - p) <= nodetol; });
        if (known != 0) return known - 1;
        const int i = s.add(0, p);
        cells.add(p, i + 1);
        return i;
    }

  private:
    spacegrid cells{nodetol};  // index in the seed + 1
};

static void seedgraphics(seed& s) {
    meetingplaces places;
    for (int i = 1; i <= graphsel(0, 0); ++i) {
        const int g = graphsel(i, 0);
        if (!setgraphic(graphics, g)) continue;
        const double n = std::max(1.0, double(graphics(g, 0, 1))), f = graphics(g, 0, 2);
        if (n > nodes.upper2) throw subscripterror(long(n), nodes.upper2);
        int before = places.find(s, graphicnode(0, n, f));
        for (double k = 1; k <= n; ++k) {
            const int next = places.find(s, graphicnode(k, n, f));
            if (next != before) s.edges.emplace_back(before, next);
            before = next;
        }
    }
}

static point3 nodeplace(int n) {
    return {nodes(0, n, 0), nodes(0, n, 1), nodes(0, n, 2)};
}

static void seedmodel(seed& s) {
    std::vector<int> index(std::size_t(nnodes()) + 1, -1);
    const auto indexof = [&](int n) {
        int& i = index[std::size_t(n)];
        if (i < 0) i = s.add(n, nodeplace(n));
        return i;
    };
    bool lines = false;
    for (const int e : selectedelements())
        if (nodesoftype(elems(e, 0)) == 2) {
            const int a = indexof(int(elems(e, 1))), b = indexof(int(elems(e, 2)));
            s.edges.emplace_back(a, b);
            lines = true;
        }
    if (lines) return;  // their nodes are selected with them
    for (const int n : selectednodes()) s.tips.push_back(indexof(n));
}

// --- elements -----------------------------------------------------------------------------------

namespace {
struct madeelement {
    int type;
    std::array<int, 4> node{};
};
}  // namespace

// Corners that lie on the axis fall together: a quadrilateral becomes a triangle or nothing.
static void addshell(std::vector<madeelement>& made, std::array<int, 4> corner, int quad, int tri) {
    std::array<int, 4> kept{};
    std::size_t count = 0;
    for (std::size_t k = 0; k < 4; ++k)
        if (corner[k] != corner[(k + 1) % 4]) kept[count++] = corner[k];
    if (count == 4 && corner[0] != corner[2] && corner[1] != corner[3])
        made.push_back({quad, kept});
    else if (count == 3)
        made.push_back({tri, kept});
}

static int requiredtype(const char* name) {
    const int type = findtype(name);
    if (type == 0) refuse(std::string("The element catalogue has no type ") + name + ".");
    return type;
}

std::string sweepselected(const motion& by, int layers) {
    if (layers < 1) refuse("At least one layer is needed.");
    seed s;
    seedgraphics(s);
    seedmodel(s);
    if (s.at.empty()) refuse("Select graphic elements, line elements or nodes to sweep.");
    const bool closes =
        by.way == point3{} && std::fabs(std::fabs(by.angle) * layers - 2 * pi) < 1e-6;
    const int rows = closes ? layers : layers + 1;
    // Node numbers by layer; those of the model stand.
    std::vector<std::vector<int>> number;
    number.resize(std::size_t(rows));
    std::vector<point3> places;
    for (int l = 0; l < rows; ++l)
        for (std::size_t i = 0; i < s.at.size(); ++i) {
            const point3 at = by.times(l).place(s.at[i]);
            int n = l == 0 ? s.node[i] : 0;
            if (l > 0 && lengthof(at - s.at[i]) <= nodetol) n = number[0][i];  // on the axis
            if (n == 0) {
                places.push_back(at);
                n = nnodes() + int(places.size());
            }
            number[std::size_t(l)].push_back(n);
        }
    const int quad = requiredtype("SHELL4"), tri = requiredtype("SHELL3"),
              beam = requiredtype("BEAM");
    std::vector<madeelement> made;
    for (int l = 0; l < layers; ++l) {
        const auto &low = number[std::size_t(l)], &high = number[std::size_t((l + 1) % rows)];
        for (const auto& [a, b] : s.edges)
            addshell(made,
                     {low[std::size_t(a)], low[std::size_t(b)], high[std::size_t(b)],
                      high[std::size_t(a)]},
                     quad, tri);
        for (const int i : s.tips)
            if (low[std::size_t(i)] != high[std::size_t(i)])
                made.push_back({beam, {low[std::size_t(i)], high[std::size_t(i)]}});
    }
    needroomfor(long(places.size()), long(made.size()));
    const lastitems before = lastitemsnow();
    for (const point3& p : places) appendnode(p);
    for (const madeelement& m : made) appendelement(m.type, m.node);
    emptyselection();
    selectappended(before);
    return "";
}

// --- projections --------------------------------------------------------------------------------

// foot gives the place of a point, or false where there is none.
template <typename Foot>
static std::string project(Foot foot) {
    if (selectednodes().empty() && selectedelements().empty() && graphsel2(0, 0) == 0)
        refuse("Select the nodes or graphic points to project.");
    if (nodesel(0) == 0) gatherelementnodes();
    int without = 0;
    const bool changed = changeselected([&](double* p) {
        point3 at = {p[0], p[1], p[2]};
        if (!foot(at)) ++without;
        std::ranges::copy(at, p);
    });
    if (changed) pasteflag = true;
    redrawall();
    return without == 0
               ? ""
               : numbertext(without) + " point(s) on the axis have no nearest place and stay.";
}

std::string projectonplane(const point3& through, const point3& normal) {
    const double length = lengthof(normal);
    if (!(length > 0)) refuse("The normal of the plane has no length.");
    const point3 n = 1 / length * normal;
    return project([&](point3& p) {
        p = p - dot(p - through, n) * n;
        return true;
    });
}

std::string projectoncylinder(const point3& through, const point3& axis, double radius) {
    const double length = lengthof(axis);
    if (!(length > 0)) refuse("The direction of the axis has no length.");
    if (!(radius > 0)) refuse("The radius must be larger than 0.");
    const point3 a = 1 / length * axis;
    return project([&](point3& p) {
        const point3 foot = through + dot(p - through, a) * a, out = p - foot;
        if (lengthof(out) <= nodetol) return false;
        p = foot + radius / lengthof(out) * out;
        return true;
    });
}
