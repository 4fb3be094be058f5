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

TEST(Program, ControlCharactersOfAModelReachNoTerminal) {
    const playroom room(false);
    const std::string said = room.play("expect title \"\x1b[31m\"\n", 1);
    EXPECT_EQ(said.find('\x1b'), said.npos) << said;
    EXPECT_NE(said.find("\\x1b[31m"), said.npos) << said;
}

// Whatever keeps the program from its work is told on standard error, with exit code 1, or 2 for a
// command line that is none.
TEST(Program, TellsWhyItCanNotBegin) {
    namespace fs = std::filesystem;
    const playroom room(false);
    const std::string script = (room.folder / "play.kds").string();
    writefile(script, "expect nnodes 0\n");
    fs::create_directory(room.folder / "bin");  // a program without its catalogue
    fs::copy_file(KALVANE_PROGRAM, room.folder / "bin/kalvane");
    const struct {
        const char *what, *program, *home;
        QStringList arguments;
        const char* said;
        int code = 1;
    } cases[] = {
        {"no home", KALVANE_PROGRAM, "play.kds/home", {"--script", "play.kds"}, "can not be made"},
        {"no catalogue", "bin/kalvane", "home", {"--script", "play.kds"}, "ELTYP.DAT not found"},
        {"no script", KALVANE_PROGRAM, "home2", {"--script", "none.kds"}, "can not be read"},
        {"no name", KALVANE_PROGRAM, "home2", {"--script", ""}, "the name of a file", 2},
        {"two", KALVANE_PROGRAM, "home2", {"--script", "play.kds", "m.tek"}, "m.tek", 2},
        {"no option", KALVANE_PROGRAM, "home2", {"--colour"}, "colour", 2},
        {"no theme", KALVANE_PROGRAM, "home2", {"--theme", "red"}, "dark or light", 2},
        {"help", KALVANE_PROGRAM, "none", {"--help"}, "Exit code", 0},
        {"no such cell", KALVANE_PROGRAM, "home2", {"--script", "cell.kds"}, "line 1"},
    };
    writefile((room.folder / "cell.kds").string(), "expect nodes(0,99999999,0) 0\n");
    for (const auto& c : cases) {
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("KALVANE_HOME", QString::fromStdString(room.folder / c.home));
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        program.setProcessEnvironment(environment);
        program.setWorkingDirectory(QString::fromStdString(room.folder));
        program.start(QString::fromStdString(room.folder / c.program), c.arguments);
        ASSERT_TRUE(program.waitForFinished(60000)) << c.what;
        EXPECT_EQ(program.exitCode(), c.code) << c.what;
        const QByteArray told =
            c.code == 0 ? program.readAllStandardOutput() : program.readAllStandardError();
        const std::string said = told.toStdString();
        EXPECT_NE(said.find(c.said), said.npos) << c.what << ": " << said;
    }
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

// A limit on the size of files stands for the full disk.
TEST(Program, APictureIsWholeOrNotThere) {
    const playroom room(false);
    writefile((room.folder / "play.kds").string(), "picture 1 a.png\n");
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("KALVANE_HOME", QString::fromStdString(room.folder / "home"));
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    program.setProcessEnvironment(environment);
    program.setWorkingDirectory(QString::fromStdString(room.folder));
    program.start(
        "sh", {"-c", "trap '' XFSZ; ulimit -f 2; exec \"$0\" --script play.kds", KALVANE_PROGRAM});
    ASSERT_TRUE(program.waitForFinished(60000));
    const std::string said = program.readAllStandardError().toStdString();
    EXPECT_EQ(program.exitCode(), 1) << said;
    EXPECT_NE(said.find("the picture can not be written"), said.npos) << said;
    for (const auto& entry : std::filesystem::directory_iterator(room.folder))
        EXPECT_EQ(entry.path().string().find(".png"), std::string::npos) << entry.path();
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
