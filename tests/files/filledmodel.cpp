// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/files/filledmodel.h"

#include "core/colours.h"
#include "files/kalfile.h"
#include "files/saving.h"
#include "tests/support/recorder.h"

// A model that has something in every file.
void fillmodel() {
    for (int n = 1; n <= 12; ++n) addnode(float(n) * 0.1f, float(n % 4) / 3, 1e-7f * float(n));
    addelement(6, {1, 2}, 2);
    addelement(9, {1, 2, 3, 4});
    addelement(4, {7});
    addelement(8, {5, 6, 7}, 2);
    rotpo(2) = 0.1;
    groups(0, 0) = 2;
    groupname(2) = "Box, \"welded\"";
    groups(2, 11) = 1.5e-7;
    groupmat(2, 3, 4) = 12.5f;
    for (const int dof : {1, 2, 3, 6}) {
        ++ncon;
        connode(ncon) = ncon;
        condof(ncon) = dof;
        conval(ncon) = 90;
    }
    loadnode(0, 0) = 2;
    lcname(2) = "Wave";
    lctype(2) = 7;
    lcpar(2, 0) = 8.5;
    lcpar(2, 4) = 1;
    loadnode(1, 0) = elemload(1, 0, 0) = 1;
    loadnode(1, 1) = 12;
    loaddof(1, 1) = 2;
    loadval(1, 1) = -0.3f;
    elemload(1, 1, 0) = 2;
    elemload(1, 1, 1) = 3;
    elemload(1, 1, 2) = 0.7f;
    lcomb(0, 0) = 2;
    lcombname(2) = "Both";
    lcomb(2, 1) = 1.35f;
    lcomb(2, 2) = -1;
    graphics(0, 0, 0) = graphics(1, 0, 0) = 1;
    graphics(1, 0, 1) = 4;
    graphics(1, 0, 2) = 0.5f;
    graphics(1, 2, 1) = 6;
    patches(0, 0, 0) = patches(1, 0, 0) = patches(1, 1, 1) = 1;
    patches(1, 0, 1) = 6;
    patches(1, 0, 2) = patches(1, 1, 0) = 2;
    patches(1, 1, 2) = 7;  // a graphic element that was deleted
    commenttext = "Lines, with \"quotes\"\nand 1,5 umlauts \xC3\xA4\n";
    putkalsection("unknown", "1,\"two, 3\"");
    viewscale(3) = 0.037f;
}

void saveas(const std::string& base) {
    modelname = base;
    ASSERT_TRUE(savemodel());
}
