// SPDX-License-Identifier: GPL-3.0-or-later
// Result files: sums over load cases, combined stress, and files that are not as they should be.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "core/model.h"
#include "core/session.h"
#include "core/start.h"
#include "files/filop.h"
#include "post/combinedstress.h"
#include "post/postproces.h"
#include "post/stressfile.h"
#include "tests/support/recorder.h"

static const char* const dispfault = "Error occurred while trying to read Displacements.";
static const char* const modefault = "Error occurred while trying to read modeshapes.";

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

TEST(Displacements, AreTheSumOfMultiplierTimesValue) {
    resultroom room;
    room.put(".rvp", twocases);
    ASSERT_TRUE(readdisp());
    const float wanted[3][3] = {
        {1.5f - 20, 3 - 40, 4.5f - 60}, {6 - 2, 7.5f - 2, 9 - 2}, {0, 0, -4}};
    for (int n = 1; n <= 3; ++n)
        for (int k = 0; k < 3; ++k) EXPECT_FLOAT_EQ(nodes(1, n, k), wanted[n - 1][k]) << n << k;
    EXPECT_NEAR(maxdisp, std::sqrt(18.5 * 18.5 + 37 * 37 + 55.5 * 55.5), 1e-5)
        << "the largest of the whole sum, not of a load case";
    ASSERT_TRUE(readdisp());
    EXPECT_FLOAT_EQ(nodes(1, 1, 0), -18.5f) << "read anew, not added";
    curlcomb = 3;  // a combination without multipliers
    ASSERT_TRUE(readdisp());
    EXPECT_EQ(maxdisp, 0);
}

TEST(Displacements, TakeTheValuesThatTheAnalysisCodeTells) {
    struct row {
        const char *name, *file;
        float x, y, z;
    };
    const row rows[] = {
        {"x y z", "3 0 1 2 3 4 5 6 7 8 9 end", 1.5f, 3, 4.5f},
        {"x y", "3,1,1,2,3,4,5,6,end", 1.5f, 3, 0},
        {"x y rz", "3,2,1,2,9,3,4,9,5,6,9,end", 1.5f, 3, 0},
        {"numbers on one line", "3,3,1,2,3,9,9,9,4,5,6,9,9,9,7,8,9,9,9,9,\"a b\"", 1.5f, 3, 4.5f},
    };
    for (const row& r : rows) {
        resultroom room;
        nodes(1, 1, 2) = 77;  // of an earlier analysis
        room.put(".rvp", r.file);
        ASSERT_TRUE(readdisp()) << r.name;
        EXPECT_FLOAT_EQ(nodes(1, 1, 0), r.x) << r.name;
        EXPECT_FLOAT_EQ(nodes(1, 1, 1), r.y) << r.name;
        EXPECT_FLOAT_EQ(nodes(1, 1, 2), r.z) << r.name;
    }
}

TEST(Displacements, AFileThatDoesNotFitIsToldAndWhatStoodStays) {
    struct row {
        const char *name, *file, *reason;
    };
    const row rows[] = {
        {"empty", "", "the file ends"},
        {"header alone", "3,3\r\n", "no load case"},
        {"another model", "4,3\r\n1,2,3,4,5,6\r\n", "4 nodes"},
        {"unknown analysis code", "3,7\r\n", "analysis code"},
        {"text in place of the first number", "3,3\r\nabc,2,3\r\n", "\"abc\""},
        {"no number", "3,3\r\nnan,2,3\r\n", "\"nan\""},
        {"infinite", "3,3\r\ninf,2,3\r\n", "\"inf\""},
        {"too large for a Single", "3,3\r\n1e300,2,3,0,0,0\r\n", "too large"},
    };
    for (const row& r : rows) {
        resultroom room;
        nodes(1, 1, 0) = 5;
        maxdisp = 5;
        room.put(".rvp", r.file);
        EXPECT_FALSE(readdisp()) << r.name;
        EXPECT_TRUE(room.door.told(dispfault)) << r.name;
        EXPECT_NE(room.door.status.find(r.reason), std::string::npos)
            << r.name << ": " << room.door.status;
        EXPECT_EQ(nodes(1, 1, 0), 5) << r.name;
        EXPECT_EQ(maxdisp, 5) << r.name;
    }
    resultroom room;
    EXPECT_FALSE(readdisp()) << "a missing file";
    EXPECT_TRUE(room.door.told(dispfault));
}

TEST(Displacements, CountLoadCasesByTheFile) {
    std::string text = "3,1\r\n";
    for (int l = 1; l <= 5; ++l) text += "1,0\r\n1,0\r\n1,0\r\n\"LC\"\r\n";
    {
        resultroom room;
        modelsize(7) = 5;  // as many blocks as declared
        resetmodel();
        addnode(0, 0, 0), addnode(1, 0, 0), addnode(0, 1, 0);
        for (int l = 1; l <= 5; ++l) lcomb(1, l) = float(l);
        room.put(".rvp", text);
        EXPECT_TRUE(readdisp());
        EXPECT_FLOAT_EQ(nodes(1, 2, 0), 15) << "load cases beyond nlc join the sum";
    }
    resultroom room;  // four load cases are declared
    room.put(".rvp", text);
    EXPECT_FALSE(readdisp());
    EXPECT_NE(room.door.status.find("declared 4"), std::string::npos) << room.door.status;
    room.put(".rvp", "3,1\r\n1,0\r\n1,0\r\n1,0\r\n\"LC\"\r\n");
    EXPECT_TRUE(readdisp()) << "fewer blocks: the rest of the sum is missing";
    EXPECT_FLOAT_EQ(nodes(1, 2, 0), 1.5f);
    const std::string note = fieldnote;
    EXPECT_NE(note.find("holds 1 load case"), std::string::npos) << note;
    fieldnote = "of the mode on show";
    EXPECT_TRUE(readdispreport());
    EXPECT_EQ(room.door.status, note) << "a report with it tells the same";
    EXPECT_EQ(fieldnote, "of the mode on show");
    reloadmodel();
}

TEST(Displacements, OfTheReportOverwriteTheGeometryAndBringItBack) {
    resultroom room;
    room.put(".rvp", twocases);
    nodes(0, 2, 0) = 1.25f;  // a change that is in no file
    ASSERT_TRUE(readdispreport());
    EXPECT_FLOAT_EQ(nodes(0, 1, 2), 1.5f * 0.3f - 2 * 3);
    curlcomb = 1;
    lcomb(1, 1) = 1;
    ASSERT_TRUE(readdispreport());
    EXPECT_FLOAT_EQ(nodes(0, 2, 0), 0.4f);
    reloadmodel();
    EXPECT_EQ(nodes(0, 2, 0), 1.25f);
    EXPECT_EQ(nodes(0, 3, 1), 1);
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
    EXPECT_NEAR(frequencyof(modevalue), 30 / (2 * 3.14159265358979), 1e-12);
    EXPECT_EQ(nodes(1, 1, 1), 0.5f) << "no multiplier";
    EXPECT_EQ(maxdisp, 1);
    curlcomb = 3;
    ASSERT_TRUE(readmode());
    EXPECT_EQ(nodes(1, 1, 1), 0.5f) << "beyond the file the former shape stays";
    EXPECT_EQ(maxdisp, 0);
    room.put(".EIG", "3,2\r\n400\r\n1,0,0,0,0,0\r\n");
    EXPECT_FALSE(readmode());
    EXPECT_TRUE(room.door.told(modefault));
}

TEST(NodalForces, StandByLoadCaseAndSummed) {
    resultroom room;
    room.put(".KRT",
             "3,2\r\n1,1,2,3\r\n2,4,5,6\r\n3,7,8,9\r\n0,12,15,18\r\n\"LC1\"\r\n"
             "1,1,1,1\r\n2,0,0,0\r\n3,0,0,0\r\n0,1,1,1\r\n\"LC2\"\r\n");
    ASSERT_TRUE(readkrt());
    EXPECT_EQ(dispres(1, 2, 1), 4);
    EXPECT_EQ(dispres(1, 2, 3), 0) << "the analysis has no z";
    EXPECT_EQ(dispres(1, 2, 6), 6);
    EXPECT_EQ(dispres(0, 4, 1), 1.5 * 12 - 2) << "the total row";
    EXPECT_EQ(dispres(0, 1, 6), 1.5 * 3 - 2);
    room.put(".KRT", "3,2\r\n1,1,2,3\r\n2,4,5,6\r\n3,7,8,9\r\n\"LC1\"\r\n");  // no total row
    EXPECT_FALSE(readkrt());
    EXPECT_TRUE(room.door.messages.empty()) << "the report tells it in its own words";
}

// --- stresses -----------------------------------------------------------------------------------

static std::string record(int e, double first, int values = 13) {
    std::string text = std::to_string(e) + ",0.5,0.5,0";
    for (int k = 0; k < values; ++k) text += "," + std::to_string(first + k);
    return text + "\r\n";
}

TEST(Stresses, AreSummedByCorner) {
    resultroom room;
    room.put(".NSL", record(1, 10) + record(1, 20) + record(1, 30) + record(2, 50) + "END\r\n" +
                         record(1, 1) + record(1, 1) + record(1, 1) + "END\r\n");
    for (int time = 1; time <= 2; ++time) {
        stressloaded = false;
        ASSERT_TRUE(readstress()) << room.door.messages.front().text;
        EXPECT_EQ(elemstress(0, 1, 0), 3);
        EXPECT_EQ(elemstress(1, 1, 1), 1.5 * 10 - 2) << "read twice is not doubled";
        EXPECT_EQ(elemstress(4, 1, 3), 1.5 * 33 - 2 * 4);
        EXPECT_EQ(elemstress(1, 1, 4), 0) << "a corner without a record";
        EXPECT_EQ(elemstress(1, 2, 1), 1.5 * 50) << "the next element begins at its first corner";
    }
    room.put(".NSL", "");
    EXPECT_TRUE(readstress()) << "what is loaded is not read again";
}

TEST(Stresses, OfLinesStandAtTheirEnds) {
    resultroom room;
    lineelstress = 1;
    room.put(".LES", record(2, 1, 26) + "END\r\n" + record(2, 1, 26) + "END\r\n");
    ASSERT_TRUE(readstress()) << room.door.messages.front().text;
    EXPECT_EQ(elemstress(1, 2, 1), -0.5);
    EXPECT_EQ(elemstress(12, 2, 2), 25 * -0.5);
}

TEST(Stresses, ChooseTheirFile) {
    resultroom room;
    struct row {
        int line, average, global;
        const char* extension;
    };
    for (const row& r : {row{1, 1, 1, ".LES"}, row{0, 1, 1, ".NSA"}, row{0, 1, 0, ".NLA"},
                         row{0, 0, 1, ".NSR"}, row{0, 0, 0, ".NSL"}}) {
        lineelstress = r.line;
        stressaverage = r.average;
        stressglobal = r.global;
        EXPECT_EQ(stressfile(), room.file("job") + r.extension);
        EXPECT_FALSE(readstress());
        EXPECT_TRUE(room.door.told("Stress output file: " + stressfile() + " Not found"));
        EXPECT_FALSE(stressloaded);
    }
}

TEST(Stresses, AFileThatDoesNotFitIsRefusedWhole) {
    const std::string good = record(1, 10) + record(1, 20) + record(1, 30) + "END\r\n";
    struct row {
        const char* name;
        std::string file, reason;
    };
    const row rows[] = {
        {"empty", "", "no load case"},
        {"without END", record(1, 10) + record(1, 20), "the file ends"},
        {"element of another model", record(3, 1) + "END\r\n", "element 3"},
        {"element 0", record(0, 1) + "END\r\n", "element 0"},
        {"five corners", good.substr(0, good.size() - 5) + record(1, 1) + record(1, 1) + "END",
         "four"},
        {"text in a value", "1,0,0,0,a,2,3", "\"a\""},
        {"text as element", "one,0,0,0,1,2,3", "\"one\""},
        {"no number", "1,0,0,0,NaN,2,3", "\"NaN\""},
        {"too large", "1,0,0,0,1e99,2,3", "too large"},
        {"a sum too large", "1,0,0,0,9e36,0,0,0,0,0,0,0,0,0,0,0,0,END",
         "of element 1 is too large"},
        {"five load cases of four", good + good + good + good + good, "declared 4"},
    };
    for (const row& r : rows) {
        resultroom room;
        room.put(".NSL", r.file);
        EXPECT_FALSE(readstress()) << r.name;
        EXPECT_TRUE(room.door.toldpart(r.reason))
            << r.name << ": " << room.door.messages.front().text;
        EXPECT_FALSE(stressloaded) << r.name;
        EXPECT_EQ(elemstress.upper1, -1) << r.name << ": no half of a sum is kept";
    }
}

// Every number of every file against the sum by hand, for each analysis code and chance
// multipliers, a zero among them.
TEST(Results, OfACombinationAreTheSumsByHand) {
    const unsigned seed = 4711;
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> value(-1000, 1000);
    static const int columns[] = {3, 2, 3, 6};
    for (int anadof = 0; anadof <= 3; ++anadof) {
        resultroom room;
        const int cases = 4, nodecount = 3;
        loadnode(0, 0) = cases;
        for (int l = 1; l <= cases; ++l) lcomb(2, l) = l == 3 ? 0 : float(value(random) / 100);
        const auto row = [&](std::string& text, int count, std::vector<double>& kept) {
            for (int k = 0; k < count; ++k) {
                kept.push_back(double(float(value(random))));
                char number[32];
                std::snprintf(number, sizeof number, k ? ",%.17g" : "%.17g", kept.back());
                text += number;
            }
            text += "\r\n";
        };
        const std::string header = "3," + std::to_string(anadof) + "\r\n";
        std::string rvp = header, krt = header, nsl, les;
        std::vector<std::vector<double>> moved(cases), forced(cases), faces(cases), bars(cases);
        for (std::size_t l = 0; l < cases; ++l) {
            for (int n = 1; n <= nodecount; ++n) row(rvp, columns[anadof], moved[l]);
            for (int n = 1; n <= nodecount + 1; ++n) {
                krt += std::to_string(n % (nodecount + 1)) + ",";
                row(krt, columns[anadof], forced[l]);
            }
            for (int c = 1; c <= 3; ++c) {
                nsl += "1,0,0,0,";
                row(nsl, 13, faces[l]);
            }
            les += "2,0,0,0,";
            row(les, 26, bars[l]);
            for (std::string* file : {&rvp, &krt}) *file += "\"LC\"\r\n";
            for (std::string* file : {&nsl, &les}) *file += "END\r\n";
        }
        room.put(".rvp", rvp);
        room.put(".KRT", krt);
        room.put(".NSL", nsl);
        room.put(".LES", les);
        const auto sum = [&](const std::vector<std::vector<double>>& values, std::size_t at) {
            double total = 0;
            for (std::size_t l = 0; l < cases; ++l)
                total += double(lcomb(2, long(l) + 1)) * values[l][at];
            return total;
        };
        ASSERT_TRUE(readdisp());
        ASSERT_TRUE(readkrt());
        // Columns of a row that are x y z rx ry rz.
        static const std::vector<int> place[] = {{1, 2, 3}, {1, 2}, {1, 2, 6}, {1, 2, 3, 4, 5, 6}};
        double most = 0;
        for (int n = 1; n <= nodecount + 1; ++n) {
            double d[7] = {}, f[7] = {};
            for (std::size_t k = 0; k < place[anadof].size(); ++k) {
                const std::size_t at = std::size_t(n - 1) * place[anadof].size() + k;
                f[place[anadof][k]] = sum(forced, at);
                if (n <= nodecount) d[place[anadof][k]] = sum(moved, at);
            }
            for (int k = 1; k <= 6; ++k)
                EXPECT_NEAR(dispres(0, n, k), f[k], 1e-9) << "seed " << seed << anadof << n << k;
            for (int k = 1; k <= 3 && n <= nodecount; ++k)
                EXPECT_NEAR(nodes(1, n, k - 1), d[k], 1e-2) << "seed " << seed << anadof << n << k;
            most = std::max(most, std::hypot(d[1], d[2], d[3]));
        }
        EXPECT_NEAR(maxdisp, most, 1e-6 * most);
        ASSERT_TRUE(readstress());
        for (int c = 1; c <= 3; ++c)
            for (int k = 1; k <= 12; ++k)
                EXPECT_NEAR(elemstress(k, 1, c), sum(faces, std::size_t(13 * (c - 1) + k - 1)),
                            1e-8);
        lineelstress = 1;
        stressloaded = false;
        ASSERT_TRUE(readstress());
        for (int k = 1; k <= 12; ++k)
            for (int end = 0; end < 2; ++end)
                EXPECT_NEAR(elemstress(k, 2, end + 1), sum(bars, std::size_t(13 * end + k - 1)),
                            1e-8);
    }
}

// Cut at every byte and with every byte damaged: a message or a whole read, nothing else.
TEST(Results, SurviveAnyCutAndAnyDamage) {
    resultroom room;
    const std::string stress = record(1, 1) + record(1, 2) + record(1, 3) + "END\r\n";
    const std::string modes = "3,1\r\n4\r\n1,0,0,0,0,0\r\n0,0,0,0,0,0\r\n0,0,0,0,0,0\r\n";
    const struct {
        const char* extension;
        std::string text;
        bool (*read)();
    } files[] = {{".rvp", twocases, readdisp},
                 {".EIG", modes, readmode},
                 {".KRT", "3,1\r\n1,1,2\r\n2,4,5\r\n3,7,8\r\n0,12,15\r\n\"LC1\"\r\n", readkrt},
                 {".NSL", stress, readstress}};
    for (const auto& f : files)
        for (std::size_t at = 0; at < f.text.size(); ++at) {
            room.put(f.extension, f.text.substr(0, at));
            stressloaded = false;
            f.read();
            for (const char damage : {'x', '"', ',', '9', '\0', '\x1A', '\xFF'}) {
                std::string bad = f.text;
                bad[at] = damage;
                room.put(f.extension, bad);
                stressloaded = false;
                f.read();
                EXPECT_TRUE(std::isfinite(maxdisp));
            }
        }
    for (const auto& f : files) {
        room.put(f.extension, f.text);
        stressloaded = false;
        EXPECT_TRUE(f.read()) << f.extension;
    }
}

// --- combined stress ----------------------------------------------------------------------------

TEST(Combined, IsVonMisesAtTheWorstSigns) {
    struct row {
        const char* name;
        float s[13];
        double wanted;
    };
    const row rows[] = {
        {"tension", {0, 5}, 5},
        {"plane", {0, 3, 4}, std::sqrt(9.0 + 16 - 12)},
        {"hydrostatic", {0, 7, 7, 7}, 0},
        {"pure shear", {0, 0, 0, 0, 2}, 2 * std::sqrt(3.0)},
        {"bending adds to compression", {0, -5, 0, 0, 0, 0, 0, 0, 3}, 8},
        {"bending about both axes", {0, 1, 0, 0, 0, 0, 0, 0, 2}, 3},
        {"torsion in two parts",
         {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, -2},
         std::sqrt(3.0 * (4 * 4 + 2 * 2 + 2 * 2))},
    };
    for (const row& r : rows) EXPECT_NEAR(combinedstressof(r.s), r.wanted, 1e-6) << r.name;
}

// Two members of a sum may cancel: the combined stress is of the sum, not the sum of the stresses.
TEST(Combined, IsTakenOfTheSum) {
    resultroom room;
    lcomb(2, 2) = -1.5f;
    room.put(".NSL", record(1, 10) + "END\r\n" + record(1, 10) + "END\r\n");
    ASSERT_TRUE(readstress());
    EXPECT_EQ(elemstress(13, 1, 1), 0);
    lcomb(2, 2) = 0;
    stressloaded = false;
    ASSERT_TRUE(readstress());
    EXPECT_GT(elemstress(13, 1, 1), 0);
    EXPECT_NE(elemstress(13, 1, 1), 22 * 1.5) << "the value of the file plays no part";
}
