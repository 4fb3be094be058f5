// SPDX-License-Identifier: GPL-3.0-or-later
// Writing of decks. A beam goes out with a node in its middle: the solver's beams are solids
// within, and those with two nodes are too stiff.
#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <map>
#include <set>
#include <vector>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/textfile.h"
#include "exchange/deck.h"
#include "exchange/deckbeam.h"
#include "exchange/importunits.h"
#include "exchange/leftout.h"
#include "exchange/textlines.h"
#include "view/localaxes.h"

namespace {

// The elements of one group and one type: a set of the deck.
struct deckset {
    int group = 1, type = 0;
    std::string name;
    std::vector<int> elements;
};

// Nothing but membranes and bars in the plane z = 0: in space nothing would hold them across it.
bool isflatmodel() {
    for (int n = 1; n <= nnodes(); ++n)
        if (nodes(0, n, 2) != 0) return false;
    for (int e = 1; e <= nelems(); ++e) {
        const int type = int(elems(e, 0));
        const bool isflat = type == typenone || type == typetruss || type == typemass ||
                            type == typememb3 || type == typememb4 || type == typeshear4;
        if (!isflat) return false;
    }
    return true;
}

// Plane stress in nothing but membranes: they go out as shells that are held in the plane. The
// solver makes solids of both, those of its membranes lock where they bend in the plane.
bool allmembranes() {
    for (int e = 1; e <= nelems(); ++e) {
        const int type = int(elems(e, 0)), g = std::clamp(egroup(e), 1, ngroups());
        const bool isone = type == typememb3 || type == typememb4 || type == typeshear4;
        if (!isone && type != typenone && type != typemass) return false;
        if (isone && groups(g, fieldplane) == 1) return false;
    }
    return true;
}

class deckwriter {
  public:
    deckwriter(const std::string& path, textout& target, importreport& lines)
        : title(std::filesystem::path(path).stem().string()),
          out(target),
          report(lines),
          isplane(dim2d || isflatmodel()),
          asshells(isplane && allmembranes()) {}

    void write() {
        out.raw("*HEADING\n").raw(title).raw("\n*NODE, NSET=NALL\n");
        for (int n = 1; n <= nnodes(); ++n)
            node(n, {nodes(0, n, 0), nodes(0, n, 1), nodes(0, n, 2)});
        gather();
        isclamped = nodesheld(dim2d ? 1 : 4);
        for (const deckset& set : sets) writeset(set);
        for (const deckset& set : sets) writesection(set);
        writesprings();
        writeconstraints();
        for (int lc = 1; lc <= nlc(); ++lc) writestep(lc);
        report.read("Nodes", nnodes());
        tellleftout(report, {parts::freenodes, parts::properties, parts::constraints,
                             parts::nodalloads, parts::elementloads, parts::releases});
    }

  private:
    static bool isbeam(int type) { return type == typebeam || type == typepipe; }
    const char* nameof(int type, int g) const {
        const bool strain = groups(g, fieldplane) == 1;
        switch (type) {
            case typetruss:
                return "T3D2";
            case typememb3:
                return asshells ? "S3" : !isplane ? "M3D3" : strain ? "CPE3" : "CPS3";
            case typememb4:
            case typeshear4:
                return asshells ? "S4" : !isplane ? "M3D4" : strain ? "CPE4" : "CPS4";
            case typemass:
                return "MASS";
            case typebeam:
            case typepipe:
                return "B32R";
            case typeshell3:
            case typeplate3:
                return "S3";
            case typeshell4:
            case typeplate4:
                return "S4";
            default:
                return nullptr;  // springs have cards of their own
        }
    }

    // The solver reads twenty characters of a number and no more.
    textout& real(double number) {
        const int digits = 12;
        return out.put(roundedto(number, digits));
    }
    template <typename Value>
    void reals(std::size_t first, std::size_t end, Value value) {
        for (std::size_t k = first; k < end; ++k) {
            out.raw(k > first ? "," : "");
            real(value(k));
        }
    }
    void density(double ofmodel) {
        out.raw("*DENSITY\n");
        real(ofmodel * massunit).raw("\n");
    }
    void node(int number, const std::array<float, 3>& at) {
        out.put(number);
        for (const float v : at) out.raw(",").put(v);
        out.raw("\n");
    }
    static int middleof(int e) { return nnodes() + e; }

    // Letters, digits and _ - as they stand; unlike those of other sets.
    std::string setname(const std::string& name, int type, bool single) {
        std::string result;
        const std::size_t most = 60;
        for (const char c : name) {
            const bool isplain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                                 (c >= '0' && c <= '9') || c == '_' || c == '-';
            if (isplain)
                result += c;
            else if ((c & 0xC0) != 0x80)
                result += '_';
        }
        result.resize(std::min(result.size(), most));
        const bool isletter =
            !result.empty() && ((result[0] | 32) >= 'a' && (result[0] | 32) <= 'z');
        if (!isletter) result = "G" + result;
        if (!single) result += "_" + eltypname(type);
        const std::string stem = result;
        for (int i = 2; !taken.insert(uppercase(result)).second; ++i)
            result = stem + "-" + numbertext(i);
        if (result != name) report.changed("Group " + name + " is the set " + result);
        return result;
    }
    void gather() {
        std::map<std::pair<int, int>, std::vector<int>> sorted;
        std::map<int, int> typesofgroup;
        for (int e = 1; e <= nelems(); ++e) {
            const int type = int(elems(e, 0)), g = std::clamp(egroup(e), 1, ngroups());
            if (nodesoftype(elems(e, 0)) == 0) continue;
            const bool isspring = type == typespring2 || type >= typespringt;
            if (nameof(type, g) == nullptr && !isspring) {
                report.skipped(eltypname(type) + " elements, which a deck has no card for");
                report.about(reportitems::elements, e);
                continue;
            }
            for (int end = 1; end <= 2; ++end)
                for (int dof = 1; dof <= 6; ++dof)
                    if (isbeam(type) && endrelease(e, end, dof) == 1) {
                        report.skipped("End releases; these ends are stiff in the deck");
                        report.about(reportitems::elements, e);
                    }
            sorted[{g, type}].push_back(e);
        }
        for (const auto& [key, list] : sorted) {
            ++typesofgroup[key.first];
            report.read(eltypname(key.second) + " elements", long(list.size()));
        }
        for (auto& [key, list] : sorted)
            sets.push_back({key.first, key.second,
                            setname(groupname(key.first), key.second, typesofgroup[key.first] == 1),
                            std::move(list)});
    }
    static bool isface(int type) {
        return type == typememb3 || type == typememb4 || type == typeshear4;
    }
    // Elements of the plane go round it against the clock, or the deck is refused.
    static bool isclockwise(int e, int elnn) {
        double twice = 0;
        for (int c = 1; c <= elnn; ++c) {
            const long n = long(elems(e, c)), next = long(elems(e, c % elnn + 1));
            twice += double(nodes(0, n, 0)) * nodes(0, next, 1) -
                     double(nodes(0, next, 0)) * nodes(0, n, 1);
        }
        return twice < 0;
    }
    void tell(const deckset& set, const std::string& what, bool isleftout = false) {
        for (const int e : set.elements) {
            isleftout ? report.skipped(what) : report.changed(what);
            report.about(reportitems::elements, e);
        }
    }
    void writeset(const deckset& set) {
        const char* const name = nameof(set.type, set.group);
        if (name == nullptr) return;
        if (isbeam(set.type)) {
            out.raw("*NODE\n");
            for (const int e : set.elements) {
                std::array<float, 3> at;
                for (int k = 0; k < 3; ++k)
                    at[std::size_t(k)] =
                        (nodes(0, long(elems(e, 1)), k) + nodes(0, long(elems(e, 2)), k)) / 2;
                node(middleof(e), at);
            }
        }
        out.raw("*ELEMENT, TYPE=").raw(name).raw(", ELSET=").raw(set.name).raw("\n");
        for (const int e : set.elements) {
            out.put(e);
            const int elnn = nodesoftype(elems(e, 0));
            const bool isturned = isplane && isface(set.type) && isclockwise(e, elnn);
            for (int c = 1; c <= elnn; ++c) {
                if (c == 2 && isbeam(set.type)) out.raw(",").put(middleof(e));
                out.raw(",").put(int(elems(e, isturned ? elnn + 1 - c : c)));
            }
            out.raw("\n");
        }
        if (set.type == typeplate3 || set.type == typeplate4)
            tell(set, "PLATE elements are shells in the deck, which membrane forces stiffen too");
        if (set.type == typeshear4) tell(set, "SHEAR4 elements are membranes in the deck");
        if (isbeam(set.type))
            tell(
                set,
                "Beams are rectangles or tubes of the same area, inertias and torsion in the deck, "
                "without Poisson's contraction");
    }

    void writematerial(const deckset& set) {
        const int g = set.group;
        out.raw("*MATERIAL, NAME=M_").raw(set.name).raw("\n*ELASTIC\n");
        real(groups(g, fieldmodulus)).raw(",");
        real(groups(g, fieldpoisson)).raw("\n");
        if (groups(g, fielddensity) > 0) density(groups(g, fielddensity));
    }
    void section(const char* keyword, const deckset& set) {
        out.raw("*").raw(keyword).raw(", ELSET=").raw(set.name).raw(", MATERIAL=M_").raw(set.name);
    }
    void writesection(const deckset& set) {
        const int g = set.group;
        if (set.type == typemass) {
            out.raw("*MASS, ELSET=").raw(set.name).raw("\n");
            real(groups(g, fielddensity) * massunit).raw("\n");
            if (groups(g, fieldixx) != 0 || groups(g, fieldiyy) != 0 || groups(g, fieldizz) != 0)
                tell(set, "Rotary inertias of MASS elements", true);
            return;
        }
        if (nameof(set.type, g) == nullptr) return;
        if (isbeam(set.type)) return writebeams(set);
        writematerial(set);
        const bool isshell = set.type >= typeshell3 || asshells;
        const bool ismembrane = !isplane && set.type != typetruss;
        section(isshell ? "SHELL SECTION" : ismembrane ? "MEMBRANE SECTION" : "SOLID SECTION", set);
        out.raw("\n");
        real(groups(g, fieldthickness)).raw("\n");
    }
    // Without Poisson's ratio, which would stiffen the solid at its rigid ends; the moduli stand in
    // the axes of the beam.
    void writebeammaterial(const deckset& set, const deckbeam& b) {
        const double modulus = groups(set.group, fieldmodulus) * b.part;
        out.raw("*MATERIAL, NAME=M_").raw(set.name);
        out.raw("\n*ELASTIC, TYPE=ENGINEERING CONSTANTS\n");
        for (int k = 0; k < 3; ++k) real(modulus).raw(",");
        // Axis 1 of the material lies along the beam; the last modulus shears nothing.
        out.raw("0,0,0,");
        real(b.shear1).raw(",");
        real(b.shear2).raw("\n");
        real(b.shear1).raw(",0\n");
        if (groups(set.group, fielddensity) > 0) density(groups(set.group, fielddensity) * b.part);
        const double told = 1.01;  // times; less is beneath what the solid gives anyway
        if (b.stiffer > told)
            report.warn("Group " + groupname(set.group) + " is " + roughly(b.stiffer) +
                        " times as stiff in torsion in the deck; so thin a section has no solid "
                        "like it");
    }
    void beamsection(const std::string& name, const deckset& set, const deckbeam& b) {
        out.raw(b.istube ? ", SECTION=PIPE" : ", SECTION=RECT");
        out.raw(", ELSET=").raw(name).raw(", MATERIAL=M_").raw(set.name).raw("\n");
        real(b.first).raw(",");
        real(b.second).raw("\n");
    }
    // Beams of a group that look the same way share a section.
    void writebeams(const deckset& set) {
        const deckbeam b = beamofgroup(set.group, set.type);
        if (!b.isvalid()) {
            report.error("Group " + groupname(set.group) +
                         " has no area or no inertias; its beams have no section in the deck");
            return;
        }
        writebeammaterial(set, b);
        std::map<std::array<long, 6>, std::vector<int>> byway;
        const double step = 1e6;
        for (const int e : set.elements) {
            localaxes(e);
            std::array<long, 6> way;
            for (std::size_t k = 0; k < 3; ++k) {
                way[k] = std::lround(localx[k] * step);
                way[k + 3] = std::lround(localy[k] * step);
            }
            byway[way].push_back(e);
        }
        int part = 0;
        for (const auto& [way, list] : byway) {
            std::string name = set.name;
            if (byway.size() > 1) {
                name = setname(set.name + "-" + numbertext(++part), set.type, true);
                out.raw("*ELSET, ELSET=").raw(name).raw("\n");
                for (const int e : list) out.put(e).raw(",\n");
            }
            const auto cosine = [&axes = way, step](std::size_t k) {
                return double(axes[k]) / step;
            };
            out.raw("*ORIENTATION, NAME=O_").raw(name).raw("\n");
            reals(0, 6, cosine);
            out.raw("\n*BEAM SECTION, ORIENTATION=O_").raw(name);
            beamsection(name, set, b);
            reals(3, 6, cosine);
            out.raw("\n");
        }
        for (const int e : set.elements)
            for (int end = 1; end <= 2; ++end)
                if (const auto n = std::size_t(elems(e, end)); isclamped[n]) {
                    writefoot(e, int(n), set, b);
                    isclamped[n] = false;
                }
    }
    // A short beam from a clamped node, across the one that ends there.
    void writefoot(int e, int n, const deckset& set, const deckbeam& b) {
        const std::string name = std::string(footset) + "-" + numbertext(++feet);
        const int middle = nnodes() + nelems() + 2 * feet - 1;
        localaxes(e);
        out.raw("*NODE\n");
        for (int i = 1; i <= 2; ++i) {
            std::array<float, 3> at;
            for (int k = 0; k < 3; ++k)
                at[std::size_t(k)] = float(nodes(0, n, k) + localz[k] * b.depth() * i / 2);
            node(middle + i - 1, at);
        }
        out.raw("*ELEMENT, TYPE=B32R, ELSET=").raw(name).raw("\n").put(++lastelement);
        out.raw(",").put(n).raw(",").put(middle).raw(",").put(middle + 1).raw("\n*BEAM SECTION");
        beamsection(name, set, b);
        reals(0, 3, [](std::size_t k) { return localy[k]; });
        out.raw("\n");
        report.changed(
            "Clamped ends of beams have a foot in the deck, a short beam that carries "
            "nothing: without it their reactions come out wrong");
        report.about(reportitems::nodes, n);
    }
    // A spring a freedom: what joins different freedoms has no card.
    void writesprings() {
        int count = 0;
        for (const deckset& set : sets) {
            if (nameof(set.type, set.group) != nullptr) continue;
            const int first = set.type == typespringr ? 4 : 1,
                      last = set.type == typespringt ? 3 : 6;
            for (int i = 1; i <= 6; ++i)
                for (int j = 1; j <= 6; ++j)
                    if (i != j && groupmat(set.group, i, j) != 0)
                        tell(set, "Stiffness of springs between different freedoms", true);
            for (int dof = first; dof <= last; ++dof) {
                const float stiffness = groupmat(set.group, dof, dof);
                if (stiffness == 0) continue;
                const bool isgrounded = set.type != typespring2;
                const std::string name = "SPRING-" + numbertext(++count);
                out.raw("*ELEMENT, TYPE=").raw(isgrounded ? "SPRING1" : "SPRING2");
                out.raw(", ELSET=").raw(name).raw("\n");
                for (const int e : set.elements) {
                    out.put(++lastelement).raw(",").put(int(elems(e, 1)));
                    if (!isgrounded) out.raw(",").put(int(elems(e, 2)));
                    out.raw("\n");
                }
                out.raw("*SPRING, ELSET=").raw(name).raw("\n").put(dof);
                if (!isgrounded) out.raw(",").put(dof);
                out.raw("\n").put(stiffness).raw("\n");
            }
        }
    }

    void constraint(int n, int dof, double value) {
        out.raw(hasconstraints ? "" : "*BOUNDARY\n");
        hasconstraints = true;
        out.put(n).raw(",").put(dof).raw(",").put(dof).raw(",");
        real(value).raw("\n");
    }
    void writeconstraints() {
        if (asshells) {
            out.raw("*NSET, NSET=").raw(planeset).raw("\nNALL\n*BOUNDARY\n");
            out.raw(planeset).raw(",3,5\n");
            hasconstraints = true;
            report.changed(
                "Membranes of the plane are shells in the deck that are held in it; the solver's "
                "own are too stiff where they bend");
        }
        for (int i = 1; i <= ncon; ++i) {
            if (connode(i) < 1 || connode(i) > nnodes()) continue;
            if (asshells && condof(i) > 2) {
                report.skipped("Constraints that the membranes of a plane have no freedom for");
                report.about(reportitems::nodes, connode(i));
                continue;
            }
            const double value = condof(i) > 3 ? conval(i) * pi / 180 : double(conval(i));
            constraint(connode(i), condof(i), value);
            report.read("Constraints");
        }
        if (!dim2d) return;
        // Lines stay in the plane: across it their nodes, and at the supports their rotations.
        const std::vector<bool> supported = nodesheld(1);
        std::vector<bool> seen(std::size_t(nnodes()) + 1, false);
        for (const deckset& set : sets) {
            if (!isbeam(set.type) && set.type != typetruss) continue;
            for (const int e : set.elements)
                for (int end = 1; end <= 2; ++end) {
                    const int n = int(elems(e, end));
                    if (seen[std::size_t(n)]) continue;
                    seen[std::size_t(n)] = true;
                    constraint(n, 3, 0);
                    if (!isbeam(set.type) || !supported[std::size_t(n)]) continue;
                    constraint(n, 4, 0);
                    constraint(n, 5, 0);
                }
            report.changed("Lines of a 2-D analysis are held in their plane in the deck");
        }
    }
    // By node: a freedom from this one on is held.
    static std::vector<bool> nodesheld(int first) {
        std::vector<bool> held(std::size_t(nnodes()) + 1, false);
        for (int i = 1; i <= ncon; ++i)
            if (condof(i) >= first && connode(i) >= 1 && connode(i) <= nnodes())
                held[std::size_t(connode(i))] = true;
        return held;
    }

    // --- steps ---

    using forcemap = std::map<std::pair<int, int>, double>;  // by node and freedom

    void writestep(int lc) {
        const int type = lctype(lc);
        if (type > caseaccz) {
            report.skipped("Load case " + lcname(lc) + ", of a kind that a deck has no card for");
            return;
        }
        out.raw("** ").raw(visible(lcname(lc))).raw("\n*STEP\n*STATIC\n");
        forcemap forces;
        std::vector<std::pair<int, float>> pressures;
        if (type == caseapplied) {
            for (int i = 1; i <= loadnode(lc, 0); ++i)
                if (loadnode(lc, i) >= 1 && loadnode(lc, i) <= nnodes())
                    forces[{loadnode(lc, i), loaddof(lc, i)}] += double(loadval(lc, i));
        } else if (loadnode(lc, 0) > 0) {
            report.skipped("Nodal masses of load case " + lcname(lc));
        }
        for (int i = 1; i <= int(elemload(lc, 0, 0)); ++i) elementload(lc, i, forces, pressures);
        out.raw("*CLOAD, OP=NEW\n");
        for (const auto& [at, value] : forces)
            if (value != 0) {
                out.put(at.first).raw(",").put(at.second).raw(",");
                real(value).raw("\n");
            }
        out.raw("*DLOAD, OP=NEW\n");
        for (const auto& [e, value] : pressures) out.put(e).raw(",P,").put(value).raw("\n");
        if (type != caseapplied) writegravity(lc, type);
        out.raw(
            "** RF leaves out what loads put on the held nodes themselves\n"
            "*NODE PRINT, NSET=NALL\nU\n*NODE PRINT, NSET=NALL, TOTALS=YES\nRF\n"
            "*NODE FILE\nU,RF\n*END STEP\n");
        report.read("Load cases as steps");
    }
    void writegravity(int lc, int type) {
        const double least = 1e-30, value = lcpar(lc, accvalue) * accelerationunit;
        if (std::fabs(value) < least || lcpar(lc, accelementmass) != 1) return;
        for (const deckset& set : sets) {
            if (nameof(set.type, set.group) == nullptr) continue;
            out.raw(set.name).raw(",GRAV,");
            real(value);
            for (int k = caseaccx; k <= caseaccz; ++k) out.raw(type == k ? ",1" : ",0");
            out.raw("\n");
        }
    }
    // Pressure across shells has a card; all else becomes forces at the nodes, and moments where
    // the element is a beam.
    void elementload(int lc, int i, forcemap& forces,
                     std::vector<std::pair<int, float>>& pressures) {
        const int e = int(elemload(lc, i, 0)), direction = int(elemload(lc, i, 1));
        const double value = elemload(lc, i, 2);
        if (e < 1 || e > nelems() || direction < 1 || direction > 3) return;
        const int elnn = nodesoftype(elems(e, 0)), type = int(elems(e, 0));
        if (elnn >= 3 && direction == 3 && type >= typeshell3) {
            pressures.push_back({e, float(value)});
            return;
        }
        localaxes(e);
        const double* const axes[] = {localx, localy, localz};
        const double* const along = axes[direction - 1];
        if (elnn == 2) return lineload(e, value, along, isbeam(type), forces);
        const double share = value * areaof(e) / elnn;
        for (int c = 1; c <= elnn; ++c)
            for (int k = 0; k < 3; ++k) forces[{int(elems(e, c)), k + 1}] += share * along[k];
        if (elnn < 3) return;
        report.changed("Loads on faces became forces at their corners");
        report.about(reportitems::elements, e);
    }
    // Fixed-end forces of a uniform load q: q L / 2, and q L^2 / 12 about the axis across.
    void lineload(int e, double q, const double* along, bool hasmoments, forcemap& forces) {
        double length = 0;
        for (int k = 0; k < 3; ++k) {
            const double d =
                double(nodes(0, long(elems(e, 2)), k)) - nodes(0, long(elems(e, 1)), k);
            length += d * d;
        }
        length = std::sqrt(length);
        const double across[3] = {localx[1] * along[2] - localx[2] * along[1],
                                  localx[2] * along[0] - localx[0] * along[2],
                                  localx[0] * along[1] - localx[1] * along[0]};
        for (int c = 1; c <= 2; ++c)
            for (int k = 0; k < 3; ++k) {
                forces[{int(elems(e, c)), k + 1}] += q * length / 2 * along[k];
                const double moment = q * length * length / 12 * across[k] * (c == 1 ? 1 : -1);
                if (hasmoments && moment != 0) forces[{int(elems(e, c)), k + 4}] += moment;
            }
        report.changed("Loads along lines became forces and moments at their ends");
        report.about(reportitems::elements, e);
    }
    static double areaof(int e) {
        const int elnn = nodesoftype(elems(e, 0));
        const auto at = [&](int c, int k) { return double(nodes(0, long(elems(e, c)), k)); };
        const int a = elnn == 4 ? 3 : 2, b = elnn == 4 ? 4 : 3;
        double d[3], f[3];
        for (int k = 0; k < 3; ++k) {
            d[k] = at(a, k) - at(1, k);
            f[k] = at(b, k) - at(elnn == 4 ? 2 : 1, k);
        }
        return std::hypot(d[1] * f[2] - d[2] * f[1], d[2] * f[0] - d[0] * f[2],
                          d[0] * f[1] - d[1] * f[0]) /
               2;
    }

    const std::string title;
    textout& out;
    importreport& report;
    const bool isplane, asshells;
    // The solver knows no units: masses follow from forces and lengths.
    const double massunit = consistentmass(modelunits());
    const double accelerationunit = consistentacceleration(modelunits());
    std::vector<deckset> sets;
    std::set<std::string> taken;
    std::vector<bool> isclamped;  // by node: a rotation is held
    bool hasconstraints = false;
    int feet = 0, lastelement = nelems();
};

}  // namespace

void writedeck(const std::string& path, importreport& report) {
    textout out(path);
    deckwriter(path, out, report).write();
    out.commit();
}
