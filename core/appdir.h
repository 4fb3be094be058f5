// SPDX-License-Identifier: GPL-3.0-or-later
// Where catalogue, settings and control files lie.
#pragma once

#include <string>

// The directory in use: $KALVANE_HOME; else the program's own directory when it holds the catalogue
// and can be written (a build tree, a portable copy); else the user's data directory
// ($XDG_DATA_HOME/kalvane or ~/.local/share/kalvane). Missing catalogue files and a missing size
// declaration are copied into it from the program's directory or from installed data.
std::string findappdir(const std::string& programdir, const std::string& installeddata);

// True when the directory is there and files can be made in it.
bool iswritable(const std::string& directory);

// Copies the files and directories in directory from to directory to, which is made; the copies can
// be written even where the originals are read-only. Files of the same time stamp stay as they are.
void copytree(const std::string& from, const std::string& to);
