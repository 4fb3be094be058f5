// SPDX-License-Identifier: GPL-3.0-or-later
// Results of earlier runs beside a model.
#pragma once

#include "solver/base/control.h"

// Deletes the result files of the kinds of run that the job asks for, so that none of an earlier
// run can be taken for new: static results and modes stand side by side. Refuses where a file of
// somebody else bears such a name.
void removeresults(const job& j);
// Has a signal remove what this run writes of them, until they are told to be whole.
void removewhenstopped(const job& j);
