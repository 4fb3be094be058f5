// SPDX-License-Identifier: GPL-3.0-or-later
// Combinations by rule.
#include "loads/combinationrules.h"

#include <algorithm>
#include <cmath>

#include "core/model.h"
#include "core/numtext.h"
#include "core/textfile.h"
#include "files/kalfile.h"

const char* const rulessection = "combination rules";

int roomforcombinations() {
    return int(lcomb.upper1);
}

// --- the table ----------------------------------------------------------------------------------

static casefactors defaultfactors(int lc) {
    if (lc == 1) return {caseroles::permanent, 1.35, 1, 1};
    return {};
}

static ruleform readtable(textin& in) {
    ruleform form;
    for (int lc = 1; lc <= nlc(); ++lc) form.cases.push_back(defaultfactors(lc));
    form.limit = maxcombinations;
    while (!in.atend()) {
        const std::string word = in.quoted();
        if (word == "rule") {
            form.rule = combinationrules(in.wholewithin(0, 1, "a rule"));
            form.limit = in.wholewithin(1, 32767, "a limit");
        } else if (word == "case") {
            const int lc = in.wholewithin(1, 32767, "a load case");
            casefactors c;
            c.role = caseroles(in.wholewithin(0, 2, "a role"));
            c.most = in.single();
            c.least = in.single();
            c.companion = in.single();
            if (lc <= nlc()) form.cases[std::size_t(lc - 1)] = c;
        } else {
            in.fail(errtype, "rule or case was expected, found \"" + word + "\"");
        }
    }
    return form;
}

void checkrules(textin& in) {
    readtable(in);
}

ruleform openrules() {
    textin in = kalreader(rulessection);
    return readtable(in);
}

static void keeptable(const ruleform& form) {
    std::string rows =
        "\"rule\"," + numbertext(int(form.rule)) + "," + numbertext(form.limit) + "\n";
    for (std::size_t i = 0; i < form.cases.size(); ++i) {
        const casefactors& c = form.cases[i];
        rows += "\"case\"," + numbertext(int(i) + 1) + "," + numbertext(int(c.role)) + "," +
                numbertext(float(c.most)) + "," + numbertext(float(c.least)) + "," +
                numbertext(float(c.companion)) + "\n";
    }
    putkalsection(rulessection, rows);
}

// --- the rules ----------------------------------------------------------------------------------

static std::vector<int> casesof(const ruleform& form, caseroles role) {
    std::vector<int> list;
    for (std::size_t i = 0; i < form.cases.size(); ++i)
        if (form.cases[i].role == role) list.push_back(int(i) + 1);
    return list;
}

static std::vector<float> permanentfactors(const ruleform& form, bool most) {
    std::vector<float> factors(form.cases.size());
    for (const int lc : casesof(form, caseroles::permanent)) {
        const casefactors& c = form.cases[std::size_t(lc - 1)];
        factors[std::size_t(lc - 1)] = float(most ? c.most : c.least);
    }
    return factors;
}

namespace {
class combinationlist {
  public:
    bool isfull() const { return int(list.size()) > roomforcombinations(); }
    void add(const std::string& name, const std::vector<float>& factors) {
        const bool nothing = std::ranges::all_of(factors, [](float f) { return f == 0; });
        const auto same = [&](const rulecombination& c) { return c.factors == factors; };
        if (nothing || isfull() || std::ranges::any_of(list, same)) return;
        list.push_back({numbertext(int(list.size()) + 1) + " " + name, factors});
    }
    std::vector<rulecombination> list;
};
}  // namespace

// EN 1990, 6.4.3.2, expression 6.10: permanent actions, one leading variable action, companions
// with their combination value.
static void addleading(const ruleform& form, combinationlist& to) {
    const std::vector<int> variables = casesof(form, caseroles::variable);
    for (const bool most : {true, false}) {
        const std::vector<float> permanent = permanentfactors(form, most);
        const std::string end = most ? ", permanent most" : ", permanent least";
        if (variables.empty())
            to.add("permanent" + std::string(most ? " most" : " least"), permanent);
        for (const int leader : variables) {
            std::vector<float> factors = permanent;
            for (const int lc : variables) {
                const casefactors& c = form.cases[std::size_t(lc - 1)];
                factors[std::size_t(lc - 1)] = float(c.most * (lc == leader ? 1 : c.companion));
            }
            to.add(lcname(leader) + " leads" + end, factors);
        }
    }
}

static void addsigns(const ruleform& form, combinationlist& to) {
    const std::vector<int> variables = casesof(form, caseroles::variable);
    const std::vector<float> permanent = permanentfactors(form, true);
    const std::size_t most = 20;  // beyond that there is no room in any model
    const unsigned long patterns = 1ul << std::min(variables.size(), most);
    for (unsigned long pattern = 0; pattern < patterns && !to.isfull(); ++pattern) {
        std::vector<float> factors = permanent;
        std::string name;
        for (std::size_t i = 0; i < variables.size(); ++i) {
            const bool minus = i < most && (pattern >> i & 1);
            const std::size_t lc = std::size_t(variables[i] - 1);
            factors[lc] = float(minus ? -form.cases[lc].most : form.cases[lc].most);
            name += minus ? '-' : '+';
        }
        to.add(name, factors);
    }
}

std::vector<rulecombination> combinationsof(const ruleform& form) {
    combinationlist made;
    if (form.rule == combinationrules::leading)
        addleading(form, made);
    else
        addsigns(form, made);
    return made.list;
}

bool writerules(ruleform& form) {
    const std::vector<rulecombination> list = combinationsof(form);
    const int count = int(list.size()), room = roomforcombinations();
    form.message.clear();
    for (const casefactors& c : form.cases)
        if (!std::isfinite(float(c.most)) || !std::isfinite(float(c.least)) ||
            !std::isfinite(float(c.most * c.companion)))
            form.message = "A factor is no number";
    if (count == 0) form.message = "The rule gives no combination: every factor is 0";
    if (count > room)
        form.message =
            "The rule gives more combinations than the " + numbertext(room) +
            " that the sizes have room for; declare more load cases under File, Model Size";
    else if (count > form.limit)
        form.message = "The rule gives " + numbertext(count) + " combinations, the limit is " +
                       numbertext(form.limit) + "; up to " + numbertext(room) + " may be written";
    if (!form.message.empty()) return false;
    keeptable(form);
    for (int c = 1; c <= std::max(count, ncomb()); ++c) {
        lcombname(c) = c <= count ? list[std::size_t(c - 1)].name : "";
        for (int lc = 1; lc <= nlc(); ++lc)
            lcomb(c, lc) = c <= count ? list[std::size_t(c - 1)].factors[std::size_t(lc - 1)] : 0;
    }
    lcomb(0, 0) = float(count);
    curlcomb = 1;
    form.message = numbertext(count) + " combinations written";
    return true;
}
