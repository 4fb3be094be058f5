// SPDX-License-Identifier: GPL-3.0-or-later
// Session start-up and the new model.
#include "core/start.h"

#include <filesystem>

#include "core/catalogue.h"
#include "core/colours.h"
#include "core/journal.h"
#include "core/labels.h"
#include "core/model.h"
#include "core/modelsize.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/views.h"

static void clearmodes() {
    for (Flag* flag :
         {&addnodemode,    &addelemmode,    &drawline,       &drawcircle, &drawcurve,
          &editconstraint, &editnodalload,  &editelemload,   &meshmode,   &zoomwinmode,
          &viewwindow,     &viewselpending, &postselpending, &windowdrag, &movepending,
          &editing,        &pasteflag,      &singleel,       &menulock,   &linepressure})
        *flag = false;
    ptcount = 0;
}

// Everything of the start but the catalogue, in the order in which one step builds on another.
static void preparesession() {
    allocviews();
    alloccatalogue();
    apptitle = "Kalvane © 4.1";
    appversion = "4.1";
    modelname = previousname = "None";
    readmodelsize();
    if (!allocmodel()) {
        defaultmodelsize();
        allocmodel();
    }
    initsettings();
    patches(0, 0, 0) = 0;
    clearmodes();
    ncon = nload = 0;
    activeview = 1;
    scalex = scaley = 1;
    dorenumber = dostiffness = dosolve = dolinestress = dofestress = elemmassflag = 1;
    doeigen = 0;
    initcolors();
    drawcolor = meshcolor;
    resetviews();
}

static void finishsession() {
    startjournal();
    promptaction = "Select";
    promptitem = "Nodes";
    promptgoal = "for editing";
    prompttail.clear();
    selecttype = selecttypes::single;
    checkonly(MnuSelectItem, selectnodes);
    graphics(0, 0, 0) = 0;
    elems(0, 0) = 0;
    nodes(0, 0, 0) = 0;
    filllabels();
    contourflag.alloc(5);
    for (Flag& flag : contourflag.row()) flag = true;
    theplatform().showtitle(apptitle + ": " + modelname);
    textcaption();
}

bool start(const std::string& directory) {
    appdir = directory;
    std::error_code ignored;
    std::filesystem::current_path(appdir, ignored);
    bool goon = true;
    const auto unexplained = [](const runtimeerror& e) {
        theplatform().message(
            "Unexplained error in procedure start; " + std::to_string(e.number) + " " + e.what,
            icons::critical);
    };
    if (!guarded(preparesession, unexplained)) return true;
    guarded(loadcatalogue, [&](const runtimeerror& e) {
        if (e.number == errfilenotfound) {
            theplatform().message(e.what, icons::critical);
            goon = false;
        } else {
            unexplained(e);
        }
    });
    if (goon) guarded(finishsession, unexplained);
    return goon;
}

static void clearchecks() {
    for (auto* list : {&MnuSelectItem, &Mnuadditem, &mnuSettingsItem, &mnudrawlist, &viewloads,
                       &Nodelabeltype, &elemlabeltype, &menupostItem, &mnuEditItem})
        for (menustate& item : list->row()) item = menustate();
}

void initsettings() {
    singleview = true;
    nodetol = 0.001;
    dim2d = false;
    clearchecks();
    Mnuadditem(readyitem).checked = true;
    mnuSettingsItem(scrollbarson).checked = true;
    mnuSettingsItem(globalaxison).checked = true;
    mnuSettingsItem(localaxison).checked = false;
    for (int i = nodesdrawn; i <= graphicsdrawn; ++i) mnudrawlist(i).checked = true;
    viewloads(allcases).checked = true;
    Nodelabeltype(nonodelabels).checked = true;
    elemlabeltype(noelementlabels).checked = true;
    MnuSelectItem(selectnodes).checked = true;
    mnuEditItem(undoitem).enabled = false;
    clearmem = 1;
    unitveclen = 0.5;
    sidebarw = 2000;
    sidebargap = 80;
    automergenodes = automergeelems = true;
    renumbersave = false;
    redrawmove = redrawdelete = redrawedit = true;
    newmodeldefaults();
}

void defaultloadcase(int lc) {
    lctype(lc) = caseapplied;
    lcpar(lc, accvalue) = 1;
    for (int k = acccentrex; k <= acccentrez; ++k) lcpar(lc, k) = 0;
    lcpar(lc, accelementmass) = 1;
}

void newloadcase() {
    curlc = 1;
    loadnode(0, 0) = 1;
    loadnode(1, 0) = 0;
    lcname(1) = "LC 1";
    defaultloadcase(1);
}

void newcombination() {
    lcomb(0, 0) = 1;
    lcomb(1, 1) = 1;
    lcombname(1) = "Lcomb1";
    curlcomb = 1;
}

void defaultgroup(int g) {
    groupname(g) = "GR " + std::to_string(g);
    groups(g, fieldmodulus) = 210000;
    groups(g, fieldpoisson) = 0.3;
    groups(g, fielddensity) = 7.85e-06;
    groups(g, fieldthickness) = 1.0;
}

void newgroup() {
    groups(0, 0) = 1;
    defaultgroup(1);
    meshgroup = 1;
}

void newmodeldefaults() {
    newloadcase();
    fillloadlabels();
    commentvisible = false;
    newcombination();
    newgroup();
    stresskind = 0;
    for (int v = 1; v <= nviews; ++v) viewtype(v) = viewselnum(v) = 0;
    dropundo();
}

bool resetmodel() {
    if (!allocmodel()) return false;
    initcolors();
    clearcounts();
    modeltoolarge = false;
    resetviews();
    newmodeldefaults();
    return true;
}
