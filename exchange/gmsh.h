// SPDX-License-Identifier: GPL-3.0-or-later
// Gmsh meshes, versions 2.2 and 4.1, as text and binary. Physical groups are element groups.
#pragma once

#include <string>

#include "exchange/imported.h"

struct meshform {
    bool isold = false;  // version 2.2
    bool binary = false;
};

// Throws with file and line, or the section of a binary file.
void readgmsh(const std::string& path, imported& found);
void writegmsh(const std::string& path, const meshform& form, importreport& report);
