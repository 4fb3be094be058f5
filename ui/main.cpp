// SPDX-License-Identifier: GPL-3.0-or-later
// Entry of the window program: arguments, the wiring of the modules, the start of the session.
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QTextStream>
#include <QTimer>

#include "core/appdir.h"
#include "core/journal.h"
#include "core/model.h"
#include "core/session.h"
#include "core/start.h"
#include "files/filemenu.h"
#include "files/saveset.h"
#include "files/solverlock.h"
#include "ui/dialogs.h"
#include "ui/icons.h"
#include "ui/mainwindow.h"
#include "ui/qtplatform.h"
#include "ui/recovery.h"
#include "ui/script.h"
#include "ui/startup.h"
#include "ui/theme.h"
#include "view/setviews.h"

static int playscript(const QString& file) {
    theqtplatform().scripted = true;
    scriptplayer player;
    const bool good = player.load(file) && player.play();
    themainwindow->ending = true;
    deletecontrolfile();
    endrecovery();
    if (!good) QTextStream(stderr) << onterminal(player.fault) << "\n";
    return good ? 0 : 1;
}

static int refusestart(const QString& reason) {
    QTextStream(stderr) << "kalvane: " << onterminal(reason) << "\n";
    return 1;
}

// The home that is asked for, made where it is missing. False after a line or a box that says why
// the session can not begin.
static bool startsession() {
    programdir = QCoreApplication::applicationDirPath().toStdString();
    const std::string home = findappdir(programdir, programdir + "/../share/kalvane");
    if (!QFileInfo(QString::fromStdString(home)).isDir())
        theplatform().message("The folder for catalogue and settings can not be made: " + home +
                                  ". Set KALVANE_HOME to a folder that can be written",
                              icons::critical);
    else if (start(home))
        return true;
    refusestart(QString::fromStdString(theqtplatform().lastmessage));
    return false;
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
    if (const QString theme = arguments.value("theme"); !theme.isEmpty() && !settheme(theme))
        return refusestart("--theme takes dark or light, not " + theme);
    const QStringList models = arguments.positionalArguments();
    const QString script = arguments.value("script");
    if (arguments.isSet("script") && script.isEmpty())
        return refusestart("--script takes the name of a file");
    if (models.size() > (arguments.isSet("script") ? 0 : 1))
        return refusestart("one model or one script can be opened, not also " + models.last());
    const QString scriptpath = script.isEmpty() ? script : QFileInfo(script).absoluteFilePath();
    QString model = models.value(0);
    if (!model.isEmpty()) model = QFileInfo(model).absoluteFilePath();

    setplatform(&theqtplatform());
    theqtplatform().scripted = !scriptpath.isEmpty();
    wiremodules();
    loadspringpictures();
    if (!startsession()) return 1;
    notesaved();
    deletecontrolfile();  // of a window that was killed
    sweepfolder(appdir + "/");

    mainwindow window;
    showmainwindow(window, !scriptpath.isEmpty());
    wirerecovery();
    offerrecovery();
    if (!scriptpath.isEmpty()) return playscript(scriptpath);
    if (!model.isEmpty())
        QTimer::singleShot(0, &window, [&] {
            const step s("Open");
            openfile(model.toStdString());
        });
    const int code = QApplication::exec();
    endrecovery();
    return code;
}
