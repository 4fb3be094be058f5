// SPDX-License-Identifier: GPL-3.0-or-later
// Keys of the active view.
#include "ui/viewkeys.h"

#include <QKeyEvent>

#include "core/session.h"
#include "core/views.h"
#include "ui/mainwindow.h"
#include "ui/viewwidget.h"
#include "view/moddraw.h"
#include "view/setviews.h"

static const double panstep = 1;  // centimetres on the surface

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
