// SPDX-License-Identifier: GPL-3.0-or-later
// Drawings through the dialog, and the model as a drawing.
#include "exchange/dxf.h"
#include "core/units.h"

#include <bit>
#include <cmath>
#include <filesystem>

#include "exchange/dxfform.h"
#include "exchange/layersections.h"
#include "exchange/textlines.h"
#include "tests/exchange/samples.h"
#include "tools/sectionfile.h"

// The dialog as delivered, whatever other tests have chosen.
static dxfform freshform() {
    dxfform form = opendxf();
    choosedxf(form, dxffaces, typeshell4);
    for (const int kind : {dxflines, dxfcircles, dxfarcs}) choosedxf(form, kind, typebeam);
    form.longest = "10000";
    form.joinwithin.clear();
    form.without.clear();
    form.split = form.asgraphics = false;
    return form;
}

static bool take(exchangeroom& room, const std::string& path, dxfform form) {
    room.platform.dialogs.clear();
    room.open(path);
    EXPECT_EQ(room.platform.dialogs, std::vector<std::string>{"DXFInterface"});
    return acceptdxf(form);
}

static bool takedrawing(exchangeroom& room, const std::string& entities,
                        const dxfform& form = freshform()) {
    const std::string path = room.file("d.dxf");
    writefile(path, "0\nSECTION\n2\nENTITIES\n" + entities + "0\nENDSEC\n0\nEOF\n");
    return take(room, path, form);
}

// Pairs of code and value, an item a pair.
static std::string pairs(const std::vector<std::pair<int, std::string>>& list) {
    std::string text;
    for (const auto& [code, value] : list) text += std::to_string(code) + "\n" + value + "\n";
    return text;
}

static std::string line(double x1, double y1, double x2, double y2, const char* layer = "A") {
    return pairs({{0, "LINE"},
                  {8, layer},
                  {10, std::to_string(x1)},
                  {20, std::to_string(y1)},
                  {11, std::to_string(x2)},
                  {21, std::to_string(y2)}});
}

TEST(Dxf, SamplesGiveTheirItemsOrTellWhatIsWrong) {
    const struct {
        const char* file;
        int nodes, lines, quads, triangles, groups;
        const char* told;
    } cases[] = {
        {"lines.dxf", 5, 4, 0, 0, 2, "Lines whose ends are one node"},
        {"faces.dxf", 6, 0, 1, 2, 2, "3DFACE on layer SKIN"},
        {"meshes_crlf.dxf", 11, 0, 3, 2, 2, "POLYLINE faces on layer PM: 2"},
        {"ocs_insert.dxf", 10, 7, 0, 0, 2, "Block NOBLOCK is not in the drawing"},
        {"bad_code.dxf", -1, 0, 0, 0, 0, "line 21: a group code was expected, found \"x8\""},
        {"bad_truncated.dxf", -1, 0, 0, 0, 0, "line 25: the file ends after this line"},
    };
    for (const auto& c : cases) {
        exchangeroom room;
        room.platform.answerqueue = {answers::no};  // to the question about units
        EXPECT_TRUE(take(room, samplepath(c.file), freshform()));
        const bool bad = c.nodes < 0;
        EXPECT_EQ(nnodes(), bad ? 0 : c.nodes) << c.file;
        EXPECT_EQ(countoftype(typebeam), c.lines) << c.file;
        EXPECT_EQ(countoftype(typeshell4), c.quads) << c.file;
        EXPECT_EQ(countoftype(typeshell3), c.triangles) << c.file;
        if (bad) {
            EXPECT_TRUE(room.platform.toldpart(c.told)) << c.file;
            continue;
        }
        EXPECT_EQ(ngroups(), c.groups) << c.file;
        EXPECT_NE(lastreport().text().find(c.told), std::string::npos) << lastreport().text();
    }
    exchangeroom room;
    take(room, samplepath("ocs_insert.dxf"), freshform());
    for (const auto& at : std::vector<triple>{{0, 0, -2},
                                              {-3, 0, -2},
                                              {-3, 1, -2},
                                              {0, 1, -2},
                                              {10, 0, 0},
                                              {10, 2, 0},
                                              {21, 0, 0},
                                              {25, 0, 0}})
        EXPECT_NE(nodeat(at[0], at[1], at[2]), 0) << at[0] << " " << at[1] << " " << at[2];
}

TEST(Dxf, TheUnitOfADrawingIsAskedFor) {
    for (const answers answer : {answers::yes, answers::no, answers::cancel}) {
        exchangeroom room;
        room.platform.answerqueue = {answer};
        take(room, samplepath("lines.dxf"), freshform());
        EXPECT_TRUE(room.platform.toldpart("The drawing is in metres, the model in millimetres"));
        double most = 0;
        for (int n = 1; n <= nnodes(); ++n) most = std::max(most, double(nodes(0, n, 2)));
        EXPECT_EQ(nnodes(), answer == answers::cancel ? 0 : 5);
        EXPECT_EQ(most >= 1000, answer == answers::yes);
        EXPECT_EQ(unitstext, answer == answers::no ? "m kN t" : "");
    }
}

// A closed curve through points of a circle, given by them alone.
static std::string fittedcircle(double radius, int points) {
    std::string text = pairs({{0, "SPLINE"}, {70, "1"}, {71, "3"}});
    for (int i = 0; i < points; ++i) {
        const double angle = 2 * M_PI * i / points;
        text += pairs({{11, numbertext(radius * std::cos(angle))},
                       {21, numbertext(radius * std::sin(angle))}});
    }
    return text;
}

// Arcs, bulges, ellipses and splines against points that lie on the true curve.
TEST(Dxf, CurvesFollowTheirShapes) {
    const struct {
        const char* what;
        std::string entities;
        double x, y, z, radius;  // each node lies so far from this centre
        int least;               // elements
    } cases[] = {
        {"circle", pairs({{0, "CIRCLE"}, {10, "5"}, {20, "1"}, {30, "2"}, {40, "3"}}), 5, 1, 2, 3,
         24},
        {"arc through 0 degrees",
         pairs({{0, "ARC"}, {10, "0"}, {20, "0"}, {40, "3"}, {50, "350"}, {51, "10"}}), 0, 0, 0, 3,
         2},
        {"upside down",
         pairs({{0, "ARC"}, {10, "4"}, {20, "0"}, {40, "3"}, {50, "0"}, {51, "90"}, {230, "-1"}}),
         -4, 0, 0, 3, 6},
        {"semicircle of a bulge",
         pairs({{0, "LWPOLYLINE"},
                {90, "2"},
                {70, "0"},
                {10, "-2"},
                {20, "0"},
                {42, "1"},
                {10, "2"},
                {20, "0"}}),
         0, 0, 0, 2, 12},
        {"large arc of a bulge",
         pairs({{0, "LWPOLYLINE"},
                {10, "3"},
                {20, "0"},
                {42, "2.414213562373095"},
                {10, "0"},
                {20, "3"}}),
         3, 3, 0, 3, 18},
        {"round ellipse",
         pairs({{0, "ELLIPSE"},
                {10, "1"},
                {20, "0"},
                {11, "0"},
                {21, "2"},
                {31, "0"},
                {40, "1"},
                {41, "0"},
                {42, "6.283185307179586"}}),
         1, 0, 0, 2, 24},
        // A quarter of a circle as a rational curve: Piegl and Tiller, The NURBS Book, 7.3.
        {"rational spline",
         pairs({{0, "SPLINE"},
                {70, "4"},
                {71, "2"},
                {40, "0"},
                {40, "0"},
                {40, "0"},
                {40, "1"},
                {40, "1"},
                {40, "1"},
                {41, "1"},
                {41, "0.7071067811865476"},
                {41, "1"},
                {10, "2"},
                {20, "0"},
                {10, "2"},
                {20, "2"},
                {10, "0"},
                {20, "2"}}),
         0, 0, 0, 2, 6},
        {"spline through points", fittedcircle(2, 100), 0, 0, 0, 2, 400},
    };
    for (const auto& c : cases) {
        exchangeroom room;
        ASSERT_TRUE(takedrawing(room, c.entities)) << c.what;
        EXPECT_GE(nelems(), c.least) << c.what;
        EXPECT_LE(nelems(), 3 * c.least) << c.what;
        for (int n = 1; n <= nnodes(); ++n)
            EXPECT_NEAR(
                std::hypot(nodes(0, n, 0) - c.x, nodes(0, n, 1) - c.y, nodes(0, n, 2) - c.z),
                c.radius, 1e-6)
                << c.what;
        const reportline* const line =
            reported(reportkinds::changed, "Curves became straight pieces");
        ASSERT_NE(line, nullptr);
        EXPECT_EQ(line->numbers.size(), std::size_t(nelems())) << "all are of the curve";
    }
    exchangeroom room;
    dxfform form = freshform();
    form.longest = "0.5";
    takedrawing(room, line(0, 0, 3, 4), form);
    EXPECT_EQ(nelems(), 10) << "no element longer than the size";
    exchangeroom other;
    form = freshform();
    form.asgraphics = true;
    takedrawing(other, line(0, 0, 3, 4) + cases[0].entities, form);
    EXPECT_EQ(nelems(), 0);
    EXPECT_EQ(ngraphics(), 3) << "a line, and a circle in two sections";
}

TEST(Dxf, LinesAreSplitWhereOthersMeetThem) {
    const struct {
        const char* what;
        std::string entities;
        int elements, nodes;
    } cases[] = {
        {"a cross", line(-1, 0, 1, 0) + line(0, -1, 0, 1), 4, 5},
        {"a tee", line(-1, 0, 1, 0) + line(0, 0, 0, 1), 3, 4},
        {"a tee with a gap", line(-1, 0, 1, 0) + line(0, 0.0009, 0, 1), 3, 4},
        {"too wide a gap", line(-1, 0, 1, 0) + line(0, 0.002, 0, 1), 2, 4},
        {"ends that overlap", line(0, 0, 2, 0) + line(1, 0, 3, 0), 3, 4},
        {"one within another", line(0, 0, 3, 0) + line(2, 0, 1, 0), 3, 4},
        {"twice the same", line(0, 0, 3, 0) + line(3, 0, 0, 0), 1, 2},
        {"end to end", line(0, 0, 1, 0) + line(1, 0, 2, 0), 2, 3},
        {"over and under",
         line(-1, 0, 1, 0) +
             pairs(
                 {{0, "LINE"}, {10, "0"}, {20, "-1"}, {30, "1"}, {11, "0"}, {21, "1"}, {31, "1"}}),
         2, 4},
    };
    for (const auto& c : cases) {
        exchangeroom room;
        automergenodes = false;
        dxfform form = freshform();
        form.joinwithin = "0.001";
        form.split = true;
        takedrawing(room, c.entities, form);
        EXPECT_EQ(nelems(), c.elements) << c.what;
        EXPECT_EQ(nnodes(), c.nodes) << c.what;
    }
    // A grillage: the grid of cells finds each of 30 by 30 crossings, and none twice.
    exchangeroom room;
    std::string grid;
    for (int i = 1; i <= 30; ++i) grid += line(0, i, 31, i) + line(i, 0, i, 31);
    dxfform form = freshform();
    form.split = true;
    takedrawing(room, grid, form);
    EXPECT_EQ(nelems(), 60 * 31);
    EXPECT_EQ(nnodes(), 30 * 30 + 4 * 30);
}

// What stops a little short of another line is told, and what is told joins it.
TEST(Dxf, EndsThatStopShortAreTold) {
    const struct {
        const char* what;
        std::string entities;
        bool split;
        const char* told;
        int ends;
    } cases[] = {
        {"a tee", line(-5, 0, 5, 0) + line(0, 0.00152, 0, 10), true, "An end stops within 0.0016 ",
         1},
        {"a tee that is not to be split", line(-5, 0, 5, 0) + line(0, 0.00152, 0, 10), false, "",
         0},
        {"two in a row", line(0, 0, 5, 0) + line(5.001, 0, 10, 0), false,
         "2 ends stop within 0.001 of another line and are not joined; 0.001 in", 2},
        {"farther", line(0, 0, 5, 0) + line(5.01, 0, 10, 0), true, "", 0},
        {"a short piece between", line(0, 0, 5, 0) + line(5, 0, 5, 0.0012) + line(5, 0.0012, 9, 4),
         true, "", 0},
        {"lines side by side",
         line(0, 0, 5, 0) + line(5, 0, 9, 0) + line(4, -4, 4.9993, -0.0014) +
             line(4.9993, -0.0014, 9, -4),
         true, "An end stops within 0.0014 ", 1},
    };
    for (const auto& c : cases)
        for (const char* within : {"0.0001", "0.0016"}) {
            exchangeroom room;
            automergenodes = false;
            dxfform form = freshform();
            form.joinwithin = within;
            form.split = c.split;
            takedrawing(room, c.entities, form);
            const reportline* const line = reported(reportkinds::warning, "Join ends within");
            const bool istold = c.ends > 0 && form.joinwithin == "0.0001";
            ASSERT_EQ(line != nullptr, istold) << c.what << "\n" << lastreport().text();
            if (!istold) continue;
            EXPECT_NE(textof(*line).find(c.told), std::string::npos) << c.what << textof(*line);
            EXPECT_EQ(selectreported(std::size_t(line - lastreport().lines().data())), c.ends);
        }
}

TEST(Dxf, BlocksNestAndEndWhereTheyWouldNot) {
    const auto block = [](const std::string& name, const std::string& inside) {
        return pairs({{0, "BLOCK"}, {2, name}, {10, "0"}}) + inside + pairs({{0, "ENDBLK"}});
    };
    const auto insert = [](const std::string& name, const std::string& columns = "1") {
        return pairs({{0, "INSERT"}, {2, name}, {70, columns}, {44, "10"}, {41, "-1"}});
    };
    const auto drawing = [&](const std::string& blocks, const std::string& entities) {
        return "0\nSECTION\n2\nBLOCKS\n" + blocks + "0\nENDSEC\n0\nSECTION\n2\nENTITIES\n" +
               entities + "0\nENDSEC\n0\nEOF\n";
    };
    const std::string face = pairs({{0, "3DFACE"},
                                    {10, "0"},
                                    {20, "0"},
                                    {11, "1"},
                                    {21, "0"},
                                    {12, "1"},
                                    {22, "1"},
                                    {13, "0"},
                                    {23, "1"}});
    const struct {
        const char* what;
        std::string text;
        int elements;
        const char* told;
    } cases[] = {
        {"mirrored", drawing(block("A", face), insert("A", "3")), 3, "INSERT on layer 0"},
        {"in itself", drawing(block("A", face + insert("A")), insert("A")), 1,
         "Block A is inserted in itself"},
        {"in a ring",
         drawing(block("A", insert("B")) + block("B", face + insert("A")), insert("A")), 1,
         "Block A is inserted in itself"},
        {"too often",
         drawing(block("A", insert("B", "999")) + block("B", insert("C", "999")) + block("C", ""),
                 insert("A", "999")),
         0, "inserts blocks more than 100000 times"},
        {"elsewhere",
         drawing(pairs({{0, "BLOCK"}, {2, "X"}, {70, "4"}}) + pairs({{0, "ENDBLK"}}),
                 face + insert("X")),
         1, "Blocks that lie in another drawing (xref)"},
        {"wide", drawing("", pairs({{0, "LWPOLYLINE"}, {43, "2"}, {10, "0"}, {10, "5"}})), 1,
         "Widths of polylines"},
    };
    for (const auto& c : cases) {
        exchangeroom room;
        writefile(room.file("d.dxf"), c.text);
        take(room, room.file("d.dxf"), freshform());
        EXPECT_EQ(nelems(), c.elements) << c.what;
        EXPECT_TRUE(room.platform.toldpart(c.told) ||
                    lastreport().text().find(c.told) != std::string::npos)
            << c.what;
    }
    exchangeroom room;  // a mirrored face still looks up
    writefile(room.file("d.dxf"), drawing(block("A", face), insert("A")));
    take(room, room.file("d.dxf"), freshform());
    const auto at = [](int c, int k) { return double(nodes(0, long(elems(1, c)), k)); };
    EXPECT_GT((at(2, 0) - at(1, 0)) * (at(3, 1) - at(1, 1)) -
                  (at(2, 1) - at(1, 1)) * (at(3, 0) - at(1, 0)),
              0);
}

TEST(Dxf, TheDialogKeepsToItsRules) {
    exchangeroom room;
    dxfform form = freshform();
    EXPECT_EQ(form.types[0], "None");
    EXPECT_EQ(form.types[typebeam], "BEAM");
    choosedxf(form, dxfarcs, 0);
    EXPECT_FALSE(form.taken[dxfarcs]);
    tickdxf(form, dxfarcs, true);
    EXPECT_EQ(form.chosen[dxfarcs], typebeam);
    const struct {
        const char *size, *within;
        int line;
        const char* told;
    } cases[] = {
        {"x", "", typebeam, "Numerical input required"},
        {"0", "", typebeam, "Give a Value larger than 0"},
        {"5", "-1", typebeam, "Join ends within: a number from 0 up is needed"},
        {"5", "", typeshell3, "SHELL3 has not two ends"},
    };
    for (const auto& c : cases) {
        form.longest = c.size;
        form.joinwithin = c.within;
        form.chosen[dxflines] = c.line;
        EXPECT_FALSE(acceptdxf(form));
        EXPECT_TRUE(form.message.starts_with(c.told)) << form.message;
    }
    form = freshform();
    choosedxf(form, dxflines, 0);
    takedrawing(room, line(0, 0, 1, 1), form);
    EXPECT_EQ(nelems(), 0);
    EXPECT_NE(reported(reportkinds::skipped, "LINE, not chosen in the dialog"), nullptr);
}

// What is written comes back; and the same drawing in binary form, of either width of codes.
TEST(Dxf, WrittenDrawingsComeBack) {
    exchangeroom room;
    addnode(0, 0, 0);
    addnode(1.0f / 3, 0, 0);
    addnode(1, 1, 0);
    addnode(0, 1, 1e-7f);
    groups(0, 0) = 2;
    groupname(1) = "Kante Nr. 1/ü";
    groupname(2) = "KANTE_NR__1__";
    groupcolor(1) = 0x0000FF;
    addelement(typebeam, {1, 2}, 1);
    addelement(typeshell4, {1, 2, 3, 4}, 2);
    addelement(typeshell3, {1, 2, 3}, 2);
    for (const int n : {3, 4}) {
        loadnode(1, n - 2) = n;
        loadnode(1, 0) = n - 2;
    }
    room.platform.filequeue = {{true, room.file("out.dxf"), 1}};
    ASSERT_EQ(menusave(), reply::done);
    EXPECT_NE(reported(reportkinds::changed, "is the layer KANTE_NR__1_"), nullptr);
    const reportline* const line = reported(reportkinds::skipped, "Nodal loads: 2");
    ASSERT_NE(line, nullptr) << lastreport().text();
    EXPECT_EQ(line->numbers, (std::vector<int>{3, 4})) << "what was left out can be selected";
    const std::string text = contentof(room.file("out.dxf"));
    for (const int form : {0, 1, 2}) {
        std::string content = text;
        if (form > 0) {
            content = std::string("AutoCAD Binary DXF\r\n\x1a\0", 22);
            textlines in(text, "d");
            std::string_view code, value;
            while (in.next(code) && in.next(value)) {
                const int c = std::stoi(std::string(code));
                content += char(c);
                if (form == 2) content += '\0';
                const double number = c >= 10 && c < 60 ? std::stod(std::string(value)) : 0;
                const int whole = c >= 60 && c < 80 ? std::stoi(std::string(value)) : 0;
                if (c >= 10 && c < 60)
                    content.append(reinterpret_cast<const char*>(&number), 8);
                else if (c >= 60 && c < 80)
                    content.append(reinterpret_cast<const char*>(&whole), 2);
                else
                    content += std::string(value) + '\0';
            }
        }
        writefile(room.file("back.dxf"), content);
        take(room, room.file("back.dxf"), freshform());
        ASSERT_EQ(nelems(), 3) << form;
        EXPECT_EQ(nnodes(), 4);
        EXPECT_EQ(nodes(0, 2, 0), 1.0f / 3);
        EXPECT_EQ(countoftype(typeshell3), 1);
        EXPECT_EQ(ngroups(), 2);
        EXPECT_EQ(groupcolor(1), 0x0000FF);
    }
}

TEST(Dxf, LayersAreLeftOutByName) {
    exchangeroom room;
    dxfform form = freshform();
    form.without = "grid;dim*";
    takedrawing(room, line(0, 0, 1, 0) + line(0, 1, 1, 1, "GRID") + line(0, 2, 1, 2, "Dims 2"),
                form);
    EXPECT_EQ(nelems(), 1);
    EXPECT_EQ(ngroups(), 1);
    EXPECT_NE(
        reported(reportkinds::skipped, "Entities on layer GRID, left out as chosen (line 18)"),
        nullptr)
        << lastreport().text();
}

TEST(Dxf, LayersCalledByAProfileHaveItsSection) {
    exchangeroom room;
    std::filesystem::copy_file(sourcedir() + "/data/sections.dat", room.file("sections.dat"),
                               std::filesystem::copy_options::overwrite_existing);
    ASSERT_EQ(readsections(false), "");
    const struct {
        const char *layer, *profile;  // empty: none
    } cases[] = {
        {"HEA300-COLUMN", "HEA 300"},
        {"S_ipe_200", "IPE 200"},
        {"IPE2000", ""},
        {"IPE200X90", ""},
        {"XIPE200", ""},
        {"CHS 168,3x4 brace", "CHS 168.3x4"},
        {"IPE200-1", "IPE 200"},
        {"AXES", ""},
    };
    for (const auto& c : cases) {
        const int s = profilein(c.layer);
        EXPECT_EQ(s == 0 ? "" : sectnames(s, 1), c.profile) << c.layer;
    }
    imported found;
    for (int n = 0; n < 2; ++n) found.addnode({double(n), 0, 0});
    found.addelement(typebeam, {1, 2, 0, 0}, found.groupof("HEA300-COLUMN"));
    found.addelement(typebeam, {1, 2, 0, 0}, found.groupof("AXES"));
    putprofiles(found, 1);
    EXPECT_NEAR(found.group(1).fields[fieldthickness], 11252.78e-6, 1e-9) << "in metres";
    EXPECT_NEAR(found.group(1).fields[fieldixx], 182635000e-12, 1e-10);
    EXPECT_TRUE(std::isnan(found.group(2).fields[fieldixx]));
    EXPECT_NE(found.report.text().find("Layer AXES tells no profile"), std::string::npos);
}
