// SPDX-License-Identifier: GPL-3.0-or-later
// The analysis report: golden texts for every kind of analysis, its columns against sums made here,
// and what it says where results are missing or unfit.
#include "post/Report.h"

#include <cmath>
#include <filesystem>
#include <sstream>

#include "core/journal.h"
#include "core/numtext.h"
#include "files/filop.h"
#include "post/contour.h"
#include "post/postproces.h"
#include "post/reportlines.h"
#include "post/stressfile.h"
#include "tests/support/golden.h"
#include "tests/support/recorder.h"

namespace fs = std::filesystem;

// Four nodes with made-up results; a quadrilateral, a triangle and a bar of the types that go with
// the analysis.
struct reportroom : sessionroom {
    explicit reportroom(int code) : anadof(code) {
        fs::current_path(folder);
        modelname = "frame";
        nodes(0, 0, 0) = 0;
        addnode(0, 0, 0);
        addnode(2.5f, 0, 0);
        addnode(2.5f, 1.25f, 0);
        addnode(0, 1.25f, anadof == 3 ? 0.1f : 0);
        const bool turning = anadof >= 2;
        addelement(turning ? 9 : 3, {1, 2, 3, 4}, 1);
        addelement(turning ? 6 : 1, {1, 2}, 2);
        addelement(turning ? 8 : 2, {1, 2, 3}, 3);
        rotpo(3) = 0.5;
        groups(0, 0) = 3;
        for (int g = 1; g <= 3; ++g)
            for (int k = 1; k <= 12; ++k) groups(g, k) = g * std::pow(10.0, k - 6);
        groupname(1) = "Deck";
        groupname(2) = "HEA 300";
        groupname(3) = "Bracket";
        ncon = 2;
        connode(1) = connode(2) = 1;
        condof(1) = 1;
        condof(2) = 6;
        conval(2) = -1.5f;
        fillcases();
        writeresults();
    }

    void fillcases() {
        loadnode(0, 0) = 2;
        lcname(1) = "Dead";
        lcname(2) = "Roll";
        resultflag = 0;
        loadnode(1, 0) = 1;
        loadnode(1, 1) = 3;
        loaddof(1, 1) = 2;
        loadval(1, 1) = -1200;
        elemload(1, 0, 0) = 1;
        elemload(1, 1, 0) = 1;
        elemload(1, 1, 1) = 3;
        elemload(1, 1, 2) = 0.75f;
        lctype(2) = 6;
        const double parameters[] = {0.25, 1, 2, -3, 1};
        for (int k = 0; k < 5; ++k) lcpar(2, k) = parameters[k];
        lcomb(0, 0) = 2;
        lcombname(1) = "Dead alone";
        lcombname(2) = "Rolling";
        lcomb(1, 1) = 1;
        lcomb(2, 1) = 2;
        lcomb(2, 2) = -1.5f;
    }

    static std::string joined(const std::vector<double>& values) {
        std::string text;
        for (const double v : values) text += (text.empty() ? "" : ",") + numbertext(v);
        return text;
    }

    // A stress record of element e with the values of load case l: only three of them are not 0.
    static std::string record(int l, double sx, double sxy, double sby) {
        return joined({sx * l, 0, 0, sxy * l, 0, 0, 0, sby * l, 0, 0, 0, 0, 0});
    }

    void writeresults() const {
        static const std::vector<int> axes[] = {{0, 1, 2}, {0, 1}, {0, 1, 5}, {0, 1, 2, 3, 4, 5}};
        std::string rvp = "4," + std::to_string(anadof) + "\r\n", krt = rvp, les, plates;
        for (int l = 1; l <= 2; ++l) {
            for (int n = 1; n <= 5; ++n) {
                std::vector<double> u, f;
                for (const int k : axes[anadof]) {
                    u.push_back(l == 1 ? 0.001 * (10 * n + k) : -0.5 * n * k);
                    f.push_back(l == 1 ? 100.0 * n - k : 0.125 * k);
                }
                if (n <= 4) rvp += joined(u) + "\r\n";
                krt += std::to_string(n % 5) + "," + joined(f) + "\r\n";
            }
            rvp += "\"LC\"\r\n";
            krt += "\"LC\"\r\n";
            les += "2,1,0,0," + record(l, 100, 0, 0) + "," + record(l, 100, 0, -50) + "\r\nEND\r\n";
            for (int corner = 1; corner <= 4; ++corner)
                plates += "1,0,0,0," + record(l, 0, 10 * corner, 0) + "\r\n";
            for (int corner = 1; corner <= 3; ++corner)
                plates += "3,0,0,0," + record(l, -40, 0, anadof >= 2 ? 20 : 0) + "\r\n";
            plates += "END\r\n";
        }
        writefile("frame.rvp", rvp);
        writefile("frame.KRT", krt);
        writefile("frame.LES", les);
        for (const char* extension : {"NSR", "NSL", "NSA", "NLA"})
            writefile(std::string("frame.") + extension, plates);
        // Two masses of 3 and 1 at a distance of 4 in x, turning about themselves with 0.5: of the
        // whole 4 at 1, 0.5, and about the axes across root(0.5^2 + (3 x 1 + 1 x 9) / 4) = 1.80.
        writefile("frame.EMS",
                  "1,3,0,0,0,0.5,0.5,0.5\r\n2,0,9,9,9,9,9,9\r\n3,1,4,0,0,0.5,0.5,0.5\r\n");
        writefile("frame.DAT", "4,17,3\r\n");
    }

    std::string report() {
        EXPECT_TRUE(savereport("frame"));
        return contentof("frame.rpt");
    }
    int anadof;
};

static std::vector<std::string> linesof(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

static std::vector<std::string> wordsof(const std::string& line) {
    std::istringstream in(line);
    std::vector<std::string> words;
    for (std::string word; in >> word;) words.push_back(word);
    return words;
}

// Index of the first line from begin on that holds this text.
static std::size_t find(const std::vector<std::string>& lines, const std::string& part,
                        std::size_t begin = 0) {
    for (std::size_t i = begin; i < lines.size(); ++i)
        if (lines[i].find(part) != std::string::npos) return i;
    ADD_FAILURE() << "no line \"" << part << "\"";
    return lines.size() - 1;
}

TEST(Report, AgreesWithItsGoldenTextForEveryKindOfAnalysis) {
    for (int anadof = 0; anadof <= 3; ++anadof) {
        reportroom room(anadof);
        const std::string golden = "post/golden/anadof" + std::to_string(anadof) + ".rpt";
        EXPECT_EQ(comparegolden(room.report(), golden), "") << golden;
    }
}

TEST(Report, RawNumbersKeepTheDigitsThatFit) {
    const std::pair<double, const char*> cases[] = {
        {-0.0, " 0"},
        {1234567.89012, " 1234567.8901"},
        {1234567890123.0, " 1.234568E+12"},
        {0.1 + 0.2, " 0.3"},
        {-1.0 / 3000, "-0.0003333333"},
        {-2e5 / 3, "-66666.666667"},
        {-1e200 / 3, "-3.33333E+199"},
        {999999999999.9, " 1E+12"},
    };
    sessionroom room;
    for (const auto& [number, wanted] : cases) {
        reportlines out(room.file("numbers"));
        out.raw(number).zone().text("x").end();
        out.commit();
        std::string text = contentof(room.file("numbers"));
        EXPECT_EQ(text.find('x'), 14u) << text;
        text.resize(text.find_last_not_of(" x\r\n") + 1);
        EXPECT_EQ(text, wanted);
    }
}

TEST(Report, AnsweredByTheSectionsThatAreChecked) {
    const std::pair<int, const char*> cases[] = {
        {secgroups, "ELEMENT GROUP DEFENITION"},
        {secconstraints, "NODAL CONSTRAINS"},
        {secdisplacements, "DISPLACEMENTS REPORT"},
        {secforces, "NODAL FORCES REPORT"},
        {secstresses, "LINE ELEMENT LOCAL STRESS REPORT"},
        {secaverages, "NODAL STRESS AVERAGE GLOBAL STRESS REPORT"},
    };
    reportroom room(3);
    const auto all = reportwanted;
    for (const auto& [index, line] : cases) {
        reportwanted.fill(false);
        reportwanted[std::size_t(index)] = true;
        const std::string text = room.report();
        for (const auto& other : cases)
            EXPECT_EQ(text.find(other.second) != std::string::npos, other.first == index)
                << line << " / " << other.second;
    }
    reportwanted = all;
}

TEST(Report, SaysWhatIsMissingWithoutABox) {
    const struct {
        const char *extension, *section, *line;
    } cases[] = {
        {"EMS", "MASS REPORT", "NO ANALYSIS PERFORMED"},
        {"rvp", "NO ANALYSIS PERFORMED", "END"},
        {"KRT", "NODAL FORCES REPORT", "NO ANALYSIS PERFORMED"},
        {"LES", "LINE ELEMENT LOCAL", "Stress component not calculated"},
        {"NSL", "FINITE ELEMENT LOCAL", "Stress component not calculated"},
        {"NSR", "FINITE ELEMENT GLOBAL", "Stress component not calculated"},
        {"NLA", "NODAL STRESS AVERAGE LOCAL", "Stress component not calculated"},
        {"NSA", "NODAL STRESS AVERAGE GLOBAL", "Stress component not calculated"},
        {"DAT", "GENERAL INFORMATION", "         BANDWIDTH= not calculated"},
    };
    for (const auto& c : cases) {
        reportroom room(3);
        fs::remove(std::string("frame.") + c.extension);
        const auto lines = linesof(room.report());
        const std::size_t begin = find(lines, c.section);
        EXPECT_LE(find(lines, c.line, begin), begin + 8) << c.extension;
        EXPECT_EQ(lines.back(), "END");
        EXPECT_TRUE(room.platform.messages.empty());
    }
}

TEST(Report, LongNamesKeepTheColumnsAndNotesStandByTheResults) {
    reportroom room(3);
    groupname(1) = "Fourteen chars";
    groupname(2) = "Längsträger unten links";
    {
        const step s("change");
        rotpo(1) = 1;
    }
    loadnode(0, 0) = 3;  // the files hold two
    const std::string text = room.report();
    const auto lines = linesof(text);
    const std::size_t table = find(lines, "[F/L^2]"), masses = find(lines, "MASS REPORT");
    EXPECT_EQ(lines[table + 1].substr(14, 14), "Fourteen char ");
    EXPECT_NE(lines[table + 1][28], ' ');
    EXPECT_NE(lines[table + 2].find(" Längsträger u "), std::string::npos) << lines[table + 2];
    EXPECT_EQ(lines[masses + 3].substr(0, 14), "Fourteen char ");
    find(lines, "Note: Results of the model before it was changed");
    find(lines, "Note: frame.rvp holds 2 load cases, the model has 3: the sum is not whole");
    find(lines, "Note: frame.KRT holds 2 load cases");
    find(lines, "Note: frame.LES holds 2 load cases");
    EXPECT_TRUE(room.platform.status.find("Report written") == 0) << room.platform.status;
    fs::remove("frame.KRT");
    room.report();
    EXPECT_TRUE(room.platform.status.find("Report written") == 0) << room.platform.status;
}

TEST(Report, HolesOfTheConstraintListAreNoRows) {
    reportroom room(3);
    ncon = 3;
    connode(1) = 1, connode(2) = 0, connode(3) = 4;
    for (int i = 1; i <= 3; ++i) condof(i) = i, conval(i) = 0;
    const auto lines = linesof(room.report());
    const std::size_t amount = find(lines, "AMOUNT=  2");
    EXPECT_EQ(wordsof(lines[amount + 5]), (std::vector<std::string>{"4", "3", "0"}));
    connode(1) = connode(3) = 0;
    find(linesof(room.report()), "NO CONSTRAINS DEFINED");
}

TEST(Report, ResultsOfAnotherModelAreNotTakenForItsOwn) {
    reportroom room(3);
    addnode(9, 9, 9);
    const auto lines = linesof(room.report());
    EXPECT_EQ(find(lines, "4 nodes, the model in hand has 5"), lines.size() - 3);
    EXPECT_EQ(lines[lines.size() - 2], "NO ANALYSIS PERFORMED");
}

TEST(Report, LeavesTheDisplayAsItWas) {
    reportroom room(3);
    curlcomb = 2;
    ASSERT_TRUE(readdisp());
    const double largest = maxdisp;
    const float moved = nodes(1, 3, 1);
    nodes(0, 3, 1) = 1.75f;  // an edit that is in no file
    menupostItem(contourplot).checked = true;
    menupostItem(elementstress).checked = false;
    contourdata = displacementdata;
    ASSERT_TRUE(prepareplot());
    const double most = indexmax;
    room.report();
    EXPECT_EQ(curlcomb, 2);
    EXPECT_EQ(maxdisp, largest);
    EXPECT_EQ(nodes(1, 3, 1), moved);
    EXPECT_EQ(nodes(0, 3, 1), 1.75f);
    EXPECT_TRUE(plotready()) << "the plot on show keeps its scale";
    EXPECT_EQ(indexmax, most);
    menupostItem(contourplot).checked = false;
}

TEST(Report, AFileThatCanNotBeWrittenIsToldAndTheFormerOneStays) {
    reportroom room(3);
    EXPECT_FALSE(savereport("nowhere/frame"));
    EXPECT_TRUE(room.platform.toldpart("nowhere/frame.rpt"));
    writefile("frame.rpt", "former");
    room.platform.cancelled = true;
    EXPECT_FALSE(savereport("frame"));
    EXPECT_EQ(contentof("frame.rpt"), "former");
}

TEST(Report, WriteCutsTheExtensionAndAsksBeforeAnotherReportIsReplaced) {
    reportroom room(3);
    room.platform.filequeue.push_back({true, "other.tek", 3});
    EXPECT_TRUE(writereport());
    EXPECT_TRUE(fs::exists("other.rpt"));
    EXPECT_FALSE(fs::exists("other.tek"));
    room.platform.filequeue.push_back({true, "other.rpt", 2});
    room.platform.answerqueue.push_back(answers::no);
    EXPECT_FALSE(writereport());
    for (const char* own : {"frame", "frame.rpt"}) {
        room.platform.filequeue.push_back({true, own, 2});
        EXPECT_TRUE(writereport()) << "the model's own asks nothing";
    }
}
