// SPDX-License-Identifier: GPL-3.0-or-later
// Envelopes of stresses.
#include "post/stressenvelope.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/textfile.h"
#include "post/components.h"
#include "post/exactstress.h"
#include "post/members.h"
#include "post/source.h"
#include "post/stressfile.h"

static std::vector<governed> corners;  // (e - 1) * stresscorners + corner - 1

void dropenvelope() {
    corners.clear();
}

const governed& governedat(int e, int corner) {
    static const governed none;
    const std::size_t i = std::size_t(e - 1) * stresscorners + std::size_t(corner - 1);
    return i < corners.size() ? corners[i] : none;
}

static void include(int e, int corner, int c, double value) {
    include(corners[std::size_t(e - 1) * stresscorners + std::size_t(corner - 1)], value, c);
}

// --- the file -----------------------------------------------------------------------------------

namespace {
// The records of one load case, from its beginning.
struct caseplace {
    const char *at, *end;

    void toword() {
        while (at < end && (*at == ' ' || *at == ',' || *at == '\r' || *at == '\n' || *at == '\t'))
            ++at;
    }
    // Element of the next record; 0 at END, -1 where neither stands.
    int element() {
        toword();
        if (at < end && *at == '"') ++at;
        if (end - at >= 3 && at[0] == 'E' && at[1] == 'N' && at[2] == 'D') return 0;
        int e = 0;
        const auto [behind, error] = std::from_chars(at, end, e);
        at = behind;
        return error == std::errc() && e > 0 ? e : -1;
    }
    bool number(float& value) {
        toword();
        const auto [behind, error] = std::from_chars(at, end, value);
        if (error == std::errc::result_out_of_range)
            value = 0;  // next to nothing, or checked above
        const bool good = behind != at && std::isfinite(value);
        at = behind;
        return good;
    }
    void pastend() {
        const std::string_view rest(at, std::size_t(end - at));
        const std::size_t line = rest.find('\n');
        at = line == rest.npos ? end : at + line + 1;
    }
};

struct stressblocks {
    std::string text, name;
    std::vector<caseplace> cases;

    [[noreturn]] void fail(const char* at, const std::string& what) const {
        const auto line = 1 + std::count(text.data(), at, '\n');
        throw runtimeerror{errtype, name + ", line " + numbertext(long(line)) + ": " + what};
    }
};
}  // namespace

static stressblocks openblocks() {
    stressblocks b;
    b.name = findnocase(stressfile());
    b.text = readwhole(b.name);
    const char *const begin = b.text.data(), *const end = begin + b.text.size();
    const std::string_view text = b.text;
    for (const char* at = begin; at < end;) {
        caseplace place{at, end};
        place.toword();
        if (place.at == end) break;
        b.cases.push_back(place);
        std::size_t found = text.find("END", std::size_t(at - begin));
        if (found == text.npos) b.fail(end, "the file is cut short: the last load case has no END");
        caseplace behind{begin + found, end};
        behind.pastend();
        at = behind.at;
    }
    if (b.cases.empty()) b.fail(begin, "the file holds no load case");
    return b;
}

namespace {
// Elements one after the other: a shear force takes the records of all corners.
class enveloper {
  public:
    enveloper(stressblocks& from, int of)
        : b(from), component(of), cases(b.cases.size()), ends(lineelstress != 0 ? 2 : 1) {
        for (const int c : envelopeset()) {
            numbers.push_back(c);
            factors.push_back(factorsof(c));
            factors.back().resize(cases);
        }
        values.resize(cases * stresscorners);
    }
    // The next record of every case; false at the end.
    bool next() {
        const int e = nextelement();
        if (e != former) finish();
        if (e == 0) return false;
        former = e;
        if (lineelstress != 0) corner = 0;  // one record, of both ends
        if (corner + ends > stresscorners)
            b.fail(b.cases[0].at, "element " + numbertext(e) + " has more than four records");
        for (std::size_t l = 0; l < cases; ++l) readvalues(b.cases[l], l);
        corner += ends;
        return true;
    }

  private:
    struct record {
        float s[stressvalues + 1];
    };
    // That every case has come to; 0 at the end.
    int nextelement() {
        int e = -1;
        for (std::size_t l = 0; l < cases; ++l) {
            caseplace& place = b.cases[l];
            const int found = place.element();
            if (found < 0 || found > nelems())
                b.fail(place.at, "an element of the model or END was expected");
            if (l > 0 && found != e)
                b.fail(place.at, "the load cases are not of the same elements; analyse again");
            e = found;
        }
        return e;
    }
    record& valuesof(int of, std::size_t l) { return values[std::size_t(of) * cases + l]; }
    void readvalues(caseplace& place, std::size_t l) {
        const auto read = [&](float& value) {
            if (!place.number(value)) b.fail(place.at, "a number was expected");
        };
        float skipped = 0;
        for (int k = 0; k < placewords; ++k) read(skipped);
        for (int end = 0; end < ends; ++end) {
            float* const s = valuesof(corner + end, l).s;
            for (int k = 1; k <= stressvalues; ++k) read(s[k]);
        }
    }
    // Of the element whose records are whole.
    void finish() {
        const bool single = component < toldcomponents;
        const int first = single ? component : 1, last = single ? component : toldcomponents - 1;
        for (std::size_t i = 0; i < numbers.size() && corner > 0; ++i) {
            float sum[stresscorners][stressvalues] = {};
            for (int c = 0; c < corner; ++c)
                for (int k = first; k <= last; ++k) {
                    double total = 0;
                    for (std::size_t l = 0; l < cases; ++l)
                        total += double(factors[i][l]) * double(valuesof(c, l).s[k]);
                    sum[c][k] = float(total);
                }
            for (int c = 1; c <= corner; ++c)
                include(former, c, numbers[i], recordvalue(component, former, c, sum));
        }
        corner = 0;
    }

    static const int placewords = 3;
    stressblocks& b;
    int component, former = 0, corner = 0;  // corner: records of the element in hand
    std::size_t cases;
    int ends;
    std::vector<int> numbers;
    std::vector<std::vector<float>> factors;
    std::vector<record> values;  // of each corner and case
};
}  // namespace

static void readfile(int component) {
    stressblocks b = openblocks();
    enveloper records(b, component);
    const int recordsperreport = 20000;
    const double size = double(b.text.size()) / double(b.cases.size());
    for (int count = 1; records.next(); ++count)
        if (count % recordsperreport == 0 &&
            !theplatform().progress("Forming the envelope",
                                    double(b.cases[0].at - b.text.data()) / size))
            throw runtimeerror{errstopped, "The envelope was cancelled"};
}

// Stresses of line elements come of their forces.
static void readlines(int component) {
    for (const int e : allmembers())
        for (const int c : envelopeset())
            if (const memberline* const m = memberin(e, c))
                for (const int end : {1, 2}) include(e, end, c, linevalue(component, e, *m, end));
    if (!membernote.empty()) throw runtimeerror{errtype, membernote};
}

bool readenvelope(int component) {
    corners.assign(std::size_t(nelems()) * stresscorners, {});
    const bool good = guarded(
        [&] {
            if (isexact(component) && isofline(component))
                readlines(component);
            else
                readfile(component);
        },
        [](const runtimeerror& e) {
            corners.clear();
            theplatform().message(e.what, icons::exclamation);
        });
    theplatform().endprogress();
    return good;
}

std::vector<enveloperow> envelopetable(bool (*counts)(int e)) {
    std::vector<enveloperow> worst(2 * std::size_t(ngroups()) + 2);
    for (int e = 1; e <= nelems(); ++e)
        for (int c = 1; c <= std::min(nodesoftype(elems(e, 0)), stresscorners); ++c) {
            const governed& at = governedat(e, c);
            const int g = egroup(e);
            if (at.highof == 0 || g < 1 || g > ngroups() || !counts(e)) continue;
            enveloperow& high = worst[2 * std::size_t(g)];
            enveloperow& low = worst[2 * std::size_t(g) + 1];
            if (high.e == 0 || at.high > high.value) high = {g, e, c, at.highof, at.high};
            if (low.e == 0 || at.low < low.value) low = {g, e, c, at.lowof, at.low};
        }
    std::erase_if(worst, [](const enveloperow& row) { return row.e == 0; });
    return worst;
}
