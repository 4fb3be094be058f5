// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers on contour lines. State: the places of the picture in work.
#include "post/linelabels.h"

#include <map>
#include <optional>
#include <vector>

#include "core/colours.h"
#include "core/session.h"
#include "core/views.h"
#include "post/legend.h"
#include "post/probe.h"
#include "view/pen.h"
#include "view/thinning.h"

bool linelabelson;

// Centimetres between the numbers of one line, and between any two.
static const double alongline = 4, betweenany = 1.2;

namespace {
struct labelplace {
    double level, depth;
    point2 at;
};
}  // namespace
static std::vector<labelplace> places;
static std::map<double, thinning> bylevel;
static std::optional<thinning> all;

void beginlinelabels() {
    places.clear();
    bylevel.clear();
    all.emplace(vieww, viewh, betweenany);
}

void notelinepiece(double level, const point2& middle, double depth) {
    if (!linelabelson || !all) return;
    const auto found = bylevel.try_emplace(level, vieww, viewh, alongline).first;
    if (found->second.accepts(middle.x, middle.y) && all->accepts(middle.x, middle.y))
        places.push_back({level, depth, middle});
}

void drawlinelabels(int nview) {
    surface* const s = target(nview);
    if (s == nullptr || places.empty()) return;
    const keptpen pen(s);
    s->font = elemlabelfont;
    s->textcolor = elemlabelcolor;
    s->fillsolid = true;
    s->drawwidth = 1;
    for (const labelplace& p : places) {
        if (iscovered(p.at, p.depth, nview)) continue;
        const std::string text = plotnumber(p.level);
        const double half = s->textwidth(text) / 2, tall = s->textheight() / 2;
        const point2 ground[] = {{p.at.x - half, p.at.y - tall},
                                 {p.at.x + half, p.at.y - tall},
                                 {p.at.x + half, p.at.y + tall},
                                 {p.at.x - half, p.at.y + tall}};
        s->fillcolor = backcolor;
        s->polygon(ground, 4, backcolor);
        s->moveto(p.at.x - half, p.at.y - tall);
        s->text(text);
    }
    places.clear();
}
