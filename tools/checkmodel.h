// SPDX-License-Identifier: GPL-3.0-or-later
// The model check's walk over the plates and shells of a group, which makes the local axes of
// neighbours agree, by the order of their nodes and by their angles, so that their stresses can be
// compared and averaged. Loads on elements keep their direction in space all the while.
//
// State: the plates at each node, the walk under way with its reference, and the angle found last.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "core/array.h"
#include "tools/elementaxes.h"
#include "view/celllists.h"

// The plates at each node, those of one group together. A plate is an element of three or four
// nodes that exist, in a group that exists.
class plateadjacency {
  public:
    void build();
    std::span<const int> operator()(int group, int n) const;  // plates of a group at node n
    std::span<const int> at(int n) const { return bynode.of(std::size_t(n)); }
    std::span<const int> of(int group) const { return bygroup.of(std::size_t(group)); }
    // Place of a list of a node among all, for values that go with it.
    std::size_t placeof(std::span<const int> list) const {
        return std::size_t(list.data() - bynode.of(0).data());
    }
    std::size_t places() const { return bynode.size(); }
    int nodes = 0, elements = 0, groups = 0;  // of the model that it was built from

  private:
    celllists bygroup, bynode;
};
extern plateadjacency adjelems;
extern int maxadj;                   // most plates of one group at one node
extern point3 refx, refy, refz;      // the reference triad
extern double checkangle;            // degrees, of the element turned last
bool isplate(int e);                 // as above, its group aside
int edgesense(int e, int a, int b);  // 1 where e runs from node a to node b, -1 back, 0 neither

// --- a single element -------------------------------------------------------------------------

// Reverses the order of the nodes.
void mirroraxis(int e);
// Moves the nodes one place on, or three.
void rotateaxis(int e, bool three);
// The reference becomes the triad of an element, or for 0 the global axes; e is mirrored where its
// normal points against it.
void setrefaxis(int e, int reference);
// Compares the axes of b with those of its neighbour a and changes b: mirrored where the normals
// disagree, and turned by its angle where the two lie nearly in one plane.
void localcheck(int a, int b);

// --- the walk -----------------------------------------------------------------------------------

// Where the axes of the pieces of a group start.
enum class axisstarts { asfound, global, element };
struct axisreference {
    axisstarts start = axisstarts::asfound;
    int element = 0;  // the walk starts with it where it is one of the group
};

// Forgets all marks; the next walk starts anew.
void startwalk(const axisreference& reference);
bool iswalking();  // one is under way, and the model has still the elements that it knows
// The first plate of the group that is visible in the active view and not visited becomes the
// selection and the start; 0 when none is left.
int startpiece(int g);
// Marks e as visited and checks the neighbours that continue it across an edge and are not.
void modifyadjelem(int e);
// The next element whose neighbours are to be checked becomes the selection. When a surface is done
// the walk goes on from it over edges where more plates meet, the straightest way first, over folds
// and over single nodes. 0 when the piece is done.
int runthrough(int g);

struct walkresult {
    int elements = 0, mirrored = 0, turned = 0;  // turned: their angle is another one
    int rows = 0;       // of loads that changed; -1: they need more than declared, nothing changed
    bool whole = true;  // false: cancelled, the rest of the elements stayed as they were
};
// The whole walk over a group.
walkresult browsgroup(int g, const axisreference& reference = {});
// The same with the angles of the visible plates, but for that of the reference, at 0 before; and
// over every group.
walkresult homogenize(int g, const axisreference& reference);
walkresult browse(const axisreference& reference);
// The walk element by element, over a group or, for 0, over all: the first becomes the selection;
// then the neighbours of the selected one are checked and the next is selected. Both return its
// number, 0 at the end.
int firstelement(int g, const axisreference& reference);
int nextelement(walkresult& result);
// What there is to say of one.
std::string walktext(const walkresult& result);

// --- the order of nodes by hand -----------------------------------------------------------------

// Calls change(e) for those elements that are plates; the loads on them follow.
walkresult changeplates(const std::vector<int>& meant, const std::function<void(int)>& change);
// The other side up for all plates of a group, the same first edge.
walkresult flip(int g);
extern const char* const toomanyrows;  // what is told where loads leave no room

// How well the axes agree at the nodes: per node and group the mean, over its plates, of the sum of
// the three cosines to the axes of the first; 3 where all agree.
struct axisquality {
    double lowest = 1e30, highest = 0;
    int nodes = 0;  // that have more than one plate
};
axisquality localcheckbck();
// Plates that have all but one of their corners, or all, at nodes below the limit.
std::vector<int> findwrongelem(double limit);
// Changes the wrong ones: one place on, three places, or reversed; the flags change for the next.
walkresult modifyaxis(double limit, bool& rotate, bool& three);
