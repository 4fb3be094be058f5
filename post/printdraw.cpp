// SPDX-License-Identifier: GPL-3.0-or-later
// The printed page.
#include "post/printdraw.h"

#include <algorithm>
#include <ctime>
#include <filesystem>

#include "core/colours.h"
#include "core/kaltext.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/textfile.h"
#include "core/views.h"
#include "files/filop.h"
#include "post/legend.h"
#include "view/moddraw.h"
#include "view/surface.h"

static const double footheight = 0.7;  // centimetres of the page under the views
static const double framegap = 0.2;    // centimetres between two views
static const double legendwidth = 4;   // of the column at the right while a plot is on show
static const double legendheight = 10;
static const double footsize = 8;  // points
static const colour white = rgb(255, 255, 255), black = rgb(0, 0, 0), grey = rgb(160, 160, 160);

namespace {

// Views, colours and print flags as they were when the page began.
class keptviews {
  public:
    keptviews() : width(vieww), height(viewh), back(backcolor), hidden(hidcolor) {
        for (int v = 1; v <= nviews; ++v)
            scales[v] = {viewscale(v), viewdist(v), viewaw(v), dispscale(v)};
    }
    ~keptviews() {
        for (int v = 1; v <= nviews; ++v) {
            viewscale(v) = scales[v].scale;
            viewdist(v) = scales[v].distance;
            viewaw(v) = scales[v].depth;
            dispscale(v) = scales[v].shape;
        }
        vieww = width;
        viewh = height;
        backcolor = back;
        hidcolor = hidden;
        toprinter = 0;
        printing = false;
    }
    keptviews(const keptviews&) = delete;
    keptviews& operator=(const keptviews&) = delete;

    struct {
        float scale, distance, depth, shape;
    } scales[nviews + 1];
    const double width, height;
    const colour back, hidden;
};

struct frame {
    double left, top, width, height;
};

}  // namespace

// The part of the paper for view v: all above the foot line, or a quarter of it.
static frame frameof(int v, double width, double height) {
    if (singleview) return {0, 0, width, height};
    const double w = (width - framegap) / 2, h = (height - framegap) / 2;
    return {(v - 1) % 2 * (w + framegap), (v - 1) / 2 * (h + framegap), w, h};
}

// How much larger the model is on the paper: what autoscale would make of both surfaces, which
// leaves a unit vector free at each side.
static double enlargement(const keptviews& screen, const frame& paper) {
    const auto part = [](double to, double from, double factor) {
        const double rest = from / factor / 2 - unitveclen;
        return rest > 0 ? (to / factor / 2 - unitveclen) / rest : to / from;
    };
    const double f = std::min(part(paper.width, screen.width, scalex),
                              part(paper.height, screen.height, scaley));
    return f > 0 ? f : 1;
}

// Eye distance and image plane are in scaled units: they grow with the scale.
static void scaleview(int v, const keptviews& screen, double factor) {
    viewscale(v) = float(screen.scales[v].scale * factor);
    viewdist(v) = float(screen.scales[v].distance * factor);
    viewaw(v) = float(screen.scales[v].depth * factor);
}

std::string footleft() {
    std::string text = isnamed() ? std::filesystem::path(modelname).filename().string()
                                 : std::string("Model without a name");
    if (!unitstext.empty()) text += " - " + unitstext;
    if (menupostItem(modeshape).checked) return text + " - mode shape " + numbertext(curlcomb);
    const bool results = menupostItem(deformedshape).checked || menupostItem(contourplot).checked ||
                         menupostItem(elementstress).checked;
    if (results && curlcomb >= 1 && curlcomb <= ncomb())
        text += " - " + shownname(lcombname(curlcomb));
    return text;
}

static std::string footright() {
    char day[40];
    const std::time_t now = std::time(nullptr);
    std::strftime(day, sizeof day, "%Y-%m-%d %H:%M", std::localtime(&now));
    return apptitle + "   " + day;
}

static void drawfoot(surface& page, double width, double top) {
    page.toframe(0, top, width, footheight);
    page.drawwidth = 1;
    page.font = labelfont();
    page.font.size = footsize;
    page.textcolor = black;
    page.line(0, 0.1, width, 0.1, grey);
    page.moveto(0, 0.2);
    page.text(footleft());
    const std::string right = footright();
    page.moveto(width - page.textwidth(right), 0.2);
    page.text(right);
}

// The views in a rectangle from the page's top left corner.
static void drawviews(surface& page, const pagecontent& what, double width, double height) {
    const keptviews screen;
    pageinwork = &page;
    printing = true;
    toprinter = 1;
    if (!what.screencolours) {
        backcolor = white;  // paper
        if (hidcolor == screen.back) hidcolor = white;
    }
    const bool alone = singleview || what.nview != 0;
    for (int v = 1; v <= shownviews(); ++v) {
        if (what.nview != 0 && what.nview != v) continue;
        const frame f = alone ? frame{0, 0, width, height} : frameof(v, width, height);
        page.toframe(f.left, f.top, f.width, f.height);
        vieww = f.width;
        viewh = f.height;
        scaleview(v, screen, enlargement(screen, f));
        drawview(v);
        page.drawwidth = 1;
        if (!alone) page.box(0, 0, f.width, f.height, grey);
    }
}

void drawpage(surface& page, const pagecontent& what) {
    if (vieww <= 0 || viewh <= 0) return;
    const bool legend = legendshown() && what.nview <= 1;
    const double paperwidth = page.width();
    const double height = page.height() - (what.foot ? footheight : 0);
    const double width = legend ? paperwidth - legendwidth : paperwidth;
    drawviews(page, what, width, height);
    if (legend) {
        page.toframe(width, 0, legendwidth, height);
        drawlegendon(page, 0, 0, legendwidth, std::min(height, legendheight));
    }
    if (what.foot) drawfoot(page, paperwidth, height);
}

double pageheight(const pagecontent& what, double width) {
    const bool legend = legendshown() && what.nview <= 1;
    const double views = std::max(1.0, legend ? width - legendwidth : width);
    const double ratio = vieww > 0 && viewh > 0 ? viewh / vieww : 0.75;
    return views * ratio + (what.foot ? footheight : 0);
}

void printview() {
    if (surface* const page = theplatform().printsurface()) drawpage(*page, {});
}

static void tellproblem() {
    theplatform().message("There was a problem printing to your printer.", icons::exclamation);
}

void menuprint() {
    switch (theplatform().startprint()) {
        case printstart::cancelled:
            return;
        case printstart::noprinter:
            theplatform().message("No printer found", icons::exclamation);
            return;
        case printstart::failed:
            tellproblem();
            return;
        case printstart::begun:
            break;
    }
    const bool drawn =
        guarded(printview, [](const runtimeerror& e) { theplatform().showstatus(e.what); });
    if (!theplatform().endprint(drawn)) tellproblem();
    redrawall();
}
