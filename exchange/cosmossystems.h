// SPDX-License-Identifier: GPL-3.0-or-later
// Coordinate systems of Cosmos texts: Cartesian, cylindrical and spherical, by number.
#pragma once

#include <unordered_map>

#include "exchange/placement.h"

class cosmossystems {
  public:
    // Systems 0, 1 and 2 are the global ones of the types of these numbers.
    cosmossystems();
    // Axes from three points: origin, one on the x axis, one in the xy plane. False where they do
    // not span a plane, or for a type other than 0, 1, 2.
    bool add(long number, long type, const triple& origin, const triple& onx,
             const triple& inplane);
    // Axes turned by angles in degrees: about z, then the new x, then the new y.
    bool addturned(long number, long type, const triple& origin, const triple& angles);
    // Coordinates of a system as global ones: x y z; r, angle, z; r, angle in the xy plane, angle
    // above it; angles in degrees. False where there is no such system.
    bool toglobal(long number, const triple& local, triple& global) const;

  private:
    struct system {
        long type = 0;
        placement at;
    };
    std::unordered_map<long, system> systems;
};
