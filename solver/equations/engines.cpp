// SPDX-License-Identifier: GPL-3.0-or-later
// State: the engines of this program, and the one in use.
#include "solver/equations/engines.h"

#include <map>

#include "solver/base/refuse.h"
#include "solver/equations/factor.h"

static std::map<std::string, enginemaker>& makers() {
    static std::map<std::string, enginemaker> known = {
        {"cholmod", [](const settings&) { return std::make_unique<factor>(); }}};
    return known;
}

static enginemaker current;
static settings currentsettings;

std::unique_ptr<engine> makeengine() {
    return current ? current(currentsettings) : std::make_unique<factor>();
}

std::unique_ptr<engine> makefactor() {
    std::unique_ptr<engine> one = makeengine();
    return one->factors() ? std::move(one) : makers()["mumps"](currentsettings);
}

void addengine(const std::string& name, enginemaker maker) {
    makers()[name] = std::move(maker);
}

bool hasengine(const std::string& name) {
    return makers().count(name) > 0;
}

void useengine(const std::string& name, const settings& s) {
    if (!hasengine(name))
        refuse("engine = " + name + " in feiflu.ini is not the work of this program. Start " +
               "mpiexec -n 2 feiflu-mpi where it is installed with that engine, or set engine = " +
               "cholmod");
    current = makers()[name];
    currentsettings = s;
}

static std::string mebibytes(double bytes) {
    return shortnumber(bytes / (1024 * 1024)) + " MiB";
}

enginechoice chooseengine(const engineneeds& n) {
    const double room = 0.9;  // of what is free
    const double shared = 2;  // memory of a shared factor over that of the own one
    const double each = shared * n.own / n.processes;
    const std::string one = "the factor needs " + mebibytes(n.own) + " of " + mebibytes(n.free) +
                            " free on one machine";
    if (n.own <= room * n.free) return {"cholmod", one};
    const std::string share = one + ", shared among " + std::to_string(n.processes) +
                              " processes " + mebibytes(each) + " of " + mebibytes(n.freetoeach) +
                              " free to each";
    if (n.processes > 1 && each <= room * n.freetoeach) return {"mumps", share};
    if (n.scratch) return {"mumps", share + "; the rest goes to the scratch folder"};
    return {"multigrid", share + ", and there is no scratch folder"};
}
