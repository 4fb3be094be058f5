// SPDX-License-Identifier: GPL-3.0-or-later
// Parametric objects: text files .obj of graphic elements, patches and groups whose numbers are
// expressions over variables.
//
//     DESCRIPTION
//     one line of text
//     VARIABLES, n      name, value, text
//     GRAPHICS, n       number, kind, spaces, factor, 0, x y z of points 1, 2, 3
//     PATCHES, n        element type, for each edge the count and the numbers, group
//     GROUPS, n         name, twelve fields; then 36 values of the matrix for each
//     END
//
// An object that is read stands beyond the counts of graphics, patches and groups, its mesh in the
// buffers; the model has it only once it is accepted. State: what was read last.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "tools/graphiclist.h"

struct objectfile {
    std::string path, content;
};
// Where the object comes to stand: turned about x, then y, then z of the model, then moved.
struct objectplace {
    point3 at{};
    point3 turn{};  // degrees
};

extern std::string objdescription;
extern int objgraphcount;  // highest number of its graphic elements
extern int objpatchcount, objgroupcount;
extern bool objhasend;       // the file has its END
extern int objinverted;      // elements of its mesh that are inverted
extern int objwithoutgroup;  // patches that name a group that the object lacks

// First pass: description and variables. Throws a runtimeerror that names file and line.
void Readvar(const objectfile& file);
// Second pass, with the variables as they stand: graphic elements, patches with their mesh, groups.
// Throws likewise, with nothing left in the buffers.
void Readfile(const objectfile& file, const objectplace& place);
// What was read is no longer wanted.
void dropobject();
// Counts of what was read, to be added once it is accepted: the patch of each stretch of elements
// of the buffer is the one that made it.
void takeobject(int elementsbefore);
// "4 graphic elements, 1 patch and 2 groups"
std::string partsinwords(int graphicelements, int patchcount, int groupcount);
