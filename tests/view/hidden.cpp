// SPDX-License-Identifier: GPL-3.0-or-later
// Depth order, shading, and the painter's pass.
#include "view/hidden.h"

#include <algorithm>
#include <random>

#include "tests/support/recorder.h"
#include "view/moddraw.h"
#include "view/setviews.h"

// The order told: for i from the top down, the greatest of 1..i, first met wins, changes with i.
static std::vector<int> plainselection(std::vector<std::pair<double, int>> rows) {
    for (std::size_t i = rows.size() - 1; i > 0; --i) {
        std::size_t best = 0;
        for (std::size_t k = 1; k <= i; ++k)
            if (rows[k].first > rows[best].first) best = k;
        std::swap(rows[best], rows[i]);
    }
    std::vector<int> order;
    for (const auto& row : rows) order.push_back(row.second);
    return order;
}

TEST(Hidden, EqualDepthsStandAsTheSelectionSortLeavesThem) {
    std::mt19937 random(17);
    for (int round = 0; round < 60; ++round) {
        sessionroom room;
        const int different = 1 + int(random() % 8);  // few depths, many ties
        std::vector<std::pair<double, int>> rows;
        for (int e = 1; e <= 40; ++e) {
            const double depth =
                round % 3 == 0 ? double(random() % 1000) : double(random() % different);
            const int n = addnode(float(depth), float(e), 0);
            addelement(4, {n});
            rows.push_back({depth, e});
        }
        sortdepth(4);  // looks along x, the depth is x to the last bit
        const std::vector<int> expected = plainselection(rows);
        for (int i = 1; i <= 40; ++i)
            ASSERT_EQ(int(elemdepth(i, 0)), expected[std::size_t(i - 1)]) << "row " << i;
        EXPECT_LE(elemdepth(1, 1), elemdepth(40, 1));
    }
}

TEST(Hidden, ShadesRunFromTheIntensityToWhite) {
    sessionroom room;
    inithidden();
    EXPECT_EQ(shadeof(1), rgb(255, 255, 255));
    EXPECT_EQ(shadeof(0), rgb(127, 127, 127));
    lightintensity = 100;
    EXPECT_EQ(shadeof(-1), rgb(155, 155, 155));
    shadecolor = shadered;
    EXPECT_EQ(shadeof(0), rgb(255, 205, 205));
    inithidden();
}

TEST(Hidden, PaintsTheFarFacetFirstAndNodesOnTheirElement) {
    sessionroom room;
    inithidden();
    const double h = 1.9875;  // corners lie in the middle of a pixel
    for (const float z : {5.0f, -5.0f})
        for (const auto& at : {std::pair(-h, -h), {h, -h}, {h, h}, {-h, h}})
            addnode(float(at.first), float(at.second), z);
    addelement(9, {1, 2, 3, 4});
    addelement(9, {8, 7, 6, 5});  // its normal points away from the eye
    mnudrawlist(hiddenline).checked = true;
    mnuSettingsItem(globalaxison).checked = false;
    lightangz = 90;       // light along the normals
    viewdist(2) = 1e30f;  // no perspective
    drawview(2);
    const auto& drawn = room.platform.views[1].operations;
    ASSERT_EQ(drawn.size(), 11u);
    EXPECT_EQ(drawn[1], "polygon 8.00 3.00 11.97 3.00 11.97 6.97 8.00 6.97 #ffffff #000000");
    EXPECT_EQ(drawn[6].substr(0, 7), "polygon");
    EXPECT_EQ(room.platform.views[1].count("circle"), 8);
    shadingon = false;
    mnudrawlist(nodesdrawn).checked = false;
    checkonly(elemlabeltype, elementcolours);
    drawview(2);
    EXPECT_EQ(room.platform.views[1].count(
                  "polygon 8.00 3.00 11.97 3.00 11.97 6.97 8.00 6.97 #00ff00 #00ff00"),
              1);
    inithidden();
}

TEST(Hidden, LabelsStandOutFromTheFillingAndGroupsKeepTheirColour) {
    sessionroom room;
    inithidden();
    for (const auto& at : {std::pair(-2, -2), {2, -2}, {2, 2}, {-2, 2}})
        addnode(float(at.first), float(at.second), 0);
    addelement(9, {1, 2, 3, 4});
    setpreset(1, 1);
    mnudrawlist(hiddenline).checked = true;
    mnuSettingsItem(globalaxison).checked = false;
    shadingon = false;
    checkonly(elemlabeltype, elementnumbers);
    const struct {
        colour fill, label;
    } cases[] = {{rgb(0, 150, 255), rgb(255, 106, 1)},  // the inverse, not that of the blue nodes
                 {rgb(0, 0, 150), rgb(255, 255, 106)},
                 {rgb(127, 127, 127), rgb(255, 255, 255)},  // its inverse is grey as well
                 {rgb(150, 140, 120), rgb(0, 0, 0)}};
    for (const auto& c : cases) {
        hidcolor = c.fill;
        drawview(1);
        EXPECT_EQ(room.platform.views[0].count("text"), 1);
        EXPECT_EQ(room.platform.views[0].textcolor, c.label);
    }
    hidcolor = rgb(0, 150, 255);
    addelement(6, {1, 3}, 1);
    checkonly(elemlabeltype, elementcolours);
    groups(0, 0) = 1;
    menupostItem(deformedshape).checked = true;
    drawview(1);
    EXPECT_EQ(room.platform.views[0].count("line"), 2);
    EXPECT_EQ(room.platform.views[0].count("line 8.00 7.00 12.00 3.00 #00ff00"), 2)
        << "the beam has its group's colour, also on the shape";
    inithidden();
}
