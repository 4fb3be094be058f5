// SPDX-License-Identifier: GPL-3.0-or-later
// The section tool: takes a bar's section from the database of standard profiles or from typed
// dimensions, and hands its properties to the element group in edit.
//
// State: sectscale, and the type and model unit of the last use, with which the next one starts.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "tools/groups.h"
#include "tools/sectionvalues.h"

const int nunits = 6;
extern const char* const unitnames[nunits];  // mm cm dm m Inch Foot
extern const double unitmetres[nunits];

// Record unit over model unit; 1 when the database is not in use.
extern double sectscale;

const int nresults = 7;
extern const char* const resultnames[nresults];  // Area, I xx, W xx, I yy, W yy, I zz, W zz

struct sectionform {
    int type = tubular;
    bool database = true;            // the values are those of a record
    bool binary = false;             // the file flag: sections.dig, not sections.dat
    bool autoname = false;           // "Auto name"
    int unit = 0;                    // of the model, the target
    int sourceunit = 0;              // of the record
    std::vector<std::string> names;  // sections of the type
    std::string section;             // the chosen one
    std::array<std::string, ndims> labels, dims, unitlabels;
    std::array<std::string, nresults> results;
    std::array<double, nresults> values{};
    bool stale = true;  // the results are not those of the dimensions
    std::string name;   // that "Auto name" gives the group
    std::string message;
};

// Prepares the lists: reads the database and shows the first section of the type. Without a
// database the form starts with typed dimensions and says why.
sectionform Initiate();
// Goes to the profile whose values the group holds, in whichever unit; stays when there is none.
void showprofile(sectionform& form, const groupform& group);

void settype(sectionform& form, int type);  // labels of the fields
void loadsections(sectionform& form);       // names of the type, the first one chosen
int getsection(const std::string& name);    // the last record of this name, 0 for none
void scalesections(sectionform& form);      // sectscale
void sectioncalc(sectionform& form);        // results from record or dimensions

// The user's actions.
void choosetype(sectionform& form, int type);  // typed dimensions go with a type of other fields
void choosesection(sectionform& form, const std::string& name);
void usedatabase(sectionform& form, bool on);
void usebinary(sectionform& form, bool on);  // reads the other file; back when that fails
void writebinary(sectionform& form);         // asks before a file is replaced
void chooseunit(sectionform& form, int unit);
void editdimension(sectionform& form, int field, const std::string& text);  // a section of its own

dimensions dimensionsof(const sectionform& form);  // the fields as numbers
// Puts the results into fields 4 and 7..12 of the group form, stores them where one group is in
// edit, and with "Auto name" renames it. False with a message while there are no results.
bool acceptsection(sectionform& form, groupform& group);
