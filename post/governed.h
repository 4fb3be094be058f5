// SPDX-License-Identifier: GPL-3.0-or-later
// A value over several combinations: what it is at most and at least, and in which of them.
#pragma once

struct governed {
    float high = 0, low = 0;
    short highof = 0, lowof = 0;  // combinations; 0: there is no value yet
};
void include(governed& bounds, double value, int combination);
// What the source's kind of envelope shows of it, and the combination that gives it.
float shownof(const governed& bounds);
int governorof(const governed& bounds);
