// SPDX-License-Identifier: GPL-3.0-or-later
// Choice of the drawing target.
#include "view/surface.h"

#include "core/platform.h"

bool printing;
int toprinter;
surface *measuring, *pageinwork;

surface* target(int nview) {
    if (measuring != nullptr) return measuring;
    if (toprinter == 0) return theplatform().viewsurface(nview);
    if (printing) return pageinwork;
    return nview == 1 ? nullptr : theplatform().viewsurface(nview);
}
