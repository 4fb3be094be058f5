// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/span.h"

#include "solver/kinds.h"

namespace {
struct stiffest {
    double value = 0;
    int element = 0;
};
}  // namespace

// The largest stiffness against a translation of one of its nodes.
static double stiffnessof(const element& e) {
    const elementkind& kind = kindof(e.type);
    if (kind.stiffness == nullptr) return 0;
    elmatrix k;
    kind.stiffness(e, k);
    double most = 0;
    for (int i = 0; i < k.rows(); ++i)
        if (i % kind.nodedofs < 3) most = std::max(most, k(i, i));
    return most;
}

// "element 12 (BEAM, group 2 "legs")".
static std::string within(const model& m, const settings& s, int number) {
    std::string name = elementname(elementat(m, s, number));
    name[0] = 'e';
    return name;
}

std::string whyillconditioned(const model& m, const settings& s) {
    stiffest high, low;
    for (int n = 1; n <= m.nelems(); ++n) {
        const double value = stiffnessof(elementat(m, s, n));
        if (!(value > 0)) continue;
        if (value > high.value) high = {value, n};
        if (low.element == 0 || value < low.value) low = {value, n};
    }
    const double far = 1e7;
    if (low.element == 0 || high.value < far * low.value)
        return "A part of the structure is next to a mechanism; add a constraint or an element "
               "that holds it";
    char ratio[20];
    std::snprintf(ratio, sizeof ratio, "%.0e", high.value / low.value);
    return "The stiffness of the elements differs by too many powers of ten: " +
           within(m, s, high.element) + " is " + ratio + " times as stiff as " +
           within(m, s, low.element) +
           ". Make it softer (1e5 times its neighbours is as good as rigid) or join its nodes by "
           "RIGID elements";
}
