// SPDX-License-Identifier: GPL-3.0-or-later
// The table of verbs, and what they do.
#include <QApplication>
#include <QBuffer>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QKeySequence>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QTextStream>
#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>

#include "core/besidefile.h"
#include "core/runtime.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/outcome.h"
#include "files/saveset.h"
#include "ui/bookcontents.h"
#include "ui/legendwidget.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/menus.h"
#include "ui/qtplatform.h"
#include "ui/recordplay.h"
#include "ui/script.h"
#include "ui/scriptcontrols.h"
#include "ui/scriptgrids.h"
#include "ui/viewline.h"
#include "ui/viewwidget.h"
#include "view/moddraw.h"
#include "view/scaleview.h"
#include "view/setviews.h"

namespace {

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

Qt::KeyboardModifiers heldkeys;  // while the mouse of a line works

// "ctrl" and "shift" in a line.
class keysheld {
  public:
    explicit keysheld(const scriptline& l) {
        if (l.words.contains("ctrl")) heldkeys |= Qt::ControlModifier;
        if (l.words.contains("shift")) heldkeys |= Qt::ShiftModifier;
    }
    ~keysheld() { heldkeys = Qt::NoModifier; }
    keysheld(const keysheld&) = delete;
    keysheld& operator=(const keysheld&) = delete;
};

void mouse(viewwidget* w, QEvent::Type kind, const QPointF& cm, Qt::MouseButton button,
           Qt::MouseButtons held) {
    const QPointF at = cm * w->pixelspercm();
    QMouseEvent event(kind, at, w->mapToGlobal(at), button, held, heldkeys);
    QApplication::sendEvent(w, &event);
}

using halfway = std::function<void()>;  // between the press and what follows

void click(viewwidget* w, const QPointF& cm, Qt::MouseButton button, const halfway& pressed = {}) {
    mouse(w, QEvent::MouseMove, cm, Qt::NoButton, Qt::NoButton);
    mouse(w, QEvent::MouseButtonPress, cm, button, button);
    if (pressed) pressed();
    mouse(w, QEvent::MouseButtonRelease, cm, button, Qt::NoButton);
}

void drag(viewwidget* w, const QPointF& from, const QPointF& to, const halfway& pressed = {}) {
    const int steps = 4;
    mouse(w, QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
    if (pressed) pressed();
    for (int i = 1; i <= steps; ++i)
        mouse(w, QEvent::MouseMove, from + (to - from) * i / steps, Qt::NoButton, Qt::LeftButton);
    mouse(w, QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
}

// From the press on, as a hand draws it.
void draglasso(viewwidget* w, const std::vector<QPointF>& path) {
    mouse(w, QEvent::MouseButtonPress, path.front(), Qt::LeftButton, Qt::LeftButton);
    for (const QPointF& p : path) mouse(w, QEvent::MouseMove, p, Qt::NoButton, Qt::LeftButton);
    mouse(w, QEvent::MouseButtonRelease, path.back(), Qt::LeftButton, Qt::NoButton);
}

void wheel(viewwidget* w, const QPointF& cm, double notches) {
    const QPointF at = cm * w->pixelspercm();
    // As it is meant, whatever the user's mouse does.
    const bool zooms = wheelof(Qt::NoModifier) == viewmoves::zoom;
    if (mousenow().reversed) notches = -notches;
    QWheelEvent event(at, w->mapToGlobal(at), {}, {0, int(std::lround(notches * 120))},
                      Qt::NoButton, zooms ? Qt::NoModifier : Qt::ControlModifier, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(w, &event);
}

void pan(viewwidget* w, const QPointF& way) {
    if (dragof(Qt::MiddleButton, Qt::NoModifier) != viewmoves::pan) {
        panview(w->number(), way.x(), way.y());
        return drawview(w->number());
    }
    mouse(w, QEvent::MouseButtonPress, {}, Qt::MiddleButton, Qt::MiddleButton);
    mouse(w, QEvent::MouseMove, way, Qt::NoButton, Qt::MiddleButton);
    mouse(w, QEvent::MouseButtonRelease, way, Qt::MiddleButton, Qt::NoButton);
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

// Whole or not at all: a full disk leaves no half picture.
void savepicture(const QImage& image, const QString& path) {
    QDir().mkpath(QFileInfo(path).path());
    QBuffer bytes;
    const QByteArray format = QFileInfo(path).suffix().toLatin1();
    const auto write = [&] {
        sweepfolder(path.toStdString());
        besidefile file(path.toStdString());
        file.write(bytes.data().constData(), std::size_t(bytes.size()));
        file.replacetarget();
    };
    if (!image.save(&bytes, format.constData()) || !guarded(write, [](const runtimeerror&) {}))
        refuse("the picture can not be written: " + path);
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

// What a script can name, from the tables that the program itself goes by.
QStringList namesof(const QString& what) {
    QStringList names;
    if (what == "verbs")
        for (const scriptverb& verb : scriptverbs()) names << verb.usage;
    else if (what == "windows")
        for (const std::string& name : dialognames()) names << QString::fromStdString(name);
    else if (what == "values")
        names = scriptvaluenames();
    else
        names = controllines(what);
    return names;
}

void printlines(const QStringList& lines) {
    QTextStream out(stdout);
    for (const QString& line : lines) out << onterminal(line) << "\n";
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

// --- the table ----------------------------------------------------------------------------------

QString rest(const scriptline& l, int from) {
    return l.words.mid(from).join(' ');
}

double numberat(const scriptline& l, int i) {
    return numberin(l.words[i]);
}

Qt::MouseButton buttonat(const scriptline& l, int i) {
    return l.words.mid(i).contains("right") ? Qt::RightButton : Qt::LeftButton;
}

// Centimetres of the model point in the words from i on, in the view of the first word.
QPointF placeat(const scriptline& l, int i) {
    return placeof(l.words[1].toInt(), numberat(l, i), numberat(l, i + 1), numberat(l, i + 2));
}

// With "exact" behind them, the points are those of the line to the last digit.
class exactplace {
  public:
    exactplace(const scriptline& l, int i) : exact(l.words.last() == "exact") { next(l, i); }
    void next(const scriptline& l, int i) {
        end();
        for (int k = 0; k < 3; ++k) at[k] = numberat(l, i + k);
        if (exact) given.emplace(at);
    }
    void end() { given.reset(); }

  private:
    bool exact;
    double at[3];
    std::optional<givenplace> given;
};

std::vector<pickhit> hitsin(const scriptline& l) {
    std::vector<pickhit> hits;
    for (const QString& word : l.words.mid(1))
        hits.push_back({word.section('/', 0, 0).toInt(), word.section('/', 1).toInt()});
    return hits;
}

using line = const scriptline&;
using player = scriptplayer&;

const std::vector<scriptverb> verbs = {
    {"menu", 1, "menu \"MENU/ITEM\"", [](player, line l) { runmenu(rest(l, 1)); }},
    {"file", 1, "file PATH",
     [](player p, line l) {
         theqtplatform().filequeue.push_back(p.inscript(rest(l, 1)).toStdString());
     }},
    {"results", 1, "results FOLDER", [](player p, line l) { p.setresults(rest(l, 1)); }},
    {"answer", 1, "answer yes|no|cancel|ok", [](player, line l) { queueanswer(l.words[1]); }},
    {"command", 0, "command TEXT",
     [](player, line l) { typecommand(l.text.mid(l.words[0].size()).trimmed()); }},
    {"filter", 1, "filter N",
     [](player, line l) { theqtplatform().nextfilter = l.words[1].toInt(); }},
    {"hits", 1, "hits ITEM[/PART]...", [](player, line l) { givehits(hitsin(l)); }},
    {"session", 2, "session METHOD LAYOUT MARK...",
     [](player, line l) { setsession(l.words.mid(1)); }},
    {"view", 10, "view V NUMBER...", [](player, line l) { setview(l.words); }},
    {"close", 1, "close WINDOW",
     [](player, line l) { findcontrol(l.words[1], l.words[1])->close(); }},
    {"wheel", 5, "wheel V x y z NOTCHES",
     [](player, line l) { wheel(viewof(l.words[1]), placeat(l, 2), numberat(l, 5)); }},
    {"pan", 3, "pan V X Y",
     [](player, line l) {
         pan(viewof(l.words[1]), {numberat(l, 2), numberat(l, 3)});
     }},
    {"click", 3, "click V X Y [right]",
     [](player, line l) {
         click(viewof(l.words[1]), {numberat(l, 2), numberat(l, 3)}, buttonat(l, 4));
     }},
    {"drag", 5, "drag V X1 Y1 X2 Y2",
     [](player, line l) {
         drag(viewof(l.words[1]), {numberat(l, 2), numberat(l, 3)},
              {numberat(l, 4), numberat(l, 5)});
     }},
    {"pick", 4, "pick V x y z [right] [ctrl] [shift] [exact]",
     [](player, line l) {
         const keysheld keys(l);
         viewwidget* const view = viewof(l.words[1]);
         exactplace at(l, 2);
         click(view, placeat(l, 2), buttonat(l, 5), [&] { at.end(); });
     }},
    {"pickbox", 7, "pickbox V x y z x y z [ctrl] [shift] [exact]",
     [](player, line l) {
         const keysheld keys(l);
         viewwidget* const view = viewof(l.words[1]);
         exactplace at(l, 2);
         drag(view, placeat(l, 2), placeat(l, 5), [&] { at.next(l, 5); });
     }},
    {"lasso", 10, "lasso V x y z x y z x y z... [ctrl] [shift]",
     [](player, line l) {
         const keysheld keys(l);
         viewwidget* const view = viewof(l.words[1]);
         std::vector<QPointF> path;
         const qsizetype words = l.words.size();
         for (int i = 2; i + 2 < words && !l.words[i].at(0).isLetter(); i += 3)
             path.push_back(placeat(l, i));
         draglasso(view, path);
     }},
    {"key", 1, "key NAME [WINDOW FIELD]",
     [](player, line l) {
         pressnamedkey(l.words.size() > 3 ? findcontrol(l.words[2], l.words[3]) : nullptr,
                       l.words[1]);
     }},
    {"type", 1, "type TEXT", [](player, line l) { typekeys(keyboardfocus(), rest(l, 1)); }},
    {"set", 2, "set WINDOW FIELD VALUE",
     [](player, line l) { setcontrol(l.words[1], l.words[2], rest(l, 3)); }},
    {"choose", 3, "choose WINDOW LIST ENTRY",
     [](player, line l) { choose(l.words[1], l.words[2], rest(l, 3)); }},
    {"check", 3, "check WINDOW BOX on|off",
     [](player, line l) { checkcontrol(l.words[1], l.words[2], l.words[3] == "on"); }},
    {"press", 2, "press WINDOW BUTTON",
     [](player, line l) { presscontrol(l.words[1], rest(l, 2)); }},
    {"cell", 4, "cell WINDOW GRID ROW COL VALUE",
     [](player, line l) {
         setcell(l.words[1], l.words[2], l.words[3].toInt(), l.words[4].toInt(), rest(l, 5));
     }},
    {"cells", 4, "cells WINDOW GRID ROW COL [TOP LEFT BOTTOM RIGHT]...",
     [](player, line l) { markcells(l.words[1], l.words[2], l.words.mid(3)); }},
    {"mark", 2, "mark WINDOW GRID", [](player, line l) { markviews(l.words[1], l.words[2]); }},
    {"fill", 4, "fill WINDOW GRID COL VALUE",
     [](player, line l) { fillcells(l.words[1], l.words[2], l.words[3].toInt(), rest(l, 4)); }},
    {"paste", 3, "paste WINDOW GRID \"TEXT\"",
     [](player, line l) { pastecells(l.words[1], l.words[2], l.words[3]); }},
    {"erase", 2, "erase WINDOW GRID", [](player, line l) { erasecells(l.words[1], l.words[2]); }},
    {"picture", 2, "picture V FILE.png or picture FORM CONTROL FILE.png",
     [](player p, line l) {
         bool isview = false;
         (void)l.words[1].toInt(&isview);
         if (isview)
             savepicture(viewof(l.words[1])->surface.picture(), p.inscript(rest(l, 2)));
         else
             savepicture(findcontrol(l.words[1], l.words[2])->grab().toImage(),
                         p.inscript(rest(l, 3)));
     }},
    {"window", 1, "window FILE.png",
     [](player p, line l) { savepicture(windowpicture(), p.inscript(rest(l, 1))); }},
    {"legend", 1, "legend max|min|auto|palette|bands|decimals [VALUE]",
     [](player, line l) {
         QString fault;
         if (!changelegend(l.words[1], rest(l, 2), fault)) refuse(fault);
     }},
    {"contents", 2, "contents PART on|off",
     [](player, line l) {
         QString fault;
         if (!changecontents(l.words[1], l.words[2] == "on", fault)) refuse(fault);
     }},
    {"print", 1, "print NAME...", [](player, line l) { print(l.words.mid(1)); }},
    {"names", 1, "names verbs|windows|values|WINDOW",
     [](player, line l) { printlines(namesof(l.words[1])); }},
    {"expect", 2, "expect NAME VALUE [TOL]",
     [](player, line l) {
         expect(l.words[1], l.words[2], l.words.size() > 3 ? numberat(l, 3) : 0);
     }},
    {"say", 1, "say \"TEXT\"",
     [](player p, line l) {
         if (p.say) p.say(rest(l, 1));
     }},
    {"wait", 1, "wait MS",
     [](player p, line l) {
         if (p.pauses) p.pause(int(numberat(l, 1)));
     }},
};

}  // namespace

const std::vector<scriptverb>& scriptverbs() {
    return verbs;
}
