// SPDX-License-Identifier: GPL-3.0-or-later
// The model size declaration: defaults, the file decmem.DAT in appdir, the test of a model against
// it, and the memory that it costs.
#pragma once

#include <array>
#include <string>

// 5000 for sizes 1..4, 2000, 200, 4.
void defaultmodelsize();
// The defaults, then decmem.DAT over them. When that fails: the defaults with 2 load cases, a
// message, and the file is written anew.
void readmodelsize();
void writemodelsize();  // a failure is told in a message

// The message for a count of size i that exceeds its declared maximum; empty when it fits.
std::string sizefault(int i, long count);

// Tells every count of the model in hand that exceeds its declared maximum; true when one does.
bool istoolarge();

// Tells every count of the model that exceeds its declared maximum and drops such a model: name
// and counts are emptied and modeltoolarge is left true.
void checksize(int graphicsread);
void checksize();

// What readers find that the files need of size i. Rows beyond what is declared are counted and not
// stored.
void clearneeds();  // at the start of an opening
void needsize(int i, long count);
// Tells the needs that exceed the boundary conditions or the load cases declared, and drops the
// model as checksize does.
void checkneeds();
// Offers sizes that hold what was found needed; until clearneeds the needs are not told again.
bool askenlarge();
// Declares and allocates them, for an empty model, or by what moves the model in hand. False when
// that is no change, or the machine has no room for them: the sizes are those of before.
bool enlargesizes();
bool enlargesizes(bool (*allocated)());
// What was found needed of any size exceeds it; told in one message.
bool istoolittle();

// Kilobytes of memory for the numbers declared in the dialog's boxes 0..6: nodes, elements, load
// lists, groups, graphic elements, edges, and in [6] the total in megabytes.
std::array<double, 7> calcmem(const std::array<double, 7>& boxes);
