// SPDX-License-Identifier: GPL-3.0-or-later
// Meaning of the cards.
#include "exchange/bulkdata.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <unordered_map>

#include "core/catalogue.h"
#include "core/numtext.h"
#include "core/session.h"
#include "exchange/bulkcards.h"
#include "exchange/placement.h"
#include "exchange/shapes.h"

bool isbulkdata(std::string_view head) {
    static const char* const names[] = {"BEGIN", "GRID", "CEND", "SOL", "MAT1", "CQUAD4", "CTRIA3"};
    textlines in(std::string(head), "");
    std::string_view line;
    while (in.next(line)) {
        const std::string first =
            uppercase(line.substr(0, std::min(line.find_first_of(" ,*\t"), line.size())));
        for (const char* name : names)
            if (first == name) return true;
    }
    return false;
}

namespace {

// A load of a set, before it is known which case takes it.
struct setload {
    bool onelement = false;
    importedrow row;
};
struct loadset {
    std::vector<setload> loads;
    triple gravity{};
    std::vector<std::pair<double, long>> parts;  // of LOAD: factor and set
};
struct subcase {
    std::string name;
    long load = 0;
};

class bulkreader {
  public:
    bulkreader(const std::string& path, imported& into) : cards(path), name(path), found(into) {}

    void read() {
        bulkcard card;
        found.isconsistent = true;
        const long look = 16384;  // cards between two looks at the clock
        for (long seen = 1; cards.next(card); ++seen) {
            if (seen % look == 0) readingprogress(name, cards.share() / 2);
            if (cards.incontrol())
                control(card);
            else
                keep(card);
        }
        for (const char* stage : {"CORD2R", "CORD2C", "CORD2S", "GRDSET", "SPCADD", "GRID", "MAT1",
                                  "PROD", "PBAR", "PBARL", "PBEAM", "PSHELL"})
            run(stage);
        for (const char* stage : {"CROD", "CONROD", "CBAR", "CBEAM", "CTRIA3", "CTRIAR", "CTRIA6",
                                  "CQUAD4", "CQUADR", "CQUAD8", "CQUAD9", "CQUAD", "CONM2", "RBE2"})
            run(stage);
        for (const char* stage :
             {"SPC", "SPC1", "FORCE", "MOMENT", "PLOAD2", "PLOAD4", "GRAV", "LOAD"})
            run(stage);
        makecases();
        if (hasmiddles) dropunused(found);
        tell();
    }

  private:
    using reader = void (bulkreader::*)(const bulkcard&);
    static const std::map<std::string, reader, std::less<>>& readers() {
        static const std::map<std::string, reader, std::less<>> table = {
            {"CORD2R", &bulkreader::system},
            {"CORD2C", &bulkreader::system},
            {"CORD2S", &bulkreader::system},
            {"GRDSET", &bulkreader::gridsdefault},
            {"SPCADD", &bulkreader::constraintsum},
            {"GRID", &bulkreader::grid},
            {"MAT1", &bulkreader::material},
            {"PROD", &bulkreader::rodproperty},
            {"PBAR", &bulkreader::barproperty},
            {"PBARL", &bulkreader::shapeproperty},
            {"PBEAM", &bulkreader::barproperty},
            {"PSHELL", &bulkreader::shellproperty},
            {"CROD", &bulkreader::rod},
            {"CONROD", &bulkreader::rodofmaterial},
            {"CBAR", &bulkreader::bar},
            {"CBEAM", &bulkreader::bar},
            {"CTRIA3", &bulkreader::triangle},
            {"CTRIAR", &bulkreader::triangle},
            {"CTRIA6", &bulkreader::triangle},
            {"CQUAD4", &bulkreader::quadrilateral},
            {"CQUADR", &bulkreader::quadrilateral},
            {"CQUAD8", &bulkreader::quadrilateral},
            {"CQUAD9", &bulkreader::quadrilateral},
            {"CQUAD", &bulkreader::quadrilateral},
            {"CONM2", &bulkreader::mass},
            {"RBE2", &bulkreader::rigid},
            {"SPC", &bulkreader::constraint},
            {"SPC1", &bulkreader::constraints},
            {"FORCE", &bulkreader::force},
            {"MOMENT", &bulkreader::force},
            {"PLOAD2", &bulkreader::pressure},
            {"PLOAD4", &bulkreader::cornerpressure},
            {"GRAV", &bulkreader::gravity},
            {"LOAD", &bulkreader::combination}};
        return table;
    }

    // Cards of one kind mostly stand together.
    void keep(const bulkcard& card) {
        static const std::set<std::string, std::less<>> silent = {"PARAM", "ENDDATA"};
        if (places == nullptr || card.name != lastname) {
            lastname = card.name;
            places = readers().contains(card.name) ? &kept[card.name] : nullptr;
        }
        if (places != nullptr) {
            places->push_back(cards.place());
            ++total;
        } else if (!silent.contains(card.name)) {
            found.report.skipped("Card " + card.name, card.line);
        }
    }
    void run(const char* stage) {
        const long look = 16384;  // cards between two looks at the clock
        const auto at = kept.find(stage);
        if (at == kept.end()) return;
        const reader take = readers().find(stage)->second;
        bulkcard card;
        card.name = stage;
        for (const cardplace& place : at->second) {
            if (++done % look == 0) readingprogress(name, 0.5 + 0.5 * double(done) / double(total));
            cards.fill(place, card);
            (this->*take)(card);
        }
        kept.erase(at);
    }
    void fault(const bulkcard& card, const std::string& text) {
        found.report.error(text, card.line);
    }

    void control(const bulkcard& card) {
        if (card.name == "SUBCASE") cases.push_back({"Subcase " + std::string(card.text(1)), 0});
        if (card.name == "SPC") chosenspc = card.whole(1);
        if (card.name != "LOAD") return;
        if (cases.empty()) cases.push_back({"Load", 0});
        cases.back().load = card.whole(1);
    }

    // --- systems and grids ---

    // Axes, and what the three numbers of a place are: x y z, or radius, angles and z.
    struct coordinates {
        placement stand;
        char kind = 'R';  // rectangular, cylindrical, spherical
        triple operator()(const triple& p) const {
            const double a = p[1] * pi / 180, b = p[2] * pi / 180;
            if (kind == 'C') return stand({p[0] * std::cos(a), p[0] * std::sin(a), p[2]});
            if (kind == 'S')
                return stand({p[0] * std::sin(a) * std::cos(b), p[0] * std::sin(a) * std::sin(b),
                              p[0] * std::cos(a)});
            return stand(p);
        }
    };
    // Origin, a point on the z axis and one in the plane of x and z, in another system.
    void system(const bulkcard& card) {
        const coordinates in = systemof(card, card.whole(2));
        const auto at = [&](std::size_t i) {
            return in({card.real(i), card.real(i + 1), card.real(i + 2)});
        };
        const triple a = at(3), b = at(6), c = at(9);
        triple z, x;
        for (std::size_t k = 0; k < 3; ++k) {
            z[k] = b[k] - a[k];
            x[k] = c[k] - a[k];
        }
        placement p = extruded(z);  // z is unit then
        z = p.axes[2];
        double along = 0;
        for (std::size_t k = 0; k < 3; ++k) along += x[k] * z[k];
        double length = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            x[k] -= along * z[k];
            length += x[k] * x[k];
        }
        if (!(length > 0))
            return fault(card, "System " + numbertext(card.whole(1)) + " has no plane");
        for (double& v : x) v /= std::sqrt(length);
        p.axes = {x,
                  {z[1] * x[2] - z[2] * x[1], z[2] * x[0] - z[0] * x[2], z[0] * x[1] - z[1] * x[0]},
                  z};
        p.origin = a;
        systems[card.whole(1)] = {p, card.name.back()};
    }
    coordinates systemof(const bulkcard& card, long number) {
        if (number == 0) return {};
        const auto at = systems.find(number);
        if (at != systems.end()) return at->second;
        fault(card, "System " + numbertext(number) + " is not defined; the global one was taken");
        return {};
    }
    // The directions of round systems differ from place to place: those of their axes are taken.
    triple turned(const bulkcard& card, long system, const triple& direction) {
        const coordinates in = systemof(card, system);
        if (in.kind != 'R')
            fault(card, card.name + " in the round system " + numbertext(system) +
                            "; its x, y and z were taken");
        triple at = in.stand(direction);
        for (std::size_t k = 0; k < 3; ++k) at[k] -= in.stand.origin[k];
        return at;
    }
    void gridsdefault(const bulkcard& card) {
        gridsystem = card.whole(2);
        gridfreedoms = card.text(7);
        if (card.whole(6) != 0) found.report.skipped("GRDSET of displacements", card.line);
    }
    void grid(const bulkcard& card) {
        const long number = card.whole(1);
        if (nodes.find(number) != 0)
            return fault(card, "Grid " + numbertext(number) + " is defined again");
        const triple at = {card.real(3), card.real(4), card.real(5)};
        const long system = card.whole(2, gridsystem);
        nodes.put(number, found.addnode(system == 0 ? at : systemof(card, system)(at)));
        found.nodenumbers.push_back(number);
        if (card.whole(6) != 0) {
            found.report.warn(
                "Grids with a system of their own for displacements; constraints are "
                "taken as global",
                card.line);
            found.report.about(reportitems::nodes, int(found.nodes.size()));
        }
        constrain(card, number, card.has(7) ? card.text(7) : std::string_view(gridfreedoms), 0);
    }
    int node(const bulkcard& card, long number) {
        const int n = nodes.find(number);
        if (n == 0)
            fault(card, card.name + " uses grid " + numbertext(number) + ", which is not defined");
        return n;
    }

    // --- properties ---

    void material(const bulkcard& card) {
        importedgroup m;
        const double e = card.real(2), g = card.real(3);
        m.fields[fieldmodulus] = e;
        m.fields[fieldpoisson] = card.has(4) ? card.real(4) : g > 0 ? e / (2 * g) - 1 : 0;
        m.fields[fielddensity] = card.real(5);
        materials[card.whole(1)] = m.fields;
    }
    importedgroup& property(const bulkcard& card) {
        const long number = card.whole(1), m = card.whole(2);
        importedgroup& group = found.group(groupof(number));
        if (const auto at = materials.find(m); at != materials.end())
            group.fields = at->second;
        else
            fault(card, "Material " + numbertext(m) + " is not defined");
        return group;
    }
    int groupof(long number) {
        const auto [at, isnew] = groupofproperty.try_emplace(number, 0);
        if (isnew) at->second = found.groupof("Property " + numbertext(number));
        return at->second;
    }
    void rodproperty(const bulkcard& card) {
        auto& fields = property(card).fields;
        fields[fieldthickness] = card.real(3);
        fields[fieldizz] = card.real(4);
    }
    // The first inertia bends in the plane of the orientation, about local axis 3.
    void barproperty(const bulkcard& card) {
        auto& fields = property(card).fields;
        fields[fieldthickness] = card.real(3);
        fields[fieldiyy] = card.real(4);
        fields[fieldixx] = card.real(5);
        fields[fieldizz] = card.real(card.name == "PBEAM" ? 7 : 6);
    }
    void shapeproperty(const bulkcard& card) {
        const std::string shape = uppercase(card.text(4));
        auto& fields = property(card).fields;
        const double a = card.real(9), b = card.real(10), c = card.real(11), d = card.real(12);
        if (shape == "ROD")
            putshape(ellipticbar(2 * a, 2 * a), fields);
        else if (shape == "TUBE")
            putshape(tube(a, a - b), fields);
        else if (shape == "BAR")
            putshape(rectangle(b, a), fields);
        else if (shape == "BOX")
            putshape(hollowbox(b, a, {c, d, c, d}), fields);
        else if (shape == "I" || shape == "CHAN" || shape == "T")
            putshape(openshape(shape, {a, b, c, d, card.real(13), card.real(14)}), fields);
        else
            found.report.skipped("PBARL of the shape " + shape, card.line);
    }
    // Their webs lie along local axis 2, the first of ours.
    static shapevalues openshape(const std::string& shape, const std::array<double, 6>& n) {
        flangedshape f;
        if (shape == "I")
            f = {n[0], n[3], {n[1], n[2]}, {n[4], n[5]}, 0};
        else if (shape == "T")
            f = {n[1], n[3], {0, n[0]}, {0, n[2]}, 0};
        else
            f = {n[1], n[2], {n[0], n[0]}, {n[3], n[3]}, -1};
        shapevalues s = flanged(f);
        std::swap(s.i1, s.i2);
        std::swap(s.depth1, s.depth2);
        return s;
    }
    void shellproperty(const bulkcard& card) {
        property(card).fields[fieldthickness] = card.real(3);
    }

    // --- elements ---

    int element(const bulkcard& card, int type, int count, std::size_t first) {
        std::array<int, 4> corners{};
        for (int c = 0; c < count; ++c)
            if ((corners[std::size_t(c)] = node(card, card.whole(first + std::size_t(c)))) == 0)
                return 0;
        const long number = card.whole(1);
        if (elements.find(number) != 0) {
            fault(card, "Element " + numbertext(number) + " is defined again");
            return 0;
        }
        const int e = found.addelement(type, corners, groupof(card.whole(2, number)));
        elements.put(number, e);
        found.elementnumbers.push_back(number);
        return e;
    }
    void rod(const bulkcard& card) { element(card, typetruss, 2, 3); }
    // A rod of its own material and area: number, two grids, material, area, torsion.
    void rodofmaterial(const bulkcard& card) {
        const int a = node(card, card.whole(2)), b = node(card, card.whole(3));
        const auto m = materials.find(card.whole(4));
        if (m == materials.end())
            fault(card, "Material " + numbertext(card.whole(4)) + " is not defined");
        if (a == 0 || b == 0 || m == materials.end()) return;
        const int g = found.groupof("Rod " + numbertext(card.real(5)) + " of material " +
                                    std::string(card.text(4)));
        auto& fields = found.group(g).fields;
        fields = m->second;
        fields[fieldthickness] = card.real(5);
        fields[fieldizz] = card.real(6);
        elements.put(card.whole(1), found.addelement(typetruss, {a, b, 0, 0}, g));
        found.elementnumbers.push_back(card.whole(1));
    }
    void triangle(const bulkcard& card) { face(card, typeshell3, 3); }
    void quadrilateral(const bulkcard& card) { face(card, typeshell4, 4); }
    void face(const bulkcard& card, int type, int corners) {
        const int e = element(card, type, corners, 3);
        if (e == 0) return;
        const char last = card.name.back();
        if (last != '6' && last != '8' && last != '9' && last != 'D') return;
        found.report.changed("Elements of second order became straight ones", 1, card.line);
        found.report.about(reportitems::elements, e);
        hasmiddles = true;
    }
    // A vector or a grid tells where local axis 2 looks; pins are freedoms of the ends.
    void bar(const bulkcard& card) {
        const int e = element(card, typebeam, 2, 3);
        if (e == 0) return;
        triple towards = {card.real(5), card.real(6), card.real(7)};
        const bool isgrid = card.has(5) && !card.has(6) && !card.has(7) &&
                            card.text(5).find('.') == std::string_view::npos;
        if (isgrid) {
            const int n = node(card, card.whole(5));
            if (n == 0) return;
            const triple from = found.nodes[std::size_t(found.elements.back().corners[0]) - 1];
            for (std::size_t k = 0; k < 3; ++k)
                towards[k] = found.nodes[std::size_t(n) - 1][k] - from[k];
        }
        found.orientations.push_back({e, 2, towards});
        for (int end = 1; end <= 2; ++end)
            for (const char c : card.text(8 + std::size_t(end)))
                if (c >= '1' && c <= '6') found.releases.push_back({e, end, c - '0'});
        for (std::size_t i = 11; i <= 16; ++i)
            if (card.real(i) != 0) {
                found.report.warn("Offsets of bars; they stand between their grids", card.line);
                found.report.about(reportitems::elements, e);
                break;
            }
    }
    void mass(const bulkcard& card) {
        const int n = node(card, card.whole(2));
        if (n == 0) return;
        const double value = card.real(4);
        const int g = found.groupof("Mass " + numbertext(value));
        found.group(g).fields[fielddensity] = value;
        for (const int k : {fieldixx, fieldiyy, fieldizz})
            found.group(g).fields[std::size_t(k)] = 0;
        found.addelement(typemass, {n, 0, 0, 0}, g);
        found.elementnumbers.push_back(card.whole(1));
        if (card.real(5) != 0 || card.real(6) != 0 || card.real(7) != 0) {
            found.report.warn("Offsets of masses; they stand at their grids", card.line);
            found.report.about(reportitems::nodes, n);
        }
        if (card.real(9) != 0) found.report.skipped("Inertias of CONM2", card.line);
    }
    void rigid(const bulkcard& card) {
        const int leader = node(card, card.whole(2));
        if (card.text(3) != "123456")
            return found.report.skipped("RBE2 of some freedoms alone", card.line);
        if (leader == 0) return;
        for (const long number : list(card, 4)) {
            const int n = node(card, number);
            if (n == 0 || n == leader) continue;
            found.addelement(typerigid, {leader, n, 0, 0}, found.groupof("RBE2"));
            found.elementnumbers.push_back(card.whole(1));
        }
    }
    // Numbers, with "a THRU b" between; a real at the end is a coefficient of expansion.
    std::vector<long> list(const bulkcard& card, std::size_t first) {
        std::vector<long> numbers;
        for (std::size_t i = first; i < card.fields.size(); ++i) {
            if (!card.has(i)) continue;
            if (card.text(i).find('.') != std::string_view::npos) continue;
            if (sameword(card.text(i), "EXCEPT")) {
                while (++i < card.fields.size() && !sameword(card.text(i + 1), "THRU"))
                    if (card.has(i)) std::erase(numbers, card.whole(i));
                --i;
                continue;
            }
            if (!sameword(card.text(i), "THRU")) {
                numbers.push_back(card.whole(i));
                continue;
            }
            const long last = card.whole(++i), most = 10000000;
            const bool hasstep = sameword(card.text(i + 1), "BY");
            const long step = hasstep ? card.whole(i + 2) : 1;
            if (hasstep) i += 2;
            if (numbers.empty() || last - numbers.back() > most || step < 1)
                card.in->failat(card.line, "a range of numbers without end");
            for (long n = numbers.back() + step; n <= last; n += step) numbers.push_back(n);
        }
        return numbers;
    }

    // --- constraints and loads ---

    void constrain(const bulkcard& card, long number, std::string_view freedoms, double value) {
        if (freedoms.empty() || freedoms == "0") return;
        const int n = node(card, number);
        for (const char c : freedoms)
            if (n != 0 && c >= '1' && c <= '6')
                found.constraints.push_back({n, c - '0', c > '3' ? value * 180 / pi : value});
    }
    bool isspcchosen(const bulkcard& card) {
        if (chosenspc == 0 || card.whole(1) == chosenspc || summed.contains(card.whole(1)))
            return true;
        found.report.skipped(card.name + " of other sets than the one chosen", card.line);
        return false;
    }
    // A set that is the sum of others.
    void constraintsum(const bulkcard& card) {
        if (card.whole(1) != chosenspc) return;
        for (const long set : list(card, 2)) summed.insert(set);
    }
    void constraint(const bulkcard& card) {
        if (!isspcchosen(card)) return;
        for (const std::size_t i : {2, 5})
            if (card.has(i)) constrain(card, card.whole(i), card.text(i + 1), card.real(i + 2));
    }
    void constraints(const bulkcard& card) {
        if (!isspcchosen(card)) return;
        const bool israngeed = sameword(card.text(4), "THRU");
        for (const long n : list(card, 3))
            if (!israngeed || nodes.find(n) != 0) constrain(card, n, card.text(2), 0);
    }
    void force(const bulkcard& card) {
        const int n = node(card, card.whole(2));
        if (n == 0) return;
        const triple direction =
            turned(card, card.whole(3), {card.real(5), card.real(6), card.real(7)});
        const int first = card.name == "MOMENT" ? 4 : 1;
        for (std::size_t k = 0; k < 3; ++k)
            if (const double value = card.real(4) * direction[k]; value != 0)
                sets[card.whole(1)].loads.push_back({false, {n, first + int(k), value}});
    }
    void press(const bulkcard& card, long number, double value) {
        const int e = elements.find(number);
        if (e == 0 || found.elements[std::size_t(e) - 1].corners[2] == 0)
            return fault(card, card.name + " uses element " + numbertext(number) +
                                   ", which is no face or not defined");
        sets[card.whole(1)].loads.push_back({true, {e, 3, value}});
    }
    void pressure(const bulkcard& card) {
        for (const long number : list(card, 3)) press(card, number, card.real(2));
    }
    void cornerpressure(const bulkcard& card) {
        std::vector<double> values;
        for (std::size_t i = 3; i <= 6; ++i) values.push_back(card.real(i, card.real(3)));
        if (std::ranges::any_of(values, [&](double v) { return v != values[0]; }))
            found.report.warn("Pressures that differ at the corners; their mean was taken",
                              card.line);
        const double mean = (values[0] + values[1] + values[2] + values[3]) / 4;
        const long first = card.whole(2),
                   last = sameword(card.text(7), "THRU") ? card.whole(8) : first;
        const long most = 10000000;
        if (last - first > most) card.in->failat(card.line, "a range of numbers without end");
        for (long number = first; number <= last; ++number)
            if (number == first || elements.find(number) != 0) press(card, number, mean);
    }
    void gravity(const bulkcard& card) {
        const triple direction =
            turned(card, card.whole(2), {card.real(4), card.real(5), card.real(6)});
        for (std::size_t k = 0; k < 3; ++k)
            sets[card.whole(1)].gravity[k] += card.real(3) * direction[k];
    }
    void combination(const bulkcard& card) {
        const double whole = card.real(2, 1);
        for (std::size_t i = 3; i + 1 < card.fields.size(); i += 2)
            if (card.has(i + 1))
                sets[card.whole(1)].parts.push_back({whole * card.real(i), card.whole(i + 1)});
    }

    void makecases() {
        if (cases.empty()) {
            std::set<long> used;
            for (const auto& [number, set] : sets)
                for (const auto& [factor, part] : set.parts)
                    if (part != number) used.insert(part);
            for (const auto& [number, set] : sets)
                if (!used.contains(number)) cases.push_back({"Load " + numbertext(number), number});
        }
        for (const subcase& c : cases) {
            if (c.load == 0) continue;
            if (sets.find(c.load) == sets.end()) {
                found.report.error(c.name + " asks for load " + numbertext(c.load) +
                                   ", which is not defined");
                continue;
            }
            importedcase made;
            made.name = c.name;
            triple weight{};
            gather(c.load, 1, made, weight, 0);
            if (!made.nodal.empty() || !made.onelements.empty()) found.cases.push_back(made);
            for (std::size_t k = 0; k < 3; ++k) {
                if (weight[k] == 0) continue;
                importedcase g;
                g.name = c.name + " gravity " + "xyz"[k];
                g.type = caseaccx + int(k);
                g.hasparameters = true;
                g.parameters = {weight[k], 0, 0, 0, 1};
                found.cases.push_back(g);
            }
        }
    }
    void gather(long number, double factor, importedcase& made, triple& weight, int depth) {
        const auto at = sets.find(number);
        const int deepest = 2;  // a LOAD names sets of loads, never another LOAD
        if (at == sets.end() || depth >= deepest) {
            found.report.error("Load " + numbertext(number) + " is not defined, or names itself");
            return;
        }
        for (setload load : at->second.loads) {
            load.row.value *= factor;
            (load.onelement ? made.onelements : made.nodal).push_back(load.row);
        }
        for (std::size_t k = 0; k < 3; ++k) weight[k] += factor * at->second.gravity[k];
        for (const auto& [part, set] : at->second.parts)
            gather(set, factor * part, made, weight, depth + 1);
    }

    void tell() {
        if (found.nodes.empty() && found.elements.empty())
            throw runtimeerror{errtype, name + ": no GRID was found in it"};
        tellread(found);
    }

    bulkcards cards;
    std::string name;
    imported& found;
    std::map<std::string, std::vector<cardplace>, std::less<>> kept;
    std::vector<cardplace>* places = nullptr;  // of the kind that came last
    std::string lastname;
    long total = 0, done = 0;
    std::unordered_map<long, int> groupofproperty;
    numbertable nodes, elements;
    std::map<long, coordinates> systems;
    long gridsystem = 0;       // of grids that tell none
    std::string gridfreedoms;  // that are held of grids that tell none
    std::map<long, std::array<double, groupfields + 1>> materials;
    std::map<long, loadset> sets;
    std::vector<subcase> cases;
    long chosenspc = 0;
    std::set<long> summed;  // sets that the chosen one adds up
    bool hasmiddles = false;
};

}  // namespace

void readbulkdata(const std::string& path, imported& found) {
    bulkreader(path, found).read();
}
