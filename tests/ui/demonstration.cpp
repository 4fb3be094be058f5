// SPDX-License-Identifier: GPL-3.0-or-later
// Demonstrations: each plays to its end in the real program; pause, back and next in the window;
// the model that was in hand comes back.
#include "ui/demonstration.h"

#include <QTimer>

#include "core/journal.h"
#include "edit/Mouseprocedures.h"
#include "tests/ui/playroom.h"
#include "ui/demoplay.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/qtplatform.h"

class Demonstration : public testing::TestWithParam<std::string> {};

TEST_P(Demonstration, PlaysToItsEnd) {
    const playroom room;
    room.play(
        contentof(sourcedir() + "/data/demo/" + GetParam() + ".kds") + "\nexpect addnodemode 0\n",
        0, "home/demo/played.kds");
}

INSTANTIATE_TEST_SUITE_P(Ui, Demonstration, testing::ValuesIn(scriptsin("data/demo")),
                         [](const auto& entry) { return entry.param; });

namespace {
// The window on the real platform: what a demonstration asks is answered by its own queue.
struct stageroom : sessionroom {
    stageroom() {
        if (modes().empty()) wiremouse();
        setplatform(&theqtplatform());
        theqtplatform().scripted = true;
        wiredialogs();
        window.ending = true;
        window.show();
    }
    ~stageroom() {
        theqtplatform().scripted = false;
        setplatform(&platform);
    }
    // Runs when the panel shows this text.
    void when(const QString& words, std::function<void()> act) {
        auto* const timer = new QTimer(&window);
        QObject::connect(timer, &QTimer::timeout, timer, [this, timer, words, act] {
            const auto* const text = window.findChild<QLabel*>("demotext");
            if (!text || text->text() != words) return;
            timer->deleteLater();
            act();
        });
        timer->start(10);
    }
    void press(const char* button) { window.findChild<QPushButton*>(button)->click(); }
    mainwindow window;
};
}  // namespace

TEST(Demonstrations, BeginWithTheFirstSteps) {
    const sessionroom room;
    const std::string before = std::exchange(programdir, sourcedir() + "/data");
    const std::vector<demonstration> list = demonstrations();
    programdir = before;
    ASSERT_GE(list.size(), 4u);
    EXPECT_EQ(list.front().title, "A first plate");
    EXPECT_EQ(list.back().title, "The whole road of a job");
}

// The second text shows three nodes; back from there and on again, they are there once. A stop
// leaves them, and the window as it was.
TEST(Demoplay, GoesBackAndOnAndStops) {
    stageroom room;
    const std::string script = room.file("short.kds");
    writefile(script,
              "say \"one\"\nmenu \"Add/Free Node\"\ncommand ax=0;0;0\ncommand ax=1;0;0\nkey ESC\n"
              "say \"two\"\nmenu \"view/Nodes\"\nmenu \"Add/Free Node\"\ncommand ax=2;0;0\n"
              "key ESC\nsay \"three\"\nwait 60000\nexpect nnodes 99\n");
    std::vector<int> seen;
    bool before = mnudrawlist(nodesdrawn).checked;
    room.when("one", [&] { room.press("demonext"); });
    room.when("two", [&] {
        seen.push_back(nnodes());
        room.press("demoback");
        room.when("one", [&] {
            seen.push_back(nnodes());
            room.press("demonext");
            room.when("two", [&] { room.press("demonext"); });
            room.when("three", [&] {
                seen.push_back(nnodes());
                EXPECT_NE(bool(mnudrawlist(nodesdrawn).checked), before) << "switched once";
                room.press("demopause");
                room.press("demostop");
            });
        });
    });
    const demooutcome outcome = playdemo(QString::fromStdString(script), true);
    EXPECT_EQ(outcome.end, demoends::stopped) << outcome.fault.toStdString();
    EXPECT_EQ(seen, (std::vector{2, 0, 3}));
    EXPECT_EQ(nnodes(), 3);
    EXPECT_FALSE(room.window.findChild<QLabel*>("demotext"));
    mnudrawlist(nodesdrawn).checked = before;
    writefile(script, "say \"one\"\nexpect nnodes 7\n");
    EXPECT_EQ(playdemo(QString::fromStdString(script), false).fault,
              "short.kds, line 2: nnodes is \"0\", expected \"7\"");
}

TEST(Demoplay, TheModelInHandComesBackAsItWas) {
    namespace fs = std::filesystem;
    for (const bool changed : {true, false}) {
        stageroom room;
        fs::create_directories(room.file("data/demo"));
        fs::create_directories(room.file("data/examples"));
        writefile(room.file("data/demo/short.kds"),
                  "menu \"Add/Free Node\"\ncommand ax=0;0;0\nkey ESC\nexpect nnodes 1\n");
        for (const float x : {1.f, 2.f, 3.f}) addnode(x, 4, 5);
        nodename(2) = "mine";
        modelname = room.file("mine");
        changed ? noteunsaved() : notesaved();
        theqtplatform().answerqueue = {answers::no};
        playdemonstration(QString::fromStdString(room.file("data/demo/short.kds")));
        ASSERT_EQ(nnodes(), 3);
        EXPECT_EQ(nodes(0, 3, 0), 3);
        EXPECT_EQ(nodename(2), "mine");
        EXPECT_EQ(modelname, room.file("mine"));
        EXPECT_EQ(isunsaved(), changed);
        theqtplatform().answerqueue = {answers::yes, answers::yes};  // and drops what is not saved
        playdemonstration(QString::fromStdString(room.file("data/demo/short.kds")));
        EXPECT_EQ(nnodes(), 1);
        theqtplatform().answerqueue.clear();
    }
}
