// SPDX-License-Identifier: GPL-3.0-or-later
// Defining points of items, and what their places in a view depend on.
#include "edit/pickplaces.h"

#include "core/model.h"
#include "core/session.h"
#include "core/views.h"
#include "view/moddraw.h"

int pointsofgraphic(int kind) {
    return kind == kindfree ? 0 : kind == kindline ? 2 : 3;
}

bool findpatchcentre(int p, double* centre) {
    double sum[3] = {0, 0, 0};
    int count = 0;
    for (int j = 1; j <= patches(p, 0, 0); ++j)
        for (int k = 1; k <= patches(p, j, 0); ++k) {
            const int g = patches(p, j, k);
            if (g < 1 || g > ngraphics() || graphics(g, 0, 0) == 0) continue;
            for (int end = 1; end <= 2; ++end) {
                for (int axis = 0; axis < 3; ++axis) sum[axis] += graphics(g, end, axis + 1);
                ++count;
            }
        }
    for (int axis = 0; axis < 3; ++axis) centre[axis] = count == 0 ? 0 : sum[axis] / count;
    return count != 0;
}

std::vector<double> pickstate(int nview) {
    std::vector<double> state = {double(nview),
                                 double(nnodes()),
                                 double(nelems()),
                                 double(mnudrawlist(nodesdrawn).checked),
                                 double(curlc),
                                 double(loadnode(curlc, 0)),
                                 double(picturesdrawn),
                                 double(viewtype(nview)),
                                 double(viewselnum(nview))};
    for (const auto* list :
         {&viewptx, &viewpty, &viewptz, &viewvert, &viewhor, &viewscale, &viewdist, &viewaw})
        state.push_back((*list)(nview));
    return state;
}
