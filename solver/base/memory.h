// SPDX-License-Identifier: GPL-3.0-or-later
// Memory of this machine.
#pragma once

// Bytes that it can still give.
double freememory();
