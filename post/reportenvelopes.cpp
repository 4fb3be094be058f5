// SPDX-License-Identifier: GPL-3.0-or-later
// The report's section on envelopes.
#include "core/model.h"
#include "core/runtime.h"
#include "core/textfile.h"
#include "post/envelopetables.h"
#include "post/reportsections.h"
#include "post/source.h"

static const int placewidth = 2 * zonewidth;

static void writeextremes(reporttext& r, envelopeof of, const boundstable& t) {
    r.out.line(t.caption);
    r.out.text("VALUE").zone().text("LARGEST").zone().text("COMBINATION").zone().text("AT");
    r.out.column(5 * zonewidth).text("SMALLEST").zone().text("COMBINATION").zone().text("AT");
    r.out.column(9 * zonewidth).text("BY SIZE").end();
    for (std::size_t q = 0; q < t.bounds.size(); ++q) {
        const envelopebounds& b = t.bounds[q];
        r.out.text(t.quantities[q]);
        int column = zonewidth;
        for (const envelopeplace* at : {&b.high, &b.low}) {
            r.out.column(column).sci(at->value).zone().text(std::to_string(at->combination));
            r.out.zone().text(placeof(of, *at));
            column += 2 * zonewidth + placewidth;
        }
        r.out.column(column).sci(b.bysize().value).end();
    }
    r.out.empty();
}

static void writevalues(reporttext& r, const enveloperowof& row, bool high) {
    if (row.element > 0) r.out.raw(row.element).zone();
    if (row.node > 0) r.out.raw(row.node).zone();
    r.out.text(high ? "largest" : "smallest");
    for (const governed& g : row.values) {
        r.out.zone().sci(high ? g.high : g.low);
        r.out.text("(" + std::to_string(high ? g.highof : g.lowof) + ")");
    }
    r.out.end();
}

static void writerows(reporttext& r, const envelopekind& kind) {
    const bool elements = kind.of == envelopeof::plates || kind.of == envelopeof::members;
    eachenvelope(
        kind.of,
        [&](const std::vector<std::string>& quantities) {
            if (elements) r.out.text("EL NO").zone();
            if (kind.of != envelopeof::members) r.out.text("NODE").zone();
            for (const std::string& q : quantities) r.out.zone().text(q);
            r.out.end();
        },
        [&](const enveloperowof& row) {
            for (const bool high : {true, false}) writevalues(r, row, high);
        });
    r.out.empty();
}

void writeenvelopes(reporttext& r) {
    section(r, "******************  ENVELOPES REPORT  *******************", 1);
    r.out.line(envelopecaption() + "; the governing one stands in brackets:");
    for (const int c : envelopeset()) counted(r, (shownname(lcombname(c)) + " = ").c_str(), c);
    r.out.empty();
    for (const envelopekind& kind : envelopekindsoftables)
        guarded(
            [&] {
                for (const boundstable& t : boundstables(kind, [] {})) writeextremes(r, kind.of, t);
                writerows(r, kind);
            },
            [&](const runtimeerror& e) {
                if (e.number == errstopped) throw e;
                if (e.number != errfilenotfound) r.out.line(e.what);
            });
    dashline(r);
}
