// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog "View": the parameters of one view as text, and the operations of its buttons.
#pragma once

#include <string>

enum viewboxes {
    boxx,
    boxy,
    boxz,
    boxvertical,
    boxhorizontal,
    boxscale,
    boxdistance,
    boxaw,
    boxdepth,
    boxunit,
    viewboxcount
};
extern const char* const viewboxcaptions[viewboxcount];

struct viewform {
    int current = 1;  // view in edit
    int copied = 0;   // view remembered by Copy, 0 none
    int pasted = 0;   // view whose values stand in the boxes since Paste, 0 none
    std::string box[viewboxcount];
    std::string group;     // text of the group list; empty before one is chosen
    int option = 0;        // 0 All elements, 1 Group, 2 Selection
    int group0 = 0;        // group number found last
    std::string selected;  // read-only count of the view's selection
    std::string heading;   // "View settings for view 1"
};

void showvalues(viewform& form, int nview);
// Stores the boxes into the current view. A box that holds no number ends it; what stood before
// that box is stored.
void getvalues(viewform& form);
void leavebox(viewform& form, int box);  // a text that is no number goes back to the stored value
void chooseview(viewform& form, int nview);  // a click on a preview rectangle
void presetboxes(viewform& form, int preset);
void pasteview(viewform& form);
void autoscaleview(viewform& form);
void allviews(viewform& form);  // the button Multi
// Choice of option or group: stored, the view's visibility built, the view drawn.
void chooseoption(viewform& form, int option, const std::string& group);
void noteselview(viewform& form, int nview);
void getvgroup(viewform& form);  // the group number of the form's text
void startviewselection();       // the button Select: the main window picks elements
void endviewselection(viewform& form);
