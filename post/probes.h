// SPDX-License-Identifier: GPL-3.0-or-later
// Probes: values of the plot that stay on it with their labels, whatever is plotted next. A probe
// is a place of the model, kept with it; the element there is looked for when it is needed, so that
// it outlives renumbering and another mesh.
#pragma once

#include <vector>

#include "core/array.h"
#include "post/probe.h"

struct probepoint {
    double at[3];  // undeformed, model units
};
const std::vector<probepoint>& probes();  // of the model

extern Flag probing;  // the mode: a press sets a probe, on one that is there takes it away
void startprobing();
void clearprobes();
void scaleprobes(double factor);  // the model has other lengths

// The plotted element at a place of the model, no further away than a hundredth of its size.
plotplace placeat(const double* at);
plotplace placein(int e, const double* at);  // the same of one element

void drawprobes(int nview);
void wireprobes();  // the mode, and the reader of the section
