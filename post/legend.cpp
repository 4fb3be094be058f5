// SPDX-License-Identifier: GPL-3.0-or-later
// Contents and picture of the legend.
#include "post/legend.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "core/journal.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/textfile.h"
#include "core/views.h"
#include "post/components.h"
#include "post/contour.h"
#include "post/diagrams.h"
#include "post/legendlook.h"
#include "post/plainnumber.h"
#include "post/plotunits.h"
#include "post/postproces.h"
#include "post/secondplot.h"
#include "post/signs.h"
#include "post/source.h"
#include "view/drawelems.h"
#include "view/surface.h"

static bool showsdisplacement() {
    return iscontour() && contourdata == displacementdata;
}

static bool scaleshown() {
    return (iscontour() || iselementstress()) && plotready() && highest.e != 0;
}

bool legendshown() {
    return scaleshown() || diagramshown;
}

// --- contents -----------------------------------------------------------------------------------

static std::string componenttext() {
    const componentrow& row = stresscomponents[stresscomp - 1];
    const std::string text = *row.legend ? row.legend : row.label, unit = resultunit(plotformula());
    if (unit.empty()) return text;
    const std::size_t letters = text.find(", " + std::string(plotformula()));
    const std::string name = text.substr(0, letters);
    return name.substr(0, name.find_last_not_of(' ') + 1) + ", " + unit;
}

static std::string fieldname() {
    if (showsdisplacement() && menupostItem(modeshape).checked && fieldismode)
        return "Mode shape " + numbertext(curlcomb);
    return sourcename();
}

static std::vector<std::string> headinglines() {
    const char* const displacement = directions[dispcontour].legend;
    const std::string index = "Stress Index";  // the name of the scale, whatever it is of
    std::string field = fieldname();
    if (sidebyside)
        field = second.commonscale ? field + " | " + nameofview(2) : nameofview(issecond() ? 2 : 1);
    if (!showsdisplacement()) return {index, field, componenttext()};
    const std::string unit = resultunit(plotformula());
    const std::string what = displacement + (unit.empty() ? "" : ", " + unit);
    if (toprinter != 0) return {what, field};
    return {index, field, what};
}

static int exponentof(double largest) {
    return largest > 0 ? int(std::floor(std::log10(largest))) : 0;
}

static std::vector<std::string> labelsof(const std::vector<double>& values, int decimals) {
    std::vector<std::string> labels;
    for (const double v : values) {
        std::string text = fixedtext(v, decimals);
        if (text.find_first_of("123456789") == text.npos && text[0] == '-') text.erase(0, 1);
        labels.push_back(text);
    }
    return labels;
}

// As many decimals as tell neighbouring values apart.
static std::vector<std::string> shortlabels(const std::vector<double>& values) {
    const int fewest = 2, most = mostdecimals, wanted = lookoflegend().decimals;
    if (wanted >= 0) return labelsof(values, wanted);
    for (int decimals = fewest;; ++decimals) {
        std::vector<std::string> labels = labelsof(values, decimals);
        if (decimals == most || std::ranges::adjacent_find(labels) == labels.end()) return labels;
    }
}

legendtext makelegend() {
    legendtext t;
    t.title = !scaleshown() ? "Diagram" : iselementstress() ? "Stress Index" : "Contour Index";
    t.heading = headinglines();
    if (isresultstale()) t.heading.emplace_back(staletext);
    t.exponent = exponentof(std::max(std::fabs(indexmax), std::fabs(indexmin)));
    const bool bands = showsbands();
    const int count = bands ? indexcolors + 1 : indexcolors;
    std::vector<double> values;
    for (int k = 0; k < count; ++k)
        values.push_back((bands ? bandbound(k) : levelof(k)) / std::pow(10.0, t.exponent));
    t.labels = indexmax == indexmin ? labelsof(values, 2) : shortlabels(values);
    t.tail = " E" + numbertext(t.exponent);
    return t;
}

std::string plotnumber(double value) {
    return plainnumber(value, std::max(std::fabs(indexmax), std::fabs(indexmin)));
}

// --- the picture --------------------------------------------------------------------------------

// The text cut to a width, marked where something is missing.
static std::string fitted(surface& s, std::string text, double width) {
    const std::size_t most = 400;  // bytes that a legend can show at all
    if (text.size() <= most && s.textwidth(text) <= width) return text;
    if (text.size() > most) text.resize(most);
    do {
        while (!text.empty() && (text.back() & 0xC0) == 0x80) text.pop_back();
        if (!text.empty()) text.pop_back();
    } while (!text.empty() && s.textwidth(text + "…") > width);
    return text + "…";
}

// The heading in rows of a width, broken at blanks.
static std::vector<std::string> rowsof(surface& s, const legendtext& t, double width) {
    std::vector<std::string> rows;
    for (const std::string& text : t.heading) {
        std::istringstream words(text);
        std::string row, word;
        while (words >> word) {
            const std::string longer = row.empty() ? word : row + " " + word;
            if (row.empty() || s.textwidth(longer) <= width) {
                row = longer;
                continue;
            }
            rows.push_back(fitted(s, row, width));
            row = word;
        }
        rows.push_back(fitted(s, row, width));
    }
    return rows;
}

static void put(surface& s, double x, double y, const std::string& text) {
    s.moveto(x, y);
    s.text(text);
}

static void drawbox(surface& s, double left, double top, double width, double height, colour c) {
    const point2 box[] = {
        {left, top}, {left + width, top}, {left + width, top + height}, {left, top + height}};
    s.fillsolid = true;
    s.fillcolor = c;
    s.polygon(box, 4, c);
    s.fillsolid = false;
}

// Centimetres.
static const double margin = 0.15, boxwidth = 0.6, gap = 0.15, tallest = 0.65;

static void usefont(surface& s) {
    s.font = elemlabelfont;
    s.textcolor = elemlabelcolor;
    s.drawwidth = 1;
}

namespace {
struct scaleplace {
    double left, top, row, labelx, labelwidth;
    double boxtop(int k) const { return top + (indexcolors - 1 - k) * row; }
    double bottom() const { return top + indexcolors * row; }
};
}  // namespace

// Labels that would stand in each other are left out, but for those of the bounds.
static bool haslabel(int k, int last, double row, double line) {
    const int apart = std::max(1, int(std::ceil(0.9 * line / row)));
    return k == last || (k % apart == 0 && last - k >= apart);
}

static void drawlevels(surface& s, const legendtext& t, const scaleplace& at) {
    const double line = s.textheight();
    for (int k = 0; k < indexcolors; ++k) {
        const double y = at.boxtop(k) + at.row / 2;
        s.drawwidth = 2;
        s.line(at.left, y, at.left + boxwidth, y, colour(indexcolor(k)));
        s.drawwidth = 1;
        if (haslabel(k, indexcolors - 1, at.row, line))
            put(s, at.labelx, y - line / 2, fitted(s, t.labels[std::size_t(k)], at.labelwidth));
    }
}

static void drawbands(surface& s, const legendtext& t, const scaleplace& at) {
    const double line = s.textheight();
    for (int k = 0; k < indexcolors; ++k)
        drawbox(s, at.left, at.boxtop(k), boxwidth, at.row, colour(indexcolor(k)));
    for (int k = 0; k <= indexcolors; ++k)
        if (haslabel(k, indexcolors, at.row, line))
            put(s, at.labelx, at.boxtop(k - 1) - line / 2,
                fitted(s, t.labels[std::size_t(k)], at.labelwidth));
    s.box(at.left, at.top, at.left + boxwidth, at.bottom(), elemlabelcolor);
}

static scaleplace drawn;      // of the legend on the screen
static double drawnline = 0;  // height of its letters

legendparts legendpartat(double x, double y) {
    if (!scaleshown() || x < drawn.left || y < drawn.top - drawnline) return legendparts::none;
    if (y > drawn.bottom() + drawnline) return legendparts::none;
    if (x < drawn.left + boxwidth) return legendparts::scale;
    // With lines the bounds stand in the middle of their rows.
    const double in = showsbands() ? 0.8 * drawnline : drawn.row / 2 + 0.8 * drawnline;
    if (y < drawn.top + in) return legendparts::most;
    return y > drawn.bottom() - in ? legendparts::least : legendparts::scale;
}

legendfield fieldoflegend(legendparts part) {
    const double half = showsbands() ? 0 : drawn.row / 2;
    const double middle = part == legendparts::most ? drawn.top + half : drawn.bottom() - half;
    return {drawn.labelx, middle - drawnline / 2, drawn.labelwidth, drawnline};
}

static scaleplace drawscale(surface& s, double left, double top, double width, double height) {
    const legendtext t = makelegend();
    usefont(s);
    const double line = s.textheight(), inner = width - 2 * margin;
    const std::vector<std::string> heading = rowsof(s, t, inner);
    double y = top + margin;
    for (const std::string& row : heading) {
        put(s, left + margin, y, row);
        y += line;
    }
    const double linesbelow = 2.5;  // one over the scale, the power of ten under it
    const double room = height - 2 * margin - (double(heading.size()) + linesbelow) * line;
    const double beside = boxwidth + gap;
    const scaleplace at{left + margin, y + line, std::min(tallest, room / indexcolors),
                        left + margin + beside, inner - beside};
    if (showsbands())
        drawbands(s, t, at);
    else
        drawlevels(s, t, at);
    put(s, at.labelx, at.bottom() + line / 2, t.tail);
    return at;
}

// What the diagram shows and what its signs mean stands below the scale.
static scaleplace drawwhole(surface& s, double left, double top, double width, double height) {
    const double lower = 0.45;  // of the height
    const double part = !diagramshown ? 0 : scaleshown() ? lower * height : height;
    scaleplace at{};
    if (scaleshown()) at = drawscale(s, left, top, width, height - part);
    if (!diagramshown) return at;
    usefont(s);
    const int of = issecond() ? 2 : 1;
    double y = top + height - part + margin;
    for (const std::string& row :
         rowsof(s, {"", {nameofview(of), diagramtext(of)}, {}, 0, ""}, width - 2 * margin)) {
        put(s, left + margin, y, row);
        y += s.textheight();
    }
    drawsigns(s, left + margin, y + margin, width - 2 * margin, top + height - y - 2 * margin);
    return at;
}

void drawlegendon(surface& s, double left, double top, double width, double height) {
    drawwhole(s, left, top, width, height);
}

void drawlegend() {
    if (toprinter != 0) return;  // a printed page has a column for it
    if (issecond()) return;      // that of view 1 stands, or its own in its picture
    surface* const s = theplatform().legendsurface();
    if (s == nullptr) return;
    s->clear(backcolor);
    if (legendshown()) drawn = drawwhole(*s, 0, 0, s->width(), s->height());
    drawnline = s->textheight();
    s->show();
}

std::string frequencytext(double value) {
    if (value < 0) return "omega^2 = " + shorttext(value) + ", no frequency";
    return shorttext(frequencyof(value)) + " Hz";
}
