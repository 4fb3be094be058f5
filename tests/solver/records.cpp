// SPDX-License-Identifier: GPL-3.0-or-later
// Stress records and means at the nodes: what must hold in any plane and for any order of nodes.
#include "solver/results/records.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>
#include <random>

#include "solver/results/stressmeans.h"
#include "solver/results/writeresults.h"
#include "tests/solver/verify.h"

static double mises(const mat3& t) {
    const mat3 deviator = t - t.trace() / 3 * mat3::Identity();
    return std::sqrt(1.5) * deviator.norm();
}

namespace {
struct generator {
    std::mt19937 engine{11};
    double operator()() { return std::uniform_real_distribution<double>(-1, 1)(engine); }
    vec3 point() { return {(*this)(), (*this)(), (*this)()}; }
};
}  // namespace

static element quadrilateral(build& b, const std::vector<vec3>& corners, double turn) {
    const int number = b.single(typeshell4, 1, corners);
    b.m.elements[std::size_t(number)].turn = turn;
    return elementat(b.m, b.s, number);
}

// Global combined stress: no less than von Mises' of either face in any plane, no less than the
// local one in planes parallel to a coordinate plane, the same for every order of the nodes.
TEST(Records, CombinedStressBoundsBothFacesInAnyPlane) {
    generator some;
    build b;
    b.plate(1, 0.3, 1);
    double largest = 0;
    for (int trial = 0; trial < 3000; ++trial) {
        const int axis = trial % 5;  // 0..2: a coordinate plane; 3: near a diagonal plane; 4: any
        vec3 normal = axis < 3 ? vec3(vec3::Unit(axis)) : some.point().normalized();
        if (axis == 3) {
            normal = vec3(trial % 3 != 0, trial % 3 != 1, trial % 3 == 1 ? -1 : trial % 3 != 2);
            normal = (normal + 1e-9 * some.point()).normalized();
        }
        const mat3 turn =
            Eigen::Quaterniond::FromTwoVectors(vec3::UnitZ(), normal).toRotationMatrix();
        const double spin = trial % 2 ? 3 * some() : 0;
        std::vector<vec3> corners;
        for (const vec2& at : {vec2(0, 0), vec2(3, 0), vec2(3, 2), vec2(0, 2)}) {
            vec3 x(at[0] + (trial % 4 > 1) * 0.3 * some(), at[1] + (trial % 4 > 1) * 0.3 * some(),
                   0);
            x = turn * (Eigen::AngleAxisd(spin, vec3::UnitZ()) * x);
            if (axis < 3) x[axis] = 5;
            corners.push_back(x);
        }
        const element e = quadrilateral(b, corners, trial % 7 == 0 ? some() : 0);
        double corner[6], local[recordvalues], global[recordvalues];
        for (double& value : corner) value = some();
        const mat3 axes = stressaxes(e);
        const facestress s = facestressof(e, axes, corner);
        const double exact = std::max(mises(s.membrane + s.bending), mises(s.membrane - s.bending));
        localrecord(e, corner, local);
        globalrecord(recordplaneof(e, axes), s, global);
        const double combined = global[recordvalues - 1];
        EXPECT_GE(combined, exact * (1 - 1e-9)) << normal.transpose();
        if (axis < 3) {
            EXPECT_GE(combined, local[recordvalues - 1] * (1 - 1e-5)) << trial;
        }
        largest = std::max(largest, combined / exact);
        // A mean with a neighbour that is tilted against this element.
        const mat3 tilt = Eigen::AngleAxisd(0.3 * some(), vec3(axes.row(0))).toRotationMatrix();
        const facestress mean = {(s.membrane + tilt * s.membrane * tilt.transpose()) / 2,
                                 (s.bending + tilt * s.bending * tilt.transpose()) / 2};
        globalrecord(recordplaneof(e, axes), mean, global);
        EXPECT_GE(global[recordvalues - 1], std::max(mises(mean.membrane + mean.bending),
                                                     mises(mean.membrane - mean.bending)) *
                                                (1 - 1e-9));
        for (int order = 0; order < 8; ++order) {
            std::vector<vec3> turned = corners;
            std::rotate(turned.begin(), turned.begin() + order % 4, turned.end());
            const bool back = order > 3;
            if (back) std::reverse(turned.begin(), turned.end());
            const element other = quadrilateral(b, turned, e.turn);
            facestress face = s;
            if (back) face.bending = -face.bending;
            globalrecord(recordplaneof(other, stressaxes(other)), face, local);
            EXPECT_NEAR(local[recordvalues - 1], combined, 1e-6 * combined) << order;
        }
        b.m.nodes.resize(1), b.m.elements.resize(1);
    }
    EXPECT_LT(largest, 2) << "and no needless excess";
}

// Bending that is even along the plane's own axes is told as it is, in each coordinate plane.
TEST(Records, CoordinatePlanesTellTheirOwnComponents) {
    const vec3 along[3][2] = {
        {{0, 1, 0}, {0, 0, 1}}, {{0, 0, 1}, {1, 0, 0}}, {{1, 0, 0}, {0, 1, 0}}};
    for (int axis = 0; axis < 3; ++axis) {
        build b;
        b.plate(1, 0.3, 1);
        const vec3 u = along[axis][0], w = along[axis][1];
        const element e = quadrilateral(b, {vec3::Zero(), 2 * u, 2 * u + w, w}, 0);
        const double corner[6] = {1, 2, 3, 50, 7, 4};
        double record[recordvalues], local[recordvalues];
        const mat3 axes = stressaxes(e);
        globalrecord(recordplaneof(e, axes), facestressof(e, axes, corner), record);
        localrecord(e, corner, local);
        const double bending[3] = {record[7], record[6], record[8]};  // along x, y, z
        // The formula takes bending along z with either sign.
        EXPECT_GE(record[recordvalues - 1], local[recordvalues - 1] * (1 - 1e-12)) << axis;
        EXPECT_LE(record[recordvalues - 1],
                  local[recordvalues - 1] * (axis == 2 ? 1 + 1e-12 : 1.2));
        for (int k = 0; k < 3; ++k)
            EXPECT_NEAR(bending[k], 50 * u[k] + 7 * w[k], 1e-12) << axis << " along " << k;
    }
}

// --- means --------------------------------------------------------------------------------------

// A cantilever of shells, every other element with its normal the other way and another first
// corner where that is wanted.
static build strip(bool mixed) {
    build b;
    const build::grid at = b.mesh(typeshell4, b.plate(2e5, 0.3, 2), 6, 4, [](double r, double s) {
        const double a = M_PI / 6;
        return vec3(60 * r * std::cos(a) - 20 * s * std::sin(a), 60 * r * std::sin(a), 20 * s);
    });
    b.fix(at.left(), clamped);
    b.spread(1, at.right(), 2, 30);
    b.spread(1, at.right(), 1, 200);
    for (int e = 1; e <= b.m.nelems() && mixed; ++e) {
        int* const node = b.m.elements[std::size_t(e)].node;
        if ((e + (e - 1) / 6) % 2) std::reverse(node, node + 4);
        std::rotate(node, node + e % 4, node + 4);
    }
    return b;
}

// Rows of a stress file: element, corner place, thirteen values.
static std::vector<std::vector<double>> rowsof(const std::string& path) {
    std::vector<std::vector<double>> rows;
    const std::vector<std::string> words = tokensof(path);
    for (std::size_t i = 0; i + 17 <= words.size(); i += 17) {
        rows.emplace_back();
        for (std::size_t k = i; k < i + 17; ++k) rows.back().push_back(std::stod(words[k]));
    }
    return rows;
}

TEST(Means, NeitherNormalsNorAxesOfTheNeighboursChangeThem) {
    tempfolder in;
    std::vector<std::vector<double>> nsa[2], nla[2];
    build models[2] = {strip(false), strip(true)};
    for (int mixed = 0; mixed < 2; ++mixed) {
        build& b = models[mixed];
        b.m.base = in / "m";
        const results r = solvebalanced(b);
        writeplatestresses(b.m, b.s, r.plates, 1);
        nsa[mixed] = rowsof(in / "m.NSA"), nla[mixed] = rowsof(in / "m.NLA");
    }
    ASSERT_EQ(nsa[0].size(), 96u);
    double size = 0;
    for (const auto& row : nsa[0]) size = std::max(size, row[16]);
    for (std::size_t i = 0; i < 96; ++i) {
        // The same corner in the other model.
        const std::vector<double>& one = nsa[0][i];
        std::size_t j = i / 4 * 4;
        while (std::hypot(nsa[1][j][1] - one[1], nsa[1][j][2] - one[2], nsa[1][j][3] - one[3]) >
               1e-6)
            ++j;
        const element e = elementat(models[0].m, models[0].s, int(one[0]));
        const element f = elementat(models[1].m, models[1].s, int(one[0]));
        const mat3 axes = stressaxes(e), other = stressaxes(f);
        const double side = axes.row(2).dot(other.row(2)) > 0 ? 1 : -1;
        for (int k = 4; k < 16; ++k)
            EXPECT_NEAR(nsa[1][j][std::size_t(k)], (k < 10 ? 1 : side) * one[std::size_t(k)],
                        1e-6 * size)
                << "element " << one[0] << " value " << k - 3;
        EXPECT_NEAR(nsa[1][j][16], one[16], 1e-6 * size);
        // Local means, as tensors.
        const auto tensor = [](const std::vector<double>& row, bool bends, const mat3& by) {
            mat3 t;
            if (bends)
                t << row[11], row[13] - row[14], 0, row[13] - row[14], row[10], 0, 0, 0, 0;
            else
                t << row[4], row[7], row[8], row[7], row[5], row[9], row[8], row[9], row[6];
            return mat3(by.transpose() * t * by);
        };
        const mat3 membrane = tensor(nla[0][i], false, axes),
                   bending = tensor(nla[0][i], true, axes);
        EXPECT_LT((tensor(nla[1][j], false, other) - membrane).norm(), 1e-6 * size);
        EXPECT_LT((tensor(nla[1][j], true, other) - side * bending).norm(), 1e-6 * size);
        EXPECT_NEAR(membrane(0, 0), one[4], 1e-6 * size) << "the same mean in both files";
    }
}

// Two or three plates at a common edge; how many means the edge's first node has.
TEST(Means, SharpFoldsAndJointsSplit) {
    const struct {
        const char* name;
        std::vector<double> angles;  // of the plates about the edge, degrees
        std::vector<int> groups;
        int means;
    } rows[] = {{"flat", {0, 180}, {1, 1}, 1},
                {"gentle fold", {0, 161}, {1, 1}, 1},
                {"sharp fold", {0, 159}, {1, 1}, 2},
                {"joint", {0, 180, 90}, {1, 1, 1}, 2},
                {"two groups", {0, 180}, {1, 2}, 2}};
    for (const auto& row : rows) {
        build b;
        b.plate(1, 0, 1), b.plate(1, 0, 1);
        b.node(0, 0, 0), b.node(0, 0, 1);
        platestresses p;
        p.first = {0};
        for (std::size_t i = 0; i < row.angles.size(); ++i) {
            const double a = row.angles[i] * M_PI / 180;
            const int far = b.node(std::cos(a), std::sin(a), 0);
            b.node(std::cos(a), std::sin(a), 1);
            p.elements.push_back(b.element(typeshell4, row.groups[i], {1, far, far + 1, 2}));
            p.first.push_back(p.corners += 4);
        }
        const meanslots slots = findslots(b.m, b.s, p);
        int last = 0;
        for (std::size_t i = 0; i < row.angles.size(); ++i)
            last = std::max(last, slots.slot[4 * i]);
        EXPECT_EQ(last + 1, row.means) << row.name;
    }
}
