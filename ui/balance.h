// SPDX-License-Identifier: GPL-3.0-or-later
// The window of the balance after a run.
#pragma once

void wirebalance();
