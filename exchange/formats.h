// SPDX-License-Identifier: GPL-3.0-or-later
// The foreign formats as rows of the file dialogs.
#pragma once

#include <string>
#include <vector>

#include "exchange/imported.h"

void wireexchange();

// The readers alone, by extension, with the choices as delivered: for what tries them on any file.
struct foreignreader {
    const char* extension;
    void (*read)(const std::string& path, imported& found);
};
const std::vector<foreignreader>& foreignreaders();
