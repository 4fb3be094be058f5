// SPDX-License-Identifier: GPL-3.0-or-later
// Save of the model.
#include "files/saving.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <vector>

#include "core/journal.h"
#include "core/pack.h"
#include "core/platform.h"
#include "core/resultfiles.h"
#include "core/runtime.h"
#include "core/session.h"
#include "core/textfile.h"
#include "edit/renumber.h"
#include "files/filop.h"
#include "files/kalfile.h"
#include "files/saveset.h"
#include "files/sidefiles.h"
#include "files/tekfile.h"

namespace fs = std::filesystem;

bool (*saveelsewhere)() = nullptr;

namespace {
struct setfile {
    const char* extension;
    void (*write)(textout& out);
};
struct savestep {
    std::vector<setfile> files;
    const char* message;  // null: a failure is silent
};
}  // namespace

static const savestep savesteps[] = {
    {{{".tek", writetek}, {".rot", writerot}},
     "Error occurred while trying to save model. Model Not saved, please retry."},
    {{{".gra", writegra}},
     "Error occurred while trying to save Graphics. Graphics Not saved, please retry."},
    {{{".vpl", writevpl}},
     "Error occurred while trying to save Constrains. Constrains Not saved, please retry."},
    {{{".knk", writeknk}},
     "Error occurred while trying to save Loads. Loads Not saved, please retry."},
    {{{".mlt", writemlt}},
     "Error occurred while trying to save Groups. Groups Not saved, please retry."},
    {{{".lcd", writelcd}},
     "Error occurred while trying to save Loadcases. Loadcases Not saved, please retry."},
    {{{".lco", writelco}},
     "Error occurred while trying to save Loadcombinations. Loadcombinations Not saved, please "
     "retry."},
    {{{".ell", writeell}},
     "Error occurred while trying to save Element loads. Element Loads Not saved, please retry."},
    {{{".pat", writepat}},
     "Error occurred while trying to save patches. Patches Not saved, please retry."},
    {{{".txt", writetxt}}, nullptr},
    {{{".kal", writekal}},
     "Error occurred while trying to save further data. Further data Not saved, please retry."},
};

// A model without further data has no file for it, but for one that stood there.
static bool iswanted(const setfile& file) {
    std::error_code ec;
    return file.write != writekal || haskal() || fs::exists(modelname + file.extension, ec);
}

// --- files that hold what the model does not ----------------------------------------------------

static std::string namesof(const std::vector<std::string>& paths) {
    std::string names;
    for (const std::string& path : paths)
        names += (names.empty() ? "" : ", ") + fs::path(path).filename().string();
    return names;
}

static bool askwithnopreset(const std::string& question) {
    messagebox box;
    box.text = question;
    box.set = buttons::yesno;
    box.icon = icons::question;
    box.preset = answers::no;
    return theplatform().show(box) == answers::yes;
}

static std::vector<std::string> only(std::vector<std::string> paths, const std::string& extension) {
    if (!extension.empty())
        std::erase_if(paths, [&](auto& path) { return !path.ends_with(extension); });
    return paths;
}

// Asks before files are replaced that were not read, or are no longer those that were read.
// extension: of the file alone that is to be written; empty for all.
static bool agreestoreplace(const std::string& extension) {
    const auto unread = only(unreadfiles(modelname), extension);
    auto changed = only(changedfiles(modelname), extension);
    std::erase_if(changed,
                  [&](auto& path) { return std::ranges::find(unread, path) != unread.end(); });
    std::string text;
    if (!unread.empty())
        text += "Not read when the model was opened, so that what it holds is not in the model: " +
                namesof(unread) + ". The old file is kept with .bak behind its name.\n\n";
    if (!changed.empty())
        text += "Changed on disk by another program since the model was read or saved: " +
                namesof(changed) + ".\n\n";
    return text.empty() || askwithnopreset(text + "Overwrite?");
}

static void keepold(const std::string& path) {
    std::error_code ec;
    std::string kept = path + ".bak";
    for (int i = 1; fs::exists(kept, ec); ++i) kept = path + ".bak" + std::to_string(i);
    if (!fs::exists(path)) return;
    if (!guarded([&] { copywhole(path, kept); }, [](const runtimeerror&) {}))
        throw runtimeerror{errdiskfull, "The old file could not be kept as " + kept};
}

// --- save ---------------------------------------------------------------------------------------

namespace {
struct problem {
    std::string message, reason;
};
// A step that has run: its files, whole, or why there are none.
struct stepfiles {
    const savestep* step;
    std::vector<besidefile> files;
    std::string fault;
};
}  // namespace

static stepfiles runstep(const savestep& step) {
    stepfiles made{&step, {}, {}};
    guarded(
        [&] {
            for (const setfile& file : step.files) {
                textout out(modelname + file.extension);
                file.write(out);
                made.files.push_back(out.release());
                made.files.back().startflush();
            }
        },
        [&](const runtimeerror& e) { made.fault = e.what; });
    return made;
}

// Runs the steps, and after them all waits for the disk, which may be found full as late as that.
static void runsteps(saveset& set, const std::string& extension, std::vector<problem>& problems) {
    std::vector<stepfiles> made;
    for (const savestep& step : savesteps)
        if (extension.empty() ? iswanted(step.files[0]) : extension == step.files[0].extension)
            made.push_back(runstep(step));
    for (stepfiles& m : made) {
        const auto flushed = [&] {
            for (besidefile& file : m.files) file.flush();
        };
        if (m.fault.empty()) guarded(flushed, [&](const runtimeerror& e) { m.fault = e.what; });
        if (m.fault.empty())
            for (std::size_t i = 0; i < m.files.size(); ++i)
                set.add(m.step->files[i].extension, std::move(m.files[i]));
        else if (m.step->message != nullptr)
            problems.push_back({m.step->message, m.fault});
    }
}

static void commitset(saveset& set, const std::string& extension) {
    for (const std::string& path : only(unreadfiles(modelname), extension)) keepold(path);
    set.commit();
}

static std::string textof(const std::vector<problem>& problems) {
    std::string text;
    for (const problem& p : problems)
        text +=
            (text.empty() ? "" : "\n\n") + p.message + (p.message.empty() ? "" : "\n") + p.reason;
    return text;
}

namespace {
enum class failurechoice { keep, replace, saveas };
}  // namespace

static failurechoice askafterfailure(const std::vector<problem>& problems, bool replaceable) {
    messagebox box;
    box.icon = icons::exclamation;
    box.text = textof(problems) + "\n\nThe files of the last save are still what they were.";
    if (replaceable) {
        box.text += " \"Replace\" puts those that could be written over them all the same.";
        box.set = buttons::yesnocancel;
        box.captions = {"&Replace", "Save &As...", "&Keep"};
        box.preset = answers::cancel;
    } else {
        box.set = buttons::okcancel;
        box.captions = {"Save &As...", "&Keep"};
        box.preset = answers::cancel;
    }
    switch (theplatform().show(box)) {
        case answers::yes:
            return failurechoice::replace;
        case answers::no:
        case answers::ok:
            return failurechoice::saveas;
        case answers::cancel:
            break;
    }
    return failurechoice::keep;
}

// True when the whole model is on disk, under this name or another.
static bool endfailure(std::optional<saveset>& set, std::vector<problem>& problems) {
    failurechoice choice = askafterfailure(problems, set && !set->isempty());
    if (choice == failurechoice::replace) {
        problems.clear();
        guarded([&] { commitset(*set, ""); },
                [&](const runtimeerror& e) {
                    problems.push_back({"", e.what});
                });
        if (!problems.empty()) choice = askafterfailure(problems, false);
    }
    set.reset();
    return choice == failurechoice::saveas && saveelsewhere != nullptr && saveelsewhere();
}

// extension: of the one step to run; empty for all.
static bool runsave(const std::string& extension) {
    if (!agreestoreplace(extension)) {
        theplatform().showstatus("Not saved: " + modelname);
        return false;
    }
    std::vector<problem> problems;
    std::optional<saveset> set;
    const auto failed = [&](const runtimeerror& e) {
        problems.push_back({"", e.what});
        set.reset();
    };
    if (guarded([&] { set.emplace(modelname); }, failed)) runsteps(*set, extension, problems);
    theplatform().endprogress();
    if (problems.empty()) guarded([&] { commitset(*set, extension); }, failed);
    if (!problems.empty()) return endfailure(set, problems);
    showmodelname();
    return true;
}

static std::string unnamed;  // modelname as the foreign file gave it

void noteunnamed() {
    unnamed = modelname;
}

void notenamed() {
    unnamed.clear();
}

bool isunnamed() {
    return isnamed() && unnamed == modelname;
}

bool savemodel() {
    if (isunnamed()) return saveelsewhere && saveelsewhere() && !isunnamed();
    packelems();
    packgraphics();
    if (renumbersave) renumbermodel();
    if (!runsave("")) return false;
    notesaved();
    return true;
}

bool savecombinations() {
    return runsave(".lco");
}

// --- save under a name --------------------------------------------------------------------------

bool askoverwrite(const std::string& name, const std::string& extension) {
    std::error_code ec;
    return !fs::exists(name + extension, ec) || askwithnopreset("Overwrite existing file?");
}

std::string asktarget(const filebox& box, const std::string& extension) {
    const filechoice choice = theplatform().askfile(box);
    if (!choice.chosen) return {};
    fs::path path = choice.path;
    if (!path.has_extension()) path += extension;
    const bool may =
        askoverwrite(fs::path(path).replace_extension().string(), path.extension().string());
    return may ? path.string() : std::string();
}

bool askreplacemodel(const std::string& name) {
    std::error_code ec;
    if (fs::exists(name + ".tek", ec)) return askoverwrite(name, ".tek");
    std::vector<std::string> foreign;
    const auto look = [&](const std::string& extension) {
        if (fs::exists(name + extension, ec)) foreign.push_back(name + extension);
    };
    for (const std::string& extension : setextensions) look(extension);
    for (const std::string& extension : resultextensions) look(extension);
    return foreign.empty() ||
           askwithnopreset(
               "These files stand there and belong to no model; a model of that name or its "
               "results would replace them: " +
               namesof(foreign) + ".\n\nOverwrite them?");
}

bool savemodelas(const std::string& name) {
    if (!askreplacemodel(name)) return false;
    modelname = name;
    notenamed();
    showmodelname();
    return savemodel();
}
