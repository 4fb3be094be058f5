// SPDX-License-Identifier: GPL-3.0-or-later
// The examples that are built from nothing: each script of data/examples/build, played by the real
// program, gives the files that stand beside it.
#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>
#include <cmath>
#include <filesystem>
#include <sstream>

#include "tests/support/recorder.h"

namespace fs = std::filesystem;

static const fs::path examples = fs::path("data") / "examples";

static std::vector<std::string> built() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(sourcedir() / examples / "build"))
        if (entry.path().extension() == ".kds") names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

static std::vector<std::string> wordsof(const std::string& text) {
    std::vector<std::string> words;
    std::string word;
    for (const char c : text) {
        if (c == ',' || c == '\r' || c == '\n') {
            if (!word.empty()) words.push_back(word);
            word.clear();
        } else {
            word += c;
        }
    }
    if (!word.empty()) words.push_back(word);
    return words;
}

// Places are Singles of a few metres in millimetres: their last digit may differ.
static void expectsame(const std::string& found, const std::string& wanted,
                       const std::string& name) {
    const double tolerance = 2e-3;
    const auto a = wordsof(found), b = wordsof(wanted);
    ASSERT_EQ(a.size(), b.size()) << name;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (a[i] == b[i]) continue;
        char *enda = nullptr, *endb = nullptr;
        const double x = std::strtod(a[i].c_str(), &enda), y = std::strtod(b[i].c_str(), &endb);
        const bool numbers = *enda == 0 && *endb == 0;
        ASSERT_TRUE(numbers && std::fabs(x - y) <= tolerance)
            << name << ", word " << i + 1 << ": " << a[i] << " instead of " << b[i];
    }
}

class BuiltExample : public testing::TestWithParam<std::string> {};

TEST_P(BuiltExample, ItsScriptGivesItsFiles) {
    const QTemporaryDir room;
    const fs::path folder = room.path().toStdString();
    fs::create_directories(folder / examples / "build");
    fs::create_directory(folder / "home");
    const fs::path script = examples / "build" / (GetParam() + ".kds");
    fs::copy_file(sourcedir() / script, folder / script);
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("KALVANE_HOME", room.path() + "/home");
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    program.setProcessEnvironment(environment);
    program.start(KALVANE_PROGRAM,
                  {"--script", QString::fromStdString((folder / script).string())});
    const int patience = 120000;  // milliseconds
    ASSERT_TRUE(program.waitForFinished(patience)) << program.errorString().toStdString();
    ASSERT_EQ(program.exitCode(), 0) << program.readAllStandardError().toStdString();
    for (const char* extension :
         {".tek", ".rot", ".gra", ".vpl", ".knk", ".mlt", ".lcd", ".lco", ".ell", ".pat", ".txt"}) {
        const fs::path file = examples / (GetParam() + extension);
        expectsame(contentof((folder / file).string()), contentof((sourcedir() / file).string()),
                   file.string());
    }
}

INSTANTIATE_TEST_SUITE_P(Ui, BuiltExample, testing::ValuesIn(built()),
                         [](const auto& entry) { return entry.param; });
