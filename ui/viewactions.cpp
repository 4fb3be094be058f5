// SPDX-License-Identifier: GPL-3.0-or-later
// Rows about views.
#include "ui/viewactions.h"

#include <algorithm>
#include <cmath>

#include "core/platform.h"
#include "edit/Mouseprocedures.h"
#include "ui/viewwidget.h"
#include "view/moddraw.h"
#include "view/setviews.h"
#include "view/symbolstyle.h"

static void showlayout(void (*setviews)()) {
    setviews();
    redrawall();
}

static void addview(actionrows& t) {
    const char* const a = "mnudrawlist";
    addto(t, "&view", "views",
          {
              {"view(0)", "&View Set...", "iso", "", dialog("viewcontrol")},
              {"redraw(0)", "&Redraw", "redraw", "F5", [] { redrawall(); }},
              {"redraw(1)"},
              toggle(a, 0, "&Nodes", mnudrawlist),
              toggle(a, 1, "&Elements", mnudrawlist),
              toggle(a, 2, "&Constrains", mnudrawlist),
          });
    addto(t, "&view|&Loads", "views",
          {
              choice("viewloads", 0, "Off", viewloads),
              choice("viewloads", 1, "Active Loadcase", viewloads),
              choice("viewloads", 2, "All Loadcases", viewloads),
              choice("viewloads", 3, "Active Load combination", viewloads),
          });
    addto(t, "&view", "views",
          {
              toggle(a, 4, "Graphic Elements", mnudrawlist),
              toggle(a, 5, "Patches", mnudrawlist),
          });
    addto(t, "&view|Node labels", "views",
          {
              choice("Nodelabeltype", 0, "Off", Nodelabeltype),
              choice("Nodelabeltype", 1, "Numbers", Nodelabeltype),
              choice("Nodelabeltype", 2, "Names", Nodelabeltype),
          });
    addto(t, "&view|Element Label", "views",
          {
              choice("elemlabeltype", 0, "Off", elemlabeltype),
              choice("elemlabeltype", 1, "Number", elemlabeltype),
              choice("elemlabeltype", 2, "Type", elemlabeltype),
              choice("elemlabeltype", 3, "Group", elemlabeltype),
              choice("elemlabeltype", 4, "Color code", elemlabeltype),
              choice("elemlabeltype", 5, "Name", elemlabeltype),
          });
    addto(t, "&view", "views",
          {
              {"mnudrawlist(8)"},
              {"mnudrawlist(9)", "Window", "zoomwindow", "", startviewwindow},
              toggle(a, 10, "Hidden Line", mnudrawlist, "hidden"),
          });
}

// Tools of the active view.
static void addviewtools(actionrows& t) {
    const double degrees = 5;
    const auto preset = [](int i) { return [i] { setpreset(activeview, i); }; };
    const auto turn = [](double right, double up) {
        return [right, up] { turnview(activeview, right, up); };
    };
    const auto scale = [](double factor) { return [factor] { scaleview(activeview, factor); }; };
    const std::vector<actionplace> tool = {{"viewbar", 1}}, layout = {{"viewbar", 11}};
    addto(
        t, "", "views",
        {
            {"viewtool(0)", "Redraw", "redraw", "", [] { redrawall(); }, tool},
            {"viewtool(1)", "Fit the model to the view", "fit", "Ctrl+0",
             [] { fitview(activeview); }, tool},
            {"viewtool(2)", "Half size", "zoomout", "Ctrl+-", scale(0.5), tool},
            {"viewtool(3)", "Zoom window", "zoomwindow", "", startzoomwindow, tool},
            {"viewtool(4)", "ISO", "iso", "Ctrl+1", preset(0), tool},
            {"viewtool(5)", "X-Y", "viewxy", "Ctrl+2", preset(1), tool},
            {"viewtool(6)", "X-Z", "viewxz", "Ctrl+3", preset(2), tool},
            {"viewtool(7)", "Y-Z", "viewyz", "Ctrl+4", preset(3), tool},
            {"viewtool(8)", "Turn right", "turnright", "Ctrl+Right", turn(degrees, 0), tool},
            {"viewtool(9)", "Turn left", "turnleft", "Ctrl+Left", turn(-degrees, 0), tool},
            {"viewtool(10)", "Turn up", "turnup", "Ctrl+Up", turn(0, degrees), tool},
            {"viewtool(11)", "Turn down", "turndown", "Ctrl+Down", turn(0, -degrees), tool},
            {"oneview", "One view", "onewindow", "Ctrl+5", [] { showlayout(setoneview); }, layout},
            {"fourviews", "Four views", "fourwindows", "Ctrl+6", [] { showlayout(setfourviews); },
             layout},
            // A button of each view, by a key here alone.
            {"doublesize", "Double size", "zoomin", "Ctrl++; Ctrl+=", scale(2)},
        });
}

// How things are drawn beside the plain way.
static action drawnrow(const char* name, const char* caption, int order, bool symbolstyle::*on,
                       const char* tip) {
    action row;
    row.name = name;
    row.caption = caption;
    row.icon = name;
    row.run = [on] {
        symbolsdrawn.*on = !(symbolsdrawn.*on);
        theplatform().refresh();
        redrawall();
    };
    row.places = {{"viewbar/symbolsbutton", order}};
    row.checked = [on] { return symbolsdrawn.*on; };
    row.tip = tip;
    row.isswitch = true;
    return row;
}

static command sizesymbols(double factor) {
    return [factor] {
        const int percent = int(std::lround(symbolsdrawn.size * factor / 5) * 5);
        symbolsdrawn.size = std::clamp(percent, leastsymbols, mostsymbols);
        theplatform().refresh();
        redrawall();
    };
}

static void addsymbols(actionrows& t) {
    using s = symbolstyle;
    action main = drawnrow("fieldsymbols", "Engineering Symbols", 0, &s::field,
                           "Supports as pins, rollers and clamps, loads as arrows");
    main.places = {{"viewbar", 21, "symbolsbutton"}};
    addto(t, "", "views",
          {
              main,
              drawnrow("loadvalues", "Values of Loads", 1, &s::values,
                       "The numbers of loads and imposed movements beside them"),
              drawnrow("solidmembers", "Solid Members and Plates", 2, &s::solid,
                       "Members with their section and its rotation, plates with their thickness"),
              drawnrow("grouplegend", "Legend of Group Colors", 3, &s::legend,
                       "Names of the groups while elements have the colors of theirs"),
              drawnrow("labelsapart", "Labels keep apart", 4, &s::apart,
                       "Labels that would cover each other move aside or stay away"),
              {"largersymbols",
               "Larger Symbols",
               "largersymbols",
               "Ctrl+Shift+Up",
               sizesymbols(1.25),
               {{"viewbar/symbolsbutton", 11}}},
              {"smallersymbols",
               "Smaller Symbols",
               "smallersymbols",
               "Ctrl+Shift+Down",
               sizesymbols(0.8),
               {{"viewbar/symbolsbutton", 12}}},
          });
}

void addviewactions(actionrows& t) {
    addview(t);
    addviewtools(t);
    addsymbols(t);
}
