// SPDX-License-Identifier: GPL-3.0-or-later
// Save, open and import.
#include "files/filop.h"

#include <filesystem>

#include "core/colours.h"
#include "core/keptmodel.h"
#include "core/model.h"
#include "core/modelsize.h"
#include "core/pack.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/start.h"
#include "core/textfile.h"
#include "core/views.h"
#include "edit/renumber.h"
#include "files/changed.h"
#include "files/sidefiles.h"
#include "files/tekfile.h"

namespace fs = std::filesystem;

bool isnamed() {
    return !modelname.empty() && modelname != "None";
}

void showmodelname() {
    door().showtitle(apptitle + ": " + modelname);
}

// --- save ---------------------------------------------------------------------------------------

namespace {
struct savestep {
    void (*write)(const std::string& base);
    const char* message;  // null: a failure is silent
};
}  // namespace

static const savestep savesteps[] = {
    {writetek, "Error occurred while trying to save model. Model Not saved, please retry."},
    {writegra, "Error occurred while trying to save Graphics. Graphics Not saved, please retry."},
    {writevpl,
     "Error occurred while trying to save Constrains. Constrains Not saved, please retry."},
    {writeknk, "Error occurred while trying to save Loads. Loads Not saved, please retry."},
    {writemlt, "Error occurred while trying to save Groups. Groups Not saved, please retry."},
    {writelcd, "Error occurred while trying to save Loadcases. Loadcases Not saved, please retry."},
    {writelco,
     "Error occurred while trying to save Loadcombinations. Loadcombinations Not saved, please "
     "retry."},
    {writeell,
     "Error occurred while trying to save Element loads. Element Loads Not saved, please retry."},
    {writepat, "Error occurred while trying to save patches. Patches Not saved, please retry."},
    {writetxt, nullptr},
};

static bool runstep(const savestep& step) {
    return guarded([&] { step.write(modelname); },
                   [&](const runtimeerror& e) {
                       if (step.message == nullptr) return;
                       door().showstatus(e.what);  // the reason, beside the message
                       door().message(step.message, icons::exclamation);
                   }) ||
           step.message == nullptr;
}

bool savemodel() {
    bool whole = true;
    packelems();
    packgraphics();
    if (renumbersave) renumbermodel();
    for (const savestep& step : savesteps) whole = runstep(step) && whole;
    door().endprogress();
    if (whole) markassaved();
    return whole;
}

bool savecombinations() {
    bool whole = true;
    for (const savestep& step : savesteps)
        if (step.write == writelco) whole = runstep(step);
    return whole;
}

bool askoverwrite(const std::string& name, const std::string& extension) {
    std::error_code ec;
    if (!fs::exists(name + extension, ec)) return true;
    messagebox box;
    box.text = "Overwrite existing file?";
    box.set = buttons::yesno;
    box.icon = icons::question;
    box.preset = answers::no;
    return door().show(box) == answers::yes;
}

bool savemodelas(const std::string& name) {
    if (!askoverwrite(name, ".tek")) return false;
    modelname = name;
    showmodelname();
    return savemodel();
}

// --- open ---------------------------------------------------------------------------------------

namespace {
struct readstep {
    void (*read)(const std::string& base);
    void (*drop)();  // puts the part back to what a new model has
};
}  // namespace

static void dropgraphics() {
    graphics(0, 0, 0) = 0;
}

static void dropconstraints() {
    ncon = 0;
}

static void droploads() {
    for (long lc = 0; lc <= loadnode.upper1; ++lc) loadnode(lc, 0) = 0;
    loadnode(0, 0) = 1;
}

// Names, kinds and parameters of the cases; the loads that .knk has put into them stay.
static void droploadcases() {
    for (int lc = 1; lc <= nlc(); ++lc) {
        lcname(lc) = "LC " + std::to_string(lc);
        lctype(lc) = 0;
        for (int k = 0; k <= 4; ++k) lcpar(lc, k) = k == 0 || k == 4 ? 1 : 0;
    }
}

static void dropgroups() {
    groups.alloc(groups.upper1, groups.upper2);
    groupmat.alloc(groupmat.upper1, groupmat.upper2, groupmat.upper3);
    groupname.alloc(groupname.upper);
    newgroup();
}

static void dropcombinations() {
    lcomb.alloc(lcomb.upper1, lcomb.upper2);
    lcombname.alloc(lcombname.upper);
    lcdesc.alloc(lcdesc.upper);
    newcombination();
}

static void dropelementloads() {
    for (long lc = 0; lc <= elemload.upper1; ++lc) elemload(lc, 0, 0) = 0;
}

static void droprotations() {
    for (int e = 1; e <= nelems(); ++e) rotpo(e) = 0;
}

static void droppatches() {
    patches(0, 0, 0) = 0;
}

static void dropcomment() {
    commenttext.clear();
    commentvisible = false;
}

static const readstep readsteps[] = {
    {readgra, dropgraphics},     {readvpl, dropconstraints}, {readknk, droploads},
    {readmlt, dropgroups},       {readlcd, droploadcases},   {readlco, dropcombinations},
    {readell, dropelementloads}, {readrot, droprotations},   {readpat, droppatches},
    {readtxt, dropcomment},
};

static void telldamage(const runtimeerror& e) {
    std::string text = e.what;
    if (e.number == errsubscript)
        text +=
            ". The model needs more than the declared sizes; increase them with [File,Model "
            "size..]";
    door().message(text, icons::exclamation);
}

static void readside(const std::string& name, const readstep& step) {
    guarded([&] { step.read(name); },
            [&](const runtimeerror& e) {
                step.drop();
                if (e.number != errfilenotfound) telldamage(e);
            });
}

// Elements of groups that no file defines are put into group 1, so that every element has a
// material; the user is told.
static void checkgroupsused() {
    int first = 0, count = 0;
    for (int e = 1; e <= nelems(); ++e) {
        if (egroup(e) >= 1 && egroup(e) <= ngroups()) continue;
        if (++count == 1) first = e;
        egroup(e) = 1;
    }
    if (count > 0)
        door().message(std::to_string(count) + " element(s), the first number " +
                           std::to_string(first) +
                           ", use a group that does not exist; they were put into group 1",
                       icons::exclamation);
}

enum class tekresult { read, toolarge, unreadable };

static tekresult readtekstep(const std::string& name) {
    tekresult result = tekresult::read;
    guarded([&] { readtek(name); },
            [&](const runtimeerror& e) {
                result = tekresult::unreadable;
                if (e.number == errsubscript) checksize();
                if (!modeltoolarge) door().message(e.what, icons::exclamation);
            });
    if (result == tekresult::read) checksize();
    return modeltoolarge ? tekresult::toolarge : result;
}

static void dropmodel() {
    resetmodel();
    modeltoolarge = true;
    modelname.clear();
    showmodelname();
}

static bool bringback(keptmodel& before) {
    before.restore();
    modelname = previousname;
    showmodelname();
    door().endprogress();
    return false;
}

bool openmodel(const std::string& name) {
    previousname = modelname;
    modelname = name;
    showmodelname();
    keptmodel before;
    if (!resetmodel()) return bringback(before);
    dropcomment();
    const tekresult tek = readtekstep(name);
    if (tek == tekresult::unreadable) return bringback(before);
    if (tek == tekresult::read)
        for (const readstep& step : readsteps) {
            if (!modeltoolarge) readside(name, step);
        }
    door().endprogress();
    stressloaded = false;
    if (modeltoolarge) {
        dropmodel();
        return false;
    }
    checkgroupsused();
    markassaved();
    door().refresh();
    return true;
}

bool importmodel(const std::string& name) {
    const int before = ngroups();
    bool whole = true;
    tmpnodes(0, 0) = tmpelems(0, 0) = graphics2(0, 0, 0) = 0;
    guarded(
        [&] {
            readtekbuffer(name, before);
            try {
                appendmlt(name);
            } catch (const runtimeerror& e) {
                if (e.number != errfilenotfound) throw;
            }
        },
        [&](const runtimeerror& e) {
            whole = false;
            tmpnodes(0, 0) = tmpelems(0, 0) = 0;
            groups(0, 0) = before;
            telldamage(e);
        });
    for (int i = 1; i <= int(tmpelems(0, 0)); ++i)
        if (tmpelems(i, 5) > float(ngroups())) tmpelems(i, 5) = 1;
    return whole;
}
