// SPDX-License-Identifier: GPL-3.0-or-later
// From the window through the solver to the report and the printed page: the report's columns
// against statics and beam theory, and PDF files that are whole or not there.
#include <cmath>
#include <fstream>
#include <sstream>

#include "tests/ui/playroom.h"

namespace fs = std::filesystem;

// The numbers of a line; words that are none count as 0.
static std::vector<double> numbersin(const std::string& line) {
    std::istringstream in(line);
    std::vector<double> list;
    for (std::string word; in >> word;) list.push_back(std::atof(word.c_str()));
    return list;
}

// Lines of a report behind a heading.
static std::vector<std::string> linesbehind(const std::string& text, const std::string& heading) {
    std::vector<std::string> lines;
    const std::size_t at = text.find(heading);
    EXPECT_NE(at, text.npos) << heading;
    if (at == text.npos) return lines;
    std::istringstream in(text.substr(at));
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

static bool iswholepdf(const std::string& content) {
    return content.rfind("%PDF", 0) == 0 && content.find("%%EOF") != content.npos;
}

static int pagesof(const std::string& pdf) {
    const std::string mark = "/Type /Page\n";
    int n = 0;
    for (std::size_t at = pdf.find(mark); at != pdf.npos; at = pdf.find(mark, at + 1)) ++n;
    return n;
}

TEST(Reports, AJobFromTheEmptyWindowToThePrintedPageAgreesWithBeamTheory) {
    playroom room;
    room.play(contentof(sourcedir() + "/tests/ui/road.kds"));
    const std::string report = room.content("job.rpt");
    const auto row = [&](const std::vector<std::string>& lines, std::size_t line, int number) {
        const auto list = numbersin(lines.at(line));
        EXPECT_EQ(list.at(0), number);
        return list;
    };
    // Each combination: six lines of heading, the 50 nodes; the second is Design.
    const int n = 50, strip = 13, tip = 50, held = 40;
    const double e = 210000, sigma = 1.5 * 60, p = 1.35 * 4000, length = 3000;
    const double inertia = 120 * 50.0 * 50 * 50 / 12, resistance = 120 * 50.0 * 50 / 6;

    const auto moved = linesbehind(report, "NODAL DIPLACEMENTS PER LOAD COMBINATION");
    const std::size_t heading = 6, second = heading + n + 1 + heading - 2;
    EXPECT_NEAR(row(moved, second + strip - 1, strip)[1], sigma * 600 / e, 1e-5);
    const auto end = row(moved, second + tip - 1, tip);
    EXPECT_NEAR(end[2], -p * length * length * length / (3 * e * inertia), 1e-3);
    EXPECT_NEAR(end[3], -p * length * length / (2 * e * inertia) * 180 / std::acos(-1.0), 1e-4);

    const auto forces = linesbehind(report, "NODAL FORCES PER LOAD COMBINATION");
    double pull = 0;
    std::vector<double> clamp;
    bool design = false;
    for (const std::string& line : forces) {
        if (line.find("END OF") != line.npos || line.find("LINE ELEMENT") != line.npos) break;
        if (line.find("Loadcombination Name = Design") != line.npos) design = true;
        const auto list = numbersin(line);
        if (!design || list.size() != 4) continue;
        if (list[0] == 1 || list[0] == 14 || list[0] == 27) pull += list[1];
        if (list[0] == held) clamp = list;
    }
    EXPECT_NEAR(pull, -sigma * 100 * 10, 0.1);
    ASSERT_EQ(clamp.size(), 4u);
    EXPECT_NEAR(clamp[2], p, 0.01);
    EXPECT_NEAR(clamp[3], p * length, 10);

    const auto line = linesbehind(report, "Stress report for loadcombination: ");
    ASSERT_NE(line.at(2).find("Lcomb1"), std::string::npos);
    const auto root = row(line, 4, 25);
    EXPECT_EQ(root.at(1), held);
    EXPECT_NEAR(root.back(), 4000 * length / resistance, 0.5) << "three digits";

    // The even field of the strip in each of its corners, by the averages in model axes.
    const auto averages = linesbehind(report, "NODAL STRESS AVERAGE GLOBAL STRESS REPORT");
    int corners = 0;
    design = false;
    for (const std::string& text : averages) {
        if (text.find("Name   = Design") != text.npos) design = true;
        const auto list = numbersin(text);
        if (!design || list.size() != 9 || list[0] < 1) continue;
        ++corners;
        EXPECT_NEAR(list[2], sigma, 1e-9) << text;
        EXPECT_NEAR(list[8], sigma, 1e-9) << text;
        EXPECT_NEAR(list[3], 0, 1e-2) << text;
    }
    EXPECT_EQ(corners, 24 * 4);

    EXPECT_TRUE(iswholepdf(room.content("job.pdf")));
    EXPECT_EQ(pagesof(room.content("job.pdf")), 1);
    EXPECT_NE(room.content("job.pdf"), room.content("strip.pdf"));
}

TEST(Reports, PrintedPagesAreWholeOrNotThere) {
    playroom room;
    std::ofstream(room.folder / "kept.pdf") << "former";
    fs::create_directory(room.folder / "folder.pdf");
    room.play(
        "file examples/platehole.tek\nmenu \"File/Open...\"\npress main viewtool(1)\n"
        "file plate\nmenu \"File/Print\"\n"
        "press main fourviews\nfile four.pdf\nmenu \"File/Print\"\n"
        "answer no\nfile kept.pdf\npress main printpdfbutton\n"
        "expect message \"Overwrite existing file?\"\n"
        "file nowhere/plate.pdf\nmenu \"File/Print\"\n"
        "expect message \"There was a problem printing to your printer.\"\n"
        "expect toprinter 0\n"
        "file folder.pdf\nmenu \"File/Print\"\n"
        "expect message \"There was a problem printing to your printer.\"\n"
        "answer no\nmenu \"File/New\"\nfile empty.pdf\nmenu \"File/Print\"\n");
    for (const char* name : {"plate.pdf", "four.pdf", "empty.pdf"})
        EXPECT_TRUE(iswholepdf(room.content(name))) << name;
    EXPECT_EQ(room.content("kept.pdf"), "former");
    EXPECT_TRUE(fs::is_directory(room.folder / "folder.pdf"));
    for (const auto& entry : fs::directory_iterator(room.folder))
        EXPECT_EQ(entry.path().string().find(".new~"), std::string::npos) << entry.path();
}

TEST(Reports, PageSetupChangesThePaper) {
    playroom room;
    room.play(
        "file first.pdf\nmenu \"File/Print\"\n"
        "press main printsetupbutton\nexpect printsetup.Option1(1) -1\n"
        "choose printsetup Combo1 A3\ncheck printsetup Option1(0) on\n"
        "press printsetup Cancel\nfile same.pdf\nmenu \"File/Print\"\n"
        "press main printsetupbutton\nexpect printsetup.Combo1 A4\n"
        "choose printsetup Combo1 A3\ncheck printsetup Option1(0) on\n"
        "press printsetup OK\nfile second.pdf\nmenu \"File/Print\"\n");
    // Width and height in points, 1/72 inch: A4 lying, A3 standing.
    for (const char* name : {"first.pdf", "same.pdf"})
        EXPECT_NE(room.content(name).find("/MediaBox [0 0 842.000000 595"), std::string::npos)
            << name;
    EXPECT_NE(room.content("second.pdf").find("/MediaBox [0 0 842.000000 1191"), std::string::npos)
        << room.content("second.pdf").substr(0, 600);
}

TEST(Reports, TheDemonstrationGoesFromAnEmptyWindowToAPrintedPage) {
    // Its own lines expect the mesh, the displacement of beam theory and the portal frame.
    playroom room;
    const std::string demo =
        "menu \"Information/Run Demo\"\nchoose Demonstrations List1 \"The whole road of a job\"\n"
        "press Demonstrations Start\n";
    room.play(demo + "expect nnodes 15\nexpect curlcomb 3\nanswer no\n" + demo +
              "expect message \"Go on with the model of the demonstration, or take back "
              "the model that you had?\"\nexpect nnodes 15\n");
}

// A script chooses the parts, and has both files; what it chose is there again with the model.
TEST(Reports, AnIllustratedReportByScript) {
    const playroom room;
    room.play(R"(file examples/portal.tek
menu "File/Open..."
menu "Analyse/Options..."
check Aoptions Option1(0) on
press Aoptions Ready
menu "Analyse/Analyse"
menu "Post-Process/Illustrated Report..."
set Book booktitle "Portal <A>"
contents nodes on
contents modes off
file short.pdf
press Book bookpdf
contents alldisplacements on
contents contours off
file long
press Book bookhtml
file long.pdf
press Book bookpdf
press Book bookready
expect menupostItem(1) 0
file kept
menu "File/Save As..."
file kept.tek
menu "File/Open..."
menu "Post-Process/Illustrated Report..."
expect Book.booktitle "Portal <A>"
file kept.html
press Book bookhtml
press Book bookready
)");
    const std::string html = room.content("long.html"), pdf = room.content("long.pdf");
    EXPECT_NE(html.find("<h1>Portal &lt;A&gt;</h1>"), html.npos);
    EXPECT_NE(html.find("id=\"nodes\""), html.npos);
    EXPECT_EQ(html.find("id=\"modes\""), html.npos);
    EXPECT_NE(html.find("data:image/png;base64,iVBORw0KGgo"), html.npos);
    EXPECT_EQ(html.find("<script"), html.npos);
    EXPECT_EQ(html.find("http"), html.npos) << "it needs nothing beside it";
    EXPECT_NE(room.content("kept.html").find("id=\"alldisplacements\""), html.npos);
    ASSERT_TRUE(iswholepdf(pdf));
    EXPECT_GT(pagesof(pdf), 8);
    EXPECT_GT(pagesof(room.content("short.pdf")), 8);
}
