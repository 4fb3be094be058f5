// SPDX-License-Identifier: GPL-3.0-or-later
// The model size declaration: defaults, the file decmem.DAT in appdir, the test of a model against
// it, and the memory that it costs.
#pragma once

#include <array>
#include <string>
#include <vector>

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
// Declares and allocates them, for an empty model, or with the model in hand moved into them. False
// when that is no change, or the machine has no room for them: the sizes are those of before.
bool enlargesizes();
bool enlargewithmodel();
// What was found needed of any size exceeds it; told in one message.
bool istoolittle();

// The model in hand moves into arrays of the declared sizes. False, with the model as it was, when
// the machine has no memory for them.
bool resizemodel();

// Room for what is about to be made. Where it is more than is declared the user is asked, after
// what else is to be told, and the sizes grow with the model in hand: what a caller holds of cells
// is void then. False when there is no room and nothing has changed.
struct sizeneed {
    int size;
    long count;
};
bool growfor(const std::vector<sizeneed>& needs, const std::string& told = {});
// The same for nodes, elements and graphic elements that come to those of the model, told as such.
bool growby(long newnodes, long newelements, long newgraphics = 0);

// Kilobytes of memory for the numbers declared in the dialog's boxes 0..6: nodes, elements, load
// lists, groups, graphic elements, edges, and in [6] the total in megabytes.
std::array<double, 7> calcmem(const std::array<double, 7>& boxes);
