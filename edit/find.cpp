// SPDX-License-Identifier: GPL-3.0-or-later
// Nearest items. State: the places of the items last asked for by the moving pointer.
#include "edit/find.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/outcome.h"
#include "edit/pickplaces.h"
#include "edit/pickshape.h"
#include "edit/placegrid.h"
#include "view/drawelems.h"
#include "view/moddraw.h"
#include "view/scaleview.h"

namespace {

// The click, kept while the registers serve the search.
class search {
  public:
    explicit search(int v) : nview(v), click{curx, cury, curz}, u(persu), p(persv) {
        prepareview(nview);
    }
    // Compares the point in curx, cury, curz, which belongs to this item.
    void offer(int item, int part) {
        const float at[] = {curx, cury, curz};
        projectpoint(nview);
        const double du = persu - u, dp = persv - p;
        const double plane = std::sqrt(du * du + dp * dp);
        if (!(plane <= best.plane)) return;  // nor what is no number
        double sum = 0;
        for (int k = 0; k < 3; ++k) sum += (double(at[k]) - click[k]) * (double(at[k]) - click[k]);
        const double space = std::sqrt(sum);
        if (plane == best.plane && best.item != 0 && space >= best.space) return;
        best = {item, part, plane, space};
    }
    nearest result() const { return best; }
    // Distance of the click from the line between two points on the view's plane.
    double distanceto(const point2& a, const point2& b) const {
        const double dx = b.x - a.x, dy = b.y - a.y, square = dx * dx + dy * dy;
        double t = square == 0 ? 0 : ((u - a.x) * dx + (p - a.y) * dy) / square;
        t = std::clamp(t, 0.0, 1.0);
        return std::hypot(a.x + t * dx - u, a.y + t * dy - p);
    }

  private:
    const keptpoint kept;
    int nview;
    double click[3];
    double u, p;
    nearest best;
};

}  // namespace

// --- nodes and elements -------------------------------------------------------------------------

namespace {

// Items of one kind, 1..count, those that can be picked in a view, and their places.
struct kindofitem {
    int kind, count;
    std::function<bool(int i)> wanted;
    std::function<void(int i)> setplace;  // scaled, into the point in work
};

kindofitem nodekind(int nview) {
    const auto setplace = [nview](int n) {
        const auto at = nodes.row(0, n);
        setpoint(nview, at[0], at[1], at[2]);
    };
    return {0, mnudrawlist(nodesdrawn).checked ? nnodes() : 0, [](int) { return true; }, setplace};
}

std::vector<bool> loadedmarks() {
    std::vector<bool> marks(std::size_t(nnodes()) + 1, false);
    for (int i = 1; i <= loadnode(curlc, 0); ++i)
        if (const int n = loadnode(curlc, i); n >= 1 && n <= nnodes()) marks[std::size_t(n)] = true;
    return marks;
}

kindofitem loadedkind(int nview) {
    kindofitem kind = nodekind(nview);
    kind.kind = 1;
    // Marked when the first item is asked for, which kept places need not do.
    kind.wanted = [marks = std::vector<bool>()](int n) mutable {
        if (marks.empty()) marks = loadedmarks();
        return bool(marks[std::size_t(n)]);
    };
    return kind;
}

kindofitem elementkind(int nview) {
    return {2, nelems(), [nview](int e) { return elems(e, 0) != 0 && isshown(e, nview); },
            [nview](int e) { setcentre(e, nview); }};
}

nearest pickfromall(int nview, const kindofitem& kind) {
    search s(nview);
    for (int i = 1; i <= kind.count; ++i) {
        if (!kind.wanted(i)) continue;
        kind.setplace(i);
        s.offer(i, 0);
    }
    return s.result();
}

// The places last asked for, and what they depend on.
placegrid keptplaces;
std::vector<double> keptstate;

nearest pickfromkept(int nview, const kindofitem& item) {
    const point2 pointer{persu, persv};
    search s(nview);
    std::vector<double> state = pickstate(nview);
    state.push_back(item.kind);
    if (state != keptstate) {
        keptstate.clear();
        keptplaces.build(item.count, [&](int i, point2& at) {
            if (!item.wanted(i)) return false;
            item.setplace(i);
            projectpoint(nview);
            at = {persu, persv};
            return true;
        });
        keptstate = std::move(state);
    }
    keptplaces.around(pointer, [&](int i) {
        item.setplace(i);
        s.offer(i, 0);
        return s.result().plane;
    });
    return s.result();
}

}  // namespace

// What a player has been given, or what the search finds.
static nearest agreed(int count, const std::function<nearest()>& search) {
    nearest found;
    const pickhit hit = agreedhit(count, [&] {
        found = search();
        return pickhit{found.item, found.part};
    });
    found.item = hit.item;
    found.part = hit.part;
    return found;
}

nearest picknode(int nview) {
    return agreed(nnodes(), [&] { return pickfromall(nview, nodekind(nview)); });
}

nearest pickloadednode(int nview) {
    return agreed(nnodes(), [&] { return pickfromall(nview, loadedkind(nview)); });
}

// The one item that was found otherwise, with its distances.
static nearest oneitem(int nview, const kindofitem& kind, int i) {
    search s(nview);
    kind.setplace(i);
    s.offer(i, 0);
    return s.result();
}

nearest pickelement(int nview) {
    return agreed(nelems(), [&] {
        const int e = elementunder(nview);
        const kindofitem kind = elementkind(nview);
        return e != 0 ? oneitem(nview, kind, e) : pickfromall(nview, kind);
    });
}

nearest hovernode(int nview) {
    return pickfromkept(nview, nodekind(nview));
}

nearest hoverloadednode(int nview) {
    return pickfromkept(nview, loadedkind(nview));
}

nearest hoverelement(int nview) {
    const int e = elementunderkept(nview);
    return e != 0 ? oneitem(nview, elementkind(nview), e) : pickfromkept(nview, elementkind(nview));
}

// --- graphic elements and patches ---------------------------------------------------------------

// Distance of the click from the shape of a graphic element as drawn.
static double distancetoshape(const search& s, int g, int nview) {
    double least = 1e30;
    point2 before{};
    bool first = true;
    for (const auto& at : shapeofgraphic(g)) {
        setpoint(nview, at[0], at[1], at[2]);
        projectpoint(nview);
        const point2 here = {persu, persv};
        least = std::min(least, s.distanceto(first ? here : before, here));
        before = here;
        first = false;
    }
    return least;
}

// Elements often meet in a point: for a snap their shapes decide, at any distance.
static nearest nearestshape(const search& s, int nview) {
    nearest best = s.result();
    if (best.item == 0 || !shapeofgraphic) return best;
    const auto place = graphics.row(best.item, best.part);
    double least = distancetoshape(s, best.item, nview);
    for (int g = best.item + 1; g <= ngraphics(); ++g)
        for (int j = 1; j <= pointsofgraphic(int(graphics(g, 0, 0))); ++j) {
            const auto other = graphics.row(g, j);
            if (other[1] != place[1] || other[2] != place[2] || other[3] != place[3]) continue;
            if (const double way = distancetoshape(s, g, nview); way < least) {
                least = way;
                best.item = g;
                best.part = j;
            }
        }
    return best;
}

// Offers the defining points of one graphic element.
static void offergraphic(search& s, int g, int nview) {
    for (int j = 1; j <= pointsofgraphic(int(graphics(g, 0, 0))); ++j) {
        setpoint(nview, graphics(g, j, 1), graphics(g, j, 2), graphics(g, j, 3));
        s.offer(g, j);
    }
}

static void offergraphics(search& s, int nview) {
    for (int g = 1; g <= ngraphics() && mnudrawlist(graphicsdrawn).checked; ++g)
        offergraphic(s, g, nview);
}

static nearest searchgraphic(int nview) {
    const int g = graphicunder(nview);
    search s(nview);
    if (g != 0)
        offergraphic(s, g, nview);
    else
        offergraphics(s, nview);
    return s.result();
}

nearest pickgraphic(int nview) {
    return agreed(ngraphics(), [&] { return searchgraphic(nview); });
}

static nearest searchpatch(int nview) {
    const int under = patchunder(nview);
    search s(nview);
    double centre[3];
    for (int p = 1; p <= patches(0, 0, 0); ++p) {
        if ((under != 0 && p != under) || !findpatchcentre(p, centre)) continue;
        setpoint(nview, centre[0], centre[1], centre[2]);
        s.offer(p, 0);
    }
    return s.result();
}

nearest pickpatch(int nview) {
    return agreed(patches(0, 0, 0), [&] { return searchpatch(nview); });
}

nearest picksnapgraphic(int nview) {
    return agreed(ngraphics(), [&] {
        search s(nview);
        offergraphics(s, nview);
        return nearestshape(s, nview);
    });
}
