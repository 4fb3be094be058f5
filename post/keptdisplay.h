// SPDX-License-Identifier: GPL-3.0-or-later
// What the display shows of the results, put aside while results are read for a text or a file and
// put back at the end of its life.
#pragma once

#include <vector>

#include "core/array.h"
#include "post/source.h"

class keptdisplay {
  public:
    keptdisplay();
    ~keptdisplay();
    keptdisplay(const keptdisplay&) = delete;
    keptdisplay& operator=(const keptdisplay&) = delete;

  private:
    int combination, line, average, global, modes;
    double largest, mode;
    resultsource source;
    array3<double> forces;
    std::vector<float> shape;  // set 1 of the nodes
};
