// SPDX-License-Identifier: GPL-3.0-or-later
// Buttons and bars.
#include "ui/toolbars.h"

#include <QComboBox>
#include <QMenu>
#include <QToolButton>
#include <QWidgetAction>
#include <algorithm>

#include "core/session.h"
#include "ui/mainwindow.h"
#include "ui/menus.h"

// The action itself and what is prepared for beside it.
static QMenu* menuofplace(QToolButton* button, const action& row, const QString& where) {
    auto* const menu = new QMenu(button);
    menu->addAction(row.item);
    for (const auto& [beside, place] : actionsat(where)) menu->addAction(beside->item);
    return menu;
}

// What the action could be done with, asked for when the list opens.
static QMenu* menuoflist(QToolButton* button, const action& row) {
    auto* const menu = new QMenu(button);
    QObject::connect(menu, &QMenu::aboutToShow, menu, [menu, &row] {
        menu->clear();
        int number = 0;
        for (const std::string& caption : row.list())
            menu->addAction(QString::fromStdString(caption), menu,
                            [&row, i = ++number] { runlisted(row, i); });
    });
    return menu;
}

// The name of the button that the row has on this bar, where it has one.
static QString buttonname(const action& row, const QString& bar) {
    for (const actionplace& place : row.places)
        if (bar == place.where) return place.name;
    return {};
}

static QAction* newbutton(QToolBar* bar, const action& row) {
    const QString name = buttonname(row, bar->objectName());
    if (name.isEmpty()) return row.item;
    const QString beside = bar->objectName() + "/" + name;
    auto* const button = new QToolButton(bar);
    button->setObjectName(name);
    button->setDefaultAction(row.item);
    if (row.list) button->setMenu(menuoflist(button, row));
    if (!actionsat(beside).empty()) button->setMenu(menuofplace(button, row, beside));
    if (button->menu()) button->setPopupMode(QToolButton::MenuButtonPopup);
    button->setToolButtonStyle(bar->toolButtonStyle());
    button->setIconSize(bar->iconSize());
    QObject::connect(bar, &QToolBar::iconSizeChanged, button, &QToolButton::setIconSize);
    QObject::connect(bar, &QToolBar::toolButtonStyleChanged, button,
                     &QToolButton::setToolButtonStyle);
    auto* const holder = new QWidgetAction(bar);
    holder->setDefaultWidget(button);
    return holder;
}

static const char* const ofplan = "ofplan";  // property of what Toolbaradd has made

void Toolbaradd(QToolBar* bar, const toolbarplan& plan) {
    QList<QAction*> own;
    for (QAction* item : bar->actions()) {
        const bool made = item->property(ofplan).toBool();
        if (!made && qobject_cast<QWidgetAction*>(item)) {
            own << item;
            continue;
        }
        bar->removeAction(item);
        if (made) delete item;
    }
    QAction* const before = own.value(0);
    for (const QString& name : plan.actions) {
        const action* const row = findaction(name.toStdString());
        if (!name.isEmpty() && (!row || !row->item)) continue;
        QAction* const item = row ? newbutton(bar, *row) : new QAction(bar);
        if (!row) item->setSeparator(true);
        if (!row || item != row->item) item->setProperty(ofplan, true);
        bar->insertAction(before, item);
    }
}

QToolBar* Coolbaradd(QMainWindow* window, const toolbarplan& plan) {
    auto* const bar = new QToolBar(plan.caption, window);
    bar->setObjectName(plan.name);
    window->addToolBar(plan.area, bar);
    return bar;
}

void showtoolbars(QMainWindow* window, const toolbarset& set) {
    window->setToolButtonStyle(set.style);
    window->setIconSize(QSize(set.size, set.size));
    for (const toolbarplan& plan : set.bars) {
        auto* const bar = window->findChild<QToolBar*>(plan.name);
        if (!bar) continue;
        Toolbaradd(bar, plan);
        bar->setVisible(plan.shown);
    }
    wraptoolbars(window);
}

void wraptoolbars(QMainWindow* window) {
    static const char* const wrapped = "wrapped";  // property: the second row was made here
    auto* const second = window->findChild<QToolBar*>("viewbar");
    if (!second || window->toolBarArea(second) != Qt::TopToolBarArea) return;
    int wide = 0;
    for (QToolBar* bar : window->findChildren<QToolBar*>()) {
        if (window->toolBarArea(bar) != Qt::TopToolBarArea || bar->isFloating()) continue;
        if (window->toolBarBreak(bar) && !(bar == second && window->property(wrapped).toBool()))
            return;
        if (!bar->isHidden()) wide += bar->sizeHint().width();
    }
    const bool wraps = wide > window->width();
    if (wraps == window->toolBarBreak(second)) return;
    wraps ? window->insertToolBarBreak(second) : window->removeToolBarBreak(second);
    window->setProperty(wrapped, wraps);
}

void mainwindow::buildtoolbars() {
    for (action& row : ::actions())
        if (*row.menu == 0) addAction(makeitem(row, this));  // its keys work in the whole window
    const toolbarset set = deliveredtoolbars();
    for (const toolbarplan& plan : set.bars) Coolbaradd(this, plan);
    auto* const select = findChild<QToolBar*>("selectbar");
    selectmethod = new QComboBox(select);
    selectmethod->setObjectName("selectmethod");
    selectmethod->setToolTip(tr("Selection method"));
    selectmethod->addItems({"Single", "Window", "Group", "All", "Lasso"});
    select->addWidget(selectmethod);
    connect(selectmethod, &QComboBox::activated, this, [](int i) { selecttype = selecttypes(i); });
    showtoolbars(this, set);
}
