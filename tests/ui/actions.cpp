// SPDX-License-Identifier: GPL-3.0-or-later
// The table of actions: its rows are whole, and F1 leads from each to its topic.
#include "ui/actions.h"

#include <gtest/gtest.h>

#include <QMenu>
#include <set>

#include "core/session.h"
#include "tests/support/recorder.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/menus.h"
#include "ui/qtplatform.h"
#include "ui/script.h"
#include "ui/scriptcontrols.h"

TEST(Actions, EveryVerbOfScriptsIsInTheManual) {
    const std::string manual = contentof(sourcedir() + "/data/manual.htm");
    for (const scriptverb& verb : scriptverbs())
        EXPECT_NE(manual.find("<code>" + std::string(verb.name)), manual.npos) << verb.usage;
    EXPECT_GT(scriptverbs().size(), 25u);
}

TEST(Actions, EveryRowIsWhole) {
    const sessionroom room;
    mainwindow window;
    window.ending = true;
    const std::string manual = contentof(sourcedir() + "/data/manual.htm");
    std::set<std::string> names, keys;
    const std::set<std::string> hasnopicture = {"Mnuadditem(0)",
                                                "mnuloads(2)"};  // ends a mode; does nothing
    for (const action& row : actions()) {
        EXPECT_TRUE(names.insert(row.name).second) << row.name;
        if (*row.caption == 0) continue;
        EXPECT_NE(manual.find("id=\"" + std::string(row.topic) + "\""), manual.npos) << row.name;
        ASSERT_TRUE(row.item) << row.name;
        EXPECT_TRUE(std::string(row.icon).empty() || !row.item->icon().isNull())
            << row.name << " has no outline " << row.icon;
        EXPECT_FALSE(!row.isswitch && row.item->icon().isNull() && !hasnopicture.contains(row.name))
            << row.name << " has no icon";
        for (const QKeySequence& key : row.item->shortcuts())
            EXPECT_TRUE(keys.insert(key.toString().toStdString()).second) << row.name;
        for (const actionplace& place : row.places) {
            const QString where = QString(place.where).section('/', 0, 0);
            EXPECT_TRUE(where.startsWith("popup") || window.findChild<QWidget*>(where))
                << row.name << " stands in no bar " << place.where;
        }
    }
    EXPECT_GT(names.size(), 110u);
}

// Whatever makes an item grey, its tip says so.
TEST(Actions, AGreyItemTellsWhy) {
    const sessionroom room;
    mainwindow window;
    window.ending = true;
    int grey = 0;
    for (const auto& [lock, text] :
         {std::pair(&menulock, "an analysis"), std::pair(&singleel, "picks nodes"),
          std::pair(static_cast<Flag*>(nullptr), "")}) {
        if (lock) *lock = true;
        window.refresh();
        if (lock) *lock = false;
        for (const action& row : actions()) {
            if (*row.caption == 0) continue;
            EXPECT_TRUE(!row.enabled || *row.why) << row.name;
            const std::string tip = row.item->toolTip().toStdString();
            const bool told = tip.find('\n') != tip.npos && tip.back() != '\n';
            EXPECT_EQ(told, !row.item->isEnabled()) << row.name << ": " << tip;
            if (row.item->isEnabled()) continue;
            EXPECT_NE(tip.find(text), tip.npos) << row.name << ": " << tip;
            ++grey;
        }
    }
    EXPECT_GT(grey, 100);
    std::multiset<std::string> twice;  // keys that two entries of one menu have
    for (const QMenu* menu : window.findChildren<QMenu*>()) {
        std::set<QString> keys;
        for (const QAction* item : menu->actions())
            if (const QString key = QKeySequence::mnemonic(item->text()).toString(); !key.isEmpty())
                if (!keys.insert(key).second) twice.insert(item->text().toStdString());
    }
    EXPECT_TRUE(twice.empty()) << *twice.begin();
}

static void pressf1(QWidget* w) {
    presskey(w, Qt::Key_F1);
    QApplication::processEvents();
}

// The page that the help window shows; the window closes.
static std::string helptopic() {
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w->objectName() != "HelpWindow" || !w->isVisible()) continue;
        w->close();
        return w->findChild<QTextBrowser*>()->source().fragment().toStdString();
    }
    return "no help";
}

TEST(Actions, F1OpensTheTopicOfAnItemAndOfItsDialog) {
    const sessionroom room;
    writefile(appdir + "/manual.htm", contentof(sourcedir() + "/data/manual.htm"));
    setplatform(&theqtplatform());
    theqtplatform().scripted = true;
    wiredialogs();
    mainwindow window;
    window.ending = true;
    window.show();
    QMenu* const menu = qobject_cast<QMenu*>(findaction("mnuFileItem(8)")->item->parent());
    menu->popup(QPoint());
    menu->setActiveAction(findaction("mnuFileItem(8)")->item);
    pressf1(menu);
    EXPECT_EQ(helptopic(), "do-mnuFileItem(8)");
    findaction("definegroup(1)")->item->trigger();
    QApplication::processEvents();
    QWidget* const dialog = QApplication::activeModalWidget();
    ASSERT_TRUE(dialog);
    pressf1(dialog);
    EXPECT_EQ(helptopic(), "window-Loadkees");
    dialog->close();
    QMenu* const popup = popupmenu(1, &window);
    popup->popup(QPoint());
    QMenu* const drawing = popup->findChild<QMenu*>("Add Graphics");
    ASSERT_TRUE(drawing);
    drawing->setActiveAction(drawing->actions().first());
    pressf1(drawing);
    EXPECT_EQ(helptopic(), "do-Mnugraphicitem(0)");
    // In the main window it goes by what is going on there.
    QApplication::processEvents();
    findaction("contexthelp")->item->trigger();
    EXPECT_EQ(helptopic(), "window");
    findaction("Mnugraphicitem(2)")->item->trigger();
    findaction("contexthelp")->item->trigger();
    EXPECT_EQ(helptopic(), "do-Mnugraphicitem(2)");
    drawcurve = false;
    window.findChild<QWidget*>("inputtext")->setFocus();
    findaction("contexthelp")->item->trigger();
    EXPECT_EQ(helptopic(), "commands");
}
