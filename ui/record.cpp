// SPDX-License-Identifier: GPL-3.0-or-later
// The recorder. State: the script under way and what is not yet written of it.
#include "ui/record.h"

#include <QAbstractButton>
#include <QColorDialog>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFontDialog>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QThread>
#include <QToolButton>
#include <cmath>

#include "core/numtext.h"
#include "core/views.h"
#include "edit/outcome.h"
#include "ui/controlkinds.h"
#include "ui/mainwindow.h"
#include "ui/scriptcontrols.h"
#include "ui/viewline.h"
#include "ui/viewwidget.h"
#include "view/scaleview.h"

void (*onrecordfault)(const std::string& reason);

namespace {

const char* const wordof[] = {"ok", "cancel", "yes", "no"};

// A press in a view that waits for its end.
struct viewpress {
    int view = 0;  // 0: none
    bool right = false, middle = false;
    bool turns = false;  // or fits, as the line of the view tells
    QString keys;        // held: " ctrl", " shift"
    QPointF at;          // pixels
    pressoutcome outcome;
};

struct viewwheel {
    int view = 0;
    double point[3] = {};
    double notches = 0;
};

class scriptrecorder : public usersigns {
  public:
    // --- the script
    bool begin(const std::string& path, const QStringList& opening, QString& fault);
    recorded end();
    bool active() const { return file.isOpen() && resting == 0; }
    void write(const QString& line);
    void settle();  // what waits for its end is written
    bool open(const QString& line);
    void close();

    // --- signs of the controls
    bool isat(const QWidget* w) const override;
    void typed(QWidget* w, const QString& text) override;
    void chose(QWidget* w, int entry) override;
    void pressing(QWidget* w) override;
    void pressed(QWidget* w) override;

    // --- views
    void beginview(viewwidget* view, QEvent* event);
    void endview(viewwidget* view, QEvent* event);
    void notepress(viewwidget* view, const QMouseEvent* mouse);
    void flushpress();
    void flushwheel();
    void flushtyped();
    void followviews(const QString& words);

    QFile file;
    QString folder;
    int resting = 0;
    int count = 0;
    bool told = false;         // a line came from the event under way
    bool isopen = false;       // something is being done; its line is written at its end
    QString line;              // of it
    QStringList later;         // done meanwhile
    QPointer<QWidget> button;  // that is being pressed
    QPointer<QWidget> target;  // of the event under way
    QStringList entries;       // of the list at the target, before it
    int entered = -1;          // loop level of the outermost event
    QPointer<QWidget> field;   // that is being typed into
    QString fieldname, text;
    viewpress press;
    viewwheel wheel;
    long pressnumber = 0;
    QString views[nviews + 1];  // the lines that set them
    QString chosen;             // in the event under way
};

scriptrecorder& recorder() {
    static scriptrecorder only;
    return only;
}

QString number(double value) {
    return QString::fromStdString(numbertext(value));
}

QString place(const double* p) {
    return number(p[0]) + " " + number(p[1]) + " " + number(p[2]);
}

// --- the script ---------------------------------------------------------------------------------

bool scriptrecorder::begin(const std::string& path, const QStringList& opening, QString& fault) {
    file.setFileName(QString::fromStdString(path));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        fault = file.errorString();
        return false;
    }
    folder = QFileInfo(file).absolutePath();
    line.clear();
    later.clear();
    isopen = false;
    field = button = nullptr;
    press = {};
    wheel = {};
    for (QString& view : views) view.clear();
    for (const QString& first : opening) write(first);
    count = 0;
    return file.isOpen();
}

recorded scriptrecorder::end() {
    if (!file.isOpen()) return {};
    settle();
    file.close();
    return {count, file.fileName().toStdString()};
}

void scriptrecorder::write(const QString& words) {
    if (!file.isOpen()) return;
    const QByteArray bytes = (words + "\n").toUtf8();
    count += int(words.count('\n')) + 1;
    if (file.write(bytes) == bytes.size()) return followviews(words);
    const std::string reason = file.errorString().toStdString();
    file.close();
    if (onrecordfault) onrecordfault(reason);
}

// Where the views look lies in the model's files, and what the window's size made of it is told to
// the last digit, behind the line that did it.
void scriptrecorder::followviews(const QString& words) {
    for (const char* before : {"#", "answer", "file ", "filter", "hits", "view "})
        if (words.startsWith(before) && !words.contains('\n')) return;
    for (int v = 1; v <= nviews; ++v) {
        const QString now = viewline(v);
        if (now == std::exchange(views[v], now)) continue;
        write(now);
    }
}

void scriptrecorder::flushtyped() {
    if (fieldname.isEmpty()) return;
    const QString words = "set " + fieldname + " " + quotedword(text);
    fieldname.clear();
    field = nullptr;
    write(words);
}

// What its searches have found stands before a line.
QString withhits(const QString& words, const std::vector<pickhit>& hits) {
    if (hits.empty()) return words;
    QString given = "hits";
    for (const pickhit& h : hits)
        given += h.part ? QString(" %1/%2").arg(h.item).arg(h.part) : QString(" %1").arg(h.item);
    return given + "\n" + words;
}

void scriptrecorder::flushpress() {
    if (press.view == 0) return;
    const viewpress p = std::exchange(press, {});
    if (p.middle) return;  // it moves nothing without its end
    const QString view = QString::number(p.view);
    for (const double* at : {p.outcome.point, p.outcome.last})
        for (int k = 0; k < 3; ++k)
            if (!std::isfinite(at[k]))
                return write("# not recorded: a press in view " + view + " at no place");
    if (const auto& path = p.outcome.path; path.size() > 2) {
        QString words = "lasso " + view;
        for (const auto& at : path) words += " " + place(at.data());
        return write(words + p.keys);
    }
    const QString words = p.outcome.dragged ? "pickbox " + view + " " + place(p.outcome.point) +
                                                  " " + place(p.outcome.last) + p.keys + " exact"
                                            : "pick " + view + " " + place(p.outcome.point) +
                                                  (p.right ? " right" : "") + p.keys + " exact";
    write(withhits(words, p.outcome.hits));
}

void scriptrecorder::flushwheel() {
    if (wheel.view == 0) return;
    const viewwheel w = std::exchange(wheel, {});
    if (std::isfinite(w.point[0] + w.point[1] + w.point[2]))
        write("wheel " + QString::number(w.view) + " " + place(w.point) + " " + number(w.notches));
}

void scriptrecorder::settle() {
    if (isopen && !button) close();
    flushtyped();
    flushpress();
    flushwheel();
}

bool scriptrecorder::open(const QString& words) {
    if (!active()) return false;
    told = true;
    if (isopen) {
        later << words;
        return false;
    }
    flushtyped();
    flushpress();
    flushwheel();
    line = words;
    isopen = true;
    lastpress().hits.clear();
    return true;
}

void scriptrecorder::close() {
    if (!isopen) return;
    isopen = false;
    button = nullptr;
    flushtyped();
    if (!line.isEmpty()) write(withhits(line, lastpress().hits));
    for (const QString& words : std::exchange(later, {})) write(words);
}

// --- signs of the controls ----------------------------------------------------------------------

// A choice of the toolkit's own is recorded by what it comes to.
bool iswhole(const QWidget* window) {
    return qobject_cast<const QFontDialog*>(window) || qobject_cast<const QColorDialog*>(window);
}

bool scriptrecorder::isat(const QWidget* w) const {
    return target && (target == w || w->isAncestorOf(target));
}

void scriptrecorder::typed(QWidget* w, const QString& words) {
    if (!active() || iswhole(w->window())) return;
    told = true;
    if (field != w) {
        flushtyped();
        flushpress();
        flushwheel();
    }
    field = w;
    fieldname = controlname(w);
    text = words;
}

void scriptrecorder::chose(QWidget* w, int entry) {
    if (!active() || iswhole(w->window())) return;
    const bool before = target && entry < entries.size() && isat(w);
    const QStringList texts = before ? entries : kindofcontrol(w)->entries(w);
    const QString name = texts.value(entry);
    const bool alone = texts.count(name) == 1;
    const QString words = "choose " + controlname(w) + " " +
                          (alone ? quotedword(name) : "#" + QString::number(entry + 1));
    told = true;
    if (words == std::exchange(chosen, words)) return;  // two signs of one choice
    if (isopen) {
        later << words;
        return;
    }
    settle();
    write(words);
}

void scriptrecorder::pressing(QWidget* w) {
    auto* const b = qobject_cast<QAbstractButton*>(w);
    const auto* const tool = qobject_cast<QToolButton*>(w);
    // An action tells itself what it does, the work that is cancelled is remarked upon.
    if (!active() || (tool && tool->defaultAction()) || w->objectName().startsWith("qt_") ||
        qobject_cast<QProgressDialog*>(w->window()))
        return;
    const QString name = controlname(w);
    const bool on = b->isChecked();  // the toolkit has changed it by now
    const QString words =
        b->isCheckable() ? "check " + name + (on ? " on" : " off") : "press " + name;
    QString whole;
    if (iswhole(w->window())) {
        const QString form = w->window()->objectName();
        whole = "set " + form + " " + form + " " +
                quotedword(kindofcontrol(w->window())->value(w->window())) + "\n";
    }
    if (open(whole + words)) button = w;
}

void scriptrecorder::pressed(QWidget* w) {
    if (button == w) close();
}

// --- views --------------------------------------------------------------------------------------

void scriptrecorder::beginview(viewwidget* view, QEvent* event) {
    pressnumber = lastpress().number;
    lastpress().hits.clear();
    if (event->type() != QEvent::Wheel) return;
    const auto* const turned = static_cast<QWheelEvent*>(event);
    if (wheelof(turned->modifiers()) != viewmoves::zoom || mousenow().reversed) return settle();
    const keptpoint kept;
    const QPointF at = turned->position() / view->pixelspercm();
    unprojectat(view->number(), at.x(), at.y());
    if (wheel.view != view->number()) {
        settle();
        const double point[] = {modelx, modely, modelz};
        std::copy(point, point + 3, wheel.point);
        wheel.view = view->number();
    }
    wheel.notches += turned->angleDelta().y() / 120.0;
}

void scriptrecorder::notepress(viewwidget* view, const QMouseEvent* mouse) {
    settle();
    press = {};
    press.view = view->number();
    press.right = mouse->button() == Qt::RightButton;
    press.keys = mouse->modifiers() & Qt::ControlModifier ? " ctrl"
                 : mouse->modifiers() & Qt::ShiftModifier ? " shift"
                                                          : "";
    press.outcome = lastpress();
}

void scriptrecorder::endview(viewwidget* view, QEvent* event) {
    const auto type = event->type();
    if (type == QEvent::Wheel && wheel.view == 0) return followviews("moved");
    if (type != QEvent::MouseButtonPress && type != QEvent::MouseButtonRelease &&
        type != QEvent::MouseButtonDblClick)
        return;
    const auto* const mouse = static_cast<QMouseEvent*>(event);
    told = true;
    if (type != QEvent::MouseButtonRelease) {
        if (view->dragging() != viewmoves::none || mouse->button() == Qt::MiddleButton) {
            settle();
            press.view = view->number();
            press.middle = true;
            press.turns = type == QEvent::MouseButtonDblClick ||
                          mouse->button() != Qt::MiddleButton ||
                          view->dragging() != viewmoves::pan || mousenow().preset != 0;
            press.at = mouse->position();
        } else if (lastpress().number != pressnumber) {  // and no menu has opened
            notepress(view, mouse);
        }
        return;
    }
    // A press that was held back until it was clear that it is no drag.
    if (press.view == 0 && lastpress().number != pressnumber) notepress(view, mouse);
    if (press.view != view->number()) return followviews("moved");
    if (press.middle) {
        const QPointF way = (mouse->position() - press.at) / view->pixelspercm();
        const bool turned = press.turns;
        press = {};
        if (turned)
            followviews("turned");
        else if (!way.isNull())
            write(QString("pan %1 %2 %3").arg(view->number()).arg(way.x()).arg(way.y()));
        return;
    }
    const pressoutcome& now = lastpress();
    press.outcome.hits.insert(press.outcome.hits.end(), now.hits.begin(), now.hits.end());
    press.outcome.dragged = now.dragged;
    press.outcome.path = now.path;
    std::copy(now.last, now.last + 3, press.outcome.last);
    flushpress();
}

// --- keys ---------------------------------------------------------------------------------------

// The line of a key; empty where its signs tell what it did, or where it does nothing.
QString keyline(QWidget* w, const QKeyEvent* event) {
    const int key = event->key();
    if (key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock) return {};
    if (key == Qt::Key_Tab || key == Qt::Key_Backtab || key == Qt::Key_Menu || key == 0) return {};
    if (key == Qt::Key_AltGr || key == Qt::Key_unknown) return {};
    const bool ends = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape;
    const bool plainview = qobject_cast<viewwidget*>(w) || w == themainwindow;
    if (!plainview && !ends) return {};
    if (w->inherits("QPlainTextEdit") && key != Qt::Key_Escape) return {};
    // Editors in a grid come and go with these; what was typed tells itself.
    const QWidget* const above = w->parentWidget();
    if (w->inherits("QTableView")
            ? key != Qt::Key_Escape
            : above && above->parentWidget() && above->parentWidget()->inherits("QTableView"))
        return {};
    static const std::pair<int, const char*> names[] = {{Qt::Key_Escape, "ESC"},
                                                        {Qt::Key_Return, "ENTER"},
                                                        {Qt::Key_Enter, "ENTER"},
                                                        {Qt::Key_Space, "SPACE"},
                                                        {Qt::Key_Backspace, "BACKSPACE"}};
    const Qt::KeyboardModifiers held = event->modifiers() & ~Qt::KeypadModifier;
    QString name =
        QKeySequence(QKeyCombination(held, Qt::Key(key))).toString(QKeySequence::PortableText);
    if (!held)
        for (const auto& [code, word] : names)
            if (code == key) name = word;
    if (name.isEmpty()) return {};
    return "key " + quotedword(name) + " " + controlname(w);
}

}  // namespace

// --- the doors ----------------------------------------------------------------------------------

bool isrecording() {
    return recorder().file.isOpen();
}

bool startrecording(const std::string& path, const QStringList& opening, QString& fault) {
    return recorder().begin(path, opening, fault);
}

recorded endrecording() {
    return recorder().end();
}

recordedline::recordedline(const QString& line) {
    if (!line.isEmpty()) mine = recorder().open(line);
}

recordedline::~recordedline() {
    if (mine && recorder().file.isOpen()) recorder().close();
}

void recordanswer(answers answer) {
    if (recorder().active()) recorder().write(QString("answer ") + wordof[int(answer)]);
}

// Beside the script by its name from there, so that the folder can be carried about.
void recordfile(const filechoice& choice, const filebox& box) {
    scriptrecorder& r = recorder();
    if (!r.active()) return;
    if (!choice.chosen) return r.write("file \"\"");
    const QString path = QString::fromStdString(choice.path);
    const QString beside = QDir(r.folder).relativeFilePath(path);
    if (choice.filterindex != box.filterindex)
        r.write("filter " + QString::number(choice.filterindex));
    r.write("file " + quotedword(beside.startsWith("..") ? path : beside));
}

void recordbefore(const QString& line) {
    scriptrecorder& r = recorder();
    if (!r.active()) return;
    if (!r.isopen) r.settle();
    r.write(line);
}

void recordremark(const QString& what) {
    if (recorder().active()) recorder().write("# " + what);
}

recordrest::recordrest() {
    ++recorder().resting;
}

recordrest::~recordrest() {
    --recorder().resting;
}

recordedevent::recordedevent(QObject* r, QEvent* e) : receiver(r), event(e) {
    if (e->type() == QEvent::Polish && r->isWidgetType()) {
        auto* const w = static_cast<QWidget*>(r);
        const controlkind* const kind = kindofcontrol(w);
        if (kind && kind->watch && !w->property("watched").toBool()) {
            w->setProperty("watched", true);
            kind->watch(w, recorder());
        }
    }
    scriptrecorder& now = recorder();
    if (!now.active() || !r->isWidgetType()) return;
    const QEvent::Type type = e->type();
    const bool input = type == QEvent::KeyPress || type == QEvent::KeyRelease ||
                       type == QEvent::MouseButtonPress || type == QEvent::MouseButtonRelease ||
                       type == QEvent::MouseButtonDblClick || type == QEvent::MouseMove ||
                       type == QEvent::Wheel || (type == QEvent::Close && e->spontaneous());
    if (!input || qobject_cast<QMenu*>(r) || qobject_cast<QMenuBar*>(r)) return;
    const int level = QThread::currentThread()->loopLevel();
    if (now.entered >= 0 && level <= now.entered) return;  // sent on by another event
    outermost = now.entered < 0;
    if (!outermost) return;
    now.entered = level;
    auto* const w = static_cast<QWidget*>(r);
    targetbefore = now.target;
    now.target = w;
    now.told = false;
    if (type != QEvent::MouseButtonRelease) now.chosen.clear();  // a click is one choice
    now.entries.clear();
    for (QWidget* above = w; above; above = above->parentWidget()) {
        const controlkind* const kind = kindofcontrol(above);
        const int most = 10000;  // entries that are kept through an event
        if (kind && kind->watch) {
            now.target = above;
            if (kind->entries && above->property("count").toInt() <= most)
                now.entries = kind->entries(above);
            break;
        }
        if (above->isWindow() && above->windowType() != Qt::Popup) break;
    }
    if (now.isopen && !now.button) now.close();
    if (auto* const view = qobject_cast<viewwidget*>(w)) now.beginview(view, e);
    if (type == QEvent::KeyPress) {
        key = keyline(w, static_cast<QKeyEvent*>(e));
        const bool ends = static_cast<QKeyEvent*>(e)->key() != Qt::Key_Escape;
        if (!key.isEmpty() && ends && w->objectName().startsWith("input"))
            now.fieldname.clear();  // the command is recorded itself
        if (!key.isEmpty()) {
            now.flushtyped();
            lastpress().hits.clear();
        }
    }
    if (type == QEvent::Close) key = "close " + quotedword(w->window()->objectName());
}

recordedevent::~recordedevent() {
    if (!outermost) return;
    scriptrecorder& now = recorder();
    now.entered = -1;
    if (!now.active()) return;
    if (auto* const view = qobject_cast<viewwidget*>(receiver)) now.endview(view, event);
    // A handler that failed has told no more; a button that was left with the pointer acts not.
    if (now.isopen && now.button) {
        if (event->type() == QEvent::MouseMove) {
            now.isopen = false;
            now.button = nullptr;
        } else {
            now.close();
        }
    }
    if (!now.told && !key.isEmpty()) {
        now.settle();
        now.write(withhits(key, lastpress().hits));
    }
    now.target = targetbefore;
}
