// SPDX-License-Identifier: GPL-3.0-or-later
// Parts of a motion.
#include "post/motion.h"

#include <cmath>

#include "core/session.h"

int picturesofcycle(const shapemotion& m) {
    return 2 * m.pictures;
}

int pictureat(const shapemotion& m, int place) {
    const int k = place % picturesofcycle(m);
    return k <= m.pictures ? k : picturesofcycle(m) - k;
}

double partof(const shapemotion& m, int picture) {
    const double swing = -std::cos(pi * picture / m.pictures);
    return m.swings ? swing : (1 + swing) / 2;
}
