// SPDX-License-Identifier: GPL-3.0-or-later
// The table of picture symbols and their drawing.
#include "view/symbols.h"

#include "core/catalogue.h"
#include "view/surface.h"

array1<std::string> symbolname;

void initsymbols() {
    symbolname.alloc(nsymbols - 1);
    symbolname(0) = "Spring Element symbol";
    symbolname(1) = "Translation Spring symbol";
    symbolname(2) = "Rotation Spring symbol";
}

// Row of an element type, -1 for types without a symbol.
static int symbolrow(int elementtype) {
    switch (elementtype) {
        case typespring:
            return 0;
        case typespringt:
            return 1;
        case typespringr:
            return 2;
        default:
            return -1;
    }
}

std::string pictureof(int row, bool selected) {
    return (selected ? "selected" : "normal") + std::to_string(row);
}

void drawsymbol(int elementtype, int nview, double x, double y) {
    surface* const s = target(nview);
    const int row = symbolrow(elementtype);
    if (s == nullptr || row < 0 || drawcolor == backcolor) return;
    s->picture(pictureof(row, drawcolor == selcolor), x, y);
}
