// SPDX-License-Identifier: GPL-3.0-or-later
// Rows of the formats, in the order of the dialogs' filters.
#include "exchange/formats.h"

#include "core/platform.h"
#include "exchange/MOSESINTERFACE.h"
#include "exchange/Marine.h"
#include "exchange/bulkdata.h"
#include "exchange/cosmosinterface.h"
#include "exchange/deck.h"
#include "exchange/dxf.h"
#include "exchange/dxfform.h"
#include "exchange/gate.h"
#include "exchange/gmsh.h"
#include "exchange/mosesexport.h"
#include "exchange/pictures.h"
#include "exchange/ply.h"
#include "exchange/plyform.h"
#include "exchange/tables.h"
#include "exchange/vtu.h"

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

static auto gridwriter(gridpoints kind) {
    return writer("ParaView grid", [kind](const std::string& path, importreport& report) {
        writevtu(path, kind, report);
    });
}

static reply readcosmosfile(const std::string& path, purposes purpose) {
    return readforeign(path, purpose, "Cosmos model", [=](const std::string& p, imported& found) {
        readcosmos(p, found, purpose);
    });
}

static void readcommands(const std::string& path, imported& found) {
    readcosmos(path, found, purposes::open);
}

static void readmosesfile(const std::string& path, imported& found) {
    readmoses(path, found);
}

// A dialog asks what is wanted and goes on by itself.
static auto opening(void (*start)(const std::string& path)) {
    return [=](const std::string& path) {
        start(path);
        return reply::cancelled;
    };
}

static void startmoses(const std::string& path) {
    openmosessettings(path);
    theplatform().showdialog("MosesSettings");
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
        {"inp", readcommands},
        {"geo", readcommands},
        {"dat", readmosesfile},
        {"bdf", readbulkdata},
    };
    return readers;
}

void wireexchange() {
    fileformats() = {
        {.extension = "inp",
         .opencaption = "Cosmos6 Model (*.inp)",
         .importcaption = "Cosmos6 Model (*.inp)",
         .savecaption = "Cosmos6 model (*.inp)",
         .knows = [](std::string_view head) { return iscosmostext(head) && !isdeck(head); },
         .read = readcosmosfile,
         .write = writer("NEW-PROB text", exportmarine)},
        {.extension = "mod",
         .opencaption = "Cosmos/M Model (*.mod)",
         .importcaption = "Cosmos/M Model (*.mod)",
         .savecaption = "",
         .read = readcosmosfile},
        {.extension = "geo",
         .opencaption = "Cosmos/M Commands (*.geo)",
         .importcaption = "Cosmos/M Commands (*.geo)",
         .savecaption = "",
         .read = readcosmosfile},
        {.extension = "dat",
         .opencaption = "MOSES Model (*.dat)",
         .importcaption = "MOSES Model (*.dat)",
         .savecaption = "",
         .read = reader("MOSES model", readmosesfile)},
        {.extension = "ppo",
         .opencaption = "MOSES Export (*.ppo)",
         .importcaption = "MOSES Export (*.ppo)",
         .savecaption = "MOSES model (*.ppo)",
         .read = reader("MOSES model", readmosesfile),
         .write = opening(startmoses)},
        {.extension = "ply",
         .opencaption = "Polygon File Format (*.ply)",
         .importcaption = "Polygon File Format (*.ply)",
         .savecaption = "",
         .read = startply},
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
        {.extension = "bdf",
         .opencaption = "Nastran bulk data (*.bdf)",
         .importcaption = "Nastran bulk data (*.bdf)",
         .savecaption = "",
         .read = reader("Nastran bulk data", readbulkdata)},
        {.extension = "nas",
         .opencaption = "Nastran bulk data (*.nas)",
         .importcaption = "Nastran bulk data (*.nas)",
         .savecaption = "",
         .read = reader("Nastran bulk data", readbulkdata)},
        {.extension = "dat",
         .opencaption = "Nastran bulk data (*.dat)",
         .importcaption = "Nastran bulk data (*.dat)",
         .savecaption = "",
         .knows = isbulkdata,
         .read = reader("Nastran bulk data", readbulkdata)},
        {.extension = "vtu",
         .opencaption = "",
         .importcaption = "",
         .savecaption = "ParaView grid with results (*.vtu)",
         .write = gridwriter(gridpoints::nodes)},
        {.extension = "vtu",
         .opencaption = "",
         .importcaption = "",
         .savecaption = "ParaView grid, a point for each corner (*.vtu)",
         .write = gridwriter(gridpoints::corners)},
        {.extension = "pvd",
         .opencaption = "",
         .importcaption = "",
         .savecaption = "ParaView grids of the combinations (*.pvd)",
         .write = writer("ParaView grids", writepvd)},
        {.extension = "csv",
         .opencaption = "",
         .importcaption = "",
         .savecaption = "Table of results (*.csv)",
         .write = opening(starttables),
         .ismodel = false},
        {.extension = "svg",
         .opencaption = "",
         .importcaption = "",
         .savecaption = "Drawing of the views (*.svg)",
         .write = opening(startpicture),
         .ismodel = false},
        {.extension = "png",
         .opencaption = "",
         .importcaption = "",
         .savecaption = "Picture of the views (*.png)",
         .write = opening(startpicture),
         .ismodel = false},
    };
}
