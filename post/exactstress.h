// SPDX-License-Identifier: GPL-3.0-or-later
// Results beyond the thirteen of a record: exact stresses at the faces of plates, their principal
// stresses, forces and moments, and stresses at the corners of sections of line elements. They are
// formed from the sums of a combination, so that signs count; the told combined stress takes the
// worst signs of bending and torsion and is a bound.
#pragma once

// Components behind the told ones, in the order of post/components.
enum exactcomponent {
    misesupper = 14,  // face that e3 looks out of
    misesmiddle,
    miseslower,
    miseslargest,
    principal1upper,
    principal2upper,
    principal1middle,
    principal2middle,
    principal1lower,
    principal2lower,
    forcex,  // a length, in local axes
    forcey,
    forcexy,
    momentx,  // of the stresses along x; tension at the upper face is positive
    momenty,
    momentxy,
    shearx,
    sheary,
    linenormal,
    linebending,  // the larger of both ends of the section
    linelargest,
    linesmallest,
    linecorner1,  // that lies farthest to +e2 +e3, then -e2 +e3, -e2 -e3, +e2 -e3
    linecorner2,
    linecorner3,
    linecorner4,
    linemises,
    exactend
};
bool isexact(int component);
bool isofline(int component);

// Of a plate from elemstress, which holds local records; of a line element from its member forces.
double exactvalue(int component, int e, int corner);

// From one record, s[1..12] in local axes; the shear forces need the whole element. And from a
// member's forces at its first or second end.
double platevalue(int component, int e, const float* s);
// Any component of a plate at a corner, from the records of all its corners.
double recordvalue(int component, int e, int corner, const float (*records)[13]);
struct memberline;
double linevalue(int component, int e, const memberline& line, int end);

struct principalstress {
    double s1, s2;  // s1 the larger
    double angle;   // of s1 from the local x, radians, towards y
};
// side: 1 upper face, 0 middle, -1 lower face.
principalstress principalof(int e, int corner, int side);
principalstress meanprincipalof(int e, int side);  // of the mean over the corners
