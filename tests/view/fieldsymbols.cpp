// SPDX-License-Identifier: GPL-3.0-or-later
// Supports and loads as engineers draw them, solid members, labels that keep apart.
#include <algorithm>
#include <cmath>
#include <set>

#include "core/kaltext.h"
#include "tests/support/recorder.h"
#include "tools/groupsection.h"
#include "view/drawconditions.h"
#include "view/drawelems.h"
#include "view/hidden.h"
#include "view/labels.h"
#include "view/moddraw.h"
#include "view/setviews.h"
#include "view/solids.h"
#include "view/symbolstyle.h"

namespace {

void hold(int n, std::initializer_list<int> dofs) {
    for (const int dof : dofs) {
        connode(++ncon) = n;
        condof(ncon) = dof;
    }
}

void nodalload(int n, int dof, float value) {
    const int i = ++loadnode(1, 0);
    loadnode(1, i) = n;
    loaddof(1, i) = dof;
    loadval(1, i) = value;
}

void elementrow(int e, float direction, float value) {
    const int i = int(elemload(1, 0, 0) += 1);
    elemload(1, i, 0) = float(e);
    elemload(1, i, 1) = direction;
    elemload(1, i, 2) = value;
}

int shapes(const recordsurface& s, int corners) {
    int found = 0;
    for (const std::string& o : s.operations)
        found += o.starts_with("polygon") && std::ranges::count(o, ' ') == 2 * corners + 2;
    return found;
}

}  // namespace

TEST(Fieldsymbols, SupportsFollowAllThatIsHeldAtANode) {
    const struct {
        const char* name;
        bool plane;
        std::vector<int> held;
        int triangles, wheels, filled, strokes;  // strokes in the colour of rotations
    } cases[] = {
        {"pin in space", false, {1, 2, 3}, 1, 0, 0, 0},
        {"clamp in space", false, {6, 5, 4, 3, 2, 1}, 0, 0, 1, 0},
        {"pin with one rotation", false, {1, 2, 3, 6}, 1, 0, 0, 1},
        {"two rollers", false, {1, 2}, 2, 4, 0, 0},
        {"a rotation alone", false, {5}, 0, 0, 0, 1},
        {"pin in the plane", true, {1, 2}, 1, 0, 0, 0},
        {"clamp in the plane", true, {1, 2, 6}, 0, 0, 1, 0},
        {"roller in the plane", true, {2}, 1, 2, 0, 0},
        {"out of the plane alone", true, {3, 4}, 0, 0, 0, 0},
    };
    for (const auto& c : cases) {
        sessionroom room;
        symbolsdrawn.field = true;
        dim2d = c.plane;
        const int n = addnode(0, 0, 0);
        addelement(1, {n, addnode(3, 1, 2)});
        for (const int dof : c.held) hold(n, {dof});
        const int nview = c.plane ? 2 : 1;  // 2 looks at the plane
        drawcolor = meshcolor;
        drawconstraints(nview);
        const auto& s = room.platform.views[std::size_t(nview - 1)];
        int rotations = 0;
        for (const std::string& o : s.operations)
            rotations += o.starts_with("line") && o.find("#00ffff") != o.npos;
        EXPECT_EQ(shapes(s, 3), c.triangles) << c.name;
        EXPECT_EQ(shapes(s, 4), c.filled) << c.name;
        EXPECT_EQ(s.count("circle"), c.wheels) << c.name;
        EXPECT_EQ(rotations, c.strokes) << c.name;
    }
}

// View 2 has x to the right and y upwards, its middle at 10, 5; the unit is a centimetre.
TEST(Fieldsymbols, StandWhereTheMembersAndTheLoadsAre) {
    sessionroom room;
    symbolsdrawn.field = symbolsdrawn.values = true;
    symbolsdrawn.size = 200;  // a stroke of a centimetre
    unitstext = "m kN t";
    addelement(1, {addnode(0, 0, 0), addnode(4, 0, 0)});
    addelement(9, {addnode(-4, -4, 0), addnode(-1.9f, -4, 0), addnode(-1.9f, -1.9f, 0),
                   addnode(-4, -1.9f, 0)});
    viewscale(2) = 1;
    viewdist(2) = 1e30f;
    hold(1, {1, 2, 3, 4, 5, 6});
    drawcolor = meshcolor;
    recordsurface& s = room.platform.views[1];
    drawconstraints(2);
    EXPECT_EQ(s.count("polygon 10.00 5.36 10.00 4.64 9.90 4.64 9.90 5.36"), 1)
        << "the clamp stands across the member, on the side where it ends";
    const struct {
        const char* name;
        int node, dof;  // of a nodal load, 0: of an element, with the direction
        int heads, arrows;
        const char *line, *value;
    } cases[] = {
        {"a force", 2, 2, 1, 1, "line 14.00 5.00 14.00 4.00", "text 14.05 4.00 12.35 kN"},
        {"a moment", 2, 5, 2, 1, "line 14.00 5.00 14.00 3.00", "text 14.05 3.00 12.35 kN m"},
        {"to the eye", 2, 3, 0, 1, "line 14.00 5.00 14.00 5.00", "text 14.05 5.00 12.35 kN"},
        {"along a member", 0, 2, 11, 11, "line 10.00 4.00 14.00 4.00",
         "text 12.05 4.00 12.35 kN/m"},
        {"on a plate", -1, 2, 25, 25, "line 6.21 8.79 6.21 7.79", "text 6.26 7.79 12.35 kN/m2"},
    };
    for (const auto& c : cases) {
        loadnode(1, 0) = 0;
        elemload(1, 0, 0) = 0;
        if (c.node > 0)
            nodalload(c.node, c.dof, 12.3456f);
        else
            elementrow(1 - c.node, float(c.dof), 12.3456f);
        checkonly(viewloads, activecase);
        s.operations.clear();
        freelabels();
        drawloads(2);
        EXPECT_EQ(shapes(s, 3), c.heads) << c.name;
        EXPECT_EQ(s.count(c.line), 1) << c.name;
        EXPECT_EQ(s.count(c.value), 1) << c.name;
    }
    elementrow(1, 2, 0.01f);
    nodalload(2, 2, 5000);
    const auto combs = [&] {
        s.operations.clear();
        freelabels();
        drawloads(2);
        return s.count("line 10.00 4.00 14.00 4.00");
    };
    EXPECT_EQ(combs(), 1) << "a line load has a measure of its own, whatever the forces";
    symbolsdrawn = {};
    EXPECT_EQ(combs(), 0);
    drawconstraints(2);
    EXPECT_EQ(s.count("polygon") + s.count("text") + s.count("circle"), 0) << "strokes alone";
}

TEST(Fieldsymbols, NoLabelCoversAnother) {
    sessionroom room;
    for (int i = 0; i < 400; ++i) addnode(float(i % 20) * 0.3f, float(i / 20) * 0.2f, 0);
    setpreset(1, 1);
    viewscale(1) = 1;
    checkonly(Nodelabeltype, nodenumbers);
    const auto labels = [&] {
        drawview(1);
        std::vector<point2> corners;
        std::vector<double> widths;
        int covered = 0;
        for (const std::string& o : room.platform.views[0].operations) {
            double x, y;
            int number;
            if (std::sscanf(o.c_str(), "text %lf %lf %d", &x, &y, &number) != 3) continue;
            const double width = 0.2 * double(std::to_string(number).size());
            for (std::size_t k = 0; k < corners.size(); ++k)
                covered += std::fabs(corners[k].y - y) < 0.39 && corners[k].x < x + width - 0.01 &&
                           x < corners[k].x + widths[k] - 0.01;
            corners.push_back({x, y});
            widths.push_back(width);
        }
        return std::pair(int(corners.size()), covered);
    };
    EXPECT_EQ(labels().first, 400) << "each at its node, one over the other";
    symbolsdrawn.apart = true;
    const auto [shown, covered] = labels();
    EXPECT_EQ(covered, 0);
    EXPECT_GT(shown, 40);
    EXPECT_EQ(labels().first, shown) << "a second picture is as the first";
}

TEST(Fieldsymbols, SectionsComeFromTheValuesOfTheGroup) {
    const dimensions tube{0.5, 0.02, 0, 0}, beam{0.2, 0.4, 0.01, 0.016}, bar{0.1, 0.3, 0, 0};
    const struct {
        const char* name;
        sectionvalues values;
        double width, height;
        std::size_t corners;
    } cases[] = {
        {"tube", calcsection(tubular, tube), 0.5, 0.5, 72},
        {"beam", calcsection(beammetric, beam), 0.2, 0.4, 12},
        {"bar", calcsection(prismaticbar, bar), 0.1, 0.3, 4},
        {"area alone", {.area = pi / 4}, 1, 1, 72},
        {"no moduli",
         {.area = 0.03, .ixx = 0.03 * 0.09 / 12, .iyy = 0.03 * 0.01 / 12},
         0.1,
         0.3,
         4},
        {"nothing", {}, 0, 0, 0},
    };
    for (const auto& c : cases) {
        const auto outline = equivalentsection(c.values);
        ASSERT_EQ(outline.empty() ? 0 : outline[0].size(), c.corners) << c.name;
        double wide = 0, high = 0;
        for (const auto& part : outline)
            for (const point2& p : part) {
                wide = std::max(wide, 2 * std::fabs(p.x));
                high = std::max(high, 2 * std::fabs(p.y));
            }
        EXPECT_NEAR(wide, c.width, 0.01 * c.width) << c.name;
        EXPECT_NEAR(high, c.height, 0.01 * c.height) << c.name;
    }
}

TEST(Fieldsymbols, SolidsShowSectionRotationAndThickness) {
    sessionroom room;
    inithidden();
    sectionofgroup = [](int) {  // one wide, two high
        return std::vector<std::vector<point2>>{{{-0.5, -1}, {0.5, -1}, {0.5, 1}, {-0.5, 1}}};
    };
    addelement(1, {addnode(-3, 0, 0), addnode(3, 0, 0)});
    addelement(9, {addnode(-5, 4, 3), addnode(5, 4, 3), addnode(5, 5, 3), addnode(-5, 5, 3)}, 2);
    groups(0, 0) = 2;
    groups(1, fieldthickness) = 2;
    groups(2, fieldthickness) = 0.4;
    symbolsdrawn.solid = true;
    mnudrawlist(nodesdrawn).checked = mnuSettingsItem(globalaxison).checked = false;
    viewscale(2) = viewscale(3) = 1;
    viewdist(2) = viewdist(3) = 1e30f;
    const auto extent = [&](int nview, const char* kind) {  // heights of what is drawn
        drawview(nview);
        std::set<int> heights;
        for (const std::string& o : room.platform.views[std::size_t(nview - 1)].operations) {
            if (!o.starts_with(kind)) continue;
            double y[4] = {}, x;
            std::sscanf(o.c_str() + std::string(kind).size(), "%lf %lf %lf %lf %lf %lf %lf %lf", &x,
                        y, &x, y + 1, &x, y + 2, &x, y + 3);
            heights.insert(int(
                std::lround(100 * (*std::ranges::max_element(y) - *std::ranges::min_element(y)))));
        }
        return heights;
    };
    mnudrawlist(hiddenline).checked = true;
    EXPECT_EQ(extent(2, "polygon"), (std::set<int>{100})) << "from above: width of the beam, plate";
    EXPECT_EQ(extent(3, "polygon"), (std::set<int>{40, 200})) << "from the side: thickness, height";
    groups(1, fieldrotation) = 90;
    EXPECT_EQ(extent(2, "polygon"), (std::set<int>{200, 100}));
    mnudrawlist(hiddenline).checked = false;
    drawview(2);
    EXPECT_EQ(room.platform.views[1].count("line"), 2 * 6 * 4) << "edges of two boxes, by sides";
    viewscale(2) = 0.02f;
    drawview(2);
    EXPECT_EQ(room.platform.views[1].count("line"), 1 + 4) << "too thin to be seen";
    sectionofgroup = nullptr;
}

TEST(Fieldsymbols, TheLegendHasTheGroupsOnShow) {
    sessionroom room;
    for (int n = 0; n < 3; ++n) addnode(float(n), 0, 0);
    groups(0, 0) = 3;
    for (int g = 1; g <= 3; ++g) groupname(g) = "G" + std::to_string(g);
    addelement(1, {1, 2}, 3);
    addelement(1, {2, 3}, 1);
    const auto names = [&](int nview) {
        drawview(nview);
        std::string found;
        for (const std::string& o : room.platform.views[std::size_t(nview - 1)].operations)
            if (o.starts_with("text") && o.find(" G") != o.npos) found += o.substr(o.find(" G"));
        return found;
    };
    EXPECT_EQ(names(1), "");
    checkonly(elemlabeltype, elementcolours);
    EXPECT_EQ(names(1), " G1 G3");
    EXPECT_EQ(names(2), "") << "labels are those of the first view";
    viewtype(1) = 2;
    viewselnum(1) = 1;
    elemvis(1, 2) = true;
    EXPECT_EQ(names(1), " G1");
    symbolsdrawn.legend = false;
    EXPECT_EQ(names(1), "");
}
