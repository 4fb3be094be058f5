// SPDX-License-Identifier: GPL-3.0-or-later
// For record and play: what presses and drags in a view come to where the size of the window decides: the point that is
// given, the items that are found. A recording notes it, and a player gives it back, so that a
// script finds the same in a window of another size.
#pragma once

#include <array>
#include <functional>
#include <vector>

struct pickhit {
    int item, part;
};

struct pressoutcome {
    long number = 0;            // of the presses so far
    double point[3] = {};       // model coordinates, as pressed
    double last[3] = {};        // where the drag came to
    bool dragged = false;       // it moved something or closed a box
    std::vector<std::array<double, 3>> path = {};  // of a lasso, from the press on
    std::vector<pickhit> hits;  // in the order of the searches, typed places too
};
pressoutcome& lastpress();
void newpress();  // the notes begin anew; the point is in modelx..
void notecorner();  // a lasso has a corner at the point in modelx..
void notedrag();  // it came to the point in modelx..

// A point for all that the mouse does while this lives, in model coordinates.
class givenplace {
  public:
    explicit givenplace(const double* point);
    ~givenplace();
    givenplace(const givenplace&) = delete;
    givenplace& operator=(const givenplace&) = delete;
};
bool isplacegiven();
// As takepoint; a given place takes the place of the point.
void takeplace(int nview, double x, double y);

// What the next searches find; those that the model does not hold are searched for as ever.
void givehits(const std::vector<pickhit>& hits);
// The next given hit, or what the search finds, which is noted.
pickhit agreedhit(int count, const std::function<pickhit()>& search);
