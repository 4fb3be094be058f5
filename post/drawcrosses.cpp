// SPDX-License-Identifier: GPL-3.0-or-later
// Directions of principal stresses.
#include "post/drawcrosses.h"

#include <algorithm>
#include <cmath>

#include "core/model.h"
#include "core/session.h"
#include "core/views.h"
#include "post/contour.h"
#include "post/exactstress.h"
#include "view/drawelems.h"
#include "view/localaxes.h"
#include "view/pen.h"
#include "view/scaleview.h"
#include "view/surface.h"

static bool isprincipal(int component) {
    return component >= principal1upper && component <= principal2lower;
}

// A stroke either way from the middle of an element.
static void drawarm(const float* from, const double* direction, double length, int nview,
                    colour c) {
    const double back[] = {-direction[0], -direction[1], -direction[2]};
    drawstroke(from, direction, length, nview, c);
    drawstroke(from, back, length, nview, c);
}

void drawcrosses(int nview) {
    surface* const s = target(nview);
    if (s == nullptr || !iscontour() || nview != 1 || !plotready() || !plotsstress() ||
        !isprincipal(stresscomp))
        return;
    const colour tension = rgb(20, 60, 150), compression = rgb(170, 20, 30);
    const int side = 1 - (stresscomp - principal1upper) / 2;
    const double largest = std::max(std::fabs(indexmax), std::fabs(indexmin));
    const keptpen pen(s);
    prepareview(nview);
    undeformed = isdeformed() ? 0 : 1;
    s->drawwidth = 2;
    for (int e = 1; e <= nelems(); ++e) {
        if (!isplotted(e) || !isshown(e, nview) || iscrowded(e, nview)) continue;
        const principalstress p = meanprincipalof(e, side);
        localaxes(e);
        turnedplateaxes(e);
        double first[3], second[3];
        for (int k = 0; k < 3; ++k) {
            first[k] = std::cos(p.angle) * localx[k] + std::sin(p.angle) * localy[k];
            second[k] = -std::sin(p.angle) * localx[k] + std::cos(p.angle) * localy[k];
        }
        setcentre(e, nview);
        const float middle[] = {curx, cury, curz};
        const auto arm = [&](double value, const double* direction) {
            drawarm(middle, direction, unitveclen * std::min(1.0, std::fabs(value) / largest),
                    nview, value < 0 ? compression : tension);
        };
        if (largest > 0) {
            arm(p.s1, first);
            arm(p.s2, second);
        }
    }
}
