// SPDX-License-Identifier: GPL-3.0-or-later
// The table of drawing tools and the mode that takes their points. State: the tool that runs and
// the points it has.
#include "tools/drafttools.h"

#include <cmath>

#include "core/colours.h"
#include "core/journal.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/units.h"
#include "core/views.h"
#include "edit/Mouseprocedures.h"
#include "edit/commands.h"
#include "edit/move.h"
#include "edit/selection.h"
#include "edit/snap.h"
#include "tools/Graphics.h"
#include "tools/appended.h"
#include "tools/draft.h"
#include "tools/sweep.h"
#include "view/moddraw.h"
#include "view/pen.h"
#include "view/scaleview.h"

static Flag drafting;
static drafttool* running;
static std::vector<point3> given;

// --- what the tools do --------------------------------------------------------------------------

static point3 fieldpoint(const drafttool& t, std::size_t first) {
    return {t.value(first), t.value(first + 1), t.value(first + 2)};
}

// New drawing: selected, so that spaces can be given or a mesh made of it.
static std::string draw(const std::vector<path>& paths) {
    const lastitems before = lastitemsnow();
    appendpaths(paths);
    emptyselection();
    selectappended(before);
    checkselectitem(selectgraphics);
    return "";
}

static int graphicat(const point3& at) {
    int best = 0;
    double least = 0;
    for (int g = 1; g <= ngraphics(); ++g) {
        const auto p = pathof(graphics, g);
        if (!p) continue;
        const double away = lengthof(p->at(nearestshare(*p, at)) - at);
        if (best != 0 && away >= least) continue;
        best = g;
        least = away;
    }
    return best;
}

static std::string change(void (*work)(int, const point3&), const point3& at) {
    work(graphicat(at), at);
    redrawall();
    return "";
}

// The motion of a copy or sweep: along a way, or about an axis through a point.
static motion motionof(const drafttool& t, std::size_t first) {
    if (t.value(first) == 0) return shiftby(fieldpoint(t, first + 1));
    point3 axis{};
    axis[std::size_t(t.value(first)) - 1] = 1;
    return turnabout(fieldpoint(t, first + 1), axis, t.value(first + 4) * pi / 180);
}

static const std::vector<const char*> motions = {"Along a way", "About X", "About Y", "About Z"};

static std::vector<draftfield> motionfields(const char* count, double number) {
    return {{count, "", number},
            {"Motion", "", 0, motions},
            {"Way or point on axis, X", "L", 0},
            {"Y", "L", 0},
            {"Z", "L", 0},
            {"Angle of one step", "Deg", 0, {}, 0b1110}};
}

static std::vector<drafttool> tools() {
    using points = std::vector<point3>;
    const auto shaped = [](auto shape) {
        return [shape](const drafttool&, const points& p) { return draw(shape(p)); };
    };
    const auto box = [](const points& p) { return rectangle(p[0], p[1]); };
    const auto ring = [](const points& p) { return circleabout(p[0], p[1], sightline()); };
    const auto arc = [](const points& p) { return arcabout(p[0], p[1], p[2], sightline()); };
    const auto count = [](const drafttool& t) {
        const double n = t.value(0);
        if (!(n >= 1) || n != std::floor(n) || n > 1e6)
            throw runtimeerror{
                errargument, std::string(t.fields[0].caption) + " must be a whole number from 1."};
        return int(n);
    };
    std::vector<drafttool> t;
    t.push_back({"rec",
                 "Rectangle",
                 "rectangle",
                 "Four lines along the axes from two opposite corners",
                 {},
                 {"First corner", "Opposite corner"},
                 shaped(box),
                 box});
    t.push_back({"cir",
                 "Circle",
                 "fullcircle",
                 "A full circle as four sections, from its centre and a point on it",
                 {},
                 {"Centre", "Point on circle"},
                 shaped(ring),
                 ring});
    t.push_back({"arc",
                 "Arc about centre",
                 "arccentre",
                 "A circle section from its centre, its start and the direction of its end, "
                 "counter-clockwise",
                 {},
                 {"Centre", "Start point", "Direction of the end"},
                 shaped(arc),
                 arc});
    t.push_back({"fil",
                 "Fillet",
                 "fillet",
                 "Round the corner of the two selected lines; radius 0 joins them",
                 {{"Radius", "L", 0}},
                 {},
                 [](const drafttool& tool, const points&) {
                     fillet(tool.value(0));
                     redrawall();
                     return std::string();
                 }});
    t.push_back({"off",
                 "Offset",
                 "offset",
                 "Parallels of the selected lines and circle sections",
                 {{"Distance", "L", 0}},
                 {"Point on the side of the parallel"},
                 [](const drafttool& tool, const points& p) {
                     const lastitems before = lastitemsnow();
                     offsetselected(tool.value(0), p[0]);
                     emptyselection();
                     selectappended(before);
                     return std::string();
                 },
                 {},
                 false,
                 true});
    t.push_back({"spl",
                 "Split",
                 "split",
                 "Cut a graphic element in two at a point",
                 {},
                 {"Point on a graphic element"},
                 [](const drafttool&, const points& p) { return change(splitat, p[0]); }});
    t.push_back({"tri",
                 "Trim",
                 "trim",
                 "Take a piece away between the places where others cross it",
                 {},
                 {"Point on the piece to take away"},
                 [](const drafttool&, const points& p) { return change(trimat, p[0]); },
                 {},
                 false});
    t.push_back({"arr",
                 "Array copy",
                 "array",
                 "Copies of the selected nodes, elements and graphics in a row or about an axis, "
                 "with supports and loads",
                 motionfields("Copies", 1),
                 {},
                 [count](const drafttool& tool, const points&) {
                     return copyselected(motionof(tool, 1), count(tool));
                 }});
    t.push_back({"ext",
                 "Extrude or revolve",
                 "sweep",
                 "Shells from the selected graphic or line elements, beams from the selected nodes",
                 motionfields("Layers", 1),
                 {},
                 [count](const drafttool& tool, const points&) {
                     return sweepselected(motionof(tool, 1), count(tool));
                 }});
    t.push_back({"pro",
                 "Project",
                 "project",
                 "Move the selected nodes to a plane or a cylinder",
                 {{"Onto", "", 0, {"Plane", "Cylinder"}},
                  {"Point on plane or axis, X", "L", 0},
                  {"Y", "L", 0},
                  {"Z", "L", 0},
                  {"Normal or axis, X", "", 0},
                  {"Y", "", 0},
                  {"Z", "", 1},
                  {"Radius", "L", 0, {}, 0b10}},
                 {},
                 [](const drafttool& tool, const points&) {
                     const point3 through = fieldpoint(tool, 1), way = fieldpoint(tool, 4);
                     return tool.value(0) == 0 ? projectonplane(through, way)
                                               : projectoncylinder(through, way, tool.value(7));
                 }});
    return t;
}

std::vector<drafttool>& drafttools() {
    static std::vector<drafttool> table = tools();
    return table;
}

drafttool* valuedtool;

// All that ask for values work on what is selected.
static bool lacksselection(const drafttool& tool) {
    if (tool.fields.empty() || isselection()) return false;
    theplatform().message(std::string("Select first what ") + tool.caption + " works on.",
                          icons::exclamation);
    return true;
}

void choosedraft(drafttool& tool) {
    if (tool.fields.empty()) return startdraft(tool);
    if (lacksselection(tool)) return;
    valuedtool = &tool;
    theplatform().showdialog("drafttool");
}

// --- values -------------------------------------------------------------------------------------

bool setdraftvalues(drafttool& tool, const std::vector<std::string>& texts) {
    std::vector<double> values;
    for (std::size_t i = 0; i < tool.fields.size(); ++i) {
        double v = tool.fields[i].value;
        const bool typed = i < texts.size() && texts[i].find_first_not_of(' ') != std::string::npos;
        const auto choices = double(tool.fields[i].choices.size());
        const bool good =
            !typed || (readvalue(texts[i], tool.fields[i].unit, v) && std::isfinite(v) &&
                       (choices == 0 || (v >= 0 && v < choices && v == std::floor(v))));
        if (!good) {
            theplatform().message(std::string(tool.caption) + ", " + tool.fields[i].caption +
                                      ": \"" + texts[i] + "\" cannot be used. Nothing was changed.",
                                  icons::exclamation);
            return false;
        }
        values.push_back(v);
    }
    if (texts.size() > tool.fields.size() && !(texts.size() == 1 && texts[0].empty())) {
        theplatform().message(std::string(tool.caption) + " takes " +
                                  numbertext(double(tool.fields.size())) +
                                  " value(s). Nothing was changed.",
                              icons::exclamation);
        return false;
    }
    for (std::size_t i = 0; i < values.size(); ++i) tool.fields[i].value = values[i];
    return true;
}

// --- the mode -----------------------------------------------------------------------------------

static void promptnext() {
    if (running == nullptr || given.size() >= running->points.size()) return;
    prompt("Define", running->points[given.size()], running->caption, "<ESC> to stop");
}

static void work(drafttool& tool) {
    suggestname(tool.caption);
    const hourglass wait;
    guarded(
        [&] {
            const std::string note = tool.run(tool, given);
            if (!note.empty()) theplatform().message(note, icons::information);
        },
        [](const runtimeerror& e) { theplatform().message(e.what, icons::exclamation); });
}

bool isdrafting(const drafttool& tool) {
    return running == &tool;
}

static void clearpointer() {
    for (int v = 1; v <= shownviews(); ++v)
        if (surface* const s = target(v)) s->clearplane(planes::pointer);
}

static void press(int nview) {
    if (running == nullptr) return;
    if (running->snaps) snapto(nview);
    given.push_back({modelx, modely, modelz});
    if (given.size() == running->points.size()) {
        clearpointer();
        work(*running);
        given.clear();
    }
    promptnext();
}

// What the tool would draw with its next point under the pointer, in dots.
static void follow(int nview) {
    surface* const s = target(nview);
    if (running == nullptr || s == nullptr || given.empty()) return;
    std::vector<point3> points = given;
    points.push_back({modelx, modely, modelz});
    std::vector<path> shape = {lineof(given.back(), points.back())};
    if (running->shape && points.size() == running->points.size())
        guarded([&] { shape = running->shape(points); }, [](const runtimeerror&) {});
    s->clearplane(planes::pointer);
    const keptpoint kept;
    const keptpen pen(s);
    const onplane top(*s, planes::pointer);
    s->drawstyle = pens::dotted;
    prepareview(nview);
    const float scale = viewscale(nview);
    for (const path& p : shape) {
        double x = 0, y = 0;
        bool first = true;
        for (const point3& at : polylineof(p)) {
            curx = float(scale * at[0]);
            cury = float(scale * at[1]);
            curz = float(scale * at[2]);
            projectpoint(nview);
            if (!first) s->line(x, y, scrx, scry, graphcolor);
            first = false;
            x = scrx;
            y = scry;
        }
    }
    s->show();
}

void startdraft(drafttool& tool) {
    if (tool.points.empty()) {
        addready();
        settleselection();
        work(tool);
        return;
    }
    if (tool.ofselection) {
        addready();
        settleselection();
        if (lacksselection(tool)) return;
        drafting = true;
    } else {
        startmode(drafting);
    }
    running = &tool;
    given.clear();
    promptnext();
}

// The button is grey while a dialog waits.
static void runtext(drafttool& tool, const std::string& text) {
    if (singleel || isselectionpending()) {
        theplatform().message("A dialog waits for what is selected; end that with <ESC> first",
                              icons::exclamation);
        return;
    }
    std::vector<std::string> fields;
    std::string rest = text.substr(3);
    if (!rest.empty() && rest.front() == '=') rest.erase(0, 1);
    for (std::size_t from = 0; from <= rest.size() && !rest.empty();) {
        const std::size_t to = std::min(rest.find(';', from), rest.size());
        fields.push_back(rest.substr(from, to - from));
        from = to + 1;
    }
    if (setdraftvalues(tool, fields)) startdraft(tool);
}

void wiredrafttools() {
    moderow m;
    m.flag = &drafting;
    acceptpoints(m, press);
    m.enter = [] {
        given.clear();
        clearpointer();
        promptnext();
    };
    m.back = [] {
        if (!given.empty()) given.pop_back();
        clearpointer();
        promptnext();
    };
    m.follow = follow;
    m.end = [] {
        running = nullptr;
        given.clear();
        clearpointer();
        redrawall();
    };
    modes().push_back(m);
    for (drafttool& tool : drafttools())
        morecommands().push_back(
            {tool.name, [&tool](const std::string& text) { runtext(tool, text); }});
}
