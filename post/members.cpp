// SPDX-License-Identifier: GPL-3.0-or-later
// Members of the results on show.
#include "post/members.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <optional>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/textfile.h"
#include "post/secondplot.h"
#include "post/source.h"

std::string membernote;

static std::optional<memberfile> file;
static bool tried;

namespace {
// What was summed of one result, and of which.
struct memberset {
    std::array<int, 3> of{};                          // source, combination, load case
    std::vector<std::unique_ptr<memberresult>> kept;  // by element
};
}  // namespace

static memberset sets[2];  // of view 1 and of the result beside it

void forgetmembers() {
    for (memberset& set : sets) set.kept.clear();
}

void dropmembers() {
    file.reset();
    tried = false;
    membernote.clear();
    forgetmembers();
}

static memberfile* openfile() {
    if (tried) return file ? &*file : nullptr;
    tried = true;
    membernote.clear();
    guarded([&] { file.emplace(findnocase(modelname + ".MEM"), nelems()); },
            [](const runtimeerror& e) {
                membernote = e.number == errfilenotfound
                                 ? "There are no forces along members: analyse first"
                                 : e.what;
            });
    return file ? &*file : nullptr;
}

static memberline combined(const std::vector<memberline>& one, int c) {
    memberline sum{};
    for (int l = 1; l <= std::min(nlc(), int(one.size())); ++l) {
        const float f = lcomb(c, l);
        if (f == 0) continue;
        const memberline& m = one[std::size_t(l - 1)];
        for (int q = 0; q < memberquantities; ++q)
            for (int i = 0; i < memberstations; ++i) sum.value[q][i] += f * m.value[q][i];
    }
    return sum;
}

static memberresult envelopeof(memberfile& from, int e, membergovernors* governors) {
    std::vector<memberline> one;
    from.read(e, one);
    memberresult bounds{{}, std::make_unique<memberline>()};
    bool first = true;
    for (const int c : envelopeset()) {
        const memberline m = combined(one, c);
        for (int q = 0; q < memberquantities; ++q)
            for (int i = 0; i < memberstations; ++i) {
                const float v = m.value[q][i];
                float &high = bounds.high.value[q][i], &low = bounds.least->value[q][i];
                if (first || v > high) {
                    high = v;
                    if (governors) governors->high[q][i] = short(c);
                }
                if (first || v < low) {
                    low = v;
                    if (governors) governors->low[q][i] = short(c);
                }
            }
        first = false;
    }
    return bounds;
}

static memberresult readresult(memberfile& from, int e) {
    if (issecond()) return {from.sum(e, factorsof(second.number)), nullptr};
    if (isenvelope()) return envelopeof(from, e, nullptr);
    return {from.sum(e, shownfactors()), nullptr};
}

static memberset& setonshow() {
    memberset& set = sets[issecond()];
    std::array<int, 3> of = {int(shownsource.of), curlcomb, shownsource.lc};
    if (issecond()) of = {int(sources::combination), second.number, 0};
    if (set.of != of) set.kept.clear();
    set.of = of;
    return set;
}

const memberresult* memberof(int e) {
    memberfile* const from = openfile();
    std::vector<std::unique_ptr<memberresult>>& kept = setonshow().kept;
    if (!from || !from->holds(e) || e > nelems()) return nullptr;
    if (kept.size() <= std::size_t(nelems())) kept.resize(std::size_t(nelems()) + 1);
    std::unique_ptr<memberresult>& result = kept[std::size_t(e)];
    if (!result)
        guarded([&] { result = std::make_unique<memberresult>(readresult(*from, e)); },
                [](const runtimeerror& fault) { membernote = fault.what; });
    return result.get();
}

membergovernors governorsof(int e) {
    membergovernors governors{};
    memberfile* const from = openfile();
    if (from && from->holds(e))
        guarded([&] { envelopeof(*from, e, &governors); },
                [](const runtimeerror& fault) { membernote = fault.what; });
    return governors;
}

const memberline* memberin(int e, int c) {
    static memberline line;
    memberfile* const from = openfile();
    if (!from || !from->holds(e)) return nullptr;
    const bool good = guarded([&] { line = from->sum(e, factorsof(c)); },
                              [](const runtimeerror& fault) { membernote = fault.what; });
    return good ? &line : nullptr;
}

double memberrange::size() const {
    return std::max(std::fabs(high.value), std::fabs(low.value));
}

bool memberrange::isnoise() const {
    const double rounding = 1e-9;
    return size() > 0 && size() <= rounding * alike;
}

memberrange rangeof(memberquantity q, const std::vector<int>& members) {
    const int membersperreport = 5000;
    memberrange range;
    int count = 0;
    for (const int e : members) {
        if (++count % membersperreport == 0)
            theplatform().progress("Reading members", double(count) / double(members.size()));
        const memberresult* const m = memberof(e);
        if (!m) continue;
        for (int k = 0; k < memberquantities; ++k) {
            if (std::string_view(quantityrows[k].unit) != quantityrows[q].unit) continue;
            for (const memberline* line : {&m->high, &m->low()})
                for (const float value : line->value[k])
                    range.alike = std::max(range.alike, double(std::fabs(value)));
        }
        for (int i = 0; i < memberstations; ++i) {
            const float high = m->high.value[q][i], low = m->low().value[q][i];
            if (range.high.e == 0 || high > range.high.value) range.high = {e, i, high};
            if (range.low.e == 0 || low < range.low.value) range.low = {e, i, low};
        }
    }
    if (count >= membersperreport) theplatform().endprogress();
    return range;
}

std::vector<int> allmembers() {
    std::vector<int> members;
    const memberfile* const from = openfile();
    for (int e = 1; from && e <= nelems(); ++e)
        if (nodesoftype(elems(e, 0)) == 2 && from->holds(e)) members.push_back(e);
    return members;
}
