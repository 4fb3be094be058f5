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
    checkonly(MnuSelectItem, 0);
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
    Mnuadditem(0).checked = true;
    mnuSettingsItem(2).checked = true;   // Scrollbars
    mnuSettingsItem(3).checked = true;   // Global Axis
    mnuSettingsItem(4).checked = false;  // Local Axis
    for (int i = 0; i <= 4; ++i) mnudrawlist(i).checked = true;
    viewloads(2).checked = true;
    Nodelabeltype(0).checked = true;
    elemlabeltype(0).checked = true;
    MnuSelectItem(0).checked = true;
    mnuEditItem(0).enabled = false;
    clearmem = 1;
    unitveclen = 0.5;
    sidebarw = 2000;
    sidebargap = 80;
    automergenodes = automergeelems = true;
    renumbersave = false;
    redrawmove = redrawdelete = redrawedit = true;
    newmodeldefaults();
}

void newloadcase() {
    curlc = 1;
    loadnode(0, 0) = 1;
    loadnode(1, 0) = 0;
    lcname(1) = "LC 1";
    lctype(1) = 0;
    lcpar(1, 0) = 1;
    for (int k = 1; k <= 3; ++k) lcpar(1, k) = 0;
    lcpar(1, 4) = 1;
}

void newcombination() {
    lcomb(0, 0) = 1;
    lcomb(1, 1) = 1;
    lcombname(1) = "Lcomb1";
    curlcomb = 1;
}

void defaultgroup(int g) {
    groupname(g) = "GR " + std::to_string(g);
    groups(g, 1) = 210000;
    groups(g, 2) = 0.3;
    groups(g, 3) = 7.85e-06;
    groups(g, 4) = 1.0;
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
