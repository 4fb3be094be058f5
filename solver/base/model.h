// SPDX-License-Identifier: GPL-3.0-or-later
// The model as its files tell it. Items are numbered from 1; slot 0 of every list is unused.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "core/codes.h"
#include "solver/base/matrix.h"

struct groupdata {
    std::string name;
    double field[groupfields + 1] = {};
    mat6 spring = mat6::Zero();  // force a displacement, rows and columns DX DY DZ RX RY RZ
};

struct elementdef {
    int type = 0, group = 0;
    int node[mostnodes] = {};
    double turn = 0;  // of the axes of a plate about its normal, radians
};

// A constraint (value: length or radians), a nodal load (force or moment) or a nodal mass.
struct nodalrow {
    int node, dof;  // dof: 1..6 for DX DY DZ RX RY RZ
    double value;
};

struct elementrow {
    int element, direction;  // direction: 1..3, the element's local axis
    double value;            // force a length on line elements, a area on plates
};

struct loadcase {
    std::string name;
    int type = caseapplied;
    double par[caseparameters] = {1, 0, 0, 0, 1};
    std::vector<nodalrow> nodal;  // masses where type is not caseapplied
    std::vector<elementrow> element;
};

// What a bent plate learns of its edges from the elements there. shear: against bending, 0 where it
// is stiff in shear. Bit k of the others: edge k is straight to even stress, that of a
// quadrilateral shell beside a triangular one, free of all that would hold or stiffen its
// rotations, of a shell that no other shares it with.
struct edgeslip {
    float shear[mostnodes] = {};
    std::uint8_t straight = 0, meeting = 0, free = 0, rim = 0;
    bool operator==(const edgeslip&) const = default;
};

// How the surface of a curved shell goes on over the edges of an element. fold: the tangent of half
// the angle between its normal and its neighbour's, positive where the neighbour's leans outward.
// slope and bend: the surface over the mean plane is, at a place p from the middle of the corners
// and in the mean axes, slope p - p bend p / 2 high. bend: xx, yy, xy, a length. lean: by corner,
// that of the surface's normal in the mean axes, over its part across, as all elements at the node
// find it. beyond: by edge of a triangle, how much the surface is curved along it at the corner
// opposite; bothways: by corner of it, how near to a sphere, 1, or a saddle the surface comes
// there, 0 where it can be unrolled. followed: the part of the rotations at its ends that an edge
// follows, the least of the shells that have it.
struct edgefold {
    double fold[mostnodes] = {}, slope[2] = {}, bend[3] = {}, lean[mostnodes][2] = {};
    double beyond[3] = {};
    float bothways[3] = {};
    float followed[mostnodes] = {1, 1, 1, 1};
    bool operator==(const edgefold&) const = default;
};

// A node at an edge that supports clamp, and the unit normal of the shells there: see
// elements/clamped.
struct clampednode {
    int node;
    vec3 normal;
};

struct model {
    std::string base;  // path without extension
    std::vector<vec3> nodes;
    std::vector<elementdef> elements;
    std::vector<groupdata> groups;
    std::vector<nodalrow> constraints;
    std::vector<loadcase> cases;
    std::vector<double> curve;          // of shells: radians that the surface turns over one
    std::vector<std::uint16_t> rankof;  // by element: process that works on it; empty: this one
    std::vector<edgeslip> slip;         // of bent plates: shared by the elements at an edge
    std::vector<edgefold> fold;         // of shells; empty where none is curved
    std::vector<clampednode> clamped;   // in the order of the nodes
    bool twod = false;                  // z of the nodes plays no part
    // Of a part that one of several processes holds (deal): numbers in the files, and how many
    // of both the files tell; empty where the whole is held.
    std::vector<int> nodenumber, elementnumber;
    int nodesofall = 0, elementsofall = 0;
    std::vector<char> counted;  // by node: 1: this process counts it; empty: all

    int nnodes() const { return int(nodes.size()) - 1; }
    int nelems() const { return int(elements.size()) - 1; }
    int ngroups() const { return int(groups.size()) - 1; }
    int ncases() const { return int(cases.size()) - 1; }
    int nameofnode(int n) const { return nodenumber.empty() ? n : nodenumber[std::size_t(n)]; }
    int nameof(int e) const { return elementnumber.empty() ? e : elementnumber[std::size_t(e)]; }
    // Places here of what the files number, 0: it is not held.
    int placeofnode(int n) const { return placein(nodenumber, n); }
    int placeof(int e) const { return placein(elementnumber, e); }
    int allnodes() const { return nodenumber.empty() ? nnodes() : nodesofall; }
    int allelements() const { return elementnumber.empty() ? nelems() : elementsofall; }

  private:
    static int placein(const std::vector<int>& numbers, int one) {
        if (numbers.empty()) return one;
        const auto at = std::lower_bound(numbers.begin() + 1, numbers.end(), one);
        return at != numbers.end() && *at == one ? int(at - numbers.begin()) : 0;
    }
};
