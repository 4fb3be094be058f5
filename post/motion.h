// SPDX-License-Identifier: GPL-3.0-or-later
// The motion of a shape: which part of the displacements each picture shows. A static shape grows
// from 0 to 1, a mode swings from -1 to 1, slow at both ends; then the pictures come back.
#pragma once

struct shapemotion {
    bool swings = false;  // -1..1, else 0..1
    int pictures = 12;    // of one way
    double seconds = 2;   // of the way there and back
};
const int fewestpictures = 2, mostpictures = 60;

int picturesofcycle(const shapemotion& m);
// Picture of a place in the cycle: 0..m.pictures.
int pictureat(const shapemotion& m, int place);
double partof(const shapemotion& m, int picture);  // -1..1
