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

// The items without a menu of their own as "menu/item", without the marks of their keys.
static void leavesof(const QList<QAction*>& actions, const QString& path, QStringList& leaves,
                     QStringList& checked) {
    for (const QAction* action : actions) {
        const QString name = path + action->text().remove('&');
        if (action->menu())
            leavesof(action->menu()->actions(), name + "/", leaves, checked);
        else if (!action->isSeparator())
            leaves << name;
        if (action->isChecked()) checked << name;
    }
}

TEST(Mainwindow, TheMenuTreeIsWhole) {
    const sessionroom room;
    QMenuBar bar;
    buildmenus(&bar);
    QStringList leaves, checked;
    leavesof(bar.actions(), "", leaves, checked);
    EXPECT_EQ(leaves.size(), 91);
    EXPECT_EQ(leaves.removeDuplicates(), 0);
    for (const char* item : {"Define/Group Settings ....", "Settings/Font .../Element Lables...",
                             "Post-Process/Element Stress ", "Add/Loads/Nodal Loads or Mass"})
        EXPECT_TRUE(leaves.contains(item)) << item;
    EXPECT_EQ(
        checked,
        QStringList({"Select/Nodes", "Add/Ready", "Settings/Scrollbars", "Settings/Global Axis",
                     "view/Nodes", "view/Elements", "view/Constrains", "view/Loads/All Loadcases",
                     "view/Graphic Elements", "view/Node labels/Off", "view/Element Label/Off"}));
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
