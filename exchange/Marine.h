// SPDX-License-Identifier: GPL-3.0-or-later
// NEW-PROB texts: the model in fixed columns for an outside solver of marine structures.
//
// Keywords fill 8 columns, integers 5, reals of the coordinate system 10, all others 12; lines end
// with CR LF. Blocks in their order: head, COORD---, NODE-INP, ELEMENTS, DISPLACE, and FORCES-- for
// each case of applied loads.
#pragma once

#include <string>

#include "exchange/importreport.h"

const int mostmarineitems = 99999;  // nodes or elements, what five columns hold

// Writes the text, then the graphic elements beside it. Throws errtype, with the file as it was,
// for a model that the columns can not hold; errpathaccess, errdiskfull.
void exportmarine(const std::string& path, importreport& report);

// Text of exactly `width` characters, right-justified. Throw erroverflow for what does not fit.
std::string writeint(long number, int width);
// 0.000 where that keeps six digits and fits, else 0.00000E+00.
std::string writereal(double number, int width);
