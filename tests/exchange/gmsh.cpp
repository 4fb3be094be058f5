// SPDX-License-Identifier: GPL-3.0-or-later
// Meshes out and in again, and what other programs write.
#include "exchange/gmsh.h"

#include "tests/exchange/samples.h"

static void makemesh() {
    for (int n = 0; n < 6; ++n) addnode(float(n % 3), float(n / 3), 1.0f / 3);
    groups(0, 0) = 2;
    groupname(1) = "Skin \"A\"";
    groupname(2) = "Rib";
    addelement(typeshell4, {1, 2, 5, 4}, 1);
    addelement(typeshell3, {2, 3, 5}, 1);
    addelement(typebeam, {3, 6}, 2);
    addelement(typeshell3, {3, 6, 5}, 1);
}

TEST(Gmsh, EachFormComesBackAsItWas) {
    for (const int filter : {6, 7, 8, 9}) {
        exchangeroom room;
        makemesh();
        modelname = room.file("m");
        room.platform.filequeue = {{true, room.file("a.msh"), filter}};
        ASSERT_EQ(menusave(), reply::done);
        EXPECT_EQ(modelname, room.file("m")) << "an export renames no model";
        const std::string head = contentof(room.file("a.msh")).substr(0, 20);
        const char* const heads[] = {"4.1 0", "4.1 1", "2.2 0", "2.2 1"};
        EXPECT_TRUE(head.substr(12).starts_with(std::string("\n") + heads[filter - 6]) ||
                    head.find(heads[filter - 6]) != head.npos)
            << head;
        ASSERT_EQ(room.open(room.file("a.msh")), reply::done) << filter;
        ASSERT_EQ(nelems(), 4) << filter;
        EXPECT_EQ(nnodes(), 6);
        EXPECT_EQ(nodes(0, 5, 2), 1.0f / 3);
        EXPECT_EQ(int(elems(1, 0)), int(typeshell4))
            << "elements stand in the order of their numbers";
        EXPECT_EQ(elems(1, 3), 5);
        EXPECT_EQ(int(elems(3, 0)), int(typebeam));
        EXPECT_EQ(groupname(egroup(1)), "Skin 'A'");
        EXPECT_EQ(groupname(egroup(3)), "Rib");
    }
}

TEST(Gmsh, BytesThatAreNoNumberAreRefused) {
    exchangeroom room;
    addnode(0, 0, 0);
    addnode(1, 0, 0);
    groups(1, fieldixx) = groups(1, fieldiyy) = 1;
    addelement(typebeam, {1, 2}, 1);
    const std::string path = room.file("a.msh");
    for (const bool isold : {false, true}) {
        importreport report;
        writegmsh(path, {isold, true}, report);
        std::string text = contentof(path);
        // The last 1 of the nodes; as many bits more make it infinite.
        const std::string one("\0\0\0\0\0\0\xF0\x3F", 8);
        const std::size_t at = text.rfind(one, text.find("$EndNodes"));
        ASSERT_NE(at, text.npos) << isold;
        text[at + 7] = '\x7F';
        writefile(path, text);
        imported found;
        EXPECT_FALSE(guarded([&] { readgmsh(path, found); },
                             [](const runtimeerror& e) {
                                 EXPECT_NE(e.what.find("a coordinate was expected"), e.what.npos)
                                     << e.what;
                             }))
            << isold;
    }
}

TEST(Gmsh, OtherMeshesAndDamage) {
    const std::string format = "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n";
    const std::string points = "$Nodes\n4\n10 0 0 0\n20 1 0 0\n30 0 1 0\n40 5 5 5\n$EndNodes\n";
    const auto elements = [](const std::string& rows, int count) {
        return "$Elements\n" + std::to_string(count) + "\n" + rows + "$EndElements\n";
    };
    const struct {
        const char* what;
        std::string text;
        int nodes, elements;  // -1: refused
        const char* told;
    } cases[] = {
        {"gaps in the numbers", format + points + elements("7 2 2 0 1 10 20 30\n", 1), 4, 1,
         "Nodes have new numbers"},
        {"two groups of a surface",
         format + points +
             elements("1 2 2 1 5 10 20 30\n2 2 2 2 5 10 20 30\n3 2 2 2 6 10 20 40\n", 3),
         4, 2, "Elements of several physical groups stand in the first"},
        {"edges beside surfaces",
         format + points + elements("1 1 2 0 1 10 20\n2 2 2 0 1 10 20 30\n", 2), 3, 1,
         "Lines of no physical group"},
        {"bars alone", format + points + elements("1 1 2 0 1 10 20\n", 1), 4, 1, "BEAM elements"},
        {"a tetrahedron beside",
         format + points + elements("1 4 2 0 1 10 20 30 40\n2 2 2 0 1 10 20 30\n", 2), 3, 1,
         "Elements that are tetrahedra"},
        {"other sections",
         format + "$Comments\n$Nodes\n$EndComments\n" + points +
             elements("1 2 2 9 1 10 20 30\n", 1),
         4, 1, "Section $Comments"},
        {"no such node", format + points + elements("1 2 2 0 1 10 20 31\n", 1), -1, 0,
         "line 13: element 1 uses node 31, which is not defined"},
        {"a kind unknown", format + points + elements("1 99 2 0 1 10 20 30\n", 1), -1, 0,
         "the kind of element 99 is not known"},
        {"quadrilaterals of sixteen nodes",
         format + points +
             elements("1 36 2 0 1 10 20 30 40 10 10 10 10 10 10 10 10 10 10 10 10\n", 1),
         4, 1, "high-order quadrilaterals became straight ones"},
        {"a group told of the parts",
         "$MeshFormat\n4.1 0 8\n$EndMeshFormat\n$PhysicalNames\n1\n2 7 \"Skin\"\n"
         "$EndPhysicalNames\n$PartitionedEntities\n2\n1\n9 1\n0 1 1 0\n"
         "5 2 1 2 1 2 0 0 0 1 0 0 1 7 0\n4 2 1 1 2 0 0 0 1 1 0 1 7 1 5\n"
         "$EndPartitionedEntities\n$Nodes\n1 3 1 3\n2 4 0 3\n"
         "1\n2\n3\n0 0 0\n1 0 0\n0 1 0\n$EndNodes\n$Elements\n2 2 1 2\n1 5 1 1\n2 1 2\n2 4 2 1\n1 "
         "1 2 3\n"
         "$EndElements\n",
         3, 1, ""},
        {"a first version", "$NOD\n1\n1 0 0 0\n$ENDNOD\n", -1, 0, "version 1 is not read"},
        {"a version", "$MeshFormat\n4 0 8\n$EndMeshFormat\n", -1, 0, "version 4 is not read"},
        {"a count", format + "$Nodes\n400000000\n1 0 0 0\n", -1, 0, "more than the file holds"},
        {"a word", format + "$Nodes\n1\n1 0 zero 0\n", -1, 0,
         "line 6: a coordinate was expected, found \"zero\""},
        {"nothing", "", -1, 0, "this is no mesh"},
    };
    for (const auto& c : cases) {
        exchangeroom room;
        automergenodes = false;
        writefile(room.file("a.msh"), c.text);
        EXPECT_EQ(room.open(room.file("a.msh")), c.nodes < 0 ? reply::failed : reply::done)
            << c.what;
        EXPECT_EQ(nnodes(), std::max(c.nodes, 0)) << c.what;
        EXPECT_EQ(nelems(), c.elements) << c.what;
        EXPECT_TRUE(room.platform.toldpart(c.told) ||
                    lastreport().text().find(c.told) != std::string::npos)
            << c.what << lastreport().text();
        if (c.told[0] == '\0') {
            EXPECT_EQ(groupname(egroup(1)), "Skin") << c.what;
        }
    }
}
