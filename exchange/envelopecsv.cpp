// SPDX-License-Identifier: GPL-3.0-or-later
// Rows of envelopes.
#include "exchange/envelopecsv.h"

#include <algorithm>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/platform.h"
#include "core/runtime.h"
#include "post/envelopetables.h"

static std::vector<char> nodesofgroup(int group) {
    std::vector<char> in(std::size_t(nnodes()) + 1, group == 0);
    for (int e = 1; e <= nelems() && group > 0; ++e)
        for (int c = 1; egroup(e) == group && c <= nodesoftype(elems(e, 0)); ++c)
            in[std::size_t(elems(e, c))] = 1;
    return in;
}

static void putgovernor(csvout& out, int c) {
    out.cell(c >= 1 && c <= ncomb() ? lcombname(c) : "");
}

long writeenvelope(csvout& out, envelopeof what, int group) {
    const bool elements = what == envelopeof::plates || what == envelopeof::members,
               nodes = what != envelopeof::members;
    const std::vector<char> ingroup = nodesofgroup(group);
    const auto begin = [&](const std::vector<std::string>& quantities) {
        if (elements) out.cell("Element").cell("Group");
        if (nodes) out.cell("Node");
        for (const std::string& q : quantities) {
            const bool turns = what == envelopeof::displacements && q.front() == 'R';
            const std::string name = turns ? q + " [degrees]" : q;
            out.cell(name + " largest").cell("Combination");
            out.cell(name + " smallest").cell("Combination");
        }
        out.endrow();
    };
    long written = 0;
    eachenvelope(what, begin, [&](const enveloperowof& row) {
        if (elements ? group > 0 && egroup(row.element) != group : !ingroup[std::size_t(row.node)])
            return;
        if (elements) out.cell(row.element).cell(groupname(egroup(row.element)));
        if (nodes) out.cell(row.node);
        for (const governed& g : row.values) {
            out.cell(g.high + 0.0F);  // -0 is 0
            putgovernor(out, g.highof);
            out.cell(g.low + 0.0F);
            putgovernor(out, g.lowof);
        }
        out.endrow();
        const int rowsperlook = 10000;
        if (++written % rowsperlook == 0 && !theplatform().progress("Writing the envelope", 0))
            throw runtimeerror{errstopped, "The table was given up"};
    });
    return written;
}
