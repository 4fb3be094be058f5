// SPDX-License-Identifier: GPL-3.0-or-later
// Sections of bars by their dimensions: the types, area, second moments and section moduli, the
// outline. No state, no unit: what goes in as length comes out as length^2, ^3 and ^4.
//
// x and y are the section's own axes through its centroid: x runs along B, y along H; I xx is the
// stiffness against bending of H. I zz is the torsion constant.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "view/surface.h"

enum sectiontype {
    tubular,
    beammetric,
    beamus,
    tprofile,
    lprofile,
    dlprofile,
    cprofile,
    boxsection,
    prismaticbar,
    ntypes
};
enum sectiondim { dimb, dimh, dimtw, dimtf, ndims };  // of a tube: OD, WT

struct sectiontyperow {
    const char* name;
    std::array<const char*, ndims> fields;  // captions, "" where the type has none
};
extern const sectiontyperow sectiontypes[ntypes];
int findsectiontype(const std::string& name);  // -1 for none

using dimensions = std::array<double, ndims>;

struct sectionvalues {
    double area = 0, ixx = 0, wxx = 0, iyy = 0, wyy = 0, izz = 0, wzz = 0;
};

// From the dimensions alone. A division by zero throws errdivision.
//
// Bending follows the strips of the type. Two of them want care: an angle has one thickness, tw,
// and its area is B tw + (H - tw) tw when tf is left 0; a tee's stem counts in y as standing at
// the edge of the flange, as the upright leg of an angle does.
sectionvalues calcsection(int type, const dimensions& d);

// Distance from the neutral axes to the extreme fibre, I / W: x, y, and z the quotient of torsion.
// For profiles of a database, whose I is known: a tee is symmetric, an angle has one thickness.
std::array<double, 3> extremefibres(int type, const dimensions& d);

// Distance in x from the centroid to the tips of the flanges of a channel whose area and I yy are
// known: flanges that taper hold more of their area near the web than the dimensions tell.
double channeltips(const dimensions& d, double area, double iyy);
// A tee with its stem in the middle of the flange, about y.
struct axisvalues {
    double i = 0, w = 0;
};
axisvalues centredstem(const dimensions& d);

// What makes the dimensions no section, "" when they are one. isimpossible leaves out a dimension
// of 0: a web or flange that is not there has an area and second moments all the same.
std::string sectionfault(int type, const dimensions& d);
bool isimpossible(int type, const dimensions& d);

// Closed polygons in section coordinates, the origin at the lower left corner: the first is the
// outside, a second one a hole, or the other angle of a pair. Empty when sectionfault finds one.
std::vector<std::vector<point2>> sectionoutline(int type, const dimensions& d);
// Of the area, in the coordinates of the outline.
point2 sectioncentroid(int type, const std::vector<std::vector<point2>>& outline);
