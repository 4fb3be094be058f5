// SPDX-License-Identifier: GPL-3.0-or-later
// What every element must do whatever its shape: even strain and curvature come out exact, rigid
// motions cost nothing, and nothing else is free.
#include <Eigen/Eigenvalues>
#include <Eigen/Geometry>
#include <cmath>
#include <random>

#include "solver/elements/surface.h"
#include "solver/results/sumfile.h"
#include "tests/solver/verify.h"

// Five distorted quadrilaterals, 0.24 x 0.12: MacNeal and Harder, figure 1.
static const double places[8][2] = {{0, 0},       {0.24, 0},    {0.24, 0.12}, {0, 0.12},
                                    {0.04, 0.02}, {0.18, 0.03}, {0.16, 0.08}, {0.08, 0.08}};
static const std::array<int, 4> quads[5] = {
    {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 4, 8, 7}, {4, 1, 5, 8}, {5, 6, 7, 8}};

static mat3 tilted() {
    mat3 axes;
    axes << 2, 1, 2, -2, 2, 1, -1, -2, 2;
    return axes / 3;
}

using field = vec6 (*)(double, double);  // displacement and rotation

// Even strain with its rotation about the normal, of MacNeal and Harder's size.
static vec6 stretched(double x, double y) {
    return 1e-3 * vec6{{x + y / 2, y + x / 2, 0, 0, 0, 0}};
}

static vec6 twistedflat(double x, double y) {  // strain with a rigid rotation in it
    return 1e-3 * vec6{{x + 4 * y, 2 * y - x, 0, 0, 0, -2.5}};
}

static vec6 bent(double x, double y) {
    return 1e-3 * vec6{{0, 0, (x * x + x * y + y * y) / 2, y + x / 2, -x - y / 2, 0}};
}

static const double turn = 0.3;  // of the axes of the stresses, from e1 to e2

// Prescribes the field at the outer nodes; returns the largest error inside over the largest value.
static double patcherror(int type, double thickness, field at, const mat3& axes, results& r,
                         build& b) {
    const int g = b.plate(1e6, 0.25, thickness);
    for (const auto& xy : places) b.node(axes.transpose() * vec3(xy[0], xy[1], 0));
    for (const auto& q : quads) b.quad(type, g, q);
    for (elementdef& e : b.m.elements) e.turn = turn;
    const bool rotations = kindof(type).nodedofs == 6;
    b.m.twod = !rotations && axes.isIdentity();
    const int dofs = rotations ? 6 : b.m.twod ? 2 : 3;
    const auto global = [&](int n, int dof) {
        const vec6 local = at(places[n - 1][0], places[n - 1][1]);
        return axes.col((dof - 1) % 3).dot(local.segment<3>(dof <= 3 ? 0 : 3));
    };
    for (int n = 1; n <= 4; ++n)
        for (int dof = 1; dof <= dofs; ++dof) b.fix(n, {dof}, global(n, dof));
    r = b.solve();
    double error[2] = {}, size[2] = {};
    for (int n = 1; n <= 8; ++n)
        for (int dof = 1; dof <= dofs; ++dof) {
            double& worst = error[dof > 3];
            worst = std::max(worst, std::fabs(moved(r, 1, n, dof) - global(n, dof)));
            size[dof > 3] = std::max(size[dof > 3], std::fabs(global(n, dof)));
        }
    return std::max(error[0] / size[0], size[1] > 0 ? error[1] / size[1] : error[1] / size[0]);
}

static mat3 planetensor(const double* s) {  // of x, y, xy
    mat3 t = mat3::Zero();
    t.topLeftCorner<2, 2>() << s[0], s[2], s[2], s[1];
    return t;
}

TEST(Verification, PatchTests) {
    const struct {
        const char* name;
        double thickness;
        field at;
        int firststress;
        double stress[3];
        std::vector<int> types;
    } rows[] = {
        // E / (1 - nu^2) (exx + nu eyy), with exx = eyy = gxy = 1e-3; curvatures likewise
        {"stretch",
         0.001,
         stretched,
         0,
         {4e3 / 3, 4e3 / 3, 400},
         {typememb3, typememb4, typeshell3, typeshell4}},
        {"stretch and turn", 0.001, twistedflat, 0, {1600, 2400, 1200}, {typeshell3, typeshell4}},
        {"bending, thin",
         0.001,
         bent,
         3,
         {-2.0 / 3, -2.0 / 3, -0.2},
         {typeplate3, typeplate4, typeshell3, typeshell4}},
        {"bending, thick", 0.1, bent, 3, {-200.0 / 3, -200.0 / 3, -20}, {typeplate3, typeshell4}},
    };
    for (const auto& row : rows)
        for (const int type : row.types)
            for (const bool space : {false, true}) {
                // Plates alone hold nothing in their plane; what is held there is 0 in z = 0.
                if (space && (type == typeplate3 || type == typeplate4)) continue;
                build b;
                results r;
                const mat3 back = Eigen::AngleAxisd(-turn, vec3::UnitZ()).toRotationMatrix();
                const mat3 axes = space ? tilted() : mat3(mat3::Identity());
                const double error = patcherror(type, row.thickness, row.at, axes, r, b);
                const std::string where = space ? ", tilted plane" : "";
                double worst = 0;
                for (std::size_t i = 0; i < r.plates.elements.size(); ++i) {
                    const mat3 from = back * plateaxes(elementat(b.m, b.s, r.plates.elements[i])) *
                                      axes.transpose();
                    for (int c = r.plates.first[i]; c < r.plates.first[i + 1]; ++c) {
                        const mat3 local = planetensor(r.plates.of(1, c) + row.firststress);
                        const mat3 wanted = planetensor(row.stress);
                        worst = std::max(worst, (from.transpose() * local * from - wanted).norm() /
                                                    wanted.norm());
                    }
                }
                EXPECT_LT(worst, 1e-8) << row.name << " " << kindof(type).name << where;
                prove({"patch", std::string(row.name) + where + ", displacement", kindof(type).name,
                       "MH", 0, 1, 1 + error, 1e-9});
            }
}

// Meshes of random shape, thin and thick, also of triangles beside quadrilaterals.
TEST(Patch, RandomMeshesAreExact) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> some(-0.3, 0.3);
    for (const auto& [even, odd] :
         {std::pair(typeshell4, typeshell4), {typeshell3, typeshell3}, {typeshell4, typeshell3}})
        for (const double thickness : {0.001, 0.5, 2.0})
            for (const field at : {twistedflat, bent}) {
                build b;
                const int n = 4, g = b.plate(1e6, 0.25, thickness);
                for (int j = 0; j <= n; ++j)
                    for (int i = 0; i <= n; ++i) {
                        const bool inside = i > 0 && j > 0 && i < n && j < n;
                        b.node(i + (inside ? some(random) : 0), j + (inside ? some(random) : 0));
                        const vec3& x = b.m.nodes.back();
                        const vec6 u = at(x.x(), x.y());
                        for (int k = 1; k <= 6 && !inside; ++k) b.fix(b.m.nnodes(), {k}, u[k - 1]);
                    }
                for (int j = 0; j < n; ++j)
                    for (int i = 0; i < n; ++i) {
                        const int low = 1 + i + j * (n + 1), high = low + n + 1;
                        b.quad((i + j) % 2 ? odd : even, g, {low, low + 1, high + 1, high});
                    }
                const results r = b.solve();
                EXPECT_TRUE(b.log.warnings().empty()) << b.log.warnings()[0];
                for (int k = 1; k <= b.m.nnodes(); ++k) {
                    const vec6 u = at(b.m.nodes[std::size_t(k)].x(), b.m.nodes[std::size_t(k)].y());
                    const double size = 1e-3 * n * n;
                    EXPECT_LT((movedby(r, 1, k) - u.head<3>()).norm(), 1e-9 * size);
                    EXPECT_LT((movedby(r, 1, k, 4) - u.tail<3>()).norm(), 1e-9 * size);
                }
            }
}

// Supports that only move the structure; loads that balance each other: reactions of nothing.
// Of elements that lean, with oblique ends: the forces reach them without moments.
TEST(Patch, StripsPulledAtTheirCornersStretchEvenly) {
    std::mt19937 random(12);
    std::uniform_real_distribution<double> some(-0.3, 0.3);
    build b;
    const int n = 5;
    const double thickness = 0.1, stress = 100;
    const build::grid at =
        b.mesh(typeshell4, b.plate(1e6, 0.25, thickness), n, 1,
               [&](double r, double s) { return vec3(n * r + some(random), s, 0); });
    b.fixall({3, 4, 5});
    b.fix(at.left(), {1}), b.fix(at.number(0, 0), {2});
    for (const int node : at.right()) b.load(1, node, 1, stress * thickness / 2);
    const results r = b.solve();
    for (int c = 0; c < r.plates.corners; ++c) {
        const mat3 here = planetensor(r.plates.of(1, c));
        EXPECT_NEAR(here.trace(), stress, 1e-8 * stress) << c;
        EXPECT_NEAR(here.norm(), stress, 1e-8 * stress) << c;
    }
}

// Rollers that leave the drilling free on one side and forces without moments on the other.
TEST(Patch, PlatesPulledAtTheirEdgesStretchEvenly) {
    std::mt19937 random(13);
    std::uniform_real_distribution<double> some(-0.3, 0.3);
    const double thickness = 0.1, stress = 100;
    for (const auto& [even, odd] :
         {std::pair(typeshell4, typeshell4), {typeshell3, typeshell3}, {typeshell4, typeshell3}}) {
        build b;
        const int nx = 4, ny = 3, g = b.plate(1e6, 0.25, thickness);
        std::vector<int> held, pulled;
        for (int j = 0; j <= ny; ++j)
            for (int i = 0; i <= nx; ++i) {
                const int n = b.node(i + (i % nx == 0 ? 0 : some(random)),
                                     j + (j % ny == 0 ? 0 : some(random)));
                if (i == 0) held.push_back(n);
                if (i == nx) pulled.push_back(n);
            }
        for (int j = 0; j < ny; ++j)
            for (int i = 0; i < nx; ++i) {
                const int low = 1 + i + j * (nx + 1), high = low + nx + 1;
                b.quad((i + j) % 2 ? odd : even, g, {low, low + 1, high + 1, high});
            }
        b.fixall({3, 4, 5});
        b.fix(held, {1}), b.fix(held[0], {2});
        for (std::size_t j = 1; j < pulled.size(); ++j) {
            const vec3 edge =
                b.m.nodes[std::size_t(pulled[j])] - b.m.nodes[std::size_t(pulled[j - 1])];
            for (const std::size_t end : {j - 1, j})
                b.load(1, pulled[end], 1, stress * thickness * edge.y() / 2);
        }
        const results r = b.solve();
        for (int c = 0; c < r.plates.corners; ++c) {
            const mat3 here = planetensor(r.plates.of(1, c));
            EXPECT_NEAR(here.trace(), stress, 1e-8 * stress) << even << ' ' << odd << ' ' << c;
            EXPECT_NEAR(here.norm(), stress, 1e-8 * stress) << even << ' ' << odd << ' ' << c;
        }
    }
}

TEST(Patch, ReactionsOfNothingAreNotWarnedAbout) {
    build b;
    const build::grid at = b.mesh(
        typeshell4, b.plate(2e5, 0.3, 0.02), 5, 4,
        [](double r, double s) { return vec3(3 + r, s - 7 * r, 0.3 * r * s + 0.1 * s * s); });
    const vec3 turned(1e-3, -4e-4, 7e-4);
    for (const int n : at.left())
        for (int k = 0; k < 3; ++k) {
            b.fix(n, {k + 1}, turned.cross(b.m.nodes[std::size_t(n)])[k]);
            b.fix(n, {k + 4}, turned[k]);
        }
    const results r = b.solve();
    for (int n = 1; n <= b.m.nnodes(); ++n)
        EXPECT_LT((movedby(r, 1, n) - turned.cross(b.m.nodes[std::size_t(n)])).norm(), 1e-12);
    b.m.constraints.clear();
    b.fix(at.left(), clamped);
    for (const int side : {-1, 1}) b.load(1, at.number(side > 0 ? 5 : 3, 2), 1, 100 * side);
    const std::string sums = staticsums(b.m, b.s, b.solve(), b.log);
    EXPECT_TRUE(b.log.warnings().empty()) << b.log.warnings()[0];
    for (const char* const row :
         {"applied\",0,0,0,", "reactions\",0,0,0,", "difference\",0,0,0,0,0,0"})
        EXPECT_NE(sums.find(row), sums.npos) << sums;
}

// --- single elements ----------------------------------------------------------------------------

// Six rigid motions of an element by columns.
static Eigen::MatrixXd rigidmotions(const element& e, int stride) {
    Eigen::MatrixXd u = Eigen::MatrixXd::Zero(e.nodes * stride, 6);
    for (int c = 0; c < e.nodes; ++c)
        for (int k = 0; k < 3; ++k) {
            u(stride * c + k, k) = 1;
            u.block<3, 1>(stride * c, 3 + k) = vec3(vec3::Unit(k)).cross(e.x[c]);
            if (stride == 6) u(stride * c + 3 + k, 3 + k) = 1;
        }
    return u;
}

TEST(Element, OnlyRigidMotionsAndWhatTheKindLeavesAreFree) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> some(-0.15, 0.15);
    const struct {
        int type, rank;
    } rows[] = {{typememb3, 3},   {typememb4, 5},  {typeshear4, 1}, {typeshell3, 12},
                {typeshell4, 18}, {typeplate3, 6}, {typeplate4, 9}};
    for (const auto& row : rows)
        for (const double slender : {1.0, 8.0})
            for (const double thickness : {0.001, 0.1, 3.0})
                for (const bool warped : {false, true}) {
                    std::vector<vec3> at = {{0, 0, 0}, {slender, 0, 0}, {slender, 1, 0}, {0, 1, 0}};
                    at.resize(std::size_t(kindof(row.type).nodes));
                    for (vec3& x : at)
                        x += vec3(some(random), some(random), warped ? some(random) : 0);
                    build b;
                    b.single(row.type, b.plate(1e4, 0.3, thickness), at);
                    const element e = elementat(b.m, b.s, 1);
                    elmatrix k;
                    kindof(row.type).stiffness(e, k);
                    SCOPED_TRACE(std::string(kindof(row.type).name) + (warped ? " warped" : "") +
                                 " thickness " + std::to_string(thickness));
                    EXPECT_LT((k - k.transpose()).norm(), 1e-12 * k.norm());
                    const Eigen::MatrixXd rigid = rigidmotions(e, kindof(row.type).nodedofs);
                    EXPECT_LT((k * rigid).norm(), 1e-11 * k.norm() * rigid.norm());
                    const Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd> spectrum(
                        (Eigen::MatrixXd(k)));
                    int rank = 0;
                    const double nothing = 1e-11 * spectrum.eigenvalues().maxCoeff();
                    for (const double value : spectrum.eigenvalues()) {
                        EXPECT_GT(value, -nothing);
                        rank += value > nothing;
                    }
                    EXPECT_EQ(rank, row.rank);
                    elmatrix stress;
                    kindof(row.type).stress(e, stress);
                    EXPECT_LT((stress * rigid).norm(), 1e-10 * stress.norm() * rigid.norm());
                }
}

// Total mass, its moments and its inertia come out of the consistent matrix.
TEST(Element, MassMatricesMoveLikeTheBody) {
    const std::vector<vec3> corners = {{0, 0, 0}, {2, 0.1, 0}, {1.8, 1.2, 0}, {0.2, 1, 0}};
    for (const int type :
         {typememb3, typememb4, typeshear4, typeshell3, typeshell4, typeplate3, typeplate4}) {
        build b;
        std::vector<vec3> at(corners.begin(), corners.begin() + kindof(type).nodes);
        const mat3 turn = tilted();
        for (vec3& x : at) x = turn * x;
        b.single(type, b.plate(1e4, 0.3, 0.1, 50), at);
        const element e = elementat(b.m, b.s, 1);
        elmatrix m;
        kindof(type).mass(e, m);
        const Eigen::MatrixXd rigid = rigidmotions(e, kindof(type).nodedofs);
        const mat6 whole = rigid.transpose() * m * rigid;
        double mass = 0;
        for (const surfacepoint& p : surfacepoints(e.nodes, 2))
            mass += 50 * 0.1 * p.weight * surfacenormal(e, shapesat(e.nodes, p.place)).norm();
        EXPECT_LT((whole.topLeftCorner<3, 3>() - mass * mat3::Identity()).norm(), 1e-10 * mass);
        mat3 inertia = mat3::Zero();
        for (const surfacepoint& p : surfacepoints(e.nodes, 5)) {
            const surfaceshape n = shapesat(e.nodes, p.place);
            const vec3 x = surfaceat(e, n);
            const double part = 50 * 0.1 * p.weight * surfacenormal(e, n).norm();
            inertia += part * (x.squaredNorm() * mat3::Identity() - x * x.transpose());
        }
        if (kindof(type).nodedofs == 6) {  // the thickness turns about the axes of the plane
            const vec3 normal = plateaxes(e).row(2);
            inertia += mass * 0.01 / 12 * (mat3::Identity() - normal * normal.transpose());
        }
        EXPECT_LT((whole.bottomRightCorner<3, 3>() - inertia).norm(), 1e-10 * inertia.norm())
            << kindof(type).name;
    }
}
