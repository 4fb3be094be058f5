// SPDX-License-Identifier: GPL-3.0-or-later
// Rows of the view menu, of the tools of a view and of what is drawn beside the plain way.
#pragma once

#include "ui/actionkinds.h"

void addviewactions(actionrows& t);
