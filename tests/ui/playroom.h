// SPDX-License-Identifier: GPL-3.0-or-later
// A directory of its own in which the real program plays scripts, off screen.
#pragma once

#include <QProcess>
#include <QTemporaryDir>
#include <filesystem>

#include "tests/support/recorder.h"

class playroom {
  public:
    explicit playroom(bool withexamples = true) : folder(room.path().toStdString()) {
        namespace fs = std::filesystem;
        fs::create_directory(folder / "home");
        fs::copy(fs::path(sourcedir()) / "data/decmem.DAT", folder / "home");  // sizes as delivered
        if (!withexamples) return;
        const fs::path data = fs::path(sourcedir()) / "data";
        fs::copy(data / "examples", folder / "examples");
        fs::copy(fs::path(sourcedir()) / "tests/exchange/samples", folder / "samples");
        fs::copy(data / "examples", folder / "home/examples");
        fs::copy(data / "demo", folder / "home/demo");
        fs::copy(data / "objects", folder / "home/objects");
    }
    // Plays the lines as a script of this name; what the program said on both channels.
    std::string play(const std::string& lines, int exitcode = 0,
                     const std::string& name = "play.kds") const {
        const std::string script = (folder / name).string();
        writefile(script, lines);
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("KALVANE_HOME", room.path() + "/home");
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        program.setProcessEnvironment(environment);
        program.setProcessChannelMode(QProcess::MergedChannels);
        program.start(KALVANE_PROGRAM, {"--script", QString::fromStdString(script)});
        const int patience = 120000;  // milliseconds
        EXPECT_TRUE(program.waitForFinished(patience)) << program.errorString().toStdString();
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        const std::string said = program.readAll().toStdString();
        EXPECT_EQ(program.exitCode(), exitcode) << said;
        return said;
    }
    std::string content(const std::string& name) const {
        return contentof((folder / name).string());
    }

  private:
    QTemporaryDir room;

  public:
    const std::filesystem::path folder;
};

// The names, without the extension, of the scripts in a directory of the sources.
inline std::vector<std::string> scriptsin(const std::string& directory) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(sourcedir() + "/" + directory))
        if (entry.path().extension() == ".kds") names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}
