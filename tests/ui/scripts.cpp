// SPDX-License-Identifier: GPL-3.0-or-later
// Every script beside this file, played by the real program; and how a script ends.
#include "ui/script.h"

#include <QTimer>

#include "tests/ui/playroom.h"

class Script : public testing::TestWithParam<std::string> {};

TEST_P(Script, PlaysToItsEnd) {
    const playroom room;
    room.play(contentof(sourcedir() + "/tests/ui/" + GetParam() + ".kds"));
}

INSTANTIATE_TEST_SUITE_P(Ui, Script, testing::ValuesIn(scriptsin("tests/ui")),
                         [](const auto& entry) { return entry.param; });

TEST(Program, AFailingScriptNamesItsLine) {
    const playroom room(false);
    EXPECT_NE(room.play("# comment\nexpect nnodes 0\nexpect nelems 7\n", 1)
                  .find("play.kds, line 3: nelems is \"0\", expected \"7\""),
              std::string::npos);
}

TEST(Program, ResultsOfAScriptGoWhereTheUserMayWrite) {
    const playroom room(false);
    room.play("results out/a\npicture 1 results:a.png\n");
    EXPECT_NE(room.content("out/a/a.png"), "");
    // A directory can not be made within a file.
    const std::string said = room.play("results play.kds/b\npicture 1 results:b.png\n");
    EXPECT_NE(room.content("home/b/b.png"), "");
    EXPECT_NE(said.find("home/b"), said.npos) << said;
}

TEST(Program, ADemonstrationThatIsStoppedEndsWithoutAFault) {
    const playroom room(false);
    const std::string path = (room.folder / "demo.kds").string();
    writefile(path, "say \"first\"\nwait 600000\nsay \"second\"\n");
    scriptplayer player;
    ASSERT_TRUE(player.load(QString::fromStdString(path)));
    QStringList said;
    player.pauses = true;
    player.say = [&](const QString& text) {
        said << text;
        QTimer::singleShot(10, [&] { player.stopped = true; });
    };
    EXPECT_FALSE(player.play());
    EXPECT_EQ(player.fault, "");
    EXPECT_EQ(said, QStringList{"first"});
}
