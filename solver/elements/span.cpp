// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/elements/span.h"

#include "solver/elements/kinds.h"
#include "solver/processes/ranks.h"

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

std::string stiffnesstoofarapart(const model& m, const settings& s, double far) {
    // Stiffness and, with its sign changed, number: of equals the first is named.
    using found = std::vector<double>;
    found high = {0, 0}, low = {-INFINITY, 0};
    for (int n = 1; n <= m.nelems(); ++n) {
        const double value = isown(m, n) ? stiffnessof(elementat(m, s, n)) : 0;
        if (!(value > 0)) continue;
        high = std::max(high, found{value, -double(m.nameof(n))});
        low = std::max(low, found{-value, -double(m.nameof(n))});
    }
    ranks& all = allranks();
    const found most = all.greatest(high), least = all.greatest(low);
    const auto name = [&](const found& one, const found& mine) {
        return all.anyfault(one == mine && one[1] != 0 ? within(m, s, m.placeof(int(-one[1])))
                                                       : "");
    };
    const std::string stiff = name(most, high), soft = name(least, low);
    if (soft.empty() || most[0] < -far * least[0]) return "";
    char ratio[20];
    std::snprintf(ratio, sizeof ratio, "%.0e", most[0] / -least[0]);
    return "The stiffness of the elements differs by too many powers of ten: " + stiff + " is " +
           ratio + " times as stiff as " + soft +
           ". Make it softer (1e5 times its neighbours is as good as rigid) or join its nodes by "
           "RIGID elements";
}
