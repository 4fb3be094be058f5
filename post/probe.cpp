// SPDX-License-Identifier: GPL-3.0-or-later
// Value under the pointer, marks of highest and lowest value. State: the elements of the picture
// last asked about, by rows.
#include "post/probe.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "core/catalogue.h"
#include "core/colours.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "post/contour.h"
#include "post/legend.h"
#include "view/drawelems.h"
#include "view/moddraw.h"
#include "view/scaleview.h"

point2 cornerplace(int e, int corner, int nview) {
    setnode(int(elems(e, corner)), nview);
    projectpoint(nview);
    return {scrx, scry};
}

// Contours lie in view 1, the stress of line elements in all.
static bool isplottedin(int nview) {
    return plotready() && (iselementstress() || (iscontour() && nview == 1));
}

// --- under the pointer --------------------------------------------------------------------------

namespace {
struct hit {
    int e = 0;
    double value = 0, depth = 0;
};
struct vertex {
    point2 at;
    double depth, value;
};
}  // namespace

static double turn(const point2& a, const point2& b, const point2& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

// Value and depth at p by the shares of the three corners, when p lies in the triangle.
static bool interpolate(const vertex& a, const vertex& b, const vertex& c, const point2& p,
                        hit& found) {
    const double area = turn(a.at, b.at, c.at);
    if (area == 0) return false;
    const double sa = turn(p, b.at, c.at) / area, sb = turn(a.at, p, c.at) / area;
    const double sc = 1 - sa - sb;
    if (sa < 0 || sb < 0 || sc < 0) return false;
    found.value = sa * a.value + sb * b.value + sc * c.value;
    found.depth = sa * a.depth + sb * b.depth + sc * c.depth;
    return true;
}

static vertex vertexof(int e, int corner, int nview) {
    const point2 at = cornerplace(e, corner, nview);
    return {at, rotw, plotvalue(e, corner)};
}

static bool hitface(int e, int elnn, int nview, const point2& p, hit& found) {
    vertex v[5];
    vertex& middle = v[4] = {{0, 0}, 0, 0};
    for (int c = 0; c < elnn; ++c) {
        v[c] = vertexof(e, c + 1, nview);
        middle.at.x += v[c].at.x / elnn;
        middle.at.y += v[c].at.y / elnn;
        middle.depth += v[c].depth / elnn;
        middle.value += v[c].value / elnn;
    }
    if (elnn == 3) return interpolate(v[0], v[1], v[2], p, found);
    for (int c = 0; c < 4; ++c)
        if (interpolate(v[c], v[(c + 1) % 4], middle, p, found)) return true;
    return false;
}

static const double reach = 0.15;  // of the pointer to a line element, centimetres

static bool hitline(int e, int nview, const point2& p, hit& found) {
    const vertex a = vertexof(e, 1, nview), b = vertexof(e, 2, nview);
    const double x = b.at.x - a.at.x, y = b.at.y - a.at.y, square = x * x + y * y;
    if (square == 0) return false;
    const double t = ((p.x - a.at.x) * x + (p.y - a.at.y) * y) / square;
    if (t < 0 || t > 1) return false;
    if (std::hypot(a.at.x + t * x - p.x, a.at.y + t * y - p.y) > reach) return false;
    found.value = a.value + t * (b.value - a.value);
    found.depth = a.depth + t * (b.depth - a.depth);
    return true;
}

namespace {
struct span {
    double low, high;
};

// The plotted elements of a picture by the rows of the view that they reach into, each row in
// rising order: a look under the pointer needs those of one row.
class elementrows {
  public:
    // Builds them anew where the picture has changed since.
    void update(int nview);
    // Calls look(e) for the elements of the row at y.
    template <typename Look>
    void at(double y, Look look) const {
        if (items.empty() || !(y >= all.low && y <= all.high)) return;
        const std::size_t row = rowof(y);
        for (int i = first[row]; i < first[row + 1]; ++i) look(items[std::size_t(i)]);
    }

  private:
    std::size_t rowof(double y) const {
        return std::size_t(std::clamp((y - all.low) / height, 0.0, rows - 1.0));
    }
    void setrows(const std::vector<span>& spans);

    long picture = -1;
    int view = 0, count = 0;  // of the model's elements
    span all{0, 0};
    double height = 1;  // of a row, centimetres
    int rows = 1;
    std::vector<int> first;  // of each row in items; one more at the end
    std::vector<int> items;
};
}  // namespace

// Where an element reaches on the surface, from top to bottom.
static span spanof(int e, int nview) {
    const int elnn = nodesoftype(elems(e, 0));
    span s{1e300, -1e300};
    for (int c = 1; c <= elnn; ++c) {
        const double y = cornerplace(e, c, nview).y;
        s = {std::min(s.low, y), std::max(s.high, y)};
    }
    return elnn == 2 ? span{s.low - reach, s.high + reach} : s;
}

// As many rows as keep both the rows and the entries of tall elements few.
void elementrows::setrows(const std::vector<span>& spans) {
    const double entries = 4;  // an element, on the average
    const double n = double(std::max<std::size_t>(spans.size(), 1));
    double sum = 0;
    all = {1e300, -1e300};
    for (const span& s : spans) {
        all = {std::min(all.low, s.low), std::max(all.high, s.high)};
        sum += s.high - s.low;
    }
    height = std::max((all.high - all.low) / std::sqrt(n), sum / (entries * n));
    if (!(height > 0)) height = 1;
    rows = spans.empty() ? 1 : int((all.high - all.low) / height) + 1;
}

void elementrows::update(int nview) {
    if (picture == picturesdrawn && view == nview && count == nelems()) return;
    picture = picturesdrawn;
    view = nview;
    count = nelems();
    std::vector<span> spans;
    std::vector<int> numbers;
    for (int e = 1; e <= nelems(); ++e) {
        if (!isplotted(e) || !isshown(e, nview)) continue;
        const span s = spanof(e, nview);
        if (!std::isfinite(s.low) || !std::isfinite(s.high)) continue;
        spans.push_back(s);
        numbers.push_back(e);
    }
    setrows(spans);
    const auto eachrow = [&](const span& s, auto work) {
        for (std::size_t row = rowof(s.low); row <= rowof(s.high); ++row) work(row);
    };
    first.assign(std::size_t(rows) + 1, 0);
    for (const span& s : spans) eachrow(s, [&](std::size_t row) { ++first[row + 1]; });
    for (std::size_t row = 1; row < first.size(); ++row) first[row] += first[row - 1];
    items.resize(std::size_t(first.back()));
    std::vector<int> next(first.begin(), first.end() - 1);
    for (std::size_t i = 0; i < spans.size(); ++i)
        eachrow(spans[i], [&](std::size_t row) { items[std::size_t(next[row]++)] = numbers[i]; });
}

static hit findhit(int nview, const point2& p) {
    static elementrows kept;
    kept.update(nview);
    hit best;
    kept.at(p.y, [&](int e) {
        const int elnn = nodesoftype(elems(e, 0));
        hit found;
        if (elnn == 2 ? !hitline(e, nview, p, found)
                      : elnn < 3 || !hitface(e, elnn, nview, p, found))
            return;
        found.e = e;
        if (best.e == 0 || found.depth > best.depth) best = found;
    });
    return best;
}

std::string valueunder(int nview, double x, double y) {
    if (!valueatpointer || !isplottedin(nview)) return {};
    const keptpoint kept;
    prepareview(nview);
    undeformed = isdeformed() ? 0 : 1;
    const hit found = findhit(nview, {x, y});
    undeformed = 1;
    if (found.e == 0) return {};
    return plotlabel() + " " + plotnumber(found.value) + " in element " + numbertext(found.e);
}

void tellvalue(int nview, double x, double y) {
    static bool told;
    const std::string text = valueunder(nview, x, y);
    if (!text.empty())
        door().showstatus(text);
    else if (told)
        door().showstatus(statusline());
    told = !text.empty();
}

// --- highest and lowest -------------------------------------------------------------------------

static void markplace(surface& s, int nview, const cornervalue& p, const char* word) {
    const double ring = 0.12, gap = 0.2, rim = 0.05;  // centimetres
    if (p.e == 0 || !isshown(p.e, nview)) return;
    const point2 at = cornerplace(p.e, p.corner, nview);
    s.fillsolid = true;
    s.fillcolor = backcolor;  // the ring stands out from any band
    s.drawwidth = 2;
    s.circle(at.x, at.y, ring, elemlabelcolor);
    s.drawwidth = 1;
    const std::string text = std::string(word) + " " + plotnumber(p.value);
    s.font = elemlabelfont;
    const double left = at.x + gap, top = at.y - s.textheight() / 2;
    const double right = left + s.textwidth(text) + 2 * rim, bottom = top + s.textheight();
    const point2 plate[] = {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
    s.polygon(plate, 4, elemlabelcolor);
    s.fillsolid = false;
    s.textcolor = elemlabelcolor;
    s.moveto(left + rim, top);
    s.text(text);
}

void drawextremes(int nview) {
    surface* const s = target(nview);
    if (s == nullptr || !markextremes || !isplottedin(nview)) return;
    prepareview(nview);
    undeformed = isdeformed() ? 0 : 1;
    markplace(*s, nview, highest, "Max");
    if (lowest.value != highest.value) markplace(*s, nview, lowest, "Min");
    undeformed = 1;
}
