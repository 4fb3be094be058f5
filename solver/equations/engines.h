// SPDX-License-Identifier: GPL-3.0-or-later
// The engines to choose from, and which of them an analysis takes.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "solver/equations/engine.h"

// One of the kind that this process works with, at first the program's own factor, "cholmod".
std::unique_ptr<engine> makeengine();
// The same, or one that factorises in its place where it does not.
std::unique_ptr<engine> makefactor();

// Makes another kind known to this program, under the name that feiflu.ini gives it.
using enginemaker = std::function<std::unique_ptr<engine>(const settings& s)>;
void addengine(const std::string& name, enginemaker maker);
bool hasengine(const std::string& name);
// Has all that follow made by it; refuses a kind that this program is without.
void useengine(const std::string& name, const settings& s);

// What a choice goes by, bytes.
struct engineneeds {
    double own = 0;         // of the own factor with loads and results, in one process
    double free = 0;        // that this machine can still give
    double freetoeach = 0;  // to each process, where it is least
    int processes = 1;
    bool scratch = false;  // a folder for a factor on disc
};
struct enginechoice {
    std::string engine, why;
};
// The fastest that the memory allows.
enginechoice chooseengine(const engineneeds& needs);
