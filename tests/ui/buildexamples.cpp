// SPDX-License-Identifier: GPL-3.0-or-later
// The examples that are built from nothing: each script of data/examples/build, played by the real
// program, gives the files that stand beside it.
#include <cmath>

#include "tests/ui/playroom.h"

static std::vector<std::string> wordsof(const std::string& text) {
    std::vector<std::string> words(1);
    for (const char c : text) {
        if (c != ',' && c != '\r' && c != '\n')
            words.back() += c;
        else if (!words.back().empty())
            words.emplace_back();
    }
    return words;
}

// Without the views at the end of a .tek file, which are those of the window that wrote it.
static std::vector<std::string> modelwords(const std::string& text, const std::string& name) {
    const std::size_t ofviews = 4 * 8 + 1;  // and the end of the last line
    std::vector<std::string> words = wordsof(text);
    if (name.ends_with(".tek")) words.resize(words.size() - std::min(words.size(), ofviews));
    return words;
}

// Places are Singles of a few metres in millimetres: their last digit may differ.
static void expectsame(const std::string& found, const std::string& wanted,
                       const std::string& name) {
    const double tolerance = 2e-3;
    const auto a = modelwords(found, name), b = modelwords(wanted, name);
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
    const playroom room(false);
    const std::string folder = "data/examples/", script = folder + "build/" + GetParam() + ".kds";
    std::filesystem::create_directories(room.folder / folder / "build");
    room.play(contentof(sourcedir() + "/" + script), 0, script);
    for (const char* extension : {".tek", ".rot", ".gra", ".vpl", ".knk", ".mlt", ".lcd", ".lco",
                                  ".ell", ".pat", ".txt", ".kal"}) {
        const std::string file = folder + GetParam() + extension;
        if (!std::filesystem::exists(sourcedir() + "/" + file)) continue;
        expectsame(room.content(file), contentof(sourcedir() + "/" + file), file);
    }
}

INSTANTIATE_TEST_SUITE_P(Ui, BuiltExample, testing::ValuesIn(scriptsin("data/examples/build")),
                         [](const auto& entry) { return entry.param; });
