// SPDX-License-Identifier: GPL-3.0-or-later
// Change of the declared sizes.
#include "files/setmem.h"

#include <cmath>

#include "core/model.h"
#include "core/modelsize.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "edit/Mouseprocedures.h"
#include "view/moddraw.h"

const char* const sizelabels[7] = {
    "Number of nodes",           "Number of elements",         "Boundary Condition per loadcase",
    "Number of material groups", "Number of graphic elements", " Number of nodes on one edge",
    "Number of Loadcases"};

static void recalculate(sizeform& form) {
    std::array<double, 7> boxes{};
    for (std::size_t i = 0; i < 7; ++i) boxes[i] = numberof(form.text[i]);
    const auto cost = calcmem(boxes);
    for (std::size_t i = 0; i < 7; ++i) form.memory[i] = fixedtext(cost[i], i == 6 ? 2 : 1);
}

sizeform showsizes() {
    sizeform form;
    for (std::size_t i = 0; i < 7; ++i) form.text[i] = numbertext(modelsize(long(i) + 1));
    recalculate(form);
    return form;
}

void editsize(sizeform& form, int box) {
    std::string& text = form.text[std::size_t(box)];
    if (!isnumeric(text)) text = "0";
    recalculate(form);
}

// Whole numbers from 1 up; false after a message that names the first box that holds none.
static bool readsizes(const sizeform& form, std::array<int, 7>& sizes) {
    const double most = 2e9;
    for (std::size_t i = 0; i < 7; ++i) {
        const double value = numberof(form.text[i]);
        if (!(value >= 1 && value <= most) || value != std::floor(value)) {
            theplatform().message(std::string(sizelabels[i]) +
                                      ": a whole number from 1 up is needed, \"" + form.text[i] +
                                      "\" is none",
                                  icons::exclamation);
            return false;
        }
        sizes[i] = int(value);
    }
    return true;
}

static void declare(const std::array<int, 7>& sizes) {
    for (std::size_t i = 0; i < 7; ++i) modelsize(long(i) + 1) = sizes[i];
}

bool applysizes(sizeform& form) {
    std::array<int, 7> sizes{}, old{};
    if (!readsizes(form, sizes)) return false;
    const hourglass wait;
    addready();
    for (std::size_t i = 0; i < 7; ++i) old[i] = modelsize(long(i) + 1);
    declare(sizes);
    const bool changed = !istoolarge() && resizemodel();
    if (changed)
        writemodelsize();
    else
        declare(old);
    form = showsizes();
    redrawall();
    return changed;
}
