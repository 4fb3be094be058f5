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
#include "ui/qtplatform.h"
#include "ui/recordplay.h"
#include "ui/script.h"
#include "ui/scriptkeys.h"
#include "ui/viewwidget.h"

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
