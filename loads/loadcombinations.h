// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog "Define Load Combinations": the multipliers of the load cases in each combination.
//
// One update stores one multiplier, that of the load case in the field. The combination shown is
// curlcomb, which outlives the dialog; the number of a mode shape on show comes back to it.
#pragma once

#include <string>
#include <vector>

struct combinationform {
    std::vector<std::string> names, cases;  // Combo1, Combo2
    int chosen = 0, chosencase = 0;         // entries of the two lists
    std::string name;                       // text of Combo1
    int curlcase = 1;                       // load case whose multiplier is shown
    int mode = 0;                           // number of the mode shape on show, 0 for none
    std::string multiplier;                 // Text1
    std::string heading;                    // caption of the frame
    std::vector<std::string> equation;      // List1
    std::string message;                    // Label6
};

// The equation of combination c in rows, "+ LC 1 - 2.5 x LC 2 "; a row that has passed 25
// characters is followed by a new one. A combination without multipliers has one empty row.
std::vector<std::string> equationof(int c);

combinationform openloadcombinations();
void closeloadcombinations(const combinationform& form);  // the mode's number into curlcomb
void loadloadcomb(combinationform& form);                 // fills both lists
void putloadcomb(combinationform& form);  // shows curlcomb and the multiplier of curlcase
// The lists' entries into curlcomb and curlcase, the field into their multiplier.
void getloadcomb(combinationform& form);
void showcomb(combinationform& form);  // heading and equation, which lcdesc holds too

// Answers to the user's hand.
void choosecomb(combinationform& form, int entry);      // in Combo1
void choosecombcase(combinationform& form, int entry);  // in Combo2
void editcomb(combinationform& form);                   // after typing: tells to press Update
void leavemultiplier(combinationform& form);            // no number becomes "0"

bool addloadcomb(combinationform& form);  // false at the most of ten
void addcopy(combinationform& form);      // a new combination with the multipliers of the current
void copyloadcomb(int from, int to);
void updateloadcomb(combinationform& form);
void delloadcomb(combinationform& form);  // asks

// Takes combination c out, those above it move down.
void removeloadcomb(int c);
