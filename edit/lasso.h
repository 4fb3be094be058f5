// SPDX-License-Identifier: GPL-3.0-or-later
// The closed line that a lasso draws about items: its corners, what lies inside, its picture.
#pragma once

#include <vector>

#include "view/surface.h"

// The inside of a polygon by the even-odd rule, its sides sorted into strips so that a point is
// tested against few of them.
class lassoshape {
  public:
    explicit lassoshape(const std::vector<point2>& corners);
    bool holds(double x, double y) const;

  private:
    struct side {
        point2 a, b;
    };
    double left, right, top, bottom;
    std::vector<std::vector<side>> strips;  // from top to bottom
};

// The lasso under way, in centimetres of its view.
struct lassoline {
    int view = 0;  // 0: none is under way
    std::vector<point2> corners;
};
extern lassoline lasso;

void startlasso(int nview, double x, double y);
// Another corner, where it is not on the last one; drawn at once.
bool extendlasso(double x, double y);
void followlasso(double x, double y);  // a line from the last corner to the pointer
bool closeslasso(double x, double y);  // the place is that of the first corner
void endlasso();                       // takes the picture away
