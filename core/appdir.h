// SPDX-License-Identifier: GPL-3.0-or-later
// Where catalogue, settings and control files lie.
#pragma once

#include <string>

// The directory in use: $KALVANE_HOME; else the program's own directory when it holds the catalogue
// and can be written (a build tree, a portable copy); else the user's data directory
// ($XDG_DATA_HOME/kalvane or ~/.local/share/kalvane). Missing catalogue files are copied into it
// from the program's directory or from installed data.
std::string findappdir(const std::string& programdir, const std::string& installeddata);
