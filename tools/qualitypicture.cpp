// SPDX-License-Identifier: GPL-3.0-or-later
// The picture hangs in the layer of the elements.
#include "tools/qualitypicture.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/catalogue.h"
#include "core/model.h"
#include "tools/elementshape.h"
#include "view/drawelems.h"
#include "view/hidden.h"
#include "view/moddraw.h"
#include "view/pen.h"
#include "view/scaleview.h"

bool qualityonshow = false;

int bandofquality(double quality) {
    return std::clamp(int(std::floor(quality * qualitybands)), 0, qualitybands - 1);
}

colour colourofband(int band) {
    const double part = 2.0 * band / (qualitybands - 1);  // 0 red, 1 yellow, 2 green
    const int full = 225, red = int(full * std::min(2 - part, 1.0)),
              green = int(full * std::min(part, 1.0));
    return rgb(red, green, 60);
}

template <typename Take>
static void eachquality(int group, Take take) {
    for (int e = 1; e <= nelems(); ++e) {
        if (group != 0 && egroup(e) != group) continue;
        if (const double q = qualityof(e); q >= 0) take(e, q);
    }
}

qualitycounts countqualities(int group) {
    qualitycounts counts{};
    eachquality(group, [&](int, double q) { ++counts[std::size_t(bandofquality(q))]; });
    return counts;
}

std::vector<int> elementsofband(int band, int group) {
    std::vector<std::pair<double, int>> found;
    eachquality(group, [&](int e, double q) {
        if (bandofquality(q) == band) found.emplace_back(q, e);
    });
    std::ranges::sort(found);
    std::vector<int> list;
    for (const auto& [q, e] : found) list.push_back(e);
    return list;
}

// --- the picture --------------------------------------------------------------------------------

static void paintplate(surface& s, int e, int elnn, int nview) {
    point2 corner[4];
    for (int k = 0; k < elnn; ++k) {
        setnode(int(elems(e, k + 1)), nview);
        projectpoint(nview);
        corner[k] = {scrx, scry};
    }
    s.fillcolor = colourofband(bandofquality(qualityof(e)));
    s.polygon(corner, elnn, iscrowded(e, nview) ? s.fillcolor : drawcolor);
    drawelementlabel(e, nview);
}

static void drawqualities(int nview) {
    surface* const s = target(nview);
    if (s == nullptr) return;
    prepareview(nview);
    sortdepth(nview);
    const keptpen pen(s);
    s->drawwidth = 1;
    for (int i = 1; i <= nelems(); ++i) {
        const int e = int(elemdepth(i, 0)), elnn = nodesoftype(elems(e, 0));
        if (elnn == 0 || !isshown(e, nview)) continue;
        s->fillsolid = true;
        if (elnn > 2 && hascorners(e))
            paintplate(*s, e, elnn, nview);
        else
            drawelement(e, nview);
    }
}

void wirequality() {
    layerrow& row = layer(layers::elements);
    row.draw = [wires = row.draw](int nview) {
        if (qualityonshow)
            drawqualities(nview);
        else
            wires(nview);
    };
}
