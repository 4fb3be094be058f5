// SPDX-License-Identifier: GPL-3.0-or-later
// Envelopes: the same as what their combinations give one by one, in plots, tables and reports.
#include <cmath>

#include "post/Report.h"
#include "post/bookhtml.h"
#include "post/components.h"
#include "post/enveloperows.h"
#include "post/envelopetables.h"
#include "post/exactstress.h"
#include "post/memberfile.h"
#include "post/members.h"
#include "post/nodeenvelope.h"
#include "post/source.h"
#include "post/stressenvelope.h"
#include "tests/post/plotroom.h"

TEST(Stressenvelope, IsTheWorstOfItsCombinations) {
    plotroom room;
    loadnode(0, 0) = 2;
    lcomb(0, 0) = 4;
    const float factors[4][2] = {{1, 0}, {-2, 1}, {0.5f, -1.5f}, {1, 1}};
    for (int c = 1; c <= 4; ++c)
        for (int l = 1; l <= 2; ++l) lcomb(c, l) = factors[c - 1][l - 1];
    const auto record = [](int e, int l, int from, int values) {
        std::string row;
        for (int k = from + 1; k <= from + values; ++k)
            row += "," + std::to_string((e * 7 + from * 5 + k * 3 + l * 11 + k * l) % 23 - 11);
        return row;
    };
    std::string text, lines;
    for (int l = 1; l <= 2; ++l) {
        for (int e = 1; e <= 2; ++e)
            for (int c = 1; c <= 4; ++c)
                text += std::to_string(e) + ",0,0,0" + record(e, l, c, 13) + "\r\n";
        lines += "3,0,0,0" + record(3, l, 0, 26) + "\r\nEND\r\n";
        text += "END\r\n";
    }
    writefile(room.file("job.NSL"), text);
    writefile(room.file("job.LES"), lines);
    groups(1, fieldthickness) = groups(2, fieldthickness) = 0.5;
    const struct {
        int component;
        bool oflines;
    } plots[] = {{2, false},      {13, false},     {misesupper, false}, {principal2lower, false},
                 {shearx, false}, {sheary, false}, {2, true},           {13, true}};
    for (const auto& [component, oflines] : plots) {
        const int first = oflines ? 3 : 1, last = oflines ? 3 : 2, ends = oflines ? 2 : 4;
        stresscomp = component;
        shownsource = {};
        governed wanted[4][5];
        menupostItem(contourplot).checked = !oflines;
        menupostItem(elementstress).checked = oflines;
        for (const int n : {1, 2, 4}) {
            curlcomb = n;
            retryresults();
            ASSERT_TRUE(prepareplot());
            for (int e = first; e <= last; ++e)
                for (int c = 1; c <= ends; ++c) include(wanted[e][c], plotvalue(e, c), n);
        }
        shownsource = {sources::envelope, 1, envelopekinds::largest, {1, 2, 4}};
        retryresults();
        ASSERT_TRUE(prepareplot());
        for (int e = first; e <= last; ++e)
            for (int c = 1; c <= ends; ++c) {
                const governed &g = governedat(e, c), &w = wanted[e][c];
                EXPECT_NEAR(g.high, w.high, 1e-4 + 1e-5 * std::fabs(w.high)) << component;
                EXPECT_NEAR(g.low, w.low, 1e-4 + 1e-5 * std::fabs(w.low)) << component;
                EXPECT_EQ(g.highof, w.highof);
                EXPECT_EQ(g.lowof, w.lowof);
                EXPECT_EQ(plotgovernor(e, c), g.highof);
                EXPECT_EQ(plotvalue(e, c), g.high);
                shownsource.kind = envelopekinds::bysize;
                EXPECT_EQ(plotvalue(e, c), std::fabs(g.low) > g.high ? g.low : g.high);
                shownsource.kind = envelopekinds::largest;
            }
    }
    menupostItem(elementstress).checked = false;
    menupostItem(contourplot).checked = true;
    for (const char* const damaged : {"1,0,0,0,5\r\n", "1,0,0,0,5", "7,0\r\nEND\r\n"}) {
        writefile(room.file("job.NSL"), damaged);
        retryresults();
        EXPECT_FALSE(prepareplot());
        EXPECT_TRUE(room.platform.toldpart("job.NSL"));
        room.platform.messages.clear();
    }
    shownsource = {};
    menupostItem(contourplot).checked = false;
}

namespace {
// Three combinations of two cases with six values a node.
struct sixroom : plotroom {
    sixroom() {
        loadnode(0, 0) = 2;
        lcomb(0, 0) = 3;
        lcombname(3) = "Lcomb3";
        const float factors[3][2] = {{1, 0}, {-2, 1}, {0.5f, -1.5f}};
        for (int c = 1; c <= 3; ++c)
            for (int l = 1; l <= 2; ++l) lcomb(c, l) = factors[c - 1][l - 1];
        std::string text = "6,3\r\n";
        for (int l = 1; l <= 2; ++l) {
            for (int n = 1; n <= 6; ++n)
                for (int k = 0; k < 6; ++k)
                    text += std::to_string(value(l, n, k)) + (k < 5 ? "," : "\r\n");
            text += "\"LC\"\r\n";
        }
        writefile(file("job.rvp"), text);
        contourdata = displacementdata;
    }
    ~sixroom() {
        shownsource = {};
        menupostItem(contourplot).checked = menupostItem(deformedshape).checked = false;
    }
    static int value(int l, int n, int k) { return (n * 7 + k * 5 + l * 11 + n * k * l) % 23 - 11; }
};
}  // namespace

TEST(Nodeenvelope, IsTheWorstOfItsCombinations) {
    sixroom room;
    for (dispcontour = 0; dispcontour < directioncount; ++dispcontour) {
        shownsource = {};
        menupostItem(contourplot).checked = true;
        governed wanted[3][5];
        for (const int n : {1, 3}) {
            choosecombination(n);
            for (int e = 1; e <= 2; ++e)
                for (int c = 1; c <= 4; ++c) include(wanted[e][c], plotvalue(e, c), n);
        }
        const double turn = 0.5 * room.value(1, 2, 4) - 1.5 * room.value(2, 2, 4);
        const bool isturn = dispcontour == 5;
        EXPECT_NEAR(isturn ? plotvalue(1, 2) : 0, isturn ? turn * 180 / pi : 0, 1e-3);
        choosesource({sources::envelope, 1, envelopekinds::largest, {1, 3}});
        ASSERT_TRUE(plotready());
        for (int e = 1; e <= 2; ++e)
            for (int c = 1; c <= 4; ++c) {
                const governed& w = wanted[e][c];
                shownsource.kind = envelopekinds::largest;
                EXPECT_NEAR(plotvalue(e, c), w.high, 1e-3) << dispcontour;
                EXPECT_EQ(plotgovernor(e, c), w.highof);
                shownsource.kind = envelopekinds::smallest;
                EXPECT_NEAR(plotvalue(e, c), w.low, 1e-3);
                EXPECT_EQ(plotgovernor(e, c), w.lowof);
            }
        double most = -1e30;
        for (int n = 1; n <= 6; ++n) most = std::max(most, double(governedatnode(n).high));
        EXPECT_EQ(extremesofnodes().bounds[std::size_t(dispcontour)].high.value, most);
    }
    dispcontour = 0;
    showdeformed();
    EXPECT_EQ(picturenotes(1).back(), "An envelope has no shape; drawn is that of Lcomb3");
    writefile(room.file("job.rvp"), "6,3\r\n0,0");
    rereadshown();
    EXPECT_FALSE(plotready());
    EXPECT_TRUE(room.platform.toldpart("job.rvp"));
}

// Every file's rows come with the bounds over the combinations, and members with their stations.
TEST(Envelopetables, TellThePlacesThatGovern) {
    sixroom room;
    ncon = connode(1) = 2;
    condof(1) = 1;
    std::string forces = "6,3\r\n", members;
    for (int l = 1; l <= 2; ++l) {
        for (int n = 1; n <= 7; ++n)
            forces += std::to_string(n) + (l == 1 ? ",10,0,0,0,0,0\r\n" : ",-4,0,0,0,0,0\r\n");
        forces += "\"LC\"\r\n";
        members += "3,21";
        for (int i = 0; i < memberstations; ++i) {
            const double place = i / 20.0;
            members += "," + std::to_string(place) + "," +
                       std::to_string(l == 1 ? 6 + place : -place) + ",0,0,0,0,0,0,0";
        }
        members += "\r\nEND\r\n";
    }
    writefile(room.file("job.KRT"), forces);
    writefile(room.file("job.MEM"), members);
    dropmembers();
    std::string told;
    for (const envelopekind& kind : envelopekindsoftables) {
        if (kind.of == envelopeof::plates) continue;
        for (const boundstable& t : boundstables(kind, [] {})) {
            const envelopebounds& b = t.bounds[kind.of == envelopeof::displacements];
            told += t.quantities[0] + ": " + std::to_string(int(b.high.value)) + " of " +
                    std::to_string(b.high.combination) + " at " + placeof(kind.of, b.high) + ", " +
                    std::to_string(int(b.low.value)) + " of " + std::to_string(b.low.combination) +
                    ", " + std::to_string(int(b.bysize().value)) + "; ";
        }
    }
    EXPECT_NE(told.find("FX: 11 of 3 at node 2, -24 of 2, -24; "), told.npos) << told;
    EXPECT_NE(told.find("N: 7 of 1 at element 3 at 1, -15 of 2, -15; "), told.npos) << told;
    // The report and the book say the same.
    const auto before = std::exchange(reportwanted, {});
    reportwanted[secenvelopes] = true;
    EXPECT_TRUE(savereport(room.file("job")));
    reportwanted = before;
    const std::string report = contentof(room.file("job.rpt"));
    EXPECT_NE(report.find("ENVELOPES REPORT"), report.npos);
    EXPECT_NE(report.find("FX            1.10E+01      3             node 2"), report.npos);
    EXPECT_NE(report.find(" 2            smallest      -2.40E+01(2)"), report.npos) << report;
    bookpng = [](double, double, const bookdraw&) { return std::string("png"); };
    bookchoice book = thebook();
    for (const bookpart& p : bookparts())
        wantpart(book, p.key,
                 std::string(p.key).ends_with("envelopes") || p.key == std::string("allmembers"));
    storebook(book);
    writehtmlbook(room.file("job.html"));
    const std::string html = contentof(room.file("job.html"));
    EXPECT_NE(html.find("<td class=\"n\">11 (3)</td><td>node 2</td><td class=\"n\">-24 (2)"),
              html.npos);
    EXPECT_NE(html.find("<td class=\"n\">3</td><td class=\"n\">1</td><td class=\"n\">-15</td>"),
              html.npos);
    EXPECT_NE(html.find("<td>smallest</td><td class=\"n\">-24 (2)"), html.npos);
    bookpng = nullptr;
}
