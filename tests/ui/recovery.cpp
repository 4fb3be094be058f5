// SPDX-License-Identifier: GPL-3.0-or-later
// Unsaved work of a program that is killed, offered by the next one.
#include <QElapsedTimer>

#include "tests/ui/playroom.h"

namespace fs = std::filesystem;

// Whole copies under the home of the room.
static int copiesin(const playroom& room) {
    int found = 0;
    std::error_code ec;
    for (const auto& entry : fs::recursive_directory_iterator(room.folder / "home/unsaved", ec))
        found += entry.path().filename() == "model.copy";
    return found;
}

// Plays the lines and then takes pictures for a minute; killed as soon as there is a copy.
static void killafter(const playroom& room, const std::string& lines) {
    const std::string script = (room.folder / "work.kds").string();
    std::string idle;
    for (int i = 0; i < 5000; ++i) idle += "window idle.png\n";
    writefile(script, lines + idle);
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("KALVANE_HOME", QString::fromStdString((room.folder / "home").string()));
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    program.setProcessEnvironment(environment);
    program.start(KALVANE_PROGRAM, {"--script", QString::fromStdString(script)});
    ASSERT_TRUE(program.waitForStarted());
    QElapsedTimer patience;
    patience.start();
    while (copiesin(room) == 0 && patience.elapsed() < 60000 && !program.waitForFinished(20)) {}
    ASSERT_EQ(program.state(), QProcess::Running) << program.readAllStandardError().toStdString();
    program.kill();
    program.waitForFinished();
}

TEST(Recovery, WorkOfAKilledProgramIsOfferedAndGoesOn) {
    const playroom room(false);
    killafter(room, "menu \"Add/Free Node\"\ncommand ax=1;2;3\nkey ESC\n");
    ASSERT_EQ(copiesin(room), 1);
    const std::string later = "press recovery Later\n";
    room.play("expect nnodes 0\n" + later);
    EXPECT_EQ(copiesin(room), 1) << "it asks again at the next start";
    room.play(
        "press recovery \"Look at it\"\nexpect nodes(0,1,2) 3\nexpect stepback \"\"\n"
        "press recovery Recover\nexpect nnodes 1\nfile found.tek\nmenu \"File/Save As...\"\n");
    EXPECT_EQ(copiesin(room), 0) << "saved";
    EXPECT_NE(room.content("found.tek").find("1,2,3"), std::string::npos);
    EXPECT_NE(room.play(later, 1).find("no dialog recovery is open"), std::string::npos);
}
