// SPDX-License-Identifier: GPL-3.0-or-later
// The tables of numbers: cells as they stand, edits, rectangles of text, new and deleted items.
#include "tools/numint.h"

#include <gtest/gtest.h>

#include "core/model.h"
#include "core/modelitems.h"
#include "core/numtext.h"
#include "core/session.h"
#include "edit/selection.h"
#include "tests/files/filledmodel.h"
#include "tests/support/recorder.h"
#include "tools/numintpaste.h"

// Every reference holds.
static void filltables() {
    fillmodel();
    patches(0, 0, 0) = 0;
}

static std::vector<long> allrows(const numintform& form) {
    std::vector<long> rows;
    for (long row = 0; row < form.table[1].rows(); ++row) rows.push_back(row);
    return rows;
}

static std::string copyall(numintform& form, int tab) {
    choosetab(form, 1, tab);
    std::vector<int> columns;
    for (std::size_t k = 0; k < form.table[1].columns.size(); ++k) columns.push_back(int(k));
    return copycells(form, 1, allrows(form), columns);
}

static std::vector<std::string> copytabs() {
    numintform form = opennumint();
    std::vector<std::string> texts;
    for (int tab = 0; tab < ngridtabs; ++tab) texts.push_back(copyall(form, tab));
    return texts;
}

TEST(Numint, CellsStandInTheirFormats) {
    sessionroom room;
    filltables();
    groups(2, 1) = 2.1e11;
    rotpo(2) = pi / 180 * 45.5;
    const struct {
        int tab;
        const char *captions, *row;
        long item;
    } cases[] = {
        {tabnodes, " ID | X| Y| Z|", "3|0.30|1.00|0.00|", 3},
        {tabelements, " ID |Type|Node 1|Node 2|Node 3|Node 4|Group|Rotate|",
         "2|SHELL4|1|2|3|4|GR 1|45.5|", 2},
        {tabelements, " ID |Type|Node 1|Node 2|Node 3|Node 4|Group|Rotate|", "3|MASS|7||||GR 1|0|",
         3},
        {tabgroups,
         " Name |E Modulus|Poisson ratio|Specific Mass|Thickness|Area|Stress condition|"
         "Section rotation|I xx|W xx|I yy|W yy|I zz|W zz|",
         "Box, \"welded\"|210.00E+09|0.00E+00|0.00E+00|0.00E+00|0.00E+00|0.00E+00|0.00E+00|"
         "0.00E+00|0.00E+00|0.00E+00|0.00E+00|150.00E-09|0.00E+00|",
         2},
        {tabconstraints, " ID |Node|Dir|value|", "4|4|RZ|90.00E+00|", 4},
        {tabloadcases, "General number| ID |Name|Type|value1|value2|value3|value4|value5|",
         "2|2|Wave|Waveload|8.5|0|0|0|1|", 2},
        {tabnodalloads, " ID |Loadcase|Node|Dir|value|", "1|LC 1|12|FY|-300.00E-03|", 1},
        {tabelementloads, " ID |Loadcase|Elem|Dir|value|", "1|LC 1|2|FZ|700.00E-03|", 1},
        {tabcombinations, "General number| ID |Name|LC 1|Wave|", "2|2|Both|1.35|-1|", 2},
    };
    for (const auto& c : cases) {
        std::string captions, row;
        for (const gridcolumn& column : columnsof(c.tab)) {
            captions += column.caption + "|";
            row += showcell(c.tab, column, c.item) + "|";
        }
        EXPECT_EQ(captions, c.captions);
        EXPECT_EQ(row, c.row);
    }
    EXPECT_EQ(columnsof(tabgroups)[5].unit, "L^2");
    EXPECT_EQ(columnsof(tabnodes)[1].unit, "L");
}

TEST(Numint, AnEditReachesTheCellsOrTellsWhyNot) {
    const struct {
        const char* name;
        int tab;
        std::vector<long> rows;
        int col;
        const char *typed, *stands, *message;
    } cases[] = {
        {"number", tabnodes, {1}, 1, "2.5e3", "2500", ""},
        {"stretch", tabnodes, {1, 2, 3}, 3, "-1", "-1", ""},
        {"text", tabnodes, {1}, 1, "abc", "0.2", "Row 2, \" X\": \"abc\" is no number"},
        {"nan", tabnodes, {1}, 1, "NaN", "0.2", "\"NaN\" is no number"},
        {"beyond a Double", tabnodes, {1}, 1, "1e400", "0.2", "\"1e400\" is no number"},
        {"beyond a Single", tabnodes, {1}, 1, "1e39", "0.2", "too large"},
        {"no node", tabelements, {0}, 2, "13", "1", "node 13 does not exist"},
        {"part of a node", tabelements, {0}, 2, "1.5", "1", "1.5 is no number of a node"},
        {"no corner", tabelements, {0}, 4, "3", "", "an element BEAM has no Node 3"},
        {"unknown type", tabelements, {0}, 1, "BEAN", "NONE", "became a free slot"},
        {"more corners", tabelements, {0}, 1, "SHELL3", "SHELL3", ""},
        {"unknown group", tabelements, {0}, 6, "no", "GR 1", "the element is in group 1"},
        {"angle", tabelements, {0}, 7, "30", "30", ""},
        {"name taken", tabgroups, {1}, 0, "GR 1", "GR 1*", "\"GR 1\" is taken"},
        {"no name", tabgroups, {1}, 0, "", "2", ""},
        {"area", tabgroups, {1}, 5, "7", "7", ""},
        {"direction", tabconstraints, {0}, 2, "MY", "RY", ""},
        {"no direction", tabconstraints, {0}, 2, "up", "DX", "\"up\" is no direction"},
        {"kind", tabloadcases, {0}, 3, "Acc rz", "Acc rz", ""},
        {"no kind", tabloadcases, {0}, 3, "Storm", "Applied loads", "no kind of load case"},
        {"other case", tabnodalloads, {0}, 1, "Wave", "Wave", ""},
        {"element load", tabelementloads, {0}, 3, "4", "FZ", "\"4\" is no direction here"},
        {"free element", tabelementloads, {0}, 2, "99", "2", "element 99 does not exist"},
        {"factor", tabcombinations, {1}, 4, "0.1", "0.1", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        sessionroom room;
        filltables();
        numintform form = opennumint();
        choosetab(form, 1, c.tab);
        resultflag = 0;
        closedit(form, c.rows, c.col, c.typed);
        for (const long row : c.rows)
            EXPECT_EQ(celltext(c.tab, form.table[1].columns[std::size_t(c.col)], row + 1),
                      c.stands);
        std::string wanted = c.message;
        std::erase(wanted, '"');
        std::erase(form.message, '"');
        EXPECT_EQ(form.message.empty(), wanted.empty()) << form.message;
        EXPECT_NE(form.message.find(wanted), std::string::npos) << form.message;
        EXPECT_TRUE(checkreferences().empty());
        EXPECT_EQ(resultflag, 1);
        EXPECT_TRUE(room.platform.messages.empty());
    }
}

TEST(Numint, OnlyOneColumnOfTheRightTableIsEdited) {
    sessionroom room;
    filltables();
    numintform form = opennumint();
    EXPECT_FALSE(showedit(form, 0, 1, 1));
    EXPECT_TRUE(room.platform.told(
        "This window is for reference only, use right side window to edit database"));
    EXPECT_FALSE(showedit(form, 1, 1, 2));
    EXPECT_TRUE(room.platform.told("You can not edit multiple columns"));
    EXPECT_FALSE(showedit(form, 1, 0, 0)) << "the number of a node";
    EXPECT_TRUE(showedit(form, 1, 3, 3));
}

TEST(Numint, TheSpareRowAsksAndAddsOne) {
    static const int valuecolumn[ngridtabs] = {1, 7, 1, 3, 4, 4, 4, 3};
    for (int tab = 0; tab < ngridtabs; ++tab) {
        SCOPED_TRACE(tabcaptions[tab]);
        sessionroom room;
        filltables();
        numintform form = opennumint();
        choosetab(form, 1, tab);
        const long before = itemcount(tab);
        room.platform.answerqueue = {answers::no, answers::yes};
        closedit(form, {before}, valuecolumn[tab], "5");
        EXPECT_EQ(itemcount(tab), before) << "not added";
        closedit(form, {before}, valuecolumn[tab], "5");
        ASSERT_EQ(itemcount(tab), before + 1) << form.message;
        EXPECT_EQ(room.platform.messages.back().text, "Add new item?");
        EXPECT_EQ(celltext(tab, form.table[1].columns[std::size_t(valuecolumn[tab])], before + 1),
                  "5");
        EXPECT_TRUE(checkreferences().empty());
    }
    EXPECT_EQ(lcombname(3), "LCOMB 3");
    EXPECT_EQ(lcname(2), "Wave");
}

TEST(Numint, WhatIsPastedBackUnchangedChangesNothing) {
    sessionroom room;
    filltables();
    const std::vector<std::string> before = copytabs();
    numintform form = opennumint();
    for (int tab = 0; tab < ngridtabs; ++tab) {
        choosetab(form, 1, tab);
        pastecells(form, {0}, 0, before[std::size_t(tab)]);
        EXPECT_EQ(form.message, numbertext(itemcount(tab)) + " rows written");
    }
    EXPECT_EQ(copytabs(), before);
    EXPECT_EQ(rotpo(2), 0.1) << "to the last digit";
    EXPECT_TRUE(room.platform.messages.empty());
}

TEST(Numint, AModelIsBuiltByNumbersAlone) {
    std::vector<std::string> texts;
    {
        sessionroom room;
        filltables();
        texts = copytabs();
    }
    sessionroom room;
    numintform form = opennumint();
    for (const int tab : {tabnodes, tabgroups, tabloadcases, tabelements, tabconstraints,
                          tabnodalloads, tabelementloads, tabcombinations}) {
        choosetab(form, 1, tab);
        room.platform.answerqueue = {answers::yes};
        pastecells(form, {0}, 0, texts[std::size_t(tab)]);
        room.platform.answerqueue.clear();
    }
    EXPECT_EQ(copytabs(), texts);
    EXPECT_EQ(room.platform.messages.front().text, "Add 12 new items?");
}

TEST(Numint, APasteIsWholeOrTellsWhatItCouldNot) {
    const struct {
        const char* name;
        int tab, col;
        const char* text;
        long count;  // of items afterwards
        const char* message;
    } cases[] = {
        {"ids decide", tabnodes, 0, "5\t9\t9\t9\n2\t8\t8\t8\n", 12, "2 rows written"},
        {"gap", tabnodes, 0, "13\t1\t1\t1\n15\t1\t1\t1\n", 12, "does not follow on 13"},
        {"no id", tabnodes, 0, "x\t1\t1\t1\n", 12, "\"x\" is no number of a row"},
        {"bad new row", tabelements, 0, "5\tBEAM\t1\t2\t\t\tGR 1\t0\n6\tBEAM\t1\t88\n", 4,
         "Line 2, Node 2: node 88 does not exist. No row was added"},
        {"bad known row", tabnodes, 1, "1\t2\t3\nx\t5\t6\n", 12,
         "Line 2,  X: \"x\" is no number. What can not be stored keeps its value"},
        {"too wide", tabnodes, 2, "1\t2\t3\n", 12, "has 3 columns, from here on there are 2"},
        {"load of the first case", tabnodalloads, 1, "Wave\t3\tMZ\t1\nLC 1\t4\tFX\t2\n", 2,
         "2 rows written"},
        {"nothing", tabnodes, 1, "", 12, "There is nothing to paste"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        sessionroom room;
        filltables();
        numintform form = opennumint();
        choosetab(form, 1, c.tab);
        room.platform.answerqueue = {answers::yes};
        pastecells(form, {0}, c.col, c.text);
        EXPECT_EQ(itemcount(c.tab), c.count);
        EXPECT_NE(form.message.find(c.message), std::string::npos) << form.message;
        EXPECT_TRUE(checkreferences().empty());
    }
    sessionroom room;
    filltables();
    numintform form = opennumint();
    pastecells(form, {0}, 0, "5\t9\t9\t9\n2\t8\t8\t8\n");
    EXPECT_EQ(nodes(0, 5, 0), 9);
    EXPECT_EQ(nodes(0, 2, 2), 8);
    EXPECT_EQ(nodes(0, 1, 0), 0.1f);
}

// Thickness and area are one property: the one that was changed counts.
TEST(Numint, APropertyInTwoColumnsTakesTheChangedOne) {
    for (const int changed : {4, 5}) {
        sessionroom room;
        filltables();
        groups(1, 4) = 2;
        numintform form = opennumint();
        choosetab(form, 1, tabgroups);
        pastecells(form, {0}, 4, changed == 4 ? "3\t2" : "2\t3");
        EXPECT_EQ(groups(1, 4), 3);
    }
}

TEST(Numint, SelectedNodesAloneAreShownAndTheOthersStay) {
    sessionroom room;
    filltables();
    nodesel(0) = 2;
    nodesel(1) = 7;
    nodesel(2) = 3;
    numintform form = opennumint();
    ASSERT_EQ(form.table[1].rows(), 2);
    closedit(form, {0}, 1, "50");
    EXPECT_EQ(nodes(0, 7, 0), 50);
    EXPECT_EQ(nnodes(), 12);
    room.platform.answerqueue = {answers::yes};
    closedit(form, {2}, 1, "60");
    EXPECT_EQ(nodes(0, 13, 0), 60) << "the spare row of a part adds behind all nodes";
    EXPECT_EQ(form.table[1].itemof(2), 13);
}

TEST(Numint, DeletionGoesTheWayOfEachKind) {
    const struct {
        const char* name;
        int tab;
        std::vector<long> rows;
        long left;
        const char* told;  // in a message box or the message
    } cases[] = {
        {"free nodes", tabnodes, {9, 10}, 10, ""},
        {"node of an element", tabnodes, {0}, 12, "Node(s) attached to element are not deleted"},
        {"elements", tabelements, {0, 3}, 2, ""},
        {"group in use", tabgroups, {0}, 2, "Not deleted,Group in use"},
        {"constraints", tabconstraints, {0, 2}, 2, ""},
        {"load case", tabloadcases, {0}, 1, ""},
        {"all load cases", tabloadcases, {0, 1}, 1, "Not allowed, one loadcase minimum"},
        {"nodal load", tabnodalloads, {0}, 0, ""},
        {"element load", tabelementloads, {0}, 0, ""},
        {"combinations", tabcombinations, {0, 1}, 1, "Not allowed, one loadcombination minimum"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        sessionroom room;
        filltables();
        numintform form = opennumint();
        choosetab(form, 1, c.tab);
        const long before = itemcount(c.tab);
        room.platform.answerqueue = {answers::no, answers::yes};
        delitem(form, c.rows);
        EXPECT_EQ(itemcount(c.tab), before) << "the answer was no";
        EXPECT_EQ(room.platform.messages.back().text, "Delete complete item?");
        delitem(form, c.rows);
        EXPECT_EQ(itemcount(c.tab), c.left);
        EXPECT_EQ(form.table[1].rows(), c.left);
        EXPECT_TRUE(*c.told == 0 || room.platform.told(c.told) || form.message == c.told);
        EXPECT_TRUE(checkreferences().empty());
    }
    sessionroom room;
    filltables();
    nodesel(0) = 2;
    nodesel(1) = 12;
    nodesel(2) = 10;
    numintform form = opennumint();
    room.platform.answerqueue = {answers::yes};
    delitem(form, {1});
    EXPECT_EQ(selectednodes(), std::vector<int>{11}) << "what was 12";
    EXPECT_EQ(loadnode(1, 1), 11) << "its load goes with it";
}

TEST(Numint, RowsAreFoundSortedFilteredAndCalculated) {
    sessionroom room;
    filltables();
    numintform form = opennumint();
    sortby(form, 1, 1);
    sortby(form, 1, 1);
    EXPECT_EQ(form.table[1].itemof(0), 12) << "the largest x first";
    sortby(form, 1, 1);
    EXPECT_TRUE(form.table[1].all);
    const struct {
        const char* filter;
        int col;
        long rows;
    } filters[] = {{">1.05", 1, 2}, {"<0.25", 1, 2}, {"=0.5", 1, 1}, {"0.15..0.45", 1, 3},
                   {"=7", 0, 1},    {"0.6", 1, 3},   {"", 1, 12}};
    for (const auto& f : filters) {
        filterby(form, 1, f.filter, f.col);
        EXPECT_EQ(form.table[1].rows(), f.rows) << f.filter;
    }
    const gridcell found = findnext(form, 1, "1.1", {0, 0});
    EXPECT_EQ(found.row, 10);
    EXPECT_EQ(findnext(form, 1, "no such", {0, 0}).row, -1);
    calculate(form, {0, 1}, 1, "*10");
    calculate(form, {1}, 1, " +250");
    EXPECT_EQ(nodes(0, 2, 0), 252);
    calculate(form, {0}, 1, "*1e39");
    EXPECT_EQ(nodes(0, 1, 0), 1);
    EXPECT_NE(form.message.find("too large"), std::string::npos);
    calculate(form, {0}, 1, "/0");
    calculate(form, {0}, 1, "10");
    EXPECT_EQ(nodes(0, 1, 0), 1);
    choosetab(form, 1, tabelements);
    calculate(form, {0}, 2, "+88");
    EXPECT_EQ(elems(1, 1), 1);
    elems(2, 3) = elems(2, 2);
    EXPECT_EQ(findfault(form, 1, {-1, 0}).row, 1);
    EXPECT_EQ(rowfault(tabelements, 2), "Node 2 is used twice");
}

TEST(Numint, FilesOfATabComeBackInAnyShape) {
    sessionroom room;
    filltables();
    numintform form = opennumint();
    const std::vector<std::string> before = copytabs();
    for (int tab = 0; tab < ngridtabs; ++tab) {
        choosetab(form, 1, tab);
        writecsv(form, 1, room.file("t.csv"));
        readcsv(form, room.file("t.csv"));
        EXPECT_EQ(form.message, numbertext(itemcount(tab)) + " rows written") << tabcaptions[tab];
    }
    EXPECT_EQ(copytabs(), before);
    choosetab(form, 1, tabnodes);
    writefile(room.file("o.csv"), "Z;colour;ID\r\n4.5;red;3\r\n\r\n");
    readcsv(form, room.file("o.csv"));
    EXPECT_EQ(nodes(0, 3, 2), 4.5f);
    EXPECT_EQ(form.message, "1 rows written. Columns not known here: colour");
    // Cut anywhere it is read or told, and every reference holds.
    const std::string whole = before[tabelements];
    for (std::size_t n = 0; n < whole.size(); ++n) {
        choosetab(form, 1, tabelements);
        pastecells(form, {0}, 0, whole.substr(0, n));
        EXPECT_TRUE(checkreferences().empty()) << n;
    }
}

TEST(Numint, CellsAreCutAtSeparatorsOutsideQuotes) {
    const struct {
        const char* text;
        std::vector<std::string> cells;
        std::size_t rows;
    } cases[] = {
        {"a,b\r\nc,d", {"a", "b", "c", "d"}, 2},
        {"a,,\n", {"a", "", ""}, 1},
        {"\"a,b\",\"c\nd\"\n", {"a,b", "c\nd"}, 1},
        {"\"a \"\"b\"\" c\",d", {"a \"b\" c", "d"}, 1},
        {"\"open,end", {"open,end"}, 1},
        {"a,", {"a", ""}, 1},
        {"\"a\"b,c", {"ab", "c"}, 1},
        {"", {}, 0},
    };
    for (const auto& c : cases) {
        const sheet s = readsheet(c.text, ',');
        EXPECT_EQ(std::vector<std::string>(s.cells.begin(), s.cells.end()), c.cells) << c.text;
        EXPECT_EQ(s.rows(), c.rows) << c.text;
    }
}
