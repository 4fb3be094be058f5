// SPDX-License-Identifier: GPL-3.0-or-later
// A random model of every family under every kind of load, turned, mirrored or renumbered:
// displacements, reactions and each single stress go along.
#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>
#include <numeric>

#include "tests/solver/everything.h"
#include "tests/solver/verify.h"

using grid = build::grid;

// --- changes ------------------------------------------------------------------------------------

// q: an orthogonal matrix; -1 of its determinant mirrors, which turns rotations and moments the
// other way.
static double sideof(const mat3& q) {
    return q.determinant() < 0 ? -1 : 1;
}

static build changed(const build& b, const mat3& q) {
    build t = b;
    for (vec3& x : t.m.nodes) x = q * x;
    mat6 both = mat6::Zero();
    both.topLeftCorner<3, 3>() = q;
    both.bottomRightCorner<3, 3>() = sideof(q) * q;
    for (groupdata& g : t.m.groups) {
        g.spring = both * g.spring * both.transpose();
        g.field[fieldrotation] *= sideof(q);
    }
    for (elementdef& e : t.m.elements) e.turn *= sideof(q);  // about a normal that looks back
    std::vector<nodalrow>& rows = t.m.cases[1].nodal;        // of one node
    vec6 f;
    for (std::size_t k = 0; k < 6; ++k) f[Eigen::Index(k)] = rows[k].value;
    rows.clear();
    t.load(1, b.m.cases[1].nodal[0].node, both * f);
    // The normal of a plate and e2 of a line look the other way in a mirror.
    for (elementrow& row : t.m.cases[1].element) {
        const family fam = kindof(t.m.elements[std::size_t(row.element)].type).fam;
        if (row.direction == (fam == family::plate ? 3 : 2)) row.value *= sideof(q);
    }
    return t;
}

// The same accelerations, sea and wind on a model changed by q, which keeps the vertical.
static void addcases(build& b, const mat3& q, bool buoyancy) {
    const auto heading = [&](double degrees) {
        const double a = degrees * M_PI / 180;
        const vec3 to = q * vec3(std::cos(a), std::sin(a), 0);
        return std::atan2(to.y(), to.x()) * 180 / M_PI;
    };
    b.addcase(caseaccz, {-9.81, 0, 0, 0, 1});
    const vec3 centre = q * vec3(20, -30, 5);
    b.addcase(caseaccrz, {sideof(q) * 4, centre.x(), centre.y(), centre.z(), 1});
    b.addcase(casewave, {4, 7, heading(25), 0.2, 20});
    b.addcase(casewind, {30, heading(-40)});
    if (buoyancy) b.addcase(casebuoyancy, {3.3, 8, 1.1});
}

static mat3 tensorof(const double* s, const mat3& axes) {
    mat3 local = mat3::Zero();
    local.topLeftCorner<2, 2>() << s[0], s[2], s[2], s[1];
    return axes.transpose() * local * axes;
}

static void comparestresses(const build& b, const results& r, const build& t, const results& s,
                            const mat3& q, int lc, bool directed) {
    const double side = sideof(q);
    double most = 1e-3;
    for (std::size_t i = 0; i < r.plates.elements.size(); ++i) {
        const mat3 axes = stressaxes(elementat(b.m, b.s, r.plates.elements[i]));
        const mat3 turned = stressaxes(elementat(t.m, t.s, r.plates.elements[i]));
        for (int k = r.plates.first[i]; k < r.plates.first[i + 1]; ++k)
            for (int half = 0; half < 6; half += 3) {
                // bending is told at the face to which the normal looks
                const mat3 one = tensorof(r.plates.of(lc, k) + half, axes);
                const mat3 other =
                    (half == 3 ? side : 1) * tensorof(s.plates.of(lc, k) + half, turned);
                most = std::max(most, one.norm());
                EXPECT_LT((other - q * one * q.transpose()).norm(), 1e-7 * most)
                    << b.m.elements[std::size_t(r.plates.elements[i])].type << " half " << half;
            }
    }
    for (std::size_t i = 0; i < r.lines.elements.size(); ++i) {
        const linestress ends = stressofline(b, r, i, lc), turned = stressofline(t, s, i, lc);
        for (const int end : {0, linevalues}) {
            // axial, moment about e2, about e3, torsion
            const double *const one = ends.data() + end, *const other = turned.data() + end;
            for (int k = 0; k < linevalues; ++k) most = std::max(most, std::fabs(one[k]));
            EXPECT_NEAR(other[0], one[0], 1e-7 * most) << "line " << i;
            EXPECT_NEAR(other[3], side * one[3], 1e-7 * most) << "line " << i;
            if (directed) {
                EXPECT_NEAR(other[1], one[1], 1e-7 * most) << "line " << i;
                EXPECT_NEAR(other[2], side * one[2], 1e-7 * most) << "line " << i;
            } else {
                EXPECT_NEAR(std::hypot(other[1], other[2]), std::hypot(one[1], one[2]),
                            1e-7 * most);
            }
        }
    }
}

// node: the number of each node in the other model.
static void comparenodes(const results& r, const results& s, const std::vector<int>& node,
                         const mat3& q, int lc) {
    const struct {
        vec3 (*what)(const results&, int, int, int);
        int dof;
    } kinds[] = {{movedby, 1}, {movedby, 4}, {reactedby, 1}, {reactedby, 4}};
    for (const auto& [what, dof] : kinds) {
        double most = 1e-300;
        for (std::size_t n = 1; n < node.size(); ++n)
            most = std::max(most, what(r, lc, int(n), dof).norm());
        for (std::size_t n = 1; n < node.size(); ++n) {
            const vec3 wanted = (dof == 4 ? sideof(q) : 1) * q * what(r, lc, int(n), dof);
            EXPECT_LT((what(s, lc, node[n], dof) - wanted).norm(), 1e-7 * most)
                << "node " << n << " dof " << dof;
        }
    }
}

static std::vector<int> counted(int count) {
    std::vector<int> order(std::size_t(count) + 1);
    std::iota(order.begin(), order.end(), 0);
    return order;
}

TEST(Invariance, EveryFamilyAndLoadGoesAlongInATurnAndInAMirror) {
    for (unsigned seed = 1; seed <= 8; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        generator random(seed);
        const bool directed = seed > 3, mirrored = seed % 2 == 0;
        build b = everything(seed, 3, directed);
        mat3 q = Eigen::AngleAxisd(between(random, -3, 3),
                                   directed ? vec3(vec3::Unit(2)) : nudge(random, 1).normalized())
                     .toRotationMatrix();
        if (mirrored) q.col(0) *= -1;
        build t = changed(b, q);
        if (directed) {
            // Water presses against the normal, which looks the other way in a mirror.
            addcases(b, mat3::Identity(), !mirrored), addcases(t, q, !mirrored);
        }
        const results r = solvebalanced(b), s = t.solve();
        for (int lc = 1; lc <= r.u.cases; ++lc) {
            SCOPED_TRACE("case " + std::to_string(lc));
            comparenodes(r, s, counted(b.m.nnodes()), q, lc);
            comparestresses(b, r, t, s, q, lc, directed);
        }
    }
}

// --- numbers ------------------------------------------------------------------------------------

// Elements' plates start at another corner, nodes and elements stand in another order.
static build renumbered(const build& b, generator& random, std::vector<int>& node) {
    build t = b;
    node = counted(b.m.nnodes());
    std::vector<int> elem = counted(b.m.nelems());
    std::shuffle(node.begin() + 1, node.end(), random);
    std::shuffle(elem.begin() + 1, elem.end(), random);
    for (std::size_t n = 1; n < node.size(); ++n) t.m.nodes[std::size_t(node[n])] = b.m.nodes[n];
    for (std::size_t e = 1; e < elem.size(); ++e) {
        elementdef def = b.m.elements[e];
        const int count = kindof(def.type).nodes;
        for (int k = 0; k < count; ++k) def.node[k] = node[std::size_t(def.node[k])];
        if (kindof(def.type).fam == family::plate)
            std::rotate(def.node, def.node + random() % unsigned(count), def.node + count);
        t.m.elements[std::size_t(elem[e])] = def;
    }
    for (nodalrow& row : t.m.constraints) row.node = node[std::size_t(row.node)];
    for (loadcase& c : t.m.cases) {
        for (nodalrow& row : c.nodal) row.node = node[std::size_t(row.node)];
        for (elementrow& row : c.element) row.element = elem[std::size_t(row.element)];
    }
    return t;
}

// Sum of the squares of the stress over the corners of plates and the ends of lines: no axes in it.
static double stresssize(const build& b, const results& r, int lc) {
    double sum = 0;
    for (int c = 0; c < r.plates.first.back(); ++c)
        for (int k = 0; k < 6; ++k)
            sum += std::pow(r.plates.of(lc, c)[k], 2) * (k % 3 == 2 ? 2 : 1);
    for (std::size_t i = 0; i < r.lines.elements.size(); ++i)
        for (const double value : stressofline(b, r, i, lc)) sum += value * value;
    return sum;
}

TEST(Invariance, NumbersOfNodesElementsAndFirstCornersDoNotMatter) {
    for (unsigned seed = 11; seed <= 16; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        generator random(seed);
        build b = everything(seed, 3, true);
        std::erase_if(b.m.cases[1].element, [&](const elementrow& row) {
            // local axes follow the first edge
            return kindof(b.m.elements[std::size_t(row.element)].type).fam == family::plate;
        });
        b.addcase(caseaccz, {-9.81, 0, 0, 0, 1});
        b.addcase(casewave, {4, 7, 25, 0.2, 20});
        std::vector<int> node;
        build t = renumbered(b, random, node);
        const results r = b.solve(), s = t.solve();
        for (int lc = 1; lc <= r.u.cases; ++lc) {
            SCOPED_TRACE("case " + std::to_string(lc));
            comparenodes(r, s, node, mat3::Identity(), lc);
            const double stress = stresssize(b, r, lc);
            EXPECT_NEAR(stresssize(t, s, lc), stress, 1e-7 * stress);
        }
    }
}

// A curved mesh on lines that nobody drew, of quadrilaterals, triangles or both, held at one end,
// under forces at the other and a pressure.
static build crookedshell(generator& random, int surface, double thickness) {
    build b;
    const int nx = 3 + int(random() % 6), ny = 1 + int(random() % 4);
    const double turn = between(random, 0.5, 3);
    const grid at =
        b.mesh(typeshell4, b.plate(2e5, 0.3, thickness), nx, ny, [&](double r, double s) {
            const double x = r + between(random, -0.15, 0.15) / nx;
            const double y = s + between(random, -0.15, 0.15) / ny - 0.5, a = turn * x;
            const vec3 places[] = {
                {3 * x, y * std::cos(a), y * std::sin(a)},
                {std::cos(a), std::sin(a), 2 * y},
                {std::cos(a) * std::cos(y), std::sin(a) * std::cos(y), std::sin(y)},
                {std::cos(a) * (2 + std::cos(y)), std::sin(a) * (2 + std::cos(y)), std::sin(y)},
                {x, y, 0.3 * (x * x - y * y)}};
            return places[surface];
        });
    const std::vector<elementdef> quads(b.m.elements.begin() + 1, b.m.elements.end());
    const unsigned triangles = random() % 3;  // none, half of them, all
    b.m.elements.resize(1);
    for (const elementdef& q : quads)
        b.quad(random() % 2 < triangles ? typeshell3 : typeshell4, 1,
               {q.node[0], q.node[1], q.node[2], q.node[3]});
    b.fix(at.left(), clamped);
    b.spread(1, at.right(), 2, 1), b.spread(1, at.right(), 3, 1);
    b.addcase();
    b.pressall(2, 3, 1);
    return b;
}

TEST(Invariance, NeitherSideNorFirstCornerOfAShellMatters) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        generator random(seed);
        const build b = crookedshell(random, int(seed % 5), seed % 2 ? 0.1 : 0.01);
        build one = b, other = b;
        for (int e = 1; e <= b.m.nelems(); ++e) {
            elementdef& def = other.m.elements[std::size_t(e)];
            int* const end = def.node + kindof(def.type).nodes;
            std::rotate(def.node, def.node + random() % 3, end);
            if (random() % 2) continue;
            std::reverse(def.node, end);
            other.m.cases[2].element[std::size_t(e) - 1].value *= -1;
        }
        const results r = one.solve(), s = other.solve();
        EXPECT_EQ(one.log.warnings().size(), other.log.warnings().size()) << seed;
        for (int lc = 1; lc <= 2; ++lc) {
            double most = 0, apart = 0;
            for (int n = 1; n <= b.m.nnodes(); ++n) {
                most = std::max(most, movedby(r, lc, n).norm());
                apart = std::max(apart, (movedby(s, lc, n) - movedby(r, lc, n)).norm());
            }
            EXPECT_LT(apart, 1e-9 * most) << "seed " << seed << " case " << lc;
        }
    }
}

// Matrices are taken over from an element alike: one that differs in anything must not be.
TEST(Invariance, ShellsThatDifferInOneThingHaveMatricesOfTheirOwn) {
    for (const int type : {typeshell3, typeshell4}) {
        build b;
        b.plate(2e5, 0.3, 2);
        std::vector<vec3> corners = {{0, 0, 0}, {10, 0, 0}, {10, 8, 0}, {0, 8, 0}};
        corners.resize(type == typeshell3 ? 3 : 4);
        element plain = elementat(b.m, b.s, b.single(type, 1, corners));
        groupdata other = *plain.g;
        const edgeslip slip = {.shear = {0.5f, 0.25f, 0.5f, 0.5f}};
        edgeslip otherslip = slip;
        otherslip.shear[1] = 0.5f;
        plain.slip = &slip;
        std::vector<element> variants(8, plain);
        variants[0].x[0].x() = 0.1;
        variants[1].x[1].z() = 0.1;
        variants[2].slip = &otherslip;
        variants[3].curve = 0.2f;
        for (int n = 0; n < 3; ++n) variants[4 + std::size_t(n)].g = &other;
        for (vec3& at : variants[7].x) std::swap(at.y(), at.z());  // another plane
        const groupfield fields[] = {fieldmodulus, fieldpoisson, fieldthickness};
        for (std::size_t i = 0; i < variants.size(); ++i) {
            other = *plain.g;
            if (i >= 4 && i < 7) other.field[fields[i - 4]] *= 1.5;
            elmatrix before, after;
            for (const auto work : {kindof(type).stiffness, kindof(type).stress}) {
                work(plain, before);
                work(variants[i], after);
                EXPECT_GT((after - before).norm(), 1e-6 * before.norm()) << type << ' ' << i;
                work(plain, after);
                EXPECT_EQ(after, before) << type << ' ' << i;
            }
        }
        if (type == typeshell3) continue;
        edgefold over;
        over.bend[0] = 0.01;
        element folded = plain;
        folded.fold = &over;
        elmatrix before, after;
        kindof(type).stiffness(plain, before);
        kindof(type).stiffness(folded, after);
        EXPECT_GT((after - before).norm(), 1e-6 * before.norm());
    }
}
