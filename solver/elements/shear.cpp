// SPDX-License-Identifier: GPL-3.0-or-later
// SHEAR4: a panel that carries shear alone; bars along its edges take the rest. One stress, of
// which the sides of a parallelogram feel shear only: Garvey, The quadrilateral shear panel,
// Aircraft Engineering 23, 1951. Warped, it is that of the tangent planes.
#include <Eigen/LU>

#include "solver/elements/membrane.h"
#include "solver/elements/surface.h"

static vec3 shearmode(const mat2& j) {
    const vec3 mode(2 * j(0, 0) * j(1, 0), 2 * j(0, 1) * j(1, 1),
                    j(0, 0) * j(1, 1) + j(0, 1) * j(1, 0));
    return mode / std::abs(j.determinant());
}

namespace {
struct panel {
    vec3 mode;  // stress x, y, xy
    double flexibility = 0;
    Eigen::Matrix<double, 1, 12> work = Eigen::Matrix<double, 1, 12>::Zero();
};
}  // namespace

static panel makepanel(const element& e, const mat3& axes) {
    panel p;
    p.mode = shearmode(laminaat(e, axes, shapesat(4, {0, 0})).jacobian);
    const mat3 compliance = planestiffness(e, false).inverse();
    for (const surfacepoint& at : surfacepoints(4, 3)) {
        const surfaceshape n = shapesat(4, at.place);
        const lamina l = laminaat(e, axes, n);
        p.flexibility += at.weight * l.area * p.mode.dot(compliance * p.mode);
        p.work += at.weight * l.area * p.mode.transpose() * strainof(l, n, 4);
    }
    return p;
}

void stiffenshear(const element& e, elmatrix& k) {
    const panel p = makepanel(e, meanaxes(e));
    k = p.work.transpose() * p.work / p.flexibility;
}

void stressshear(const element& e, elmatrix& s) {
    const panel p = makepanel(e, stressaxes(e));
    s.setZero(24, 12);
    for (int c = 0; c < 4; ++c)
        s.block<3, 12>(6 * c, 0) = p.mode * p.work / (p.flexibility * e.field(fieldthickness));
}
