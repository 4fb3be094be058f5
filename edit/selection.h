// SPDX-License-Identifier: GPL-3.0-or-later
// The selection lists: toggling, windows, groups, all, and their picture.
#pragma once

#include <functional>
#include <vector>

#include "core/codes.h"
#include "view/camera.h"

// What a press selects: the checked entry of MnuSelectItem.
selectitems selectitem();
void checkselectitem(int item);  // the marks alone; Snap, a toggle beside them, stays

// How a press or a query joins the selection: as the method tells, in its place, adding to it (Ctrl
// held), taking out of it (Shift held).
enum class picks { told, instead, add, takeaway };
extern picks pickmode;  // of the press under way
// Runs a choice that fills the lists and joins what it finds with what was selected before.
void selectwith(picks mode, const std::function<void()>& select);

// In the list already: taken out, those above move down; else appended.
void togglenode(int n);
void toggleelement(int e);
void togglegraphic(int g, int point);
void togglepatch(int p);

// Everything of the item in force whose point lies strictly within the box with corners (x1,y1),
// (x2,y2) in centimetres joins the selection.
void selectwindow(int nview, double x1, double y1, double x2, double y2);
// The same inside a polygon on the surface.
void selectpolygon(int nview, const std::vector<point2>& corners);
void selectgroup(int group);  // its elements, and no others
void selectallnodes();
void selectallelements();
void selectallgraphics();
void selectallpatches();
void selectall();  // by the item in force

// graphsel from graphsel2: each selected graphic element once, with the end that was picked.
void syncgraphsel();
bool isselection();     // anything selected?
void clearselection();  // empties the lists, takes the picture back
void emptyselection();  // the lists alone
void showselection();   // draws the lists in selcolor in all views
void hideselection();   // takes that picture away
// The nodes of the selected elements into nodesel.
void gatherelementnodes();
// Marks of the listed numbers, 1..upper.
std::vector<bool> marksof(const std::vector<int>& list, int upper);
std::vector<int> selectednodes();
std::vector<int> selectedelements();
