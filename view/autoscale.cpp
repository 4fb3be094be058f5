// SPDX-License-Identifier: GPL-3.0-or-later
// The box around what a view shows, and the scale and view point that bring it into the view.
// State: what the last fit of each view came to.
#include "view/autoscale.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <vector>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/session.h"
#include "core/views.h"
#include "view/camera.h"
#include "view/drawelems.h"
#include "view/moddraw.h"
#include "view/scaleview.h"
#include "view/surface.h"

// The box around the points of a view, model units.
namespace {
struct extent {
    double low[3] = {1e30, 1e30, 1e30}, high[3] = {-1e30, -1e30, -1e30};
    bool any = false;
    void include(double x, double y, double z) {
        const double at[3] = {x, y, z};
        for (int k = 0; k < 3; ++k) {
            low[k] = std::min(low[k], at[k]);
            high[k] = std::max(high[k], at[k]);
        }
        any = true;
    }
    double size(int k) const { return high[k] - low[k]; }
    float middle(int k) const { return float((low[k] + high[k]) / 2); }
};
}  // namespace

// What a fit shows of a view, point by point, in model units.

// Each node once, however many elements meet there.
template <typename Visit>
static void eachelementpoint(int nview, Visit visit) {
    std::vector<bool> used(std::size_t(nnodes()) + 1, false);
    for (int e = 1; e <= nelems(); ++e) {
        if (elems(e, 0) == 0) continue;
        if (viewgroup(nview) != 0 && egroup(e) != viewgroup(nview)) continue;
        const int elnn = nodesoftype(elems(e, 0));
        for (int k = 1; k <= elnn; ++k)
            if (const float n = elems(e, k); n >= 1 && n <= float(nnodes()))
                used[std::size_t(n)] = true;
    }
    for (int n = 1; n <= nnodes(); ++n) {
        if (!used[std::size_t(n)]) continue;
        const auto at = nodes.row(0, n);
        visit(at[0], at[1], at[2]);
    }
}

template <typename Visit>
static void eachgraphicpoint(const array3<float>& list, Visit visit) {
    for (int g = 1; g <= int(list(0, 0, 0)); ++g) {
        const int kind = int(list(g, 0, 0));
        if (kind == kindfree) continue;
        // A line has two points; its third row is 0, 0, 0 and no place on the drawing.
        const int points = kind == kindcircle || kind == kindcurve ? 3 : 2;
        for (int j = 1; j <= points; ++j) visit(list(g, j, 1), list(g, j, 2), list(g, j, 3));
    }
}

// A copy waiting to be pasted is no part of the picture; a mesh on show is.
template <typename Visit>
static void eachbufferpoint(Visit visit) {
    if (!previewbuffers) return;
    for (int i = 1; i <= int(tmpnodes(0, 0)); ++i)
        visit(tmpnodes(i, 1), tmpnodes(i, 2), tmpnodes(i, 3));
    eachgraphicpoint(graphics2, visit);
}

template <typename Visit>
static void eachpoint(int nview, Visit given) {
    bool any = false;
    const auto visit = [&](double x, double y, double z) {
        any = true;
        given(x, y, z);
    };
    if (mnudrawlist(elementsdrawn).checked || mnudrawlist(nodesdrawn).checked)
        eachelementpoint(nview, visit);
    if (mnudrawlist(graphicsdrawn).checked) eachgraphicpoint(graphics, visit);
    eachbufferpoint(visit);
    // A model of nodes alone, at its very start, is fitted to them.
    if (any || !mnudrawlist(nodesdrawn).checked) return;
    for (int n = 1; n <= nnodes(); ++n) given(nodes(0, n, 0), nodes(0, n, 1), nodes(0, n, 2));
}

static extent boxof(int nview) {
    extent box;
    eachpoint(nview, [&](double x, double y, double z) { box.include(x, y, z); });
    return box;
}

using points = std::vector<std::array<float, 3>>;

static points pointsof(int nview) {
    points all;
    eachpoint(nview, [&](double x, double y, double z) {
        all.push_back({float(x), float(y), float(z)});
    });
    return all;
}

static extent boxof(const points& all) {
    extent box;
    for (const auto& at : all) box.include(at[0], at[1], at[2]);
    return box;
}

static void autoscale(int nview, const extent& box) {
    const double smaller = vieww < viewh ? vieww / scalex : viewh / scaley;
    viewptx(nview) = box.middle(0);
    viewpty(nview) = box.middle(1);
    viewptz(nview) = box.middle(2);
    const double ex = box.size(0), ey = box.size(1), ez = box.size(2);
    const double e = ex > ey && ex > ez ? ex : ey > ez ? ey : ez;
    const double most = std::numeric_limits<float>::max();
    viewscale(nview) = e == 0 ? 1.0f : float(std::min((smaller / 2 - unitveclen) * 2 / e, most));
}

void autoscale(int nview) {
    autoscale(nview, boxof(nview));
}

void fitnodes(int nview, const std::vector<int>& numbers) {
    const double around = 2, least = 0.05;  // times their extent; of that of the model
    extent box, model;
    const auto include = [](extent& into, int n) {
        const auto at = nodes.row(0, n);
        if (std::isfinite(at[0]) && std::isfinite(at[1]) && std::isfinite(at[2]))
            into.include(at[0], at[1], at[2]);
    };
    const auto widest = [](const extent& of) {
        return std::max({of.size(0), of.size(1), of.size(2)});
    };
    for (const int n : numbers)
        if (n >= 1 && n <= nnodes()) include(box, n);
    if (!box.any) return;
    for (int n = 1; n <= nnodes(); ++n) include(model, n);
    const double smaller = vieww < viewh ? vieww / scalex : viewh / scaley;
    const double room = std::max(around * widest(box), least * widest(model));
    viewptx(nview) = box.middle(0);
    viewpty(nview) = box.middle(1);
    viewptz(nview) = box.middle(2);
    if (room > 0) viewscale(nview) = float((smaller / 2 - unitveclen) * 2 / room);
}

// --- fit ----------------------------------------------------------------------------------------

// Keeps the box around the strokes that it is given, centimetres from its middle as seen.
namespace {
class boundsurface : public surface {
  public:
    explicit boundsurface(int nview) : device(target(nview)) { measuring = this; }
    ~boundsurface() override { measuring = nullptr; }
    boundsurface(const boundsurface&) = delete;
    boundsurface& operator=(const boundsurface&) = delete;
    void line(double x1, double y1, double x2, double y2, colour) override {
        include(x1, y1);
        include(x2, y2);
        moveto(x2, y2);
    }
    void clear(colour) override {}
    void point(double, double, colour) override {}
    void box(double, double, double, double, colour) override {}
    void circle(double, double, double, colour) override {}
    void polygon(const point2*, int, colour) override {}
    void text(std::string_view) override {}
    double textwidth(std::string_view) override { return 0; }
    double textheight() override { return 0; }
    double width() const override { return vieww; }
    double height() const override { return viewh; }
    double pixpercm() const override { return device != nullptr ? device->pixpercm() : 1; }
    extent strokes;

  private:
    void include(double x, double y) {
        strokes.include((x - vieww / 2) / scalex, (viewh / 2 - y) / scaley, 0);
    }
    surface* const device;
};
}  // namespace

// The model as it is projected with a unit vector on each side, and what stands out beyond that.
static extent outline(int nview, const extent& model) {
    const double edge = 0.1;  // centimetres, half of a wide stroke and then some
    boundsurface symbols(nview);
    drawsymbols(nview);
    extent all = model;
    for (int k = 0; k < 2; ++k) {
        all.low[k] = std::min(model.low[k] - unitveclen, symbols.strokes.low[k] - edge);
        all.high[k] = std::max(model.high[k] + unitveclen, symbols.strokes.high[k] + edge);
    }
    return all;
}

// Scale and view point so that the projected model fills the view, with its symbols, whose size is
// that of the screen. With perspective both change the picture's shape a little: a few rounds
// settle it.
static void frame(int nview, const points& all) {
    const double roomu = vieww / scalex, roomv = viewh / scaley;
    for (int round = 0; round < 3; ++round) {
        const double scale = viewscale(nview);
        extent model;
        const camera c = cameraof(nview);
        for (const auto& [x, y, z] : all) {
            const placedpoint p =
                project(c, {float(scale * x), float(scale * y), float(scale * z)});
            model.include(p.u, p.v, 0);
        }
        const extent whole = outline(nview, model);
        const double du = model.size(0), dv = model.size(1);
        // Not finite for a single point.
        const double factor =
            std::min((roomu - (whole.size(0) - du)) / du, (roomv - (whole.size(1) - dv)) / dv);
        if (!std::isfinite(factor) || !(factor > 0) || !(scale > 0)) return;
        // Where the middle of the whole comes to lie, once the model has its new scale.
        const auto middle = [&](int k) {
            return (model.middle(k) + (whole.middle(k) - model.middle(k)) / factor) / scale;
        };
        const double u = middle(0), v = middle(1);
        viewptx(nview) = float(viewptx(nview) - c.sinh * u - c.coshsinv * v);
        viewpty(nview) = float(viewpty(nview) + c.cosh * u - c.sinhsinv * v);
        viewptz(nview) = float(viewptz(nview) + c.cosv * v);
        viewscale(nview) = float(scale * factor);
    }
}

// An empty view: a square about the origin, so that the first points are of a size that one works
// with.
static void fitsquare(int nview) {
    const double side = 10;  // model units
    const double smaller = vieww < viewh ? vieww / scalex : viewh / scaley;
    const double room = smaller - 2 * unitveclen;
    viewptx(nview) = viewpty(nview) = viewptz(nview) = 0;
    viewscale(nview) = room > 0 ? float(room / side) : 1.0f;
}

static void fit(int nview, const points& all, bool whole) {
    using place = std::array<float, 6>;
    static std::array<place, nviews + 1> framed;  // what frame came to, and for which angles
    const auto placeof = [nview] {
        return place{viewptx(nview),   viewpty(nview), viewptz(nview),
                     viewscale(nview), viewhor(nview), viewvert(nview)};
    };
    const keptpoint kept;
    const place before = placeof();
    autoscale(nview, boxof(all));
    if (all.empty()) return fitsquare(nview);
    place& last = framed[std::size_t(nview)];
    if (!whole && before != placeof() && before != last) return;
    frame(nview, all);
    last = placeof();
}

void fit(int nview) {
    fit(nview, pointsof(nview), false);
}

// Views of the same group share their points: one pass over the model does for them.
void fitall(bool whole) {
    std::map<int, points> ofgroups;
    for (int v = 1; v <= nviews; ++v) {
        const auto [at, isnew] = ofgroups.try_emplace(int(viewgroup(v)));
        if (isnew) at->second = pointsof(v);
        fit(v, at->second, whole);
    }
}
