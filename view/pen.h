// SPDX-License-Identifier: GPL-3.0-or-later
// What is drawn with and where it goes, put back by the end of life of these objects, so that a
// routine that fails half way leaves nothing of its own behind.
#pragma once

#include "view/surface.h"

// drawcolor, undeformed and, of a surface, width, style, filling and erasing.
class keptpen {
  public:
    explicit keptpen(surface* on = nullptr);
    ~keptpen();
    keptpen(const keptpen&) = delete;
    keptpen& operator=(const keptpen&) = delete;

  private:
    surface* const on;
    const colour drawn;
    const int shape;
    int width = 1;
    pens style = pens::solid;
    bool filled = false, erasing = false;
    colour filling = 0;
};

// On paper: a stroke in its colour, or nearly so, would not be seen and is drawn in black.
colour paperink(colour c);

// The operations of a surface go to one plane, then again to that of the marks, where they go
// between two pictures.
class onplane {
  public:
    onplane(surface& s, planes p) : on(s) { on.toplane(p); }
    ~onplane() { on.toplane(planes::marks); }
    onplane(const onplane&) = delete;
    onplane& operator=(const onplane&) = delete;

  private:
    surface& on;
};

// A symbol's colour, or that of the background while drawcolor erases.
colour shown(colour c);
