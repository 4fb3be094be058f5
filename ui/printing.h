// SPDX-License-Identifier: GPL-3.0-or-later
// The printer: print dialog, page setup, preview, and printing to a PDF file. One printer object
// keeps paper and orientation for the session.
//
// A PDF file takes the place of an older one when it is whole.
#pragma once

#include <QString>
#include <deque>
#include <functional>
#include <string>

#include "core/platform.h"

class QPainter;
class QPrinter;
struct surface;

// Files that a script which plays has queued: the next one is printed to. Null while none plays and
// the user is asked.
extern std::deque<std::string>* (*scripttargets)();

// For the platform: the dialog and the page, its surface, the end of the job.
printstart startprint();
surface* printpage();  // null while no page is being built
bool endprint(bool whole);

// The buttons beside Print.
void showprintpreview();
void showprintsetup();
void printtopdf();  // asks for the file's name, then prints the views

// Prints by a routine of its own, the report for one, through the same dialog. draw is given the
// printer and a painter on its first page. What is too wide for a standing sheet has it turned.
void printby(const QString& document, const std::function<void(QPrinter&, QPainter&)>& draw,
             bool landscape = false);
