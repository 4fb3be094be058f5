// SPDX-License-Identifier: GPL-3.0-or-later
// The lines of a .ppo text.
#include "exchange/mosesexport.h"

#include <algorithm>
#include <filesystem>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/textfile.h"
#include "core/units.h"
#include "exchange/gate.h"
#include "exchange/leftout.h"
#include "exchange/textlines.h"

// --- the dialog ---------------------------------------------------------------------------------

mosessettings& mosessettingsform() {
    static mosessettings form;
    return form;
}

void openmosessettings(const std::string& path) {
    mosessettings& form = mosessettingsform();
    form.path = path;
    form.groups.clear();
    for (int g = 1; g <= ngroups(); ++g) form.groups.push_back(groupname(g));
    form.chosen = meshgroup >= 1 && meshgroup <= ngroups() ? meshgroup - 1 : 0;
}

void acceptmosessettings() {
    const int group = mosessettingsform().chosen + 1;
    const std::string target = mosessettingsform().path;
    const reply result = writeforeign(
        target, "MOSES model",
        [=](const std::string& path, importreport& report) { exportmoses(path, group, report); });
    if (result == reply::done) nameafter(target);
}

// --- names --------------------------------------------------------------------------------------

static char plaincharacter(char c) {
    const bool isplain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') ||
                         (c >= 'a' && c <= 'z') || c == '_' || c == '.';
    return isplain ? c : '_';
}

std::string plainnames::plain(const std::string& name) {
    std::string whole = name.empty() ? "_" : name;
    std::ranges::transform(whole, whole.begin(), plaincharacter);
    const std::string first = whole.substr(0, most);
    if (used.try_emplace(uppercase(first), 0).second) return first;
    for (;;) {
        const std::string tail = "_" + std::to_string(++used[uppercase(first)]);
        const std::string result = whole.substr(0, most - tail.size()) + tail;
        if (used.try_emplace(uppercase(result), 0).second) return result;
    }
}

// The text is in metres; a model that does not say its units is taken as it stands.
static double lengthunit() {
    return unitstext.empty() || modelunits().metres == 0 ? 1 : modelunits().metres;
}

namespace {

// The forms of a reference to a node: in the first part, in the second form of panels, in the
// jacket.
enum class points { first, second, jacket };

enum class rooms { none, hull, compartment, part, jacket };

class mosesexport {
  public:
    mosesexport(const std::string& path, int g, importreport& r)
        : target(path), out(path), group(g), report(r) {}
    void write();

  private:
    void choosenames();
    void chooserooms();
    void markpoints(std::vector<bool>& marks, int e) const;
    bool stands(int e, const std::vector<bool>& marks) const;

    void line(std::string_view text) { out.raw(text).endline(); }
    void heading(std::string_view text);
    void banner(std::string_view title);
    void writehead();
    void writepoints();
    void writeplates();
    void writepanels();
    void writeothers();
    void writejacketpoints();
    void writejacket();
    void writeclasses();
    void writepoint(int n, points form);
    void writepanel(int e, points form);
    void secondform(int g);
    void tellrest();
    const std::vector<int>& platesof(int g) const { return plates[std::size_t(g)]; }

    std::string target;
    textout out;
    int group;
    const double metres = lengthunit();
    importreport& report;
    std::string body;
    std::vector<std::string> names;        // of the groups
    std::vector<std::vector<int>> plates;  // elements, by group
    std::vector<rooms> room;               // of the plates, by group
    std::vector<int> lines;                // elements
    std::vector<bool> hullpoints, jacketpoints, told;
    plainnames partnames{8}, piecenames{8};
};

}  // namespace

static bool isline(int e) {
    return nodesoftype(elems(e, 0)) == 2;
}

static std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(width, text.size() + 1), ' ');
    return text;
}

// The prefix and at least two digits; where that is longer than a name can be, the zeros of the
// prefix give way.
static std::string reference(int n, points form) {
    std::string digits = numbertext(n);
    if (digits.size() < 2) digits.insert(0, "0");
    if (form == points::first) return "%PO%" + digits;
    const std::string prefix = form == points::second ? "*00" : "*J00";
    const std::size_t most = 8;
    const std::size_t over = prefix.size() + digits.size();
    return prefix.substr(
               0, prefix.size() - (over > most ? std::min<std::size_t>(over - most, 2) : 0)) +
           digits;
}

static std::string coordinate(double value, const char* factor) {
    std::string text = fixedtext(value, 3);
    if (text == "-0.000") text = "0.000";
    return padded(text + "*%" + factor, 20);
}

// --- what goes where ----------------------------------------------------------------------------

void mosesexport::choosenames() {
    body = plainnames(8).plain(std::filesystem::path(target).stem().string());
    partnames.plain(body);
    partnames.plain("JACKET");
    plainnames plain(6);  // eight with the mark of a class and with P_ of a piece
    names.emplace_back();
    for (int g = 1; g <= ngroups(); ++g) {
        names.push_back(plain.plain(groupname(g)));
        if (names.back() != groupname(g))
            report.changed("Group " + shown(groupname(g)) + " is written as " + names.back());
    }
}

void mosesexport::markpoints(std::vector<bool>& marks, int e) const {
    for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k) marks[std::size_t(elems(e, k))] = true;
}

bool mosesexport::stands(int e, const std::vector<bool>& marks) const {
    for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k)
        if (!marks[std::size_t(elems(e, k))]) return false;
    return true;
}

// The chosen group is the hull. A group that stands on its points alone is a compartment of it, one
// that has line elements too belongs to the jacket; any other is a part of its own.
void mosesexport::chooserooms() {
    const auto count = std::size_t(ngroups()) + 1;
    plates.resize(count);
    room.assign(count, rooms::none);
    hullpoints.assign(std::size_t(nnodes()) + 1, false);
    told = jacketpoints = hullpoints;
    std::vector<bool> haslines(count, false);
    for (int e = 1; e <= nelems(); ++e) {
        const auto g = std::size_t(std::clamp(egroup(e), 1, ngroups()));
        if (nodesoftype(elems(e, 0)) > 2) plates[g].push_back(e);
        if (egroup(e) == group && int(elems(e, 0)) != typenone) markpoints(hullpoints, e);
        if (!isline(e)) continue;
        haslines[g] = true;
        lines.push_back(e);
        markpoints(jacketpoints, e);
    }
    for (std::size_t g = 1; g < count; ++g) {
        if (plates[g].empty()) continue;
        const bool within =
            std::ranges::all_of(plates[g], [&](int e) { return stands(e, hullpoints); });
        room[g] = int(g) == group ? rooms::hull
                  : within        ? rooms::compartment
                  : haslines[g]   ? rooms::jacket
                                  : rooms::part;
        if (room[g] == rooms::jacket)
            for (const int e : plates[g]) markpoints(jacketpoints, e);
    }
}

// --- lines --------------------------------------------------------------------------------------

void mosesexport::heading(std::string_view text) {
    line("$****************************************          " + std::string(text));
}

void mosesexport::banner(std::string_view title) {
    static const char* const border =
        "$@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@@";
    static const char* const blank =
        "$@                                                                     @";
    for (const std::string_view text : {std::string_view(border), std::string_view(blank), title,
                                        std::string_view(blank), std::string_view(border)})
        line(text);
}

void mosesexport::writehead() {
    for (const char* text :
         {"$", "$ MOSES Model Generated with KALVANE", "$", "&dimen -save -dimen Meters     KN",
          "&LOCAL xfac = 1 yfac = 1 zfac = 1", "&model_def -save",
          "&model_def -fyield 248.04 -alpha 3.6111E-6 -spgravit 7.8492 -emodulus \\",
          "       1.9981E5 -poi_ratio 0.3 -kfac 1 1 -cmfac 0.85 0.85 -flood no -use @"})
        line(text);
    banner("$@                           Define Points                             @");
    line("$");
    heading("Set body to SIP");
    for (const std::string& text : {std::string("$"), "&describe body " + body, std::string("$")})
        line(text);
    heading("Set factors");
    for (const char* text : {"$", "&set xfac = 1", "&set yfac = 1", "&set zfac = 1", "$"})
        line(text);
}

void mosesexport::writepoint(int n, points form) {
    static const char* const factors[] = {"xfac", "yfac", "zfac"};
    std::string text = padded(reference(n, form), 10);
    for (int k = 0; k < 3; ++k) text += coordinate(nodes(0, n, k) * metres, factors[k]);
    text.erase(text.find_last_not_of(' ') + 1);
    line(text);
    told[std::size_t(n)] = true;
}

void mosesexport::writepanel(int e, points form) {
    std::string text = "PANEL   ";
    for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k)
        text += padded(reference(int(elems(e, k)), form), 10);
    text.erase(text.find_last_not_of(' ') + 1);
    line(text);
    report.read("Panels");
}

void mosesexport::writepoints() {
    for (int n = 1; n <= nnodes(); ++n)
        if (hullpoints[std::size_t(n)]) writepoint(n, points::first);
}

void mosesexport::writeplates() {
    if (group < int(plates.size()))
        for (const int e : platesof(group)) writepanel(e, points::first);
}

void mosesexport::writepanels() {
    for (int g = 1; g <= ngroups(); ++g) {
        if (room[std::size_t(g)] != rooms::compartment) continue;
        const std::string& name = names[std::size_t(g)];
        line("$");
        line("&describe compartment  " + name);
        line("$");
        heading("Set Piece  ");
        line("$");
        line("&describe piece " + name);
        line("$");
        heading("Define Panels");
        for (const int e : platesof(g)) writepanel(e, points::first);
    }
}

void mosesexport::secondform(int g) {
    heading("Set Piece  ");
    line("&describe piece " + piecenames.plain("P_" + names[std::size_t(g)]));
    heading("Define Panels");
}

void mosesexport::writeothers() {
    std::vector<bool> written(std::size_t(nnodes()) + 1, false);
    for (int g = 1; g <= ngroups(); ++g) {
        if (room[std::size_t(g)] != rooms::part) continue;
        heading("Start new PART  ");
        line("&describe part " + partnames.plain(names[std::size_t(g)]));
        heading("Define nodes & Panels");
        std::vector<int> list;
        for (const int e : platesof(g))
            for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k) {
                const int n = int(elems(e, k));
                if (!written[std::size_t(n)]) list.push_back(n);
                written[std::size_t(n)] = true;
            }
        std::ranges::sort(list);
        for (const int n : list) writepoint(n, points::second);
        secondform(g);
        for (const int e : platesof(g)) writepanel(e, points::second);
    }
}

void mosesexport::writejacketpoints() {
    for (int n = 1; n <= nnodes(); ++n)
        if (jacketpoints[std::size_t(n)]) writepoint(n, points::jacket);
}

void mosesexport::writejacket() {
    for (int g = 1; g <= ngroups(); ++g) {
        if (room[std::size_t(g)] != rooms::jacket) continue;
        secondform(g);
        for (const int e : platesof(g)) writepanel(e, points::jacket);
    }
}

void mosesexport::writeclasses() {
    banner("$@                              Classes                                @");
    for (int g = 1; g <= ngroups(); ++g)
        line("~" + names[std::size_t(g)] +
             " TUBE 250 10 -fyield 345 -dens 77 -emod 205000 -poi_rat 0.28125");
    banner("$@                              ELEMENTS                               @");
    for (const int e : lines) {
        const auto g = std::size_t(std::clamp(egroup(e), 1, ngroups()));
        line("BEAM " + padded("M" + numbertext(e), 10) + padded("~" + names[g], 9) +
             padded(reference(int(elems(e, 1)), points::jacket), 10) +
             reference(int(elems(e, 2)), points::jacket));
        report.read("Beams");
    }
}

// Nothing stays behind without a line.
void mosesexport::tellrest() {
    report.read("Classes", ngroups());
    for (int n = 1; n <= nnodes(); ++n) {
        if (told[std::size_t(n)]) continue;
        report.skipped("Nodes without plate or line element");
        report.about(reportitems::nodes, n);
    }
    for (int e = 1; e <= nelems(); ++e) {
        if (nodesoftype(elems(e, 0)) != 1) continue;
        report.skipped("Elements of one node");
        report.about(reportitems::elements, e);
    }
    tellleftout(report, {parts::freenodes, parts::properties});
    report.changed("Classes have fixed section data, whatever their group holds", ngroups());
    if (unitstext.empty())
        report.warn(
            "The text says metres; the model does not say its units, its coordinates stand "
            "as they are");
    if (metres != 1)
        report.changed("Coordinates turned from " + modelunits().length + " to metres");
}

void mosesexport::write() {
    choosenames();
    chooserooms();
    writehead();
    heading("Define Coordinates");
    line("$");
    line("&describe part  " + body);
    line("$");
    heading("Define Coordinates");
    line("$");
    writepoints();
    heading("Define piece");
    line("$");
    line("&describe piece  " + piecenames.plain(names[std::size_t(group)]) + " -diftype 3ddif");
    line("$");
    heading("Define Panels");
    line("$");
    writeplates();
    writepanels();
    writeothers();
    heading("Define Coordinates");
    line("$");
    line("&describe part  JACKET");
    line("$");
    heading("Define Coordinates");
    line("$");
    writejacketpoints();
    writejacket();
    heading("Set Piece to SUCANC");
    line("$");
    writeclasses();
    tellrest();
    out.commit();
}

void exportmoses(const std::string& path, int group, importreport& report) {
    const int most = 999999;
    if (nnodes() > most)
        throw runtimeerror{errtype, "The model has " + numbertext(nnodes()) + " nodes, the text " +
                                        "has names for " + numbertext(most) +
                                        ".\nNothing was written."};
    if (group < 1 || group > ngroups())
        throw runtimeerror{errtype, "Choose a group of the model.\nNothing was written."};
    mosesexport(path, group, report).write();
}
