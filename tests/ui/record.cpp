// SPDX-License-Identifier: GPL-3.0-or-later
// What is recorded, and that it does the same again.
#include "ui/record.h"

#include <QRegularExpression>

#include "core/model.h"
#include "core/session.h"
#include "edit/Mouseprocedures.h"
#include "files/filemenu.h"
#include "tests/ui/playroom.h"
#include "ui/actions.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/numinttable.h"
#include "ui/qtplatform.h"
#include "ui/recordplay.h"
#include "ui/script.h"
#include "ui/scriptkeys.h"
#include "ui/viewwidget.h"
#include "view/setviews.h"

namespace {
struct recordroom : sessionroom {
    recordroom() {
        setplatform(&theqtplatform());
        theqtplatform().scripted = true;
        wiredialogs();
        if (modes().empty()) wiremouse();
        window.ending = true;
        window.resize(900, 700);
        window.show();
        QApplication::processEvents();
        QString fault;
        path = appdir + "/session.kds";
        EXPECT_TRUE(startrecording(path, {}, fault)) << fault.toStdString();
    }
    ~recordroom() { endrecording(); }
    void mouse(QEvent::Type kind, const QPointF& at, Qt::MouseButton button) {
        QMouseEvent event(kind, at, window.view(1)->mapToGlobal(at), button, button, {});
        QApplication::sendEvent(window.view(1), &event);
    }
    void click(const QPointF& at, Qt::MouseButton button = Qt::LeftButton) {
        mouse(QEvent::MouseButtonPress, at, button);
        mouse(QEvent::MouseButtonRelease, at, button);
    }
    // Without the lines of the views, which stand behind the first.
    std::string script() {
        endrecording();
        const QString whole = QString::fromStdString(contentof(path));
        return QString(whole).remove(QRegularExpression("view [^\n]*\n")).toStdString();
    }
    mainwindow window;
    std::string path;
};
}  // namespace

TEST(Record, TellsControlsByNameAndQuestionsByAnswer) {
    recordroom room;
    findaction("Mnuadditem(1)")->item->trigger();
    auto* const line = room.window.findChild<QComboBox*>("inputfield");
    type(line->lineEdit(), "ax=1;2;3");
    presskey(line, Qt::Key_Return);
    presskey(room.window.view(1), Qt::Key_Escape);
    theqtplatform().answerqueue = {answers::no};
    findaction("mnuFileItem(0)")->item->trigger();
    findaction("definegroup(1)")->item->trigger();
    QApplication::processEvents();
    QWidget* const dialog = QApplication::activeModalWidget();
    ASSERT_TRUE(dialog);
    auto* const name = dialog->findChild<QComboBox*>("Combo2");
    type(name->lineEdit(), "dead \"weight\"");
    dialog->findChild<QAbstractButton*>("Command1")->click();
    EXPECT_EQ(room.script(),
              "menu \"Add/Free Node\"\n"
              "command ax=1;2;3\n"
              "key ESC main view1\n"
              "answer no\n"
              "menu File/New\n"
              "menu Define/Loadcase\n"
              "set Loadkees Combo2 \"dead \\\"weight\\\"\"\n"
              "press Loadkees Command1\n");
    dialog->close();
}

// The press falls on other pixels there, and gives the very same point.
TEST(Record, APointIsTheSameInAWindowOfAnotherSize) {
    recordroom room;
    findaction("Mnuadditem(1)")->item->trigger();
    room.click({211, 187});
    presskey(room.window.view(1), Qt::Key_Escape);
    findaction("MnuSelectItem(0)")->item->trigger();
    room.click({15, 30});  // far off: the nearest node
    const float at[] = {nodes(0, 1, 0), nodes(0, 1, 1), nodes(0, 1, 2)};
    const std::string script = room.script();
    EXPECT_NE(script.find("hits 1\npick 1 "), script.npos) << script;
    room.window.resize(1200, 1000);
    theqtplatform().answerqueue = {answers::no};
    menunew();
    scriptplayer player;
    ASSERT_TRUE(player.load(QString::fromStdString(room.path)));
    EXPECT_TRUE(player.play()) << player.fault.toStdString();
    ASSERT_EQ(nnodes(), 1);
    for (int k = 0; k < 3; ++k) EXPECT_EQ(nodes(0, 1, k), at[k]);
    EXPECT_EQ(nodesel(0), 1);
}

TEST(Record, AViewThatIsTurnedAndFittedStandsTheSameAgain) {
    recordroom room;
    for (const float x : {0.f, 30.f}) addnode(x, 0, 0);
    const auto middle = [&](QEvent::Type kind, const QPointF& at, Qt::KeyboardModifiers keys) {
        QMouseEvent event(kind, at, room.window.view(1)->mapToGlobal(at), Qt::MiddleButton,
                          Qt::MiddleButton, keys);
        QApplication::sendEvent(room.window.view(1), &event);
    };
    const float before = viewhor(1);
    middle(QEvent::MouseButtonPress, {100, 100}, Qt::ShiftModifier);
    middle(QEvent::MouseMove, {150, 90}, Qt::ShiftModifier);
    middle(QEvent::MouseButtonRelease, {150, 90}, {});  // the key was let go before the button
    EXPECT_NEAR(todegrees(viewhor(1) - before), 20, 1e-3);
    middle(QEvent::MouseButtonDblClick, {100, 100}, {});
    middle(QEvent::MouseButtonRelease, {100, 100}, {});
    const std::array<double, 4> seen = {viewhor(1), viewvert(1), viewptx(1), viewscale(1)};
    endrecording();
    setpreset(1, 1);
    viewscale(1) = 1;
    scriptplayer player;
    ASSERT_TRUE(player.load(QString::fromStdString(room.path)));
    EXPECT_TRUE(player.play()) << player.fault.toStdString();
    EXPECT_EQ((std::array<double, 4>{viewhor(1), viewvert(1), viewptx(1), viewscale(1)}), seen);
}

// Cells typed over one by one and in several rows, chosen from a list, pasted over the end with its
// question, and rows deleted.
TEST(Record, AGridIsFilledPastedAndErasedAgain) {
    const auto start = [] {
        theqtplatform().answerqueue = {answers::no};
        menunew();
        for (const float x : {0.f, 1.f, 2.f}) addnode(x, 0, 0);
        connode(ncon = 1) = 2;
        condof(1) = 1;
    };
    recordroom room;
    start();
    QString fault;
    endrecording();
    startrecording(room.path, {}, fault);
    findaction("mnuEditItem(9)")->item->trigger();
    QApplication::processEvents();
    auto* const dialog = room.window.findChild<QDialog*>("Numint");
    ASSERT_TRUE(dialog);
    for (QTimer* timer : dialog->findChildren<QTimer*>()) timer->stop();  // quicker than any
    auto* const grid = dynamic_cast<gridview*>(dialog->findChild<QTableView*>("Grid1(1)"));
    auto* const tabs = dialog->findChild<QTabBar*>("TabStrip1(1)");
    const auto edit = [&](int row, int last, int col, const QString& text) {
        const auto* const cells = grid->model();
        grid->setCurrentIndex(cells->index(row, col));
        grid->selectionModel()->select({cells->index(row, col), cells->index(last, col)},
                                       QItemSelectionModel::ClearAndSelect);
        if (text.isEmpty()) return;
        grid->editcurrent();
        // The editor before is hidden and may still wait for its end.
        for (QWidget* editor : grid->viewport()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
            if (auto* const list = qobject_cast<QComboBox*>(editor); list && list->isVisible()) {
                list->setCurrentText(text);
                emit list->activated(list->currentIndex());
            } else if (auto* const box = qobject_cast<QLineEdit*>(editor);
                       box && box->isVisible()) {
                type(box, text);
                presskey(box, Qt::Key_Return);
            }
        for (int i = 0; i < 3; ++i) QApplication::processEvents();  // key, editor, commit
    };
    edit(1, 1, 2, "7.5");
    edit(1, 2, 3, "-4");
    edit(2, 2, 1, "");
    theqtplatform().answerqueue = {answers::yes};
    grid->paste("5\t6\n7\t8\n");
    for (int i = 0; i < 3; ++i) presskey(tabs, Qt::Key_Right);
    edit(0, 0, 2, "RZ");
    for (int i = 0; i < 3; ++i) presskey(tabs, Qt::Key_Left);
    edit(0, 0, 1, "");
    theqtplatform().answerqueue = {answers::yes};
    grid->erase();
    dialog->findChild<QPushButton*>("CommandButton1")->click();
    QApplication::processEvents();
    const auto numbers = [] {
        std::string text = std::to_string(condof(1)) + " " + std::to_string(connode(1));
        for (int n = 1; n <= nnodes(); ++n)
            for (int k = 0; k < 3; ++k) text += " " + std::to_string(nodes(0, n, k));
        return text;
    };
    const std::string once = numbers(), script = room.script();
    EXPECT_EQ(once,
              "6 1 1.000000 7.500000 -4.000000 5.000000 6.000000 -4.000000 "
              "7.000000 8.000000 0.000000")
        << script;
    start();
    scriptplayer player;
    ASSERT_TRUE(player.load(QString::fromStdString(room.path)));
    EXPECT_TRUE(player.play()) << player.fault.toStdString() << script;
    EXPECT_EQ(numbers(), once) << script;
}
