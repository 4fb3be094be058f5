// SPDX-License-Identifier: GPL-3.0-or-later
// The model as a drawing of Release 12, which every program reads.
#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "core/catalogue.h"
#include "core/colours.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/textfile.h"
#include "exchange/dxf.h"
#include "exchange/dxfin.h"
#include "exchange/leftout.h"

// Letters, digits and $ - _ in capitals, at most 31 of them.
static std::string layername(const std::string& name, std::set<std::string>& taken) {
    const std::size_t most = 31, roomfornumber = 8;
    std::string layer;
    for (const char c : uppercase(name)) {
        const bool isplain =
            (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '$' || c == '-' || c == '_';
        // Of a character of several bytes one sign is left.
        if (isplain)
            layer += c;
        else if ((c & 0xC0) != 0x80)
            layer += '_';
    }
    if (layer.empty()) layer = "GROUP";
    if (layer.size() > most) layer.resize(most);
    const std::string stem = layer.substr(0, most - roomfornumber);
    for (int i = 2; !taken.insert(layer).second; ++i) layer = stem + "-" + numbertext(i);
    return layer;
}

static int nearestindex(int shade) {
    int best = 7;
    double least = HUGE_VAL;
    for (int i = 1; i <= 255; ++i) {
        const int c = colourofindex(i);
        const double r = redof(c) - redof(shade), g = greenof(c) - greenof(shade),
                     b = blueof(c) - blueof(shade);
        if (const double away = r * r + g * g + b * b; away < least) {
            least = away;
            best = i;
        }
    }
    return best;
}

namespace {

class dxfwriter {
  public:
    dxfwriter(textout& target, importreport& lines) : out(target), report(lines) {}

    void write() {
        tag(0, "SECTION").tag(2, "HEADER").tag(9, "$ACADVER").tag(1, "AC1009").tag(0, "ENDSEC");
        writelayers();
        tag(0, "SECTION").tag(2, "ENTITIES");
        for (int e = 1; e <= nelems(); ++e) writeelement(e);
        tag(0, "ENDSEC").tag(0, "EOF");
        for (const auto& [entity, count] : counts)
            report.read(std::string(entity) + " entities", count);
        tellleftout(report, {});
    }

  private:
    dxfwriter& tag(int code, std::string_view text) {
        out.put(code).endline();
        out.raw(text).endline();
        return *this;
    }
    dxfwriter& tag(int code, int number) {
        out.put(code).endline();
        out.put(number).endline();
        return *this;
    }
    void corner(int place, long n) {
        for (int k = 0; k < 3; ++k) {
            out.put(10 * (k + 1) + place).endline();
            out.put(nodes(0, n, k)).endline();
        }
    }
    void writelayers() {
        layers.assign(1, "0");
        std::set<std::string> taken = {"0"};
        tag(0, "SECTION").tag(2, "TABLES").tag(0, "TABLE").tag(2, "LAYER").tag(70, ngroups());
        for (int g = 1; g <= ngroups(); ++g) {
            layers.push_back(layername(groupname(g), taken));
            if (layers.back() != groupname(g))
                report.changed("Group " + groupname(g) + " is the layer " + layers.back());
            tag(0, "LAYER").tag(2, layers.back()).tag(70, 0);
            tag(62, nearestindex(groupcolor(g))).tag(6, "CONTINUOUS");
        }
        tag(0, "ENDTAB").tag(0, "ENDSEC");
    }
    void writeelement(int e) {
        const int elnn = nodesoftype(elems(e, 0));
        if (elnn == 0) return;
        const char* const entity = elnn == 1 ? "POINT" : elnn == 2 ? "LINE" : "3DFACE";
        const bool hasgroup = egroup(e) >= 1 && egroup(e) <= ngroups();
        tag(0, entity).tag(8, layers[hasgroup ? std::size_t(egroup(e)) : 0]);
        for (int c = 0; c < (elnn >= 3 ? 4 : elnn); ++c)
            corner(c, long(elems(e, std::min(c + 1, elnn))));
        ++counts[entity];
    }
    textout& out;
    importreport& report;
    std::vector<std::string> layers;
    std::map<std::string_view, long> counts;
};

}  // namespace

void writedxf(const std::string& path, importreport& report) {
    textout out(path);
    dxfwriter(out, report).write();
    out.commit();
}
