// SPDX-License-Identifier: GPL-3.0-or-later
// Expressions beside the plain reading of their numbers, and the search for loops in a drawing of
// 100,000 lines.
#include <cstdlib>
#include <filesystem>

#include "bench/largemodel.h"
#include "bench/ratio.h"
#include "core/model.h"
#include "core/platform.h"
#include "core/newmodel.h"
#include "tools/Graphics.h"
#include "tools/bereken.h"
#include "tools/findpatch.h"

static double sum;  // what is worked out is used

static void readnumbers(const char* text) {
    while (*text != 0) {
        char* end = nullptr;
        sum += std::strtod(text, &end);
        text = end == text ? text + 1 : end;
    }
}

static void benchbereken() {
    static const char* const texts[] = {
        "12.5*XSC",       "-1234.5678*YSC", "4*NMESH",        "2+3*4^2",
        "L/2-R*.7071068", "1.5E-3*ZSC+100", "0.38268343*R/2", "7850"};
    static const char* const names[] = {"NMESH", "XSC", "YSC", "ZSC", "L", "R"};
    allocobjvars(6);
    for (int i = 1; i <= 6; ++i) {
        objvarname(i) = names[i - 1];
        objvarvalue(i) = "1.25";
    }
    const int rounds = 1000000 / 8;
    const auto all = [&](auto take) {
        return [=] {
            for (int i = 0; i < rounds; ++i)
                for (const char* text : texts) take(text);
        };
    };
    printratio("1,000,000 expressions, beside strtod", 5, 5,
               all([](const char* text) { sum += bereken(text); }), all(readnumbers));
}

// A user who looks at every loop.
class patientuser : public platform {
  public:
    answers show(const messagebox&) override {
        ++told;
        return answers::ok;
    }
    filechoice askfile(const filebox&) override { return {}; }
    int told = 0;
};

static void addline(double x1, double y1, double x2, double y2) {
    const int g = ngraphics() + 1;
    openrecord(graphics, g, kindline);
    setdefinitionpoint(graphics, g, 1, {x1, y1, 0});
    setdefinitionpoint(graphics, g, 2, {x2, y2, 0});
    graphics(0, 0, 0) = float(g);
}

static void search(const char* name) {
    patientuser user;
    setplatform(&user);
    const double seconds = secondsof([] { findpatch(); });
    setplatform(nullptr);
    std::printf("%-46s ours %8.4f s  (wanted: at most 1.00)%s\n", name, seconds,
                seconds > 1 ? "  ABOVE" : "");
    std::printf("  (%d messages)\n", user.told);
}

static void benchfindpatch() {
    modelsize(5) = 110000;
    resetmodel();
    const int side = 223;  // cells: 2 * 223 * 224 lines
    for (int i = 0; i <= side; ++i)
        for (int j = 0; j < side; ++j) {
            addline(i, j, i, j + 1);
            addline(j, i, j + 1, i);
        }
    search("loops in a grid of 99,904 lines");
    graphics(0, 0, 0) = 0;
    for (int i = 0; i < 100000; ++i) addline(i, i % 2, i + 1, (i + 1) % 2);
    search("loops in a chain of 100,000 lines");
}

int main() {
    startsession();
    benchbereken();
    benchfindpatch();
    std::printf("%s", sum == 0 ? "\n" : "");
    std::filesystem::remove_all(startsession());
}
