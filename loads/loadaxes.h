// SPDX-License-Identifier: GPL-3.0-or-later
// The directions of element loads, shown while they are edited.
#pragma once

// The axes 1, 2 and 3 of the selected elements, with their numbers, stand among the marks as long
// as the dialog of element loads is open.
void wireloadaxes();
