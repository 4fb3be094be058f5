// SPDX-License-Identifier: GPL-3.0-or-later
// The model check on 100 000 elements: the list of findings, the walk that makes local axes agree on
// a flat plate whose elements lie any way, and on a tube. And on a million what one press costs.
#include <cmath>
#include <cstdio>
#include <random>

#include "bench/largemodel.h"
#include "bench/ratio.h"
#include "core/model.h"
#include "tools/checkmodel.h"
#include "tools/elementaxes.h"
#include "tools/findings.h"
#include "tools/qualitypicture.h"

static void report(const char* name, double seconds, double limit) {
    std::printf("%-52s %8.4f s  (wanted: at most %.2f)%s\n", name, seconds, limit,
                seconds > limit ? "  ABOVE" : "");
    std::fflush(stdout);
}

static void tumble() {
    std::mt19937 random(4711);
    for (int e = 1; e <= nelems(); ++e) {
        for (unsigned k = random() % 4; k > 0; --k) rotatenodes(e);
        if (random() % 2 == 0) reversenodes(e);
    }
}

// The flat grid becomes a tube, its two long sides apart by a slit.
static void rollup(int side) {
    for (int n = 1; n <= nnodes(); ++n) {
        const int row = (n - 1) / (side + 1);
        const double angle = 6.28 * row / side, radius = 100;
        nodes(0, n, 0) = float((n - 1) % (side + 1));
        nodes(0, n, 1) = float(radius * std::cos(angle));
        nodes(0, n, 2) = float(radius * std::sin(angle));
    }
}

static void measure(int side, double limit) {
    makelargemodel(side);
    std::printf("%d elements\n", nelems());
    bool whole = false;
    std::size_t found = 0;
    report("findings", secondsof([&] { found = findfaults(whole).size(); }), limit);
    tumble();
    report("findings, all elements tumbled",
           secondsof([&] { found += findfaults(whole).size(); }), limit);
    walkresult flat, tube;
    report("homogenize, flat", secondsof([&] { flat = homogenize(1, {}); }), limit);
    rollup(side);
    tumble();
    report("homogenize, tube", secondsof([&] { tube = homogenize(1, {}); }), limit);
    std::printf("  %zu lines; %d and %d mirrored\n", found, flat.mirrored, tube.mirrored);
    report("quality counted", secondsof([] { countqualities(0); }), limit);
    report("corners below the limit", secondsof([] { findwrongelem(2); }), limit);
}

int main() {
    startsession();
    measure(317, 1);
    measure(1000, 10);
}
