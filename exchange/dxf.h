// SPDX-License-Identifier: GPL-3.0-or-later
// Drawing exchange files: lines, curves and faces in as elements, the model out as LINE and 3DFACE.
#pragma once

#include <string>

#include "exchange/imported.h"

// What is taken from a drawing, and as what: element types, 0 for nothing.
struct dxfoptions {
    int faces = typeshell4, lines = typebeam, circles = typebeam, arcs = typebeam;
    double longest = 10000;   // maximum element size, model units
    double joinwithin = -1;   // distance within which ends are joined; below 0: by the extent
    bool split = true;        // lines where others meet them
    bool asgraphics = false;  // LINE, ARC and CIRCLE as graphic elements instead
    std::string without;      // layers that are left out, "GRID; DIM*"
};

// The unit of the drawing in metres, by $INSUNITS; 0 where it tells none. Looks at the beginning of
// the file alone.
double unitofdrawing(const std::string& path);
const char* nameofunit(double metres);  // "metres"; empty for one without a name

// Throws with file and line where the file is damaged. Coordinates are multiplied by `factor`.
void readdxf(const std::string& path, const dxfoptions& options, double factor, imported& found);

// The model as Release 12, a layer a group.
void writedxf(const std::string& path, importreport& report);

// The type of the same kind with three or four corners: SHELL4 to SHELL3; 0 where there is none.
int typewithcorners(int type, int corners);
