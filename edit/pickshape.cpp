// SPDX-License-Identifier: GPL-3.0-or-later
// Distances of the click from drawn shapes. State: the elements of the picture last asked about,
// by rows.
#include "edit/pickshape.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/pickplaces.h"
#include "view/drawelems.h"
#include "view/facehit.h"
#include "view/itemrows.h"
#include "view/moddraw.h"
#include "view/scaleview.h"

bool pickshapes = true;
std::function<std::vector<std::array<double, 3>>(int)> shapeofgraphic;

namespace {

// How an item lies to the pointer; the lowest is picked.
struct meeting {
    enum { online, inface, onedge, notunder } rank = notunder;
    double way = 0;    // from a line or edge, or how far back a face lies; in steps, see rounded
    double place = 0;  // of the defining point from the pointer, centimetres
    int item = 0;
    bool operator<(const meeting& other) const {
        return std::tie(rank, way, place) < std::tie(other.rank, other.way, other.place);
    }
};

// The click on the surface, kept while the registers serve the search.
class pointer {
  public:
    explicit pointer(int v) : nview(v) {
        const double pixels = 6;
        prepareview(nview);
        at = surfaceplace(viewcamera, persu, persv);
        const surface* const s = target(nview);
        reach = s != nullptr && s->pixpercm() > 0 ? pixels / s->pixpercm() : 0;
    }
    // Ways that no eye tells apart are equal.
    double rounded(double way) const {
        const double step = 24;  // of the reach: a quarter of a pixel
        return std::floor(way * step / reach);
    }
    double distance(const point2& p) const { return std::hypot(p.x - at.x, p.y - at.y); }

    int nview;
    point2 at;
    double reach;

  private:
    const keptpoint kept;
};

point2 projected(int nview, double x, double y, double z) {
    const float scale = viewscale(nview);
    return project(viewcamera, {float(scale * x), float(scale * y), float(scale * z)}).at;
}

}  // namespace

// --- elements -----------------------------------------------------------------------------------

// The corners as drawn; false where none lies in the view's depth slab.
static bool placecorners(int e, int elnn, int nview, drawncorner* corner) {
    bool inslab = false;
    for (int k = 0; k < elnn; ++k) {
        const placedpoint p = project(viewcamera, drawnplace(int(elems(e, k + 1)), nview));
        corner[k] = {p.at, p.turned.w, 0};
        inslab = inslab || isinslab(viewcamera, p.turned.w);
    }
    return inslab;
}

static bool isbeside(const pointer& p, const drawncorner* corner, int elnn) {
    const auto beyond = [&](auto isbeyond) { return std::all_of(corner, corner + elnn, isbeyond); };
    return beyond([&](const drawncorner& c) { return c.at.x < p.at.x - p.reach; }) ||
           beyond([&](const drawncorner& c) { return c.at.x > p.at.x + p.reach; }) ||
           beyond([&](const drawncorner& c) { return c.at.y < p.at.y - p.reach; }) ||
           beyond([&](const drawncorner& c) { return c.at.y > p.at.y + p.reach; });
}

static meeting meetingof(const pointer& p, int e) {
    meeting m;
    drawncorner corner[4];
    const int elnn = nodesoftype(elems(e, 0));
    if (!placecorners(e, elnn, p.nview, corner) || isbeside(p, corner, elnn)) return m;
    double way = elnn == 1 ? p.distance(corner[0].at) : HUGE_VAL, along = 0;
    for (int k = 0; k < elnn && elnn > 1; ++k)
        way = std::min(way, distanceto(corner[k].at, corner[(k + 1) % elnn].at, p.at, along));
    facehit face;
    const bool inside = elnn > 2 && hitface(corner, elnn, p.at, face);
    if (!inside && !(way <= p.reach)) return m;
    m.rank = elnn <= 2 ? meeting::online : inside ? meeting::inface : meeting::onedge;
    m.way = p.rounded(inside ? -face.depth : way);
    m.item = e;
    setcentre(e, p.nview);
    projectpoint(p.nview);
    m.place = p.distance({scrx, scry});
    return m;
}

static bool isonshow(int e, int nview) {
    return nodesoftype(elems(e, 0)) != 0 && isshown(e, nview);
}

int elementunder(int nview) {
    if (!pickshapes) return 0;
    const pointer p(nview);
    meeting best;
    for (int e = 1; e <= nelems(); ++e)
        if (isonshow(e, nview)) best = std::min(best, meetingof(p, e));
    return best.item;
}

static const itemrows& keptrows(const pointer& p) {
    static itemrows rows;
    static std::vector<double> state;
    const int nview = p.nview;
    std::vector<double> now = pickstate(nview);
    if (now == state) return rows;
    state.clear();
    rows.build(nelems(), [&](int e, rowspan& s) {
        if (!isonshow(e, nview)) return false;
        drawncorner corner[4];
        const int elnn = nodesoftype(elems(e, 0));
        placecorners(e, elnn, nview, corner);
        s = {corner[0].at.y, corner[0].at.y};
        for (int k = 1; k < elnn; ++k)
            s = {std::min(s.low, corner[k].at.y), std::max(s.high, corner[k].at.y)};
        s = {s.low - p.reach, s.high + p.reach};
        return true;
    });
    state = std::move(now);
    return rows;
}

int elementunderkept(int nview) {
    if (!pickshapes) return 0;
    const pointer p(nview);
    meeting best;
    keptrows(p).at(p.at.y, [&](int e) { best = std::min(best, meetingof(p, e)); });
    return best.item;
}

// --- graphic elements and patches ---------------------------------------------------------------

static double waytographic(const pointer& p, int g) {
    double least = HUGE_VAL, along = 0;
    point2 before{};
    bool first = true;
    for (const auto& place : shapeofgraphic(g)) {
        const point2 here = projected(p.nview, place[0], place[1], place[2]);
        least = std::min(least, distanceto(first ? here : before, here, p.at, along));
        before = here;
        first = false;
    }
    return least;
}

static meeting meetingat(const pointer& p, int item, double way, double place) {
    meeting m;
    if (!(way <= p.reach)) return m;
    m.rank = meeting::online;
    m.way = p.rounded(way);
    m.place = place;
    m.item = item;
    return m;
}

int graphicunder(int nview) {
    if (!pickshapes || !shapeofgraphic || !mnudrawlist(graphicsdrawn).checked) return 0;
    const pointer p(nview);
    meeting best;
    for (int g = 1; g <= ngraphics(); ++g) {
        double place = HUGE_VAL;
        for (int j = 1; j <= pointsofgraphic(int(graphics(g, 0, 0))); ++j)
            place = std::min(place, p.distance(projected(nview, graphics(g, j, 1),
                                                         graphics(g, j, 2), graphics(g, j, 3))));
        if (graphics(g, 0, 0) != 0)
            best = std::min(best, meetingat(p, g, waytographic(p, g), place));
    }
    return best.item;
}

int patchunder(int nview) {
    if (!pickshapes || !shapeofgraphic) return 0;
    const pointer p(nview);
    meeting best;
    for (int i = 1; i <= patches(0, 0, 0); ++i) {
        double way = HUGE_VAL, centre[3];
        for (int j = 1; j <= patches(i, 0, 0); ++j)
            for (int k = 1; k <= patches(i, j, 0); ++k)
                if (const int g = patches(i, j, k); g >= 1 && g <= ngraphics())
                    way = std::min(way, waytographic(p, g));
        if (!findpatchcentre(i, centre)) continue;
        const point2 place = projected(nview, centre[0], centre[1], centre[2]);
        best = std::min(best, meetingat(p, i, way, p.distance(place)));
    }
    return best.item;
}
