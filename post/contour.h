// SPDX-License-Identifier: GPL-3.0-or-later
// Contour plots: a stress component or a displacement as colours on the elements, and the stress
// of line elements. Here are what is chosen, the values of an element and the scale; the passes are
// in post/drawcontour.h, and the painters fill or line a single element.
#pragma once

#include <string>

#include "core/array.h"

// What the dialog of the options chooses. stressaverage is in post/stressfile.h, stressglobal in
// core/session.h.
extern int stresscomp;  // component 1..13 of a stress record, 13 the combined stress
enum plotteddata { stressdata, displacementdata };
extern int contourdata;      // plotteddata
extern int dispcontour;      // 0 length of the displacement vector, 1 x, 2 y, 3 z, 4..6 rotations
extern int contourfilled;    // 1 filled bands, 0 lines
extern bool indexautoscale;  // the scale follows the values; else scalemin..scalemax
extern double scalemax, scalemin;
enum plottedset { setofall, setofgroup, setofselection };
extern int postset;               // plottedset; but for all elements those with elemflag
extern int postgroup, postcount;  // the group; elements in the set

// Beyond the choices of the dialog: marks at the highest and lowest value, and the value under the
// pointer.
extern bool markextremes, valueatpointer;

// The scale in use. The painters and the legend read it.
extern int indexcolors;  // bands or lines of the legend; ten unless it was edited
extern double indexmax, indexmin;
extern array1<float> indexcolor;  // (0..mostbands-1) colours, lowest first
double bandbound(int k);          // lower bound of band k from 0; indexcolors gives indexmax
double levelof(int k);            // value of contour line k from 0, both bounds included
int bandof(double value);         // from 0; -1 outside the scale

// A place of the plot.
struct cornervalue {
    int e = 0, corner = 0;  // e 0: there is none
    double value = 0;
};
extern cornervalue highest, lowest;  // of the corners that exist, set by contourscale

void noteselection();                 // counts the elements of the set into postcount
bool isplotted(int e);                // and of a kind that the active entry shows
float plotvalue(int e, int corner);   // what is plotted, corner 1..4
int plotgovernor(int e, int corner);  // combination of an envelope that gives it, or 0
// Sets indexmin and indexmax for the active entry, and counts what the filled painter leaves out.
void contourscale();
const float fillstart = 1e6f;  // values from here up are left out by the filled painter
extern int unfilled;           // elements with no value below that

// Reads the stresses that the plot needs and sets its scale; false when there is nothing to colour,
// as after a failed read of displacements. A stress file that could not be read is not tried again
// before retryresults.
bool prepareplot();
void retryresults();
bool plotready();  // the last prepareplot succeeded

std::string plotlabel();       // "SX", "VM", "DX": the component in short
const char* plotformula();     // of its units, "" of the shape of a mode
std::string legendquantity();  // that the limits of the legend belong to
bool showsbands();             // the legend's colours fill bands; else they are those of lines
bool plotsstress();            // stresses are coloured, not displacements
bool iscontour();              // "Contour plot" is checked
bool iselementstress();        // "Element Stress " is checked
bool isdeformed();             // a deformed or a mode shape is on show
// What is on show, for the main window: "Global Displacements" and the like; "" without a plot.
std::string plottext();
