// SPDX-License-Identifier: GPL-3.0-or-later
// Objects: reading, placing, writing, and what is wrong with a file.
#include "tools/objects.h"

#include <algorithm>
#include <set>

#include "core/journal.h"
#include "core/session.h"
#include "tests/support/recorder.h"
#include "tests/tools/edges.h"
#include "tools/bereken.h"
#include "tools/genfile.h"
#include "tools/groups.h"
#include "tools/objectform.h"

static const char plate[] =
    "DESCRIPTION\r\nA plate, flat\r\n"
    "VARIABLES, 3\r\nNMESH,1,\"Mesh refine factor\"\r\nL,4,Length\r\nT,.5,Thickness\r\n"
    "GRAPHICS,4\r\n"
    "1,1,4*NMESH,1,0,0,0,0,L,0,0,0,0,0\r\n2,1,4*NMESH,1,0,0,2,0,L,2,0,0,0,0\r\n"
    "3,1,2*NMESH,1,0,0,0,0,0,2,0,0,0,0\r\n4,1,2*NMESH,1,0,L,0,0,L,2,0,0,0,0\r\n"
    "PATCHES,1\r\n3,1,1,1,2,1,3,1,4,1\r\n"
    "GROUPS,1\r\n\"Steel\",2.1E+11,.3,7850,T*2,0,0,0,0,0,0,0,0\r\n"
    "1,0,0,0,0,0\r\n0,2,0,0,0,0\r\n0,0,3,0,0,0\r\n0,0,0,4,0,0\r\n0,0,0,0,5,0\r\n0,0,0,0,0,6\r\n"
    "END\r\n";

// The object opened through the dialog's form.
static objectsform opened(sessionroom& room, const std::string& text) {
    writefile(room.file("a.obj"), text);
    room.platform.filequeue.push_back({true, room.file("a.obj"), 2});
    objectsform form = openobjects({room.folder});
    getobject(form);
    return form;
}

TEST(Objects, APlateIsPlacedBehindWhatIsThere) {
    sessionroom room;
    acceptmesh(*std::make_unique<mesh2dform>(meshof(0, rectangle())));
    objectsform form = opened(room, plate);
    EXPECT_EQ(form.description, "A plate, flat");
    ASSERT_EQ(form.labels.size(), 3u);
    EXPECT_EQ(form.labels[2], "T : Thickness");
    EXPECT_EQ(tmpelems(0, 0), 8);
    editvariable(form, 0, "2");
    editvariable(form, 1, "6");
    editplace(form, 1, "10");
    editturn(form, 2, "90");
    EXPECT_EQ(tmpelems(0, 0), 32) << form.message;
    EXPECT_EQ(nelems(), 8);
    EXPECT_EQ(ngraphics(), 4);
    acceptobject(form);
    EXPECT_EQ(nelems(), 40) << form.message;
    EXPECT_EQ(ngraphics(), 8);
    EXPECT_EQ(graphics(5, 0, 1), 8);
    EXPECT_NEAR(graphics(5, 2, 1), 0, 1e-6);
    EXPECT_FLOAT_EQ(graphics(5, 2, 2), 16);
    EXPECT_EQ(patches(0, 0, 0), 2);
    EXPECT_EQ(patches(2, 1, 1), 5);
    EXPECT_EQ(patches(2, 0, 2), 2);
    EXPECT_EQ(ngroups(), 2);
    EXPECT_EQ(groupname(2), "Steel");
    EXPECT_EQ(groups(2, 4), 1);
    EXPECT_EQ(groupmat(2, 6, 6), 6);
    EXPECT_EQ(egroup(9), 2);
    EXPECT_EQ(nnodes(), 15 + 9 * 5);
    EXPECT_EQ(tmpnodes(0, 0), 0);
    EXPECT_EQ(meshgroup, 1);
}

TEST(Objects, AStepBackTakesAPlacedObjectAway) {
    sessionroom room;
    startjournal();
    objectsform form = opened(room, plate);
    {
        const step s("Accept");
        acceptobject(form);
    }
    closeobjects(form);
    ASSERT_EQ(nelems(), 8);
    ASSERT_TRUE(stepback());
    EXPECT_EQ(nelems() + nnodes() + ngraphics() + patches(0, 0, 0), 0);
    EXPECT_EQ(ngroups(), 1);
}

using placeset = std::multiset<std::array<float, 3>>;
static placeset nodeplaces() {
    placeset all;
    for (int n = 1; n <= nnodes(); ++n)
        all.insert({nodes(0, n, 0), nodes(0, n, 1), nodes(0, n, 2)});
    return all;
}
// Each element as the places of its corners, in their order.
static std::multiset<std::vector<float>> elementplaces() {
    std::multiset<std::vector<float>> all;
    for (int e = 1; e <= nelems(); ++e) {
        std::vector<float> one = {elems(e, 0), float(egroup(e))};
        for (int k = 1; k <= 4 && elems(e, k) != 0; ++k)
            for (int i = 0; i < 3; ++i) one.push_back(nodes(0, long(elems(e, k)), i));
        all.insert(one);
    }
    return all;
}

// Quadrilaterals and triangles that share an edge, beams on lines and on an arc, a spaced edge.
static void makemodel() {
    auto quad = rectangle(4, 3);
    graphics(quad[0][0], 0, 2) = graphics(quad[1][0], 0, 2) = 1.5f;
    const int a = addline({4, 0, 0}, {7, 1.3f, .1f}, 3), b = addline({4, 2, 0}, {7, 1.3f, .1f}, 3);
    const int arc = addgraphic(kindcircle, {0, 2, 0}, {4, 2, 0}, {2, 3, 0}, 5);
    addgroup(*std::make_unique<groupform>());
    groups(2, 4) = 1.0 / 3;
    const std::vector<std::pair<int, std::vector<std::vector<int>>>> meshes = {
        {0, quad}, {1, {{quad[3][0]}, {b}, {a}}}, {3, {{arc}}}, {3, {{a}}}};
    for (const auto& [type, edges] : meshes) {
        mesh2dform form = openwith(type, edges);
        meshgroup = type == 0 ? 1 : 2;
        generatemesh(form);
        acceptmesh(form);
    }
}

TEST(Objects, WhatAModelWritesGivesItsMeshBack) {
    sessionroom room;
    makemodel();
    ASSERT_EQ(nelems(), 12 + 9 + 5 + 3);
    const auto places = nodeplaces();
    const auto elements = elementplaces();
    const std::string path = room.file("own.obj");
    Genfile(path);
    const std::string text = contentof(path);
    EXPECT_TRUE(text.starts_with("DESCRIPTION\r\nObject created form model:"));
    EXPECT_NE(text.find("VARIABLES, 4\r\nNMESH,1,\"Mesh refine factor\"\r\nXSC,1,\"X-Scale\"\r\n"),
              std::string::npos);
    EXPECT_NE(text.find("\r\n1,1,4*NMESH,1.5,0,0*XSC,0*YSC,0*ZSC,4*XSC,"), std::string::npos);
    nodes(0, 0, 0) = elems(0, 0) = graphics(0, 0, 0) = 0;
    patches(0, 0, 0) = 0;
    groups(0, 0) = 0;
    objectsform form = opened(room, text);
    editvariable(form, 0, "2");
    EXPECT_EQ(tmpelems(0, 0), 12 * 4 + 9 * 4 + 10 + 6) << form.message;
    editvariable(form, 0, "1");
    acceptobject(form);
    EXPECT_EQ(ngroups(), 2);
    EXPECT_EQ(groups(2, 4), 1.0 / 3);
    EXPECT_EQ(nodeplaces(), places);
    EXPECT_EQ(elementplaces(), elements);
    Genfile(path);
    EXPECT_EQ(contentof(path), text) << "written, placed and written again";
}

// Whatever the file, the model stands, and what is left of the dialog still works.
TEST(Objects, AFileCutAnywhereHarmsNothing) {
    sessionroom room;
    addnode(1, 2, 3);
    const std::string whole = plate;
    for (std::size_t n = 0; n <= whole.size(); ++n) {
        const objectfile file{"cut.obj", whole.substr(0, n)};
        faultlist faults;
        std::string told;
        guarded(
            [&] {
                Readvar(file);
                Readfile(file, {});
            },
            [&](const runtimeerror& e) { told = e.what; });
        const bool good = tmpelems(0, 0) == 8 && objhasend && faults.texts.empty();
        EXPECT_EQ(good, n + 2 >= whole.size()) << n;  // the last line end is no loss
        EXPECT_TRUE(told.empty() || told.find("cut.obj, line") != told.npos) << told;
        EXPECT_EQ(nnodes() + ngraphics() + ngroups() + patches(0, 0, 0), 2);
        EXPECT_TRUE(told.empty() || tmpnodes(0, 0) + float(objgraphcount + objgroupcount) == 0);
    }
}

static std::string changed(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
}

TEST(Objects, WhatIsWrongIsToldAndTheModelStands) {
    std::string longsum = "1";
    for (int i = 0; i < 20; ++i) longsum += "+1";
    const struct {
        const char *from, *to, *told;
        int elements;  // that are there after Accept
    } cases[] = {
        {"4*NMESH", "4*N", "Object variable N not defined", 0},  // edges no longer agree
        {"T*2", "X*2", "Object variable X not defined", 8},
        {"T*2", "1/0", "Division by zero in 1/0", 8},
        {"0,0,0,L,0,0,0,0,0", longsum.c_str(), "has more than 20 terms", 0},
        {"3,1,1,1,2", "3,1,1,1,9", "line 13: patch 1 names graphic element 9, which the object", 0},
        {"3,1,1,1,2", "3,21,1,1,2", "from 1 to 20 was expected, found 21", 0},
        {"3,1,1,1,2", "40,1,1,1,2", "element type 40 can not be meshed", 0},
        {"3,1,1,1,2", "2,1,1,1,2", "patch 1: ", 0},
        {"2*NMESH", "3*NMESH", "Number of nodes of Edge 3 and Edge 4 should be equal.", 0},
        {"GRAPHICS,4", "GRAPHICS,4000000", "4000000 rows are announced", 0},
        {"2,1,4*NMESH", "1,1,4*NMESH", "graphic element 1 stands there twice", 0},
        {"2,1,4*NMESH", "2,7,4*NMESH", "kind: a whole number from 0 to 3", 0},
        {"2,1,4*NMESH", "9000,1,4*NMESH", "Error: To much graphic Elements, Increase number", 0},
        {"GROUPS,1", "GROUPS,x", "Error occurred while trying to read groups. ", 0},
        {"3,0,0,0\r\n", "3,0,0,\r\n", "Error occurred while trying to read groups. ", 0},
        {"L,4,", "L,1E39,", "is too large", 0},
        {"L,4,", "L,-L,", "leads back to itself", 0},
        {"1,3,1,4,1", "1,3,1,4,7", "name a group that the object lacks", 8},
        {"\nEND", "\n", "The file has no END", 8},
    };
    for (const auto& c : cases) {
        sessionroom room;
        addnode(1, 2, 3);
        objectsform form = opened(room, changed(plate, c.from, c.to));
        const std::string message = form.message;
        acceptobject(form);
        EXPECT_TRUE(message.find(c.told) != message.npos || room.platform.toldpart(c.told))
            << c.to << ": " << message;
        EXPECT_EQ(nelems(), c.elements) << c.to << ": " << form.message;
        EXPECT_EQ(nnodes(), c.elements == 0 ? 1 : 16) << c.to;
        EXPECT_EQ(ngroups(), c.elements == 0 ? 1 : 2) << c.to;
        EXPECT_EQ(tmpnodes(0, 0), c.elements == 0 ? tmpnodes(0, 0) : 0) << c.to;
    }
}

TEST(Objects, GroupsBeyondTheSizeAreToldAndNothingIsPlaced) {
    sessionroom room;
    modelsize(4) = 1;
    objectsform form = opened(room, plate);
    acceptobject(form);
    EXPECT_TRUE(
        room.platform.told("Error: To much material groups, Increase number of groups to 2 on "
                           "Model Size declairation form."));
    EXPECT_EQ(nelems() + ngraphics() + patches(0, 0, 0), 0);
    EXPECT_EQ(ngroups(), 1);
}

TEST(Objects, AnUnknownNameIsOneMessageAUse) {
    sessionroom room;
    objectsform form = opened(room, changed(plate, "0,0,0,L,0,0,0", "Q,Q,0,L,0,0,Q"));
    EXPECT_NE(form.message.find("Object variable Q not defined (3 uses)"), std::string::npos);
    acceptobject(form);
    EXPECT_EQ(std::ranges::count(room.platform.messages, "Object variable Q not defined",
                                 &messagebox::text),
              3);
    EXPECT_EQ(nelems(), 8) << "an unknown name counts as 0";
    form = opened(room, changed(plate, "1,1,4*NMESH", "1,1,Q"));
    EXPECT_TRUE(form.message.starts_with("Object variable Q not defined")) << form.message;
    EXPECT_NE(form.message.find("should be equal"), std::string::npos) << "what came of it";
}
