// SPDX-License-Identifier: GPL-3.0-or-later
// State of the work session beside the model: names and directories, check marks of the menus,
// the running mode, the status line, and the analysis options. One session, one set of values.
#pragma once

#include <string>

#include "core/array.h"
#include "core/codes.h"

const bool True = true, False = false;
const double pi = 3.14159265358979;  // the value with which all angles are converted

// Names.
extern std::string apptitle;    // program title
extern std::string appversion;  // version line of reports
extern std::string modelname;   // full path of the model without extension; "None", or "" after New
extern std::string previousname;  // the name before the last Open
extern std::string appdir;        // directory of catalogue, settings and control files
extern std::string programdir;    // directory of the programs

// Check marks are state: drawing and picking read them. Index as in the menu.
struct menustate {
    bool checked = false;
    bool enabled = true;
};
extern array1<menustate> MnuSelectItem;    // (0..5) selectitems
extern array1<menustate> Mnuadditem;       // (0..9) additems
extern array1<menustate> mnuSettingsItem;  // (0..8) settingitems
extern array1<menustate> mnudrawlist;      // (0..10) drawnitems
extern array1<menustate> viewloads;        // (0..3) loadsonshow
extern array1<menustate> Nodelabeltype;    // (0..2) nodelabelkinds
extern array1<menustate> elemlabeltype;    // (0..5) elementlabelkinds
extern array1<menustate> menupostItem;     // (0..7) postitems
extern array1<menustate> mnuEditItem;      // (0..10)

// Checks entry i of a list of which exactly one is checked.
void checkonly(array1<menustate>& list, int i);
// The checked entry of such a list, -1 for none.
int checkedof(const array1<menustate>& list);

// Modes; at most one is on.
extern Flag addnodemode, addelemmode, drawline, drawcircle, drawcurve;
extern Flag editconstraint, editnodalload, editelemload;
extern Flag meshmode;        // the mesh generator picks edges
extern Flag zoomwinmode;     // the next drag is a zoom window
extern Flag viewwindow;      // the View Window command runs
extern Flag viewselpending;  // the selection serves the view dialog
extern Flag postselpending;  // the selection serves the post-process options
extern Flag windowdrag;      // a window corner is placed, the box follows the mouse
extern Flag movepending;     // the next press is the reference point of a move
extern Flag pasteflag;       // the selection was pasted or moved: it merges when it is released
extern Flag editing;         // a move or a dialog's edit is under way
extern Flag singleel;        // the single element dialog picks nodes
extern Flag menulock;        // while up, most menus are disabled
extern int ptcount;          // points entered of the graphic element in work
enum class selecttypes { single, window, group, all, lasso };
extern selecttypes selecttype;  // the selection method box

// The status line: action, item; goal; tail.
extern std::string promptaction, promptitem, promptgoal, prompttail;
void prompt(const std::string& action, const std::string& item, const std::string& goal,
            const std::string& tail);
std::string statusline();
void textcaption();          // shows the status line and refreshes the window
void labelselect();          // item from the check marks of MnuSelectItem, then textcaption
void readyprompt();          // the prompts of the rest state
const char* statusofsnap();  // "Snap On" or "Snap Off"

// A move can no longer be taken back: its places belong to numbers that have changed.
void dropundo();
// Results belong to the model that was: they leave the views.
void dropresults();

extern bool commentvisible;  // the comment frame of the main window

// Settings.
extern double nodetol;    // proximity tolerance, model units
extern double& mergetol;  // the same value
extern Flag automergenodes, automergeelems, renumbersave;
extern Flag redrawmove, redrawdelete, redrawedit;

// Analysis options.
extern Flag dim2d;
extern int clearmem, dorenumber, dostiffness, dosolve, doeigen, dolinestress, dofestress;
extern int elemmassflag;

// Contour choices.
extern int stresskind;            // start value of the contour selection
extern int stressglobal;          // 1 global, 0 local stress axes
extern array1<Flag> contourflag;  // (0..5)
