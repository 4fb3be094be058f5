// SPDX-License-Identifier: GPL-3.0-or-later
// The toolbars of the main window, built from the table of actions.
#include <QComboBox>
#include <QMenu>
#include <QToolBar>
#include <QToolButton>

#include "core/session.h"
#include "ui/mainwindow.h"
#include "ui/menus.h"

static const struct {
    const char *name, *title;
    Qt::ToolBarArea area;
} bars[] = {
    {"filebar", "File", Qt::TopToolBarArea},
    {"editbar", "Edit", Qt::TopToolBarArea},
    {"selectbar", "Selection", Qt::TopToolBarArea},
    {"graphicbar", "Graphics", Qt::LeftToolBarArea},  // the row on top is full
    {"draftbar", "Drawing tools", Qt::LeftToolBarArea},
    {"scriptbar", "Script", Qt::LeftToolBarArea},
    {"viewbar", "View", Qt::TopToolBarArea},
    {"jobbar", "Job", Qt::TopToolBarArea},
};

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

static void addbutton(QToolBar* bar, const action& row, const actionplace& place) {
    const QString beside = QString("%1/%2").arg(place.where, place.name);
    if (*place.name == 0) return bar->addAction(row.item);
    auto* const button = new QToolButton(bar);
    button->setObjectName(place.name);
    button->setDefaultAction(row.item);
    if (row.list) button->setMenu(menuoflist(button, row));
    if (!actionsat(beside).empty()) button->setMenu(menuofplace(button, row, beside));
    if (button->menu()) button->setPopupMode(QToolButton::MenuButtonPopup);
    bar->addWidget(button);
}

static void fillbar(QToolBar* bar) {
    int before = -1;
    for (const auto& [row, place] : actionsat(bar->objectName())) {
        if (QString(place->where) != bar->objectName()) continue;  // beside one of its buttons
        if (before >= 0 && before / 10 != place->order / 10) bar->addSeparator();
        before = place->order;
        addbutton(bar, *row, *place);
    }
}

void mainwindow::buildtoolbars() {
    for (action& row : ::actions())
        if (*row.menu == 0) addAction(makeitem(row, this));  // its keys work in the whole window
    for (const auto& [name, title, area] : bars) {
        auto* const bar = new QToolBar(tr(title), this);
        bar->setObjectName(name);
        bar->setIconSize(QSize(20, 20));
        addToolBar(area, bar);
        fillbar(bar);
    }
    auto* const select = findChild<QToolBar*>("selectbar");
    selectmethod = new QComboBox(select);
    selectmethod->setObjectName("selectmethod");
    selectmethod->setToolTip(tr("Selection method"));
    selectmethod->addItems({"Single", "Window", "Group", "All"});
    select->addWidget(selectmethod);
    connect(selectmethod, &QComboBox::activated, this, [](int i) { selecttype = selecttypes(i); });
}
