// SPDX-License-Identifier: GPL-3.0-or-later
// Reading of displacements and mode shapes.
#include "post/postproces.h"

#include <algorithm>
#include <cmath>

#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"

double modevalue;
int modecount;

noderow readnoderow(textin& in, int anadof) {
    noderow row;
    row.x = in.number();
    row.y = in.number();
    if (anadof == 0 || anadof == 3) row.z = in.number();
    if (anadof == 2) row.rotation[2] = in.number();
    if (anadof == 3)
        for (double& r : row.rotation) r = in.number();
    return row;
}

static int readanadof(textin& in) {
    const long code = in.whole();
    if (code < 0 || code > 3)
        in.fail(errtype, "an analysis code from 0 to 3 was expected, found " + numbertext(code));
    return int(code);
}

int readheader(textin& in) {
    const int count = in.count();
    if (count != nnodes())
        in.fail(errtype, "the results are of a model with " + numbertext(count) +
                             " nodes, the model in hand has " + numbertext(nnodes()));
    return readanadof(in);
}

static double lengthof(int n) {
    const auto d = nodes.row(1, n);
    return std::sqrt(double(d[0]) * d[0] + double(d[1]) * d[1] + double(d[2]) * d[2]);
}

static void readdispfile() {
    textin in(findnocase(modelname + ".rvp"));
    const int anadof = readheader(in), count = nnodes();
    for (int l = 1; !in.atend(); ++l) {
        const float lcfactor = lcomb(curlcomb, l);
        maxdisp = 0;
        for (int n = 1; n <= count; ++n) {
            const noderow row = readnoderow(in, anadof);
            const double value[3] = {row.x, row.y, row.z};
            for (int k = 0; k < 3; ++k) {
                const double before = l == 1 ? 0 : nodes(1, n, k);
                nodes(1, n, k) = float(before + double(lcfactor) * value[k]);
            }
            maxdisp = std::max(maxdisp, lengthof(n));
        }
        in.text();
    }
}

static bool readguarded(void (*read)(), const char* message) {
    const bool good = guarded(read, [&](const runtimeerror& e) {
        door().showstatus(e.what);  // the reason, beside the message
        door().message(message, icons::exclamation);
    });
    door().endprogress();
    return good;
}

bool readdisp() {
    return readguarded(readdispfile, "Error occurred while trying to read Displacements.");
}

static void readmodefile() {
    textin in(findnocase(modelname + ".EIG"));
    const int anadof = readanadof(in), count = nnodes();
    in.number();
    maxdisp = 0;
    modecount = 0;
    while (!in.atend()) {
        const double value = in.number();
        const bool wanted = ++modecount == curlcomb;
        if (wanted) modevalue = value;
        for (int n = 1; n <= count; ++n) {
            const noderow row = readnoderow(in, anadof);
            if (!wanted) continue;
            nodes(1, n, 0) = float(row.x);
            nodes(1, n, 1) = float(row.y);
            nodes(1, n, 2) = float(row.z);
            maxdisp = std::max(maxdisp, lengthof(n));
        }
    }
}

bool readmode() {
    return readguarded(readmodefile, "Error occurred while trying to read modeshapes.");
}
