// SPDX-License-Identifier: GPL-3.0-or-later
// State of the work session and the status line made from it.
#include "core/session.h"

#include "core/diagramshown.h"
#include "core/model.h"
#include "core/platform.h"
#include "core/trimmed.h"

bool diagramshown;
std::string apptitle, appversion, modelname = "None", previousname = "None", appdir, programdir;

static array1<menustate> menulist(int upper) {
    array1<menustate> list;
    list.alloc(upper);
    return list;
}

array1<menustate> MnuSelectItem = menulist(5), Mnuadditem = menulist(9),
                  mnuSettingsItem = menulist(8), mnudrawlist = menulist(10),
                  viewloads = menulist(3), Nodelabeltype = menulist(2), elemlabeltype = menulist(5),
                  menupostItem = menulist(7), mnuEditItem = menulist(10);

void checkonly(array1<menustate>& list, int i) {
    for (menustate& item : list.row()) item.checked = false;
    list(i).checked = true;
}

int checkedof(const array1<menustate>& list) {
    for (int i = 0; i <= list.upper; ++i)
        if (list(i).checked) return i;
    return -1;
}

Flag addnodemode, addelemmode, drawline, drawcircle, drawcurve;
Flag editconstraint, editnodalload, editelemload, meshmode;
Flag zoomwinmode, viewwindow, viewselpending, postselpending, windowdrag, movepending, editing;
Flag pasteflag;
Flag singleel, menulock;
int ptcount;
selecttypes selecttype = selecttypes::single;

std::string promptaction, promptitem, promptgoal, prompttail;
bool commentvisible;

double nodetol = 0.001;
double& mergetol = nodetol;
Flag automergenodes, automergeelems, renumbersave, redrawmove, redrawdelete, redrawedit;

Flag dim2d;
int clearmem = 1, dorenumber = 1, dostiffness = 1, dosolve = 1, doeigen = 0, dolinestress = 1,
    dofestress = 1, elemmassflag = 1;

int stresskind, stressglobal;
array1<Flag> contourflag;

std::string statusline() {
    std::string line(trimmed(promptaction));
    if (const std::string item(trimmed(promptitem)); !item.empty()) line += " " + item;
    for (const std::string* hint : {&promptgoal, &prompttail})
        if (const std::string text(trimmed(*hint)); !text.empty()) line += "; " + text;
    return line;
}

void prompt(const std::string& action, const std::string& item, const std::string& goal,
            const std::string& tail) {
    promptaction = action;
    promptitem = item;
    promptgoal = goal;
    prompttail = tail;
    textcaption();
}

void textcaption() {
    theplatform().showstatus(statusline());
    theplatform().refresh();
}

void labelselect() {
    static const char* const names[] = {"Nodes", "Elements", "Patches", "Forces", "Graphics "};
    promptitem.clear();
    for (int i = selectnodes; i <= selectgraphics; ++i) {
        if (!MnuSelectItem(i).checked) continue;
        if (!promptitem.empty()) promptitem += " / ";
        promptitem += names[i];
    }
    textcaption();
}

void readyprompt() {
    promptaction = "Select";
    promptgoal = "for editing";
    prompttail.clear();
    labelselect();
}

const char* statusofsnap() {
    return MnuSelectItem(selectsnap).checked ? "Snap On" : "Snap Off";
}

void dropundo() {
    undomark = 0;
    mnuEditItem(undoitem).enabled = false;
}

void dropresults() {
    diagramshown = false;
    resultflag = 1;
    stressloaded = false;
    maxdisp = 0;
    for (int i = deformedshape; i <= elementstress; ++i) menupostItem(i).checked = false;
}
