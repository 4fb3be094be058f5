// SPDX-License-Identifier: GPL-3.0-or-later
// Supports of nodes. The constraints are a list of rows in any order; one pass gathers what is held
// at each node, a second one, over the elements, where the members of clamped nodes lie.
#include "view/drawsupports.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "core/catalogue.h"
#include "core/formulas.h"
#include "core/model.h"
#include "core/session.h"
#include "view/drawelems.h"
#include "view/fieldsymbols.h"
#include "view/labels.h"
#include "view/pen.h"
#include "view/scaleview.h"
#include "view/symbolstyle.h"
#include "view/thinning.h"

static const unsigned movements = 7, rotations = 56, inplane = 1 + 2 + 32;  // bits 0..5: DX..RZ

namespace {
struct support {
    int node = 0;
    unsigned held = 0;
    double away[3] = {};  // from the members: where the ground of a clamp lies
    float moved[6] = {};
};

class supportlist {
  public:
    supportlist() : placeof(std::size_t(nnodes()) + 1) {
        for (int i = 1; i <= ncon; ++i) {
            const int n = connode(i), dof = condof(i);
            if (n < 1 || n > nnodes() || dof < 1 || dof > 6) continue;
            int& place = placeof[std::size_t(n)];
            if (place == 0) {
                list.push_back({n});
                place = int(list.size());
            }
            support& s = list[std::size_t(place - 1)];
            s.held |= 1u << (dof - 1);
            s.moved[dof - 1] = conval(i);
        }
        findmembers();
    }
    std::vector<support> list;

  private:
    void findmembers() {
        for (int e = 1; e <= nelems(); ++e) {
            const auto row = elems.row(e);
            const int elnn = nodesoftype(row[0]);
            for (int k = 1; k <= elnn && elnn > 1; ++k) {
                const int n = int(row[std::size_t(k)]);
                const int place = n >= 1 && n <= nnodes() ? placeof[std::size_t(n)] : 0;
                if (place == 0) continue;
                const auto at = nodes.row(0, n);
                support& s = list[std::size_t(place - 1)];
                for (int other = 1; other <= elnn; ++other) {
                    const auto far = nodes.row(0, long(row[std::size_t(other)]));
                    for (std::size_t a = 0; a < 3; ++a) s.away[a] += double(at[a]) - far[a];
                }
            }
        }
    }
    std::vector<int> placeof;  // of a node's support in the list, from 1
};
}  // namespace

// The node's place and, from it, a unit length along a direction, on the surface.
static point2 directionof(int n, const double* direction, int nview) {
    const scaledpoint p = drawnplace(n, nview);
    const double unit = symbollength();
    const point2 from = project(viewcamera, p).at,
                 to = project(viewcamera,
                              {float(p.x + unit * direction[0]), float(p.y + unit * direction[1]),
                               float(p.z + unit * direction[2])})
                          .at;
    return {to.x - from.x, to.y - from.y};
}

static point2 axisdirection(int n, int axis, double length, int nview) {
    double direction[3] = {};
    direction[axis] = length;
    return directionof(n, direction, nview);
}

static point2 groundofclamp(const support& s, int nview) {
    const double length = std::hypot(s.away[0], s.away[1], s.away[2]);
    if (!(length > 0)) return {0, 0};
    const double away[] = {s.away[0] / length, s.away[1] / length, s.away[2] / length};
    return directionof(s.node, away, nview);
}

static void drawmovement(surface& s, const support& p, int dof, point2 at, int nview) {
    const bool turns = dof > 3;
    const colour c = shown(turns ? rotcolor : concolor);
    const double sign = p.moved[dof - 1] < 0 ? -1 : 1;
    const point2 way = axisdirection(p.node, (dof - 1) % 3, (turns ? 2 : 1) * sign, nview);
    const point2 tip{at.x + way.x, at.y + way.y};
    s.line(at.x, at.y, tip.x, tip.y, c);
    if (p.moved[dof - 1] == 0) return;
    drawheads(s, at, tip, turns ? 2 : 1, c);
    drawvalue(s, tip, p.moved[dof - 1], constraintformula(dof), c);
}

static void drawonesupport(surface& s, const support& p, int nview) {
    const point2 at = project(viewcamera, drawnplace(p.node, nview)).at;
    const unsigned seen = dim2d ? inplane : movements | rotations;
    const unsigned held = p.held & seen;
    const int down = dim2d ? 1 : 2;  // the axis that is upright
    const bool clamped = held == seen;
    if (clamped) {
        drawsupport(s, supports::clamp, at, groundofclamp(p, nview), shown(concolor));
    } else if ((held & movements) == (seen & movements)) {
        drawsupport(s, supports::pin, at, axisdirection(p.node, down, -1, nview), shown(concolor));
    } else {
        for (int axis = 0; axis < 3; ++axis)
            if (held >> axis & 1)
                drawsupport(s, supports::roller, at, axisdirection(p.node, axis, -1, nview),
                            shown(concolor));
    }
    for (int dof = 1; dof <= 6; ++dof)
        if (held >> (dof - 1) & 1 && (p.moved[dof - 1] != 0 || (dof > 3 && !clamped)))
            drawmovement(s, p, dof, at, nview);
}

void drawsupports(int nview) {
    surface* const s = target(nview);
    if (ncon == 0 || s == nullptr) return;
    const keptpen pen(s);
    const onplane plane(*s, planes::constraints);
    prepareview(nview);
    s->drawwidth = 1;
    s->font = nodelabelfont;
    const double apart = 0.45 * symbolsdrawn.size / 100;  // centimetres: the width of one
    thinning places(vieww, viewh, std::max(apart, leastspacing(nview)));
    for (const support& p : supportlist().list) {
        const point2 at = project(viewcamera, drawnplace(p.node, nview)).at;
        if (places.accepts(at.x, at.y)) drawonesupport(*s, p, nview);
    }
}
