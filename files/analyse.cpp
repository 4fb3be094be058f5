// SPDX-License-Identifier: GPL-3.0-or-later
// Hand-over to the solver program.
#include "files/analyse.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <optional>
#include <utility>

#include "core/allocmodel.h"
#include "core/journal.h"
#include "core/keptmodel.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/resultfiles.h"
#include "core/session.h"
#include "core/textfile.h"
#include "files/filemenu.h"
#include "files/filop.h"
#include "files/runlog.h"
#include "files/saving.h"
#include "files/solverlock.h"
#include "files/solverstart.h"
#include "view/moddraw.h"

namespace fs = std::filesystem;

std::function<void()> rereadresults, analysisdone;
std::function<std::string()> resultsummary;

// --- the options dialog -------------------------------------------------------------------------

static void clearrenumber(analysisoptions& form) {
    form.renumber = false;
    form.renumberenabled = false;
}

analysisoptions showoptions() {
    analysisoptions form;
    form.twod = dim2d;
    form.clear = clearmem == 1;
    form.stiffness = dostiffness == 1;
    form.solve = dosolve == 1;
    form.eigen = doeigen == 1;
    form.renumber = dorenumber == 1;
    form.elementmass = elemmassflag == 1;
    form.linestress = dolinestress == 1;
    form.festress = dofestress == 1;
    if (!form.stiffness || !form.solve) clearrenumber(form);
    if (form.eigen) form.solveenabled = form.stressenabled = false;
    form.engine = form.engineatfirst = readwish().engine;
    form.missing = missingparallel();
    return form;
}

static void testsolver(analysisoptions& form) {
    if (form.solve && !form.stiffness) clearrenumber(form);
    const bool stress = form.linestress || form.festress;
    if (stress && (!form.stiffness || !form.solve)) clearrenumber(form);
}

void clicksolver(analysisoptions& form) {
    form.renumberenabled = true;
    testsolver(form);
}

void clickpostprocessor(analysisoptions& form) {
    form.renumberenabled = true;
    testsolver(form);
}

void clickeigen(analysisoptions& form) {
    if (form.eigen) form.solve = form.linestress = form.festress = false;
    form.solveenabled = form.stressenabled = !form.eigen;
}

void storeoptions(const analysisoptions& form) {
    dim2d = form.twod;
    clearmem = form.clear;
    dostiffness = form.stiffness;
    dosolve = form.solve;
    doeigen = form.eigen;
    dorenumber = form.renumber;
    elemmassflag = form.elementmass;
    dolinestress = form.linestress;
    dofestress = form.festress;
    if (form.engine == form.engineatfirst) return;
    guarded([&] { storeengine(form.engine); },
            [](const runtimeerror& e) {
                theplatform().message("The engine was not stored: " + e.what, icons::exclamation);
            });
}

// --- the run ------------------------------------------------------------------------------------

// Throws runtimeerror.
static void writecontrolfile() {
    textout out(controlfile());
    out.quoted(modelname).endline();
    out.line(doeigen, elemmassflag, doftype, dorenumber, dostiffness, dosolve, dolinestress,
             dofestress);
    out.commit();
}

namespace {
enum class runend { finished, refused, stopped, crashed };
struct runreport {
    runend end = runend::finished;
    lastwords words;  // what is no progress
};
}  // namespace

// The solver prints "stage percentage"; anything else is kept as its last words.
static void readprogress(const std::string& text, std::string& stage, double& share,
                         lastwords& words) {
    std::size_t begin = 0;
    while (begin < text.size()) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::string line = text.substr(begin, end - begin);
        begin = end + 1;
        const std::size_t blank = line.rfind(' ');
        double percent = 0;
        const bool progress = blank != line.npos && line.find(' ') == blank &&
                              readnumber(line.substr(blank + 1), percent);
        if (progress) {
            stage = line.substr(0, blank);
            share = percent / 100;
        } else {
            words.hear(line);
        }
    }
}

namespace {
// The log is the last file that a run writes. Only one that this run has written tells its end.
class runlogfile {
  public:
    runlogfile() : before(stamp()) {}
    bool isnewandcomplete() const {
        if (stamp() == before) return false;
        std::string text;
        guarded([&] { text = readwhole(path); }, [](const runtimeerror&) {});
        return text.find("Results are complete") != text.npos;
    }

  private:
    fs::file_time_type stamp() const {
        std::error_code ec;
        const auto time = fs::last_write_time(path, ec);
        return ec ? fs::file_time_type::min() : time;
    }
    const std::string path = modelname + ".log";
    const fs::file_time_type before;
};
}  // namespace

static runreport waitforsolver(const runlogfile& log) {
    const int steplength = 20;  // milliseconds between two looks
    const int patience = 2000;  // milliseconds between the signal and the solver's end
    runreport report;
    std::string stage = "start";
    double share = 0;
    std::error_code ec;
    while (fs::exists(controlfile(), ec)) {
        const bool runs = theplatform().processruns();
        readprogress(theplatform().processwords(), stage, share, report.words);
        if (!runs && fs::exists(controlfile(), ec)) {
            report.end = runend::crashed;
            removecontrolfile();
            return report;
        }
        if (!theplatform().progress("Analysing: " + stage, share)) {
            theplatform().killprocess();
            removecontrolfile();
            report.end = runend::stopped;
            return report;
        }
        theplatform().yield(steplength);
    }
    // The file's removal is the signal. A solver that lingers after it is not waited for, but gives
    // way to the next run; its results count when its log says that they are all there.
    for (int waited = 0; theplatform().processruns() && waited < patience; waited += steplength)
        theplatform().yield(steplength);
    const bool lingers = theplatform().processruns();
    readprogress(theplatform().processwords(), stage, share, report.words);
    if (lingers) {
        theplatform().killprocess();
        if (log.isnewandcomplete()) return report;
        report.words.hear("Another program has removed " + controlfile() +
                          " before the solver's end");
        report.end = runend::refused;
    } else if (theplatform().processcode() != 0) {
        report.end = runend::refused;
    }
    return report;
}

// A frame drawn in one plane is free to fall out of it: the other analysis may be the one meant.
static std::string noteoftwod(const std::string& words) {
    if (dim2d || words.find("mechanism") == words.npos) return {};
    for (int n = 1; n <= nnodes(); ++n)
        if (nodes(0, n, 2) != 0) return {};
    return "\nThe model lies in the plane z = 0: the 2-D analysis of [Analyse,Options...] lets it "
           "move in that plane alone.";
}

static void tellend(const runreport& report) {
    switch (report.end) {
        case runend::finished:
            return;
        case runend::stopped:
            theplatform().message("The analysis was cancelled; there are no new results.");
            return;
        case runend::refused:
            theplatform().message("The analysis ended without results.\n" + report.words.text() +
                                      noteoftwod(report.words.text()),
                                  icons::exclamation);
            return;
        case runend::crashed:
            theplatform().message(
                "The solver stopped without finishing the analysis. Its last words: " +
                    (report.words.text().empty() ? "none" : report.words.text()),
                icons::critical);
            return;
    }
}

namespace {
// The time of a run: menus are locked, and the model's memory is the solver's where that is asked
// for. Its end brings back what stood before, however the run ended.
class runlock {
  public:
    runlock() {
        menulock = true;
        theplatform().refresh();
        if (clearmem != 1) return;
        beside.emplace();
        std::swap(sizes, modelsize);
        modelsize.alloc(sizes.upper);
        for (int i = 1; i <= modelsize.upper; ++i) modelsize(i) = 1;
        allocmodel();
        curlc = curlcomb = 1;
    }
    ~runlock() {
        theplatform().endprogress();
        if (beside) regainmodel();
        menulock = false;
        theplatform().endprogress();
    }
    runlock(const runlock&) = delete;
    runlock& operator=(const runlock&) = delete;

  private:
    void regainmodel() {
        // Those of the session: the file may hold sizes that the machine did not give.
        std::swap(sizes, modelsize);
        const std::string name = modelname;
        if (!guarded([&] { openmodel(name); }, [](const runtimeerror&) {}) || nnodes() != count) {
            theplatform().message(
                "The model could not be read back after the analysis; it stands in " + name +
                    ".tek. Open it with [File,Open..].",
                icons::critical);
            modelname.clear();  // a save must not put what is left over the files
            showmodelname();
            return;
        }
        beside->restore();
        curlc = std::min(lc, nlc());
        curlcomb = combination;  // may be the number of a mode
    }

    const int lc = curlc, combination = curlcomb, count = nnodes();
    std::optional<keptbesidefiles> beside;
    array1<int> sizes;
};
}  // namespace

static void startsolver(const solverstart& start) {
    guarded([&] { theplatform().startprocess(start.program, start.arguments, appdir); },
            [&](const runtimeerror& e) {
                removecontrolfile();
                throw runtimeerror{e.number, "The solver could not be started: " + e.what};
            });
}

static runend runonmodel(const solverstart& start) {
    const runlogfile log;
    writecontrolfile();
    startsolver(start);
    runreport report;
    {
        const runlock locked;
        report = waitforsolver(log);
    }
    readsolverlog();
    tellend(report);
    return report.end;
}

// What the run came to, in place of the silence after a progress window.
static void tellsummary(double seconds) {
    const int warned = solverlog().warnings;
    std::string text = "Analysed in " + fixedtext(seconds, 1) + " s";
    if (warned > 0) text += warned == 1 ? ", 1 warning" : ", " + numbertext(warned) + " warnings";
    const std::string results = resultsummary ? resultsummary() : "";
    if (!results.empty()) text += "; " + results;
    theplatform().showstatus(text);
}

static void tellnotstarted(const std::string& why) {
    theplatform().message("The analysis was not started: " + why, icons::exclamation);
}

// Another window's run is waited for; false when the user would rather not.
static bool acquirelock(solverlock& lock) {
    const int steplength = 100;  // milliseconds between two looks
    bool waits = true;
    while (waits && !lock.acquire(modelname)) {
        waits = theplatform().progress("Waiting for the analysis of " + solverlock::owner(), 0);
        theplatform().yield(steplength);
    }
    theplatform().endprogress();
    if (!waits) tellnotstarted("another window is analysing, " + solverlock::owner());
    return waits;
}

// The files in the way of the results go when the user says so: the solver refuses them.
static bool clearway() {
    const std::vector<std::string> foreign = foreignresults(modelname);
    std::string names;
    for (const std::string& path : foreign) names += "\n" + path;
    if (foreign.empty()) return true;
    messagebox box;
    box.text = "No results of an analysis, but in the place of some:" + names + "\n\nOverwrite?";
    box.set = buttons::yesno;
    box.icon = icons::question;
    box.preset = answers::no;
    std::error_code ec;
    if (theplatform().show(box) != answers::yes) return false;
    for (const std::string& path : foreign) fs::remove(path, ec);
    return true;
}

// The whole model on disk under a name. What failed has been told.
static bool saveforrun() {
    if (isnamed()) {
        if (savemodel()) return true;  // the model in memory is the only whole one
        tellnotstarted("the model was not saved.");
        return false;
    }
    const reply saved = menusave();
    if (saved == reply::failed) tellnotstarted("the model was not saved.");
    if (saved != reply::done) return false;
    addrecentfile();
    if (isnamed()) return !isunnamed() || savemodel();  // another format was chosen
    tellnotstarted("the model was not saved.");
    return false;
}

static void runlocked(const solverstart& start) {
    const auto begin = std::chrono::steady_clock::now();
    std::optional<runend> end;
    guarded([&] { end = runonmodel(start); },
            [](const runtimeerror& e) { theplatform().message(e.what, icons::critical); });
    if (end == runend::finished) {
        dorenumber = 0;
        stressloaded = false;
        resultflag = 0;
        noteanalysis();
        if (rereadresults) rereadresults();
    } else if (end) {
        dropresults();  // the solver has removed the files of the run before
    }
    theplatform().refresh();
    redrawall();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    if (end == runend::finished) tellsummary(taken.count());
    if (end == runend::finished && doeigen == 0 && analysisdone) analysisdone();
}

void runanalysis() {
    const hourglass wait;
    solverlock lock;
    bool ready = false;
    guarded([&] { ready = acquirelock(lock) && saveforrun() && clearway(); },
            [](const runtimeerror& e) { tellnotstarted(e.what); });
    if (!ready) return;
    solverstart start;
    if (guarded([&] { start = findstart(); },
                [](const runtimeerror& e) { theplatform().message(e.what, icons::critical); }))
        runlocked(start);
}
