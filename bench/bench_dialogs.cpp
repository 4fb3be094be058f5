// SPDX-License-Identifier: GPL-3.0-or-later
// The window over a model of a million nodes: the opening of every dialog until it is painted, and
// what a typed character, a moved pointer and a click wait for.
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <filesystem>

#include "bench/largemodel.h"
#include "bench/ratio.h"
#include "core/journal.h"
#include "core/session.h"
#include "core/start.h"
#include "edit/Mouseprocedures.h"
#include "edit/move.h"
#include "edit/selection.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/qtplatform.h"
#include "ui/startup.h"
#include "ui/viewwidget.h"
#include "view/moddraw.h"
#include "view/setviews.h"

static const double wanted = 0.05;  // seconds

static void printtime(const std::string& what, double time) {
    std::printf("%-46s ours %8.4f s%s\n", what.c_str(), time, time > wanted ? "  ABOVE" : "");
}

static QDialog* opened(const std::string& name) {
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->isVisible() && w->objectName().toStdString() == name)
            return qobject_cast<QDialog*>(w);
    return nullptr;
}

static void benchdialogs() {
    for (const std::string& name : dialognames()) {
        std::vector<double> times;
        for (int i = 0; i < 3; ++i) {
            times.push_back(secondsof([&] {
                opendialog(name);
                QApplication::processEvents();
            }));
            if (QDialog* const dialog = opened(name)) dialog->reject();
            QApplication::processEvents();
            QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        printtime("dialog " + name, median(times));
    }
}

static void sendmouse(QWidget* view, QEvent::Type type, QPointF at, Qt::MouseButtons held) {
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, view->mapToGlobal(at), button, held, Qt::NoModifier);
    QApplication::sendEvent(view, &event);
}

static void benchhands(const mainwindow& window) {
    QWidget* const view = window.view(1);
    std::vector<double> moved, clicked, typed;
    for (int i = 0; i < 15; ++i) {
        const QPointF at(200 + 7 * i, 150 + 5 * i);
        moved.push_back(secondsof([&] {
            sendmouse(view, QEvent::MouseMove, at, Qt::NoButton);
            QApplication::processEvents();
        }));
        clicked.push_back(secondsof([&] {
            sendmouse(view, QEvent::MouseButtonPress, at, Qt::LeftButton);
            sendmouse(view, QEvent::MouseButtonRelease, at, Qt::NoButton);
            QApplication::processEvents();
        }));
        typed.push_back(secondsof([&] {
            QKeyEvent key(QEvent::KeyPress, Qt::Key_1, Qt::NoModifier, "1");
            QApplication::sendEvent(QApplication::focusWidget(), &key);
            QApplication::processEvents();
        }));
    }
    printtime("a moved pointer", median(moved));
    printtime("a click on a node", median(clicked));
    printtime("a typed character", median(typed));
}

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    guardedapplication application(argc, argv);
    const std::string folder =
        (std::filesystem::temp_directory_path() / "kalvane-bench-window").string();
    std::filesystem::create_directories(folder);
    setplatform(&theqtplatform());
    theqtplatform().scripted = true;
    programdir = QCoreApplication::applicationDirPath().toStdString();
    wiremodules();
    wiredialogs();
    for (const char* name : {"ELTYP.DAT", "ELDES.DAT"})
        std::filesystem::copy_file(programdir + "/" + name, folder + "/" + name,
                                   std::filesystem::copy_options::overwrite_existing);
    start(folder);
    makelargemodel(1000);
    startjournal();
    mainwindow window;
    window.ending = true;
    window.resize(1366, 768);
    window.show();
    QApplication::processEvents();
    redrawall();
    benchhands(window);
    benchdialogs();
    setplatform(nullptr);
}
