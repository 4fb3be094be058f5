// SPDX-License-Identifier: GPL-3.0-or-later
// The report viewer: a window of its own beside the main one. It shows a text of any length, jumps
// to its sections, finds, copies and prints.
#pragma once

#include <string>

// Opens the file; one that can not be read is told.
void showreport(const std::string& path);
// The log of an analysis, at its first warning; the warnings are its sections.
void showlog(const std::string& path);
