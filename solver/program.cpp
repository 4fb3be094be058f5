// SPDX-License-Identifier: GPL-3.0-or-later
// The command line, and the frame in which every run ends with its log written and the control file
// gone.
#include "solver/program.h"

#include <cstdio>
#include <ctime>
#include <string>
#include <vector>

#include "core/textfile.h"
#include "solver/base/control.h"
#include "solver/base/refuse.h"
#include "solver/processes/ranks.h"
#include "solver/results/oldresults.h"
#include "solver/run.h"

#ifndef KALVANE_VERSION
#define KALVANE_VERSION "0"
#endif

static const char usage[] =
    "feiflu: the finite-element solver of Kalvane\n"
    "\n"
    "usage: feiflu [--appdir DIR]\n"
    "       feiflu --model BASE [--appdir DIR] [--eigen] [--2d]\n"
    "       feiflu --help | --version\n"
    "\n"
    "Without --model the control file EEM.CTR in DIR says what to do; it is removed at the end.\n"
    "  --model BASE   analyse the model BASE.tek and the files beside it\n"
    "  --appdir DIR   where EEM.CTR and feiflu.ini are (default: the working directory)\n"
    "  --eigen        eigenmodes in place of the load cases\n"
    "  --2d           x and y alone\n"
    "\n"
    "Progress goes to standard output, faults to standard error, the whole story to BASE.log.\n"
    "Exit code: 0 results are complete, 1 there are none, 2 the command line is wrong.\n";
static const int wrongusage = 2;

namespace {
struct arguments {
    std::string model, appdir = ".";
    bool eigen = false, twod = false, help = false, version = false;
};
}  // namespace

static arguments parse(const std::vector<std::string>& words) {
    arguments a;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        const auto value = [&] {
            if (i + 1 == words.size() || words[i + 1].empty())
                refuse(word + " needs a value; feiflu --help tells the usage");
            return words[++i];
        };
        if (word == "--model")
            a.model = value();
        else if (word == "--appdir")
            a.appdir = value();
        else if (word == "--eigen")
            a.eigen = true;
        else if (word == "--2d")
            a.twod = true;
        else if (word == "--help" || word == "-h")
            a.help = true;
        else if (word == "--version")
            a.version = true;
        else
            refuse("\"" + word + "\" is not known; feiflu --help tells the usage");
    }
    return a;
}

// A name typed with its extension means the same model.
static std::string withoutextension(const std::string& name) {
    const std::string extension = ".tek";
    const bool typed = name.size() > extension.size() && name.ends_with(extension);
    return typed ? name.substr(0, name.size() - extension.size()) : name;
}

static job jobof(const arguments& a) {
    job j;
    const bool first = allranks().first();
    if (a.model.empty()) {
        const std::string control = a.appdir + "/EEM.CTR";
        if (first) holdprocessfile(a.appdir);
        armremoval(control, first ? removal::always : removal::bysignal);
        if (!isthere(control))
            refuse("There is no control file " + control +
                   "; start feiflu from Kalvane or name a model with --model");
        j = readcontrol(control);
    } else {
        armremoval("", removal::always);
        j.base = withoutextension(a.model);
        j.eigen = a.eigen;
        j.solve = j.linestress = j.platestress = !a.eigen;
        j.twod = a.twod;
    }
    j.appdir = a.appdir;
    return j;
}

static std::string now() {
    char text[40];
    const std::time_t time = std::time(nullptr);
    std::tm parts{};
    localtime_r(&time, &parts);
    return std::string(text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts));
}

static int run(const arguments& a) {
    ranks& processes = allranks();
    const bool first = processes.first();
    job j;
    runlog log;
    if (!first) log.quiet();
    std::string fault;
    bool cleared = false;  // what stands under the names of the results is this run's
    const auto failed = [&](const runtimeerror& e) { fault = e.what; };
    std::string wrongjob;  // told together, once all processes are known to speak alike
    guarded([&] { j = jobof(a); }, [&](const runtimeerror& e) { wrongjob = e.what; });
    guarded(
        [&] {
            processes.checkversions(KALVANE_VERSION);
            onhosts([&] {
                if (!wrongjob.empty()) refuse(wrongjob);
                if (isthere(j.base + ".commit~"))
                    refuse("The last save of " + j.base +
                           " was cut short; open the model in Kalvane, which finishes it");
            });
            log.line("feiflu " KALVANE_VERSION ", " + now() + ", model " + j.base);
            together([&] {
                if (first) removeresults(j);
                cleared = first;
            });
            removewhenstopped(j);
            analyse(j, log);
        },
        failed);
    if (cleared) {
        if (!fault.empty()) removeresults(j);  // half a set could be taken for a whole one
        log.write(j.base + ".log", fault.empty() ? "Results are complete" : "Refused: " + fault);
    }
    if (first) removecontrol();
    processes.end(fault);
    armresults({});
    if (fault.empty()) return 0;
    if (!first) return 1;
    std::fprintf(stderr, "%s\n", visible(fault).c_str());
    return 1;
}

int runprogram(const std::vector<std::string>& words) {
    arguments a;
    const bool understood =
        guarded([&] { a = parse(words); },
                [](const runtimeerror& e) {
                    if (allranks().first())
                        std::fprintf(stderr, "feiflu: %s\n", visible(e.what).c_str());
                });
    if (!understood) return wrongusage;
    if (a.help || a.version) {
        if (allranks().first()) std::fputs(a.help ? usage : "feiflu " KALVANE_VERSION "\n", stdout);
        return 0;
    }
    return run(a);
}
