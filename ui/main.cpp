// SPDX-License-Identifier: GPL-3.0-or-later
// Entry of the window program: arguments, the wiring of the modules, the start of the session.
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QSessionManager>
#include <QTextStream>
#include <QTimer>
#include <QWindow>
#include <optional>

#include "core/appdir.h"
#include "core/journal.h"
#include "core/model.h"
#include "core/session.h"
#include "core/start.h"
#include "files/filemenu.h"
#include "files/saveset.h"
#include "files/solverlock.h"
#include "files/solverunits.h"
#include "ui/dialogs.h"
#include "ui/examples.h"
#include "ui/icons.h"
#include "ui/mainwindow.h"
#include "ui/qtplatform.h"
#include "ui/recovery.h"
#include "ui/script.h"
#include "ui/startup.h"
#include "ui/theme.h"
#include "ui/windowsettings.h"
#include "view/setviews.h"

// Exit codes beside 0.
static const int notdone = 1, wrongusage = 2;

static int playscript(const QString& file) {
    theqtplatform().scripted = true;
    scriptplayer player;
    const bool good = player.load(file) && player.play();
    themainwindow->ending = true;
    deletecontrolfile();
    endrecovery();
    if (!good) QTextStream(stderr) << onterminal(player.fault) << "\n";
    return good ? 0 : notdone;
}

static int refusestart(const QString& reason, int code = notdone) {
    QTextStream(stderr) << "kalvane: " << onterminal(reason) << "\n";
    if (code == wrongusage) QTextStream(stderr) << "kalvane --help tells the usage\n";
    return code;
}

static const char* const usage =
    "kalvane: finite-element workbench\n"
    "\n"
    "usage: kalvane [--theme dark|light] [FILE...]\n"
    "       kalvane --script FILE\n"
    "       kalvane --help | --version\n"
    "\n"
    "FILE is a model (.tek) or a file of another program that File, Open reads; each further one\n"
    "opens in a window of its own.\n"
    "  --script FILE   play the commands of FILE without pauses and exit\n"
    "  --theme NAME    colours of the window: dark or light; none: those of the desktop\n"
    "  -h, --help      this text\n"
    "  -v, --version   the version\n"
    "\n"
    "KALVANE_HOME names the directory of catalogue and settings.\n"
    "Exit code: 0 done, 1 it could not be done, 2 the command line is wrong.\n";

namespace {
struct wanted {
    QString script;
    QStringList files;
    std::optional<int> code;  // nothing is to be started: the program ends with it
};
}  // namespace

static wanted readarguments(const QStringList& words) {
    wanted w;
    QCommandLineParser arguments;
    const QCommandLineOption help(QStringList{"h", "help"}), version(QStringList{"v", "version"});
    arguments.addOptions({help, version, {"script", "", "file"}, {"theme", "", "theme"}});
    const auto refused = [&w](const QString& reason) {
        w.code = refusestart(reason, wrongusage);
        return w;
    };
    if (!arguments.parse(words)) return refused(arguments.errorText());
    if (arguments.isSet(help) || arguments.isSet(version)) {
        QTextStream(stdout) << (arguments.isSet(help) ? usage : "kalvane " KALVANE_VERSION "\n");
        w.code = 0;
        return w;
    }
    const QString theme = arguments.value("theme");
    if (arguments.isSet("theme") && !settheme(theme))
        return refused("--theme takes dark or light, not \"" + theme + "\"");
    w.files = arguments.positionalArguments();
    const QString script = arguments.value("script");
    if (arguments.isSet("script") && script.isEmpty())
        return refused("--script takes the name of a file");
    if (arguments.isSet("script") && !w.files.empty())
        return refused("a script is played alone, not also " + w.files.first());
    for (QString& file : w.files) file = QFileInfo(file).absoluteFilePath();
    if (!script.isEmpty()) w.script = QFileInfo(script).absoluteFilePath();
    return w;
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
    else if (start(home)) {
        readsolverunits();
        restoreunits();
        return true;
    }
    refusestart(QString::fromStdString(theqtplatform().lastmessage));
    return false;
}

static bool isdisplayless() {
    return qEnvironmentVariableIsEmpty("DISPLAY") &&
           qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
           qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

// A desktop gives a window its size after it is shown; a model opened before would be fitted to
// another one.
static void openwhenshown(mainwindow& window, const QStringList& files, int waits = 0) {
    const int step = 40, most = 25;  // milliseconds, times
    const bool shown = window.windowHandle() && window.windowHandle()->isExposed();
    if (waits >= most || (shown && waits > 1)) return openmodels(files);
    QTimer::singleShot(step, &window,
                       [&window, files, waits] { openwhenshown(window, files, waits + 1); });
}

int main(int argc, char** argv) {
    if (isdisplayless()) qputenv("QT_QPA_PLATFORM", "offscreen");
    guardedapplication application(argc, argv);
    QApplication::setApplicationName("Kalvane");
    QApplication::setApplicationVersion(KALVANE_VERSION);
    QApplication::setWindowIcon(programicon());

    const wanted arguments = readarguments(QApplication::arguments());
    if (arguments.code) return *arguments.code;
    const QString scriptpath = arguments.script, model = arguments.files.value(0);

    setplatform(&theqtplatform());
    theqtplatform().scripted = !scriptpath.isEmpty();
    wiremodules();
    loadspringpictures();
    if (!startsession()) return notdone;
    notesaved();
    deletecontrolfile();  // of a window that was killed
    sweepfolder(appdir + "/");

    mainwindow window;
    showmainwindow(window, !scriptpath.isEmpty());
    wirerecovery();
    offerrecovery();
    if (!scriptpath.isEmpty()) return playscript(scriptpath);
    if (!model.isEmpty()) openwhenshown(window, arguments.files);
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &window,
                     [](QSessionManager& desktop) {
                         // Without a word to the user the copy of unsaved work has to do.
                         if (desktop.allowsInteraction() && !logoutprompt()) desktop.cancel();
                         desktop.release();
                     });
    const int code = QApplication::exec();
    endrecovery();
    return code;
}
