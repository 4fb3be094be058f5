// SPDX-License-Identifier: GPL-3.0-or-later
// The cube of the axes in a corner of a view: its faces as the view looks at them, and the
// direction of view that a place on it stands for.
#pragma once

#include <string>
#include <vector>

#include "view/camera.h"

struct cubepart {
    std::string name;             // "X", "-Y"; a corner "X Y -Z"
    double vertical, horizontal;  // degrees: the angles that look straight at it
    std::vector<point2> outline;  // of a face: four corners; of a corner: its place alone
    double facing;                // cosine to the eye
};

class viewcube {
  public:
    // As view `nview` looks at it: middle and half a side in any unit, y downwards.
    viewcube(int nview, point2 middle, double half);
    // The faces and corners that can be seen; corners lie over faces.
    std::vector<cubepart> faces, corners;
    const cubepart* at(double x, double y) const;  // null beside it

  private:
    double reach;
};
