// SPDX-License-Identifier: GPL-3.0-or-later
// Result files: sums over load cases, combined stress, and files that are not as they should be.
#include <cmath>
#include <random>

#include "files/saving.h"
#include "post/combinedstress.h"
#include "post/outcome.h"
#include "post/postproces.h"
#include "post/stressfile.h"
#include "tests/support/recorder.h"

// Three nodes, a triangle and a bar, two load cases, and a combination 2 of 1.5 and -2.
struct resultroom : sessionroom {
    resultroom() {
        modelname = file("job");
        addnode(0, 0, 0);
        addnode(1, 0, 0);
        addnode(0, 1, 0);
        addelement(2, {1, 2, 3});
        addelement(1, {1, 2});
        loadnode(0, 0) = 2;
        lcomb(0, 0) = 2;
        lcomb(2, 1) = 1.5f;
        lcomb(2, 2) = -2;
        lcombname(2) = "Sum";
        curlcomb = 2;
        lineelstress = stressaverage = stressglobal = 0;
        stressloaded = false;
    }
    void put(const char* extension, const std::string& text) const {
        writefile(file(std::string("job") + extension), text);
    }
};

static const char* const twocases =
    "3,3\r\n1,2,3,0.1,0.2,0.3\r\n4,5,6,0.4,0.5,0.6\r\n0,0,0,0,0,0\r\n\"LC1\"\r\n"
    "10,20,30,1,2,3\r\n1,1,1,1,1,1\r\n0,0,2,0,0,0\r\n\"LC2\"\r\n";

TEST(Displacements, AreTakenInAnyRows) {
    for (const char* file :
         {"3 0 1 2 3 4 5 6 7 8 9 end", "3,3,1,2,3,9,9,9,4,5,6,9,9,9,7,8,9,9,9,9,\"a b\""}) {
        resultroom room;
        room.put(".rvp", file);
        ASSERT_TRUE(readdisp()) << file;
        EXPECT_FLOAT_EQ(nodes(1, 2, 2), 9) << file;
    }
}

TEST(Displacements, AreToldAfterARunByTheLargest) {
    resultroom room;
    room.put(".rvp", twocases);
    maxdisp = 7;
    EXPECT_EQ(outcometext(), "largest displacement 69.22 at node 1, load combination Sum");
    EXPECT_EQ(maxdisp, 7) << "what is on show stays";
    room.put(".rvp", "3,1\r\n0,0\r\n0,0\r\n0,0\r\n\"LC\"\r\n");
    EXPECT_EQ(outcometext(), "all displacements are 0");
    room.put(".rvp", "");
    EXPECT_EQ(outcometext(), "") << "a file that can not be read has its message elsewhere";
    doeigen = 1;
    room.put(".EIG", "1,2\r\n157.91367\r\n0,0\r\n0,0\r\n0,0\r\n900\r\n0,0\r\n0,0\r\n0,0\r\n");
    EXPECT_EQ(outcometext(), "2 modes, the lowest 2 Hz");
    room.put(".EIG", "1,1\r\n-9\r\n0,0\r\n0,0\r\n0,0\r\n");
    EXPECT_EQ(outcometext(), "1 mode, omega^2 = -9, no frequency");
}

TEST(Displacements, CountLoadCasesByTheFile) {
    const auto blocks = [](int count) {
        std::string text = "3,1\r\n";
        for (int l = 1; l <= count; ++l) text += "1,0\r\n1,0\r\n1,0\r\n\"LC\"\r\n";
        return text;
    };
    resultroom room;  // four load cases are declared, two defined
    lcomb(2, 4) = 10;
    room.put(".rvp", blocks(4));
    EXPECT_TRUE(readdisp());
    EXPECT_FLOAT_EQ(nodes(1, 2, 0), 9.5) << "load cases beyond nlc join the sum";
    room.put(".rvp", blocks(5));
    EXPECT_FALSE(readdisp());
    EXPECT_NE(room.platform.status.find("declared 4"), std::string::npos) << room.platform.status;
    room.put(".rvp", blocks(1));
    EXPECT_TRUE(readdisp()) << "fewer blocks: the rest of the sum is missing";
    const std::string note = fieldnote;
    EXPECT_NE(note.find("holds 1 load case"), std::string::npos) << note;
    fieldnote = "of the mode on show";
    EXPECT_TRUE(readdispreport());
    EXPECT_EQ(reportnote, note) << "a report with it tells the same";
    EXPECT_EQ(fieldnote, "of the mode on show");
    reloadmodel();
}

TEST(Displacements, OfTheReportOverwriteTheGeometryAndBringItBack) {
    resultroom room;
    room.put(".rvp", twocases);
    nodes(0, 2, 0) = 1.25f;  // a change that is in no file
    for (int time = 1; time <= 2; ++time) ASSERT_TRUE(readdispreport());
    EXPECT_FLOAT_EQ(nodes(0, 1, 2), 1.5f * 0.3f - 2 * 3) << "the turns";
    reloadmodel();
    EXPECT_EQ(nodes(0, 2, 0), 1.25f);
    savemodel();
    nodes(0, 2, 0) = 9;
    reloadmodel();
    EXPECT_EQ(nodes(0, 2, 0), 1.25f) << "with nothing put aside the file tells the geometry";
}

TEST(ModeShapes, AreTakenByNumber) {
    resultroom room;
    room.put(".EIG",
             "3,2\r\n400\r\n1,0,0,0,0,0\r\n0,0,0,0,0,0\r\n0,0,0,0,0,0\r\n"
             "900\r\n0,0.5,0,0,0,0\r\n0,0,1,0,0,0\r\n0,0,0,0,0,0\r\n");
    curlcomb = 2;
    ASSERT_TRUE(readmode());
    EXPECT_EQ(modecount, 2);
    EXPECT_EQ(modevalue, 900);
    EXPECT_EQ(nodes(1, 1, 1), 0.5f) << "no multiplier";
    EXPECT_EQ(maxdisp, 1);
    room.put(".EIG", "3,2\r\n400\r\n1,0,0,0,0,0\r\n");
    EXPECT_FALSE(readmode());
    EXPECT_TRUE(room.platform.told("Error occurred while trying to read modeshapes."));
}

TEST(NodalForces, WithoutTheirTotalRowAreRefusedInSilence) {
    resultroom room;
    room.put(".KRT", "3,2\r\n1,1,2,3\r\n2,4,5,6\r\n3,7,8,9\r\n\"LC1\"\r\n");
    EXPECT_FALSE(readkrt());
    EXPECT_TRUE(room.platform.messages.empty()) << "the report tells it in its own words";
}

static std::string record(int e, double first) {
    std::string text = std::to_string(e) + ",0.5,0.5,0";
    for (int k = 0; k < 13; ++k) text += "," + std::to_string(first + k);
    return text + "\r\n";
}

TEST(Stresses, ChooseTheirFile) {
    resultroom room;
    const char* const extensions[] = {".NSL", ".NSR", ".NLA", ".NSA", ".LES", ".LES"};
    for (int k = 0; k < 6; ++k) {
        lineelstress = k / 4;
        stressaverage = k / 2 % 2;
        stressglobal = k % 2;
        EXPECT_EQ(stressfile(), room.file("job") + extensions[k]);
        EXPECT_FALSE(readstress());
        EXPECT_TRUE(room.platform.told("Stress output file: " + stressfile() + " Not found"));
        EXPECT_FALSE(stressloaded);
    }
}

TEST(Results, AFileThatDoesNotFitIsToldAndWhatStoodStays) {
    const std::string good = record(1, 10) + record(1, 20) + record(1, 30) + "END\r\n";
    const struct {
        const char* extension;
        std::string file, reason;
    } cases[] = {
        {".rvp", "", "the file ends"},
        {".rvp", "3,3\r\n", "no load case"},
        {".rvp", "4,3\r\n1,2,3,4,5,6\r\n", "4 nodes"},
        {".rvp", "3,7\r\n", "analysis code"},
        {".rvp", "3,3\r\nabc,2,3\r\n", "\"abc\""},
        {".rvp", "3,3\r\nnan,2,3\r\n", "\"nan\""},
        {".rvp", "3,3\r\n1e300,2,3,0,0,0\r\n", "too large"},
        {".NSL", "", "no load case"},
        {".NSL", record(1, 10) + record(1, 20), "the file ends"},
        {".NSL", record(3, 1) + "END\r\n", "element 3"},
        {".NSL", record(1, 1) + record(1, 1) + good, "four"},
        {".NSL", "1,0,0,0,a,2,3", "\"a\""},
        {".NSL", "one,0,0,0,1,2,3", "\"one\""},
        {".NSL", "1,0,0,0,1e99,2,3", "too large"},
        {".NSL", "1,0,0,0,9e36,0,0,0,0,0,0,0,0,0,0,0,0,END", "of element 1 is too large"},
        {".NSL", good + good + good + good + good, "declared 4"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.extension + c.file);
        resultroom room;
        nodes(1, 1, 0) = 5;
        room.put(c.extension, c.file);
        const bool shape = c.extension == std::string(".rvp");
        EXPECT_FALSE(shape ? readdisp() : readstress());
        ASSERT_EQ(room.platform.messages.size(), 1u);
        const std::string& box = room.platform.messages[0].text;
        EXPECT_TRUE(!shape || box == "Error occurred while trying to read Displacements.") << box;
        const std::string& told = shape ? room.platform.status : box;
        EXPECT_NE(told.find(c.reason), told.npos) << told;
        EXPECT_EQ(nodes(1, 1, 0), 5);
        EXPECT_FALSE(stressloaded);
        EXPECT_EQ(elemstress.upper1, -1) << "no half of a sum is kept";
    }
}

// Every number of every file against the sum by hand, for each analysis code and chance
// multipliers, a zero among them.
TEST(Results, OfACombinationAreTheSumsByHand) {
    static const std::vector<int> axes[] = {{1, 2, 3}, {1, 2}, {1, 2, 6}, {1, 2, 3, 4, 5, 6}};
    const int cases = 4;
    std::mt19937 random(4711);
    const auto chance = [&] { return double(random() % 16001) / 8 - 1000; };
    for (int anadof = 0; anadof <= 3; ++anadof) {
        resultroom room;
        loadnode(0, 0) = cases;
        for (int l = 1; l <= cases; ++l) lcomb(2, l) = l == 3 ? 0 : float(chance() / 100);
        // Writes a file of rows that begin with these texts; the sums of their values.
        const auto write = [&](const char* extension, std::string text,
                               const std::vector<const char*>& rows, std::size_t columns,
                               const char* end) {
            std::vector<double> sums(rows.size() * columns);
            for (int l = 1; l <= cases; ++l) {
                for (std::size_t i = 0; i < sums.size(); ++i) {
                    const double v = chance();
                    text += (i % columns == 0 ? rows[i / columns] : ",") + std::to_string(v);
                    if ((i + 1) % columns == 0) text += "\r\n";
                    sums[i] += double(lcomb(2, l)) * v;
                }
                text += end;
            }
            room.put(extension, text);
            return sums;
        };
        const std::string header = "3," + std::to_string(anadof) + "\r\n";
        const std::size_t columns = axes[anadof].size();
        const auto moved = write(".rvp", header, {"", "", ""}, columns, "\"LC\"\r\n");
        const auto forced = write(".KRT", header, {"1,", "2,", "3,", "0,"}, columns, "\"LC\"\r\n");
        const auto faces = write(".NSL", "", {"1,0,0,0,", "1,0,0,0,", "2,0,0,0,"}, 13, "END\r\n");
        const auto bars = write(".LES", "", {"2,0,0,0,"}, 26, "END\r\n");
        for (int time = 1; time <= 2; ++time) ASSERT_TRUE(readdisp()) << "anew, not added";
        ASSERT_TRUE(readkrt());
        double most = 0;
        for (std::size_t n = 1; n <= 4; ++n) {
            double d[7] = {}, f[7] = {};
            for (std::size_t k = 0; k < columns; ++k) {
                const std::size_t at = (n - 1) * columns + k;
                f[axes[anadof][k]] = forced[at];
                if (n <= 3) d[axes[anadof][k]] = moved[at];
            }
            for (int k = 1; k <= 6; ++k) EXPECT_NEAR(dispres(0, long(n), k), f[k], 1e-9) << n << k;
            for (int k = 1; k <= 3 && n <= 3; ++k)
                EXPECT_NEAR(nodes(1, long(n), k - 1), d[k], 1e-2) << anadof << n << k;
            most = std::max(most, std::hypot(d[1], d[2], d[3]));
        }
        EXPECT_NEAR(maxdisp, most, 1e-6 * most);
        // Element, its end or corner, and the row that it has in the file.
        const auto expectstress = [](int e, int corner, const double* row) {
            float s[13] = {};
            for (int k = 1; k <= 12; ++k) {
                EXPECT_NEAR(elemstress(k, e, corner), row[k - 1], 1e-8) << e << corner;
                s[k] = float(row[k - 1]);
            }
            EXPECT_NEAR(elemstress(13, e, corner), combinedstressof(s), 1e-2) << "of the sum";
        };
        for (int time = 1; time <= 2; ++time) {
            stressloaded = false;
            ASSERT_TRUE(readstress());
            expectstress(1, 1, &faces[0]);
            expectstress(1, 2, &faces[13]);
            EXPECT_EQ(elemstress(1, 1, 3), 0) << "a corner without a record";
            expectstress(2, 1, &faces[26]);
        }
        lineelstress = 1;
        stressloaded = false;
        ASSERT_TRUE(readstress());
        expectstress(2, 1, &bars[0]);
        expectstress(2, 2, &bars[13]);
    }
}

// Cut at every byte and with every byte damaged: a message or a whole read, nothing else.
TEST(Results, SurviveAnyCutAndAnyDamage) {
    resultroom room;
    const std::string zeros = "0,0,0,0,0,0\r\n";
    const struct {
        const char* extension;
        std::string text;
        bool (*read)();
    } files[] = {{".rvp", twocases, readdisp},
                 {".EIG", "3,1\r\n4\r\n1,0,0,0,0,0\r\n" + zeros + zeros, readmode},
                 {".KRT", "3,1\r\n1,1,2\r\n2,4,5\r\n3,7,8\r\n0,12,15\r\n\"LC1\"\r\n", readkrt},
                 {".NSL", record(1, 1) + record(1, 2) + record(1, 3) + "END\r\n", readstress}};
    for (const auto& f : files) {
        const auto reads = [&](const std::string& text) {
            room.put(f.extension, text);
            stressloaded = false;
            return f.read();
        };
        for (std::size_t at = 0; at < f.text.size(); ++at) {
            reads(f.text.substr(0, at));
            for (const char damage : {'x', '"', ',', '9', '\0', '\x1A', '\xFF'}) {
                std::string bad = f.text;
                bad[at] = damage;
                reads(bad);
                EXPECT_TRUE(std::isfinite(maxdisp));
            }
        }
        EXPECT_TRUE(reads(f.text)) << f.extension;
    }
}

TEST(Combined, IsVonMisesAtTheWorstSigns) {
    const struct {
        const char* name;
        float s[13];
        double wanted;
    } cases[] = {
        {"plane", {0, 3, 4}, std::sqrt(9.0 + 16 - 12)},
        {"hydrostatic", {0, 7, 7, 7}, 0},
        {"pure shear", {0, 0, 0, 0, 2}, 2 * std::sqrt(3.0)},
        {"bending adds to compression", {0, -5, 0, 0, 0, 0, 0, 0, 3}, 8},
        {"torsion in two parts",
         {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, -2},
         std::sqrt(3.0 * (4 * 4 + 2 * 2 + 2 * 2))},
    };
    for (const auto& c : cases) EXPECT_NEAR(combinedstressof(c.s), c.wanted, 1e-6) << c.name;
}
