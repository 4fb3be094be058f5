// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog "Numerical Interface": the model as two tables of numbers. The left one, number 0, is
// for reference; the right one, number 1, is typed over. Both show the model's own arrays: nothing
// is copied, and only what was typed, pasted or added is written.
//
// Rows are counted from 0 as the table shows them; the row behind the last item is the spare one,
// "New". Operations leave what they have to say in the message.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/numinttabs.h"

struct numinttable {
    int tab = tabnodes;
    std::vector<gridcolumn> columns;
    bool all = true;         // every item in its order
    bool picked = false;     // the items are the selected ones
    std::vector<int> items;  // those on show where they are not all
    int sortcolumn = -1;     // -1: by number
    bool descending = false;
    std::string filter;
    int filtercolumn = 0;  // that a comparison such as ">5" is made in

    long rows() const { return all ? itemcount(tab) : long(items.size()); }
    // Item in a row, 0 in the spare one.
    long itemof(long row) const;
    long rowof(long item) const;  // -1 where it is not shown
};

struct numintform {
    numinttable table[2];
    bool changed = false;  // the views show what no longer stands
    std::string message;
};

numintform opennumint();
void choosetab(numintform& form, int nt, int tab);
// Columns and rows of table nt from the model: the selected nodes or elements if there are any,
// else all; of these those that the filter lets through, in the order of the sorting.
void Showdata(numintform& form, int nt);
void setgrid(numinttable& t);  // the columns alone
// After a change of values: both tables, the right one first. Rows stay where they are.
void refill(numintform& form);

// May an edit begin? Tells why not: in the left table, over more than one column.
bool showedit(numintform& form, int nt, int firstcolumn, int lastcolumn);
// The list over a cell, empty where the cell takes a text.
std::vector<std::string> loadcombo(const numinttable& t, int col);
// The end of an edit: the text goes to the column's cells in all these rows. In the spare row a new
// item is asked for.
void closedit(numintform& form, const std::vector<long>& rows, int col, std::string_view text);

// Takes the items in these rows out of the model, after a question.
void delitem(numintform& form, const std::vector<long>& rows);

// The items in these rows become the selection of the model, where the tab has nodes or elements
// and shows all of them.
void selectitem(const numintform& form, int nt, const std::vector<long>& rows);

// "*1.1", "/2", "+250", "-3" on the column's numbers in these rows.
void calculate(numintform& form, const std::vector<long>& rows, int col, const std::string& text);
// By the numbers or texts of a column; once more turns the order round, a third time ends it.
void sortby(numintform& form, int nt, int col);
// Rows with the text in any cell; ">5", "<5", "=5" and "2..5" compare the numbers of the column.
void filterby(numintform& form, int nt, const std::string& text, int col);
struct gridcell {
    long row = -1;
    int col = 0;
};
// The next cell behind this one that holds the text, round the end; row -1 for none.
gridcell findnext(const numintform& form, int nt, const std::string& text, gridcell from);
// The next row that is marked, behind this one.
gridcell findfault(const numintform& form, int nt, gridcell from);

// --- for operations that write several rows
// --------------------------------------------------------

// What could not be written: how many cells, and the first of them in words.
struct cellfaults {
    long count = 0;
    std::string first;
    bool refused = false;  // at least one cell kept its value
    const char* rowword = "Row ";
    void add(long row, const gridcolumn& c, const cellanswer& answer);
    void join(const cellfaults& earlier);
    std::string words(const std::string& success) const;
};

// Appends as many items as there are entries, each a load case where the tab has loads; their
// numbers, or none where there is no room, which is told.
std::vector<long> appenditems(int tab, const std::vector<int>& cases);
void dropadded(int tab, const std::vector<long>& added);  // takes them back
bool askadd(long count);
// Loads that go to another load case, each behind the loads that it has.
struct loadmove {
    loadplace from;
    int lc;
};
void moveloads(int tab, const std::vector<loadmove>& moves, cellfaults& faults);
// What follows from a change: results no longer fit the model.
void notenumbers(numintform& form);
