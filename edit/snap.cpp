// SPDX-License-Identifier: GPL-3.0-or-later
#include "edit/snap.h"

#include <cmath>

#include "core/model.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/find.h"
#include "view/scaleview.h"

std::function<bool(int, const double*, double*)> footongraphic;

// The point in work takes a place in model coordinates when that lies within reach.
static bool snaptest(int nview, const double* place) {
    const double at[] = {modelx, modely, modelz};
    double sum = 0;
    for (int k = 0; k < 3; ++k) sum += (place[k] - at[k]) * (place[k] - at[k]);
    const double reach = 2 * unitveclen;
    if (reach < std::sqrt(sum)) return false;
    modelx = place[0];
    modely = place[1];
    modelz = place[2];
    setpoint(nview, modelx, modely, modelz);
    return true;
}

// To the end of a graphic element that was picked, else to the nearest place of its shape.
static void snappoint(int nview, const nearest& graphic) {
    const int g = graphic.item, j = graphic.part;
    const double end[] = {graphics(g, j, 1), graphics(g, j, 2), graphics(g, j, 3)};
    if (snaptest(nview, end)) return;
    const double point[] = {modelx, modely, modelz};
    double foot[3];
    if (footongraphic && footongraphic(g, point, foot)) snaptest(nview, foot);
}

void snapto(int nview) {
    if (!MnuSelectItem(selectsnap).checked) return;
    if (const nearest node = picknode(nview); node.item != 0) {
        const double place[] = {nodes(0, node.item, 0), nodes(0, node.item, 1),
                                nodes(0, node.item, 2)};
        if (snaptest(nview, place)) return;
    }
    if (const nearest graphic = picksnapgraphic(nview); graphic.item != 0)
        snappoint(nview, graphic);
}
