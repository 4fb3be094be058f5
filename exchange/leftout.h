// SPDX-License-Identifier: GPL-3.0-or-later
// What of the model a foreign file has no place for: each kind that there is gets its line in the
// report of an export.
#pragma once

#include <initializer_list>

#include "exchange/importreport.h"

enum class parts {
    freenodes,  // nodes without elements
    properties,
    constraints,
    nodalloads,
    elementloads,
    releases,
    rotations,  // of the local axes of plates
    combinations,
    graphics,  // graphic elements and patches
    count
};

// All parts but those that the file has.
void tellleftout(importreport& report, std::initializer_list<parts> written);
