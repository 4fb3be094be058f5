// SPDX-License-Identifier: GPL-3.0-or-later
// The tables of numbers: a paste of 100 000 rows against the parse of the same text, that is to cut
// it into cells and to read each as a number or a text; and how long a table of a million nodes
// takes to open and to show a screen of rows.
#include <cstdio>
#include <string>
#include <vector>

#include "bench/largemodel.h"
#include "bench/ratio.h"
#include "core/model.h"
#include "core/numtext.h"
#include "tools/numint.h"
#include "tools/numintpaste.h"

static const long pastedrows = 100000;

static std::string textof(numintform& form, int tab) {
    choosetab(form, 1, tab);
    std::vector<long> rows;
    for (long row = 0; row < std::min(pastedrows, form.table[1].rows()); ++row) rows.push_back(row);
    std::vector<int> columns;
    for (std::size_t k = 0; k < form.table[1].columns.size(); ++k) columns.push_back(int(k));
    return copycells(form, 1, rows, columns);
}

static double parse(const std::string& text) {
    const sheet s = readsheet(text, '\t');
    double sum = 0, number = 0;
    for (const std::string_view cell : s.cells) sum += readnumber(cell, number) ? number : 1.0;
    return sum;
}

static void measurepaste(int tab) {
    numintform form = opennumint();
    const std::string text = textof(form, tab);
    const int runs = 5;
    const double limit = 3;
    double sum = 0;
    printratio(
        std::string("paste of 100 000 rows, ") + tabcaptions[tab], runs, limit,
        [&] { pastecells(form, {0}, 0, text); }, [&] { sum += parse(text); });
    std::printf("  %s (%g)\n", form.message.c_str(), sum);
}

int main() {
    startsession();
    makelargemodel(1000);
    measurepaste(tabnodes);
    measurepaste(tabelements);
    std::size_t shown = 0;
    const double seconds = secondsof([&] {
        numintform form = opennumint();
        const numinttable& t = form.table[1];
        for (long row = 0; row < 50; ++row)
            for (const gridcolumn& c : t.columns) shown += showcell(t.tab, c, t.itemof(row)).size();
    });
    std::printf("a screen of %ld nodes: %.4f s (wanted: at most 0.30, %zu characters)\n",
                itemcount(tabnodes), seconds, shown);
}
