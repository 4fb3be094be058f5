// SPDX-License-Identifier: GPL-3.0-or-later
// The import of a polygon file: which group its faces go to.
#pragma once

#include <string>
#include <vector>

#include "files/filemenu.h"

struct plyform {
    std::string path;
    std::vector<std::string> groups;  // of the model, and a new one named after the file
    int chosen = 0;                   // from 0
};
plyform& plyimport();

// The File menu's way into a polygon file. A new model has no choice of groups; else the dialog
// opens, which goes on by acceptply.
reply startply(const std::string& path, purposes purpose);
void acceptply();
