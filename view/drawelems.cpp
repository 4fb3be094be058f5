// SPDX-License-Identifier: GPL-3.0-or-later
// Drawing of nodes and elements.
#include "view/drawelems.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/textfile.h"
#include "view/facesides.h"
#include "view/labels.h"
#include "view/pen.h"
#include "view/scaleview.h"
#include "view/solids.h"
#include "view/symbols.h"
#include "view/symbolstyle.h"
#include "view/thinning.h"

double segx1, segy1, segx2, segy2;
int nodecurrent, nodenext;

static const double smallnode = 0.1;  // centimetres
double nodesize = smallnode;

// What stands so close that it would cover what lies under it, most of all a contour plot.
static const double dotspacing = 0.2;       // centimetres between dots, supports and outlines
static const double contourspacing = 0.35;  // over a contour plot
static const double contourdot = 0.03;      // radius of a dot there

bool sidebyside;

bool isplotview(int nview) {
    return nview == 1 || (sidebyside && nview == 2);
}

bool isovercontour(int nview) {
    return isplotview(nview) && menupostItem(contourplot).checked;
}

double leastspacing(int nview) {
    return isovercontour(nview) ? contourspacing : dotspacing;
}

void drawsegment(int nview) {
    if (surface* const s = target(nview)) s->line(segx1, segy1, segx2, segy2, drawcolor);
}

void plotpoint(int nview, double x, double y, colour c) {
    if (surface* const s = target(nview)) s->point(x, y, c);
}

void plotto(int nview, double x, double y, colour c) {
    if (surface* const s = target(nview)) s->lineto(x, y, c);
}

void printat(int nview, double x, double y, const std::string& text) {
    surface* const s = target(nview);
    if (s == nullptr) return;
    s->moveto(x, y);
    s->text(text);
}

static void labelnode(surface& s) {
    const int kind = checkedof(Nodelabeltype);
    if (kind <= nonodelabels) return;
    s.font = nodelabelfont;
    s.textcolor = drawcolor == backcolor ? backcolor : nodelabelcolor;
    const std::string label = kind == nodenumbers ? numbertext(nodecurrent) : nodename(nodecurrent);
    point2 corner{scrx, scry};
    if (symbolsdrawn.apart && !placelabel(s, label, corner, corner)) return;
    s.moveto(corner.x, corner.y);
    s.text(label);
}

void drawnode(int nview) {
    surface* const s = target(nview);
    if (s == nullptr) return;
    nodesize = smallnode;
    s->fillcolor = drawcolor;
    s->circle(scrx, scry, nodesize / 4 * 3, drawcolor);
    // A selected one has its label already, in the place that was found for it.
    if (nview == 1 && !(symbolsdrawn.apart && drawcolor == selcolor)) labelnode(*s);
}

// A dot of the model's own nodes.
static void drawdot(surface& s, int nview) {
    nodesize = smallnode;
    s.fillcolor = drawcolor;
    s.circle(scrx, scry, isovercontour(nview) ? contourdot : nodesize / 4 * 3, drawcolor);
}

void drawallnodes(int nview) {
    surface* const s = target(nview);
    if (s == nullptr) return;
    const keptpen pen(s);
    prepareview(nview);
    s->drawwidth = 1;
    s->fillsolid = true;
    thinning dots(vieww, viewh, leastspacing(nview));
    const bool labelled = nview == 1 && checkedof(Nodelabeltype) > nonodelabels;
    for (int n = 1; n <= nnodes(); ++n) {
        const placedpoint p = project(viewcamera, drawnplace(n, nview));
        if (!isinslab(viewcamera, p.turned.w)) continue;
        const bool apart = dots.accepts(p.at.x, p.at.y);
        if (!apart && !labelled) continue;
        nodecurrent = n;
        scrx = p.at.x;
        scry = p.at.y;
        if (apart) drawdot(*s, nview);
        if (labelled) labelnode(*s);
    }
}

bool isshown(int e, int nview) {
    return viewtype(nview) == 0 || viewselnum(nview) == 0 || elemvis(nview, e);
}

colour colourofelement(int e) {
    if (elemlabeltype(elementcolours).checked) return groupcolor(egroup(e));
    return nodesoftype(elems(e, 0)) == 2 ? linecolor : meshcolor;
}

void setcentre(int e, int nview) {
    const int elnn = nodesoftype(elems(e, 0));
    double x = 0, y = 0, z = 0;
    for (int k = 1; k <= elnn; ++k) {
        setnode(int(elems(e, k)), nview);
        x += curx;
        y += cury;
        z += curz;
    }
    curx = float(x / elnn);
    cury = float(y / elnn);
    curz = float(z / elnn);
}

// The part of a line that lies in the depth slab.
static void drawclipped(surface& s, const placedpoint& a, const placedpoint& b) {
    const camera& c = viewcamera;
    const double wa = a.turned.w, wb = b.turned.w;
    const bool ina = isinslab(c, wa), inb = isinslab(c, wb);
    point2 from = a.at, to = b.at;
    if (!ina || !inb) {
        const bool across = (wa - c.aw > c.half && wb - c.aw < -c.half) ||
                            (wb - c.aw > c.half && wa - c.aw < -c.half);
        if (!ina && !inb && !across) return;
        if (!ina) from = clipdepth(c, b.turned, a.turned);
        if (!inb) to = clipdepth(c, a.turned, b.turned);
        if (!ina && inb) std::swap(from, to);  // from the end that is seen
    }
    s.line(from.x, from.y, to.x, to.y, drawcolor);
}

static std::string labelof(int e) {
    switch (checkedof(elemlabeltype)) {
        case elementnumbers:
            return numbertext(e);
        case elementtypes:
            return eltypname(long(elems(e, 0)));
        case elementgroups:
            return shownname(groupname(egroup(e)));
        case elementnames:
            return shownname(elemname(e));
        default:
            return {};
    }
}

// On a filled element the label stands in the inverse of the filling. A middle grey is its own
// inverse, or nearly so: there black or white does.
static colour labelcolouron(colour fill) {
    const double leastcontrast = 160;  // distance of two colours that are told apart at a glance
    const colour inverse = invertcolor(fill);
    const double red = redof(inverse) - redof(fill), green = greenof(inverse) - greenof(fill),
                 blue = blueof(inverse) - blueof(fill);
    if (std::sqrt(red * red + green * green + blue * blue) >= leastcontrast) return inverse;
    const int middle = 3 * 128;
    return redof(fill) + greenof(fill) + blueof(fill) < middle ? rgb(255, 255, 255) : rgb(0, 0, 0);
}

// Faces of any colour may lie under a line element: its label brings the ground that it is made
// for. Labels beside the picture need none.
static void clearunder(surface& s, const std::string& label) {
    const double left = s.currentx, top = s.currenty;
    const double right = left + s.textwidth(label), bottom = top + s.textheight();
    if (right < 0 || bottom < 0 || left > s.width() || top > s.height()) return;
    const keptpen pen(&s);
    s.drawwidth = 1;
    s.fillsolid = true;
    s.fillcolor = backcolor;
    const point2 ground[] = {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
    s.polygon(ground, 4, backcolor);
    s.moveto(left, top);
}

void drawelementlabel(int e, int nview) {
    if (nview != 1 || undeformed != 1 || elemlabeltype(noelementlabels).checked) return;
    const std::string label = labelof(e);
    surface* const s = target(nview);
    if (label.empty() || s == nullptr) return;
    setcentre(e, nview);
    projectpoint(nview);
    if (!isinslab()) return;
    s->font = elemlabelfont;
    const colour c = s->fillsolid ? labelcolouron(s->fillcolor) : elemlabelcolor;
    s->textcolor = drawcolor == backcolor ? backcolor : c;
    const auto begins = [](char byte) { return (byte & 0xC0) != 0x80; };  // a character, in UTF-8
    const double length = double(std::ranges::count_if(label, begins));
    point2 corner{scrx - labelsize * (length / 2) / 50, scry - labelsize / 25.0};
    if (symbolsdrawn.apart &&
        (drawcolor == selcolor || !placelabel(*s, label, {scrx, scry}, corner)))
        return;
    s->moveto(corner.x, corner.y);
    const bool overfaces = isovercontour(nview) || mnudrawlist(hiddenline).checked;
    if (!s->fillsolid && overfaces) clearunder(*s, label);
    s->text(label);
}

bool iscrowded(int e, int nview) {
    const auto row = elems.row(e);
    const int elnn = nodesoftype(row[0]);
    const double least = leastspacing(nview);
    const auto placeof = [&](int k) {
        return project(viewcamera, drawnplace(int(row[std::size_t(k)]), nview)).at;
    };
    if (elnn < 2) return false;
    const point2 first = placeof(1);
    point2 before = first;
    for (int k = 2; k <= elnn + 1; ++k) {
        const point2 here = k <= elnn ? placeof(k) : first;
        if (std::hypot(here.x - before.x, here.y - before.y) < least) return true;
        before = here;
    }
    return false;
}

void drawelementnodes(int e, int nview) {
    surface* const s = target(nview);
    if (s == nullptr) return;
    const keptpen pen(s);
    if (drawcolor != backcolor) drawcolor = nodecolor;
    s->fillsolid = true;
    const bool crowded = iscrowded(e, nview);
    for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k) {
        nodecurrent = int(elems(e, k));
        setnode(nodecurrent, nview);
        projectpoint(nview);
        if (!isinslab()) continue;
        if (!crowded) drawdot(*s, nview);
        if (nview == 1) labelnode(*s);
    }
}

bool (*curvedmember)(int e, int nview) = nullptr;

namespace {

// What the faces of a large model share while all of them are drawn; the one that stands is used.
struct crowd {
    explicit crowd(int nview) : at(std::size_t(nnodes()) + 1) {
        for (int n = 1; n <= nnodes(); ++n) {
            const placedpoint p = project(viewcamera, drawnplace(n, nview));
            if (isinslab(viewcamera, p.turned.w))
                at[std::size_t(n)] = {float(p.at.x), float(p.at.y), true};
        }
        together = this;
    }
    ~crowd() { together = nullptr; }
    crowd(const crowd&) = delete;
    crowd& operator=(const crowd&) = delete;
    struct place {
        float x, y;  // centimetres
        bool inslab;
    };
    std::vector<place> at;  // of each node
    const facesides& sides = sidesofmodel();
    static inline const crowd* together = nullptr;
};

}  // namespace

// Of a line that several faces have the last one alone draws it; what the others drew would lie
// under it.
static bool isdrawnlater(int side, int nview) {
    const facesides& sides = crowd::together->sides;
    for (int other = sides.next(side); other != side; other = sides.next(other))
        if (other > side && isshown(facesides::elementof(other), nview)) return true;
    return false;
}

// False where a corner lies outside the slab, or is no node.
static bool drawshared(surface& s, int e, int elnn, int nview) {
    const auto row = elems.row(e);
    const std::vector<crowd::place>& at = crowd::together->at;
    std::array<crowd::place, 5> corner;
    for (std::size_t k = 0; k < std::size_t(elnn); ++k) {
        const float n = row[k + 1];
        if (!(n >= 1 && n < float(at.size())) || !at[std::size_t(n)].inslab) return false;
        corner[k] = at[std::size_t(n)];
    }
    corner[std::size_t(elnn)] = corner[0];
    for (std::size_t k = 0; k < std::size_t(elnn); ++k)
        if (!isdrawnlater(4 * e + int(k), nview))
            s.line(corner[k].x, corner[k].y, corner[k + 1].x, corner[k + 1].y, drawcolor);
    return true;
}

void drawelementoutline(int e, int nview) {
    surface* const s = target(nview);
    if (s == nullptr) return;
    const auto row = elems.row(e);
    const int elnn = nodesoftype(row[0]);
    if (elnn == 0) return;
    if (elnn == 2 && undeformed == 0 && curvedmember && curvedmember(e, nview)) return;
    if (elnn > 2 && crowd::together != nullptr && drawshared(*s, e, elnn, nview)) return;
    const auto cornerof = [&](int k) {
        return project(viewcamera, drawnplace(int(row[std::size_t(k)]), nview));
    };
    const placedpoint first = cornerof(1);
    if (elnn == 1 && isinslab(viewcamera, first.turned.w)) {
        s->point(first.at.x, first.at.y, drawcolor);
        drawsymbol(int(row[0]), nview, first.at.x, first.at.y);
    }
    placedpoint near = first;
    for (int k = 2; k <= elnn; ++k) {
        const placedpoint far = cornerof(k);
        drawclipped(*s, near, far);
        near = far;
    }
    if (elnn > 2) drawclipped(*s, near, first);
}

void drawlineelements(int nview) {
    surface* const s = target(nview);
    if (s == nullptr) return;
    const keptpen pen(s);
    prepareview(nview);
    s->drawwidth = 2;
    for (int e = 1; e <= nelems(); ++e) {
        if (nodesoftype(elems(e, 0)) != 2 || !isshown(e, nview)) continue;
        drawcolor = colourofelement(e);
        drawelementoutline(e, nview);
    }
}

void drawelement(int e, int nview) {
    surface* const s = target(nview);
    if (e == 0 || s == nullptr || !isshown(e, nview)) return;
    const int elnn = nodesoftype(elems(e, 0));
    if (elnn == 0) return;
    s->drawwidth = elnn == 2 ? 2 : 1;
    if (elnn == 2) s->fillcolor = meshcolor;
    if (!drawsolid(e, nview, nullptr)) drawelementoutline(e, nview);
    s->drawwidth = 1;
    drawelementlabel(e, nview);
    if (mnudrawlist(nodesdrawn).checked &&
        (mnudrawlist(hiddenline).checked || viewtype(nview) != 0))
        drawelementnodes(e, nview);
}

void drawallelements(int nview) {
    const keptpen pen;
    const surface* const s = target(nview);
    if (s == nullptr) return;
    prepareview(nview);
    std::optional<crowd> all;
    if (!s->smooth && !symbolsdrawn.solid) all.emplace(nview);
    // A shape keeps its one colour, unless groups are told apart by theirs.
    const bool own = undeformed == 1 || elemlabeltype(elementcolours).checked;
    for (int e = 1; e <= nelems(); ++e) {
        if (elems(e, 0) == 0) continue;
        if (own) drawcolor = colourofelement(e);
        drawelement(e, nview);
    }
}

void drawselectedelements(int nview) {
    surface* const s = target(nview);
    if (s == nullptr || elemsel(0) == 0) return;
    const keptpen pen(s);
    prepareview(nview);
    const colour before = drawcolor;
    for (int i = 1; i <= int(elemsel(0)); ++i) {
        const int e = int(elemsel(i));
        if (before == selcolor)
            s->fillcolor = selcolor;
        else if (before != backcolor && elemlabeltype(elementcolours).checked)
            drawcolor = invertcolor(groupcolor(egroup(e)));
        drawelement(e, nview);
        drawcolor = before;
    }
}

void drawselectednodes(int nview) {
    surface* const s = target(nview);
    if (s == nullptr || nodesel(0) == 0) return;
    const keptpen pen(s);
    prepareview(nview);
    s->fillsolid = true;
    for (int i = 1; i <= nodesel(0); ++i) {
        const int n = nodesel(i);
        if (n <= 0) continue;
        projectplace(nview, nodes(0, n, 0), nodes(0, n, 1), nodes(0, n, 2));
        nodecurrent = n;
        drawnode(nview);
    }
}

// --- second lists -------------------------------------------------------------------------------

bool previewbuffers;

static void setbuffernode(long n, int nview) {
    const auto row = tmpnodes.row(n);
    projectplace(nview, row[1], row[2], row[3]);
}

void drawbuffers(int nview) {
    surface* const s = target(nview);
    if (s == nullptr) return;
    const double radius = 0.04;  // centimetres; smaller than the nodes of the model
    const keptpen pen(s);
    prepareview(nview);
    for (int e = 1; e <= int(tmpelems(0, 0)); ++e) {
        const auto row = tmpelems.row(e);
        for (int k = 1; k <= nodesoftype(row[0]); ++k) {
            const double x = scrx, y = scry;
            setbuffernode(long(row[std::size_t(k)]), nview);
            if (k > 1) s->line(x, y, scrx, scry, drawcolor);
        }
    }
    s->fillsolid = true;
    s->fillcolor = drawcolor;
    for (int n = 1; n <= int(tmpnodes(0, 0)); ++n) {
        setbuffernode(n, nview);
        s->circle(scrx, scry, radius, drawcolor);
    }
}
