// SPDX-License-Identifier: GPL-3.0-or-later
// The play of demonstrations.
#include "ui/demoplay.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QToolButton>
#include <algorithm>

#include "core/journal.h"
#include "core/session.h"
#include "edit/Mouseprocedures.h"
#include "edit/selection.h"
#include "files/filemenu.h"
#include "ui/controlkinds.h"
#include "ui/demopanel.h"
#include "ui/mainwindow.h"
#include "ui/menus.h"
#include "ui/qtplatform.h"
#include "ui/recordplay.h"
#include "ui/script.h"
#include "ui/scriptcontrols.h"
#include "ui/scriptstage.h"
#include "ui/viewwidget.h"
#include "view/scaleview.h"

namespace {

const int lookahead = 900;                      // milliseconds that a framed control is shown
const int readingleast = 2500, perletter = 50;  // milliseconds for a text

class demoplay {
  public:
    demoplay(const QString& file, bool waits) : script(file), paced(waits) {
        panel.onback = [this] { goback(); };
        panel.onnext = [this] { skips = true; };
        panel.onstop = [this] { stop(); };
    }
    demooutcome play();

  private:
    bool playfrom(int chapter);
    void before(const QStringList& words);
    void say(const QString& words);
    void point(const QStringList& words);
    void pointatmenu(const QString& path);
    void rest(int milliseconds);
    void goback();
    void stop();
    void rewind();
    bool runs() const { return paced && !skips && !silent && player; }

    const QString script;
    const bool paced;
    demopanel panel;
    scriptplayer* player = nullptr;  // the play under way
    QStringList opening;             // how the session was set
    QElapsedTimer since;             // the chapter began
    int chapter = 0, chapters = 0;   // from 1
    int wanted = 1;                  // up to it nothing is shown
    bool skips = false, silent = false, back = false, stopped = false;
    QString fault;
};

// --- steering -----------------------------------------------------------------------------------

void demoplay::stop() {
    stopped = true;
    if (player) player->stopped = true;
}

// To the beginning of the chapter, or of the one before where this one has just begun.
void demoplay::goback() {
    const int justbegun = 3000;  // milliseconds
    wanted = std::max(1, since.elapsed() < justbegun ? chapter - 1 : chapter);
    back = true;
    if (player) player->stopped = true;
}

void demoplay::rest(int milliseconds) {
    const int step = 30;
    for (double gone = 0; runs() && !player->stopped && (panel.paused() || gone < milliseconds);
         gone += panel.paused() ? 0 : step * panel.speed())
        theqtplatform().yield(step);
}

// --- what a line is about -----------------------------------------------------------------------

void demoplay::say(const QString& words) {
    ++chapter;
    silent = chapter < wanted;
    skips = false;
    since.start();
    panel.pointatnothing();
    panel.say(words, chapter, chapters);
    rest(std::max(readingleast, int(words.size()) * perletter));
}

// The menus open as under a hand.
void demoplay::pointatmenu(const QString& path) {
    QMenuBar* const bar = themainwindow->menuBar();
    QAction* const item = findmenu(bar, path);
    QMenu* menu = nullptr;
    for (QAction* top : bar->actions()) {
        if (!top->menu() || !path.startsWith(plaintext(top->text()) + "/")) continue;
        menu = top->menu();
        panel.pointat(bar, bar->actionGeometry(top));
        rest(lookahead / 2);
        menu->popup(bar->mapToGlobal(bar->actionGeometry(top).bottomLeft()));
    }
    if (!menu || !item) return;
    for (QAction* inner : menu->actions())
        if (inner->menu() && inner->menu()->actions().contains(item)) {
            menu->setActiveAction(inner);
            inner->menu()->popup(menu->mapToGlobal(menu->actionGeometry(inner).topRight()));
            menu = inner->menu();
            break;
        }
    menu->setActiveAction(item);
    panel.pointat(menu, menu->actionGeometry(item));
    rest(lookahead);
    panel.pointatnothing();
    while (QWidget* const open = QApplication::activePopupWidget()) open->close();
}

QWidget* buttonof(const QString& name) {
    for (auto* b : themainwindow->findChildren<QToolButton*>())
        if (b->isVisible() && b->defaultAction() && b->defaultAction()->objectName() == name)
            return b;
    return nullptr;
}

// About the place of a pick, whose model point stands in the words from there on.
QRect placein(const viewwidget* view, const QStringList& words, int from) {
    const keptpoint kept;
    prepareview(view->number());
    projectplace(view->number(), words[from].toDouble(), words[from + 1].toDouble(),
                 words[from + 2].toDouble());
    const QPoint at = (QPointF(scrx, scry) * view->pixelspercm()).toPoint();
    return QRect(at - QPoint(14, 14), QSize(28, 28)) & view->rect();
}

void demoplay::point(const QStringList& words) {
    const QString& verb = words[0];
    const auto isone = [&](std::initializer_list<const char*> verbs) {
        return std::ranges::any_of(verbs, [&](const char* v) { return verb == v; });
    };
    if (verb == "menu") return pointatmenu(words.value(1));
    QWidget* at = nullptr;
    QRect part;
    if (isone({"press", "set", "choose", "check", "cell", "fill"}) && words.size() > 2) {
        at = words[1] == "main" ? buttonof(words[2]) : nullptr;
        if (!at) at = findcontrol(words[1], words[2]);
    } else if (verb == "command") {
        at = findcontrol("main", "inputfield");
    } else if (isone({"pick", "pickbox", "click"})) {
        auto* const view = themainwindow->view(std::clamp(words.value(1).toInt(), 1, 4));
        at = view;
        if (verb == "pick" && words.size() > 4) part = placein(view, words, 2);
        if (verb == "pickbox" && words.size() > 7)
            part = placein(view, words, 2) | placein(view, words, 5);
    }
    if (!at || !at->isVisible()) return;
    panel.pointat(at, part);
    rest(verb == "command" ? lookahead / 2 : lookahead);
}

void demoplay::before(const QStringList& words) {
    if (!runs()) return;
    try {
        point(words);
    } catch (const scriptfault&) {
        // The line itself tells what is wrong with it.
    }
}

// --- the play -----------------------------------------------------------------------------------

void closedialogs() {
    while (QWidget* const open = QApplication::activePopupWidget()) open->close();
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* const dialog = qobject_cast<QDialog*>(w); dialog && dialog->isVisible())
            dialog->close();
}

// An empty model, the session as it was set at the beginning.
void demoplay::rewind() {
    closedialogs();
    addready();
    notesaved();
    theqtplatform().answerqueue = {answers::no};
    menunew();
    theqtplatform().answerqueue.clear();
    theqtplatform().filequeue.clear();
    setsession(opening);
}

bool demoplay::playfrom(int first) {
    scriptplayer one;
    player = &one;
    chapter = 0;
    wanted = first;
    silent = first > 1;
    back = skips = false;
    one.pauses = paced;
    one.say = [this](const QString& words) { say(words); };
    one.before = [this](const QStringList& words) { before(words); };
    one.rest = [this](int milliseconds) { rest(milliseconds); };
    bool good = one.load(script);
    chapters = one.texts();
    good = good && one.play();
    panel.pointatnothing();
    player = nullptr;
    if (!good && !one.stopped) fault = one.fault;
    return good;
}

demooutcome demoplay::play() {
    opening = sessionline().split(' ').mid(1);
    const stageplay stage(
        [this](int key) {
            if (key == Qt::Key_Escape) stop();
            if (key == Qt::Key_Space) panel.togglepause();
            if (key == Qt::Key_Left) goback();
            if (key == Qt::Key_Right) skips = true;
        },
        &panel, [this](const QPoint& global) { return panel.presses(global); });
    bool good = false;
    do {
        rewind();
        good = playfrom(wanted);
    } while (back && !stopped && fault.isEmpty());
    if (!good) closedialogs();
    addready();
    if (!fault.isEmpty()) return {demoends::failed, fault};
    return {good ? demoends::done : demoends::stopped, {}};
}

}  // namespace

demooutcome playdemo(const QString& script, bool waits) {
    return demoplay(script, waits).play();
}
