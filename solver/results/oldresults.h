// SPDX-License-Identifier: GPL-3.0-or-later
// Results of earlier runs beside a model.
#pragma once

#include "solver/base/control.h"

// Deletes the result files of the kinds of run that the job asks for, so that none of an earlier
// run can be taken for new: static results and modes stand side by side. Refuses where a file of
// somebody else bears such a name.
void removeresults(const job& j);
// The room of what was removed goes back to the disk beside the work that follows; of some
// gigabytes that takes half a second. Without it, as the program ends.
void giveroomback();
// Has a signal remove what this run writes of them, until they are told to be whole.
void removewhenstopped(const job& j);
