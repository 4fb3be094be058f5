// SPDX-License-Identifier: GPL-3.0-or-later
// The lasso. State: the line under way.
#include "edit/lasso.h"

#include <algorithm>
#include <cmath>

#include "core/colours.h"
#include "core/views.h"
#include "view/moddraw.h"
#include "view/pen.h"

lassoline lasso;

static const double leaststep = 0.04;   // centimetres between two corners of a drag
static const double closereach = 0.25;  // centimetres about the first corner

// --- the inside ---------------------------------------------------------------------------------

lassoshape::lassoshape(const std::vector<point2>& corners)
    : left(HUGE_VAL), right(-HUGE_VAL), top(HUGE_VAL), bottom(-HUGE_VAL) {
    for (const point2& p : corners) {
        left = std::min(left, p.x);
        right = std::max(right, p.x);
        top = std::min(top, p.y);
        bottom = std::max(bottom, p.y);
    }
    if (!(bottom > top)) return;
    strips.resize(std::clamp<std::size_t>(corners.size(), 1, 1024));
    const double share = double(strips.size()) / (bottom - top);
    const auto strip = [&](double y) {
        return std::min(std::size_t(std::max(0.0, (y - top) * share)), strips.size() - 1);
    };
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const side s{corners[i], corners[(i + 1) % corners.size()]};
        const std::size_t last = strip(std::max(s.a.y, s.b.y));
        for (std::size_t k = strip(std::min(s.a.y, s.b.y)); k <= last; ++k) strips[k].push_back(s);
    }
}

bool lassoshape::holds(double x, double y) const {
    if (strips.empty() || !(x > left && x < right && y > top && y < bottom)) return false;
    const double share = double(strips.size()) / (bottom - top);
    bool inside = false;
    for (const side& s : strips[std::min(std::size_t((y - top) * share), strips.size() - 1)])
        if ((s.a.y > y) != (s.b.y > y) &&
            x < s.a.x + (y - s.a.y) / (s.b.y - s.a.y) * (s.b.x - s.a.x))
            inside = !inside;
    return inside;
}

// --- the line under way -------------------------------------------------------------------------

static void drawlasso(const point2* pointer) {
    surface* const s = target(lasso.view);
    if (s == nullptr) return;
    const keptpen pen(s);
    s->clearplane(planes::pointer);
    const onplane top(*s, planes::pointer);
    s->drawwidth = 1;
    s->drawstyle = pens::solid;
    for (std::size_t i = 1; i < lasso.corners.size(); ++i)
        s->line(lasso.corners[i - 1].x, lasso.corners[i - 1].y, lasso.corners[i].x,
                lasso.corners[i].y, selcolor);
    s->drawstyle = pens::dotted;
    const point2 last = pointer ? *pointer : lasso.corners.back(), first = lasso.corners.front();
    if (pointer) s->line(lasso.corners.back().x, lasso.corners.back().y, last.x, last.y, selcolor);
    s->line(last.x, last.y, first.x, first.y, selcolor);
    s->show();
}

void startlasso(int nview, double x, double y) {
    endlasso();
    lasso.view = nview;
    lasso.corners = {{x, y}};
}

bool extendlasso(double x, double y) {
    const point2 last = lasso.corners.back();
    if (std::hypot(x - last.x, y - last.y) < leaststep) return false;
    lasso.corners.push_back({x, y});
    drawlasso(nullptr);
    return true;
}

void followlasso(double x, double y) {
    const point2 pointer{x, y};
    drawlasso(&pointer);
}

bool closeslasso(double x, double y) {
    const point2 first = lasso.corners.front();
    return lasso.corners.size() > 2 && std::hypot(x - first.x, y - first.y) < closereach;
}

void endlasso() {
    if (lasso.view == 0) return;
    if (surface* const s = target(lasso.view)) {
        s->clearplane(planes::pointer);
        s->show();
    }
    lasso = lassoline();
}
