// SPDX-License-Identifier: GPL-3.0-or-later
// Entry of the window program: arguments, the wiring of the modules, the start of the session.
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QTextStream>
#include <QTimer>

#include "core/appdir.h"
#include "core/model.h"
#include "core/session.h"
#include "core/start.h"
#include "files/filemenu.h"
#include "ui/dialogs.h"
#include "ui/icons.h"
#include "ui/mainwindow.h"
#include "ui/qtplatform.h"
#include "ui/script.h"
#include "ui/startup.h"
#include "ui/theme.h"
#include "view/setviews.h"

static int playscript(const QString& file) {
    theplatform().scripted = true;
    scriptplayer player;
    const bool good = player.load(file) && player.play();
    themainwindow->ending = true;
    deletecontrolfile();
    if (!good) QTextStream(stderr) << player.fault << "\n";
    return good ? 0 : 1;
}

static bool isdisplayless() {
    return qEnvironmentVariableIsEmpty("DISPLAY") &&
           qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
           qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

int main(int argc, char** argv) {
    if (isdisplayless()) qputenv("QT_QPA_PLATFORM", "offscreen");
    guardedapplication application(argc, argv);
    QApplication::setApplicationName("Kalvane");
    QApplication::setApplicationVersion(KALVANE_VERSION);
    QApplication::setWindowIcon(programicon());

    QCommandLineParser arguments;
    arguments.setApplicationDescription("Finite-element workbench");
    arguments.addHelpOption();
    arguments.addVersionOption();
    arguments.addOption({"script", "Play <file> without pauses and exit.", "file"});
    arguments.addOption({"theme", "Colours of the window: <dark> or <light>.", "theme"});
    arguments.addPositionalArgument("model", "Model to open (.tek).", "[model]");
    arguments.process(application);
    if (const QString theme = arguments.value("theme"); !theme.isEmpty() && !settheme(theme)) {
        QTextStream(stderr) << "--theme takes dark or light, not " << theme << "\n";
        return 1;
    }
    const QString script = arguments.value("script");
    const QString scriptpath = script.isEmpty() ? script : QFileInfo(script).absoluteFilePath();
    QString model = arguments.positionalArguments().value(0);
    if (!model.isEmpty()) model = QFileInfo(model).absoluteFilePath();

    setdoor(&theplatform());
    theplatform().scripted = !scriptpath.isEmpty();
    wiremodules();
    loadspringpictures();
    programdir = QCoreApplication::applicationDirPath().toStdString();
    if (!start(findappdir(programdir, programdir + "/../share/kalvane"))) return 1;

    mainwindow window;
    showmainwindow(window, !scriptpath.isEmpty());
    if (!scriptpath.isEmpty()) return playscript(scriptpath);
    if (!model.isEmpty()) QTimer::singleShot(0, &window, [&] { openfile(model.toStdString()); });
    return QApplication::exec();
}
