// SPDX-License-Identifier: GPL-3.0-or-later
// Session start-up and the new model.
#include "core/start.h"

#include <filesystem>

#include "core/allocmodel.h"
#include "core/catalogue.h"
#include "core/colours.h"
#include "core/journal.h"
#include "core/labels.h"
#include "core/model.h"
#include "core/modelsize.h"
#include "core/newmodel.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/units.h"
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
    clearcounts();
    newunits.clear();
    initsettings();
    clearmodes();
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
