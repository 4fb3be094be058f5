// SPDX-License-Identifier: GPL-3.0-or-later
// Storage of the view parameters and their start values.
#include "core/views.h"

#include "core/session.h"

array1<float> viewptx, viewpty, viewptz, viewvert, viewhor, viewscale, viewdist, viewaw, viewdepth;
array1<int> viewgroup, viewtype, viewselnum;
array1<float> dispscale;

Flag singleview(true);
double vieww, viewh, scalex = 1, scaley = 1;
Integer activeview(1);
double unitveclen = 0.5;
double sidebarw = 2000, sidebargap = 80;

float curx, cury, curz;
double scrx, scry;
float perspw;
double modelx, modely, modelz;

double todegrees(double radians) {
    return radians * 180 / pi;
}

double toradians(double degrees) {
    return degrees / 180 * pi;
}

void allocviews() {
    for (auto* list : {&viewptx, &viewpty, &viewptz, &viewvert, &viewhor, &viewscale, &viewdist,
                       &viewaw, &viewdepth, &dispscale})
        list->alloc(nviews);
    for (auto* list : {&viewgroup, &viewtype, &viewselnum}) list->alloc(nviews);
}

void resetviews() {
    static const double vertical[] = {0, 45, 90, 0, 0};
    static const double horizontal[] = {0, 45, -90, 90, 0};
    for (int v = 1; v <= nviews; ++v) {
        viewvert(v) = float(toradians(vertical[v]));
        viewhor(v) = float(toradians(horizontal[v]));
        viewscale(v) = 1;
        viewaw(v) = 0;
        viewdist(v) = 1000000;
        viewptx(v) = viewpty(v) = viewptz(v) = 0;
        viewdepth(v) = fullviewdepth;
        viewgroup(v) = 0;
        dispscale(v) = 1;
    }
}
