// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog of the model check: local axes, the list of findings, and the quality of the elements.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "tools/findings.h"
#include "tools/qualitypicture.h"

struct checkmodelform {
    // Axes.
    std::vector<std::string> groups;      // "All Groups", then all groups
    std::vector<std::string> references;  // where the axes start
    int group = 0, reference = 0;         // entries
    std::string limit = "2";              // quality limit of a corner; 3 is agreement
    bool rotate = false, three = false;
    std::string element, angle, quality;  // shown
    // Findings.
    std::vector<finding> findings;
    bool checked = false;
    // Quality of the elements of the group.
    qualitycounts counts{};
    std::string message;

    // What the views showed when the dialog opened.
    struct viewchoice {
        int type = 0, group = 0;
        std::vector<int> elements;  // of a selection
    };
    std::array<viewchoice, 4> views;
    bool viewschanged = false;
};

checkmodelform opencheckmodel();
void listgroups(checkmodelform& form);       // as they are by now
void closecheckmodel(checkmodelform& form);  // the views show again what they did

void getvgroup(checkmodelform& form, int entry);  // all views show the group of the entry
void stepfirst(checkmodelform& form);
void stepnext(checkmodelform& form);
void homogenizeaxis(checkmodelform& form);
void flipgroup(checkmodelform& form);
void rotateselected(checkmodelform& form);  // one place, or three
void mirrorselected(checkmodelform& form);
void showwrong(checkmodelform& form);    // those below the quality limit become the selection
void modifywrong(checkmodelform& form);  // what stays wrong is the selection

void findall(checkmodelform& form);
void showfinding(checkmodelform& form, std::size_t line);  // selects and zooms to what it names

void showqualities(checkmodelform& form, bool on);  // the picture in the views
void countgroup(checkmodelform& form);
void selectband(checkmodelform& form, int band);
