// SPDX-License-Identifier: GPL-3.0-or-later
// Places of labels. State: those taken in the picture in work.
#include "view/labels.h"

#include <optional>

#include "core/numtext.h"
#include "core/units.h"
#include "core/views.h"
#include "view/symbolstyle.h"

static std::optional<labelroom> room;

void freelabels() {
    room.reset();
}

bool placelabel(surface& s, std::string_view text, point2 of, point2& corner) {
    if (!room) room.emplace(vieww, viewh);
    const double gap = 0.05;
    const double width = double(text.size()) * s.textwidth("0"), height = s.textheight();
    const point2 places[] = {corner,
                             {of.x + gap, of.y - height},
                             {of.x - width - gap, of.y},
                             {of.x - width - gap, of.y - height},
                             {of.x - width / 2, of.y + gap},
                             {of.x - width / 2, of.y - height - gap}};
    for (const point2& p : places)
        if (room->take(p, width, height)) {
            corner = p;
            return true;
        }
    return false;
}

std::string shortnumber(double value) {
    const int digits = 4;
    if (value == 0 || !std::isfinite(value)) return numbertext(value);
    const double unit = std::pow(10.0, std::floor(std::log10(std::fabs(value))) - digits + 1);
    // Divided by a whole number where it is one, so that 12.35 is not 12.350000000000001.
    return numbertext(unit < 1 ? std::round(value / unit) / std::round(1 / unit)
                               : std::round(value / unit) * unit);
}

void drawvalue(surface& s, point2 end, double value, const char* formula, colour c) {
    if (!symbolsdrawn.values) return;
    std::string text = shortnumber(value);
    if (!unitstext.empty()) text += " " + unitname(formula);
    point2 corner{end.x + 0.05, end.y};
    if (!placelabel(s, text, end, corner)) return;
    s.textcolor = c;
    s.moveto(corner.x, corner.y);
    s.text(text);
}
