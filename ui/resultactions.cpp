// SPDX-License-Identifier: GPL-3.0-or-later
// Rows about the analysis and its results.
#include "ui/resultactions.h"

#include "post/compare.h"
#include "post/drawcontour.h"
#include "post/linelabels.h"
#include "post/probes.h"
#include "post/shapes.h"
#include "ui/needs.h"

static action resultswitch(const char* name, const char* caption, const char* tip, bool& on) {
    action row;
    row.name = row.icon = name;
    row.caption = caption;
    row.tip = tip;
    row.run = [&on] { toggleswitch(on); };
    row.checked = [&on] { return on; };
    row.isswitch = true;
    return row;
}

// What makes a picture of results say more.
static void addpictures(actionrows& t) {
    addto(t, "&Post-Process", "pictures",
          {
              {"picturesline"},
              resultswitch("ghost", "Undeformed Ghost",
                           "The undeformed model in pale lines beside a shape", ghoston),
              resultswitch("linelabels", "Numbers on Contour Lines",
                           "The value of each contour line on it", linelabelson),
              {.name = "probe",
               .caption = "Probe",
               .icon = "probe",
               .run = startprobing,
               .checked = [] { return bool(probing); },
               .tip = "Set values that stay on the plot"},
              {.name = "clearprobes",
               .caption = "Clear Probes",
               .icon = "clearprobes",
               .run = clearprobes,
               .enabled = [] { return isfree() && !probes().empty(); },
               .why = "No value was set by Probe"},
              {"cut", "Values along a Cut...", "curveplot", "", dialog("Cut")},
              {"animation", "Animation...", "animation", "", dialog("Animation")},
              {.name = "compare",
               .caption = "Compare Combinations...",
               .icon = "compare",
               .run = dialog("Compare"),
               .checked = [] { return comparedwith() != 0; },
               .tip = "Two combinations or modes side by side"},
              {.name = "book",
               .caption = "Illustrated Report...",
               .icon = "book",
               .run = dialog("Book"),
               .tip = "A report with pictures and tables, as PDF or HTML",
               .topic = "book"},
          });
}

void addresultactions(actionrows& t) {
    addto(t, "A&nalyse", "solve",
          {
              {"menuanalyseitem(0)", "Check model", "check", "", dialog("checkmodel")},
              {"menuanalyseitem(1)", "Options...", "options", "", dialog("Aoptions")},
              {"menuanalyseitem(2)", "Analyse", "analyse", "F9", startanalysis, {{"jobbar", 6}}},
          });
    const auto checked = [](int i) { return checkof(menupostItem, i); };
    addto(
        t, "&Post-Process", "results",
        {
            {.name = "Loadcase(0)",
             .caption = "Load Combinations ...",
             .icon = "combination",
             .run = dialog("Loadcombinations"),
             .places = {{"jobbar", 3}},
             .topic = "cases"},
            {"menupostItem(0)"},
            {"menupostItem(1)",
             "Deformed Shape",
             "deformed",
             "",
             showdeformed,
             {{"jobbar", 7}},
             checked(1)},
            {"menupostItem(2)",
             "Contour plot",
             "contour",
             "",
             showcontour,
             {{"jobbar", 8}},
             checked(2)},
            {"menupostItem(3)", "Mode Shape", "modeshape", "", showmode, {}, checked(3)},
            {"menupostItem(4)", "Element Stress ", "stress", "", showelementstress, {}, checked(4)},
            {.name = "menupostItem(5)",
             .caption = "Report...",
             .icon = "report",
             .run = dialog("Roptions"),
             .places = {{"jobbar", 9}},
             .topic = "report"},
            {"menupostItem(6)"},
            {"menupostItem(7)", "Options...", "options", "", dialog("Soptions")},
            {"postanswers"},
            {.name = "combinationrules",
             .caption = "Combination Rules...",
             .icon = "rules",
             .run = dialog("combinationrules"),
             .topic = "cases"},
            {.name = "resultsof",
             .caption = "Results of...",
             .icon = "envelope",
             .run = dialog("resultsof"),
             .topic = "envelopes"},
            {.name = "memberdiagrams",
             .caption = "Member Diagrams...",
             .icon = "diagram",
             .run = dialog("memberdiagrams"),
             .topic = "diagrams"},
            {.name = "memberwindow",
             .caption = "Member Window...",
             .icon = "memberwindow",
             .run = dialog("memberwindow"),
             .topic = "diagrams"},
            {.name = "balance",
             .caption = "Balance...",
             .icon = "balance",
             .run = dialog("balance"),
             .topic = "balance"},
        });
    addpictures(t);
}
