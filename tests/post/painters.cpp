// SPDX-License-Identifier: GPL-3.0-or-later
// The painters against exact areas and places: what is filled between two values, where a level
// runs, and the told limits of both.
#include "post/painters.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <random>

#include "post/contour.h"
#include "tests/support/recorder.h"
#include "view/scaleview.h"

namespace {
using triangle = std::array<point2, 3>;

double areaof(const std::vector<point2>& p) {
    double sum = 0;
    for (std::size_t i = 0; i < p.size(); ++i) {
        const point2 &a = p[i], &b = p[(i + 1) % p.size()];
        sum += a.x * b.y - b.x * a.y;
    }
    return std::fabs(sum) / 2;
}

// Keeps what is painted in full precision.
class paintkeeper : public recordsurface {
  public:
    void polygon(const point2* p, int n, colour) override {
        polygons[fillcolor].emplace_back(p, p + n);
    }
    void line(double x1, double y1, double x2, double y2, colour c) override {
        lines[c].push_back({point2{x1, y1}, point2{x2, y2}});
    }
    double area(colour c) {
        double sum = 0;
        if (!polygons.contains(c)) return 0;
        for (const auto& p : polygons[c]) sum += areaof(p);
        return sum;
    }
    std::vector<int> bands() const {
        std::vector<int> list;
        for (const auto& [c, pieces] : polygons) list.push_back(c - 1);
        return list;
    }
    bool whole = true;
    std::map<colour, std::vector<std::vector<point2>>> polygons;
    std::map<colour, std::vector<std::array<point2, 2>>> lines;
};

// Area of the part of a triangle where the linear field lies below a value: the corner above or
// below is cut off in the ratio of the values (closed form).
double areabelow(const triangle& t, std::array<double, 3> v, double limit) {
    const double whole = areaof({t[0], t[1], t[2]});
    std::sort(v.begin(), v.end());
    if (limit <= v[0]) return 0;
    if (limit >= v[2]) return whole;
    if (limit <= v[1])
        return whole * (limit - v[0]) * (limit - v[0]) / ((v[1] - v[0]) * (v[2] - v[0]));
    return whole * (1 - (v[2] - limit) * (v[2] - limit) / ((v[2] - v[0]) * (v[2] - v[1])));
}

struct paintroom : sessionroom {
    paintroom() {
        viewhor(1) = viewvert(1) = 0;  // along x: y to the right, z up
        viewscale(1) = 1;
        viewptx(1) = viewpty(1) = viewptz(1) = 0;
        viewdist(1) = 1e9f;
        viewaw(1) = 0;
        singleview = true;
        scalex = scaley = 1;
        for (int k = 0; k < indexcolors; ++k) indexcolor(k) = float(k + 1);
        indexmin = 0;
        indexmax = 10;
        undeformed = 1;
        prepareview(1);
    }
};

class paperplatform : public recorder {
  public:
    explicit paperplatform(surface& s) : paper(s) {}
    surface* viewsurface(int) override { return &paper; }

  private:
    surface& paper;
};
}  // namespace

static void setcorner(int i, double y, double z, double v) {
    ex[i] = 0;
    ey[i] = float(y);
    ez[i] = float(z);
    ev[i] = float(v);
}

static point2 placeof(int i) {
    return {ey[i], ez[i]};
}

// What both painters make of the element in the work arrays.
static paintkeeper painted(int corners) {
    paintkeeper paper;
    paperplatform platform(paper);
    paper.whole = paintfill(1, corners);
    paintlines(1, corners);
    return paper;
}

// The same of a right triangle with these values.
static paintkeeper painted(double a, double b, double c) {
    setcorner(1, 0, 0, a);
    setcorner(2, 2, 0, b);
    setcorner(3, 0, 2, c);
    return painted(3);
}

// Exact areas of the ten bands over the triangles of the element in the work arrays.
static std::array<double, 10> bandareas(int corners) {
    std::vector<std::array<int, 3>> parts = {{1, 2, 3}};
    if (corners == 4) parts = {{1, 2, 5}, {2, 3, 5}, {3, 4, 5}, {4, 1, 5}};
    std::array<double, 10> areas{};
    for (const auto& part : parts) {
        const triangle t = {placeof(part[0]), placeof(part[1]), placeof(part[2])};
        const std::array<double, 3> v = {ev[part[0]], ev[part[1]], ev[part[2]]};
        for (int k = 0; k < 10; ++k)
            areas[std::size_t(k)] +=
                areabelow(t, v, bandbound(k + 1)) - areabelow(t, v, bandbound(k));
    }
    return areas;
}

// Bands against the closed form; and the ends of every line of a triangle lie within it where the
// field has the level, a value being the mean of the corners' by the areas opposite of them.
TEST(Painters, BandsHaveTheirExactAreasAndLinesTheirLevels) {
    paintroom room;
    std::mt19937 random(20260);
    std::uniform_real_distribution<double> place(0, 1), value(-3, 13), small(4, 4.8);
    for (int trial = 0; trial < 400; ++trial) {
        SCOPED_TRACE(trial);
        const int corners = trial % 2 == 0 ? 3 : 4;
        const bool within = trial % 8 < 2;                // all in one band
        const double third = trial % 16 == 9 ? -1.5 : 3;  // a concave outline
        const double around[4][2] = {{-3, -3}, {3, -3}, {third, third}, {-3, 3}};
        for (int i = 1; i <= corners; ++i)
            setcorner(i, around[i - 1][0] + place(random), around[i - 1][1] + place(random),
                      within ? small(random) : value(random));
        paintkeeper paper = painted(corners);
        EXPECT_TRUE(paper.whole);
        const std::array<double, 10> wanted = bandareas(corners);
        for (int k = 0; k < 10; ++k)
            ASSERT_NEAR(paper.area(k + 1), wanted[std::size_t(k)], 2e-5) << "band " << k;
        for (const auto& [c, list] : paper.polygons)
            for (const auto& p : list) ASSERT_LE(p.size(), 6u);
        EXPECT_TRUE(!within || paper.polygons.size() == 1) << "one band, one piece";
        if (corners == 4) continue;
        const auto [low, high] = std::minmax({ev[1], ev[2], ev[3]});
        const double whole = areaof({placeof(1), placeof(2), placeof(3)});
        for (int k = 0; k < 10; ++k) {
            const auto& lines = paper.lines[k + 1];
            ASSERT_EQ(lines.size(), levelof(k) > low && levelof(k) < high ? 1u : 0u) << k;
            for (const auto& line : lines)
                for (const point2& end : line) {
                    double v = 0, sum = 0;
                    for (int i = 1; i <= 3; ++i) {
                        const double area = areaof({{end.x - vieww / 2, viewh / 2 - end.y},
                                                    placeof(i % 3 + 1),
                                                    placeof((i + 1) % 3 + 1)});
                        sum += area;
                        v += ev[i] * area / whole;
                    }
                    ASSERT_NEAR(sum, whole, 1e-4);
                    ASSERT_NEAR(v, levelof(k), 2e-4);
                }
        }
    }
}

TEST(Fill, LimitsAreKeptAsTheyAre) {
    paintroom room;
    const auto fill = [](double a, double b, double c) { return painted(a, b, c).bands(); };
    using list = std::vector<int>;
    EXPECT_EQ(fill(4.5, 4.5, 4.5), list{4}) << "whole in one band";
    EXPECT_EQ(fill(4, 4, 4), (list{3, 4})) << "a value on a limit belongs to both neighbours";
    EXPECT_EQ(fill(10, 10, 10), list{9});
    EXPECT_EQ(fill(-1, -1, -1), list{}) << "outside the scale";
    EXPECT_EQ(fill(4, 4, 4.5), list{4}) << "no line is left in the band that only touches";
    indexmin = 0;
    indexmax = 1e7;
    EXPECT_EQ(fill(2e6, 2e6, 3e6), list{}) << "above the range of the painter";
    EXPECT_EQ(fill(9e5, 2e6, 2e6), (list{0, 1})) << "one corner within opens it";
    indexmin = indexmax = 5;
    EXPECT_EQ(fill(5, 5, 5).size(), 1u) << "one band where the scale has no width";
    EXPECT_EQ(painted(5, 5, 7).lines.size(), 1u);
    EXPECT_TRUE(painted(2).bands().empty()) << "no face";
}

TEST(Lines, ThroughACornerAndAlongASide) {
    paintroom room;
    indexmax = 9;  // levels 0, 1, .. 9
    const auto count = [](double a, double b, double c) {
        std::size_t n = 0;
        for (const auto& [colour, lines] : painted(a, b, c).lines) n += lines.size();
        return n;
    };
    EXPECT_EQ(count(2.5, 3, 3.5), 1u) << "from the corner with the level to the other side";
    EXPECT_EQ(count(3, 3, 3.5), 1u) << "along the side that has the level";
    EXPECT_EQ(count(3, 3.2, 3.5), 0u) << "a corner alone is no line";
    EXPECT_EQ(count(3, 3, 3), 0u);
    EXPECT_EQ(count(-1, 10.5, 4.5), 10u) << "ten levels, both bounds among them";
}
