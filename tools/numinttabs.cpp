// SPDX-License-Identifier: GPL-3.0-or-later
// Columns and cells of the tables of numbers.
#include "tools/numinttabs.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

#include "core/catalogue.h"
#include "core/formulas.h"
#include "core/labels.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/units.h"
#include "tools/groups.h"

const char* const tabcaptions[ngridtabs] = {"Nodes",         "Elements",         "Groups",
                                            "Constraints",   "Load cases",       "Nodal Loads",
                                            "Element Loads", "Load Combinations"};

static const int corners = 4, lastdof = 6, lastdirection = 3;
static const double degree = pi / 180;

// --- columns ------------------------------------------------------------------------------------

static gridcolumn fixedcolumn(const char* caption, formats format = formats::general) {
    gridcolumn c;
    c.caption = caption;
    c.format = format;
    return c;
}

static const column* meaning(const modelarray& array, long cell) {
    for (const column& c : array.columns)
        if (cell >= c.first && cell <= c.last) return &c;
    return nullptr;
}

static gridcolumn arraycolumn(const std::string& caption, formats format, const char* array,
                              long cell = 0, labels list = labels::none) {
    gridcolumn c;
    c.caption = caption;
    c.format = format;
    c.list = list;
    c.array = findarray(array);
    c.cell = cell;
    c.about = meaning(*c.array, cell);
    if (c.about != nullptr && list == labels::none) c.unit = c.about->unit;
    return c;
}

static std::vector<gridcolumn> shownodes() {
    std::vector<gridcolumn> t = {fixedcolumn(" ID ", formats::whole)};
    for (int k = 0; k <= 2; ++k)
        t.push_back(arraycolumn(axislabel(k + 1), formats::decimals, "nodes", k));
    return t;
}

static std::vector<gridcolumn> showelements() {
    std::vector<gridcolumn> t = {fixedcolumn(" ID ", formats::whole)};
    t.push_back(arraycolumn("Type", formats::whole, "elems", 0, labels::types));
    for (int k = 1; k <= corners; ++k)
        t.push_back(arraycolumn("Node " + numbertext(k), formats::whole, "elems", k));
    t.push_back(arraycolumn("Group", formats::whole, "egroup", 0, labels::groups));
    t.push_back(arraycolumn("Rotate", formats::degrees, "rotpo"));
    t.back().unit = "Deg";
    return t;
}

// Thickness and area are one property.
static std::vector<gridcolumn> showgroup() {
    static const struct {
        const char *caption, *unit;
        int property;
    } columns[] = {{"E Modulus", "", 1},
                   {"Poisson ratio", "", 2},
                   {"Specific Mass", "", 3},
                   {"Thickness", "L", 4},
                   {"Area", "L^2", 4},
                   {"Stress condition", "", 5},
                   {"Section rotation", "", 6},
                   {"I xx", "", 7},
                   {"W xx", "", 8},
                   {"I yy", "", 9},
                   {"W yy", "", 10},
                   {"I zz", "", 11},
                   {"W zz", "", 12}};
    std::vector<gridcolumn> t = {arraycolumn(" Name ", formats::general, "groupname")};
    for (const auto& [caption, unit, property] : columns) {
        t.push_back(arraycolumn(caption, formats::engineering, "groups", property));
        t.back().unit = *unit != 0 ? unit : groupcaptions[property].unit;
    }
    return t;
}

static std::vector<gridcolumn> showconst() {
    return {fixedcolumn(" ID "), arraycolumn("Node", formats::whole, "connode"),
            arraycolumn("Dir", formats::whole, "condof", 0, labels::dofs),
            arraycolumn("value", formats::engineering, "conval")};
}

static std::vector<gridcolumn> showLoadcases() {
    std::vector<gridcolumn> t = {
        fixedcolumn("General number"), fixedcolumn(" ID "),
        arraycolumn("Name", formats::general, "lcname"),
        arraycolumn("Type", formats::general, "lctype", 0, labels::casekinds)};
    for (int k = 0; k < caseparameters; ++k)
        t.push_back(arraycolumn("value" + numbertext(k + 1), formats::general, "lcpar", k));
    return t;
}

static std::vector<gridcolumn> caseofload() {
    std::vector<gridcolumn> t = {fixedcolumn(" ID ", formats::whole), fixedcolumn("Loadcase")};
    t.back().list = labels::cases;
    return t;
}

static std::vector<gridcolumn> shownodalLoad() {
    std::vector<gridcolumn> t = caseofload();
    t.push_back(arraycolumn("Node", formats::whole, "loadnode"));
    t.push_back(arraycolumn("Dir", formats::whole, "loaddof", 0, labels::forces));
    t.push_back(arraycolumn("value", formats::engineering, "loadval"));
    return t;
}

static std::vector<gridcolumn> showelemLoad() {
    std::vector<gridcolumn> t = caseofload();
    t.push_back(arraycolumn("Elem", formats::whole, "elemload", 0));
    t.push_back(arraycolumn("Dir", formats::whole, "elemload", 1, labels::forces));
    t.push_back(arraycolumn("value", formats::engineering, "elemload", 2));
    return t;
}

static std::vector<gridcolumn> showLoadcomb() {
    std::vector<gridcolumn> t = {fixedcolumn("General number"), fixedcolumn(" ID "),
                                 arraycolumn("Name", formats::general, "lcombname")};
    for (int lc = 1; lc <= nlc(); ++lc) {
        t.push_back(arraycolumn(lcname(lc), formats::general, "lcomb"));
        t.back().cell = lc;
    }
    return t;
}

std::vector<gridcolumn> columnsof(int tab) {
    switch (tab) {
        case tabnodes:
            return shownodes();
        case tabelements:
            return showelements();
        case tabgroups:
            return showgroup();
        case tabconstraints:
            return showconst();
        case tabloadcases:
            return showLoadcases();
        case tabnodalloads:
            return shownodalLoad();
        case tabelementloads:
            return showelemLoad();
        default:
            return showLoadcomb();
    }
}

// --- items --------------------------------------------------------------------------------------

items itemsof(int tab) {
    static const items kinds[ngridtabs] = {items::node,        items::element,    items::group,
                                           items::constraint,  items::loadcase,   items::nodalload,
                                           items::elementload, items::combination};
    return kinds[std::clamp(tab, 0, ngridtabs - 1)];
}

bool isloadtab(int tab) {
    return tab == tabnodalloads || tab == tabelementloads;
}

long itemcount(int tab) {
    if (!isloadtab(tab)) return countof(itemsof(tab));
    long sum = 0;
    for (int lc = 1; lc <= nlc(); ++lc) sum += countof(itemsof(tab), lc);
    return sum;
}

loadplace placeofload(items of, long i) {
    for (int lc = 1; lc <= nlc() && i >= 1; ++lc) {
        const long count = countof(of, lc);
        if (i <= count) return {lc, i};
        i -= count;
    }
    return {};
}

std::vector<long> loadsbefore(items of) {
    std::vector<long> before(std::size_t(nlc()) + 1, 0);
    if (of != items::nodalload && of != items::elementload) return before;
    for (int lc = 2; lc <= nlc(); ++lc)
        before[std::size_t(lc)] = before[std::size_t(lc - 1)] + countof(of, lc - 1);
    return before;
}

long itemofload(items of, const loadplace& at) {
    return loadsbefore(of)[std::size_t(at.lc)] + at.row;
}

namespace {
// Where a cell stands: the list of its array, the row in it, the cell of the row.
struct cellplace {
    long list = 0, row = 0, cell = 0;
};
}  // namespace

static cellplace placeof(int tab, const gridcolumn& c, long item) {
    if (isloadtab(tab)) {
        const loadplace at = placeofload(itemsof(tab), item);
        return {at.lc, at.row, c.cell};
    }
    if (tab == tabcombinations && c.array->along == 2) return {item, c.cell, 0};
    return {0, item, c.cell};
}

// Calls take(cell) with the cell in the model's array, of an item that is there.
template <typename Take>
static bool visitcell(int tab, const gridcolumn& c, long item, Take take) {
    const cellplace at = placeof(tab, c, item);
    bool found = false;
    withstretch(*c.array, at.list, [&](auto s) {
        if (at.row < 1 || at.row >= s.rows) return;
        take(s.row(at.row)[at.cell]);
        found = true;
    });
    return found;
}

// False where the item is not there.
template <typename Take>
static bool withcell(int tab, const gridcolumn& c, long item, Take take) {
    return c.array != nullptr && item >= 1 && item <= itemcount(tab) &&
           visitcell(tab, c, item, take);
}

template <typename T>
constexpr bool isnumbercell = std::is_same_v<T, float> || std::is_same_v<T, double> ||
                              std::is_same_v<T, int> || std::is_same_v<T, Integer>;

static bool storednumber(int tab, const gridcolumn& c, long item, double& number) {
    bool numeric = false;
    withcell(tab, c, item, [&](const auto& cell) {
        if constexpr (isnumbercell<std::remove_cvref_t<decltype(cell)>>) {
            number = double(cell);
            numeric = true;
        }
    });
    return numeric;
}

static bool isangle(const gridcolumn& c) {
    return c.about != nullptr && c.about->kind == kinds::angle;
}

// The fewest digits of degrees that give the stored angle again.
static double degreesof(double radians) {
    const double full = radians / degree;
    const double step = 1e-9;
    const double rounded = std::round(full / step) * step;
    double plain = rounded;
    readnumber(fixedtext(rounded, 9), plain);
    return std::abs(plain * degree - radians) <= std::abs(radians) * 4e-16 ? plain : full;
}

bool cellnumber(int tab, const gridcolumn& c, long item, double& number) {
    if (!storednumber(tab, c, item, number)) return false;
    if (isangle(c)) number = degreesof(number);
    return true;
}

// A corner that the type of the element does not have.
static bool isbeyondtype(int tab, const gridcolumn& c, long item) {
    return tab == tabelements && c.about->refers == items::node &&
           c.cell > nodesoftype(elems(item, 0));
}

// --- labels -------------------------------------------------------------------------------------

// First and last number of a list, and the table of its texts.
struct labelrange {
    long first, last;
    const array1<std::string>* texts;
};

static labelrange rangeof(labels list) {
    switch (list) {
        case labels::types:
            return {0, neltypes - 1, &eltypname};
        case labels::groups:
            return {1, ngroups(), &groupname};
        case labels::dofs:
            return {1, lastdof, &doflabel};
        case labels::forces:
            return {1, lastdof, &forcelabel};
        case labels::cases:
            return {1, nlc(), &lcname};
        case labels::casekinds:
            return {0, 9, &lcsubname};
        default:
            return {1, 0, nullptr};
    }
}

std::vector<std::string> labelsof(labels list) {
    std::vector<std::string> texts;
    const labelrange r = rangeof(list);
    for (long i = r.first; i <= r.last; ++i) texts.push_back((*r.texts)(i));
    return texts;
}

static std::string labelof(labels list, double number) {
    const labelrange r = rangeof(list);
    const long i = long(number);
    return i >= r.first && i <= r.last ? (*r.texts)(i) : "";
}

static int firstmatch(labels list, std::string_view text, int none) {
    const labelrange r = rangeof(list);
    for (long i = r.first; i <= r.last; ++i)
        if ((*r.texts)(i) == text) return int(i);
    return none;
}

int labeltonum(const std::string& text) {
    const int code = firstmatch(labels::dofs, text, 0);
    return code != 0 ? code : firstmatch(labels::forces, text, 0);
}

int loadcaselabel(const std::string& text) {
    return firstmatch(labels::casekinds, text, -1);
}

int loadcasename(const std::string& text) {
    return firstmatch(labels::cases, text, 0);
}

// Rows one below the other mostly have the same label.
int labelbook::find(labels list, std::string_view text) {
    lastfound& last = lasts[std::size_t(list)];
    if (last.number == notyet || last.text != text) last = {std::string(text), look(list, text)};
    return last.number;
}

int labelbook::look(labels list, std::string_view text) {
    auto [at, fresh] = numbers.try_emplace(list);
    if (fresh) {
        const labelrange r = rangeof(list);
        for (long i = r.first; i <= r.last; ++i) at->second.try_emplace((*r.texts)(i), int(i));
        if (list == labels::dofs || list == labels::forces)
            for (long i = 1; i <= lastdof; ++i) {
                at->second.try_emplace(doflabel(i), int(i));
                at->second.try_emplace(forcelabel(i), int(i));
            }
    }
    const auto found = at->second.find(text);
    return found == at->second.end() ? -1 : found->second;
}

// --- cells as text ------------------------------------------------------------------------------

// Three digits at most before the point and an exponent in steps of three: 210.00E+09.
static std::string engineeringtext(double number) {
    if (!std::isfinite(number)) return numbertext(number);
    const double size = std::abs(number);
    const int exponent = size == 0 ? 0 : int(std::floor(std::log10(size)));
    int step = exponent - (exponent % 3 + 3) % 3;
    const auto scaled = [&] { return fixedtext(number / std::pow(10.0, step), 2); };
    if (std::abs(numberof(scaled())) >= 1000) step += 3;  // rounded up
    const std::string digits = numbertext(std::abs(step));
    return scaled() + (step < 0 ? "E-" : "E+") + (digits.size() < 2 ? "0" : "") + digits;
}

// At most two decimals.
static std::string degreestext(double number) {
    std::string text = fixedtext(number, 2);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text == "-0" ? "0" : text;
}

static std::string formatted(formats format, double number) {
    if (!std::isfinite(number)) return numbertext(number);
    switch (format) {
        case formats::decimals:
            return fixedtext(number, 2);
        case formats::whole:
            return fixedtext(number, 0);
        case formats::degrees:
            return degreestext(number);
        default:
            return engineeringtext(number);
    }
}

static bool textofcell(int tab, const gridcolumn& c, long item, std::string& text) {
    if (item < 1 || item > itemcount(tab)) return true;
    if (c.list == labels::cases) {
        text = labelof(c.list, placeofload(itemsof(tab), item).lc);
        return true;
    }
    if (c.array == nullptr) {
        text = numbertext(item);
        return true;
    }
    if (isbeyondtype(tab, c, item)) return true;
    if (const auto* names = std::get_if<array1<std::string>*>(&c.array->cells)) {
        text = (**names)(item);
        return true;
    }
    double number = 0;
    if (c.list == labels::none || !storednumber(tab, c, item, number)) return false;
    text = labelof(c.list, number);
    return !text.empty();
}

std::string showcell(int tab, const gridcolumn& c, long item) {
    std::string text;
    if (textofcell(tab, c, item, text)) return text;
    if (c.format == formats::general) return celltext(tab, c, item);
    double number = 0;
    return cellnumber(tab, c, item, number) ? formatted(c.format, number) : "";
}

std::string celltext(int tab, const gridcolumn& c, long item) {
    std::string text;
    if (textofcell(tab, c, item, text)) return text;
    if (isangle(c)) {
        double number = 0;
        return cellnumber(tab, c, item, number) ? numbertext(number) : "";
    }
    withcell(tab, c, item, [&](const auto& cell) {
        using type = std::remove_cvref_t<decltype(cell)>;
        if constexpr (std::is_same_v<type, float> || std::is_same_v<type, double>)
            text = numbertext(cell);
        else if constexpr (isnumbercell<type>)
            text = numbertext(int(cell));
    });
    return text;
}

// --- writing ------------------------------------------------------------------------------------

static cellanswer written(std::string remark = {}) {
    return {true, std::move(remark)};
}

static cellanswer refused(std::string reason) {
    return {false, std::move(reason)};
}

static std::string quoted(std::string_view text) {
    const std::size_t longest = 40;
    return "\"" + std::string(text.substr(0, longest)) + (text.size() > longest ? "..." : "") +
           "\"";
}

// A number that names an item must name one that is there.
static std::string faultofreference(items refers, double number) {
    static const std::map<items, const char*> names = {
        {items::node, "node"}, {items::element, "element"}, {items::group, "group"}};
    const bool there =
        number >= 1 && number <= double(countof(refers)) && number == std::floor(number);
    if (there && (refers != items::element || elems(long(number), 0) != 0)) return {};
    const std::string name = names.at(refers);
    if (number != std::floor(number)) return numbertext(number) + " is no number of a " + name;
    if (!there) return name + " " + numbertext(number) + " does not exist";
    return "element " + numbertext(number) + " is a free slot";
}

// Corners that the new type has more than the old one take the last node until others are typed.
static cellanswer savetype(long e, int type) {
    const int count = eltypnodes(type);
    if (count > 0 && nnodes() == 0) return refused("there are no nodes for an element");
    elems(e, 0) = float(type);
    for (int k = 1; k <= corners; ++k) {
        float& node = elems(e, k);
        if (k > count)
            node = 0;
        else if (node < 1)
            node = k > 1 ? elems(e, k - 1) : 1.0f;
    }
    return written();
}

static bool isnametaken(const array1<std::string>& names, long count, std::string_view name,
                        long except) {
    for (long i = 1; i <= count; ++i)
        if (i != except && names(i) == name) return true;
    return false;
}

// An empty name becomes the number, a name that another has its next free form.
static cellanswer savename(int tab, const array1<std::string>& names, std::string& cell, long item,
                           std::string_view text) {
    std::string name(text);
    if (name.find_first_not_of(" \t") == name.npos) name = numbertext(item);
    if (name == cell) return written();
    const std::string wanted = name;
    while (isnametaken(names, itemcount(tab), name, item)) name += "*";
    cell = name;
    return written(name == wanted ? "" : quoted(wanted) + " is taken, the name is " + quoted(name));
}

cellanswer savenumber(int tab, const gridcolumn& c, long item, double number) {
    if (!std::isfinite(number)) return refused("the number is too large");
    if (isbeyondtype(tab, c, item))
        return refused("an element " + eltypname(long(elems(item, 0))) + " has no " + c.caption);
    if (c.about != nullptr && c.about->refers != items::none)
        if (std::string fault = faultofreference(c.about->refers, number); !fault.empty())
            return refused(std::move(fault));
    if (tab == tabelements && c.list == labels::types) return savetype(item, int(number));
    const double value = isangle(c) ? number * degree : number;
    cellanswer answer = refused("there is no such row");
    visitcell(tab, c, item, [&](auto& cell) {
        using type = std::remove_cvref_t<decltype(cell)>;
        if constexpr (std::is_same_v<type, float>) {
            if (std::abs(value) > double(std::numeric_limits<float>::max())) {
                answer = refused(numbertext(number) + " is too large, up to 3.4E+38 can be stored");
                return;
            }
        }
        if constexpr (isnumbercell<type>) {
            cell = type(value);
            answer = written();
        }
    });
    return answer;
}

static int lastdofof(int tab) {
    return tab == tabelementloads ? lastdirection : lastdof;
}

// A label or, for a direction, its number.
static cellanswer savelabel(int tab, const gridcolumn& c, long item, std::string_view text,
                            labelbook& book) {
    int number = book.find(c.list, text);
    std::string remark;
    if (c.list == labels::types && number < 0) {
        number = 0;
        remark = "there is no element type " + quoted(text) + ", the element became a free slot";
    } else if (c.list == labels::groups && number < 0) {
        number = 1;
        remark = "there is no group " + quoted(text) + ", the element is in group 1";
    } else if (c.list == labels::casekinds && number < 0) {
        return refused(quoted(text) + " is no kind of load case");
    } else if (c.list == labels::dofs || c.list == labels::forces) {
        double code = number;
        if (number < 0 && !readnumber(text, code)) code = 0;
        if (code != std::floor(code) || code < 1 || code > lastdofof(tab))
            return refused(quoted(text) + " is no direction here");
        number = int(code);
    }
    cellanswer answer = savenumber(tab, c, item, number);
    if (answer.written) answer.reason = std::move(remark);
    return answer;
}

// The column's, or that of the row where it hangs on the row.
static std::string formulaof(int tab, const gridcolumn& c, long item) {
    if (c.array == findarray("conval")) return constraintformula(condof(item));
    if (c.array == findarray("lcpar")) return parameterformula(lctype(item), int(c.cell));
    if (c.unit.empty() || (tab != tabnodalloads && tab != tabelementloads)) return c.unit;
    const loadplace at = placeofload(itemsof(tab), item);
    if (tab == tabnodalloads) return nodalformula(at.lc, loaddof(at.lc, at.row));
    return elementformula(int(elemload(at.lc, at.row, 0)));
}

cellanswer savecell(int tab, const gridcolumn& c, long item, std::string_view text,
                    labelbook& book) {
    if (c.array == nullptr) return refused("is not written here");
    if (item < 1 || item > itemcount(tab)) return refused("there is no such row");
    if (const auto* names = std::get_if<array1<std::string>*>(&c.array->cells))
        return savename(tab, **names, (**names)(item), item, text);
    if (c.list != labels::none) return savelabel(tab, c, item, text, book);
    const bool blank = text.find_first_not_of(" \t") == text.npos;
    if (blank && isbeyondtype(tab, c, item)) return written();
    const std::string formula = formulaof(tab, c, item);
    double number = 0;
    if (!readvalue(text, formula, number))
        return refused(blank ? "the cell is empty" : valuefault(text, formula));
    return savenumber(tab, c, item, number);
}

// --- faults -------------------------------------------------------------------------------------

static bool isnodenumber(double n) {
    return n >= 1 && n <= nnodes() && n == std::floor(n);
}

static bool samepoint(long a, long b) {
    for (int k = 0; k <= 2; ++k)
        if (nodes(0, a, k) != nodes(0, b, k)) return false;
    return true;
}

static std::string faultofnode(long n) {
    for (int k = 0; k <= 2; ++k)
        if (!std::isfinite(nodes(0, n, k))) return "A coordinate is no number";
    return {};
}

static std::string faultofelement(long e) {
    const int count = nodesoftype(elems(e, 0));
    if (count == 0) return "Free slot, it goes when the model is saved";
    for (int k = 1; k <= count; ++k)
        if (!isnodenumber(elems(e, k)))
            return "Node " + numbertext(elems(e, k)) + " does not exist";
    for (int k = 1; k <= count; ++k)
        for (int j = 1; j < k; ++j) {
            const long a = long(elems(e, j)), b = long(elems(e, k));
            if (a == b) return "Node " + numbertext(a) + " is used twice";
            if (samepoint(a, b) && eltypnodes(long(elems(e, 0))) != 2)
                return "Nodes " + numbertext(a) + " and " + numbertext(b) + " lie on one place";
        }
    if (egroup(e) < 1 || egroup(e) > ngroups())
        return "Group " + numbertext(egroup(e)) + " does not exist";
    return {};
}

static std::string faultofgroup(long g) {
    static const int notnegative[] = {fieldmodulus, fielddensity, fieldthickness,
                                      fieldixx,     fieldiyy,     fieldizz};
    for (int k = 1; k <= groupfields; ++k)
        if (!std::isfinite(groups(g, k)))
            return std::string(groupcaptions[k].caption) + " is no number";
    for (const int k : notnegative)
        if (groups(g, k) < 0) return std::string(groupcaptions[k].caption) + " is negative";
    if (groups(g, fieldpoisson) <= -1 || groups(g, fieldpoisson) > 0.5)
        return "Poisson ratio is outside -1 to 0.5";
    return {};
}

static std::string faultofcondition(double node, int dof, double value) {
    if (!isnodenumber(node)) return "Node " + numbertext(node) + " does not exist";
    if (dof < 1 || dof > lastdof) return "Direction " + numbertext(dof) + " does not exist";
    return std::isfinite(value) ? "" : "The value is no number";
}

static std::string faultofnodalload(const loadplace& at) {
    return faultofcondition(loadnode(at.lc, at.row), loaddof(at.lc, at.row),
                            double(loadval(at.lc, at.row)));
}

static std::string faultofelementload(const loadplace& at) {
    const double e = elemload(at.lc, at.row, 0), direction = elemload(at.lc, at.row, 1);
    if (e < 1 || e > nelems() || elems(long(e), 0) == 0)
        return "Element " + numbertext(e) + " does not exist";
    if (direction < 1 || direction > lastdirection)
        return "Direction " + numbertext(direction) + " does not exist";
    return std::isfinite(elemload(at.lc, at.row, 2)) ? "" : "The value is no number";
}

static std::string faultofloadcase(long lc) {
    const int type = lctype(lc);
    for (int k = 0; k < caseparameters; ++k)
        if (!std::isfinite(lcpar(lc, k))) return "value" + numbertext(k + 1) + " is no number";
    if (type == casewave && lcpar(lc, waveheight) < 0)
        return "value1, the wave height, is negative";
    if (type == casewave && lcpar(lc, waveperiod) <= 0)
        return "value2, the wave period, is not above 0";
    if (type == casewave && lcpar(lc, wavedepth) <= 0)
        return "value5, the water depth, is not above 0";
    if (type == casewind && lcpar(lc, windspeed) < 0)
        return "value1, the wind velocity, is negative";
    return {};
}

static std::string faultofcombination(long c) {
    bool any = false;
    for (int lc = 1; lc <= nlc(); ++lc) {
        if (!std::isfinite(lcomb(c, lc)))
            return "The multiplier of " + lcname(lc) + " is no number";
        any = any || lcomb(c, lc) != 0;
    }
    return any ? "" : "No load case takes part";
}

std::string rowfault(int tab, long item) {
    if (item < 1 || item > itemcount(tab)) return {};
    switch (tab) {
        case tabnodes:
            return faultofnode(item);
        case tabelements:
            return faultofelement(item);
        case tabgroups:
            return faultofgroup(item);
        case tabconstraints:
            return faultofcondition(connode(item), condof(item), double(conval(item)));
        case tabloadcases:
            return faultofloadcase(item);
        case tabnodalloads:
            return faultofnodalload(placeofload(items::nodalload, item));
        case tabelementloads:
            return faultofelementload(placeofload(items::elementload, item));
        default:
            return faultofcombination(item);
    }
}
