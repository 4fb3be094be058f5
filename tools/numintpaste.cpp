// SPDX-License-Identifier: GPL-3.0-or-later
// Rectangles of cells to and from a spreadsheet.
#include "tools/numintpaste.h"

#include <algorithm>
#include <utility>

#include "core/csvout.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/textfile.h"

// --- cutting ------------------------------------------------------------------------------------

namespace {
class cutter {
  public:
    cutter(std::string_view t, char s) : at(t.data()), last(t.data() + t.size()), separator(s) {}
    void cut(sheet& s) {
        while (at != last) {
            s.cells.push_back(*at == '"' ? quoted(s) : plain());
            if (at != last && *at == separator) {
                if (++at == last) s.cells.emplace_back();  // an empty cell ends the text
                if (at != last) continue;
            }
            if (at != last && *at == '\r') ++at;
            if (at != last && *at == '\n') ++at;
            s.ends.push_back(s.cells.size());
        }
    }

  private:
    std::string_view plain() {
        const char* const begin = at;
        while (at != last && !isend(*at)) ++at;
        return {begin, std::size_t(at - begin)};
    }
    // A quote inside stands twice; what follows the closing one belongs to the cell.
    std::string_view quoted(sheet& s) {
        const char* const begin = ++at;
        while (at != last && *at != '"') ++at;
        const std::string_view whole(begin, std::size_t(at - begin));
        if (at == last) return whole;
        if (++at == last || isend(*at)) return whole;
        std::string text(whole);
        while (at != last && *at == '"') {
            text += '"';
            for (++at; at != last && *at != '"'; ++at) text += *at;
            if (at != last) ++at;
        }
        text += plain();
        return s.quotedcells.emplace_back(std::move(text));
    }
    bool isend(char c) const { return c == separator || c == '\n' || c == '\r'; }
    const char *at, *last;
    char separator;
};
}  // namespace

sheet readsheet(std::string_view text, char separator) {
    sheet s;
    cutter(text, separator).cut(s);
    return s;
}

static void appendrow(std::string& text, const numinttable& t, long row,
                      const std::vector<int>& columns, char separator) {
    const long item = t.itemof(row);
    bool first = true;
    for (const int col : columns) {
        if (!first) text += separator;
        first = false;
        appendcell(text, celltext(t.tab, t.columns[std::size_t(col)], item), separator);
    }
}

std::string copycells(const numintform& form, int nt, const std::vector<long>& rows,
                      const std::vector<int>& columns) {
    std::string text;
    for (const long row : rows) {
        if (form.table[nt].itemof(row) == 0) continue;
        appendrow(text, form.table[nt], row, columns, '\t');
        text += '\n';
    }
    return text;
}

// --- pasting ------------------------------------------------------------------------------------

namespace {
const long nosuch = -1;  // a column of the text that goes to no column of the table

// A paste under way: which columns the text's go to, and the row of the table for each of its rows.
struct pasting {
    pasting(numintform& f, const sheet& text) : form(f), s(text) { faults.rowword = "Line "; }
    numintform& form;
    const sheet& s;
    std::vector<long> columns = {};  // of the table, by column of the text
    std::size_t firstrow = 0;        // of the text
    long startrow = 0;               // of the table
    bool byname = false;             // the names of groups decide the rows
    cellfaults faults = {};
    labelbook book = {};
    std::vector<loadmove> moves = {};

    numinttable& table() { return form.table[1]; }
    const gridcolumn& column(long c) { return table().columns[std::size_t(c)]; }
    void run();

  private:
    // Item of a row of the text: 0 for a new one, nosuch for a row that can not be placed.
    long itemfor(std::size_t row);
    long itembynumber(std::size_t row, std::string_view text);
    long textcolumn(auto isit);
    bool isblank(std::size_t row);
    int casefor(std::size_t row);
    bool addrows(const std::vector<std::size_t>& fresh, std::vector<long>& added);
    void writerow(std::size_t row, long item);
    long numbercolumn = nosuch, namecolumn = nosuch, casecolumn = nosuch;
    long newitems = 0;
};
}  // namespace

long pasting::textcolumn(auto isit) {
    for (std::size_t k = 0; k < columns.size(); ++k)
        if (columns[k] != nosuch && isit(column(columns[k]))) return long(k);
    return nosuch;
}

bool pasting::isblank(std::size_t row) {
    for (std::size_t k = 0; k < s.columns(row); ++k)
        if (!s.cell(row, k).empty()) return false;
    return true;
}

// Numbers of what is referred to have to run on; those of conditions are places in a list.
static bool isnumbered(int tab) {
    return tab == tabnodes || tab == tabelements || tab == tabloadcases || tab == tabcombinations;
}

long pasting::itembynumber(std::size_t row, std::string_view text) {
    double number = 0;
    if (text == "New") return 0;
    const bool read = readnumber(text, number) && number >= 1 && number == double(long(number));
    const long count = itemcount(table().tab);
    if (read && number <= double(count)) return long(number);
    if (read && (!isnumbered(table().tab) || long(number) == count + newitems + 1)) return 0;
    const std::string found(text);
    faults.add(long(row), table().columns[0],
               {false, read ? found + " does not follow on " + numbertext(count + newitems) +
                                  ", numbers run on without a gap"
                            : "\"" + found + "\" is no number of a row"});
    return nosuch;
}

long pasting::itemfor(std::size_t row) {
    const auto given = [&](long k) {
        return k != nosuch && std::size_t(k) < s.columns(row) &&
               !s.cell(row, std::size_t(k)).empty();
    };
    if (given(numbercolumn)) return itembynumber(row, s.cell(row, std::size_t(numbercolumn)));
    if (byname && given(namecolumn)) {
        const int g = book.find(labels::groups, s.cell(row, std::size_t(namecolumn)));
        return std::max(g, 0);
    }
    return table().itemof(startrow + long(row - firstrow));
}

int pasting::casefor(std::size_t row) {
    if (casecolumn == nosuch || std::size_t(casecolumn) >= s.columns(row)) return curlc;
    const int lc = book.find(labels::cases, s.cell(row, std::size_t(casecolumn)));
    return lc > 0 ? lc : int(curlc);
}

bool pasting::addrows(const std::vector<std::size_t>& fresh, std::vector<long>& added) {
    if (fresh.empty()) return true;
    if (!askadd(long(fresh.size()))) return false;
    std::vector<int> cases;
    for (const std::size_t row : fresh) cases.push_back(casefor(row));
    added = appenditems(table().tab, cases);
    return !added.empty();
}

// Two columns of one property: the one that differs from what stands there is the one that was
// changed.
static bool isunchangedtwin(int tab, const gridcolumn& c, const std::string& before,
                            std::string_view text) {
    return tab == tabgroups && c.cell == fieldthickness && text == before;
}

void pasting::writerow(std::size_t row, long item) {
    const int tab = table().tab;
    const std::string thickness = tab == tabgroups ? celltext(tab, column(4), item) : std::string();
    const std::size_t last = std::min(s.columns(row), columns.size());
    for (std::size_t k = 0; k < last; ++k) {
        const std::string_view text = s.cell(row, k);
        if (columns[k] == nosuch || text.empty()) continue;
        const gridcolumn& c = column(columns[k]);
        if (c.isfixed() || isunchangedtwin(tab, c, thickness, text)) continue;
        if (c.list == labels::cases) {
            const int lc = book.find(c.list, text);
            if (lc < 1)
                faults.add(long(row), c,
                           {false, "there is no load case \"" + std::string(text) + "\""});
            else
                moves.push_back({placeofload(itemsof(tab), item), lc});
            continue;
        }
        const cellanswer answer = savecell(tab, c, item, text, book);
        if (!answer.reason.empty()) faults.add(long(row), c, answer);
    }
}

void pasting::run() {
    numbercolumn = textcolumn([](const gridcolumn& c) { return c.caption == " ID "; });
    namecolumn = textcolumn([](const gridcolumn& c) { return c.caption == " Name "; });
    casecolumn = textcolumn([](const gridcolumn& c) { return c.list == labels::cases; });
    std::vector<std::size_t> fresh;
    std::vector<std::pair<std::size_t, long>> known;
    for (std::size_t row = firstrow; row < s.rows(); ++row) {
        if (isblank(row)) continue;
        const long item = itemfor(row);
        if (item > 0) known.emplace_back(row, item);
        if (item == 0) {
            fresh.push_back(row);
            ++newitems;
        }
    }
    if (faults.count > 0) {
        form.message = faults.words("") + ". Nothing was pasted";
        return;
    }
    // New loads stand between those of other load cases, so that items get other numbers.
    const int tab = table().tab;
    const bool loads = isloadtab(tab);
    std::vector<loadplace> places;
    for (const auto& [row, item] : known)
        if (loads) places.push_back(placeofload(itemsof(tab), item));
    std::vector<long> added;
    if (!addrows(fresh, added)) return;
    const std::vector<long> before = loadsbefore(itemsof(tab));
    for (std::size_t i = 0; i < known.size(); ++i)
        writerow(known[i].first,
                 loads ? before[std::size_t(places[i].lc)] + places[i].row : known[i].second);
    const cellfaults knownfaults = std::exchange(faults, cellfaults{});
    faults.rowword = knownfaults.rowword;
    for (std::size_t i = 0; i < fresh.size(); ++i) writerow(fresh[i], added[i]);
    if (faults.refused) {
        dropadded(tab, added);
        form.message = faults.first + ". No row was added";
    } else {
        if (!table().all)
            for (const long item : added) table().items.push_back(int(item));
        faults.join(knownfaults);
        form.message =
            faults.words(numbertext(long(known.size() + fresh.size())) + " rows written");
    }
    moveloads(tab, moves, faults);
}

static bool hasseveral(const sheet& s) {
    return s.rows() > 1 || (s.rows() == 1 && s.columns(0) > 1);
}

void pastecells(numintform& form, const std::vector<long>& rows, int col, std::string_view text) {
    form.message.clear();
    if (rows.empty()) return;
    const sheet s = readsheet(text, '\t');
    if (s.rows() == 0) {
        form.message = "There is nothing to paste";
        return;
    }
    if (!hasseveral(s)) return closedit(form, rows, col, s.cell(0, 0));
    pasting p(form, s);
    p.startrow = *std::ranges::min_element(rows);
    std::size_t widest = 0;
    for (std::size_t row = 0; row < s.rows(); ++row) widest = std::max(widest, s.columns(row));
    const long free = long(form.table[1].columns.size()) - col;
    if (long(widest) > free) {
        form.message = "The text has " + numbertext(long(widest)) +
                       " columns, from here on there are " + numbertext(free) +
                       ". Nothing was pasted";
        return;
    }
    for (std::size_t k = 0; k < widest; ++k) p.columns.push_back(col + long(k));
    p.run();
    notenumbers(form);
}

// --- files --------------------------------------------------------------------------------------

static std::string captionof(const gridcolumn& c) {
    const std::size_t begin = c.caption.find_first_not_of(' ');
    std::string caption =
        begin == c.caption.npos
            ? ""
            : c.caption.substr(begin, c.caption.find_last_not_of(' ') + 1 - begin);
    return c.unit.empty() ? caption : caption + " [" + c.unit + "]";
}

void writecsv(numintform& form, int nt, const std::string& path) {
    const numinttable& t = form.table[nt];
    csvout out(path);
    for (const gridcolumn& c : t.columns) out.cell(captionof(c));
    out.endrow();
    for (long row = 0; row < t.rows(); ++row) {
        for (const gridcolumn& c : t.columns) out.cell(celltext(t.tab, c, t.itemof(row)));
        out.endrow();
    }
    out.commit();
    form.message = numbertext(t.rows()) + " rows written to " + path;
}

// The one that the first line has most of.
static char separatorof(const std::string& text) {
    const std::string line = text.substr(0, text.find('\n'));
    char best = ',';
    for (const char c : {',', ';', '\t'})
        if (std::ranges::count(line, c) > std::ranges::count(line, best)) best = c;
    return best;
}

// Caption without blanks around it and without its unit.
static std::string_view plaincaption(std::string_view text) {
    if (const std::size_t unit = text.find('['); unit != text.npos) text = text.substr(0, unit);
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

// False where the first line holds no captions.
static bool columnsbycaption(const sheet& s, const numinttable& t, std::vector<long>& columns,
                             std::string& unknown) {
    bool any = false;
    for (std::size_t k = 0; k < s.columns(0); ++k) {
        const auto at = std::ranges::find_if(t.columns, [&](const gridcolumn& c) {
            return plaincaption(captionof(c)) == plaincaption(s.cell(0, k));
        });
        any = any || at != t.columns.end();
        columns.push_back(at == t.columns.end() ? nosuch : at - t.columns.begin());
        if (at == t.columns.end())
            unknown += (unknown.empty() ? "" : ", ") + std::string(s.cell(0, k));
    }
    return any;
}

void readcsv(numintform& form, const std::string& path) {
    form.message.clear();
    const std::string text = toutf8(readwhole(path));
    const sheet s = readsheet(text, separatorof(text));
    if (s.rows() == 0) {
        form.message = path + " is empty";
        return;
    }
    pasting p(form, s);
    std::string unknown;
    if (columnsbycaption(s, form.table[1], p.columns, unknown)) {
        p.firstrow = 1;
        p.byname = true;
    } else {
        p.columns.clear();
        for (std::size_t k = 0; k < std::min(s.columns(0), form.table[1].columns.size()); ++k)
            p.columns.push_back(long(k));
        unknown.clear();
    }
    p.run();
    if (!unknown.empty()) form.message += ". Columns not known here: " + unknown;
    notenumbers(form);
}
