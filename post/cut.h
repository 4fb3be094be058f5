// SPDX-License-Identifier: GPL-3.0-or-later
// Values of the plot along a cut through its faces: by a plane, or along a line between two points.
#pragma once

#include <array>
#include <string>
#include <vector>

using place3 = std::array<double, 3>;

struct cutpoint {
    place3 at;        // undeformed, model units
    double distance;  // along the curve from its beginning
    double value;
    int e;
};
using cutcurve = std::vector<cutpoint>;

// The points p with normal . p = offset.
struct cutplane {
    place3 normal;
    double offset;
};
// Curves of connected faces. Where two elements that meet have values of their own the point is
// there twice. A plane along sides of the mesh takes the faces below it, or where there are none
// those above.
std::vector<cutcurve> cutby(const cutplane& plane);
// The part of the cut between two points along the faces there; none where no face lies at `from`.
std::vector<cutcurve> cutbetween(const place3& from, const place3& to);

// The form of the window "Values along a Cut".
struct cutform {
    int kind = 0;  // 0..2 the plane X, Y or Z = position; 3 a line
    std::string position, from[3], to[3];
    std::string message;
};
extern cutform thecut;                  // as the user left it
extern std::vector<cutcurve> cutshown;  // drawn in the views while the window is open
void showcut();                         // where nothing stands yet: the middle of the model
// Selected nodes: one gives the plane's position, two the ends of a line.
void cutfromselection();
void computecut();  // into cutshown, or a message
void endcut();
void scalecut(double factor);  // the places typed, when the model has other lengths
std::string cutquantity();     // "SX, Wind"
// The table with these between two fields and as the decimal point.
std::string cuttable(char separator);
void savecut();  // asks for a file and writes the table as CSV

void drawcut(int nview);
