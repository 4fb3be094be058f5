// SPDX-License-Identifier: GPL-3.0-or-later
// Loads of sea and wind on elements: wave cases (Morison), wind cases, buoyancy cases.
#pragma once

#include "solver/base/report.h"
#include "solver/elements/kinds.h"
#include "solver/loads/integrate.h"
#include "solver/loads/wavetheory.h"

class waveloads {
  public:
    // Of a case of any type; other than the three it loads nothing.
    waveloads(const model& m, const settings& s, const loadcase& c);
    bool any() const { return type >= casewave; }
    // Adds the nodal forces on this element (model axes and units); false where there are none.
    bool onelement(const element& e, elvector& f) const;
    // The forces a length on a line element, part by part; false where there are none.
    bool online(const element& e, const linesink& sink) const;

  private:
    bool waveonline(const element& e, const linesink& sink) const;
    bool windonline(const element& e, const linesink& sink) const;
    bool windonplate(const element& e, elvector& f) const;
    bool floatline(const element& e, const linesink& sink) const;
    bool floatplate(const element& e, elvector& f) const;
    vec3 windat(double height) const;

    const settings& s;
    int type;
    linearwave wave;
    vec3 wind = vec3::Zero();               // at 10 m, m/s
    double level = 0, bed = 0, weight = 0;  // of the water, model units
};

// Refuses parameters that no sea has and warns of those that are doubtful.
void checkwaveloads(const model& m, const settings& s, int lc, runlog& log);
