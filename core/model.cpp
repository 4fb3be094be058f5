// SPDX-License-Identifier: GPL-3.0-or-later
// Storage of the model database.
#include "core/model.h"

#include "core/elempatch.h"

array1<int> modelsize;

array3<float> nodes;
array1<int> nodesel;
array1<std::string> nodename;
array2<float> tmpnodes, nodework;

array2<float> elems;
array1<int> egroup;
array1<double> rotpo;
array1<int> elempatch;
array1<std::string> elemname;
array1<float> elemsel;
array2<Flag> elemvis;
array2<float> tmpelems;
array1<double> tmprotpo;
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
