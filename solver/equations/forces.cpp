// SPDX-License-Identifier: GPL-3.0-or-later
// Forces of elements. A thin element's stiffness is a million times that of its bending, so the
// rounding of a rigid motion would push it harder than its load. Hence what it is multiplied with
// has its rigid motion taken out beforehand, in extended precision.
#include "solver/equations/forces.h"

#include <Eigen/Geometry>
#include <Eigen/LU>

#include <limits>

#include "solver/base/parallel.h"
#include "solver/elements/kinds.h"
#include "solver/processes/ranks.h"

using longvec3 = Eigen::Matrix<long double, 3, 1>;

void gather(const dofmap& d, const elementdofs& dofs, const displacements& u, elcases& out) {
    out.resize(dofs.count, u.cases);
    for (int c = 0; c < u.cases; ++c) {
        const double* const from = u.of(d, c + 1);
        for (int a = 0; a < dofs.count; ++a)
            out(a, c) = dofs.index[a] < 0 ? 0 : from[dofs.index[a]];
    }
}

namespace {
// A rigid motion near the displacements of an element; which one does not matter to its forces.
class rigidfit {
  public:
    rigidfit(const element& e, int nodedofs) : at(e), stride(nodedofs) {
        centre = vec3::Zero();
        for (int i = 0; i < e.nodes; ++i) centre += e.x[i] / e.nodes;
        mat3 inertia = mat3::Zero();
        for (int i = 0; i < e.nodes; ++i) {
            const vec3 x = e.x[i] - centre;
            inertia += x.squaredNorm() * mat3::Identity() - x * x.transpose();
        }
        // Rotations of the nodes count as well; without them a bar's own turn is left at nothing.
        weight = inertia.trace() * (stride == 6 ? 1 : 1e-6);
        inverse = (inertia + weight * mat3::Identity()).inverse();
    }

    // Takes the motion out of u, of which rest (or null) is left off.
    void removemotion(const double* rest, double* u) const {
        vec3 shift = vec3::Zero(), moment = vec3::Zero();
        for (int i = 0; i < at.nodes; ++i) {
            const Eigen::Map<const vec3> translation(u + stride * i);
            shift += translation / at.nodes;
            moment += (at.x[i] - centre).cross(vec3(translation));
            if (stride == 6) moment += weight / at.nodes * Eigen::Map<const vec3>(u + 6 * i + 3);
        }
        const longvec3 turn = vec3(inverse * moment).cast<long double>();
        for (int i = 0; i < at.nodes; ++i) {
            const longvec3 arm = (at.x[i] - centre).cast<long double>();
            const longvec3 rigid = shift.cast<long double>() + turn.cross(arm);
            for (int k = 0; k < stride; ++k) {
                double& value = u[stride * i + k];
                long double left = value - (k < 3 ? rigid[k] : turn[k - 3]);
                if (rest) left += rest[stride * i + k];
                value = double(left);
            }
        }
    }

  private:
    const element& at;
    int stride;
    vec3 centre;
    double weight;
    mat3 inverse;
};
}  // namespace

// Displacements of the element's nodes, less a rigid motion where that costs its kind nothing.
static void deformation(const dofmap& d, const element& e, const elementdofs& dofs,
                        const displacements& u, elcases& ue) {
    const elementkind& kind = kindof(e.type);
    gather(d, dofs, u, ue);
    if (kind.fam != family::line && kind.fam != family::plate) return;
    const rigidfit fit(e, kind.nodedofs);
    double rest[mostdofs];
    for (int c = 0; c < u.cases; ++c) {
        for (int a = 0; a < dofs.count && !u.rest.empty(); ++a)
            rest[a] = dofs.index[a] < 0
                          ? 0
                          : u.rest[std::size_t(c) * d.equation.size() + std::size_t(dofs.index[a])];
        fit.removemotion(u.rest.empty() ? nullptr : rest, ue.col(c).data());
    }
}

void elementforces(const model& m, const settings& s, const dofmap& d, const displacements& u,
                   int number, elcases& f) {
    const element e = elementat(m, s, number);
    elmatrix k;
    kindof(e.type).stiffness(e, k);
    elcases ue;
    deformation(d, e, dofsof(d, m.elements[std::size_t(number)]), u, ue);
    f.noalias() = k * ue;
}

strainenergy elementenergy(const model& m, const settings& s, const dofmap& d,
                           const displacements& u, int number) {
    const element e = elementat(m, s, number);
    elmatrix k;
    kindof(e.type).stiffness(e, k);
    elcases ue;
    deformation(d, e, dofsof(d, m.elements[std::size_t(number)]), u, ue);
    const elcases size = ue.col(0).cwiseAbs();
    const double rounding = 8 * std::numeric_limits<double>::epsilon();
    return {ue.col(0).dot(k * ue.col(0)), rounding * size.col(0).dot(k.cwiseAbs() * size.col(0))};
}

void addforces(const model& m, const settings& s, const dofmap& d, const displacements& u,
               const std::vector<int>& elements, std::vector<double>& force) {
    const int batch = 2048;
    const std::size_t most = std::min<std::size_t>(batch, elements.size());
    std::vector<elcases> forces(most);
    std::vector<elementdofs> dofs(most);
    for (std::size_t begin = 0; begin < elements.size(); begin += batch) {
        const auto count = std::min<std::size_t>(batch, elements.size() - begin);
        parallelpieces(int(count), 32, [&](int first, int last, int) {
            for (auto i = std::size_t(first); i < std::size_t(last); ++i) {
                const int number = elements[begin + i];
                dofs[i] = dofsof(d, m.elements[std::size_t(number)]);
                elementforces(m, s, d, u, number, forces[i]);
            }
        });
        parallelpieces(u.cases, 1, [&](int first, int last, int) {
            for (int c = first; c < last; ++c) {
                double* const to = force.data() + std::size_t(c) * d.equation.size();
                for (std::size_t i = 0; i < count; ++i)
                    for (int a = 0; a < dofs[i].count; ++a)
                        if (dofs[i].index[a] >= 0) to[dofs[i].index[a]] += forces[i](a, c);
            }
        });
    }
    for (int c = 0; c < u.cases; ++c)
        sumshares(d, force.data() + std::size_t(c) * d.equation.size());
}

std::vector<int> stiffelements(const model& m) {
    std::vector<int> list;
    for (int e = 1; e <= m.nelems(); ++e)
        if (kindof(m.elements[std::size_t(e)].type).stiffness && isown(m, e)) list.push_back(e);
    return list;
}
