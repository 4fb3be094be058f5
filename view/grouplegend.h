// SPDX-License-Identifier: GPL-3.0-or-later
// The legend of groups that are told by their colours, at the right border of a view.
#pragma once

void drawgrouplegend(int nview);
