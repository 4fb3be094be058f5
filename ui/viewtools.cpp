// SPDX-License-Identifier: GPL-3.0-or-later
// Tools and keys of the active view.
#include "ui/viewtools.h"

#include <QAction>
#include <QKeyEvent>
#include <QToolBar>

#include "core/session.h"
#include "core/views.h"
#include "edit/Mouseprocedures.h"
#include "ui/icons.h"
#include "ui/mainwindow.h"
#include "ui/viewwidget.h"
#include "view/moddraw.h"
#include "view/setviews.h"

static const double turnstep = 5;  // degrees
static const double panstep = 1;   // centimetres on the surface

namespace {
struct viewtool {
    const char *icon, *tip, *key;
    void (*run)();
};
}  // namespace

static const viewtool viewtools[] = {
    {"redraw", "Redraw", "", [] { redrawall(); }},
    {"fit", "Fit the model to the view", "Ctrl+0", [] { fitview(activeview); }},
    {"zoomout", "Half size", "Ctrl+-", [] { scaleview(activeview, 0.5); }},
    {"zoomwindow", "Zoom window", "", startzoomwindow},
    {"iso", "ISO", "Ctrl+1", [] { setpreset(activeview, 0); }},
    {"viewxy", "X-Y", "Ctrl+2", [] { setpreset(activeview, 1); }},
    {"viewxz", "X-Z", "Ctrl+3", [] { setpreset(activeview, 2); }},
    {"viewyz", "Y-Z", "Ctrl+4", [] { setpreset(activeview, 3); }},
    {"turnright", "Turn right", "Ctrl+Right", [] { turnview(activeview, turnstep, 0); }},
    {"turnleft", "Turn left", "Ctrl+Left", [] { turnview(activeview, -turnstep, 0); }},
    {"turnup", "Turn up", "Ctrl+Up", [] { turnview(activeview, 0, turnstep); }},
    {"turndown", "Turn down", "Ctrl+Down", [] { turnview(activeview, 0, -turnstep); }},
};

// Beside the tools that act on the active view: the two layouts.
static const viewtool layouttools[] = {
    {"onewindow", "One view", "Ctrl+5",
     [] {
         setoneview();
         redrawall();
     }},
    {"fourwindows", "Four views", "Ctrl+6",
     [] {
         setfourviews();
         redrawall();
     }},
};

static void addtool(QToolBar* bar, const viewtool& tool, const QString& name) {
    QAction* const action = bar->addAction(iconof(tool.icon), QObject::tr(tool.tip), tool.run);
    action->setObjectName(name);
    if (*tool.key == 0) return;
    action->setShortcut(QKeySequence(tool.key));
    action->setToolTip(QString("%1 (%2)").arg(action->text(), tool.key));
}

void addviewtools(QToolBar* bar) {
    int number = 0;
    for (const viewtool& tool : viewtools)
        addtool(bar, tool, QString("viewtool(%1)").arg(number++));
    bar->addSeparator();
    addtool(bar, layouttools[0], "oneview");
    addtool(bar, layouttools[1], "fourviews");
    // A button of each view, by a key here alone.
    auto* const larger = new QAction(bar);
    larger->setShortcuts({QKeySequence("Ctrl++"), QKeySequence("Ctrl+=")});
    QObject::connect(larger, &QAction::triggered, [] { scaleview(activeview, 2); });
    bar->window()->addAction(larger);
}

static void nextview() {
    activeview = activeview % shownviews() + 1;
    themainwindow->view(activeview)->setFocus();
    themainwindow->showstatus(QString::fromStdString(statusline()) +
                              QObject::tr("   View %1").arg(int(activeview)));
}

bool isviewkey(const QKeyEvent* event) {
    double right = 0, down = 0;
    switch (event->key()) {
        case Qt::Key_F6:
            nextview();
            return true;
        case Qt::Key_Left:
            right = -panstep;
            break;
        case Qt::Key_Right:
            right = panstep;
            break;
        case Qt::Key_Up:
            down = -panstep;
            break;
        case Qt::Key_Down:
            down = panstep;
            break;
        default:
            return false;
    }
    panview(activeview, -right, -down);
    drawview(activeview);
    return true;
}
