// SPDX-License-Identifier: GPL-3.0-or-later
// The engines to choose from.
#pragma once

#include <memory>

#include "solver/engine.h"

// One of the kind that this process works with, at first the program's own factor.
std::unique_ptr<engine> makeengine();

// Has all that follow made by another.
using enginemaker = std::unique_ptr<engine> (*)();
void setengine(enginemaker maker);
