// SPDX-License-Identifier: GPL-3.0-or-later
// Every script beside this file is played by the real program, off screen, in a directory of its
// own that holds copies of the examples.
#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <filesystem>

#include "ui/script.h"

namespace fs = std::filesystem;

static fs::path sourcedir() {
    const char* dir = std::getenv("KALVANE_SOURCE");
    return dir ? dir : KALVANE_SOURCE_DIR;
}

static std::vector<std::string> scripts() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(sourcedir() / "tests/ui"))
        if (entry.path().extension() == ".kds") names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

class Script : public testing::TestWithParam<std::string> {};

TEST_P(Script, PlaysToItsEnd) {
    const QTemporaryDir room;
    const fs::path folder = room.path().toStdString();
    const fs::path script = folder / (GetParam() + ".kds");
    fs::copy_file(sourcedir() / "tests/ui" / (GetParam() + ".kds"), script);
    fs::copy(sourcedir() / "data/examples", folder / "examples");
    fs::create_directory(folder / "home");
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("KALVANE_HOME", room.path() + "/home");
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    program.setProcessEnvironment(environment);
    program.start(KALVANE_PROGRAM, {"--script", QString::fromStdString(script.string())});
    const int patience = 120000;  // milliseconds
    ASSERT_TRUE(program.waitForFinished(patience)) << program.errorString().toStdString();
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0) << program.readAllStandardError().toStdString();
}

INSTANTIATE_TEST_SUITE_P(Ui, Script, testing::ValuesIn(scripts()),
                         [](const auto& entry) { return entry.param; });

// Plays lines with the real program in a room; what it said on both channels.
static QByteArray played(const QTemporaryDir& room, const QByteArray& lines, int exitcode) {
    QFile file(room.path() + "/play.kds");
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(lines);
    file.close();
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("KALVANE_HOME", room.path() + "/home");
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(KALVANE_PROGRAM, {"--script", file.fileName()});
    EXPECT_TRUE(program.waitForFinished(30000));
    const QByteArray said = program.readAll();
    EXPECT_EQ(program.exitCode(), exitcode) << said.toStdString();
    return said;
}

TEST(Program, AFailingScriptNamesItsLine) {
    const QTemporaryDir room;
    EXPECT_NE(played(room, "# comment\nexpect nnodes 0\nexpect nelems 7\n", 1)
                  .indexOf("play.kds, line 3: nelems is \"0\", expected \"7\""),
              -1);
}

TEST(Program, ResultsOfAScriptGoWhereTheUserMayWrite) {
    const QTemporaryDir room;
    played(room, "results out/a\npicture 1 results:a.png\n", 0);
    EXPECT_TRUE(QFile::exists(room.path() + "/out/a/a.png"));
    // A directory can not be made within a file.
    const QByteArray said = played(room, "results play.kds/b\npicture 1 results:b.png\n", 0);
    EXPECT_TRUE(QFile::exists(room.path() + "/home/b/b.png"));
    EXPECT_NE(said.indexOf("home/b"), -1) << said.toStdString();
}

TEST(Program, ADemonstrationThatIsStoppedEndsWithoutAFault) {
    const QTemporaryDir room;
    const QString path = room.path() + "/demo.kds";
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("say \"first\"\nwait 600000\nsay \"second\"\n");
    file.close();
    scriptplayer player;
    ASSERT_TRUE(player.load(path));
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
