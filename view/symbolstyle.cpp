// SPDX-License-Identifier: GPL-3.0-or-later
// The session's choices.
#include "view/symbolstyle.h"

#include "core/views.h"

symbolstyle symbolsdrawn;

double symbollength() {
    return unitveclen * symbolsdrawn.size / 100;
}
