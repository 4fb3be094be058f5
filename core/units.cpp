// SPDX-License-Identifier: GPL-3.0-or-later
// Units by name, formulas, typed values.
#include "core/units.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <sstream>

#include "core/numtext.h"
#include "core/session.h"
#include "core/trimmed.h"

std::string newunits;
const char* const freeunits = "free";
const std::vector<std::string> unitchoices = {"mm N kg",   "m kN t",    "m N kg",
                                              "in lbf lb", "ft kip lb", freeunits};

// --- units --------------------------------------------------------------------------------------

namespace {
// Exponents of metre, kilogram, second and radian.
using dimension = std::array<int, 4>;
const dimension isnumber{}, islength{1}, ismass{0, 1}, istime{0, 0, 1}, isangle{0, 0, 0, 1},
    isforce{1, 1, -2}, isstress{-1, 1, -2};

struct quantity {
    double factor = 1;  // in metres, kilograms, seconds and radians
    dimension power{};
};
struct unit {
    const char* name;
    double factor;
    dimension power;
};
}  // namespace

const double inch = 0.0254, foot = 0.3048, pound = 0.45359237, poundforce = pound * 9.80665;
const double minute = 60, hour = 3600;

static const unit units[] = {
    {"mm", 1e-3, islength},
    {"cm", 1e-2, islength},
    {"dm", 0.1, islength},
    {"m", 1, islength},
    {"km", 1e3, islength},
    {"in", inch, islength},
    {"inch", inch, islength},
    {"ft", foot, islength},
    {"yd", 3 * foot, islength},
    {"g", 1e-3, ismass},
    {"kg", 1, ismass},
    {"t", 1e3, ismass},
    {"lb", pound, ismass},
    {"lbs", pound, ismass},
    {"slug", poundforce / foot, ismass},
    {"N", 1, isforce},
    {"daN", 10, isforce},
    {"kN", 1e3, isforce},
    {"MN", 1e6, isforce},
    {"kgf", 9.80665, isforce},
    {"tf", 9806.65, isforce},
    {"lbf", poundforce, isforce},
    {"kip", 1e3 * poundforce, isforce},
    {"kips", 1e3 * poundforce, isforce},
    {"Pa", 1, isstress},
    {"kPa", 1e3, isstress},
    {"MPa", 1e6, isstress},
    {"GPa", 1e9, isstress},
    {"bar", 1e5, isstress},
    {"psi", poundforce / (inch * inch), isstress},
    {"ksi", 1e3 * poundforce / (inch * inch), isstress},
    {"psf", poundforce / (foot * foot), isstress},
    {"ksf", 1e3 * poundforce / (foot * foot), isstress},
    {"s", 1, istime},
    {"min", minute, istime},
    {"h", hour, istime},
    {"rad", 1, isangle},
    {"deg", pi / 180, isangle},
    {"Deg", pi / 180, isangle},
    {"\u00b0", pi / 180, isangle},
};

static const unit* findunit(std::string_view name, const dimension& power) {
    const auto found = std::ranges::find_if(
        units, [&](const unit& u) { return name == u.name && u.power == power; });
    return found == std::end(units) ? nullptr : &*found;
}

static std::optional<quantity> unitnamed(std::string_view name) {
    const auto found = std::ranges::find_if(units, [&](auto& u) { return name == u.name; });
    if (found == std::end(units)) return {};
    return quantity{found->factor, found->power};
}

static quantity times(quantity a, const quantity& b, int power) {
    a.factor *= std::pow(b.factor, power);
    for (std::size_t i = 0; i < a.power.size(); ++i) a.power[i] += power * b.power[i];
    return a;
}

// kNm, Nmm, kipft: a force and a length with nothing between them.
static std::optional<quantity> momentnamed(std::string_view name) {
    for (std::size_t i = 1; i < name.size(); ++i) {
        const unit* const force = findunit(name.substr(0, i), isforce);
        const unit* const length = findunit(name.substr(i), islength);
        if (force && length)
            return times({force->factor, force->power}, {length->factor, length->power}, 1);
    }
    return {};
}

// --- sets of units ------------------------------------------------------------------------------

unitset solverunits = namedunits(1e-3, 1, 1);

bool findunits(const std::string& text, unitset& set) {
    if (text == freeunits) {
        set = {};
        return true;
    }
    std::istringstream words(text);
    std::string length, force, mass, more;
    words >> length >> force >> mass;
    const unit* const l = findunit(length, islength);
    const unit* const f = findunit(force, isforce);
    const unit* const m = findunit(mass, ismass);
    if (!l || !f || !m || words >> more) return false;
    set = {length, force, mass, l->factor, f->factor, m->factor};
    return true;
}

// The first name of a factor; a factor from a file has its digits.
static std::string nameof(double factor, const dimension& power) {
    const double same = 1e-6;
    for (const unit& u : units)
        if (u.power == power && std::fabs(u.factor - factor) <= same * factor) return u.name;
    return {};
}

unitset namedunits(double metres, double newtons, double kilograms) {
    unitset set{nameof(metres, islength),
                nameof(newtons, isforce),
                nameof(kilograms, ismass),
                metres,
                newtons,
                kilograms};
    if (set.length.empty() || set.force.empty() || set.mass.empty())
        set.length = set.force = set.mass = "";
    return set;
}

const unitset& modelunits() {
    static std::string text;
    static unitset set;
    if (unitstext.empty()) return solverunits;
    if (text != unitstext && !findunits(unitstext, set)) set = {};
    text = unitstext;
    return set;
}

double roundedto(double value, int digits) {
    char text[40];
    const auto end =
        std::to_chars(text, text + sizeof text, value, std::chars_format::general, digits);
    return numberof(std::string_view(text, std::size_t(end.ptr - text)));
}

// --- formulas -----------------------------------------------------------------------------------

static bool isletter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c & 0x80) != 0;
}

static bool isdigit10(char c) {
    return c >= '0' && c <= '9';
}

// One of F, L, M and W that stands alone; 0 for none.
static char symbolat(std::string_view text, std::size_t at) {
    const bool begins = at == 0 || !isletter(text[at - 1]);
    const bool ends = at + 1 >= text.size() || !isletter(text[at + 1]);
    return begins && ends && std::string_view("FLMW").find(text[at]) != text.npos ? text[at] : '\0';
}

static const std::string& nameofsymbol(char symbol, const unitset& set) {
    return symbol == 'F' ? set.force : symbol == 'L' ? set.length : set.mass;
}

static quantity quantityof(char symbol, const unitset& set) {
    if (symbol == 'F') return {set.newtons, isforce};
    if (symbol == 'L') return {set.metres, islength};
    return {set.kilograms, ismass};
}

static std::vector<std::string> alternatives(std::string_view formula) {
    const std::string_view either = " | ", line = "F/L^n";
    if (formula == line) return {"F/L", "F/L^2"};
    std::vector<std::string> all;
    for (std::size_t at = 0; at <= formula.size();) {
        const std::size_t end = std::min(formula.find(either, at), formula.size());
        all.emplace_back(formula.substr(at, end - at));
        at = end + either.size();
    }
    return all;
}

static int takepower(std::string_view& text) {
    const std::string_view square = "\u00b2", cube = "\u00b3";
    if (text.starts_with(square) || text.starts_with(cube)) {
        const int power = text.starts_with(square) ? 2 : 3;
        text.remove_prefix(square.size());
        return power;
    }
    if (text.starts_with('^')) text.remove_prefix(1);
    if (text.empty() || !isdigit10(text.front())) return 1;
    const int power = text.front() - '0';
    text.remove_prefix(1);
    return power;
}

// A unit with its power, from the front of the text.
static std::optional<quantity> takeunit(std::string_view& text, const unitset* set) {
    std::size_t end = 0;
    while (end < text.size() && isletter(text[end]) && text.substr(end, 2) != "\u00b2" &&
           text.substr(end, 2) != "\u00b3")
        ++end;
    const std::string_view name = text.substr(0, end);
    std::optional<quantity> one;
    if (set && name.size() == 1 && symbolat(name, 0)) one = quantityof(name[0], *set);
    if (!one) one = unitnamed(name);
    if (!one) one = momentnamed(name);
    text.remove_prefix(end);
    return one ? std::optional(times({}, *one, takepower(text))) : one;
}

// A product of units, "kN m/s^2": a stroke stands before what divides. Letters F, L, M and W are
// units of the set, if one is given.
static std::optional<quantity> product(std::string_view text, const unitset* set) {
    quantity all;
    int sign = 1;
    bool any = false;
    while (!text.empty()) {
        if (text.front() == '/') {
            sign = -1;
            any = false;  // something must follow
        }
        if (std::string_view(" .*-/").find(text.front()) != text.npos) {
            text.remove_prefix(1);
            continue;
        }
        const auto one = takeunit(text, set);
        if (!one) return {};
        all = times(all, *one, sign);
        any = true;
    }
    return any ? std::optional(all) : std::nullopt;
}

// What a formula without alternatives asks for.
static quantity wanted(const std::string& formula, const unitset& set) {
    if (formula.empty() || formula == "-") return {};
    return product(formula, &set).value_or(quantity{});
}

static std::string named(std::string_view formula, const unitset& set) {
    std::string text;
    for (std::size_t i = 0; i < formula.size(); ++i) {
        if (const char symbol = symbolat(formula, i))
            text += nameofsymbol(symbol, set);
        else if (formula[i] == '.')
            text += ' ';
        else if (formula[i] != '^')
            text += formula[i];
    }
    return text;
}

static bool hassymbol(std::string_view formula) {
    for (std::size_t i = 0; i < formula.size(); ++i)
        if (symbolat(formula, i)) return true;
    return false;
}

std::string unitname(std::string_view formula) {
    const unitset& set = modelunits();
    if (set.length.empty() || !hassymbol(formula)) return std::string(formula);
    std::string text;
    for (const std::string& one : alternatives(formula))
        text += (text.empty() ? "" : " | ") + named(one, set);
    return text;
}

std::string captionunit(std::string_view formula) {
    return unitstext.empty() ? std::string(formula) : unitname(formula);
}

double unitfactor(std::string_view formula, const unitset& from, const unitset& to) {
    if (from.metres == 0 || to.metres == 0) return 1;
    const std::string one = alternatives(formula).front();
    return wanted(one, from).factor / wanted(one, to).factor;
}

// --- typed values -------------------------------------------------------------------------------

// Where a unit ends: at a number that is no power of it, "ft" in "3 ft 6 in".
static std::size_t unitend(std::string_view text) {
    std::size_t at = 1;
    while (at < text.size() && !(text[at - 1] == ' ' && (isdigit10(text[at]) || text[at] == '.')))
        ++at;
    return at;
}

// The sum of the numbers with their units; none where one lacks its unit or has another kind.
static std::optional<quantity> typedsum(std::string_view text) {
    std::optional<quantity> sum;
    double sign = 1;
    while (!text.empty()) {
        double number = 0;
        const char* end = nullptr;
        if (scannumber(text.data(), text.data() + text.size(), number, end) != numberfault::none)
            return {};
        text = trimmed(text.substr(std::size_t(end - text.data())));
        if (text.empty()) return {};
        const std::size_t length = unitend(text);
        const auto unit = product(trimmed(text.substr(0, length)), nullptr);
        if (!unit || (sum && unit->power != sum->power)) return {};
        text = trimmed(text.substr(length));
        if (!sum && std::signbit(number)) sign = -1;
        const double before = sum ? sum->factor : 0;
        sum = quantity{before + (sum ? sign : 1) * number * unit->factor, unit->power};
    }
    return sum;
}

// An angle times anything else counts as a plain number: a moment a radian is a moment.
static bool samekind(dimension a, dimension b) {
    const bool same = a == b;
    a[3] = b[3] = 0;
    return same || (a == b && a != isnumber);
}

bool hasunit(std::string_view text) {
    return typedsum(trimmed(text)).has_value();
}

bool mayhaveunit(std::string_view text) {
    text = trimmed(text);
    double number = 0;
    const char* end = nullptr;
    const char* const last = text.data() + text.size();
    return scannumber(text.data(), last, number, end) == numberfault::none && end != last &&
           (*end == ' ' || isletter(*end));
}

bool readvalue(std::string_view text, std::string_view formula, double& value, const unitset& set) {
    if (readnumber(text, value)) return true;
    const auto typed = typedsum(trimmed(text));
    if (!typed) return false;
    for (const std::string& one : alternatives(formula)) {
        const quantity asked = wanted(one, set);
        const bool known = asked.power != isnumber && asked.factor > 0;
        if (!known || !samekind(asked.power, typed->power)) continue;
        const double found = typed->factor / asked.factor;
        if (!std::isfinite(found)) return false;
        const int digits = 14;  // rounding of the factors does not show
        value = roundedto(found, digits);
        return true;
    }
    return false;
}

double valueof(std::string_view text, std::string_view formula) {
    double value = 0;
    readvalue(text, formula, value);
    return value;
}

std::string valuefault(std::string_view text, std::string_view formula) {
    const std::string found = "\"" + std::string(trimmed(text)) + "\" ";
    const auto typed = typedsum(trimmed(text));
    if (!typed) return found + "is no number";
    if (!hassymbol(formula) && wanted(std::string(formula), {}).power == isnumber)
        return found + "has a unit where a plain number is wanted";
    if (modelunits().metres == 0 && hassymbol(formula))
        return found + "has a unit, but the model's own units are free; give the number alone";
    return found + "has a unit of another kind; " + unitname(formula) + " is wanted here";
}
