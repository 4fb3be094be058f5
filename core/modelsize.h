// SPDX-License-Identifier: GPL-3.0-or-later
// The model size declaration: defaults, the file decmem.DAT in appdir, the test of a model against
// it, and the memory that it costs.
#pragma once

#include <array>

// 5000 for sizes 1..4, 2000, 200, 4.
void defaultmodelsize();
// The defaults, then decmem.DAT over them. When that fails: the defaults with 2 load cases, a
// message, and the file is written anew.
void readmodelsize();
void writemodelsize();  // a failure is told in a message

// Tells every count of the model in hand that exceeds its declared maximum; true when one does.
bool istoolarge();

// Tells every count of the model that exceeds its declared maximum and drops such a model: name
// and counts are emptied and modeltoolarge is left true.
void checksize(int graphicsread);
void checksize();

// Kilobytes of memory for the numbers declared in the dialog's boxes 0..6: nodes, elements, load
// lists, groups, graphic elements, edges, and in [6] the total in megabytes.
std::array<double, 7> calcmem(const std::array<double, 7>& boxes);
