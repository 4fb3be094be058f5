// SPDX-License-Identifier: GPL-3.0-or-later
// Open and import.
#include "files/filop.h"

#include <algorithm>
#include <filesystem>

#include "core/colours.h"
#include "core/journal.h"
#include "core/keptmodel.h"
#include "core/model.h"
#include "core/modelsize.h"
#include "core/newmodel.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/textfile.h"
#include "core/units.h"
#include "core/unitsrow.h"
#include "core/views.h"
#include "files/kalfile.h"
#include "files/saveset.h"
#include "files/sidefiles.h"
#include "files/solverunits.h"
#include "files/tekfile.h"
#include "view/moddraw.h"

namespace fs = std::filesystem;

bool isnamed() {
    return !modelname.empty() && modelname != "None";
}

// Behind the name stands what of the model its files hold and memory does not.
void showmodelname() {
    std::string parts;
    for (const std::string& path : unreadfiles(modelname))
        parts += (parts.empty() ? "" : ", ") + fs::path(path).filename().string();
    theplatform().showtitle(apptitle + ": " + modelname +
                            (parts.empty() ? "" : " (incomplete, not read: " + parts + ")"));
}

namespace {
struct readstep {
    const char* extension;
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
        defaultloadcase(lc);
    }
}

// The elements keep their group numbers, each with the properties of a new group.
static void dropgroups() {
    groups.alloc(groups.upper1, groups.upper2);
    groupmat.alloc(groupmat.upper1, groupmat.upper2, groupmat.upper3);
    groupname.alloc(groupname.upper);
    newgroup();
    int last = 1;
    for (int e = 1; e <= nelems(); ++e)
        if (egroup(e) <= modelsize(sizegroups)) last = std::max(last, egroup(e));
    for (int g = 2; g <= last; ++g) defaultgroup(g);
    groups(0, 0) = last;
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
    {".gra", readgra, dropgraphics},     {".vpl", readvpl, dropconstraints},
    {".knk", readknk, droploads},        {".mlt", readmlt, dropgroups},
    {".lcd", readlcd, droploadcases},    {".lco", readlco, dropcombinations},
    {".ell", readell, dropelementloads}, {".rot", readrot, droprotations},
    {".pat", readpat, droppatches},      {".txt", readtxt, dropcomment},
    {".kal", readkal, dropkal},
};

static void telldamage(const runtimeerror& e) {
    std::string text = e.what;
    if (e.number == errsubscript)
        text +=
            ". The model needs more than the declared sizes; increase them with [File,Model "
            "size..]";
    theplatform().message(text, icons::exclamation);
}

static void readside(const std::string& name, const readstep& step) {
    guarded([&] { step.read(name); },
            [&](const runtimeerror& e) {
                step.drop();
                if (e.number == errfilenotfound) return;
                noteunread(name, step.extension);
                telldamage({e.number, e.what + ".\nThe model is open without this file, and the "
                                               "file is not overwritten without a question"});
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
        theplatform().message(std::to_string(count) + " element(s), the first number " +
                                  std::to_string(first) +
                                  ", use a group that does not exist; they were put into group 1",
                              icons::exclamation);
}

std::function<void()> patchesread;

enum class tekresult { read, toolarge, unreadable };

static tekresult readtekstep(const std::string& name) {
    tekresult result = tekresult::read;
    guarded([&] { readtek(name); },
            [&](const runtimeerror& e) {
                result = tekresult::unreadable;
                if (e.number == errsubscript) checksize();
                if (!modeltoolarge) theplatform().message(e.what, icons::exclamation);
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

static bool restoremodel(keptmodel& before) {
    before.restore();
    modelname = previousname;
    showmodelname();
    theplatform().endprogress();
    return false;
}

// Reads the set into an empty model.
static tekresult readset(const std::string& name) {
    modelname = name;
    dropcomment();
    noteset(name);
    const tekresult tek = readtekstep(name);
    if (tek != tekresult::read) return tek;
    for (const readstep& step : readsteps)
        if (!modeltoolarge) readside(name, step);
    if (!modeltoolarge) checkneeds();
    return modeltoolarge ? tekresult::toolarge : tek;
}

// The user is asked once; then the sizes grow with what the files are found to need.
static tekresult readlarger(const std::string& name) {
    tekresult result = tekresult::toolarge;
    const bool agreed = askenlarge();
    while (agreed && result == tekresult::toolarge && enlargesizes()) result = readset(name);
    if (agreed && result == tekresult::read) writemodelsize();
    return result;
}

bool openmodel(const std::string& name) {
    previousname = modelname;
    modelname = name;
    showmodelname();
    clearneeds();
    readsolverunits();
    const drawinghold hold;
    keptmodel before;
    if (!guarded([&] { finishsave(name); }, telldamage) || !resetmodel())
        return restoremodel(before);
    tekresult result = readset(name);
    if (result == tekresult::toolarge && !menulock) result = readlarger(name);
    if (result == tekresult::unreadable) return restoremodel(before);
    theplatform().endprogress();
    stressloaded = false;
    if (result == tekresult::toolarge) {
        dropmodel();
        return false;
    }
    checkgroupsused();
    if (patchesread && patches(0, 0, 0) > 0) guarded(patchesread, telldamage);
    notesaved();
    showmodelname();
    theplatform().refresh();
    return true;
}

// Units that a model says without opening it, "" for none.
static std::string unitsof(const std::string& name) {
    std::string text;
    guarded(
        [&] {
            const std::string row = unitsrow(name);
            if (!row.empty()) text = textin(row, name).text();
        },
        [](const runtimeerror&) {});
    return text;
}

bool importmodel(const std::string& name) {
    const std::string units = unitsof(name);
    if (!units.empty() && !unitstext.empty() && units != unitstext) {
        theplatform().message(name + " is in " + units + ", the model in hand in " + unitstext +
                                  ". Nothing was imported; convert one of them first: "
                                  "[Settings,Units...]",
                              icons::exclamation);
        return false;
    }
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
