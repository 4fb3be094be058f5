// SPDX-License-Identifier: GPL-3.0-or-later
// Envelopes in the illustrated report: the worst places, and the bounds of all.
#include "core/model.h"
#include "core/numtext.h"
#include "core/runtime.h"
#include "core/textfile.h"
#include "post/book.h"
#include "post/bookparts.h"
#include "post/envelopetables.h"
#include "post/plainnumber.h"
#include "post/source.h"

// A file that is not there has no table: the model has no such elements.
template <typename Work>
static void eachkind(booksink& b, Work work) {
    if (!hasresults(b)) return;
    b.text(envelopecaption() +
           ". Behind a value stands the number of the combination that governs.");
    for (const envelopekind& kind : envelopekindsoftables)
        guarded([&] { work(kind); },
                [&](const runtimeerror& e) {
                    if (e.number == errstopped) throw e;
                    if (e.number != errfilenotfound) b.text(e.what, true);
                });
}

static std::string governedtext(double value, int c) {
    return shorttext(value) + " (" + numbertext(c) + ")";
}

void bookenvelopes(booksink& b) {
    eachkind(b, [&](const envelopekind& kind) {
        for (const boundstable& t : boundstables(kind, bookprogress)) {
            b.begintable(t.caption,
                         {{"", false, 1.2},
                          {"Largest"},
                          {"at", false, 1.5},
                          {"Smallest"},
                          {"at", false, 1.5},
                          {"By size"}},
                         int(t.bounds.size()));
            for (std::size_t q = 0; q < t.bounds.size(); ++q) {
                const envelopebounds& of = t.bounds[q];
                b.row({t.quantities[q], governedtext(of.high.value, of.high.combination),
                       placeof(kind.of, of.high), governedtext(of.low.value, of.low.combination),
                       placeof(kind.of, of.low),
                       governedtext(of.bysize().value, of.bysize().combination)});
            }
            b.endtable();
        }
    });
}

void bookallenvelopes(booksink& b) {
    const long rowsperlook = 10000;
    eachkind(b, [&](const envelopekind& kind) {
        const bool elements = kind.of == envelopeof::plates || kind.of == envelopeof::members,
                   nodes = kind.of != envelopeof::members;
        long count = 0;
        const auto put = [&](const enveloperowof& row, bool high) {
            std::vector<std::string> cells;
            if (elements) cells.push_back(numbertext(row.element));
            if (nodes) cells.push_back(numbertext(row.node));
            cells.emplace_back(high ? "largest" : "smallest");
            for (const governed& g : row.values)
                cells.push_back(high ? governedtext(g.high, g.highof)
                                     : governedtext(g.low, g.lowof));
            b.row(cells);
        };
        eachenvelope(
            kind.of,
            [&](const std::vector<std::string>& quantities) {
                std::vector<bookcolumn> columns;
                if (elements) columns.push_back({"Element", true, 0.7});
                if (nodes) columns.push_back({"Node", true, 0.7});
                columns.push_back({"", false, 0.9});
                for (const std::string& q : quantities) columns.push_back({q});
                b.begintable(kind.caption, columns);
            },
            [&](const enveloperowof& row) {
                for (const bool high : {true, false}) put(row, high);
                if (++count % rowsperlook == 0) bookprogress();
            });
        b.endtable();
    });
}
