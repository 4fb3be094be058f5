// SPDX-License-Identifier: GPL-3.0-or-later
// Switches of the result views.
#include "post/shapes.h"

#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "files/analyse.h"
#include "post/postproces.h"
#include "view/moddraw.h"

enum postitem { deformedshape = 1, contourplot, modeshape, elementstress };

void showdeformed() {
    const hourglass wait;
    stressloaded = false;
    menupostItem(deformedshape).checked = !menupostItem(deformedshape).checked;
    if (menupostItem(deformedshape).checked) readdisp();
    door().refresh();
    redrawall();
}

void showmode() {
    const hourglass wait;
    stressloaded = false;
    menupostItem(modeshape).checked = !menupostItem(modeshape).checked;
    if (menupostItem(modeshape).checked) {
        curlcomb = 1;
        readmode();
    }
    door().refresh();
    redrawall();
}

void choosecombination(int c) {
    if (c < 1 || c > ncomb()) return;
    const hourglass wait;
    curlcomb = c;
    stressloaded = false;
    if (menupostItem(deformedshape).checked) readdisp();
    door().refresh();
    redrawall();
}

void choosemode(int number) {
    if (number < 1) return;
    const hourglass wait;
    curlcomb = number;
    readmode();
    door().refresh();
    redrawall();
}

void rereadshown() {
    if (menupostItem(deformedshape).checked) readdisp();
}

void wirepost() {
    rereadresults = rereadshown;
}
