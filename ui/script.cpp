// SPDX-License-Identifier: GPL-3.0-or-later
// The script player.
#include "ui/script.h"

#include <QApplication>
#include <QBuffer>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QKeySequence>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QSaveFile>
#include <QTextStream>
#include <QTimer>
#include <algorithm>
#include <cmath>

#include "core/appdir.h"
#include "core/journal.h"
#include "core/runtime.h"
#include "core/session.h"
#include "core/views.h"
#include "ui/mainwindow.h"
#include "ui/menus.h"
#include "ui/qtplatform.h"
#include "ui/scriptcontrols.h"
#include "ui/viewwidget.h"
#include "view/scaleview.h"

namespace {

const int afterline = 250;  // milliseconds of the demonstration between two lines

void settle() {
    for (int i = 0; i < 3; ++i) {
        QApplication::processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

// --- commands -----------------------------------------------------------------------------------

void runmenu(const QString& path) {
    themainwindow->refresh();
    QAction* const action = findmenu(themainwindow->menuBar(), path);
    if (action == nullptr) refuse("there is no menu item " + path);
    if (!action->isEnabled()) refuse("the menu item " + path + " is disabled");
    action->trigger();
}

viewwidget* viewof(const QString& word) {
    bool good = false;
    const int v = word.toInt(&good);
    if (!good || v < 1 || v > nviews || !themainwindow->view(v)->isVisible())
        refuse("there is no view " + word + " on show");
    return themainwindow->view(v);
}

double numberin(const QString& word) {
    bool good = false;
    const double value = word.toDouble(&good);
    if (!good) refuse("\"" + word + "\" is no number");
    return value;
}

void mouse(viewwidget* w, QEvent::Type kind, const QPointF& cm, Qt::MouseButton button,
           Qt::MouseButtons held) {
    const QPointF at = cm * w->pixelspercm();
    QMouseEvent event(kind, at, w->mapToGlobal(at), button, held, Qt::NoModifier);
    QApplication::sendEvent(w, &event);
}

void click(viewwidget* w, const QPointF& cm, Qt::MouseButton button) {
    mouse(w, QEvent::MouseMove, cm, Qt::NoButton, Qt::NoButton);
    mouse(w, QEvent::MouseButtonPress, cm, button, button);
    mouse(w, QEvent::MouseButtonRelease, cm, button, Qt::NoButton);
}

void drag(viewwidget* w, const QPointF& from, const QPointF& to) {
    const int steps = 4;
    mouse(w, QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
    for (int i = 1; i <= steps; ++i)
        mouse(w, QEvent::MouseMove, from + (to - from) * i / steps, Qt::NoButton, Qt::LeftButton);
    mouse(w, QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
}

// Where a model point projects in a view, centimetres.
QPointF placeof(int nview, double x, double y, double z) {
    prepareview(nview);
    curx = float(viewscale(nview) * x);
    cury = float(viewscale(nview) * y);
    curz = float(viewscale(nview) * z);
    projectpoint(nview);
    return {scrx, scry};
}

struct namedkey {
    int key;
    Qt::KeyboardModifiers held;
};

namedkey keynamed(const QString& name) {
    static const std::pair<const char*, int> keys[] = {{"ESC", Qt::Key_Escape},
                                                       {"ENTER", Qt::Key_Return},
                                                       {"SPACE", Qt::Key_Space},
                                                       {"BACKSPACE", Qt::Key_Backspace}};
    for (const auto& [text, key] : keys)
        if (name == text) return {key, Qt::NoModifier};
    const QKeySequence sequence(name, QKeySequence::PortableText);
    if (sequence.count() != 1 || sequence[0].key() == Qt::Key_unknown)
        refuse("there is no key " + name +
               "; keys are ESC, ENTER, SPACE, BACKSPACE, TAB, F6, UP, Ctrl+Z and their like");
    return {sequence[0].key(), sequence[0].keyboardModifiers()};
}

// At the keyboard's focus, or as after a click at the control that is named.
void pressnamedkey(QWidget* control, const QString& name) {
    if (control) control->setFocus();
    QWidget* const target = control ? control->window()->focusWidget() : keyboardfocus();
    const auto [key, held] = keynamed(name);
    presskey(target ? target : control, key, key == Qt::Key_Space ? " " : "", held);
}

void typecommand(const QString& text) {
    auto* const line = findkind<QComboBox>("main", "inputfield", "command line")->lineEdit();
    type(line, text);
    presskey(themainwindow->focusWidget(), Qt::Key_Return);
}

// Whole or not at all: a full disk leaves no half picture. A buffered file would take its last part
// for written.
void savepicture(const QImage& image, const QString& path) {
    QDir().mkpath(QFileInfo(path).path());
    QBuffer bytes;
    const QByteArray format = QFileInfo(path).suffix().toLatin1();
    QSaveFile file(path);
    const bool whole = image.save(&bytes, format.constData()) &&
                       file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
                       file.write(bytes.data()) == bytes.size();
    if (!whole || !file.commit()) refuse("the picture can not be written: " + path);
}

// The main window with the dialogs that are open over it.
QImage windowpicture() {
    QImage all = themainwindow->grab().toImage();
    QPainter p(&all);
    QWidgetList shown;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w != themainwindow && w->isVisible() && qobject_cast<QDialog*>(w)) shown << w;
    // A dialog lies above the one that it was opened from.
    std::ranges::stable_sort(shown, {}, [](const QWidget* w) {
        int depth = 0;
        while ((w = w->parentWidget())) ++depth;
        return depth;
    });
    for (QWidget* w : shown) {
        const QPixmap picture = w->grab();
        const QSize size = picture.deviceIndependentSize().toSize();
        const QPoint corner((themainwindow->width() - size.width()) / 2,
                            (themainwindow->height() - size.height()) / 2);
        p.fillRect(QRect(corner, size).adjusted(-1, -1, 1, 1), Qt::darkGray);
        p.drawPixmap(corner, picture);
    }
    return all;
}

bool asnumber(const QString& text, double& value) {
    bool good = false;
    value = text.toDouble(&good);
    return good;
}

bool namedvalue(const QString& name, QString& value) {
    return scriptvalue(name, value) || controlvalue(name, value);
}

void expect(const QString& name, const QString& wanted, double tolerance) {
    QString found;
    if (!namedvalue(name, found)) refuse("there is no value named " + name);
    double a = 0, b = 0;
    const bool equal = asnumber(found, a) && asnumber(wanted, b)
                           ? std::fabs(a - b) <= tolerance || a == b
                           : found == wanted;
    if (!equal) refuse(name + " is \"" + found + "\", expected \"" + wanted + "\"");
}

void print(const QStringList& names) {
    QTextStream out(stdout);
    for (const QString& name : names) {
        QString value;
        if (!namedvalue(name, value)) refuse("there is no value named " + name);
        out << name << " = " << onterminal(value) << "\n";
    }
}

void queueanswer(const QString& word) {
    static const std::pair<const char*, answers> words[] = {{"yes", answers::yes},
                                                            {"no", answers::no},
                                                            {"cancel", answers::cancel},
                                                            {"ok", answers::ok}};
    for (const auto& [text, answer] : words)
        if (word == text) return theqtplatform().answerqueue.push_back(answer);
    refuse("answers are yes, no, cancel and ok, not " + word);
}

}  // namespace

QString onterminal(const QString& text) {
    QString shown;
    for (const QChar c : text) {
        if (c.category() == QChar::Other_Control && c != '\n' && c != '\t')
            shown += QString("\\x%1").arg(int(c.unicode()), 2, 16, QChar('0'));
        else
            shown += c;
    }
    return shown;
}

// --- the player ---------------------------------------------------------------------------------

QStringList scriptwords(const QString& line) {
    QStringList words;
    for (int i = 0; i < line.size();) {
        if (line[i].isSpace()) {
            ++i;
        } else if (line[i] == '"') {
            const qsizetype end = line.indexOf('"', i + 1);
            words << line.mid(i + 1, end < 0 ? -1 : end - i - 1);
            i = end < 0 ? int(line.size()) : int(end) + 1;
        } else {
            int end = i;
            // Blanks within an index list belong to the name.
            for (int depth = 0; end < line.size() && (depth > 0 || !line[end].isSpace()); ++end)
                depth += line[end] == '(' ? 1 : line[end] == ')' ? -1 : 0;
            words << line.mid(i, end - i);
            i = end;
        }
    }
    return words;
}

bool scriptplayer::load(const QString& file) {
    QFile in(file);
    if (!in.open(QIODevice::ReadOnly)) {
        fault = file + ": the script can not be read: " + in.errorString();
        return false;
    }
    path = file;
    folder = QFileInfo(file).absolutePath();
    lines = QString::fromUtf8(in.readAll()).split('\n');
    return true;
}

QString scriptplayer::inscript(const QString& file) const {
    const QString mark = "results:";
    if (file.startsWith(mark)) return QDir(results).absoluteFilePath(file.mid(mark.size()));
    return file.isEmpty() ? file : QDir(folder).absoluteFilePath(file);
}

// Installed scripts lie where nothing can be written.
void scriptplayer::setresults(const QString& directory) {
    results = QDir::cleanPath(inscript(directory));
    QDir().mkpath(results);
    if (iswritable(results.toStdString())) return;
    results = QDir(QString::fromStdString(appdir)).absoluteFilePath(QFileInfo(results).fileName());
    QDir().mkpath(results);
    if (!iswritable(results.toStdString())) refuse("nothing can be written to " + results);
    QTextStream(stdout) << "Results are in " << results << "\n";
}

bool scriptplayer::play() {
    for (int i = 0; i < lines.size(); ++i) {
        const QString line = lines[i].trimmed();
        if (line.isEmpty() || line.startsWith('#')) continue;
        if (stopped) return false;
        try {
            runstep(line);
            settle();
            if (pauses) pause(afterline);
            if (!theqtplatform().unanswered.empty()) {
                const QString question = QString::fromStdString(theqtplatform().unanswered);
                theqtplatform().unanswered.clear();
                refuse("the question \"" + question + "\" was asked and no answer was queued");
            }
        } catch (const scriptfault& f) {
            fault =
                QString("%1, line %2: %3").arg(QFileInfo(path).fileName()).arg(i + 1).arg(f.text);
            return false;
        }
    }
    return true;
}

// In small steps: a stop takes effect at once.
void scriptplayer::pause(int milliseconds) {
    const int step = 50;
    for (int gone = 0; gone < milliseconds && !stopped; gone += step)
        theqtplatform().yield(std::min(step, milliseconds - gone));
}

// A line is a step of its own, also where a menu item plays the script.
void scriptplayer::runstep(const QString& line) {
    cutstep();
    const step s("");
    suggestname(scriptwords(line).mid(1).join(' ').toStdString());
    guarded(
        [&] {
            if (!run(line)) refuse("unknown command \"" + line + "\"");
        },
        [](const runtimeerror& e) { refuse(QString::fromStdString(e.what)); });
}

bool scriptplayer::run(const QString& line) {
    const QStringList words = scriptwords(line);
    const QString verb = words[0];
    const qsizetype n = words.size() - 1;
    const auto need = [&](qsizetype count) {
        if (n < count) refuse(QString("%1 takes %2 words").arg(verb).arg(count));
    };
    const auto rest = [&](int from) { return words.mid(from).join(' '); };
    if (verb == "menu") {
        need(1);
        runmenu(rest(1));
    } else if (verb == "file") {
        need(1);
        theqtplatform().filequeue.push_back(inscript(rest(1)).toStdString());
    } else if (verb == "results") {
        need(1);
        setresults(rest(1));
    } else if (verb == "answer") {
        need(1);
        queueanswer(words[1]);
    } else if (verb == "command") {
        typecommand(line.mid(int(verb.size())).trimmed());
    } else if (verb == "click") {
        need(3);
        click(viewof(words[1]), {numberin(words[2]), numberin(words[3])},
              words.value(4) == "right" ? Qt::RightButton : Qt::LeftButton);
    } else if (verb == "pick") {
        need(4);
        viewwidget* const view = viewof(words[1]);
        click(view,
              placeof(words[1].toInt(), numberin(words[2]), numberin(words[3]), numberin(words[4])),
              words.value(5) == "right" ? Qt::RightButton : Qt::LeftButton);
    } else if (verb == "drag") {
        need(5);
        drag(viewof(words[1]), {numberin(words[2]), numberin(words[3])},
             {numberin(words[4]), numberin(words[5])});
    } else if (verb == "pickbox") {
        need(7);
        const auto corner = [&](int i) {
            return placeof(words[1].toInt(), numberin(words[i]), numberin(words[i + 1]),
                           numberin(words[i + 2]));
        };
        viewwidget* const view = viewof(words[1]);
        drag(view, corner(2), corner(5));
    } else if (verb == "key") {
        need(1);
        pressnamedkey(n >= 3 ? findcontrol(words[2], words[3]) : nullptr, words[1]);
    } else if (verb == "type") {
        need(1);
        typekeys(keyboardfocus(), rest(1));
    } else if (verb == "set") {
        need(2);
        setcontrol(words[1], words[2], rest(3));
    } else if (verb == "choose") {
        need(3);
        choose(words[1], words[2], rest(3));
    } else if (verb == "check") {
        need(3);
        checkcontrol(words[1], words[2], words[3] == "on");
    } else if (verb == "press") {
        need(2);
        presscontrol(words[1], rest(2));
    } else if (verb == "cell") {
        need(4);
        setcell(words[1], words[2], words[3].toInt(), words[4].toInt(), rest(5));
    } else if (verb == "picture") {
        need(2);
        viewwidget* const view = viewof(words[1]);
        savepicture(view->surface.picture(), inscript(rest(2)));
    } else if (verb == "window") {
        need(1);
        savepicture(windowpicture(), inscript(rest(1)));
    } else if (verb == "print") {
        need(1);
        print(words.mid(1));
    } else if (verb == "expect") {
        need(2);
        expect(words[1], words[2], n >= 3 ? numberin(words[3]) : 0);
    } else if (verb == "say") {
        need(1);
        if (say) say(rest(1));
    } else if (verb == "wait") {
        need(1);
        if (pauses) pause(int(numberin(words[1])));
    } else {
        return false;
    }
    return true;
}
