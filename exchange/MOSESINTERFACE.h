// SPDX-License-Identifier: GPL-3.0-or-later
// MOSES model texts: points, classes and pieces become nodes, groups and elements.
//
// The model is in the units of length and force that the text tells first. Of the element words
// BEAM, PLAT, PANE and pane are taken as they stand; whatever else a text holds is counted and
// told once a word.
#pragma once

#include <string>

#include "exchange/imported.h"

void readmoses(const std::string& path, imported& found);
void readmoses(std::string text, const std::string& name, imported& found);
