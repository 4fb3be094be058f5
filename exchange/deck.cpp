// SPDX-License-Identifier: GPL-3.0-or-later
// Reading of decks.
#include "exchange/deck.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <set>

#include "core/catalogue.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/textfile.h"
#include "exchange/deckbeam.h"
#include "exchange/deckcards.h"
#include "exchange/decksection.h"
#include "exchange/deckspaces.h"

bool isdeck(std::string_view head) {
    static const char* const keywords[] = {"*HEADING",  "*NODE", "*ELEMENT",      "*INCLUDE",
                                           "*MATERIAL", "*PART", "*USER ELEMENT", "*NSET"};
    textlines in(std::string(head), "");
    std::string_view line;
    while (in.next(line)) {
        line = trimmed(line);
        if (!line.starts_with('*') || line.starts_with("**")) continue;
        for (const char* keyword : keywords)
            if (uppercase(line.substr(0, std::string_view(keyword).size())) == keyword) return true;
    }
    return false;
}

namespace {

struct deckkind {
    const char* name;
    int type, nodes, corners;
    int plane = -1;  // 0 plane stress, 1 plane strain
};
// Endings as R, I, H or R5 tell of the formulation alone.
const deckkind deckkinds[] = {
    {"T3D2", typetruss, 2, 2},      {"T2D2", typetruss, 2, 2},      {"T3D3", typetruss, 3, 2},
    {"B31", typebeam, 2, 2},        {"B33", typebeam, 2, 2},        {"B21", typebeam, 2, 2},
    {"B32", typebeam, 3, 2},        {"U1", typebeam, 2, 2},         {"S3", typeshell3, 3, 3},
    {"STRI3", typeshell3, 3, 3},    {"S4", typeshell4, 4, 4},       {"S6", typeshell3, 6, 3},
    {"STRI65", typeshell3, 6, 3},   {"S8", typeshell4, 8, 4},       {"CPS3", typememb3, 3, 3, 0},
    {"CPS4", typememb4, 4, 4, 0},   {"CPE3", typememb3, 3, 3, 1},   {"CPE4", typememb4, 4, 4, 1},
    {"CPS6", typememb3, 6, 3, 0},   {"CPS8", typememb4, 8, 4, 0},   {"CPE6", typememb3, 6, 3, 1},
    {"CPE8", typememb4, 8, 4, 1},   {"M3D3", typememb3, 3, 3, 0},   {"M3D4", typememb4, 4, 4, 0},
    {"MASS", typemass, 1, 1},       {"SPRINGA", typespring2, 2, 2}, {"SPRING1", typespring, 1, 1},
    {"SPRING2", typespring2, 2, 2}, {"M3D6", typememb3, 6, 3, 0},   {"M3D8", typememb4, 8, 4, 0},
    {"M3D9", typememb4, 9, 4, 0},   {"S9", typeshell4, 9, 4},       {"PIPE31", typepipe, 2, 2},
    {"PIPE21", typepipe, 2, 2},
};

const deckkind* findkind(std::string name) {
    for (;;) {
        for (const deckkind& kind : deckkinds)
            if (name == kind.name) return &kind;
        const std::string_view endings = name.ends_with("R5") ? "5" : "RIHSW";
        if (name.size() < 3 || endings.find(name.back()) == endings.npos) return nullptr;
        name.pop_back();
    }
}

// Values by node and freedom, or by element and direction.
using activeloads = std::map<std::pair<int, int>, double>;

class deckreader {
  public:
    deckreader(const std::string& path, imported& into) : cards(path), name(path), found(into) {}

    void read() {
        deckcard card;
        found.isconsistent = true;
        while (cards.nextcard(card)) take(card);
        if (instep) endstep();
        if (space.nodesets.contains(planeset)) membranesagain();
        for (const decksection& s : sections) usesection(s);
        makegroups();
        tell();
    }

  private:
    using reader = void (deckreader::*)(const deckcard&);

    void take(const deckcard& card) {
        static const std::map<std::string, reader, std::less<>> readers = {
            {"PART", &deckreader::readpart},
            {"INSTANCE", &deckreader::begininstance},
            {"END INSTANCE", &deckreader::endinstance},
            {"NODE", &deckreader::readnodes},
            {"ELEMENT", &deckreader::readelements},
            {"NSET", &deckreader::readset},
            {"ELSET", &deckreader::readset},
            {"MATERIAL", &deckreader::beginmaterial},
            {"ELASTIC", &deckreader::readelastic},
            {"DENSITY", &deckreader::readdensity},
            {"SHELL SECTION", &deckreader::readsection},
            {"MEMBRANE SECTION", &deckreader::readsection},
            {"SOLID SECTION", &deckreader::readsection},
            {"BEAM SECTION", &deckreader::readsection},
            {"BEAM GENERAL SECTION", &deckreader::readsection},
            {"MASS", &deckreader::readsection},
            {"SPRING", &deckreader::readsection},
            {"BOUNDARY", &deckreader::readboundary},
            {"CLOAD", &deckreader::readcload},
            {"DLOAD", &deckreader::readdload},
            {"SURFACE", &deckreader::readsurface},
            {"DSLOAD", &deckreader::readdsload},
            {"FREQUENCY", &deckreader::notefrequency},
            {"STEP", &deckreader::beginstep},
            {"END STEP", &deckreader::closestep},
        };
        static const std::set<std::string, std::less<>> silent = {
            "HEADING", "STATIC",       "NODE PRINT",  "NODE FILE",      "EL PRINT",
            "EL FILE", "OUTPUT",       "NODE OUTPUT", "ELEMENT OUTPUT", "PREPRINT",
            "RESTART", "USER ELEMENT", "ASSEMBLY",    "END ASSEMBLY"};
        const auto at = readers.find(card.keyword);
        if (at != readers.end()) return (this->*at->second)(card);
        if (!silent.contains(card.keyword)) found.report.skipped("*" + card.keyword, card.line);
    }

    void progress() {
        const long look = 16384;  // items between two looks at the clock
        if (++seen % look == 0) readingprogress(name, cards.share());
    }
    // A fault of a line; what follows it is read on, so that one run tells them all.
    void fault(const std::string& text) { found.report.error(text, cards.line()); }

    // --- nodes, elements, sets ---

    void readpart(const deckcard& card) {
        parts[uppercase(card.value("NAME"))] = cards.draft("END PART");
    }
    // A line that moves the instance and one that turns it, about an axis by degrees.
    void begininstance(const deckcard& card) {
        placement place;
        std::string_view line;
        std::vector<double> move, turn;
        if (cards.nextdata(line)) move = cards.numbers(line);
        if (move.size() >= 3) place = moved({move[0], move[1], move[2]});
        if (cards.nextdata(line)) turn = cards.numbers(line);
        if (turn.size() >= 7)
            place = turnedabout({turn[0], turn[1], turn[2]}, {turn[3], turn[4], turn[5]},
                                turn[6] * pi / 180) *
                    place;
        const std::string_view part = card.value("PART");
        space.enter(card.value("NAME"), part, place);
        if (part.empty()) return;
        const auto at = parts.find(uppercase(part));
        if (at == parts.end())
            fault("Part " + shown(part) + " is not defined");
        else
            cards.play(at->second);
    }
    void endinstance(const deckcard&) { space.enter("", "", {}); }

    void readnodes(const deckcard& card) {
        std::vector<int>* const set = setof(space.nodesets, card.value("NSET"));
        numbertable& nodes = space.nodes();
        const placement place = space.place();
        std::string_view line, field;
        while (cards.nextdata(line)) {
            progress();
            nextfield(line, field);
            const long number = cards.whole(field, "the number of a node");
            triple at{};
            for (std::size_t k = 0; k < 3 && nextfield(line, field); ++k)
                if (!field.empty()) at[k] = cards.real(field, "a coordinate");
            if (!space.isempty()) at = place(at);
            int n = nodes.find(number);
            if (n != 0) {
                found.report.warn("Nodes defined again; the later place holds", cards.line());
                found.report.about(reportitems::nodes, n);
                found.nodes[std::size_t(n) - 1] = at;
            } else {
                n = found.addnode(at);
                nodes.put(number, n);
                found.nodenumbers.push_back(number);
                if (space.hasinstances()) nameinstance(number);
            }
            if (set != nullptr) set->push_back(n);
        }
    }

    std::vector<int>* setof(deckspaces::itemsets& sets, std::string_view name) {
        return name.empty() ? nullptr : &sets[space.whole(name)];
    }
    // Numbers come again from instance to instance: names tell them apart.
    void nameinstance(long number) {
        for (std::size_t n = found.nodenames.size(); n + 1 < found.nodes.size(); ++n)
            found.nodenames.push_back(numbertext(found.nodenumbers[n]));
        found.nodenames.push_back(space.nodename(number));
    }

    void readelements(const deckcard& card) {
        const std::string type = uppercase(card.value("TYPE"));
        const deckkind* const kind = findkind(type);
        if (uppercase(card.value("ELSET")).starts_with(footset)) return skipfeet();
        std::vector<int>* const set = setof(space.elementsets, card.value("ELSET"));
        numbertable &nodes = space.nodes(), &elements = space.elements();
        int order = int(orderofsets.size());
        order = set == nullptr ? -1 : orderofsets.try_emplace(set, order).first->second;
        std::string_view line, field;
        while (cards.nextdata(line)) {
            progress();
            if (kind == nullptr) {
                found.report.skipped("Elements of type " + type, cards.line());
                nextfield(line, field);
                elements.put(cards.whole(field, "the number of an element"), leftout);
                while (line.ends_with(',') && cards.nextdata(line)) {
                }
                haslost = true;
                continue;
            }
            nextfield(line, field);
            const long number = cards.whole(field, "the number of an element");
            std::array<int, 4> corners{};
            bool whole = true;
            for (int c = 0; c < kind->nodes; ++c) {
                if (line.empty() && !cards.nextdata(line)) {
                    fault("Element " + numbertext(number) + " has too few nodes");
                    whole = false;
                    break;
                }
                nextfield(line, field);
                const long n = cards.whole(field, "the number of a node");
                // Bars of three nodes have the second in their middle, faces have theirs behind.
                const bool isbar = kind->nodes == 3 && kind->corners == 2;
                const int place = isbar ? c / 2 : c;
                if (isbar ? c == 1 : c >= kind->corners) continue;
                corners[std::size_t(place)] = nodes.find(n);
                if (corners[std::size_t(place)] != 0 || !whole) continue;
                fault("Element " + numbertext(number) + " uses node " + numbertext(n) +
                      ", which is not defined");
                whole = false;
            }
            if (!whole) continue;
            if (elements.find(number) != 0) {
                fault("Element " + numbertext(number) + " is defined again");
                continue;
            }
            const int e = found.addelement(kind->type, corners);
            elements.put(number, e);
            found.elementnumbers.push_back(number);
            planes.push_back(kind->plane);
            owner.push_back(order);
            if (kind->nodes != kind->corners) {
                found.report.changed("Elements of second order became straight ones", 1,
                                     cards.line());
                found.report.about(reportitems::elements, e);
                haslost = true;
            }
            if (set != nullptr) set->push_back(e);
        }
        if (set != nullptr && setnames.size() < orderofsets.size())
            setnames.push_back(space.named(toutf8(card.value("ELSET"))));
    }

    void skipfeet() {
        std::string_view line;
        while (cards.nextdata(line))
            found.report.skipped("Feet of clamped ends, which carry nothing", cards.line());
        haslost = true;
    }

    // Members are numbers or the names of sets.
    void readset(const deckcard& card) {
        const bool ofnodes = card.keyword == "NSET";
        auto& sets = ofnodes ? space.nodesets : space.elementsets;
        const std::string setname = space.whole(card.value(ofnodes ? "NSET" : "ELSET"));
        if (!space.look(card.value("INSTANCE")))
            fault("Instance " + shown(card.value("INSTANCE")) + " is not defined");
        const numbertable& table = ofnodes ? space.nodes() : space.elements();
        std::vector<int> members;
        if (ofnodes && card.has("ELSET")) nodesofset(card.value("ELSET"), members);
        std::string_view line, field;
        while (cards.nextdata(line)) {
            progress();
            if (card.has("GENERATE")) {
                const auto f = cards.fields(line);
                const long first = f.empty() ? 0 : cards.whole(f[0], "a number");
                const long last = f.size() > 1 ? cards.whole(f[1], "a number") : first;
                const long by = f.size() > 2 ? cards.whole(f[2], "a number") : 1;
                const long most = 100000000;
                if (by < 1 || last - first > most) cards.fail("a range of numbers without end");
                for (long i = first; i <= last; i += by)
                    if (const int item = table.find(i); item > 0) members.push_back(item);
                continue;
            }
            while (nextfield(line, field)) {
                int item = 0;
                if (field.empty()) continue;
                if (!space.numbered(field, ofnodes, item))
                    append(members, sets, field);
                else if (item > 0)
                    members.push_back(item);
                else if (item != leftout)
                    fault((ofnodes ? "Node " : "Element ") + std::string(field) + " of set " +
                          setname + " is not defined");
            }
        }
        space.lookback();
        auto& set = sets[setname];
        set.insert(set.end(), members.begin(), members.end());
    }
    void nodesofset(std::string_view name, std::vector<int>& nodes) {
        std::vector<int> elements;
        append(elements, space.elementsets, name);
        for (const int e : elements)
            for (const int n : found.elements[std::size_t(e) - 1].corners)
                if (n != 0) nodes.push_back(n);
        std::ranges::sort(nodes);
        nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
    }
    void append(std::vector<int>& members, const deckspaces::itemsets& sets,
                std::string_view name) {
        const std::vector<int>* const set = space.find(sets, name);
        const std::size_t most = 100000000;
        if (set == nullptr)
            fault("Set " + shown(name) + " is not defined");
        else if (members.size() + set->size() > most)
            cards.fail("the sets name more items than a model holds");
        else
            members.insert(members.end(), set->begin(), set->end());
    }
    // The items that a data line begins with: one by its number, or those of a set.
    std::vector<int> itemsof(std::string_view field, bool ofnodes) {
        std::vector<int> list;
        int item = 0;
        if (!space.numbered(field, ofnodes, item))
            append(list, ofnodes ? space.nodesets : space.elementsets, field);
        else if (item > 0)
            list.push_back(item);
        else if (item != leftout)
            fault((ofnodes ? "Node " : "Element ") + std::string(field) + " is not defined");
        return list;
    }

    // --- materials and sections ---

    void beginmaterial(const deckcard& card) { materials.begin(card); }
    void readelastic(const deckcard& card) { materials.readelastic(card, cards, found.report); }
    void readdensity(const deckcard&) { materials.readdensity(cards); }
    void readsection(const deckcard& card) {
        decksection s{card, space.whole(card.value("ELSET")), space.part(), {}, {}};
        if (card.has("COMPOSITE")) {
            readlayers(s);
            return sections.push_back(std::move(s));
        }
        std::string_view line;
        const bool isspring = card.keyword == "SPRING";
        if (cards.nextdata(line)) s.numbers = cards.numbers(line);
        // A spring tells its freedoms before its stiffness.
        if (cards.nextdata(line)) s.direction = cards.numbers(line);
        if (!space.isempty() && s.direction.size() >= 3 && !isspring) turn(s.direction);
        if (isspring) std::swap(s.numbers, s.direction);
        sections.push_back(std::move(s));
    }

    void turn(std::vector<double>& direction) const {
        const placement& place = space.place();
        const triple end = place({direction[0], direction[1], direction[2]});
        for (std::size_t k = 0; k < 3; ++k) direction[k] = end[k] - place.origin[k];
    }

    // A layer a line: thickness, points, material. Layers of different materials have no place in a
    // group.
    void readlayers(decksection& s) {
        double thickness = 0;
        std::string_view line;
        while (cards.nextdata(line)) {
            const auto f = cards.fields(line);
            thickness += f.empty() ? 0 : cards.real(f[0], "the thickness of a layer");
            if (f.size() > 2 && !s.card.has("MATERIAL"))
                s.card.parameters.emplace("MATERIAL", f[2]);
        }
        s.numbers = {thickness};
        found.report.changed("Sections of layers became one layer of the first one's material", 1,
                             s.card.line);
    }

    void usesection(const decksection& s) {
        if (s.set.starts_with(footset)) return;
        const auto set = space.elementsets.find(s.set);
        if (set == space.elementsets.end()) {
            found.report.error("*" + s.card.keyword + " names the set " +
                                   shown(s.card.value("ELSET")) + ", which is not defined",
                               s.card.line);
            return;
        }
        const int g = found.groupof(groupname(s, set->second));
        auto& fields = found.group(g).fields;
        useshape(s, found.group(g), found.report);
        materials.use(s, fields, found.report);
        for (const int e : set->second) {
            importedelement& element = found.elements[std::size_t(e) - 1];
            element.group = g;
            if (const int plane = planes[std::size_t(e) - 1]; plane >= 0)
                fields[fieldplane] = plane;
            if (element.type == typebeam) {
                triple towards = {0, 0, -1};  // where the deck tells nothing
                if (s.direction.size() >= 3) std::copy_n(s.direction.begin(), 3, towards.begin());
                found.orientations.push_back({e, 2, towards});
            }
        }
    }
    // Beams that were defined in one set and differ in nothing but their direction are one group,
    // by the name of that set.
    std::string groupname(const decksection& s, const std::vector<int>& members) {
        const std::string set = toutf8(s.card.value("ELSET"));
        const std::string own = s.part.empty() ? set : s.part + " " + set;
        if (!s.card.keyword.starts_with("BEAM") || members.empty()) return own;
        const int first = owner[std::size_t(members.front()) - 1];
        for (const int e : members)
            if (owner[std::size_t(e) - 1] != first) return own;
        if (first < 0) return own;
        std::string key =
            uppercase(s.card.value("MATERIAL")) + "," + uppercase(s.card.value("SECTION"));
        for (const double number : s.numbers) key += "," + numbertext(number);
        const auto at = sectionofset.try_emplace(first, key).first;
        return at->second == key ? setnames[std::size_t(first)] : own;
    }
    // What no section names is a group by the set that it was defined in.
    void makegroups() {
        for (std::size_t e = 0; e < found.elements.size(); ++e)
            if (found.elements[e].group == 0 && owner[e] >= 0)
                found.elements[e].group = found.groupof(setnames[std::size_t(owner[e])]);
        if (haslost) dropunused(found);
    }

    // --- constraints and loads ---

    void readboundary(const deckcard&) {
        std::string_view line;
        while (cards.nextdata(line)) {
            const auto f = cards.fields(line);
            if (f.size() < 2) {
                fault("*BOUNDARY needs a node and a freedom");
                continue;
            }
            static const std::map<std::string, std::vector<long>> words = {
                {"ENCASTRE", {1, 6}},
                {"PINNED", {1, 3}},
                {"XSYMM", {1, 1, 5, 6}},
                {"YSYMM", {2, 2, 4, 4, 6, 6}},
                {"ZSYMM", {3, 3, 4, 5}}};
            std::vector<long> ranges;
            const auto word = words.find(uppercase(f[1]));
            if (word != words.end()) {
                ranges = word->second;
            } else {
                ranges = {cards.whole(f[1], "a freedom"), 0};
                ranges[1] =
                    f.size() > 2 && !f[2].empty() ? cards.whole(f[2], "a freedom") : ranges[0];
            }
            const double value = f.size() > 3 && !f[3].empty() ? cards.real(f[3], "a value") : 0;
            for (std::size_t r = 0; r + 1 < ranges.size(); r += 2)
                constrain(f[0], ranges[r], ranges[r + 1], value);
        }
    }
    // What this program wrote as shells.
    void membranesagain() {
        for (std::size_t e = 0; e < found.elements.size(); ++e) {
            int& type = found.elements[e].type;
            if (type != typeshell3 && type != typeshell4) continue;
            type = type == typeshell3 ? typememb3 : typememb4;
            planes[e] = 0;
        }
    }
    void constrain(std::string_view item, long first, long last, double value) {
        if (item == planeset) return;
        if (first < 1 || last > 6)
            found.report.skipped("Freedoms beyond 6 in *BOUNDARY", cards.line());
        for (const int n : itemsof(item, true))
            for (long dof = std::max(first, 1L); dof <= std::min(last, 6L); ++dof)
                found.constraints.push_back({n, int(dof), dof > 3 ? value * 180 / pi : value});
    }
    // Loads stay from step to step until OP=NEW takes all of their kind away.
    void begincards(const deckcard& card, activeloads& loads) {
        if (sameword(card.value("OP"), "NEW") && cleared.insert(&loads).second) loads.clear();
    }
    void readcload(const deckcard& card) {
        begincards(card, forces);
        std::string_view line;
        while (cards.nextdata(line)) {
            const auto f = cards.fields(line);
            if (f.size() < 3) {
                fault("*CLOAD needs node, freedom and value");
                continue;
            }
            const long dof = cards.whole(f[1], "a freedom");
            const double value = cards.real(f[2], "a value");
            if (dof < 1 || dof > 6) {
                fault("Freedom " + numbertext(dof) + " has no force");
                continue;
            }
            for (const int n : itemsof(f[0], true)) put(forces, n, int(dof), value);
        }
    }
    // Told again in a later step it takes the place of what was; within a step it adds up.
    void put(activeloads& loads, int item, int dof, double value) {
        const bool isnew = touched.insert({&loads, {item, dof}}).second;
        double& at = loads[{item, dof}];
        at = isnew ? value : at + value;
    }
    void readdload(const deckcard& card) {
        begincards(card, pressures);
        if (sameword(card.value("OP"), "NEW") && cleared.insert(nullptr).second) gravity = {};
        std::string_view line;
        while (cards.nextdata(line)) {
            const auto f = cards.fields(line);
            if (f.size() < 3) {
                fault("*DLOAD needs element, kind and value");
                continue;
            }
            const std::string kind = uppercase(f[1]);
            const double value = cards.real(f[2], "a value");
            if (kind == "GRAV" && f.size() >= 6) {
                for (std::size_t k = 0; k < 3; ++k)
                    gravity[k] = value * cards.real(f[k + 3], "a direction");
                continue;
            }
            if (kind != "P") {
                found.report.skipped("*DLOAD of the kind " + kind, cards.line());
                continue;
            }
            for (const int e : itemsof(f[0], false)) press(e, value, "*DLOAD P on lines");
        }
    }

    // Faces of a surface, each side on its own: a pressure pushes against them.
    void readsurface(const deckcard& card) {
        const std::string type = uppercase(card.value("TYPE"));
        if (!type.empty() && type != "ELEMENT")
            return found.report.skipped("*SURFACE of TYPE=" + type, card.line);
        auto& faces = surfaces[uppercase(card.value("NAME"))];
        std::string_view line;
        while (cards.nextdata(line)) {
            const auto f = cards.fields(line);
            const std::string side = f.size() > 1 ? uppercase(f[1]) : "SPOS";
            if (side != "SPOS" && side != "SNEG")
                found.report.skipped("Faces of a surface other than SPOS and SNEG", cards.line());
            else
                for (const int e : itemsof(f[0], false))
                    faces.push_back({e, side == "SPOS" ? -1 : 1});
        }
    }
    void readdsload(const deckcard& card) {
        begincards(card, pressures);
        std::string_view line;
        while (cards.nextdata(line)) {
            const auto f = cards.fields(line);
            if (f.size() < 3 || uppercase(f[1]) != "P") {
                found.report.skipped("*DSLOAD other than P", cards.line());
                continue;
            }
            const auto at = surfaces.find(uppercase(f[0]));
            if (at == surfaces.end()) {
                fault("Surface " + shown(f[0]) + " is not defined");
                continue;
            }
            const double value = cards.real(f[2], "a value");
            for (const auto& [e, side] : at->second) press(e, side * value, "*DSLOAD P on lines");
        }
    }
    void press(int e, double value, const char* onlines) {
        if (found.elements[std::size_t(e) - 1].corners[2] == 0)
            found.report.skipped(onlines, cards.line());
        else
            put(pressures, e, 3, value);
    }

    // --- steps ---

    void notefrequency(const deckcard&) { isfrequency = true; }
    void beginstep(const deckcard& card) {
        if (instep) endstep();
        instep = true;
        isfrequency = false;
        stepname = toutf8(card.value("NAME"));
        cleared.clear();
        touched.clear();
    }
    void closestep(const deckcard&) {
        if (instep) endstep();
    }
    void endstep() {
        instep = false;
        ++steps;
        if (isfrequency) return found.report.skipped("Steps of *FREQUENCY, which have no loads");
        importedcase c;
        if (stepname.empty()) stepname = "Step " + numbertext(steps);
        c.name = stepname;
        for (const auto& [at, value] : forces) c.nodal.push_back({at.first, at.second, value});
        for (const auto& [at, value] : pressures)
            c.onelements.push_back({at.first, at.second, value});
        if (!c.nodal.empty() || !c.onelements.empty()) found.cases.push_back(c);
        // Weight is a case of its own kind, an axis each.
        for (std::size_t k = 0; k < 3; ++k) {
            if (gravity[k] == 0) continue;
            importedcase weight;
            weight.name = stepname + " gravity " + "xyz"[k];
            weight.type = caseaccx + int(k);
            weight.hasparameters = true;
            weight.parameters = {gravity[k], 0, 0, 0, 1};
            found.cases.push_back(weight);
        }
    }

    void tell() {
        if (space.hasinstances()) countinstances();
        tellread(found);
        if (steps > 0) found.report.read("Steps", steps);
    }

    // The numbers of the file are none of the model where they come again.
    void countinstances() {
        std::iota(found.nodenumbers.begin(), found.nodenumbers.end(), 1L);
        std::iota(found.elementnumbers.begin(), found.elementnumbers.end(), 1L);
        if (found.nodenames.size() != found.nodes.size()) found.nodenames.clear();
    }

    static constexpr int leftout = -1;  // an element that was told as skipped

    deckcards cards;
    std::string name;
    imported& found;
    deckspaces space;
    std::map<std::string, deckdraft> parts;
    std::map<std::string, std::vector<std::pair<int, int>>> surfaces;  // element, -1 or 1
    std::map<const std::vector<int>*, int> orderofsets;
    std::vector<std::string> setnames;  // by that order
    std::vector<int> planes, owner;     // of each element
    deckmaterials materials;
    std::vector<decksection> sections;
    std::map<int, std::string> sectionofset;  // what the first section over each set tells
    activeloads forces, pressures;
    triple gravity{};
    std::set<const activeloads*> cleared;
    std::set<std::pair<const activeloads*, std::pair<int, int>>> touched;
    bool instep = false, haslost = false, isfrequency = false;
    std::string stepname;
    long steps = 0, seen = 0;
};

}  // namespace

void readdeck(const std::string& path, imported& found) {
    deckreader(path, found).read();
}
