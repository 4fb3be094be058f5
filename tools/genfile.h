// SPDX-License-Identifier: GPL-3.0-or-later
// Writing the model in hand as a parametric object, and the dialog "Define Object".
#pragma once

#include <string>

// Writes graphic elements, patches and groups with the variables NMESH, XSC, YSC and ZSC. Throws
// errpathaccess, errdiskfull or, for a value that no reader would take, erroverflow; a file of that
// name stands as it was then.
void Genfile(const std::string& path);

struct defobjectform {
    std::string description;  // as it will stand in the file
    std::string contents;     // what of the model goes into the object, and what does not
    std::string message;
};
defobjectform opendefobject();
void savedefobject(defobjectform& form);  // asks for the name
