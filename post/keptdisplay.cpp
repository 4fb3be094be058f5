// SPDX-License-Identifier: GPL-3.0-or-later
// The display's results aside and back.
#include "post/keptdisplay.h"

#include <utility>

#include "core/model.h"
#include "core/session.h"
#include "post/contour.h"
#include "post/postproces.h"
#include "post/stressfile.h"

keptdisplay::keptdisplay()
    : combination(curlcomb),
      line(lineelstress),
      average(stressaverage),
      global(stressglobal),
      modes(modecount),
      largest(maxdisp),
      mode(modevalue),
      source(shownsource),
      forces(std::move(dispres)) {
    shownsource.of = sources::combination;
    stresslocal = false;
    dispres.clear();
    for (int n = 1; n <= nnodes(); ++n)
        for (int k = 0; k < 3; ++k) shape.push_back(nodes(1, n, k));
}

keptdisplay::~keptdisplay() {
    curlcomb = combination;
    shownsource = source;
    lineelstress = line;
    stressaverage = average;
    stressglobal = global;
    modecount = modes;
    maxdisp = largest;
    modevalue = mode;
    std::size_t at = 0;
    for (int n = 1; n <= nnodes(); ++n)
        for (int k = 0; k < 3; ++k) nodes(1, n, k) = shape[at++];
    // What belongs to a combination is read again where it is needed.
    stressloaded = false;
    elemstress.clear();
    dispres = std::move(forces);
}
