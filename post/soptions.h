// SPDX-License-Identifier: GPL-3.0-or-later
// The form of "Post Process Options": what is plotted, on which elements, on which scale.
//
// A choice is in force at once, as the plot's state in post/contour.h; the scale's values and the
// redraw wait for Ready.
#pragma once

#include <string>

struct soptionsform {
    std::string maximum, minimum;  // as typed
    std::string message;           // at the foot of the dialog
    int group = 0;                 // entry of the group list, from 0
};

// Opens on what is in force (Form_Activate).
void showsoptions(soptionsform& form);
// Choices.
void choosefilled(int filled);
void choosedata(int data);        // Option3: 0 stresses, 1 displacements
void choosedirection(int which);  // Option4: 0 length, 1..3 x y z
void choosecomponent(int component);
void chooseaverage(int average);
void chooseaxes(int global);
void choosescale(soptionsform& form,
                 bool automatic);  // the first manual one starts from the automatic
// The elements: all, those of the group in the list, or those selected.
void chooseset(soptionsform& form, int set);
void getgr(soptionsform& form);  // the list's group into postgroup and, where it is in force, marks

// "Select": the user selects elements in the views; endpostselection takes them as the set.
void startpostselection();
void endpostselection(soptionsform& form);

// Ready: the values of a manual scale; false with a message while they are no numbers or stand the
// wrong way round.
bool storesoptions(soptionsform& form);
// After the dialog, however it closed: what is on show is read and drawn anew; the pending
// selection ends.
void soptionsclosed();
