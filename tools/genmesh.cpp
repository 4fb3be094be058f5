// SPDX-License-Identifier: GPL-3.0-or-later
// The mesh generator. State: the choices of the tool and the outcome of the last check.
#include "tools/genmesh.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/modelsize.h"
#include "core/numtext.h"
#include "core/session.h"
#include "tools/groups.h"
#include "tools/meshcheck.h"

std::string meshtype = "Quad", meshmessage;
int mesheltype;
Flag meshok, meshfaded;

keptmeshchoice::keptmeshchoice() : type(meshtype), elementtype(mesheltype), group(meshgroup) {}

keptmeshchoice::~keptmeshchoice() {
    meshtype = type;
    mesheltype = elementtype;
    meshgroup = group;
}

static void refuse(const std::string& text) {
    meshmessage = text;
    meshok = false;
}

int edgesof(const std::string& type) {
    return type == "Quad" ? 4 : type == "Line" ? 1 : 3;
}

double nodesonedge(const graphiclist& list, int edge) {
    double sum = 1;
    for (int k = 1; k <= graphmesh(edge, 0); ++k) sum += list(graphmesh(edge, k), 0, 1);
    return sum;
}

// --- checks -------------------------------------------------------------------------------------

static void append(const std::string& text) {
    meshmessage += text;
    meshok = false;
}

static std::string edgetext(int e) {
    return "edge " + numbertext(e);
}

// An element whose nodes would all lie in one place.
static bool haslength(const graphiclist& list, int g) {
    const auto away = [&](int j) {
        return lengthof(definitionpoint(list, g, j) - definitionpoint(list, g, 1)) >= nodetol;
    };
    return away(2) || (kindof(list, g) == kindcurve && away(3));
}

// Spaces, and the factor of a line, are taken as they are stored.
static void checkspacing(const graphiclist& list) {
    for (int e = 1; e <= edgesof(meshtype); ++e)
        for (int k = 1; k <= graphmesh(e, 0); ++k) {
            const int g = graphmesh(e, k);
            const float n = list(g, 0, 1);
            if (!haslength(list, g))
                append(" Graphic element " + numbertext(g) + " has no length. ");
            if (!(n >= 1) || n != std::floor(n))
                append(" Spaces of graphic element " + numbertext(g) +
                       " should be a whole number above 0. ");
            if (kindof(list, g) == kindline && !(list(g, 0, 2) > 0))
                append(" Distribution factor of graphic element " + numbertext(g) +
                       " should be above 0. ");
        }
}

// An element serves one edge, once.
static void checkshared() {
    std::vector<std::array<int, 2>> uses;  // element, edge
    for (int e = 1; e <= edgesof(meshtype); ++e)
        for (int k = 1; k <= graphmesh(e, 0); ++k) uses.push_back({graphmesh(e, k), e});
    std::ranges::sort(uses);
    for (std::size_t i = 1; i < uses.size(); ++i)
        if (uses[i][0] == uses[i - 1][0])
            append(" Graphic element " + numbertext(uses[i][0]) + " is on " +
                   edgetext(uses[i - 1][1]) + " and on " + edgetext(uses[i][1]) + ". ");
}

void checkedges(const graphiclist& list) {
    meshok = true;
    meshmessage.clear();
    double n[5] = {};
    for (int e = 1; e <= edgesof(meshtype); ++e) n[e] = nodesonedge(list, e);
    if (meshtype == "Quad" && n[1] != n[2])
        append(" Number of nodes of Edge 1 and Edge 2 should be equal. ");
    if (meshtype == "Quad" && n[3] != n[4])
        append(" Number of nodes of Edge 3 and Edge 4 should be equal. ");
    if (meshtype == "Triang" && (n[1] != n[2] || n[1] != n[3]))
        append(" Number of nodes of Edge 1, Edge 2 and Edge 3 should be equal. ");
    for (int e = 1; e <= edgesof(meshtype); ++e)
        if (!(n[e] < modelsize(sizeedgenodes))) append(" To many nodes on edge " + numbertext(e));
    if (!meshok) return;
    checkshared();
    checkspacing(list);
}

void checkmeshsize(const graphiclist& list) {
    const bool quad = meshtype == "Quad", line = meshtype == "Line";
    const double e1 = nodesonedge(list, 1), e3 = line ? 0 : nodesonedge(list, 3);
    const double nodesneeded = quad ? e3 * e1 + 2 * e3 + 2 * e1 : line ? 2 * e1 : e3 * e1 + 3 * e1;
    const double elemsneeded = line ? e1 - 1 : (e3 - 1) * (e1 - 1);
    const double allnodes = nnodes() + tmpnodes(0, 0) + nodesneeded,
                 allelems = nelems() + tmpelems(0, 0) + elemsneeded;
    if (growfor({{sizenodes, long(allnodes)}, {sizeelements, long(allelems)}})) return;
    if (allnodes > modelsize(sizenodes)) append(" Too many nodes, increase node declaration. ");
    if (allelems > modelsize(sizeelements))
        append(" Too many elements, increase element declaration. ");
}

// --- chain sort ---------------------------------------------------------------------------------

static bool meet(const point3& a, const point3& b) {
    return lengthof(a - b) < nodetol;
}

// Exchanges the ends of an element; its factor becomes the reciprocal.
static void reverse(graphiclist& list, int g) {
    const point3 first = definitionpoint(list, g, 1);
    setdefinitionpoint(list, g, 1, definitionpoint(list, g, 2));
    setdefinitionpoint(list, g, 2, first);
    if (list(g, 0, 2) != 0) list(g, 0, 2) = 1 / list(g, 0, 2);
}

static point3 startof(const graphiclist& list, int edge) {
    return definitionpoint(list, graphmesh(edge, 1), 1);
}

static point3 endof(const graphiclist& list, int edge) {
    return definitionpoint(list, graphmesh(edge, graphmesh(edge, 0)), 2);
}

// The end that edges 1 and 3 have in common; the last pair found counts.
static bool findjoint(const graphiclist& list, point3& joint) {
    bool found = false;
    for (int i = 1; i <= graphmesh(1, 0); ++i)
        for (int end = 1; end <= 2; ++end) {
            const point3 at = definitionpoint(list, graphmesh(1, i), end);
            for (int j = 1; j <= graphmesh(3, 0); ++j)
                for (int other = 1; other <= 2; ++other)
                    if (meet(at, definitionpoint(list, graphmesh(3, j), other))) {
                        joint = at;
                        found = true;
                    }
        }
    return found;
}

// Orders the elements of an edge from a point on.
static bool sortedge(graphiclist& list, int edge, point3 from) {
    const int count = graphmesh(edge, 0);
    for (int a = 1; a <= count; ++a) {
        int place = 0, end = 0;
        for (int k = a; k <= count; ++k)
            for (int e = 1; e <= 2; ++e)
                if (meet(from, definitionpoint(list, graphmesh(edge, k), e))) {
                    place = k;
                    end = e;
                }
        if (place == 0) {
            refuse("Error: the graphic elements of " + edgetext(edge) +
                   " do not form a chain from its first joint");
            return false;
        }
        std::swap(graphmesh(edge, a), graphmesh(edge, place));
        const int g = graphmesh(edge, a);
        if (end == 2) reverse(list, g);
        from = definitionpoint(list, g, 2);
    }
    if (count == 0) refuse("Error: " + edgetext(edge) + " has no graphic elements");
    return count > 0;
}

static void needjoint(int a, int b, const point3& ofa, const point3& ofb) {
    if (!meet(ofa, ofb))
        refuse("Error: Edge " + numbertext(a) + " and edge " + numbertext(b) +
               " have no common joint");
}

// Puts the elements of each edge in the order of the chain and turns them to run along it; a turned
// element has its points exchanged and its factor inverted, for good. meshok tells the outcome.
static void sortchains(graphiclist& list) {
    meshok = true;
    edgedata(0, 0) = edgesof(meshtype);
    if (meshtype == "Line") {
        if (graphmesh(1, 0) == 0) return refuse("Error: edge 1 has no graphic elements");
        sortedge(list, 1, startof(list, 1));
        return;
    }
    point3 joint;
    if (!findjoint(list, joint)) return refuse("Error: Edge 1 and edge 3 have no common joint");
    if (!sortedge(list, 1, joint)) return;
    const point3 far = endof(list, 1);
    if (meshtype == "Quad") {
        if (!sortedge(list, 4, far) || !sortedge(list, 3, startof(list, 1)) ||
            !sortedge(list, 2, endof(list, 3)))
            return;
        needjoint(2, 4, endof(list, 2), endof(list, 4));
    } else {
        if (!sortedge(list, 2, far) || !sortedge(list, 3, endof(list, 2))) return;
        needjoint(1, 3, joint, endof(list, 3));
    }
}

// --- nodes --------------------------------------------------------------------------------------

static int addbuffernode(const point3& at) {
    const int n = int(tmpnodes(0, 0)) + 1;
    const auto row = tmpnodes.row(n);
    row[0] = float(n);
    for (std::size_t k = 0; k < 3; ++k) row[k + 1] = float(at[k]);
    tmpnodes(0, 0) = float(n);
    return n;
}

static point3 buffernode(int n) {
    const auto row = tmpnodes.row(n);
    return {row[1], row[2], row[3]};
}

// Calls emit(i, node) for nodes i = 0..last of element g.
template <typename Emit>
static void nodesalong(graphiclist& list, int g, double last, Emit emit) {
    if (!setgraphic(list, g)) return;
    const double n = list(g, 0, 1), f = list(g, 0, 2);
    for (double i = 0; i <= last; ++i) emit(i, addbuffernode(graphicnode(i, n, f)));
}

// Nodes of all edges into the buffer and edgedata. A corner has one for each edge that reaches it.
static void placeedgenodes(graphiclist& list) {
    for (int e = 1; e <= edgedata(0, 0); ++e) {
        edgedata(e, 0) = 0;
        const int count = graphmesh(e, 0);
        for (int k = 1; k <= count; ++k) {
            const int g = graphmesh(e, k);
            const double n = list(g, 0, 1);
            nodesalong(list, g, k == count ? n : n - 1, [&](double, int node) {
                const int place = edgedata(e, 0) + 1;
                edgedata(e, place) = node;
                edgedata(e, 0) = place;
            });
        }
        if (edgedata(e, 0) < 2) return refuse("Error: " + edgetext(e) + " has less than two nodes");
    }
}

// Deviations of a row of nodes from the straight line between its ends, one a node.
static void deviations(const std::vector<int>& row, array1<float>& x, array1<float>& y,
                       array1<float>& z) {
    const int n = int(row.size());
    const point3 a = buffernode(row.front()), b = buffernode(row.back());
    for (int k = 1; k <= n; ++k) {
        const double t = double(k - 1) / (n - 1);
        const point3 d = k == 1 || k == n ? point3{0, 0, 0}
                                          : buffernode(row[std::size_t(k - 1)]) - (a + t * (b - a));
        x(k) = float(d[0]);
        y(k) = float(d[1]);
        z(k) = float(d[2]);
    }
}

static std::vector<int> nodesofedge(int e) {
    std::vector<int> row;
    for (int k = 1; k <= edgedata(e, 0); ++k) row.push_back(edgedata(e, k));
    return row;
}

static void setgridrow(int i, const std::vector<int>& row) {
    edgegrid(i, 0) = int(row.size());
    for (std::size_t k = 0; k < row.size(); ++k) edgegrid(i, long(k) + 1) = row[k];
}

static point3 deviationa(int j) {
    return {edgechordax(j), edgechorday(j), edgechordaz(j)};
}

static point3 deviationb(int j) {
    return {edgechordbx(j), edgechordby(j), edgechordbz(j)};
}

// Nodes 2..last-1 of grid row i, whose ends stand: on the chord, plus the deviations of the two
// side edges, share of the way from the first to the second.
static void fillrow(int i, int last, double share) {
    const auto grid = edgegrid.row(i);
    grid[0] = last;
    const point3 a = buffernode(grid[1]), b = buffernode(grid[std::size_t(last)]);
    for (int j = 2; j < last; ++j) {
        const double t = double(j - 1) / (last - 1);
        const point3 side = deviationa(j) + share * (deviationb(j) - deviationa(j));
        grid[std::size_t(j)] = addbuffernode(a + t * (b - a) + side);
    }
}

// Row 1 is edge 3, row m edge 4; both run from edge 1 to edge 2.
static void placequad() {
    const int m = edgedata(1, 0), n = edgedata(3, 0);
    setgridrow(1, nodesofedge(3));
    setgridrow(m, nodesofedge(4));
    deviations(nodesofedge(3), edgechordax, edgechorday, edgechordaz);
    deviations(nodesofedge(4), edgechordbx, edgechordby, edgechordbz);
    for (int i = 2; i < m; ++i) {
        edgegrid(i, 1) = edgedata(1, i);
        edgegrid(i, n) = edgedata(2, i);
        fillrow(i, n, double(i - 1) / (m - 1));
    }
}

// Row 1 is edge 3 backwards; each row is one node shorter, the last one is the corner of edges 1
// and 2. fill(i, last, share) places the nodes within row i.
template <typename Fill>
static void placetriangle(Fill fill) {
    const int m = edgedata(1, 0);
    std::vector<int> first = nodesofedge(3);
    std::ranges::reverse(first);
    setgridrow(1, first);
    setgridrow(m, {edgedata(2, 1)});
    for (int i = 2; i < m; ++i) {
        const int last = m - i + 1;
        edgegrid(i, 1) = edgedata(1, i);
        edgegrid(i, last) = edgedata(2, last);
        fill(i, last, double(i - 1) / (m - 1));
    }
}

// The rows turn from the deviations of edge 2 to those of edge 3, each read from its own start and
// as far as the row goes: edge 1 is the one that curves without bending the rows.
static void placeblended() {
    deviations(nodesofedge(2), edgechordax, edgechorday, edgechordaz);
    deviations(nodesofedge(3), edgechordbx, edgechordby, edgechordbz);
    placetriangle(fillrow);
}

// The rows follow edge 3, each less than the one before, down to the corner that it faces.
static void placefaded() {
    std::vector<int> first = nodesofedge(3);
    std::ranges::reverse(first);
    deviations(first, edgechordbx, edgechordby, edgechordbz);
    const int m = int(first.size());
    placetriangle([m](int i, int last, double share) {
        const auto grid = edgegrid.row(i);
        grid[0] = last;
        const point3 a = buffernode(grid[1]), b = buffernode(grid[std::size_t(last)]);
        for (int j = 2; j < last; ++j) {
            const double t = double(j - 1) / (last - 1);
            const double place = 1 + t * (m - 1);
            const int k = std::min(int(place), m - 1);
            const point3 side = deviationb(k) + (place - k) * (deviationb(k + 1) - deviationb(k));
            grid[std::size_t(j)] = addbuffernode(a + t * (b - a) + (1 - share) * side);
        }
    });
}

// The grid edgegrid and the nodes within: linear from edge 1 to edge 2 along each row, plus the
// deviations of the two side edges from their chords, blended over the rows: edges 3 and 4 of
// quadrilaterals, 2 and 3 of triangles. Where that would invert elements of a triangular region,
// buildmesh lets the rows follow edge 3 instead, each less than the one before.
static void placeinterior() {
    const int corners = eltypnodes(mesheltype);
    if (corners == 4) placequad();
    if (corners == 3) placeblended();
}

// --- elements -----------------------------------------------------------------------------------

static void addelement(int n1, int n2, int n3, int n4) {
    const int e = int(tmpelems(0, 0)) + 1;
    const auto row = tmpelems.row(e);
    row[0] = float(mesheltype);
    row[1] = float(n1);
    row[2] = float(n2);
    row[3] = float(n3);
    row[4] = float(n4);
    row[5] = float(meshgroup);
    tmprotpo(e) = 0;
    tmpelems(0, 0) = float(e);
}

static void createquads() {
    const int m = edgedata(1, 0), n = edgedata(3, 0);
    for (int i = 2; i <= m; ++i) {
        const auto before = edgegrid.row(i - 1), row = edgegrid.row(i);
        for (std::size_t j = 2; j <= std::size_t(n); ++j)
            addelement(before[j - 1], row[j - 1], row[j], before[j]);
    }
}

static void createtriangles() {
    const int m = edgedata(1, 0);
    for (int i = 1; i < m; ++i) {
        const int last = m - i;
        for (int j = 1; j <= last; ++j) {
            const int below = i == m - 1 ? edgedata(2, 1) : edgegrid(i + 1, j);
            addelement(edgegrid(i, j), below, edgegrid(i, j + 1), 0);
            if (j != last)
                addelement(edgegrid(i + 1, j), edgegrid(i + 1, j + 1), edgegrid(i, j + 1), 0);
        }
    }
}

static void createlines(graphiclist& list) {
    const int count = graphmesh(1, 0);
    for (int k = 1; k <= count; ++k) {
        const int g = graphmesh(1, k);
        setgraphic(list, g);  // settles whether a circle section is one
        const int kind = kindof(list, g);
        const double n = list(g, 0, 1);
        const double last = kind == kindcircle && k != count ? n - 1 : n;
        nodesalong(list, g, last, [&](double i, int node) {
            if (i > 0 && kind != kindcurve) addelement(node - 1, node, 0, 0);
        });
    }
}

// Elements of 4, 3 or 2 nodes. With 2 nodes the chain is walked again: pieces do not share the node
// where they meet, a circle section gives its end node in the last place alone, and a curve gives
// nodes but no elements.
static void createelements(graphiclist& list) {
    switch (eltypnodes(mesheltype)) {
        case 4:
            return createquads();
        case 3:
            return createtriangles();
        case 2:
            return createlines(list);
    }
}

// The elements of a triangular region on rows that fade; as they were when those fold too.
static void fadetriangle(graphiclist& list, float edgenodes, float elemsbefore) {
    const int first = int(elemsbefore) + 1;
    const auto again = [&](void (*place)()) {
        tmpnodes(0, 0) = edgenodes;
        tmpelems(0, 0) = elemsbefore;
        place();
        createelements(list);
    };
    again(placefaded);
    meshfaded = invertedelements(first) == 0;
    if (!meshfaded) again(placeblended);
}

bool buildmesh(graphiclist& list) {
    const float nodesbefore = tmpnodes(0, 0), elemsbefore = tmpelems(0, 0);
    const auto back = [&] {
        tmpnodes(0, 0) = nodesbefore;
        tmpelems(0, 0) = elemsbefore;
    };
    meshfaded = false;
    try {
        sortchains(list);
        if (meshok) placeedgenodes(list);
        const float edgenodes = tmpnodes(0, 0);
        if (meshok) placeinterior();
        if (meshok) createelements(list);
        if (meshok && meshtype == "Triang" && invertedelements(int(elemsbefore) + 1) > 0)
            fadetriangle(list, edgenodes, elemsbefore);
    } catch (...) {
        back();
        throw;
    }
    if (!meshok) back();
    return meshok;
}
