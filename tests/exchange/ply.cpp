// SPDX-License-Identifier: GPL-3.0-or-later
// Polygon files, opened as the user opens them.
#include "exchange/ply.h"

#include "tests/exchange/samples.h"

TEST(Ply, SamplesGiveTheirItemsOrTellWhatIsWrong) {
    const struct {
        const char* file;
        int nodes, quads, triangles, lines;
        const char* told;  // a line of the report, or the message of what is refused
    } cases[] = {
        {"tri_quad.ply", 5, 1, 1, 0, ""},
        {"reordered_edges.ply", 4, 0, 1, 2, "Items of the unknown element"},
        {"ngon_crlf.ply", 6, 0, 4, 0, "Faces with more than four corners became triangles"},
        {"ngon_crlf.ply", 6, 0, 4, 0, "Faces with fewer than three corners were left out"},
        {"bad_index.ply", -1, 0, 0, 0, "face 2 uses index 3, there are only 3 vertices (0-2)"},
        {"bad_short.ply", -1, 0, 0, 0, "2 of 4 vertices were read"},
        {"binary_le.ply", -1, 0, 0, 0,
         "binary_le.ply, line 2: binary PLY is not supported; save as ASCII"},
    };
    for (const auto& c : cases) {
        exchangeroom room;
        const bool bad = c.nodes < 0;
        EXPECT_EQ(room.open(samplepath(c.file)), bad ? reply::failed : reply::done) << c.file;
        EXPECT_EQ(nnodes(), bad ? 0 : c.nodes) << c.file;
        EXPECT_EQ(countoftype(typeshell4), c.quads) << c.file;
        EXPECT_EQ(countoftype(typeshell3), c.triangles) << c.file;
        EXPECT_EQ(countoftype(typebeam), c.lines) << c.file;
        if (bad)
            EXPECT_TRUE(room.platform.toldpart(c.told)) << c.file;
        else
            EXPECT_NE(lastreport().text().find(c.told), std::string::npos) << c.file;
    }
    exchangeroom room;
    room.open(samplepath("reordered_edges.ply"));
    EXPECT_EQ(nodeat(10, 0, 1), 1);
    EXPECT_EQ(nodeat(10, 1, 2.5), 4);
    EXPECT_EQ(elems(2, 1) * 10 + elems(2, 2), 34);
    EXPECT_EQ(elems(3, 1) * 10 + elems(3, 2), 41);
}

// Each text is one that a program could write, or a slip of the pen; a header in either case holds.
TEST(Ply, HeadersTakeEitherCaseAndFaultsHaveTheirLine) {
    const std::string vertices =
        "element vertex 3\nproperty float x\nproperty float y\nproperty float z\n";
    const std::string face = "element face 1\nproperty list uchar int vertex_indices\n";
    const std::string data = "0 0 0\n1 0 0\n0 1 0\n3 0 1 2";
    const std::string good = "ply\nformat ascii 1.0\n" + vertices + face + "end_header\n" + data;
    const auto with = [&](const std::string& from, const std::string& to) {
        std::string text = good;
        return text.replace(text.find(from), from.size(), to);
    };
    const struct {
        std::string text;
        const char* told;  // empty: it is read
    } cases[] = {
        {good, ""},
        {with("end_header", "END_HEADER"), ""},
        {with("element vertex", "ELEMENT VERTEX"), ""},
        {"\xEF\xBB\xBF" + with("1 0 0\n", "+1 0\t0 \n\n"), ""},
        {with("end_header", "End_Header"), "unknown word of the header"},
        {with("end_header\n" + data, ""), "the header does not end"},
        {with("ply\n", "plx\n"), "line 1: this is no polygon file"},
        {with("format ascii 1.0\n", ""), "no format"},
        {with("vertex 3", "vertex x"), "line 3: the count of an element"},
        {with("vertex 3", "vertex 9000000000"), "of 9000000000 vertices were read"},
        {with("1 0 0\n", "1 nan 0\n"), "line 11: a coordinate was expected, found \"nan\""},
        {with("3 0 1 2", "3 0 1 -1"), "line 13: face 1 uses index -1"},
        {with("3 0 1 2", "2000000 0 1 2"), "the count of a list is 2000000"},
        {with("float x", "floot x"), "unknown type of a property"},
    };
    for (const auto& c : cases) {
        exchangeroom room;
        writefile(room.file("a.ply"), c.text);
        const bool good1 = *c.told == 0;
        EXPECT_EQ(room.open(room.file("a.ply")), good1 ? reply::done : reply::failed) << c.text;
        EXPECT_EQ(nelems(), good1 ? 1 : 0) << c.text;
        EXPECT_TRUE(good1 || room.platform.toldpart(c.told)) << c.text << c.told;
    }
}
