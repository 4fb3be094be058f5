// SPDX-License-Identifier: GPL-3.0-or-later
// Masses.
#include "solver/modes/mass.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>

#include "solver/base/parallel.h"
#include "solver/base/refuse.h"
#include "solver/elements/kinds.h"
#include "solver/elements/surface.h"
#include "solver/processes/ranks.h"

// --- groups -------------------------------------------------------------------------------------

// Mass matrix of the element when it moves as a rigid body: three translations, three rotations
// about the place.
static mat6 rigidmass(const element& e, const elmatrix& mass, const vec3& about) {
    const int stride = int(mass.rows()) / e.nodes;
    Eigen::Matrix<double, Eigen::Dynamic, 6, Eigen::ColMajor, mostdofs, 6> motion(mass.rows(), 6);
    motion.setZero();
    for (int i = 0; i < e.nodes; ++i) {
        motion.block<3, 3>(stride * i, 0).setIdentity();
        for (int k = 0; k < 3; ++k)
            motion.block<3, 1>(stride * i, 3 + k) = vec3(vec3::Unit(k)).cross(e.x[i] - about);
        if (stride == 6) motion.block<3, 3>(stride * i + 3, 3).setIdentity();
    }
    return motion.transpose() * mass * motion;
}

// The same of a shell, by its surface: a tenth of the work of its matrix.
static mat6 shellbody(const element& e, const vec3& about) {
    const double thickness = e.field(fieldthickness);
    mat6 body = mat6::Zero();
    for (const surfacepoint& p : surfacepoints(e.nodes, 5)) {
        const surfaceshape n = shapesat(e.nodes, p.place);
        const vec3 normal = surfacenormal(e, n), x = surfaceat(e, n) - about;
        const double weight = e.field(fielddensity) * thickness * p.weight * normal.norm();
        Eigen::Matrix<double, 3, 6> motion;
        motion.leftCols<3>().setIdentity();
        for (int k = 0; k < 3; ++k) motion.col(3 + k) = vec3(vec3::Unit(k)).cross(x);
        body += weight * motion.transpose() * motion;
        const vec3 across = normal.normalized();
        body.bottomRightCorner<3, 3>() +=
            weight * thickness * thickness / 12 * (mat3::Identity() - across * across.transpose());
    }
    return body;
}

// A rotation about an axis moves the centre: the products of translation and rotation hold it.
static massproperties propertiesof(const mat6& body, const vec3& about) {
    massproperties p;
    p.mass = body.topLeftCorner<3, 3>().trace() / 3;
    if (!(p.mass > 0)) return {};
    p.centre = vec3(body(1, 5), body(2, 3), body(0, 4)) / p.mass;
    for (int k = 0; k < 3; ++k) {
        const double off = p.centre.squaredNorm() - p.centre[k] * p.centre[k];
        p.radius[k] = std::sqrt(std::max(0.0, body(3 + k, 3 + k) / p.mass - off));
    }
    p.centre += about;
    return p;
}

std::vector<massproperties> groupmasses(const model& m, const settings& s) {
    const vec3 about = m.allnodes() > 0 ? firstnode(m) : vec3(0, 0, 0);  // near, to save digits
    std::vector<mat6> bodies(m.groups.size(), mat6::Zero());
    const int batch = 8192;
    std::vector<mat6> own(std::size_t(std::min(batch, m.nelems())));
    for (int begin = 1; begin <= m.nelems(); begin += batch) {
        const int count = std::min(batch, m.nelems() + 1 - begin);
        parallelpieces(count, 256, [&](int first, int last, int) {
            elmatrix mass;
            for (int i = first; i < last; ++i) {
                own[std::size_t(i)].setZero();
                const elementkind& kind = kindof(m.elements[std::size_t(begin + i)].type);
                if (!kind.mass || !isown(m, begin + i)) continue;
                const element e = elementat(m, s, begin + i);
                if (e.field(fielddensity) == 0) continue;
                if (kind.fam == family::plate && kind.nodedofs == 6) {
                    own[std::size_t(i)] = shellbody(e, about);
                    continue;
                }
                kind.mass(e, mass);
                own[std::size_t(i)] = rigidmass(e, mass, about);
            }
        });
        for (int i = 0; i < count; ++i) {
            bodies[0] += own[std::size_t(i)];
            bodies[std::size_t(m.elements[std::size_t(begin + i)].group)] += own[std::size_t(i)];
        }
    }
    for (mat6& body : bodies) allranks().sum(body.data(), body.size());
    std::vector<massproperties> result;
    for (const mat6& body : bodies) result.push_back(propertiesof(body, about));
    return result;
}

// --- matrix -------------------------------------------------------------------------------------

static void addnodalmasses(const model& m, const dofmap& d, sparsematrix& mass, runlog& log) {
    const int lc = masscase(m);
    if (lc == 0) return;
    const loadcase& c = m.cases[std::size_t(lc)];
    double count = 0, wrong = INFINITY;  // the node of a mass that is wrong
    for (const nodalrow& row : c.nodal) {
        if (!d.nodes->counts(std::size_t(row.node - 1))) continue;
        ++count;
        if (row.value < 0) wrong = std::min<double>(wrong, m.nameofnode(row.node));
        if (d.place[row.dof] >= 0)
            addatdof(d, d.index(row.node, d.place[row.dof]), row.value, mass);
    }
    allranks().sum(&count, 1);
    log.line("Nodal masses: " + std::to_string(long(count)) + " row(s) of case " +
             std::to_string(lc) + " \"" + c.name + "\"");
    refusefirst(wrong, wrong == INFINITY
                           ? ""
                           : "Node " + std::to_string(int(wrong)) +
                                 " has a mass below 0 in case \"" + c.name + "\"; correct it");
}

sparsematrix massmatrix(const model& m, const settings& s, const equations& q, bool elements,
                        runlog& log) {
    sparsematrix mass = q.stiffness;
    std::fill(mass.value.begin(), mass.value.end(), 0.0);
    assemble(m, s, q.dofs, elements ? part::mass : part::pointmass, mass, log);
    addnodalmasses(m, q.dofs, mass, log);
    return mass;
}
