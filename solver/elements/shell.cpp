// SPDX-License-Identifier: GPL-3.0-or-later
// Plates and shells: the halves put together in the mean plane and hung on the nodes.
#include "solver/elements/shell.h"

#include <Eigen/LU>
#include <algorithm>
#include <array>
#include <cstring>

#include "solver/elements/bending.h"
#include "solver/elements/drill.h"
#include "solver/elements/gausscurvature.h"
#include "solver/elements/membraneload.h"

void checkshell(const element& e) {
    const double mostwarp = 0.3;  // corner height over element size
    checkplateproperties(e, false);
    checkplateshape(e, mostwarp);
    // Of its size; the rounding of thicker ones looks like a mechanism.
    const double mostthick = 1e5;
    const double size = std::max((e.x[1] - e.x[0]).norm(), (e.x[2] - e.x[0]).norm());
    if (e.field(fieldthickness) > mostthick * size)
        refuseelement(e,
                      "is over 100,000 times as thick as it is long; correct the thickness of "
                      "its group, or its unit");
}

void stiffenplate(const element& e, elmatrix& k) {
    const flatshape s = flatten(e, meanaxes(e));
    k.setZero(6 * e.nodes, 6 * e.nodes);
    addhalf(plate(e, s).stiffness(), bendingdofs, k);
    tonodes(s, k);
}

namespace {
// All that the matrices of a shell depend on: axes, corners, fields, what is known of the edges,
// what they follow, curve and curvature, which triangles take from the normals, whether there is
// slip, and nodes. Folds of the edges count for loads alone.
const int foldvalues = 3 + mostnodes + 3 * 3;
using shellkey =
    std::array<double, 9 + 3 * mostnodes + groupfields + 1 + mostnodes + 1 + foldvalues + 3>;

// The last matrices of a thread. Work calls for them in turn: elements of a regular mesh are alike
// to the last bit, and repeat themselves after one or two.
class lastmatrices {
  public:
    const elmatrix* find(const shellkey& wanted) const {
        for (int i = 0; i < kept; ++i)
            if (std::memcmp(key[i].data(), wanted.data(), sizeof wanted) == 0) return &matrix[i];
        return nullptr;
    }
    void keep(const shellkey& its, const elmatrix& value) {
        key[next] = its;
        matrix[next] = value;
        next = (next + 1) % most;
        kept = std::max(kept, next == 0 ? most : next);
    }

  private:
    static constexpr int most = 3;
    shellkey key[most];
    elmatrix matrix[most];
    int kept = 0, next = 0;
};
}  // namespace

static shellkey keyof(const element& e, const flatshape& s) {
    shellkey key{};
    double* next = std::copy_n(s.axes.data(), 9, key.data());
    for (int c = 0; c < s.corners; ++c) {
        *next++ = s.at[c].x();
        *next++ = s.at[c].y();
        *next++ = s.height[c];
    }
    next = std::copy_n(e.g->field, groupfields + 1, key.data() + 9 + 3 * mostnodes);
    if (e.slip != nullptr) {
        std::copy_n(e.slip->shear, mostnodes, next);
        next[mostnodes] = e.slip->straight + 256 * (e.slip->meeting + 256 * e.slip->free);
    }
    next += mostnodes + 1;
    if (e.fold != nullptr) {
        double* part = std::copy_n(e.fold->bend, 3, next);
        part = std::copy_n(e.fold->followed, mostnodes, part);
        if (e.nodes == 3) std::copy_n(e.fold->bothways, 3, std::copy_n(e.fold->lean[0], 6, part));
    }
    next += foldvalues;
    *next++ = e.curve;
    *next++ = e.slip != nullptr;
    *next++ = e.nodes;
    return key;
}

// The matrix that work makes of the element, or that it made of one alike.
template <typename Work>
static void workoralike(const element& e, const flatshape& s, elmatrix& result, Work work) {
    thread_local lastmatrices last;  // of this kind of work
    const shellkey key = keyof(e, s);
    if (const elmatrix* const alike = last.find(key)) {
        result = *alike;
        return;
    }
    work(result);
    last.keep(key, result);
}

void stiffenshell(const element& e, elmatrix& k) {
    const flatshape s = flatten(e, meanaxes(e));
    workoralike(e, s, k, [&](elmatrix& whole) {
        whole.setZero(6 * e.nodes, 6 * e.nodes);
        halfmatrix bending = plate(e, s).stiffness();
        addgausscurvature(e, s, bending);
        addhalf(bending, bendingdofs, whole);
        stiffendrilling(e, s, whole);
        tonodes(s, whole);
    });
}

// Deflection at a place of the plane with these parts of the cubic one and of the straight one; n:
// the shapes there.
static halfrow deflection(const flatshape& s, const plate& bent, double cubic, double straight,
                          const vec2& place, const surfaceshape& n) {
    halfrow w = cubic * bent.deflection(place);
    for (int c = 0; c < s.corners; ++c) w[3 * c] += straight * n.n[c];
    return w;
}

// Rows u1 u2 u3 at a place of the plane. What moves follows the cubic deflection on curved surfaces
// too: the straight one has up to (n h / R)^2 / 6 less mass in n waves around a cylinder.
static elmatrix displacement(const flatshape& s, const plate& bent, const vec2& place) {
    const surfaceshape n = shapesat(s.corners, place);
    const halfrow w = bent.deflection(place);
    elmatrix rows = elmatrix::Zero(3, 6 * s.corners);
    for (int c = 0; c < s.corners; ++c) {
        rows(0, 6 * c) = rows(1, 6 * c + 1) = n.n[c];
        for (int i = 0; i < 3; ++i) rows(2, 6 * c + bendingdofs[i]) = w[3 * c + i];
    }
    return rows;
}

void massshell(const element& e, elmatrix& m) {
    const flatshape s = flatten(e, meanaxes(e));
    const plate bent(e, s);
    const double density = e.field(fielddensity), thickness = e.field(fieldthickness);
    m.setZero(6 * e.nodes, 6 * e.nodes);
    for (const surfacepoint& p : surfacepoints(e.nodes, 7)) {
        const surfaceshape n = shapesat(e.nodes, p.place);
        const double weight = density * thickness * p.weight * surfacenormal(e, n).norm();
        const elmatrix u = displacement(s, bent, p.place);
        m.noalias() += weight * u.transpose() * u;
        for (int i = 0; i < e.nodes; ++i)
            for (int j = 0; j < e.nodes; ++j)
                m.block<2, 2>(6 * i + 3, 6 * j + 3).diagonal().array() +=
                    weight * thickness * thickness / 12 * n.n[i] * n.n[j];
    }
    tonodes(s, m);
}

void spreadshell(const element& e, placedforces forces, elvector& f) {
    const flatshape s = flatten(e, meanaxes(e));
    const plate bent(e, s);
    const double cubic = cubicpart(e, s);
    membraneload held = {halfrow::Zero(3 * s.corners), 0};
    if (cubic < 1) held = loadofmembrane(e, s);
    const double straight = (1 - cubic) * (1 - held.part);
    elmatrix work = elmatrix::Zero(1, 6 * s.corners);
    for (const auto& [place, force] : forces) {
        const vec3 local = s.axes * force;
        const surfaceshape n = shapesat(s.corners, place);
        const halfrow w =
            deflection(s, bent, cubic, straight, place, n) + (1 - cubic) * held.weight;
        for (int c = 0; c < s.corners; ++c) {
            work(0, 6 * c) += local.x() * n.n[c];
            work(0, 6 * c + 1) += local.y() * n.n[c];
            for (int i = 0; i < 3; ++i) work(0, 6 * c + bendingdofs[i]) += local.z() * w[3 * c + i];
        }
    }
    rowstonodes(s, work);
    f += work.transpose();
}

static void addbending(const element& e, const flatshape& s, elmatrix& rows) {
    addrows(plate(e, s).cornerstress(), bendingdofs, 3, rows);
}

void stressplate(const element& e, elmatrix& rows) {
    const flatshape s = flatten(e, stressaxes(e));
    rows.setZero(6 * e.nodes, 6 * e.nodes);
    addbending(e, s, rows);
    rowstonodes(s, rows);
}

void stressshell(const element& e, elmatrix& rows) {
    const flatshape s = flatten(e, stressaxes(e));
    workoralike(e, s, rows, [&](elmatrix& whole) {
        whole.setZero(6 * e.nodes, 6 * e.nodes);
        addbending(e, s, whole);
        stressdrilling(e, s, whole);
        rowstonodes(s, whole);
    });
}
