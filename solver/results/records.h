// SPDX-License-Identifier: GPL-3.0-or-later
// The thirteen values of a stress record. Bending and twist, values 7..12, are those of one face,
// the one to which the normal looks; the combined stress takes them with either sign.
#pragma once

#include "solver/elements/element.h"

const int recordvalues = 13;

// Stresses of a plate at a corner as tensors in model axes; bending at the +e3 face.
struct facestress {
    mat3 membrane = mat3::Zero(), bending = mat3::Zero();
};

// corner: membrane x, y, xy and bending x, y, xy in the element's stress axes.
facestress facestressof(const element& e, const mat3& axes, const double* corner);

// A corner to a record in local axes, combined stress included; and a stress that is not the
// element's own.
void localrecord(const element& e, const double* corner, double* record);
void localrecord(const facestress& s, const mat3& axes, double* record);

// The same in model axes. Bending and twist of a plane that is parallel to a coordinate plane are
// the components themselves; in another plane the combined stress has no place for all of them, and
// they stand with the least addition with which it is nowhere below von Mises' stress of either
// face. The order of the element's nodes changes no combined stress.
struct recordplane {
    vec3 normal, across;  // across: what a shear along v adds to xy - k xz - m yz is across.v / 2
    double k = 1, m = 1;  // how xy follows from xz and yz: xy = k xz + m yz
    int axis = -1;        // of a coordinate plane in which the difference of the bendings counts
};
recordplane recordplaneof(const element& e, const mat3& axes);
void globalrecord(const recordplane& plane, const facestress& s, double* record);

// Largest von Mises stress over the signs of bending and twist.
double combinedstress(const double* record);
