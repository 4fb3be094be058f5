// SPDX-License-Identifier: GPL-3.0-or-later
// Materials and sections of a deck.
#include "exchange/decksection.h"

#include <cmath>

#include "core/catalogue.h"
#include "core/textfile.h"
#include "exchange/deckbeam.h"
#include "exchange/shapes.h"

// --- materials ----------------------------------------------------------------------------------

void deckmaterials::begin(const deckcard& card) {
    current = uppercase(card.value("NAME"));
    materials.try_emplace(current);
}

void deckmaterials::readelastic(const deckcard& card, deckcards& cards, importreport& report) {
    const std::string type = uppercase(card.value("TYPE"));
    const bool isplain = type.empty() || type == "ISO" || type == "ISOTROPIC";
    const bool hasmoduli = type == "ENGINEERING CONSTANTS";
    std::string_view line;
    if (!cards.nextdata(line)) return;
    const auto numbers = cards.numbers(line);
    material& m = materials[current];
    if (!numbers.empty()) m.modulus = numbers[0];
    if (isplain && numbers.size() > 1) m.poisson = numbers[1];
    if (hasmoduli && numbers.size() > 7) {
        m.poisson = numbers[3];
        m.shear1 = numbers[6];
        m.shear2 = numbers[7];
        cards.nextdata(line);
    }
    const bool differs =
        hasmoduli && numbers.size() > 2 && (numbers[1] != numbers[0] || numbers[2] != numbers[0]);
    if (differs || (!isplain && !hasmoduli))
        report.warn("*ELASTIC of TYPE=" + type + ": the first value was taken as E", card.line);
    if (cards.nextdata(line))
        report.warn("Properties by temperature: the first row was taken", cards.line());
}

void deckmaterials::readdensity(deckcards& cards) {
    std::string_view line;
    if (!cards.nextdata(line)) return;
    const auto numbers = cards.numbers(line);
    if (!numbers.empty()) materials[current].density = numbers[0];
}

void deckmaterials::use(const decksection& s, std::array<double, groupfields + 1>& fields,
                        importreport& report) const {
    const std::string_view name = s.card.value("MATERIAL");
    if (name.empty()) return;
    const auto at = materials.find(uppercase(name));
    if (at == materials.end()) {
        report.error("Material " + shown(name) + " is not defined", s.card.line);
        return;
    }
    fields[fieldmodulus] = at->second.modulus;
    fields[fieldpoisson] = at->second.poisson;
    // Without one the deck has no mass, whatever a new group has.
    fields[fielddensity] = std::isnan(at->second.density) ? 0 : at->second.density;
    if (s.card.keyword.starts_with("BEAM")) usetorsion(at->second, fields);
}

// Shear moduli of their own tell the torsion of the solid that the deck's solver makes; here the
// modulus follows from Poisson's ratio, and the constant takes the difference.
void deckmaterials::usetorsion(const material& m, std::array<double, groupfields + 1>& fields) {
    const double steel = 0.3, i1 = fields[fieldixx], i2 = fields[fieldiyy];
    if (!(m.shear1 > 0 && m.shear2 > 0 && m.modulus > 0)) return;
    if (fields[fieldpoisson] == 0) fields[fieldpoisson] = steel;
    const double shear = m.modulus / (2 + 2 * fields[fieldpoisson]);
    fields[fieldizz] = bricktorsion(i1, i2, m.shear1, m.shear2) / shear;
}

// --- shapes -------------------------------------------------------------------------------------

static void usespring(const decksection& s, importedgroup& group) {
    const int dof = s.direction.empty() ? 1 : int(s.direction[0]);
    group.matrix.resize(36);
    if (dof >= 1 && dof <= 6)
        group.matrix[std::size_t(dof - 1) * 7] = s.numbers.empty() ? 0 : float(s.numbers[0]);
}

// The numbers stand in the order that the deck's solver gives each shape.
static void usebeam(const decksection& s, importedgroup& group, importreport& report) {
    const auto& n = s.numbers;
    const std::string shape = uppercase(s.card.value("SECTION"));
    const auto number = [&](std::size_t i) { return i < n.size() ? n[i] : 0; };
    const auto put = [&](const shapevalues& values) { putshape(values, group.fields); };
    if (shape == "RECT")
        put(rectangle(number(0), number(1)));
    else if (shape == "CIRC")  // one number is a radius, two are diameters
        put(n.size() > 1 ? ellipticbar(n[0], n[1]) : ellipticbar(2 * number(0), 2 * number(0)));
    else if (shape == "PIPE")
        put(tube(number(0), number(1)));
    else if (shape == "BOX")
        put(hollowbox(number(0), number(1), {number(2), number(3), number(4), number(5)}));
    else if (shape == "I")
        put(flanged({number(1), number(6), {number(2), number(3)}, {number(4), number(5)}, 0}));
    else if (shape == "T")
        put(flanged({number(1), number(4), {0, number(0)}, {0, number(3)}, 0}));
    else if (shape == "L") {  // a leg and an upright one, which is web alone
        put(flanged({number(1), number(3), {number(0), 0}, {number(2), 0}, -1}));
        report.changed("Angles bend about the directions of their legs", 1, s.card.line);
    } else if (shape == "GENERAL" || s.card.keyword == "BEAM GENERAL SECTION")
        put({number(0), number(1), number(3), number(4), 0, 0});
    else
        report.skipped("Beam sections of the shape " + shape, s.card.line);
}

void useshape(const decksection& s, importedgroup& group, importreport& report) {
    if (s.card.keyword == "SPRING") return usespring(s, group);
    if (s.card.keyword.starts_with("BEAM")) return usebeam(s, group, report);
    if (!s.numbers.empty()) group.fields[fieldthickness] = s.numbers[0];
    if (s.card.keyword == "MASS") group.fields[fielddensity] = s.numbers.empty() ? 0 : s.numbers[0];
}
