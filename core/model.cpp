// SPDX-License-Identifier: GPL-3.0-or-later
// Storage of the model database.
#include "core/model.h"

#include <algorithm>

#include "core/platform.h"

array1<int> modelsize;

array3<float> nodes;
array1<int> nodesel;
array1<std::string> nodename;
array2<float> tmpnodes, nodework;

array2<float> elems;
array1<int> egroup;
array1<double> rotpo;
array1<std::string> elemname;
array1<float> elemsel;
array2<Flag> elemvis;
array2<float> tmpelems;
array2<double> elemdepth;
array3<float> endrelease;
array3<double> elemstress;
array1<Flag> elemflag;

array2<double> groups;
array1<std::string> groupname;
array3<float> groupmat;
array1<int> groupcolor, groupshow;

int ncon;
array1<int> connode, condof;
array1<float> conval;

array2<int> loadnode, loaddof;
array2<float> loadval;
array3<float> elemload;
array1<std::string> lcname;
array1<Integer> lctype;
array2<double> lcpar;
Integer curlc;
int nload;

array2<float> lcomb;
array1<std::string> lcombname, lcdesc;
int curlcomb;
array3<double> dispres;

array3<float> graphics, graphics2;
array2<int> graphsel, graphsel2, graphmesh, edgedata, edgegrid;
array1<float> edgechordax, edgechorday, edgechordaz, edgechordbx, edgechordby, edgechordbz;
array3<Integer> patches;
array1<float> patchsel;

int meshgroup = 1;

Flag hasmass, hasplates;
int doftype = 2;
Flag linepressure;
std::string commenttext;
bool modeltoolarge;

int resultflag;
Flag stressloaded;
double maxdisp;
int undomark;

static void allocnodes(long m1) {
    nodes.alloc(1, m1, 3);
    nodesel.alloc(m1);
    nodename.alloc(m1);
    tmpnodes.alloc(m1, 3);
    nodework.alloc(m1, 3);
}

static void allocelems(long m2) {
    elems.alloc(m2, 4);
    egroup.alloc(m2);
    rotpo.alloc(m2);
    elemname.alloc(m2);
    elemsel.alloc(m2);
    elemvis.alloc(4, m2);
    tmpelems.alloc(m2, 5);
    elemdepth.alloc(m2, 1);
    endrelease.alloc(m2, 4, 6);
    elemstress.clear();
    elemflag.alloc(m2);
}

static void allocgroups(long m4) {
    groups.alloc(m4, 12);
    groupname.alloc(m4);
    groupmat.alloc(m4, 6, 6);
    groupcolor.alloc(m4);
    groupshow.alloc(std::max(m4, 9L));  // the palette has ten entries whatever is declared
}

static void allocloads(long m3, long m7) {
    connode.alloc(m3);
    condof.alloc(m3);
    conval.alloc(m3);
    loadnode.alloc(m7, m3);
    loaddof.alloc(m7, m3);
    loadval.alloc(m7, m3);
    elemload.alloc(m7, m3, 2);
    lcname.alloc(m7);
    lctype.alloc(m7);
    lcpar.alloc(m7, 4);
    const long rows = std::max(m7, long(maxcombinations));
    lcomb.alloc(rows, m7);
    lcombname.alloc(rows);
    lcdesc.alloc(rows);
    dispres.clear();
}

static void allocgraphics(long m5, long m6) {
    graphics.alloc(m5, 3, 3);
    graphics2.alloc(m5, 3, 3);
    graphsel.alloc(m5, 1);
    graphsel2.alloc(3 * m5, 1);  // an element has up to three points
    graphmesh.alloc(4, m5);
    edgedata.alloc(4, m6);
    edgegrid.alloc(m6, m6);
    for (auto* list :
         {&edgechordax, &edgechorday, &edgechordaz, &edgechordbx, &edgechordby, &edgechordbz})
        list->alloc(m6);
    patches.alloc(maxpatches, maxpatchedges, maxedgepieces);
    patchsel.alloc(maxpatches);
}

bool allocmodel() {
    return guarded(
        [] {
            allocnodes(modelsize(1));
            allocelems(modelsize(2));
            allocgroups(modelsize(4));
            allocloads(modelsize(3), modelsize(7));
            allocgraphics(modelsize(5), modelsize(6));
        },
        [](const runtimeerror&) {
            door().message("Out of Memory, Reduce size of declaired model", icons::exclamation);
        });
}

void clearcounts() {
    ncon = nload = 0;
    nodes(0, 0, 0) = 0;
    elems(0, 0) = 0;
    graphics(0, 0, 0) = 0;
    groups(0, 0) = 0;
    resultflag = 0;
    stressloaded = false;
    maxdisp = 0;
    hasmass = hasplates = false;
}
