// SPDX-License-Identifier: GPL-3.0-or-later
// The menu bar, item by item, what locks it, and the least size of the window.
#include "ui/mainwindow.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QMenu>

#include "core/model.h"
#include "core/session.h"
#include "edit/Mouseprocedures.h"
#include "tests/support/recorder.h"
#include "ui/menus.h"

// One line an item, indented by its depth: "+" checked, "-" checkable.
static void outline(const QList<QAction*>& actions, int depth, std::string& text) {
    for (const QAction* action : actions) {
        text += std::string(std::size_t(2 * depth), ' ');
        if (action->isSeparator()) {
            text += "----\n";
            continue;
        }
        if (action->isCheckable()) text += action->isChecked() ? "+" : "-";
        text += action->text().toStdString() + "\n";
        if (action->menu()) outline(action->menu()->actions(), depth + 1, text);
    }
}

static const char* const wholetree = R"(&File
  &New
  &Open...
  &Import model...
  Save &As...
  &Print
  ----
  Save Settings
  Get Settings
  Model Size...
  ----
  E&xit
  ----
&Edit
  Undo
  Delete
  Cu&t
  C&opy
  &Paste
  ----
  Drag/Drop
  Modify Selection...
  Refine elements
  Numerical Interface
  Findpatch
&Select
  +Nodes
  -Elements
  -Patches
  -Forces
  -Graphics
  -Snap
&Add
  +Ready
  -Free Node
  -Element...
  -Mesh...
  -Object...
  ----
  -Constraints...
  Loads
    Nodal Loads or Mass
    Element Pressure Loads
    Line Pressure Loads
  ----
  Graphics
    -Line
    -Circle Section
    -Curve
    ----
    Intersection
    Extend line
    Connect 3-D
&Define
  Element Group...
  Loadcase
  Object...
  Group Settings ....
&Settings
  &Colors ...
  &Font ...
    Node Labels...
    Element Lables...
  +Scrollbars
  +Global Axis
  -Local Axis
  Options...
  Symbols ...
  Toolbars ...
  -End Releases
&view
  &View Set...
  &Redraw
  ----
  +&Nodes
  +&Elements
  +&Constrains
  &Loads
    -Off
    -Active Loadcase
    +All Loadcases
    -Active Load combination
  +Graphic Elements
  -Patches
  Node labels
    +Off
    -Numbers
    -Names
  Element Label
    +Off
    -Number
    -Type
    -Group
    -Color code
    -Name
  ----
  Window
  -Hidden Line
A&nalyse
  Check model
  Options...
  Analyse
&Post-Process
  Load Combinations ...
  ----
  -Deformed Shape
  -Contour plot
  -Mode Shape
  -Element Stress 
  Report...
  ----
  Options...
Information
  Info
  User Manual...
  &About Kalvane...
  Model info...
  Run Demo
)";

TEST(Mainwindow, TheMenuTreeIsWhole) {
    const sessionroom room;
    QMenuBar bar;
    buildmenus(&bar);
    std::string text;
    outline(bar.actions(), 0, text);
    EXPECT_EQ(text, wholetree);
    EXPECT_FALSE(menuaction("mnuEditItem", 0)->isEnabled()) << "nothing was moved yet";
}

TEST(Mainwindow, AnAnalysisLocksWhatChangesModelOrFiles) {
    const sessionroom room;
    QMenuBar bar;
    buildmenus(&bar);
    for (const bool locked : {true, false}) {
        menulock = locked;
        refreshmenus();
        for (const QAction* menu : bar.actions()) {
            const QString caption = menu->text();
            const bool free = caption == "&Select" || caption == "&Settings" ||
                              caption == "&view" || caption == "Information";
            EXPECT_EQ(menu->isEnabled(), free || !locked) << caption.toStdString();
        }
        for (const auto& [array, i] : {std::pair("mnuFileItem", 1), std::pair("mnuEditItem", 1),
                                       std::pair("menuanalyseitem", 2)})
            EXPECT_EQ(menuaction(array, i)->isEnabled(), !locked) << "its shortcut stays away";
        QWidget parent;
        for (const QAction* item : popupmenu(2, &parent)->actions())
            EXPECT_FALSE(locked && item->isEnabled()) << item->text().toStdString();
    }
}

// A width under 8000 twips is raised to 8000, a height under 6000 to 8000; 15 twips are a pixel.
TEST(Mainwindow, IsNeverSmallerThanItsLeastSize) {
    const sessionroom room;
    mainwindow window;
    window.ending = true;
    window.show();
    window.setMinimumSize(1, 1);
    const double pixel = window.logicalDpiX() / 1440.0;
    const struct {
        double width, height, leastwidth, leastheight;  // twips
    } cases[] = {{3000, 3000, 8000, 8000}, {9000, 5900, 9000, 8000}, {12000, 9000, 12000, 9000}};
    for (const auto& c : cases) {
        window.resize(int(c.width * pixel), int(c.height * pixel));
        QApplication::processEvents();
        EXPECT_NEAR(window.height(), c.leastheight * pixel, 1) << c.height;
        EXPECT_GE(window.width(), int(c.leastwidth * pixel)) << c.width;
    }
}
