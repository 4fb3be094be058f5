// SPDX-License-Identifier: GPL-3.0-or-later
// Change of the declared sizes.
#include "files/setmem.h"

#include <cmath>
#include <filesystem>

#include "core/model.h"
#include "core/modelsize.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "files/filop.h"
#include "view/moddraw.h"

namespace fs = std::filesystem;

const char* const sizelabels[7] = {
    "Number of nodes",           "Number of elements",         "Boundary Condition per loadcase",
    "Number of material groups", "Number of graphic elements", " Number of nodes on one edge",
    "Number of Loadcases"};

void recalculate(sizeform& form) {
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
static bool takesizes(const sizeform& form, std::array<int, 7>& sizes) {
    const double most = 2e9;
    for (std::size_t i = 0; i < 7; ++i) {
        const double value = numberof(form.text[i]);
        if (!(value >= 1 && value <= most) || value != std::floor(value)) {
            door().message(std::string(sizelabels[i]) + ": a whole number from 1 up is needed, \"" +
                               form.text[i] + "\" is none",
                           icons::exclamation);
            return false;
        }
        sizes[i] = int(value);
    }
    return true;
}

static void removetemporary(const std::string& base) {
    std::error_code ignored;
    for (const char* extension :
         {".tek", ".rot", ".gra", ".vpl", ".knk", ".mlt", ".lcd", ".lco", ".ell", ".pat", ".txt"})
        fs::remove(base + extension, ignored);
}

bool applysizes(sizeform& form) {
    std::array<int, 7> sizes{};
    if (!takesizes(form, sizes)) return false;
    const hourglass wait;
    const std::string name = modelname, temporary = (fs::path(appdir) / "tmp").string();
    std::array<int, 7> old{};
    modelname = temporary;
    const bool saved = savemodel();
    bool changed = saved;
    if (saved) {
        for (std::size_t i = 0; i < 7; ++i) {
            old[i] = modelsize(long(i) + 1);
            modelsize(long(i) + 1) = sizes[i];
        }
        changed = openmodel(temporary);
        if (!changed) {
            for (std::size_t i = 0; i < 7; ++i) modelsize(long(i) + 1) = old[i];
            openmodel(temporary);
        }
        removetemporary(temporary);
    }
    modelname = name;
    showmodelname();
    if (changed) writemodelsize();
    form = showsizes();
    redrawall();
    return changed;
}
