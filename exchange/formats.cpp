// SPDX-License-Identifier: GPL-3.0-or-later
// Rows of the formats, in the order of the dialogs' filters.
#include "exchange/formats.h"

#include "exchange/gate.h"
#include "exchange/ply.h"

// A row whose reader needs no dialog.
template <typename Read>
static auto reader(const char* format, Read read) {
    return [=](const std::string& path, purposes purpose) {
        return readforeign(path, purpose, format, read);
    };
}

void wireexchange() {
    fileformats() = {
        {.extension = "ply",
         .opencaption = "Polygon File Format (*.ply)",
         .importcaption = "Polygon File Format (*.ply)",
         .savecaption = "",
         .read = reader("Polygon file", readply)},
    };
}
