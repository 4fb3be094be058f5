// SPDX-License-Identifier: GPL-3.0-or-later
// feiflu.ini: units, sea and wind, and how much is wanted of the machine.
#pragma once

#include <string>

#include "solver/base/report.h"

struct settings {
    double length = 0.001;       // metres in one model length unit
    double force = 1;            // newtons in one model force unit
    double mass = 1;             // kilograms in one model mass unit
    double gravity = 9.80665;    // m/s^2
    double waterdensity = 1025;  // kg/m^3
    double cd = 1.05, cm = 1.2;  // drag and inertia of members in waves
    double airdensity = 1.225;   // kg/m^3
    double windexponent = 0.125;
    double cs = 0.5, csflat = 1.5;  // wind shape coefficient of tubes, of all else
    double shear = 0;  // shear area of line elements over their area, 0: no shear deformation
    int modes = 10;
    int threads = 0;     // 0: all cores
    int checkpoint = 0;  // load cases from one to the next, 0: all at once, none kept
    std::string engine = "cholmod";
    int processes = 0;  // that the workbench starts, 0: one a core
    std::string hosts, scratch;
    std::string ordering = "metis";
};

// Reads the file; a missing one is written with the defaults. Throws a refusal that names key and
// line. An unknown key and a folder that cannot be written are warnings.
settings readsettings(const std::string& path, runlog& log);
// What the results of a model depend on, in one line.
std::string settingsname(const settings& s);
// A model that says its units goes by them, whatever the settings say.
void followmodel(settings& s, const std::string& base, runlog& log);
