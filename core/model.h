// SPDX-License-Identifier: GPL-3.0-or-later
// The room core: model, its table and journal, session, sizes, texts of numbers and files. Chief of
// it the model database, global parallel arrays that all tools read and write by row number.
// Slot 0 is no entity: it holds a count or stays empty; entities run from 1. Bounds are included;
// m1..m7 below are modelsize(1..7). Nearly all model numbers are Singles (float), also node
// numbers and type codes, and what the files hold follows from that. A free element or graphic
// slot has type 0. Lengths are model units, angles radians but where degrees are told.
#pragma once

#include <memory>
#include <string>

#include "core/array.h"
#include "core/codes.h"

// Declared maxima: 1 nodes, 2 elements, 3 boundary conditions a load case, 4 element groups,
// 5 graphic elements, 6 nodes on one edge, 7 load cases.
extern array1<int> modelsize;  // (0..7)

// Nodes.
extern array3<float> nodes;  // (0..1, 0..m1, 0..3): set 0 x y z in 0..2, set 1 the displacements
                             // of the result in view; nodes(0,0,0) is the highest node in use
extern array1<int> nodesel;  // (0..m1) selection: count, then node numbers
extern array1<std::string> nodename;  // (0..m1) names of an imported model
extern array2<float> tmpnodes;        // (0..m1, 0..3) buffer: (0,0) count, (i,0) number or 0,
                                      // (i,1..3) x y z; enters the model by the paste alone
extern array2<float> nodework;        // (0..m1, 0..3) work list of moves and renumbering

// Elements.
extern array2<float> elems;   // (0..m2, 0..4): (e,0) type, (e,1..4) nodes; (0,0) highest slot
extern array1<int> egroup;    // (0..m2) element group
extern array1<double> rotpo;  // (0..m2) rotation of local axes, radians
extern array1<std::string> elemname;  // (0..m2)
extern array1<float> elemsel;         // (0..m2) selection: count, then element numbers
extern array2<Flag> elemvis;          // (0..4, 0..m2) shown in view 1..4
extern array2<float> tmpelems;        // (0..m2, 0..5) buffer: type, nodes 1..4, group
extern array1<double> tmprotpo;       // (0..m2) rotation of the buffer's elements
extern array2<double> elemdepth;      // (0..m2, 0..1) element and depth, sorted for hidden lines
extern array3<float> endrelease;      // (0..m2, 0..4, 0..6) 1 releases (end, dof)
extern array3<double> elemstress;     // (0..13, 0..m2, 0..4) result by component, element, corner;
                                      // allocated while a stress file is in memory
extern array1<Flag> elemflag;         // (0..m2) marked for post-processing

// Element groups.
extern array2<double> groups;          // (0..m4, 0..12) the twelve properties; (0,0) count
extern array1<std::string> groupname;  // (0..m4)
extern array3<float> groupmat;         // (0..m4, 0..6, 0..6) spring matrix, 1..6 in use
extern array1<int> groupcolor;         // (0..m4) 0xBBGGRR
extern array1<int> groupshow;          // (0..m4) stress band colours, the first ten the palette

// Constraints, common to all load cases.
extern int ncon;
extern array1<int> connode;   // (0..m3)
extern array1<int> condof;    // (0..m3) 1..6: DX DY DZ RX RY RZ
extern array1<float> conval;  // (0..m3) prescribed value as typed, degrees for rotations

// Loads and load cases.
extern array2<int> loadnode;    // (0..m7, 0..m3): (0,0) load cases, (lc,0) nodal rows, (lc,i) node
extern array2<int> loaddof;     // (0..m7, 0..m3) 1..6
extern array2<float> loadval;   // (0..m7, 0..m3)
extern array3<float> elemload;  // (0..m7, 0..m3, 0..2): (lc,0,0) rows, (lc,i,0) element,
                                // (lc,i,1) local direction 1..3, (lc,i,2) value
extern array1<std::string> lcname;  // (0..m7)
extern array1<Integer> lctype;      // (0..m7) 0 applied, 1..6 acceleration, 7 wave, 8 wind,
                                    // 9 buoyancy
extern array2<double> lcpar;        // (0..m7, 0..4) parameters by type
extern Integer curlc;               // current load case
extern int nload;                   // rows of the load list last read

// Load combinations. The matrix has room for ten combinations even when fewer load cases are
// declared.
extern array2<float> lcomb;            // (0..max(m7,10), 0..m7): (0,0) count, (c,lc) factor
extern array1<std::string> lcombname;  // (0..max(m7,10))
extern array1<std::string> lcdesc;     // (0..max(m7,10)) equation text
extern int curlcomb;                   // current combination, also the number of the mode shown
extern array3<double> dispres;         // (0..m7, 0..m1, 0..6) nodal forces by load case; 0 the
                                       // combination; allocated while they are in memory

// Graphic elements, edges and patches.
extern array3<float> graphics;   // (0..m5, 0..3, 0..3): (g,0,0) kind, (g,0,1) spaces, (g,0,2)
                                 // factor, (g,j,1..3) point j; (0,0,0) highest in use
extern array3<float> graphics2;  // the same, for copies and the mesher
extern array2<int> graphsel;     // (0..m5, 0..1) elements picked for meshing: number, end
extern array2<int> graphsel2;    // (0..3 m5, 0..1) selection: graphic element, point
extern array2<int> graphmesh;    // (0..4, 0..m5) graphic elements of edges 1..4
extern array2<int> edgedata;     // (0..4, 0..m6) nodes along edges 1..4
extern array2<int> edgegrid;     // (0..m6, 0..m6) grid of generated node numbers
extern array1<float> edgechordax, edgechorday, edgechordaz;  // (0..m6) deviation of the first
extern array1<float> edgechordbx, edgechordby, edgechordbz;  // and second side from its chord
extern array3<Integer> patches;  // (0..20000, 0..10, 0..20): (0,0,0) count, (p,0,0) edges,
                                 // (p,0,1) type, (p,0,2) group, (p,j,0) pieces of edge j, then
                                 // their numbers
extern array1<float> patchsel;   // (0..20000)

extern int meshgroup;  // current group of all tools that create elements; 0 while the dialog of
                       // the groups shows all of them

// Flags that follow from the model.
extern Flag hasmass;    // an element with one node occurs
extern Flag hasplates;  // an element with more than two nodes occurs
extern int doftype;     // degrees of freedom for the solver, 1..3
extern Flag linepressure;
extern std::string commenttext;  // the user's notes on the model, UTF-8
extern bool modeltoolarge;       // the model read does not fit the declared sizes

// State of results.
extern int resultflag;     // 1 once the model was changed and results no longer fit it
extern Flag stressloaded;  // elemstress holds the chosen file for the current combination
extern double maxdisp;     // largest displacement of the shown field, 0 without results
extern int undomark;       // 1 while a move can be taken back

// The counts that stand in slot 0.
inline int nnodes() {
    return int(nodes(0, 0, 0));
}
inline int nelems() {
    return int(elems(0, 0));
}
inline int ngroups() {
    return int(groups(0, 0));
}
inline int ngraphics() {
    return int(graphics(0, 0, 0));
}
inline int nlc() {
    return loadnode(0, 0);
}
inline int ncomb() {
    return int(lcomb(0, 0));
}

const int maxpatches = 20000, maxpatchedges = 10, maxedgepieces = 20;
const int maxcombinations = 10;
