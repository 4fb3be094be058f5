// SPDX-License-Identifier: GPL-3.0-or-later
// Rows of the formats, in the order of the dialogs' filters.
#include "exchange/formats.h"

#include "exchange/deck.h"
#include "exchange/dxf.h"
#include "exchange/dxfform.h"
#include "exchange/gate.h"
#include "exchange/gmsh.h"
#include "exchange/ply.h"

// A row whose reader needs no dialog.
template <typename Read>
static auto reader(const char* format, Read read) {
    return [=](const std::string& path, purposes purpose) {
        return readforeign(path, purpose, format, read);
    };
}

template <typename Write>
static auto writer(const char* format, Write write) {
    return [=](const std::string& path) { return writeforeign(path, format, write); };
}

static auto meshwriter(const meshform& form) {
    return writer("Gmsh mesh", [form](const std::string& path, importreport& report) {
        writegmsh(path, form, report);
    });
}

const std::vector<foreignreader>& foreignreaders() {
    static const std::vector<foreignreader> readers = {
        {"ply", readply},
        {"dxf",
         [](const std::string& path, imported& found) {
             dxfoptions options;
             options.split = true;
             readdxf(path, options, 1, found);
         }},
        {"msh", readgmsh},
        {"inp", readdeck},
    };
    return readers;
}

void wireexchange() {
    fileformats() = {
        {.extension = "ply",
         .opencaption = "Polygon File Format (*.ply)",
         .importcaption = "Polygon File Format (*.ply)",
         .savecaption = "",
         .read = reader("Polygon file", readply)},
        {.extension = "dxf",
         .opencaption = "dxf CAD file (*.dxf)",
         .importcaption = "dxf CAD file (*.dxf)",
         .savecaption = "dxf CAD file (*.dxf)",
         .read = startdxf,
         .write = writer("Drawing (DXF)", writedxf)},
        {.extension = "msh",
         .opencaption = "Gmsh mesh (*.msh)",
         .importcaption = "Gmsh mesh (*.msh)",
         .savecaption = "Gmsh mesh (*.msh)",
         .read = reader("Gmsh mesh", readgmsh),
         .write = meshwriter({false, false})},
        {.extension = "msh",
         .opencaption = "",
         .importcaption = "",
         .savecaption = "Gmsh mesh, binary (*.msh)",
         .write = meshwriter({false, true})},
        {.extension = "msh",
         .opencaption = "",
         .importcaption = "",
         .savecaption = "Gmsh mesh 2.2 (*.msh)",
         .write = meshwriter({true, false})},
        {.extension = "msh",
         .opencaption = "",
         .importcaption = "",
         .savecaption = "Gmsh mesh 2.2, binary (*.msh)",
         .write = meshwriter({true, true})},
        {.extension = "inp",
         .opencaption = "CalculiX and Abaqus deck (*.inp)",
         .importcaption = "CalculiX and Abaqus deck (*.inp)",
         .savecaption = "CalculiX deck (*.inp)",
         .knows = isdeck,
         .read = reader("CalculiX deck", readdeck),
         .write = writer("CalculiX deck", writedeck)},
    };
}
