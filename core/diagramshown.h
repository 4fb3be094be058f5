// SPDX-License-Identifier: GPL-3.0-or-later
// Are forces along members drawn in the views? It goes with the results that leave the views.
#pragma once

extern bool diagramshown;
