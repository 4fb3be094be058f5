// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog "DXF Interface Control": which entities of a drawing are taken, and as what.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "exchange/dxf.h"
#include "files/filemenu.h"

enum dxfkinds { dxffaces, dxflines, dxfcircles, dxfarcs };
extern const std::array<const char*, 4> dxfcaptions;

struct dxfform {
    std::vector<std::string> types;   // "None" and the catalogue
    std::array<bool, 4> taken{};      // check boxes, by dxfkinds
    std::array<int, 4> chosen{};      // entry of types
    std::string longest, joinwithin;  // Text1; empty: by the size of the drawing
    std::string without;              // names of layers
    bool split = false, asgraphics = false;
    std::string file, message;
};

// The File menu's way into a drawing: opens the dialog, which goes on by acceptdxf.
reply startdxf(const std::string& path, purposes purpose);

dxfform opendxf();  // with the choices of last time
void tickdxf(dxfform& form, int kind, bool on);
void choosedxf(dxfform& form, int kind, int entry);  // "None" clears the tick
// Stores the choices and reads the drawing. False, with a message in the form, where a field holds
// no sensible value: the dialog stays open.
bool acceptdxf(dxfform& form);
