// SPDX-License-Identifier: GPL-3.0-or-later
// The form of the tables of numbers: rows on show, edits, selection, search. Adding and deleting is
// in tools/numintitems.cpp.
#include "tools/numint.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <numeric>

#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "edit/selection.h"

// --- rows on show -------------------------------------------------------------------------------

long numinttable::itemof(long row) const {
    if (row < 0 || row >= rows()) return 0;
    return all ? row + 1 : items[std::size_t(row)];
}

long numinttable::rowof(long item) const {
    if (all) return item >= 1 && item <= rows() ? item - 1 : -1;
    const auto at = std::ranges::find(items, int(item));
    return at == items.end() ? -1 : at - items.begin();
}

void setgrid(numinttable& t) {
    t.columns = columnsof(t.tab);
}

static std::vector<int> selecteditems(int tab) {
    if (tab == tabnodes) return selectednodes();
    if (tab == tabelements) return selectedelements();
    return {};
}

static std::string lowered(std::string_view text) {
    std::string low(text);
    for (char& c : low) c = char(std::tolower(static_cast<unsigned char>(c)));
    return low;
}

namespace {
// A filter as it was typed: bounds of a number, or a text that a cell holds.
struct filterrule {
    bool numeric = false;
    double low = -INFINITY, high = INFINITY;
    bool strict = false;
    std::string text;

    explicit filterrule(const std::string& typed) {
        const std::size_t dots = typed.find("..");
        double a = 0, b = 0;
        if (dots != typed.npos && readnumber(typed.substr(0, dots), a) &&
            readnumber(typed.substr(dots + 2), b)) {
            numeric = true;
            low = std::min(a, b);
            high = std::max(a, b);
        } else if (!typed.empty() && readnumber(typed.substr(1), a)) {
            numeric = typed[0] == '<' || typed[0] == '>' || typed[0] == '=';
            if (typed[0] != '<') low = a;
            if (typed[0] != '>') high = a;
            strict = typed[0] != '=';
        }
        text = lowered(typed);
    }
    bool takes(double number) const {
        return strict ? number > low && number < high : number >= low && number <= high;
    }
};
}  // namespace

static bool holdstext(const numinttable& t, long item, const gridcolumn& c,
                      const std::string& low) {
    return lowered(celltext(t.tab, c, item)).find(low) != std::string::npos ||
           lowered(showcell(t.tab, c, item)).find(low) != std::string::npos;
}

// The number in a cell; that of the item itself in the columns that show it.
static bool numberat(const numinttable& t, const gridcolumn& c, long item, double& number) {
    if (!c.isfixed()) return c.list == labels::none && cellnumber(t.tab, c, item, number);
    number = double(item);
    return true;
}

static void keepfiltered(numinttable& t) {
    const filterrule rule(t.filter);
    const gridcolumn& column = t.columns[std::size_t(t.filtercolumn)];
    std::erase_if(t.items, [&](int item) {
        double number = 0;
        if (rule.numeric) return !numberat(t, column, item, number) || !rule.takes(number);
        return std::ranges::none_of(
            t.columns, [&](const gridcolumn& c) { return holdstext(t, item, c, rule.text); });
    });
}

// Numbers before texts; equal rows stay in the order of their numbers.
static void sortitems(numinttable& t) {
    const gridcolumn& c = t.columns[std::size_t(t.sortcolumn)];
    struct key {
        double number = INFINITY;
        std::string text;
        int item = 0;
    };
    std::vector<key> keys;
    keys.reserve(t.items.size());
    for (const int item : t.items) {
        keys.push_back({INFINITY, "", item});
        if (!numberat(t, c, item, keys.back().number)) keys.back().text = celltext(t.tab, c, item);
        if (std::isnan(keys.back().number)) keys.back().number = INFINITY;
    }
    const auto less = [](const key& a, const key& b) {
        return a.number != b.number ? a.number < b.number : a.text < b.text;
    };
    std::ranges::stable_sort(
        keys, [&](const key& a, const key& b) { return t.descending ? less(b, a) : less(a, b); });
    for (std::size_t i = 0; i < keys.size(); ++i) t.items[i] = keys[i].item;
}

static void fillrows(numinttable& t) {
    const bool filtered = !t.filter.empty(), sorted = t.sortcolumn >= 0;
    const std::vector<int> chosen = t.picked ? selecteditems(t.tab) : std::vector<int>();
    t.all = !t.picked && !filtered && !sorted;
    t.items.clear();
    if (t.all) return;
    if (t.picked) {
        for (const int item : chosen)
            if (item >= 1 && item <= itemcount(t.tab)) t.items.push_back(item);
    } else {
        t.items.resize(std::size_t(itemcount(t.tab)));
        std::iota(t.items.begin(), t.items.end(), 1);
    }
    if (filtered) keepfiltered(t);
    if (sorted) sortitems(t);
}

void Showdata(numintform& form, int nt) {
    numinttable& t = form.table[nt];
    setgrid(t);
    const int last = int(t.columns.size()) - 1;
    t.filtercolumn = std::clamp(t.filtercolumn, 0, last);
    t.sortcolumn = std::min(t.sortcolumn, last);
    fillrows(t);
}

void choosetab(numintform& form, int nt, int tab) {
    if (tab < 0 || tab >= ngridtabs) return;
    numinttable& t = form.table[nt];
    t = numinttable();
    t.tab = tab;
    t.picked = !selecteditems(tab).empty();
    Showdata(form, nt);
}

numintform opennumint() {
    numintform form;
    for (const int nt : {0, 1}) choosetab(form, nt, tabnodes);
    return form;
}

void refill(numintform& form) {
    for (const int nt : {1, 0}) {
        numinttable& t = form.table[nt];
        setgrid(t);
        const long count = itemcount(t.tab);
        std::erase_if(t.items, [count](int item) { return item > count; });
    }
}

// --- edits --------------------------------------------------------------------------------------

bool showedit(numintform& form, int nt, int firstcolumn, int lastcolumn) {
    form.message.clear();
    if (nt == 0) {
        theplatform().message(
            "This window is for reference only, use right side window to edit database",
            icons::information);
        return false;
    }
    if (firstcolumn != lastcolumn) {
        theplatform().message("You can not edit multiple columns", icons::information);
        return false;
    }
    return !form.table[1].columns[std::size_t(firstcolumn)].isfixed();
}

std::vector<std::string> loadcombo(const numinttable& t, int col) {
    return labelsof(t.columns[std::size_t(col)].list);
}

void cellfaults::add(long row, const gridcolumn& c, const cellanswer& answer) {
    if (answer.reason.empty()) return;
    refused = refused || !answer.written;
    if (count++ == 0)
        first = rowword + numbertext(row + 1) + ", " + c.caption + ": " + answer.reason;
}

void cellfaults::join(const cellfaults& earlier) {
    if (earlier.count == 0) return;
    count += earlier.count;
    first = earlier.first;
    refused = refused || earlier.refused;
}

std::string cellfaults::words(const std::string& success) const {
    if (count == 0) return success;
    std::string text = first;
    if (count > 1) text += ", and " + numbertext(count - 1) + " more";
    return text + (refused ? ". What can not be stored keeps its value" : "");
}

void notenumbers(numintform& form) {
    resultflag = 1;
    dorenumber = 1;
    form.changed = true;
    dropundo();
    refill(form);
}

// The row in which the new item is seen, and what is typed goes to.
static bool addtyped(numintform& form, std::vector<long>& rows) {
    numinttable& t = form.table[1];
    if (!askadd(1)) return false;
    const std::vector<long> added = appenditems(t.tab, {curlc});
    if (added.empty()) return false;
    if (!t.all) t.items.push_back(int(added.front()));
    rows.back() = t.rowof(added.front());
    return true;
}

// The text into the column's cells in these rows of the right table.
static void savedatabase(numintform& form, const std::vector<long>& rows, int col,
                         std::string_view text) {
    const numinttable& t = form.table[1];
    const gridcolumn c = t.columns[std::size_t(col)];
    cellfaults faults;
    std::vector<loadmove> moves;
    labelbook book;
    for (const long row : rows) {
        const long item = t.itemof(row);
        if (c.list == labels::cases) {
            if (const int lc = loadcasename(std::string(text)); lc != 0)
                moves.push_back({placeofload(itemsof(t.tab), item), lc});
            else
                faults.add(row, c, {false, "there is no load case of this name"});
        } else {
            faults.add(row, c, savecell(t.tab, c, item, text, book));
        }
    }
    moveloads(t.tab, moves, faults);
    form.message = faults.words("");
    notenumbers(form);
}

void closedit(numintform& form, const std::vector<long>& typedrows, int col,
              std::string_view text) {
    form.message.clear();
    std::vector<long> rows = typedrows;
    std::ranges::sort(rows);
    const long last = form.table[1].rows();
    if (rows.empty() || rows.back() > last) return;
    if (rows.back() == last && !addtyped(form, rows)) return refill(form);
    savedatabase(form, rows, col, text);
}

// --- arithmetic ---------------------------------------------------------------------------------

void calculate(numintform& form, const std::vector<long>& rows, int col, const std::string& text) {
    const numinttable& t = form.table[1];
    const gridcolumn c = t.columns[std::size_t(col)];
    const std::size_t first = text.find_first_not_of(' ');
    const char sign = first == text.npos ? ' ' : text[first];
    double number = 0;
    if (std::string("*/+-").find(sign) == std::string::npos ||
        !readnumber(text.substr(first + 1), number)) {
        form.message = "Write what is done to the numbers, such as *1.1, /2, +250 or -3";
        return;
    }
    if (c.array == nullptr || c.list != labels::none) {
        form.message = "The column " + c.caption + " holds no numbers to calculate with";
        return;
    }
    if (sign == '/' && number == 0) {
        form.message = "A division by 0 gives no number";
        return;
    }
    cellfaults faults;
    long done = 0;
    for (const long row : rows) {
        double value = 0;
        const long item = t.itemof(row);
        if (item == 0 || !cellnumber(t.tab, c, item, value)) continue;
        if (c.about->refers == items::node && value == 0) continue;  // no corner of this type
        if (sign == '*') value *= number;
        if (sign == '/') value /= number;
        if (sign == '+') value += number;
        if (sign == '-') value -= number;
        const cellanswer answer = savenumber(t.tab, c, item, value);
        faults.add(row, c, answer);
        done += answer.written;
    }
    form.message = faults.words(numbertext(done) + " cells calculated");
    if (done > 0) notenumbers(form);
}

// --- order and search ---------------------------------------------------------------------------

void sortby(numintform& form, int nt, int col) {
    numinttable& t = form.table[nt];
    if (t.sortcolumn != col) {
        t.sortcolumn = col;
        t.descending = false;
    } else if (!t.descending) {
        t.descending = true;
    } else {
        t.sortcolumn = -1;
        t.descending = false;
    }
    Showdata(form, nt);
    form.message = t.sortcolumn < 0 ? "In the order of the numbers"
                                    : "Sorted by " + t.columns[std::size_t(col)].caption +
                                          (t.descending ? ", downwards" : ", upwards");
}

void filterby(numintform& form, int nt, const std::string& text, int col) {
    numinttable& t = form.table[nt];
    t.filter = text;
    t.filtercolumn = col;
    Showdata(form, nt);
    form.message =
        text.empty() ? "" : numbertext(t.rows()) + " of " + numbertext(itemcount(t.tab)) + " rows";
}

gridcell findnext(const numintform& form, int nt, const std::string& text, gridcell from) {
    const numinttable& t = form.table[nt];
    const std::string low = lowered(text);
    const long rows = t.rows(), columns = long(t.columns.size());
    if (low.empty() || rows == 0) return {};
    const long start = std::clamp(from.row, 0L, rows - 1) * columns + from.col;
    for (long i = 1; i <= rows * columns; ++i) {
        const long at = (start + i) % (rows * columns);
        const int col = int(at % columns);
        if (holdstext(t, t.itemof(at / columns), t.columns[std::size_t(col)], low))
            return {at / columns, col};
    }
    return {};
}

gridcell findfault(const numintform& form, int nt, gridcell from) {
    const numinttable& t = form.table[nt];
    const long rows = t.rows();
    for (long i = 1; i <= rows; ++i) {
        const long row = (std::max(from.row, 0L) + i) % rows;
        if (!rowfault(t.tab, t.itemof(row)).empty()) return {row, from.col};
    }
    return {};
}

// --- selection ----------------------------------------------------------------------------------

void selectitem(const numintform& form, int nt, const std::vector<long>& rows) {
    const numinttable& t = form.table[nt];
    if (t.picked || (t.tab != tabnodes && t.tab != tabelements)) return;
    hideselection();
    emptyselection();
    long count = 0;
    for (const long row : rows) {
        const long item = t.itemof(row);
        if (item == 0) continue;
        ++count;
        if (t.tab == tabnodes)
            nodesel(count) = int(item);
        else
            elemsel(count) = float(item);
    }
    if (t.tab == tabnodes)
        nodesel(0) = int(count);
    else
        elemsel(0) = float(count);
    checkselectitem(t.tab == tabnodes ? selectnodes : selectelements);
    showselection();
    labelselect();
}
