// SPDX-License-Identifier: GPL-3.0-or-later
// The analysis report: model input and results per load combination as one text file, and the
// dialog "Report Options" that writes and opens it.
#pragma once

#include <array>
#include <string>

// Sections by the index of their check box; 2 is not in use.
enum reportsection {
    secgroups,
    secmesh,
    secconstraints = 3,
    secloads,
    secdisplacements,
    secforces,
    secstresses,
    secaverages,
    secmembers,  // these are written when they are asked for
    secbalance,
    secenvelopes,
    sectioncount
};
struct reportcheck {
    int index;
    const char* caption;
    bool output;  // of the second group
};
extern const std::array<reportcheck, 11> reportchecks;

// The dialog's check boxes; they outlive it.
extern std::array<bool, sectioncount> reportwanted;

// The button Write: asks for a name and writes the report. False when nothing was written.
bool writereport();
// The button View: the name of the report to show, empty when none was chosen.
std::string askreport();
std::string viewertitle(const std::string& path);

// Writes base + ".rpt". Results are those beside the model; the display's own, the combination in
// view and the geometry are as before afterwards. What goes wrong is told, and the file keeps what
// stands by then; false then. A file that can not be written leaves the former one.
bool savereport(const std::string& base);
