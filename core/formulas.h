// SPDX-License-Identifier: GPL-3.0-or-later
// What the numbers of the model are, as formulas of units (core/units), where that hangs on the
// item: the thickness of plates is the area of lines, a row of a load is a force, a moment or a
// mass.
#pragma once

#include <string>
#include <vector>

// The kinds of element that a group is used by.
struct groupuse {
    bool lines = false, plates = false, masses = false;
    // Its fields are one thing for some of its elements and another for others.
    bool conflicts() const { return (lines && plates) || (masses && (lines || plates)); }
};
std::vector<groupuse> groupuses();  // by group; one pass over the elements

// Where the elements do not tell: "L | L^2", "F/L^n".
const char* groupformula(const groupuse& use, int field);
const char* matrixformula(int i, int j);  // row and column 1..6 of the spring matrix
const char* constraintformula(int dof);
const char* nodalformula(int lc, int dof);
const char* elementformula(int e);              // of a load on it
const char* parameterformula(int type, int k);  // of a load case of this type; "" for numbers

// A caption that ends with a formula in brackets, with its units: "Waterdepth (L)".
std::string captionwithunit(const std::string& caption);
