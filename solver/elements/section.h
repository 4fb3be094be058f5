// SPDX-License-Identifier: GPL-3.0-or-later
// Values of the cross section of a line element from the group's fields: area, second moments,
// section moduli, outline. The stresses are in solver/stresses.
#pragma once

#include "solver/elements/element.h"

struct linesection {
    double area = 0;
    double i2 = 0, i3 = 0;          // second moments about e2 (I xx) and e3 (I yy)
    double torsion = 0;             // I zz
    double w2 = 0, w3 = 0, wt = 0;  // section moduli to these; 0: not given
    double outer2 = 0, outer3 = 0;  // width along e2 and e3
    double enclosed = 0;  // area inside the outer outline: what water a sealed member displaces
    bool tube = false;
    bool outlined = true;  // the group tells the outline; false: a round bar of the area stands in
};

linesection sectionof(const element& e);
