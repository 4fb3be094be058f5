// SPDX-License-Identifier: GPL-3.0-or-later
// The fixed label tables.
#include "core/labels.h"

#include <initializer_list>

array1<std::string> doflabel, axislabel, forcelabel, lckindname, lcsubname;

static void fill(array1<std::string>& list, int upper, int first,
                 std::initializer_list<const char*> texts) {
    list.alloc(upper);
    for (const char* text : texts) list(first++) = text;
}

void filllabels() {
    fill(doflabel, 6, 1, {"DX", "DY", "DZ", "RX", "RY", "RZ"});
    fill(axislabel, 6, 1, {" X", " Y", " Z", "RX", "RY", "RZ"});
    fill(forcelabel, 6, 1, {"FX", "FY", "FZ", "MX", "MY", "MZ"});
}

void fillloadlabels() {
    fill(lckindname, 10, 0,
         {"Applied loads", "Acceleration loads", "Wave Loads", "Wind Loads", "Buoyancy Loads"});
    fill(lcsubname, 10, 0,
         {"Applied loads", "Acc x", "Acc y", "Acc z", "Acc rx", "Acc ry", "Acc rz", "Waveload",
          "Wind load", "Buoyancy load"});
}
