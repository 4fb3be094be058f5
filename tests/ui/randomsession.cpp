// SPDX-License-Identifier: GPL-3.0-or-later
// A random session in the window, recorded, and played again in a window of another size.
#include <QRegularExpression>

#include "tests/ui/playroom.h"

namespace fs = std::filesystem;

static void runmonkey(const fs::path& folder, int seed, int steps) {
    fs::create_directories(folder);
    QProcess program;
    program.start(QString(KALVANE_PROGRAM).replace(QRegularExpression("kalvane$"), "monkey"),
                  {QString::fromStdString(sourcedir() + "/data/examples"),
                   QString::fromStdString(folder.string()), QString::number(seed),
                   QString::number(steps), "record"});
    ASSERT_TRUE(program.waitForFinished(60000)) << seed;
    EXPECT_EQ(program.exitCode(), 0) << program.readAllStandardError().toStdString();
}

class RandomSession : public testing::TestWithParam<int> {};

TEST_P(RandomSession, PlayedAgainGivesTheSameFiles) {
    const playroom room;
    runmonkey(room.folder / "first", GetParam(), 60);
    fs::copy(sourcedir() + "/data/examples", room.folder / "again");
    room.play("file portal.tek\nmenu File/Open...\n" + room.content("first/session.kds"), 0,
              "again/session.kds");
    int compared = 0;
    for (const auto& entry : fs::directory_iterator(room.folder / "first")) {
        const std::string name = entry.path().filename().string();
        if (name.rfind("end.", 0) != 0) continue;
        ++compared;
        EXPECT_TRUE(room.content("first/" + name) == room.content("again/" + name))
            << name << " differs; steps:\n"
            << room.content("first/steps.txt");
    }
    EXPECT_GE(compared, 8);
}

INSTANTIATE_TEST_SUITE_P(Ui, RandomSession, testing::Values(1, 2, 3));
