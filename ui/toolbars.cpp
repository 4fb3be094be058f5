// SPDX-License-Identifier: GPL-3.0-or-later
// The toolbars of the main window.
#include <QComboBox>
#include <QMenu>
#include <QToolBar>
#include <QToolButton>

#include "core/runtime.h"
#include "core/session.h"
#include "files/filemenu.h"
#include "files/filop.h"
#include "files/saving.h"
#include "post/shapes.h"
#include "ui/dialogs.h"
#include "ui/icons.h"
#include "ui/mainwindow.h"
#include "ui/menus.h"
#include "ui/printing.h"
#include "ui/steps.h"
#include "ui/viewtools.h"

static QToolBar* newbar(QMainWindow* window, const char* name, const QString& title) {
    QToolBar* const bar = window->addToolBar(title);
    bar->setObjectName(name);
    bar->setIconSize(QSize(20, 20));
    return bar;
}

// Saves under the model's name, or asks for one.
static void savenow() {
    if (isnamed())
        savemodel();
    else if (menusave() == reply::done)
        addrecentfile();
}

// Print, and beside it what prepares for it.
static QToolButton* printbutton(QMainWindow* window) {
    struct printtool {
        const char *name, *caption, *shortcut;
        void (*run)();
    };
    static const printtool tools[] = {
        {"printpreviewbutton", "Print preview...", "Ctrl+Shift+P", showprintpreview},
        {"printsetupbutton", "Page setup...", "", showprintsetup},
        {"printpdfbutton", "Print to PDF...", "Ctrl+Shift+F", printtopdf},
    };
    auto* const button = new QToolButton(window);
    auto* const menu = new QMenu(button);
    menu->addAction(menuaction("mnuFileItem", 4));
    for (const printtool& tool : tools) {
        QAction* const action =
            menu->addAction(QObject::tr(tool.caption), window, [&tool] { tool.run(); });
        action->setObjectName(tool.name);
        if (*tool.shortcut) action->setShortcut(QKeySequence(tool.shortcut));
        window->addAction(action);
    }
    button->setDefaultAction(menuaction("mnuFileItem", 4));
    button->setMenu(menu);
    button->setPopupMode(QToolButton::MenuButtonPopup);
    button->setObjectName("printbutton");
    return button;
}

void mainwindow::buildtoolbars() {
    QToolBar* const file = newbar(this, "filebar", tr("File"));
    for (int i : {0, 1}) file->addAction(menuaction("mnuFileItem", i));
    QAction* const save = file->addAction(iconof("save"), tr("Save"), [] { savenow(); });
    save->setObjectName("savebutton");
    save->setShortcut(QKeySequence::Save);
    save->setToolTip(tr("Save the model under its name (Ctrl+S)"));
    file->addWidget(printbutton(this));

    QToolBar* const edit = newbar(this, "editbar", tr("Edit"));
    addsteptools(edit);
    for (int i : {1, 3, 4}) edit->addAction(menuaction("mnuEditItem", i));

    QToolBar* const select = newbar(this, "selectbar", tr("Selection"));
    static const int order[] = {0, 1, 4, 2, 3};  // Nodes, Elements, Graphics, then the others
    for (std::size_t i = 0; i < modify.size(); ++i) {
        QAction* const action = menuaction("MnuSelectItem", order[i]);
        modify[i] = new QToolButton(select);
        modify[i]->setDefaultAction(action);
        modify[i]->setObjectName(QString("Modify(%1)").arg(i));
        select->addWidget(modify[i]);
    }
    select->addAction(menuaction("MnuSelectItem", 5));
    selectmethod = new QComboBox(select);
    selectmethod->setObjectName("selectmethod");
    selectmethod->setToolTip(tr("Selection method"));
    selectmethod->addItems({"Single", "Window", "Group", "All"});
    select->addWidget(selectmethod);
    connect(selectmethod, &QComboBox::activated, this, [](int i) { selecttype = selecttypes(i); });

    // Along the left border: the row on top is full.
    QToolBar* const graphics = newbar(this, "graphicbar", tr("Graphics"));
    addToolBar(Qt::LeftToolBarArea, graphics);
    for (int i : {0, 1, 2, 4, 5, 6}) graphics->addAction(menuaction("Mnugraphicitem", i));
    graphics->addAction(menuaction("mnuEditItem", 7));
    graphics
        ->addAction(iconof("options"), tr("Graphic Element Options"),
                    [] { theplatform().showdialog("graphoptions"); })
        ->setObjectName("graphoptionsbutton");

    addviewtools(newbar(this, "viewbar", tr("View")));

    QToolBar* const job = newbar(this, "jobbar", tr("Job"));
    for (const auto& [array, i] :
         {std::pair("definegroup", 0), std::pair("definegroup", 1), std::pair("Loadcase", 0),
          std::pair("Mnuadditem", 3), std::pair("Mnuadditem", 6), std::pair("menuanalyseitem", 2),
          std::pair("menupostItem", 1), std::pair("menupostItem", 2), std::pair("menupostItem", 5)})
        job->addAction(menuaction(array, i));
}
