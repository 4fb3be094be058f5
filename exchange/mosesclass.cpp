// SPDX-License-Identifier: GPL-3.0-or-later
// Shapes, sizes and options of classes.
#include "exchange/mosesclass.h"

#include <array>
#include <cmath>

#include "core/session.h"
#include "exchange/arithmetic.h"

int mosesfreedom(std::string_view word) {
    static const std::string_view names[][2] = {{"X", "FX"},  {"Y", "FY"},  {"Z", "FZ"},
                                                {"RX", "MX"}, {"RY", "MY"}, {"RZ", "MZ"}};
    for (int dof = 1; dof <= 6; ++dof)
        for (const std::string_view name : names[dof - 1])
            if (sameword(word, name)) return dof;
    return 0;
}

namespace {

struct classline {
    std::string_view name, shape;
    std::vector<double> sizes;
    importedgroup& group;
    const mosesunits &units, &base;
    importreport& report;
    long line;
    double lengths() const { return units.size() / base.length; }
    double stresses() const { return units.stress() / base.force * base.length * base.length; }
    // A weight on a cubic metre as mass.
    double masses(double kilonewtons) const {
        const double gravity = 9.80665;
        return kilonewtons / gravity / base.mass * base.length * base.length * base.length;
    }
};

}  // namespace

static void tubesection(classline& c) {
    const double outer = c.sizes[0] * c.lengths(), wall = c.sizes[1] * c.lengths();
    const double inner = outer - 2 * wall;
    if (!(wall > 0) || inner < 0)
        return c.report.error("class " + shown(c.name) + ": the wall of a tube of diameter " +
                                  numbertext(c.sizes[0]) + " can not be " + numbertext(c.sizes[1]),
                              c.line);
    const double second = pi / 64 * (std::pow(outer, 4) - std::pow(inner, 4));
    const double modulus = second / (outer / 2);
    auto& fields = c.group.fields;
    fields[fieldthickness] = pi / 4 * (outer * outer - inner * inner);
    fields[fieldixx] = fields[fieldiyy] = second;
    fields[fieldwxx] = fields[fieldwyy] = modulus;
    fields[fieldizz] = 2 * second;
    fields[fieldwzz] = 2 * modulus;
}

static void section(classline& c) {
    const bool istube = sameword(c.shape, "TUBE"), isplate = sameword(c.shape, "PLATE");
    const std::size_t used = istube ? 2 : 1;
    if ((istube || isplate) && c.sizes.size() > used)
        c.report.warn("Sizes of tubes and plates beyond diameter, wall and thickness are not used",
                      c.line);
    if (istube && c.sizes.size() >= 2) return tubesection(c);
    if (isplate && !c.sizes.empty()) {
        c.group.fields[fieldthickness] = c.sizes[0] * c.lengths();
        return;
    }
    if (istube) return c.report.error("class " + shown(c.name) + ": a tube has two sizes", c.line);
    std::string text = "class " + shown(c.name) + ": set the section of its group, " +
                       uppercase(c.shape).substr(0, 40);
    for (const double size : c.sizes) text += " " + numbertext(size);
    c.report.warn(text, c.line);
}

// The option's number into its field; false for one that is no number of a class.
static bool option(classline& c, std::string_view name, double value) {
    auto& fields = c.group.fields;
    name.remove_prefix(1);
    const std::size_t least = 3;
    if (shortens(name, "EMODULUS", least))
        fields[fieldmodulus] = value * c.stresses();
    else if (shortens(name, "POI_RATIO", least))
        fields[fieldpoisson] = value;
    else if (shortens(name, "SPGRAVITY", least))
        fields[fielddensity] = c.masses(9.80665 * value);
    else if (shortens(name, "DENSITY", least)) {
        const double cubicmetre = c.units.length * c.units.length * c.units.length;
        const double weight = value * c.units.force / cubicmetre;  // kN/m3
        const double heaviest = 250;                               // no metal weighs more
        if (weight > heaviest)
            c.report.warn("class " + shown(c.name) + ": a density of " + numbertext(value) +
                              " is more than any metal has; it is read as weight in a volume",
                          c.line);
        fields[fielddensity] = c.masses(weight);
    } else
        return false;
    return true;
}

static void readoption(classline& c, std::string_view name, std::string_view& text) {
    std::string_view rest = text, word;
    double value = 0;
    const bool isnumber = nextmosesword(rest, word) && readexpression(word, value);
    if (isnumber && option(c, name, value)) {
        text = rest;
        return;
    }
    double scratch = 0;
    const std::array<double, groupfields + 1> before = c.group.fields;
    if (!isnumber && option(c, name, scratch))
        c.report.error("class " + shown(c.name) + ": option " + shown(name) + " has no number",
                       c.line);
    else
        c.report.skipped("Option " + uppercase(name).substr(0, 20) + " of classes", c.line);
    c.group.fields = before;
    while (!text.empty()) {
        rest = text;
        if (!nextmosesword(rest, word) || isoption(word)) return;
        text = rest;
    }
}

// What a new group has is steel in N and mm; here it is steel in the units of the model.
static void steel(classline& c) {
    auto& fields = c.group.fields;
    const bool anymodulus = std::isfinite(fields[fieldmodulus]);
    const bool anydensity = std::isfinite(fields[fielddensity]);
    if (!anymodulus)
        fields[fieldmodulus] = 210000 * 1000 / c.base.force * c.base.length * c.base.length;
    if (!anydensity) fields[fielddensity] = c.masses(7.85 * 9.80665);
    if (!anymodulus || !anydensity)
        c.report.changed(
            "Classes without modulus or density have those of steel, 210000 MPa and "
            "7.85 t/m3");
}

static void readfixing(std::string_view text, const classline& c, mosesclass& result) {
    std::string_view word;
    result.isfixing = true;
    while (nextmosesword(text, word)) {
        const int dof = mosesfreedom(word);
        if (dof > 0)
            result.fixed.push_back(dof);
        else
            c.report.error("class " + shown(c.name) + ": " + shown(word) + " is no freedom",
                           c.line);
    }
    if (result.fixed.empty()) result.fixed = {1, 2, 3, 4, 5, 6};
}

void readclass(std::string_view text, const mosesstatement& statement, const mosesdeck& deck,
               imported& found, mosesclass& result) {
    importedgroup& group = found.group(result.group);
    classline c{group.name,    {}, {}, group, deck.unitsof(statement), deck.base(), found.report,
                statement.line};
    std::string_view word;
    if (!nextmosesword(text, c.shape))
        return found.report.error("class " + shown(c.name) + " has no shape", c.line);
    if (sameword(c.shape, "FIX")) return readfixing(text, c, result);
    if (sameword(c.shape, "SPR"))
        return found.report.skipped("Springs (classes of shape SPR)", c.line);
    while (nextmosesword(text, word)) {
        double size = 0;
        if (isoption(word))
            readoption(c, word, text);
        else if (readexpression(word, size))
            c.sizes.push_back(size);
        else
            found.report.error("class " + shown(c.name) + ": " + shown(word) + " is not a number",
                               c.line);
    }
    section(c);
    steel(c);
    found.report.changed("Section sizes and stresses of classes turned to " +
                         std::string(c.base.lengthname) + " and " + c.base.forcename);
}
