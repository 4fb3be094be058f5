// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers that stand for something, by name: the codes that the model's files hold, the fields of
// its arrays, and the places of the check marks in their menus. The values are those of the files.
// Workbench and solver share them.
#pragma once

// --- elements -----------------------------------------------------------------------------------

// Kinds of element, as ELTYP.DAT numbers them.
enum elementtype {
    typenone,
    typetruss,
    typememb3,
    typememb4,
    typemass,
    typeshear4,
    typebeam,
    typepipe,
    typeshell3,
    typeshell4,
    typeplate3,
    typeplate4,
    typespring2,
    typerigid,
    typespringt,
    typespringr,
    typespring
};

// The kinds that have rotations and give them to the nodes.
inline bool hasrotations(int type) {
    return type >= typebeam && type <= typeplate4;
}

// Fields of an element group: groups(g, ...).
enum groupfield {
    fieldmodulus = 1,
    fieldpoisson,
    fielddensity,
    fieldthickness,  // thickness of plates, area of line elements
    fieldplane,      // 0 plane stress, 1 plane strain
    fieldrotation,   // of the section about the element's axis, degrees
    fieldixx,
    fieldwxx,
    fieldiyy,
    fieldwyy,
    fieldizz,
    fieldwzz,
    groupfields = fieldwzz
};

// --- load cases ---------------------------------------------------------------------------------

// Kinds of load case: lctype.
enum casetype {
    caseapplied = 0,
    caseaccx = 1,  // ..3: accelerations along x y z
    caseaccz = 3,
    caseaccrx = 4,  // ..6: about x y z
    caseaccrz = 6,
    casewave = 7,
    casewind = 8,
    casebuoyancy = 9
};

// Parameters of a load case by its kind: lcpar(lc, ...).
const int caseparameters = 5;
enum accelerationparameter { accvalue, acccentrex, acccentrey, acccentrez, accelementmass };
enum waveparameter { waveheight, waveperiod, wavedirection, waveshift, wavedepth };
enum windparameter { windspeed, winddirection, windthird };
enum buoyancyparameter { buoyancylevel, buoyancydepth, buoyancydensity };

// --- graphic elements ---------------------------------------------------------------------------

// Kinds of graphic element: graphics(g, 0, 0).
enum graphickinds { kindfree = 0, kindline = 1, kindcurve = 2, kindcircle = 3 };

// --- declared sizes -----------------------------------------------------------------------------

// modelsize(...).
enum sizeindex {
    sizenodes = 1,
    sizeelements,
    sizeconditions,  // constraints, and rows of loads of each kind in a load case
    sizegroups,
    sizegraphics,
    sizeedgenodes,
    sizeloadcases
};

// --- check marks of the menus -------------------------------------------------------------------

// MnuSelectItem: what a press selects, and Snap, a toggle beside them.
enum selectitems { selectnodes, selectelements, selectpatches, selectforces, selectgraphics };
const int selectsnap = 5;
// Mnuadditem.
enum additems {
    readyitem,
    freenodeitem,
    elementitem,
    meshitem,
    objectitem,
    constraintitem = 6,
    loaditem,
    graphicitem = 9
};
const int undoitem = 0;  // mnuEditItem: the one whose state is kept
// mnuSettingsItem.
enum settingitems { scrollbarson = 2, globalaxison, localaxison, endreleaseson = 8 };
// mnudrawlist: what the views show.
enum drawnitems {
    nodesdrawn,
    elementsdrawn,
    constraintsdrawn,
    loadsdrawn,
    graphicsdrawn,
    patchesdrawn,
    hiddenline = 10
};
// viewloads: the loads on show.
enum loadsonshow { noloads, activecase, allcases, activecombination };
// Nodelabeltype.
enum nodelabelkinds { nonodelabels, nodenumbers, nodenames };
// elemlabeltype.
enum elementlabelkinds {
    noelementlabels,
    elementnumbers,
    elementtypes,
    elementgroups,
    elementcolours,
    elementnames
};
// menupostItem: the results on show.
enum postitems { deformedshape = 1, contourplot, modeshape, elementstress };
