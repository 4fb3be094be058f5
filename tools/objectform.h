// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog "Objects": the library, the variables of the chosen object, where it comes to stand,
// and the object itself, which stands in the buffers until it is accepted.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "tools/objects.h"

struct objectentry {
    std::string name, path;
    std::string picture;  // path of the picture beside the file, empty for none
};

struct objectsform {
    std::vector<objectentry> library;
    int chosen = -1;  // entry of the library, -1 for a file from elsewhere
    objectfile file;
    std::string description, picture;
    std::vector<int> variables;       // those on show: not the ones that follow from others
    std::vector<std::string> labels;  // "NMESH : Mesh refine factor"
    std::vector<std::string> values;  // as they are typed
    std::array<std::string, 3> at = {"0", "0", "0"}, turn = {"0", "0", "0"};
    bool ready = false;  // the object stands in the buffers
    std::string message;
};

// The objects of these folders, by name.
objectsform openobjects(const std::vector<std::string>& folders);
void closeobjects(objectsform& form);

void chooseobject(objectsform& form, int entry);
void getobject(objectsform& form);      // an object from elsewhere
void choosepicture(objectsform& form);  // a picture in place of the one beside the file

// What is typed; the object is made anew at once.
void editvariable(objectsform& form, int i, const std::string& text);
void editplace(objectsform& form, int axis, const std::string& text);
void editturn(objectsform& form, int axis, const std::string& text);

void acceptobject(objectsform& form);
void resetobject(objectsform& form);  // the values as the file has them, at the origin
