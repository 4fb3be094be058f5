// SPDX-License-Identifier: GPL-3.0-or-later
// The illustrated report as a PDF file of A4 pages.
#pragma once

#include <string>

#include "post/booksink.h"

// Throws errpathaccess, errdiskfull, errstopped; the former file stands then.
void writepdfbook(const std::string& path);
// A picture of the report as the bytes of a PNG file.
std::string pngofbook(double width, double height, const bookdraw& draw);
