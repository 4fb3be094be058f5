// SPDX-License-Identifier: GPL-3.0-or-later
// A user without a plan: presses random menus, buttons, keys and mouse buttons in the real window
// and types good and bad texts, while the sanitizers and the checks below watch.
//   monkey EXAMPLES FOLDER SEED STEPS [record]     (models are copied from EXAMPLES into FOLDER)
// The same seed does the same again. In every other run the copies are damaged. FOLDER/steps.txt
// tells what was done; the last line is the step that failed. With "record" the copies stay whole,
// FOLDER/session.kds is the record of the session, and the model is saved at its end as end.tek.
#include <QtWidgets>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>

#include "core/appdir.h"
#include "core/journal.h"
#include "core/model.h"
#include "core/session.h"
#include "core/start.h"
#include "core/views.h"
#include "edit/Mouseprocedures.h"
#include "files/filemenu.h"
#include "files/solverlock.h"
#include "ui/actions.h"
#include "ui/mainwindow.h"
#include "ui/qtplatform.h"
#include "ui/scriptkeys.h"
#include "ui/startup.h"
#include "ui/viewwidget.h"
#include "view/scaleview.h"

namespace fs = std::filesystem;

namespace {

std::mt19937 dice;
std::ofstream steps;
fs::path folder;
bool recording;

int upto(int n) {  // 0..n-1
    return n > 0 ? int(dice() % unsigned(n)) : 0;
}

template <typename List>
const auto& oneof(const List& list) {
    return list[decltype(list.size())(upto(int(list.size())))];
}

void tell(const std::string& what) {
    steps << what << std::endl;
}

std::string number() {
    static const std::vector<std::string> odd = {"0",    "-1",    "1",   "2",      "3",    "10",
                                                 "1e30", "-1e30", "nan", "inf",    "1e-9", "",
                                                 "abc",  "1,5",   "7.5", "999999", "*",    "1E400"};
    if (upto(3) > 0) return oneof(odd);
    return std::to_string((upto(20001) - 10000) / 10.0);
}

std::string typedcommand() {
    static const std::vector<std::string> verbs = {
        "ax=", "dx=", "fn=", "rx=", "ry=", "rz=", "sc=", "mxy", "myz", "mxz=", "no such "};
    if (upto(6) == 0) return "help";
    std::string text = oneof(verbs);
    for (int i = 0, n = 1 + upto(4); i < n; ++i) text += (i ? ";" : "") + number();
    return text;
}

// Half of the models' files lose their end, or some of their bytes become others.
void damagefiles() {
    std::set<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.is_regular_file() && entry.path().extension() != ".txt") files.insert(entry);
    for (const fs::path& file : files) {
        if (upto(2) == 0) continue;
        std::ifstream in(file, std::ios::binary);
        std::string bytes(std::istreambuf_iterator<char>(in), {});
        in.close();
        if (upto(4) == 0) bytes.resize(std::size_t(upto(int(bytes.size()))));
        static const std::string others = "0123456789-.E \r\n;abc\x00\xff";
        for (int i = upto(4); i > 0 && !bytes.empty(); --i)
            bytes[std::size_t(upto(int(bytes.size())))] = oneof(others);
        std::ofstream(file, std::ios::binary) << bytes;
    }
}

// --- one step of each kind ----------------------------------------------------------------------

void pressmenu() {
    static const std::set<std::string> kept = {"mnuFileItem(10)", "record", "playscript"};
    std::vector<action*> open;
    for (action& row : actions()) {
        const bool slow = recording && row.name == "demo01(0)";
        if (row.item && row.item->isEnabled() && row.run && !slow && !kept.contains(row.name))
            open.push_back(&row);
    }
    if (open.empty()) return;
    const action& row = *oneof(open);
    tell(std::string("menu ") + row.menu + "|" + row.caption);
    row.item->trigger();
}

QPointF someplace(const viewwidget* w, int nview) {
    if (upto(2) == 0 && nodes(0, 0, 0) > 0) {
        const int n = 1 + upto(int(nodes(0, 0, 0)));
        prepareview(nview);
        projectplace(nview, nodes(0, n, 0), nodes(0, n, 1), nodes(0, n, 2));
        const QPointF at = QPointF(scrx, scry) * w->pixelspercm();
        if (std::isfinite(at.x()) && std::isfinite(at.y()) && w->rect().contains(at.toPoint()))
            return at;
    }
    return {double(upto(w->width())), double(upto(w->height()))};
}

void mouse(QWidget* w, QEvent::Type kind, const QPointF& at, Qt::MouseButton b,
           Qt::MouseButtons held, Qt::KeyboardModifiers keys) {
    QMouseEvent event(kind, at, w->mapToGlobal(at), b, held, keys);
    QApplication::sendEvent(w, &event);
}

void usemouse() {
    std::vector<int> shown;
    for (int v = 1; v <= 4; ++v)
        if (themainwindow->view(v)->isVisible()) shown.push_back(v);
    if (shown.empty() || !themainwindow->isEnabled()) return;
    const int v = oneof(shown);
    viewwidget* const w = themainwindow->view(v);
    const Qt::MouseButton b = upto(3)   ? Qt::LeftButton
                              : upto(2) ? Qt::RightButton
                                        : Qt::MiddleButton;
    const Qt::KeyboardModifiers keys =
        upto(5) == 0 ? (upto(2) ? Qt::ControlModifier : Qt::ShiftModifier) : Qt::NoModifier;
    QPointF at = someplace(w, v);
    tell("mouse view " + std::to_string(v) + " button " + std::to_string(int(b)) + " at " +
         std::to_string(at.x()) + " " + std::to_string(at.y()));
    mouse(w, QEvent::MouseMove, at, Qt::NoButton, Qt::NoButton, keys);
    if (upto(6) == 0) {
        QWheelEvent wheel(at, w->mapToGlobal(at), {}, {0, upto(2) ? 120 : -120}, Qt::NoButton, keys,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(w, &wheel);
        return;
    }
    mouse(w, QEvent::MouseButtonPress, at, b, b, keys);
    for (int i = upto(3); i > 0; --i) {
        at = someplace(w, v);
        mouse(w, QEvent::MouseMove, at, Qt::NoButton, b, keys);
    }
    mouse(w, QEvent::MouseButtonRelease, at, b, Qt::NoButton, keys);
    if (upto(10) > 0) return;
    mouse(w, QEvent::MouseButtonDblClick, at, b, b, keys);
    mouse(w, QEvent::MouseButtonRelease, at, b, Qt::NoButton, keys);
}

void usekey() {
    static const std::vector<int> keys = {
        Qt::Key_Escape,    Qt::Key_Escape, Qt::Key_Return, Qt::Key_Return, Qt::Key_Space,
        Qt::Key_Backspace, Qt::Key_Delete, Qt::Key_F1,     Qt::Key_F6,     Qt::Key_Left};
    const int key = oneof(keys);
    tell("key " + std::to_string(key));
    presskey(keyboardfocus(), key, key == Qt::Key_Space ? " " : "");
}

void typein(QLineEdit* edit, const std::string& text) {
    const QPointer<QWidget> target = edit->focusProxy() ? edit->focusProxy() : edit;
    type(edit, QString::fromStdString(text));
    if (target) presskey(target, upto(2) ? Qt::Key_Return : Qt::Key_Tab);
}

void usecommand() {
    auto* const field = themainwindow->findChild<QComboBox*>("inputfield");
    if (field == nullptr || !field->isEnabled() || !themainwindow->isEnabled()) return;
    const std::string text = typedcommand();
    tell("command " + text);
    type(field->lineEdit(), QString::fromStdString(text));
    presskey(field, Qt::Key_Return);
}

void clickat(QWidget* w, const QPointF& at) {
    const QPointer<QWidget> target = w;
    mouse(w, QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    if (target)
        mouse(w, QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
}

void usecontrol(QWidget* w) {
    const std::string name = w->objectName().toStdString();
    if (auto* const edit = qobject_cast<QLineEdit*>(w); edit && !edit->isReadOnly()) {
        const std::string text = number();
        tell("set " + name + " " + text);
        typein(edit, text);
    } else if (auto* const b = qobject_cast<QAbstractButton*>(w)) {
        const auto* const tool = qobject_cast<QToolButton*>(w);
        if (tool && (tool->menu() || tool->defaultAction())) return;  // actions are pressed above
        tell("press " + name + " " + b->text().toStdString());
        clickat(w, QPoint(std::min(8, w->width() / 2), w->height() / 2));  // on the mark of a box
    } else if (auto* const combo = qobject_cast<QComboBox*>(w); combo && combo->count() > 0) {
        static const std::vector<int> ways = {Qt::Key_Down, Qt::Key_Up, Qt::Key_PageDown};
        const int key = oneof(ways);
        tell("list " + name + " key " + std::to_string(key));
        combo->setFocus();
        presskey(combo, key);
    } else if (auto* const list = qobject_cast<QListWidget*>(w); list && list->count() > 0) {
        const int i = upto(list->count());
        tell("item " + name + " " + std::to_string(i));
        list->scrollToItem(list->item(i));
        clickat(list->viewport(), list->visualItemRect(list->item(i)).center());
    } else if (auto* const tabs = qobject_cast<QTabBar*>(w)) {
        const int i = upto(tabs->count());
        tell("tab " + name + " " + std::to_string(i));
        clickat(tabs, tabs->tabRect(i).center());
    } else if (qobject_cast<QAbstractSlider*>(w)) {
        static const std::vector<int> ways = {Qt::Key_Right, Qt::Key_Left, Qt::Key_PageUp,
                                              Qt::Key_PageDown};
        const int key = oneof(ways);
        tell("slide " + name + " key " + std::to_string(key));
        presskey(w, key);
    } else if (auto* const grid = qobject_cast<QTableWidget*>(w);
               grid && grid->rowCount() > 0 && grid->columnCount() > 0) {
        const int r = upto(std::min(grid->rowCount(), 6)), c = upto(grid->columnCount());
        const std::string text = number();
        tell("cell " + name + " " + std::to_string(r) + " " + std::to_string(c) + " " + text);
        grid->setCurrentCell(r, c);
        presskey(grid, Qt::Key_F2);
        if (auto* const field = grid->viewport()->findChild<QLineEdit*>()) {
            type(field, QString::fromStdString(text));
            presskey(field, Qt::Key_Return);
        }
    }
}

std::vector<QWidget*> opendialogs() {
    std::vector<QWidget*> open;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->isVisible() && qobject_cast<QDialog*>(w)) open.push_back(w);
    std::ranges::sort(open, {}, &QWidget::objectName);  // their addresses differ from run to run
    return open;
}

void usedialog() {
    const std::vector<QWidget*> open = opendialogs();
    QWidget* const window = open.empty() || upto(8) == 0 ? themainwindow : oneof(open);
    if (!window->isEnabled()) return;
    if (window != themainwindow && upto(30) == 0) {
        tell("leave " + window->objectName().toStdString());
        presskey(window, Qt::Key_Escape);
        return;
    }
    QList<QWidget*> usable;
    for (QWidget* w : window->findChildren<QWidget*>())
        if (w->isEnabled() && w->isVisible() && w->window() == window) usable << w;
    if (usable.isEmpty()) return;
    steps << window->objectName().toStdString() << ": ";
    usecontrol(oneof(usable));
}

void useanything() {
    theqtplatform().answerqueue.clear();
    theqtplatform().filequeue.clear();
    static const std::vector<answers> replies = {answers::yes, answers::no, answers::cancel};
    for (int i = 0; i < 4; ++i) theqtplatform().answerqueue.push_back(oneof(replies));
    static const std::vector<std::string> names = {
        "portal.tek", "platehole.tek", "tower.tek", "platform.tek", "bracket.tek", "panel.tek",
        "joints.tek", "new.tek",       "new.pdf",   "none/x.tek",   "new.set",     "portal.DAT"};
    theqtplatform().filequeue.push_back((folder / oneof(names)).string());
    const bool dialog = !opendialogs().empty();
    const int kind = upto(20);
    if (dialog && kind < 14) return usedialog();
    if (kind < 7) return pressmenu();
    if (kind < 15) return usemouse();
    if (kind < 17) return usecommand();
    if (kind < 18) return usekey();
    usedialog();
}

// --- what must hold after each step -------------------------------------------------------------

void need(bool good, const std::string& what) {
    if (good) return;
    tell("FAULT: " + what);
    std::fprintf(stderr, "%s\n", what.c_str());
    std::abort();
}

void checkmodel() {
    const int nn = int(nodes(0, 0, 0)), ne = int(elems(0, 0)), ng = int(groups(0, 0));
    need(nn >= 0 && nn <= nodes.upper2, "count of nodes");
    need(ne >= 0 && ne <= elems.upper1, "count of elements");
    need(ncon >= 0 && ncon <= modelsize(sizeconditions), "count of constraints");
    for (int n = 1; n <= nn; ++n)
        for (int d = 0; d < 3; ++d)
            need(std::isfinite(nodes(0, n, d)), "place of node " + std::to_string(n));
    for (int e = 1; e <= ne; ++e) {
        if (elems(e, 0) <= 0) continue;
        for (int i = 1; i <= 4; ++i)
            need(elems(e, i) >= 0 && elems(e, i) <= nn,
                 "node " + std::to_string(i) + " of element " + std::to_string(e));
        need(egroup(e) >= 0 && egroup(e) <= ng, "group of element " + std::to_string(e));
    }
    const auto needrows = [](int rows, const auto& number, int most, const char* what,
                             int least = 1) {
        for (int i = 1; i <= rows; ++i)
            need(number(i) >= least && number(i) <= most, what + std::to_string(i));
    };
    needrows(ncon, connode, nn, "node of constraint ");
    // A deleted load case leaves holes, node 0, in the one before it.
    for (int lc = 1; lc <= loadnode(0, 0); ++lc)
        needrows(
            loadnode(lc, 0), [lc](int i) { return loadnode(lc, i); }, nn, "node of load ", 0);
    needrows(nodesel(0), nodesel, nn, "selected node ");
    needrows(elemsel(0), elemsel, ne, "selected element ");
}

void settle() {
    for (int i = 0; i < 3; ++i) {
        QApplication::processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    if (QWidget* const popup = QApplication::activePopupWidget()) popup->close();
}

// --- the record ---------------------------------------------------------------------------------

void runnamed(const char* name, const fs::path& file) {
    theqtplatform().answerqueue.assign(4, answers::yes);
    theqtplatform().filequeue.assign(1, file.string());
    findaction(name)->item->trigger();
    settle();
}

// What is open closes, and the model is saved.
void endsession() {
    for (int i = 0; i < 20; ++i) {
        const std::vector<QWidget*> open = opendialogs();
        presskey(open.empty() ? keyboardfocus() : open.back(), Qt::Key_Escape);
        settle();
    }
    runnamed("mnuFileItem(3)", folder / "end.tek");
    runnamed("record", "");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 5) return 2;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    folder = argv[2];
    fs::create_directories(folder / "home");
    fs::copy(argv[1], folder, fs::copy_options::overwrite_existing | fs::copy_options::recursive);
    qputenv("KALVANE_HOME", (folder / "home").c_str());
    steps.open(folder / "steps.txt");
    dice.seed(unsigned(std::atoi(argv[3])));
    recording = argc > 5 && std::string(argv[5]) == "record";
    if (upto(2) == 0 && !recording) damagefiles();
    guardedapplication application(argc, argv);
    setplatform(&theqtplatform());
    theqtplatform().scripted = true;
    wiremodules();
    programdir = QCoreApplication::applicationDirPath().toStdString();
    if (!start(findappdir(programdir, programdir + "/../share/kalvane"))) return 1;
    notesaved();
    auto* const window = new mainwindow;
    showmainwindow(*window, true);
    if (recording) {
        window->resize(1010, 700);
        runnamed("mnuFileItem(1)", folder / "portal.tek");
        runnamed("record", folder / "session.kds");
    }
    QElapsedTimer clock;
    for (int i = 0; i < std::atoi(argv[4]) && !window->ending; ++i) {
        clock.start();
        useanything();
        settle();
        checkmodel();
        if (clock.elapsed() > 5000) tell("SLOW: " + std::to_string(clock.elapsed()) + " ms");
    }
    if (recording) endsession();
    window->ending = true;
    delete window;
    deletecontrolfile();
    return 0;
}
