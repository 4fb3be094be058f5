// SPDX-License-Identifier: GPL-3.0-or-later
// The scale, the legend, the set of elements, the switches of the menu and the picture's order.
#include "post/contour.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "core/model.h"
#include "core/session.h"
#include "edit/Mouseprocedures.h"
#include "edit/selection.h"
#include "post/legend.h"
#include "post/postproces.h"
#include "post/probe.h"
#include "post/shapes.h"
#include "post/soptions.h"
#include "post/stressfile.h"
#include "tests/support/recorder.h"
#include "view/moddraw.h"
#include "view/scaleview.h"

// Two squares side by side and a bar, with a stress file: the first square from 10 to 40, the
// second from -5 to 35 in component 1; the bar from 7 to 9.
struct plotroom : sessionroom {
    plotroom() {
        wirepost();
        modelname = file("job");
        for (const auto& p : {point2{0, 0}, {1, 0}, {2, 0}, {0, 1}, {1, 1}, {2, 1}})
            addnode(0, float(p.x), float(p.y));
        addelement(3, {1, 2, 5, 4});
        addelement(3, {2, 3, 6, 5}, 2);
        addelement(1, {1, 6});
        ngroupsis(2);
        lcomb(0, 0) = 2;
        lcomb(1, 1) = 1;
        lcomb(2, 1) = -2;
        lcombname(1) = "Wind";
        curlcomb = 1;
        contourdata = dispcontour = postset = 0;
        contourfilled = stresscomp = 1;
        stressaverage = stressglobal = 0;
        indexautoscale = true;
        evenpalette = markextremes = valueatpointer = false;
        scalemax = scalemin = 0;
        retryresults();
        viewhor(1) = viewvert(1) = 0;
        viewscale(1) = 2;
        viewptx(1) = 0;
        viewpty(1) = 1;
        viewptz(1) = 0.5;
        viewdist(1) = 1e9f;
        write(".NSL", {{1, 10}, {1, 20}, {1, 30}, {1, 40}, {2, -5}, {2, 0}, {2, 25}, {2, 35}}, 12);
        write(".LES", {{3, 7}}, 12);
        write(".rvp", {}, 0);
    }
    ~plotroom() {
        for (layers l : {layers::contour, layers::elementstress}) layer(l).draw = nullptr;
    }
    static void ngroupsis(int count) {
        groups(0, 0) = count;
        groupname(2) = "Deck";
    }
    void write(const std::string& extension, const std::vector<std::pair<int, double>>& rows,
               int zeros) const {
        std::string text;
        for (const auto& [e, first] : rows) {
            text += std::to_string(e) + ",0,0,0," + std::to_string(first);
            for (int k = 0; k < zeros; ++k) text += ",0";
            if (extension == ".LES") {
                text += "," + std::to_string(first + 2);
                for (int k = 0; k < zeros; ++k) text += ",0";
            }
            text += "\r\n";
        }
        if (extension == ".rvp")
            text = "6,1\r\n0,0\r\n3,4\r\n0,0\r\n0,0\r\n0,0\r\n-1,0\r\n\"LC\"\r\n";
        else
            text += "END\r\n";
        writefile(file("job" + extension), text);
    }
};

// --- the scale ----------------------------------------------------------------------------------

TEST(Scale, FollowsTheValuesOfTheSetOnTheActiveEntry) {
    plotroom room;
    showcontour();
    EXPECT_FLOAT_EQ(float(indexmax), 40);
    EXPECT_FLOAT_EQ(float(indexmin), -5) << "the bar's 7 and 9 are not of a contour plot";
    soptionsform form;
    form.group = 0;
    chooseset(form, 1);
    EXPECT_EQ(postcount, 2) << "a square and the bar";
    showresults();
    EXPECT_FLOAT_EQ(float(indexmin), 10);
    showelementstress();
    EXPECT_FLOAT_EQ(float(indexmax), 9);
    EXPECT_FLOAT_EQ(float(indexmin), 0) << "a bar's third and fourth record are 0";
    EXPECT_EQ(lowest.value, 7) << "marks are of corners that exist";
    choosecombination(2);
    EXPECT_FLOAT_EQ(float(indexmin), -18);
}

TEST(Scale, OfDisplacementsIsOfTheNodes) {
    plotroom room;
    contourdata = 1;
    showcontour();
    EXPECT_EQ(plottext(), "Global Displacements");
    EXPECT_EQ(indexmax, 5) << "the length of 3, 4, 0";
    dispcontour = 1;
    showresults();
    EXPECT_EQ(indexmin, -1);
    EXPECT_EQ(indexmax, 3);
}

TEST(Scale, OfAUniformFieldWidensByItself) {
    struct row {
        double value, low, high;
    };
    for (const row& r :
         {row{4, 3.5, 4.5}, {-4, -4.5, -3.5}, {0, -1, 1}, {100, 99.98, 100.02}, {0.5, -3.5, 4.5}}) {
        plotroom room;
        const auto v = r.value;
        room.write(".NSL", {{1, v}, {1, v}, {1, v}, {1, v}, {2, v}, {2, v}, {2, v}, {2, v}}, 12);
        showcontour();
        EXPECT_NEAR(indexmin, r.low, 1e-9) << v;
        EXPECT_NEAR(indexmax, r.high, 1e-9) << v;
        for (const std::string& label : makelegend().labels)
            EXPECT_EQ(label.find_first_not_of("-0123456789."), label.npos) << label;
    }
}

TEST(Scale, ByHandTakesItsBoundsInEitherOrder) {
    plotroom room;
    showcontour();
    soptionsform form;
    choosescale(form, false);
    EXPECT_EQ(form.maximum, "40") << "the first starts from the values";
    form.maximum = "abc";
    EXPECT_FALSE(storesoptions(form));
    EXPECT_EQ(form.message, "Maximum and Minimum must be numbers");
    form.maximum = "1e999";
    EXPECT_FALSE(storesoptions(form));
    form.maximum = "-3";
    form.minimum = "12.5";
    ASSERT_TRUE(storesoptions(form));
    showresults();
    EXPECT_EQ(indexmax, 12.5);
    EXPECT_EQ(indexmin, -3);
    scalemin = 20;  // as another part of the program may set it
    showresults();
    EXPECT_EQ(indexmax, 20);
    EXPECT_EQ(indexmin, 12.5);
    scalemin = scalemax;
    showresults();
    EXPECT_EQ(makelegend().labels.size(), 11u) << "a scale without width is drawn all the same";
}

TEST(Scale, BandsAndLevelsIncludeTheirBounds) {
    indexmin = -1e-12;
    indexmax = 1;
    EXPECT_EQ(bandbound(10), indexmax) << "no rounding leaves the largest value out";
    EXPECT_EQ(levelof(9), indexmax);
    EXPECT_EQ(bandof(1), 9);
    EXPECT_EQ(bandof(-1e-12), 0);
    EXPECT_EQ(bandof(1.0001), -1);
    EXPECT_EQ(bandof(std::nan("")), -1);
}

// --- the legend ---------------------------------------------------------------------------------

TEST(Legend, DividesByOnePowerOfTen) {
    struct row {
        double low, high;
        int filled, exponent;
        const char *first, *last;
        std::size_t count;
    };
    const row rows[] = {
        {-5, 40, 0, 1, "-0.50", "4.00", 10},       {0, 313.61, 1, 2, "0.00", "3.14", 11},
        {-0.00123, 0, 0, -3, "-1.23", "0.00", 10}, {1000, 1000.9, 0, 3, "1.0000", "1.0009", 10},
        {-1, 1, 1, 0, "-1.00", "1.00", 11},        {2e7, 3e8, 1, 8, "0.20", "3.00", 11},
    };
    plotroom room;
    showcontour();
    for (const row& r : rows) {
        indexmin = r.low;
        indexmax = r.high;
        contourfilled = r.filled;
        const legendtext t = makelegend();
        EXPECT_EQ(t.exponent, r.exponent) << r.high;
        EXPECT_EQ(t.labels.front(), r.first);
        EXPECT_EQ(t.labels.back(), r.last);
        EXPECT_EQ(t.labels.size(), r.count);
        EXPECT_EQ(t.tail, " E" + std::to_string(r.exponent));
    }
}

TEST(Legend, NamesWhatIsShown) {
    plotroom room;
    showcontour();
    EXPECT_EQ(makelegend().title, "Contour Index");
    EXPECT_EQ(makelegend().heading, (std::vector<std::string>{"Stress Index", "Wind", "SX"}));
    stresscomp = 13;
    EXPECT_EQ(makelegend().heading.back(), "Combined Stress ");
    contourdata = 1;
    dispcontour = 2;
    EXPECT_EQ(makelegend().heading, (std::vector<std::string>{"Y Displacements", "Wind"}));
    curlcomb = 9;
    EXPECT_EQ(makelegend().heading.back(), "Load Case 1");
    showelementstress();
    EXPECT_EQ(makelegend().title, "Stress Index");
    EXPECT_EQ(makelegend().heading.front(), "Stress Index");
}

// Ten boxes one above the other, the highest value on top, labels beside their bounds.
TEST(Legend, StandsInOrder) {
    plotroom room;
    showcontour();
    recordsurface paper;
    drawlegendon(paper, 0, 0, 4, 9);
    std::vector<std::string> labels;
    double lasty = -1;
    for (const std::string& o : paper.operations) {
        if (o.rfind("text ", 0) != 0) continue;
        double x = 0, y = 0;
        std::sscanf(o.c_str(), "text %lf %lf", &x, &y);
        EXPECT_GE(y, 0);
        EXPECT_LE(y + paper.textheight(), 9) << o;
        if (x > 0.5) labels.push_back(o);
        lasty = y;
    }
    EXPECT_EQ(paper.count("polygon"), 10);
    ASSERT_EQ(labels.size(), 12u) << "eleven bounds and the power of ten";
    EXPECT_NE(labels.back().find(" E1"), std::string::npos);
    EXPECT_GT(lasty, 3);
}

// --- palette ------------------------------------------------------------------------------------

namespace {
struct lab {
    double l, a, b;
};
}  // namespace

// sRGB to CIELAB (IEC 61966-2-1, CIE 15, white D65).
static lab labof(colour c) {
    const auto linear = [](int part) {
        const double v = part / 255.0;
        return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    const double r = linear(redof(c)), g = linear(greenof(c)), b = linear(blueof(c));
    const auto f = [](double t) {
        return t > 216.0 / 24389 ? std::cbrt(t) : (24389.0 / 27 * t + 16) / 116;
    };
    const double x = f((0.4124564 * r + 0.3575761 * g + 0.1804375 * b) / 0.95047),
                 y = f(0.2126729 * r + 0.7151522 * g + 0.0721750 * b),
                 z = f((0.0193339 * r + 0.1191920 * g + 0.9503041 * b) / 1.08883);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

TEST(Palette, TheEvenOneStepsEvenlyAndTheToldOneIsTheSettings) {
    plotroom room;
    fillpalette();
    for (int k = 0; k < 10; ++k) EXPECT_EQ(int(indexcolor(k)), groupshow(k));
    evenpalette = true;
    fillpalette();
    double least = 1e9, most = 0;
    for (int k = 1; k < 10; ++k) {
        const lab p = labof(int(indexcolor(k - 1))), q = labof(int(indexcolor(k)));
        const double step = std::hypot(q.l - p.l, q.a - p.a, q.b - p.b);
        least = std::min(least, step);
        most = std::max(most, step);
        EXPECT_GT(q.l, p.l) << "each is lighter than the one below, " << k;
    }
    EXPECT_LT(most / least, 1.2);
    EXPECT_GT(least, 10) << "steps that are seen";
}

// --- switches -----------------------------------------------------------------------------------

TEST(Switches, ContourAndElementStressExcludeEachOther) {
    plotroom room;
    EXPECT_FALSE(legendshown());
    showcontour();
    EXPECT_TRUE(menupostItem(2).checked);
    EXPECT_TRUE(legendshown());
    EXPECT_EQ(plottext(), " Nodal Element Stress Local");
    showelementstress();
    EXPECT_FALSE(menupostItem(2).checked);
    EXPECT_TRUE(menupostItem(4).checked);
    EXPECT_EQ(plottext(), "Local Element Stress");
    showelementstress();
    EXPECT_FALSE(legendshown());
    EXPECT_EQ(plottext(), "");
}

TEST(Switches, AMissingStressFileIsToldOnceAndLeavesThePlotEmpty) {
    plotroom room;
    stressaverage = 1;
    showcontour();
    const std::size_t told = room.door.messages.size();
    EXPECT_EQ(told, 1u);
    EXPECT_TRUE(room.door.told("Stress output file: " + room.file("job") + ".NLA Not found"));
    redrawall();
    redrawall();
    EXPECT_EQ(room.door.messages.size(), told) << "a redraw does not ask again";
    EXPECT_FALSE(legendshown());
    EXPECT_GT(room.door.views[0].count("line"), 8) << "the mesh is there";
    room.write(".NLA", {{1, 1}}, 12);
    chooseaverage(0);
    chooseaverage(1);
    showresults();
    EXPECT_TRUE(legendshown());
}

TEST(Switches, OptionsReadAnew) {
    plotroom room;
    showcontour();
    EXPECT_TRUE(stressloaded);
    chooseaxes(1);
    EXPECT_FALSE(stressloaded) << "another file";
    room.write(".NSR", {{1, 70}}, 12);
    soptionsclosed();
    EXPECT_FLOAT_EQ(float(indexmax), 70);
    soptionsform form;
    postset = 0;
    startpostselection();
    EXPECT_TRUE(postselpending);
    EXPECT_EQ(statusline(),
              "Select Element(s); for Post-process; <Mouse Left Button> to select, <ESC> to stop");
    toggleelement(2);
    endpostselection(form);
    EXPECT_EQ(postset, 2);
    EXPECT_EQ(postcount, 1);
    EXPECT_TRUE(elemflag(2));
    EXPECT_FALSE(elemflag(1));
    soptionsclosed();
    EXPECT_FALSE(postselpending);
    emptyselection();
    chooseset(form, 2);
    EXPECT_EQ(form.message, "The set holds no element");
    showresults();
    EXPECT_EQ(indexmin, -1) << "an empty set has the scale of a field of zeros";
}

TEST(Switches, ModesAreListedWithTheirFrequency) {
    plotroom room;
    const double w = 2 * 3.14159265358979;
    const std::string zeros = "0,0\r\n0,0\r\n0,0\r\n0,0\r\n0,0\r\n0,1\r\n";
    writefile(room.file("job.EIG"), "1,2\r\n" + std::to_string(w * w * 4) + "\r\n" + zeros +
                                        std::to_string(w * w * 100) + "\r\n" + zeros);
    showmode();
    EXPECT_EQ(modetext(), "Mode shape 1 of 2: 2 Hz");
    EXPECT_EQ(room.door.status, modetext());
    EXPECT_EQ(modelist(), (std::vector<std::string>{"1: 2 Hz", "2: 10 Hz"}));
    choosemode(2);
    EXPECT_EQ(room.door.status, "Mode shape 2 of 2: 10 Hz");
    EXPECT_EQ(curlcomb, 2);
    choosemode(5);
    EXPECT_EQ(modetext(), "The results hold 2 mode shapes, number 5 is not among them");
    EXPECT_EQ(maxdisp, 0);
    contourdata = 1;
    curlcomb = 1;
    showdeformed();
    showmode();
    EXPECT_EQ(maxdisp, 5) << "without the mode the combination's field is back";
}

// --- the picture --------------------------------------------------------------------------------

TEST(Picture, FillsThenOutlinesAndTheOtherWayRoundWithLines) {
    plotroom room;
    mnudrawlist(0).checked = mnudrawlist(2).checked = false;
    showcontour();
    const auto firstof = [&](const char* start, const std::string& end) {
        const auto& list = room.door.views[0].operations;
        for (std::size_t i = 0; i < list.size(); ++i)
            if (list[i].rfind(start, 0) == 0 && list[i].find(end) != std::string::npos)
                return int(i);
        return -1;
    };
    EXPECT_LT(firstof("polygon", ""), firstof("line", "#000000"));
    EXPECT_GE(firstof("polygon", ""), 0);
    contourfilled = 0;
    redrawall();
    EXPECT_EQ(firstof("polygon", ""), -1) << "nothing is filled in a wire picture";
    const int contourline = firstof("line", "#00c832 w2");
    EXPECT_GT(contourline, firstof("line", "#000000"));
    mnudrawlist(10).checked = true;
    redrawall();
    EXPECT_EQ(room.door.views[0].count("polygon"), 2) << "faces cover what lies behind them";
    mnudrawlist(1).checked = false;
    redrawall();
    EXPECT_EQ(firstof("line", "#000000"), -1) << "no mesh, no outline";
}

// The plot follows the deformed shape: every place of the fill is displaced.
TEST(Picture, LiesOnTheDeformedShape) {
    plotroom room;
    mnudrawlist(1).checked = false;
    stresscomp = 2;  // all 0: each element in one piece
    showcontour();
    const std::vector<std::string> flat = room.door.views[0].operations;
    showdeformed();
    EXPECT_EQ(room.door.views[0].operations.size(), flat.size());
    // Node 2 moves by 4 along y of 5 in all, and 5 measures the unit vector's length.
    setdispscale(1);
    EXPECT_NEAR(4 * dispscale(1) * viewscale(1), 0.8 * unitveclen, 1e-6);
    EXPECT_NE(room.door.views[0].operations, flat);
    EXPECT_EQ(undeformed, 1);
}

TEST(Picture, ShowsValuesAtThePointerAndTheExtremes) {
    plotroom room;
    showcontour();
    EXPECT_EQ(valueunder(1, vieww / 2 - 1, viewh / 2), "") << "off by default";
    EXPECT_EQ(room.door.views[0].count("text"), 3) << "the triad alone";
    valueatpointer = true;
    // y from 0 to 2 and z from 0 to 1 lie about the middle of the view, 2 cm a unit.
    EXPECT_EQ(valueunder(1, vieww / 2 - 1, viewh / 2), "SX 25 in element 1") << "the mean";
    EXPECT_EQ(valueunder(1, vieww / 2 - 1.998, viewh / 2 + 0.998), "SX 10.03 in element 1");
    EXPECT_EQ(valueunder(1, vieww / 2 + 5, viewh / 2), "");
    EXPECT_EQ(valueunder(2, vieww / 2 - 1, viewh / 2), "") << "the plot is in view 1";
    toggleswitch(markextremes);
    const auto& list = room.door.views[0].operations;
    const auto has = [&](const char* text) {
        return std::ranges::any_of(
            list, [&](const std::string& o) { return o.find(text) != std::string::npos; });
    };
    EXPECT_TRUE(has("Max 40"));
    EXPECT_TRUE(has("Min -5"));
    showelementstress();
    EXPECT_EQ(valueunder(1, vieww / 2, viewh / 2), "SX 8 in element 3");
}

TEST(Picture, HalvesOfALineElementHaveTheColoursOfTheirEnds) {
    plotroom room;
    showelementstress();
    const auto thick = [&] {
        std::vector<std::string> colours;
        for (const std::string& o : room.door.views[0].operations)
            if (o.find(" w3") != std::string::npos) colours.push_back(o.substr(o.find('#'), 7));
        return colours;
    };
    ASSERT_EQ(thick().size(), 2u);  // 7 and 9 of 0..9: bands 7 and 9
    EXPECT_EQ(thick()[0], "#960000");
    EXPECT_EQ(thick()[1], "#ff0000");
    contourfilled = 0;
    redrawall();
    EXPECT_EQ(thick(), (std::vector<std::string>{"#c80000", "#c80000"})) << "the mean";
}
