// SPDX-License-Identifier: GPL-3.0-or-later
// The buttons of the journal, and what may change the model.
#include "ui/steps.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPlainTextEdit>

#include "core/journal.h"
#include "core/session.h"
#include "edit/Mouseprocedures.h"
#include "edit/selection.h"
#include "ui/actions.h"
#include "ui/mainwindow.h"
#include "view/moddraw.h"

// --- taking steps -------------------------------------------------------------------------------

// A dialog holds numbers of the model as it is; a selection that one waits for is its own.
static bool maystep() {
    return !menulock && !isselectionpending() && QApplication::activeModalWidget() == nullptr;
}

void stepby(int count, bool back) {
    if (!maystep()) {
        theplatform().message("Close the dialog first; steps are taken in the main window",
                              icons::information);
        return;
    }
    const hourglass wait;
    pasteflag = false;  // what goes back to where it came from merges with nothing
    addready();
    hideselection();
    back ? stepback(count) : stepforward(count);
    redrawall();
    readyprompt();
}

// --- the buttons --------------------------------------------------------------------------------

std::vector<std::string> stepnames(bool back) {
    const std::size_t most = 20;  // in the list of a button
    return back ? stepsback(most) : stepsforward(most);
}

void showsteps() {
    for (const char* name : {"stepback", "stepforward"}) {
        const action* const row = findaction(name);
        if (row == nullptr || !row->item) continue;  // the window is still to come
        const std::vector<std::string> names = row->list();
        const QString what =
            names.empty() ? QObject::tr("nothing to take") : QString::fromStdString(names.front());
        row->item->setEnabled(isallowed(*row));
        const std::string reason = reasonof(*row);
        row->item->setToolTip(
            QString("%1: %2 (%3)").arg(row->caption, what, QString(row->keys).section(';', 0, 0)) +
            (reason.empty() ? QString() : "\n" + QString::fromStdString(reason)));
    }
}

void wiresteps() {
    afterstep = [](bool stale) {
        showsteps();
        if (!stale) return;
        theplatform().refresh();
        for (const int i : {1, 2, 3, 4})
            if (menupostItem(i).checked) return redrawall();
    };
}

// --- doors --------------------------------------------------------------------------------------

// A key that only types into a field.
static bool istyping(const QObject* receiver, const QKeyEvent* key) {
    const bool field = receiver->inherits("QLineEdit") || receiver->inherits("QPlainTextEdit");
    return field && !key->text().isEmpty() && key->text()[0].isPrint();
}

bool maychangemodel(QObject* receiver, const QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick: {
            const auto button = static_cast<const QMouseEvent*>(event)->button();
            if (button != Qt::LeftButton && button != Qt::RightButton) return false;
            return receiver->isWidgetType() && !qobject_cast<QMenuBar*>(receiver) &&
                   !qobject_cast<QMenu*>(receiver) && !qobject_cast<QAbstractSlider*>(receiver);
        }
        case QEvent::KeyPress:
            return receiver->isWidgetType() &&
                   !istyping(receiver, static_cast<const QKeyEvent*>(event));
        case QEvent::KeyRelease:  // the space key presses a button when it is let go
            return qobject_cast<QAbstractButton*>(receiver) != nullptr;
        case QEvent::Shortcut:
        case QEvent::Drop:
        case QEvent::Close:
            return true;
        default:
            return false;
    }
}

void suggeststep(const QObject* receiver) {
    const auto* const w = qobject_cast<const QWidget*>(receiver);
    if (!w) return;
    QString name;
    if (const auto* b = qobject_cast<const QAbstractButton*>(w)) name = b->text().remove('&');
    if (qobject_cast<const QDialog*>(w->window())) {
        const QString title = w->window()->windowTitle().trimmed();
        name = name.isEmpty() ? title : title + ": " + name;
    }
    if (!name.isEmpty()) suggestname(name.toStdString());
}
