// SPDX-License-Identifier: GPL-3.0-or-later
// The mesh generator: chains, nodes, elements, checks, and the way of a mesh into the model.
#include "tools/genmesh.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <random>

#include "core/catalogue.h"
#include "tests/support/recorder.h"
#include "tests/tools/edges.h"
#include "tools/mesh2d.h"

static point3 placeof(int n) {
    return {nodes(0, n, 0), nodes(0, n, 1), nodes(0, n, 2)};
}

// Area of an element in the xy plane, positive when its corners turn to the left.
static double areaof(int e) {
    const int corners = nodesoftype(elems(e, 0));
    double area = 0;
    for (int k = 1; k <= corners; ++k) {
        const point3 a = placeof(int(elems(e, k))), b = placeof(int(elems(e, k % corners + 1)));
        area += (a[0] * b[1] - b[0] * a[1]) / 2;
    }
    return area;
}

TEST(Genmesh, ARectangleOfQuadrilaterals) {
    for (const bool merge : {false, true}) {
        sessionroom room;
        automergenodes = automergeelems = merge;
        mesh2dform form = meshof(0, rectangle());
        EXPECT_EQ(tmpnodes(0, 0), 5 + 5 + 3 + 3 + 3);  // corners twice, three nodes within
        EXPECT_EQ(tmpelems(0, 0), 8);
        EXPECT_EQ(nnodes(), 0);
        EXPECT_TRUE(form.message.starts_with(merge ? "15 nodes and 8 el" : "19 nodes and 8 el"))
            << form.message;
        acceptmesh(form);
        EXPECT_EQ(form.message.find("4 nodes merged") != form.message.npos, merge);
        EXPECT_EQ(nnodes(), merge ? 15 : 19);
        EXPECT_EQ(tmpnodes(0, 0), 0);
        EXPECT_EQ(int(elemsel(0)), 8);
        ASSERT_EQ(nelems(), 8);
        // The corners go along edge 1 first, as in triangles; the next element is up edge 3.
        const double corner[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
        for (int e = 1; e <= 8; ++e) {
            EXPECT_EQ(elems(e, 0), mesheltype);
            EXPECT_EQ(egroup(e), 1);
            for (int k = 1; k <= 4; ++k)
                EXPECT_EQ(placeof(int(elems(e, k))),
                          (point3{(e - 1) / 2 + corner[k - 1][0], (e - 1) % 2 + corner[k - 1][1]}));
        }
    }
}

TEST(Genmesh, TheWayElementsWereDrawnDoesNotMatter) {
    // Turned at random, in chains of two pieces in any order, with factors: the mesh turns them
    // back, and its nodes are always the same.
    std::vector<float> reference;
    std::mt19937 random(7);
    for (int round = 0; round < 40; ++round) {
        sessionroom room;
        std::vector<std::array<double, 4>> wanted;  // start and factor of each
        const auto add = [&](point3 a, point3 b, float n, float f) {
            wanted.push_back({a[0], a[1], a[2], f});
            return round > 0 && random() % 2 ? addline(b, a, n, 1 / f) : addline(a, b, n, f);
        };
        std::vector<std::vector<int>> edges = {
            {add({0, 0, 0}, {3, 0, 0}, 3, 2), add({3, 0, 0}, {4, 1, 0}, 2, 1)},
            {add({0, 2, 1}, {4, 3, 0}, 5, 0.5f)},
            {add({0, 0, 0}, {0, 2, 1}, 4, 4)},
            {add({4, 1, 0}, {4, 2, 0}, 1, 1), add({4, 2, 0}, {4, 3, 0}, 3, 2)}};
        if (round > 0)
            for (auto& chain : edges) std::ranges::shuffle(chain, random);
        meshof(0, edges);
        for (int g = 1; g <= ngraphics(); ++g) {
            const point3 a = definitionpoint(graphics, g, 1);
            EXPECT_EQ((std::array{a[0], a[1], a[2], double(graphics(g, 0, 2))}), wanted[g - 1u]);
        }
        std::vector<float> found;
        for (int n = 1; n <= int(tmpnodes(0, 0)); ++n)
            for (int k = 1; k <= 3; ++k) found.push_back(tmpnodes(n, k));
        if (round == 0) reference = found;
        ASSERT_EQ(found.size(), reference.size());
        for (std::size_t i = 0; i < found.size(); ++i)
            EXPECT_NEAR(found[i], reference[i], 2e-6) << round << ": node " << i / 3 + 1;
    }
}

// The point of an element after i of its spaces.
static point3 along(int g, double i) {
    setgraphic(graphics, g);
    return graphicpoint(spacingat(i, graphics(g, 0, 1), graphics(g, 0, 2)));
}

static void expectnode(int i, int j, const point3& wanted) {
    const int node = edgegrid(i + 1, j + 1);
    for (std::size_t k = 0; k < 3; ++k)
        EXPECT_NEAR(tmpnodes(node, long(k) + 1), wanted[k], 5e-6) << i << "," << j;
}

// Nodes of a Coons patch, G. Farin, Curves and Surfaces for CAGD, chapter 22: the two ruled
// surfaces less the bilinear one.
TEST(Genmesh, CurvedEdgesGiveTheCoonsPatch) {
    sessionroom room;
    const int m = 6, n = 5;
    const int a = addgraphic(kindcircle, {0, 0, 0}, {5, 0, 0}, {2.5, -1, 0}, m),
              b = addgraphic(kindcurve, {0, 4, 1}, {5, 5, 0}, {2, 8, 2}, m, 1.3f),
              c = addgraphic(kindcurve, {0, 0, 0}, {0, 4, 1}, {-1, 2, 3}, n),
              d = addgraphic(kindcircle, {5, 0, 0}, {5, 5, 0}, {6, 2, 1}, n, 0.8f);
    mesh2dform form = meshof(0, {{a}, {b}, {c}, {d}});
    const point3 p00 = along(a, 0), p10 = along(a, m), p01 = along(b, 0), p11 = along(b, m);
    for (int i = 0; i <= m; ++i)
        for (int j = 0; j <= n; ++j) {
            const double s = double(i) / m, t = double(j) / n;
            expectnode(i, j,
                       (1 - t) * along(a, i) + t * along(b, i) + (1 - s) * along(c, j) +
                           s * along(d, j) -
                           ((1 - s) * ((1 - t) * p00 + t * p01) + s * ((1 - t) * p10 + t * p11)));
        }
}

// Row i, place j of the grid: the chord from edge 1 to edge 2, and what edges 2 and 3 deviate from
// theirs at place j, in turn from the first row to the last.
TEST(Genmesh, TrianglesBlendTheDeviationsOfEdges2And3) {
    sessionroom room;
    const int m = 6;
    const int a = addgraphic(kindcircle, {0, 0, 0}, {6, 0, 0}, {3, -1, 0.5}, m),
              b = addgraphic(kindcurve, {6, 0, 0}, {2, 5, 1}, {6, 4, 2}, m),
              c = addline({2, 5, 1}, {0, 0, 0}, m, 1.5f);
    const auto deviation = [&](int g, int i) {
        const double t = double(i) / m;
        return along(g, i) - ((1 - t) * along(g, 0) + t * along(g, m));
    };
    mesh2dform form = meshof(1, {{a}, {b}, {c}});
    for (int i = 1; i < m; ++i)
        for (int j = 1; j < m - i; ++j) {
            const double s = double(i) / m, t = double(j) / (m - i);
            expectnode(i, j,
                       (1 - t) * along(a, i) + t * along(b, m - i) + (1 - s) * deviation(b, j) +
                           s * deviation(c, j));
        }
}

// A quarter of a disc with its arc on edge 1, 3 and 2. The last one bends rows that it does not
// bound: they follow the straight edge 3 instead.
TEST(Genmesh, ADiscIsSoundWhicheverEdgeIsItsArc) {
    for (int arc = 0; arc < 3; ++arc) {
        sessionroom room;
        const double r = 3, h = r / std::sqrt(2.0);
        const point3 centre = {0, 0, 0}, right = {r, 0, 0}, top = {0, r, 0};
        const int lines[] = {addgraphic(kindcircle, right, top, {h, h, 0}, 10),
                             addline(top, centre, 10), addline(centre, right, 10)};
        std::vector<std::vector<int>> edges;
        for (int e = 0; e < 3; ++e) edges.push_back({lines[(e + arc) % 3]});
        mesh2dform form = meshof(1, edges);
        EXPECT_EQ(form.message.find("rows follow Edge 3") != form.message.npos, arc == 2)
            << form.message;
        acceptmesh(form);
        EXPECT_EQ(nnodes(), 66);
        EXPECT_EQ(nelems(), 100);
        double whole = 0;
        for (int e = 1; e <= nelems(); ++e) {
            whole += areaof(e);
            EXPECT_GT(areaof(e) * areaof(1), 0) << arc;
        }
        // the disc as a polygon of 40 sides
        EXPECT_NEAR(std::fabs(whole), 10 * r * r / 2 * std::sin(pi / 20), 1e-4) << arc;
    }
}

namespace {
struct contour {
    std::vector<point3> corner;
    std::vector<std::vector<int>> edges;
};
}  // namespace

// A region of three or four random corners whose edges are lines, curves and arcs.
static contour randomcontour(std::mt19937& random, int sides, double size) {
    std::uniform_real_distribution<double> far(-1, 1);
    contour c;
    for (int k = 0; k < sides; ++k) c.corner.push_back({size * far(random), size * far(random), 0});
    const auto edge = [&](int from, int to, float spaces) {
        const point3 a = c.corner[std::size_t(from)], b = c.corner[std::size_t(to)];
        const double bulge = 0.4 * far(random);
        const point3 third = {(a[0] + b[0]) / 2 - bulge * (b[1] - a[1]),
                              (a[1] + b[1]) / 2 + bulge * (b[0] - a[0]), 0};
        const int kind = 1 + int(random() % 3);
        c.edges.push_back({addgraphic(kind, a, b, third, spaces, random() % 2 ? 1.0f : 1.4f)});
    };
    if (sides == 3) {
        for (int k = 0; k < 3; ++k) edge(k, (k + 1) % 3, 6);
    } else {
        edge(0, 1, 5);
        edge(3, 2, 5);
        edge(0, 3, 4);
        edge(1, 2, 4);
    }
    return c;
}

// What is accepted is sound, by the signs of areas counted here, and closed: each side within is
// shared by two elements, so that those of one alone are the contour's.
TEST(Genmesh, RandomContoursGiveSoundMeshesOrNone) {
    std::mt19937 random(41);
    int accepted = 0, refused = 0, faded = 0;
    for (int round = 0; round < 400; ++round) {
        sessionroom room;
        automergenodes = true;
        const int sides = 3 + round % 2;
        mesh2dform form = meshof(sides == 3, randomcontour(random, sides, 50).edges);
        faded += meshfaded;
        acceptmesh(form);
        if (nelems() == 0) {
            ++refused;
            EXPECT_NE(form.message.find("can not be accepted"), std::string::npos);
            continue;
        }
        ++accepted;
        std::map<std::pair<int, int>, int> used;
        for (int e = 1; e <= nelems(); ++e) {
            ASSERT_GT(areaof(e) * areaof(1), 0) << "round " << round << " element " << e;
            const int corners = nodesoftype(elems(e, 0));
            for (int k = 1; k <= corners; ++k)
                ++used[std::minmax({int(elems(e, k)), int(elems(e, k % corners + 1))})];
        }
        const auto alone = std::ranges::count_if(used, [](const auto& u) { return u.second == 1; });
        EXPECT_EQ(alone, 18) << round << ": sides of the contour";
    }
    EXPECT_GT(accepted, 100);
    EXPECT_GT(refused, 20);
    EXPECT_GT(faded, 10);
}

TEST(Genmesh, ACrossingContourIsNamed) {
    sessionroom room;
    const int a = addline({0, 0, 0}, {4, 0, 0}, 4), b = addline({4, 3, 0}, {0, 3, 0}, 4),
              c = addline({0, 0, 0}, {4, 3, 0}, 3), d = addline({4, 0, 0}, {0, 3, 0}, 3);
    mesh2dform form = meshof(0, {{a}, {b}, {c}, {d}});
    EXPECT_NE(form.message.find("contour crosses itself, Edge 3 cuts Edge 4"), std::string::npos)
        << form.message;
    acceptmesh(form);
    EXPECT_EQ(nnodes(), 0);
    resetmesh(form);
    EXPECT_EQ(form.inverted, 0);
}

TEST(Genmesh, SidesThatCloseAreTold) {
    for (const int type : {0, 3})
        for (const float factor : {5.0f, 7.0f}) {  // the first space is 4 / 4^5, 4 / 4^7
            sessionroom room;
            auto edges = rectangle();
            if (type == 3) edges.resize(1);
            graphics(1, 0, 2) = factor;
            const std::string message = meshof(type, edges).message;
            EXPECT_EQ(message.find("1 side(s) of elements are shorter") != message.npos,
                      factor > 5);
        }
}

TEST(Genmesh, LineMeshesKeepTheirAsymmetries) {
    const struct {
        graphickinds first;
        int second;           // 0: none
        int nodes, elements;  // of the buffer
    } cases[] = {
        {kindline, 0, 4 + 4, 3},          {kindcurve, 0, 4 + 4, 0},
        {kindcircle, 0, 4 + 4, 3},        {kindline, kindline, 6 + 7, 5},  // the joint twice
        {kindcircle, kindline, 6 + 6, 4},  // a circle that is not last lacks its end
        {kindline, kindcircle, 6 + 7, 5},  // one that is last has it
        {kindcurve, kindline, 6 + 7, 2},
    };
    for (const auto& c : cases) {
        sessionroom room;
        std::vector<int> chain = {addgraphic(c.first, {0, 0, 0}, {2, 0, 0}, {1, 1, 0}, 3)};
        if (c.second != 0)
            chain.push_back(addgraphic(c.second, {2, 0, 0}, {4, 0, 0}, {3, 1, 0}, 2));
        mesh2dform form = meshof(3, {chain});
        EXPECT_EQ(tmpnodes(0, 0), c.nodes) << c.first << c.second;
        EXPECT_EQ(tmpelems(0, 0), c.elements) << c.first << c.second;
        for (int e = 1; e <= int(tmpelems(0, 0)); ++e)
            EXPECT_EQ(tmpelems(e, 2), tmpelems(e, 1) + 1);
        const char* const hint = c.first == kindcurve ? "a curve gives nodes but no elements"
                                 : c.nodes == 6 + 6   ? "lacks its last element"
                                                      : "press <Accept>";
        EXPECT_NE(form.message.find(hint), std::string::npos) << form.message;
    }
}

// --- what is refused ----------------------------------------------------------------------------

TEST(Genmesh, WhatCanNotBeMeshedIsToldAndChangesNothing) {
    struct change {
        int g, j, k;
        float value;
    };
    using edgelist = std::vector<std::vector<int>>;
    const edgelist four = {{1}, {2}, {3}, {4}};
    const struct {
        int type;
        edgelist edges;  // lines of the rectangle
        std::vector<change> changes;
        const char* message;
    } cases[] = {
        {0, four, {{1, 0, 1, 5}}, "nodes of Edge 1 and Edge 2 should be equal."},
        {0, four, {{3, 0, 1, 7}}, "nodes of Edge 3 and Edge 4 should be equal."},
        {1, {{1}, {4}, {2}}, {{2, 1, 2, 0}}, "of Edge 1, Edge 2 and Edge 3 should be equal."},
        {0, four, {{1, 0, 1, 199}, {2, 0, 1, 199}}, "To many nodes on edge 2"},  // as declared
        {3, {{1}}, {{1, 0, 1, 1e9f}}, "Too many nodes, increase node declaration."},
        {0, four, {{3, 1, 1, 0.0011f}}, "Error: Edge 1 and edge 3 have no common joint"},
        {0, {{}, {}, {}, {}}, {}, "Error: Edge 1 and edge 3 have no common joint"},
        {0, four, {{4, 2, 2, 2.5f}}, "Error: Edge 2 and edge 4 have no common joint"},
        {3, {{}}, {}, "Error: edge 1 has no graphic elements"},
        {3, {{1, 4}}, {{4, 1, 1, 4.1f}}, "edge 1 do not form a chain from its first joint"},
        {0, {{1}, {1}, {3}, {4}}, {}, "Graphic element 1 is on edge 1 and on edge 2."},
        {0, four, {{2, 0, 2, -1}}, "factor of graphic element 2 should be above 0."},
        {3, {{1}}, {{1, 0, 1, 0}}, "Spaces of graphic element 1 should be a whole number"},
        {3, {{1, 4}}, {{4, 0, 1, 2.5f}}, "Spaces of graphic element 4 should be a whole number"},
        {3, {{1, 4}}, {{4, 2, 2, 5e-4f}}, "Graphic element 4 has no length."},
        {3, {{1}}, {{1, 0, 0, kindcircle}, {1, 2, 1, 0}}, "Graphic element 1 has no length."},
    };
    for (const auto& c : cases) {
        sessionroom room;
        rectangle();
        for (const change& h : c.changes) graphics(h.g, h.j, h.k) = h.value;
        mesh2dform form = openwith(c.type, c.edges);
        tmpnodes(0, 0) = 2;  // of an earlier mesh
        generatemesh(form);
        EXPECT_FALSE(meshok) << c.message;
        EXPECT_NE(form.message.find(c.message), std::string::npos) << form.message;
        EXPECT_EQ(tmpnodes(0, 0), 2) << c.message;
        EXPECT_EQ(tmpelems(0, 0), 0) << c.message;
        EXPECT_EQ(nnodes(), 0) << c.message;
    }
}

TEST(Genmesh, RoomIsNeededForNodesAndElements) {
    // The estimates: e3 e1 + 2 e3 + 2 e1 nodes, (e3 - 1)(e1 - 1) elements, with 60 x 70 nodes.
    const int nodesneeded = 70 * 60 + 2 * 70 + 2 * 60, elemsneeded = 69 * 59;
    for (const auto& [lessnodes, lesselems, message] :
         {std::tuple(0, 0, "press <Accept>"), {1, 0, "Too many nodes"}, {0, 1, "Too many elem"}}) {
        sessionroom room;
        mesh2dform form = openwith(0, rectangle(59, 69));
        nodes(0, 0, 0) = float(modelsize(sizenodes) - nodesneeded + lessnodes);
        elems(0, 0) = float(modelsize(sizeelements) - elemsneeded + lesselems);
        generatemesh(form);
        EXPECT_NE(form.message.find(message), std::string::npos) << form.message;
        nodes(0, 0, 0) = elems(0, 0) = 0;
    }
}

TEST(Genmesh, ASecondMeshComesOnTopUntilReset) {
    sessionroom room;
    mesh2dform form = meshof(0, rectangle());
    generatemesh(form);
    EXPECT_NE(form.message.find("with what was generated before"), std::string::npos);
    EXPECT_EQ(tmpnodes(0, 0), 38);
    EXPECT_EQ(tmpelems(0, 0), 16);
    resetmesh(form);
    acceptmesh(form);
    EXPECT_EQ(nnodes(), 0);
    generatemesh(form);  // the edges are still known
    choosemeshtype(form, 2);
    EXPECT_FALSE(form.cangenerate) << "no transition mesh";
    closemesh2d(form);
    EXPECT_EQ(tmpelems(0, 0), 0);
}
