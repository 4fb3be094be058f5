// SPDX-License-Identifier: GPL-3.0-or-later
// The quality of the plates as colours in the views, in ten bands from 0 to 1, and how many plates
// each band holds. State: whether it is on show.
#pragma once

#include <array>
#include <vector>

#include "core/colours.h"

const int qualitybands = 10;
using qualitycounts = std::array<long, qualitybands>;  // the worst band first

extern bool qualityonshow;  // the views show it in place of the wires

int bandofquality(double quality);
colour colourofband(int band);                         // red, yellow, green
qualitycounts countqualities(int group);               // of one group, or for 0 of all
std::vector<int> elementsofband(int band, int group);  // the worst first
void wirequality();
