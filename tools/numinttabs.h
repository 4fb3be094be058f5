// SPDX-License-Identifier: GPL-3.0-or-later
// The eight tabs of the tables of numbers: which columns each has, and how a cell is shown, read
// and written. A cell is the number in the model's array itself; what a column means - its unit,
// what it refers to - comes from the table of the model. An item is a row of a tab, from 1; the
// loads of all load cases run on as one list.
#pragma once

#include <array>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/modeltable.h"

enum gridtabs {
    tabnodes,
    tabelements,
    tabgroups,
    tabconstraints,
    tabloadcases,
    tabnodalloads,
    tabelementloads,
    tabcombinations,
    ngridtabs
};
extern const char* const tabcaptions[ngridtabs];

// How the numbers of a column stand in their cells; typed and copied they stand in full.
enum class formats { general, whole, decimals, degrees, engineering };
// The texts that stand for the numbers of a column.
enum class labels { none, types, groups, dofs, forces, cases, casekinds };

struct gridcolumn {
    std::string caption, unit;
    formats format = formats::general;
    labels list = labels::none;
    const modelarray* array = nullptr;  // none: the number of the item, which is shown only
    long cell = 0;                      // of the item's row
    const column* about = nullptr;      // what the table of the model says of it
    bool isfixed() const { return array == nullptr && list == labels::none; }
};
// The columns of a tab as the model stands: the combinations have one for each load case.
std::vector<gridcolumn> columnsof(int tab);

items itemsof(int tab);  // what the rows of a tab are
long itemcount(int tab);
// The load case and the row in its list of item i of all loads; lc is 0 where there is none.
struct loadplace {
    int lc = 0;
    long row = 0;
};
loadplace placeofload(items of, long i);
long itemofload(items of, const loadplace& at);
bool isloadtab(int tab);
// Loads of the load cases before each one; entry 0 is 0, also where the rows are no loads.
std::vector<long> loadsbefore(items of);

// Cell as the table shows it, and in full.
std::string showcell(int tab, const gridcolumn& c, long item);
std::string celltext(int tab, const gridcolumn& c, long item);
// Number of the cell, angles in degrees; false for a text or none.
bool cellnumber(int tab, const gridcolumn& c, long item, double& number);

// Entries of the list over a cell.
std::vector<std::string> labelsof(labels list);

// Labels back to numbers; 0, or -1 for the kind of a load case, where no label matches.
int labeltonum(const std::string& text);     // of a degree of freedom, in both tables
int loadcaselabel(const std::string& text);  // lctype by the first match
int loadcasename(const std::string& text);   // load case by its name

// The numbers of all labels, for as long as no name changes.
class labelbook {
  public:
    int find(labels list, std::string_view text);  // -1 for none

  private:
    static constexpr int notyet = -2;
    struct lastfound {
        std::string text;
        int number = notyet;
    };
    int look(labels list, std::string_view text);
    std::map<labels, std::map<std::string, int, std::less<>>> numbers;
    std::array<lastfound, std::size_t(labels::casekinds) + 1> lasts;
};

// Writes text into the cell, with what a changed cell brings with it. What cannot be written leaves
// the cell as it was and returns the reason; a remark on what was made of a text has told set.
struct cellanswer {
    bool written = false;
    std::string reason;
};
cellanswer savecell(int tab, const gridcolumn& c, long item, std::string_view text,
                    labelbook& book);
cellanswer savenumber(int tab, const gridcolumn& c, long item, double number);  // of an item there

// Why the row cannot be meant as it stands; empty where nothing is wrong with it.
std::string rowfault(int tab, long item);
