// SPDX-License-Identifier: GPL-3.0-or-later
// The NEW-PROB text, taken back by its columns.
#include "exchange/Marine.h"

#include <cmath>
#include <filesystem>
#include <fstream>

#include "core/catalogue.h"
#include "core/newmodel.h"
#include "core/numtext.h"
#include "core/runtime.h"
#include "files/saving.h"
#include "tests/exchange/samples.h"
#include "tests/files/filledmodel.h"

namespace {
// Lines by columns. A line that has other columns than were asked for is a fault.
class columns {
  public:
    explicit columns(const std::string& path) : in(path, std::ios::binary) {}
    void next() {
        ended();
        ASSERT_TRUE(std::getline(in, line));
        ASSERT_TRUE(line.ends_with('\r'));
        line.pop_back();
        at = 0;
    }
    std::string text(std::size_t width) {
        EXPECT_LE(at + width, line.size()) << line;
        const std::string field = line.substr(std::min(at, line.size()), width);
        at += width;
        return field;
    }
    double number(std::size_t width) {
        const std::string field = text(width);
        double value = 1e99;
        EXPECT_TRUE(readnumber(field, value)) << line << "|" << field;
        EXPECT_NE(field.back(), ' ') << "right-aligned: " << line;
        return value;
    }
    void ended() { EXPECT_EQ(at, line.size()) << line; }
    bool atend() { return in.peek() == EOF; }

  private:
    std::ifstream in;
    std::string line;
    std::size_t at = 0;
};
}  // namespace

static void expectdigits(double written, double value) {
    EXPECT_NEAR(written, value, 5.1e-6 * std::abs(value)) << "six digits";
}

static void takeback(columns& in) {
    for (const char* text : {"NEW-PROB      4    0   12          ", "MAXDIMEN 1000", "AMBIENT-",
                             "      0.00      9.81"}) {
        in.next();
        EXPECT_EQ(in.text(std::string(text).size()), text);
    }
    in.next();
    EXPECT_EQ(in.text(13), "COORD---    1");
    for (int axis = 0; axis < 3; ++axis) {
        in.next();
        for (int k = 0; k < 3; ++k) EXPECT_EQ(in.number(10), k == axis ? 1 : 0);
    }
    in.next();
    in.next();
    EXPECT_EQ(in.text(8), "NODE-INP");
    EXPECT_EQ(in.number(5), nnodes());
    for (int n = 1; n <= nnodes(); ++n) {
        in.next();
        EXPECT_EQ(in.number(5), n);
        for (int k = 0; k < 3; ++k) expectdigits(in.number(12), double(nodes(0, n, k)));
        int rows = 0;
        for (int i = 1; i <= ncon; ++i) rows += connode(i) == n;
        EXPECT_EQ(in.number(5), rows);
    }
    in.next();
    in.next();
    EXPECT_EQ(in.text(8), "ELEMENTS");
    EXPECT_EQ(in.number(5), nelems());
    EXPECT_EQ(in.text(1), " ");
    for (int e = 1; e <= nelems(); ++e) {
        in.next();
        EXPECT_EQ(in.number(5), e);
        EXPECT_EQ(in.number(5), elems(e, 0));
        for (int k = 1; k <= 4; ++k) EXPECT_EQ(in.number(5), elems(e, k));
        EXPECT_EQ(in.number(5), egroup(e));
    }
}

static void takerow(columns& in, int node, const char* keyword, double value) {
    in.next();
    EXPECT_EQ(in.number(5), node);
    EXPECT_EQ(in.text(6), (" " + std::string(keyword) + "     ").substr(0, 6));
    expectdigits(in.number(12), value);
}

TEST(Marine, EveryNumberComesBackFromItsColumns) {
    static const char* const displacements[] = {"", "UX", "UY", "UZ", "ROTX", "ROTY", "ROTZ"};
    static const char* const forces[] = {"", "FX", "FY", "FZ", "MX", "MY", "MZ"};
    exchangeroom room;
    fillmodel();
    nodes(0, 1, 0) = -1.234567e-7F;
    nodes(0, 2, 1) = -98765432;
    nodes(0, 3, 2) = 1e30F;
    ncon = std::max(ncon, 1);
    connode(ncon) = 4, condof(ncon) = 5, conval(ncon) = 90;
    writefile(room.file("a.inp"), "old");
    room.platform.filequeue.push_back({true, room.file("a.inp"), 3});
    room.platform.answerqueue.push_back(answers::no);
    EXPECT_EQ(menusave(), reply::cancelled);
    EXPECT_EQ(contentof(room.file("a.inp")), "old");
    room.platform.filequeue.push_back({true, room.file("a.inp"), 3});
    room.platform.answerqueue.push_back(answers::yes);
    EXPECT_EQ(menusave(), reply::done);
    EXPECT_TRUE(room.platform.told("Overwrite existing file?"));
    EXPECT_TRUE(std::filesystem::exists(room.file("a.gra")));
    const std::size_t known = recentfiles().size();
    addrecentfile();
    EXPECT_EQ(recentfiles().size(), known) << "there is no model of that name";
    EXPECT_FALSE(savemodel()) << "the dialog is left by Cancel";
    EXPECT_EQ(room.platform.fileboxes.back().path, room.file("a.tek"));
    EXPECT_FALSE(std::filesystem::exists(room.file("a.tek")));
    columns in(room.file("a.inp"));
    takeback(in);
    in.next();
    EXPECT_EQ(in.text(8), "DISPLACE");
    for (int i = 1; i <= ncon; ++i)
        takerow(in, connode(i), displacements[condof(i)],
                double(conval(i)) * (condof(i) > 3 ? pi / 180 : 1));
    for (int lc = 1; lc <= nlc(); ++lc) {
        if (lctype(lc) != caseapplied) continue;
        in.next();
        EXPECT_EQ(in.text(8), "FORCES--");
        EXPECT_EQ(in.number(5), lc);
        for (int i = 1; i <= loadnode(lc, 0); ++i)
            takerow(in, loadnode(lc, i), forces[loaddof(lc, i)], double(loadval(lc, i)));
    }
    in.ended();
    EXPECT_TRUE(in.atend());
}

TEST(Marine, FieldsAreExactOrRefused) {
    const struct {
        double number;
        const char* text;
    } reals[] = {
        {0, "       0.000"},          {-0.0, "       0.000"},        {1, "       1.000"},
        {-1, "      -1.000"},         {0.5, "       0.500"},         {999.9996, "    1000.000"},
        {1e-5, " 1.00000E-05"},       {1e10, " 1.00000E+10"},        {-1e-100, "-1.00000E-100"},
        {12345678.5, "12345678.500"}, {-12345678.5, "-1.23457E+07"}, {0.25, "       0.250"},
        {1.2345, " 1.23450E+00"},     {123456.7891, "  123456.789"}};
    for (const auto& c : reals) {
        const std::string expected = c.text;
        if (expected.size() == 12)
            EXPECT_EQ(writereal(c.number, 12), expected);
        else
            EXPECT_THROW(writereal(c.number, 12), runtimeerror) << "one column more than there is";
    }
    EXPECT_THROW(writereal(std::nan(""), 12), runtimeerror);
    EXPECT_THROW(writereal(INFINITY, 12), runtimeerror);
    EXPECT_EQ(writeint(-12, 5) + writeint(0, 5) + writeint(99999, 5), "  -12    099999");
    EXPECT_THROW(writeint(100000, 5), runtimeerror);
}

TEST(Marine, TooManyAreRefusedBeforeTheFileIsTouched) {
    exchangeroom room;
    modelsize(sizenodes) = 100001;
    ASSERT_TRUE(resetmodel());
    writefile(room.file("a.inp"), "old");
    nodes(0, 0, 0) = 100000;
    importreport report;
    std::string told;
    guarded([&] { exportmarine(room.file("a.inp"), report); },
            [&](const runtimeerror& e) { told = e.what; });
    EXPECT_EQ(told,
              "The model has 100000 nodes, the columns of the file hold 99999.\nNothing was "
              "written.");
    EXPECT_EQ(contentof(room.file("a.inp")), "old");
    EXPECT_FALSE(std::filesystem::exists(room.file("a.gra")));
    nodes(0, 0, 0) = 99999;
    exportmarine(room.file("a.inp"), report);
    EXPECT_NE(contentof(room.file("a.inp")).find("\r\nNODE-INP99999\r\n"), std::string::npos);
}
