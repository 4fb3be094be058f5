// SPDX-License-Identifier: GPL-3.0-or-later
// The room post: result files, shapes, contour plots with scale and legend, report, printing.
//
// Reading of the solver's result files and their sum over load cases for a combination.
//
// Results stand beside the model, named as it is. A value of a combination is the sum over the
// load cases of multiplier times value; the file decides how many load cases there are. A failed
// read tells what is wrong with the file in the status line and, for the views, in a message.
#pragma once

#include <string>
#include <vector>

#include "core/textfile.h"

// Values a node row holds by the analysis code in the header of the file: 0 x y z, 1 x y, 2 x y rz,
// 3 x y z rx ry rz.
struct noderow {
    double x = 0, y = 0, z = 0;
    double rotation[3] = {0, 0, 0};  // code 2 fills the third
};
noderow readnoderow(textin& in, int anadof);
// Count of nodes and analysis code of .rvp and .KRT; throws where they do not fit the model.
int readheader(textin& in);
// Multiplier of load case l in the current combination, 0 where a mode's number is none; throws for
// a load case beyond the declared ones.
float factorofcase(const textin& in, int l);

// "job.rvp holds 1 load case, the model has 2 ...", or nothing where they are as many.
std::string noteofcases(const textin& in, int blocks);

// Displacements of the current combination into set 1 of nodes, and maxdisp. False after the
// message of a failed read; what was read stands.
bool readdisp();
// The displacements, and in row 0 of dispres the nodal forces of the combination where .KRT holds
// them; dispres is empty where it does not.
bool readshape();
// Mode shape number curlcomb of .EIG likewise. A number that the file does not reach leaves the
// former shape, with maxdisp 0.
bool readmode();
extern double modevalue;                // omega^2 of the shape shown, 1/s^2; 0 where there is none
extern int modecount;                   // modes that the file holds
extern std::vector<double> modevalues;  // omega^2 of each of them
double frequencyof(double modevalue);   // Hz; of a positive value
// The last of the two: was it readmode, did it succeed, and what should the user know of the file.
extern bool fieldismode, fieldread;
extern std::string fieldnote;
extern bool fieldisnoise;  // nothing but rounding: neither shape nor contour is drawn of it

// The rest serves the report: no message; false when the file is missing or not whole. Reading
// that the user gave up throws errstopped.
// Displacements as readdisp, and the rotations (radians) into set 0 of nodes, over the coordinates.
// reloadmodel must follow before anything needs the geometry; any number of combinations may be
// read before.
bool readdispreport();
extern std::string reportnote;  // what the reader of the report should know of the file last read
// Brings the geometry back: what readdispreport put aside, else nodes and elements of .tek.
void reloadmodel();
// Nodal forces into dispres: by load case, and their combination in dispres(0). Row nnodes + 1 is
// the solver's total. dispres is empty after a failure.
bool readkrt();

// Rows of .EMS and the numbers of .DAT. Both throw as textin.
struct massrow {
    int group = 0;
    double mass = 0, centre[3] = {0, 0, 0};
    double gyration[3] = {0, 0, 0};  // radii about the axes through the centre
};
std::vector<massrow> readmasses();
struct summary {
    double nodes = 0, bandwidth = 0, elements = 0;
};
summary readsummary();
