// SPDX-License-Identifier: GPL-3.0-or-later
// The room view: cameras and layouts of the four views, and the drawing of the model on surfaces.
//
// The picture of a view: its layers in their fixed order, and the redraws that run them.
//
// The layers are a table. Each row has the condition under which it is drawn and the routine that
// draws it; modules above this one hang their routines in their rows when the program starts. The
// screen, the printer and the recorder of tests run the same table.
#pragma once

#include <functional>

#include "core/views.h"
#include "view/surface.h"

enum class layers {
    contour,       // contour plot, view 1
    graphicsfill,  // graphic elements, fill pass
    nodes,
    elements,
    triad,
    graphicslines,  // graphic elements, line pass
    lineelements,   // once more over the graphic lines, so that their colour is true
    patches,
    loads,
    constraints,
    deformed,  // deformed or mode shape
    elementstress,
    diagrams,  // forces along members
    localaxes,
    endreleases,
    extremes,     // marks of the highest and lowest value of a plot
    grouplegend,  // colours of the groups with their names
    selectedpatches,
    selectedelements,
    selectednodes,
    selectedgraphics,
    selectedothers,  // previews of the second lists and whatever else stands above all
    count
};

struct layerrow {
    planes plane = planes::model;
    std::function<bool(int nview)> wanted;
    std::function<void(int nview)> draw;  // empty while no module has hung one in
};
layerrow& layer(layers which);
// Fills the rows that this floor draws itself.
void wirelayers();

void drawview(int nview);
// Supports, loads and local axes, where they are on show: they stand out from the model.
void drawsymbols(int nview);
void redrawall();
// As long as one stands nothing is drawn: a model that is being read is none yet, and a box or a
// progress window lets the toolkit ask for pictures of it. Those come when the last one goes.
class drawinghold {
  public:
    drawinghold();
    ~drawinghold();
    drawinghold(const drawinghold&) = delete;
    drawinghold& operator=(const drawinghold&) = delete;
};
extern long picturesdrawn;  // rises whenever the picture of the model is drawn or changed
// The selection's layers alone, in drawcolor: backcolor erases, selcolor shows.
void drawselection(int nview);
void drawselectionall();
// The selected items on the plane of the model, in all views: taken from the picture before an edit
// after which the views are not redrawn, and brought back in their own colours after it.
void eraseselected();
void drawselectedplain();
// Number of views on show: 1 or 4; 2 while two results stand side by side.
int shownviews();
// Stands around the picture of each view: what belongs to one view alone comes and goes.
extern std::function<void(int nview, bool begins)> aroundview;
// Calls draw(view) for each view on show, prepared for points of the model and ready to draw
// beneath the marks; what is drawn becomes visible. The point in work is kept.
void drawinviews(const std::function<void(int nview)>& draw);
void showviews();  // what was drawn becomes visible in all views

// Wait pointer for as long as the object lives.
struct hourglass {
    hourglass();
    ~hourglass();
    hourglass(const hourglass&) = delete;
    hourglass& operator=(const hourglass&) = delete;
};
