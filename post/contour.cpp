// SPDX-License-Identifier: GPL-3.0-or-later
// State and scale of the contour plots.
#include "post/contour.h"

#include <algorithm>
#include <cmath>

#include "core/catalogue.h"
#include "core/colours.h"
#include "core/model.h"
#include "core/session.h"
#include "post/components.h"
#include "post/exactstress.h"
#include "post/legendlook.h"
#include "post/nodeenvelope.h"
#include "post/plotunits.h"
#include "post/postproces.h"
#include "post/secondplot.h"
#include "post/sectionfibres.h"
#include "post/source.h"
#include "post/stressenvelope.h"
#include "post/stressfile.h"

int stresscomp = 13, contourdata, dispcontour, contourfilled = 1;
bool indexautoscale = true;
double scalemax, scalemin;
int postset, postgroup = 1, postcount;
bool markextremes, valueatpointer;
int indexcolors = 10;
double indexmax = 1, indexmin = -1;
cornervalue highest, lowest;
int unfilled;

static array1<float> allcolors() {
    array1<float> list;
    list.alloc(mostbands - 1);
    return list;
}
array1<float> indexcolor = allcolors();

bool iscontour() {
    return menupostItem(contourplot).checked;
}

bool iselementstress() {
    return menupostItem(elementstress).checked;
}

bool isdeformed() {
    return (menupostItem(deformedshape).checked || menupostItem(modeshape).checked) &&
           !fieldisnoise;
}

// --- the index ----------------------------------------------------------------------------------

double bandbound(int k) {
    if (k == indexcolors) return indexmax;
    return (indexmax - indexmin) * k / indexcolors + indexmin;
}

double levelof(int k) {
    const int last = indexcolors - 1;
    return k == last ? indexmax : (indexmax - indexmin) * k / last + indexmin;
}

int bandof(double value) {
    if (!(value >= indexmin && value <= indexmax)) return -1;
    for (int k = 0; k < indexcolors; ++k)
        if (value < bandbound(k + 1)) return k;
    return indexcolors - 1;
}

// Line elements have the colours of bands, also each as a whole.
bool showsbands() {
    return contourfilled || iselementstress();
}

static void fillpalette() {
    const double largest = std::max(std::fabs(indexmax), std::fabs(indexmin));
    for (int k = 0; k < indexcolors; ++k) {
        const double middle = showsbands() ? (bandbound(k) + bandbound(k + 1)) / 2 : levelof(k);
        indexcolor(k) = float(legendcolour(k, indexcolors, middle, largest));
    }
}

// --- values -------------------------------------------------------------------------------------

// Of the chosen set and not a free slot.
static bool ispostelement(int e) {
    return elems(e, 0) != 0 && (postset == setofall || elemflag(e));
}

void noteselection() {
    postcount = 0;
    for (int e = 1; e <= nelems(); ++e) postcount += ispostelement(e);
}

// Springs and rigid links join and have no section.
static bool canbestressed(int e) {
    const int type = int(elems(e, 0));
    return nodesoftype(elems(e, 0)) >= 2 && type != typespring2 && type != typerigid;
}

// Masses and springs have no value that could be shown, and none that counts for the scale.
bool isplotted(int e) {
    const bool line = nodesoftype(elems(e, 0)) == 2;
    return canbestressed(e) && line == iselementstress() && (postset == setofall || elemflag(e));
}

bool plotsstress() {
    return iselementstress() || contourdata == stressdata;
}

// In units of the model.
static double stressvalue(int e, int corner) {
    if (isenvelope()) return shownof(governedat(e, corner));
    if (isexact(stresscomp)) return exactvalue(stresscomp, e, corner);
    return elemstress(stresscomp, e, corner);
}

static double plotscale = 1;  // to the units of the legend

float plotvalue(int e, int corner) {
    if (const float* const other = comparedvalues(e)) return other[corner - 1];
    if (plotsstress()) return float(plotscale * stressvalue(e, corner));
    if (needsnodeenvelope(dispcontour)) return shownof(governedatnode(int(elems(e, corner))));
    const auto d = nodes.row(1, int(elems(e, corner)));
    if (dispcontour > 0) return d[std::size_t(dispcontour - 1)];
    return float(std::sqrt(double(d[0]) * d[0] + double(d[1]) * d[1] + double(d[2]) * d[2]));
}

int plotgovernor(int e, int corner) {
    if (!isenvelope() || comparedvalues(e)) return 0;
    if (plotsstress()) return governorof(governedat(e, corner));
    return fieldismode ? 0 : governorof(governedatnode(int(elems(e, corner))));
}

// A uniform field has no width of its own; the spread falls as the value grows.
static void spreadindex() {
    const double v = indexmax, spread = 2 / std::fabs(v);
    indexmax = v == 0 ? 1 : v + spread;
    indexmin = v == 0 ? -1 : v - spread;
}

static void includevalue(int e, int corner, double value, bool& below) {
    indexmin = std::min(indexmin, value);
    indexmax = std::max(indexmax, value);
    if (corner > nodesoftype(elems(e, 0))) return;
    below = below || value < fillstart;
    if (highest.e == 0 || value > highest.value) highest = {e, corner, value};
    if (lowest.e == 0 || value < lowest.value) lowest = {e, corner, value};
}

// Of stresses all four corners of the record count: one without a value stands at 0.
void contourscale() {
    indexmin = 1e30;
    indexmax = -1e30;
    highest = lowest = cornervalue();
    unfilled = 0;
    const bool stress = plotsstress();
    for (int e = 1; e <= nelems(); ++e) {
        if (!isplotted(e)) continue;
        const int corners = stress && !isexact(stresscomp) && !isenvelope()
                                ? stresscorners
                                : nodesoftype(elems(e, 0));
        bool below = false;  // has the element a value that opens it to the filled painter?
        for (int c = 1; c <= corners; ++c) includevalue(e, c, plotvalue(e, c), below);
        unfilled += !below;
    }
    if (highest.e == 0) indexmin = indexmax = 0;
    includecompared(indexmin, indexmax);
    if (indexmax == indexmin) spreadindex();
    if (const auto limits = legendlimits(legendquantity())) {
        indexmax = limits->high;
        indexmin = limits->low;
        return;
    }
    if (indexautoscale) return;
    indexmax = std::max(scalemax, scalemin);
    indexmin = std::min(scalemax, scalemin);
}

// Lines and faces of one component have limits of their own.
std::string legendquantity() {
    return plotlabel() + (iselementstress() ? " of lines" : "");
}

// --- preparation --------------------------------------------------------------------------------

static bool stressunreadable;  // the stress file of the present choices could not be read
static bool plotprepared;

void retryresults() {
    stressloaded = false;
    stressunreadable = false;
    dropenvelope();
    dropnodeenvelope();
    dropfibres();
}

// Other parts may give up the stresses, or the model may have outgrown them.
static bool isloaded() {
    return stressloaded && (isenvelope() || elemstress.upper2 >= nelems());
}

bool plotready() {
    return plotprepared && (!plotsstress() || isloaded());
}

static bool preparestress() {
    lineelstress = iselementstress();
    stresslocal = isexact(stresscomp);
    if (stressunreadable) return false;
    if (isenvelope()) {
        if (!stressloaded) stressunreadable = !readenvelope(stresscomp);
        stressloaded = !stressunreadable;
        return stressloaded;
    }
    if (!isloaded()) stressloaded = false;
    stressunreadable = !readstress();
    return !stressunreadable;
}

static bool preparedisplacements() {
    return needsnodeenvelope(dispcontour) ? readnodeenvelope(dispcontour)
                                          : fieldread && !fieldisnoise;
}

bool prepareplot() {
    plotprepared = false;
    if (!iscontour() && !iselementstress()) return false;
    if (plotsstress() ? !preparestress() : !preparedisplacements()) return false;
    indexcolors = lookoflegend().bands;
    plotscale = shownfactor(plotformula());
    contourscale();
    fillpalette();
    plotprepared = true;
    return true;
}

std::string plotlabel() {
    return !plotsstress() ? directions[dispcontour].label : stresscomponents[stresscomp - 1].label;
}

const char* plotformula() {
    if (plotsstress()) return componentformula(stresscomp);
    return fieldismode || dispcontour > toldirections ? "" : "L";
}

std::string plottext() {
    if (iselementstress()) return stressglobal ? "Global Element Stress" : "Local Element Stress";
    if (!iscontour()) return isdeformed() ? "Global Displacements" : "";
    if (contourdata == displacementdata) return "Global Displacements";
    return std::string(stressaverage ? " Nodal Stress Average" : " Nodal Element Stress") +
           (stressglobal && !stresslocal ? " Global" : " Local");
}
