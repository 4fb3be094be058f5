// SPDX-License-Identifier: GPL-3.0-or-later
// Number text, the token reader and the whole-or-nothing writer.
#include "core/textfile.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <random>

#include "core/numtext.h"
#include "core/runtime.h"
#include "tests/support/recorder.h"

namespace fs = std::filesystem;
using namespace std::literals;

TEST(Numtext, WritesThePlainFormsOfTheFiles) {
    const struct {
        double number;
        const char* text;
    } cases[] = {
        {0, "0"},
        {-0.0, "0"},
        {90, "90"},
        {-2.5, "-2.5"},
        {210000, "210000"},
        {7.85e-06, "7.85E-06"},
        {1e30, "1E+30"},
        {0.0001, "0.0001"},
        {999999999999999.0, "999999999999999"},
        {1e15, "1E+15"},
        {0.1, "0.1"},
        {1.5e-7, "1.5E-07"},
        {123456.789, "123456.789"},
    };
    for (const auto& c : cases) EXPECT_EQ(numbertext(c.number), c.text);
    EXPECT_EQ(numbertext(0.1f), "0.1");  // a Single's own digits, not those of its Double
    EXPECT_EQ(numbertext(16777216.0f), "16777216");
}

TEST(Numtext, EverySingleAndDoubleReadsBackEqual) {
    std::mt19937_64 random(7);
    for (int i = 0; i < 200000; ++i) {
        const auto bits = random();
        double d;
        std::memcpy(&d, &bits, 8);
        float f;
        const auto half = std::uint32_t(bits >> 16);
        std::memcpy(&f, &half, 4);
        char text[longestnumber];
        const char* end;
        if (std::isfinite(d)) {
            double back = 1;
            const char* last = writenumber(text, d);
            ASSERT_EQ(scannumber(text, last, back, end), numberfault::none);
            ASSERT_EQ(back, d) << std::string(text, std::size_t(last - text));
            ASSERT_EQ(end, last);
        }
        if (std::isfinite(f)) {
            float back = 1;
            const char* last = writenumber(text, f);
            ASSERT_EQ(scannumber(text, last, back, end), numberfault::none);
            ASSERT_EQ(back, f) << std::string(text, std::size_t(last - text));
        }
    }
}

// Around the lengths at which digits and powers of ten cease to be exact.
template <typename Real>
static void readslikefromchars(std::mt19937_64& random) {
    for (int i = 0; i < 100000; ++i) {
        std::string text(random() % 2, '-');
        const std::size_t digits = 1 + random() % 22, point = random() % (digits + 1);
        for (std::size_t k = 0; k < digits; ++k)
            text += k < random() % 8 ? '0' : char('0' + random() % 10);
        if (point > 0 && point < digits) text.insert(text.size() - point, ".");
        text += random() % 8 == 0 ? "E-5" : random() % 2 == 0 ? ",-1234567.12345678" : "";
        text += '7';  // stands behind what is read
        Real expected = 1, got = 2;
        const char *const last = text.data() + text.size() - 1, *end = nullptr;
        const auto behind = std::from_chars(text.data(), last, expected).ptr;
        ASSERT_EQ(scannumber(text.data(), last, got, end), numberfault::none) << text;
        ASSERT_EQ(end, behind) << text;
        ASSERT_EQ(std::memcmp(&got, &expected, sizeof got), 0) << text;
    }
}

TEST(Numtext, ReadsShortNumbersToTheLastBit) {
    std::mt19937_64 random(11);
    readslikefromchars<double>(random);
    readslikefromchars<float>(random);
}

TEST(Numtext, KnowsWhatIsNoNumber) {
    for (const char* text : {"", " ", "abc", "1,5", "--1", "+-1", "nan", "inf", "1e", "0x10", "1 2",
                             "*", ".", "1e400"})
        EXPECT_FALSE(isnumeric(text)) << text;
    const struct {
        const char* text;
        double number;
    } good[] = {{" 1.5 ", 1.5}, {"+2", 2},     {"-.5", -0.5}, {"1.5D+03", 1500},
                {"1E-400", 0},  {"-0.0e5", 0}, {"5.", 5}};
    for (const auto& c : good) {
        double number = 99;
        EXPECT_TRUE(readnumber(c.text, number)) << c.text;
        EXPECT_EQ(number, c.number) << c.text;
    }
}

TEST(Textin, TakesTokensHoweverTheyAreSpread) {
    textin in("1,2\r\n3\n\n 4 ,\"a, \"\"b\"\"\" , plain text \r\n5 6\r\n7", "f");
    EXPECT_EQ(in.count(), 1);
    EXPECT_EQ(in.whole(), 2);
    EXPECT_EQ(in.number(), 3);
    EXPECT_EQ(in.single(), 4);
    EXPECT_EQ(in.text(), "a, \"b\"");
    EXPECT_EQ(in.text(), "plain text");
    EXPECT_EQ(in.number(), 5);
    EXPECT_EQ(in.number(), 6);
    EXPECT_FALSE(in.atend());
    EXPECT_EQ(in.number(), 7);
    EXPECT_TRUE(in.atend());
}

static std::string faultof(const std::string& content, void (*read)(textin&), int& number) {
    textin in(content, "model.tek");
    try {
        for (;;) read(in);
    } catch (const runtimeerror& e) {
        number = e.number;
        return e.what;
    }
}

TEST(Textin, NamesFileLineAndWhatWasFound) {
    const auto number = [](textin& in) { in.number(); };
    const auto single = [](textin& in) { in.single(); };
    const auto count = [](textin& in) { in.count(); };
    int code = 0;
    EXPECT_EQ(faultof("1\r\n2,abc\r\n3", number, code),
              "model.tek, line 2: a number was expected, found \"abc\"");
    EXPECT_EQ(code, errtype);
    EXPECT_EQ(faultof("1\r\n1E39\r\n", single, code),
              "model.tek, line 2: the number 1E39 is too large");
    EXPECT_EQ(code, erroverflow);
    faultof("1,2\r\n", number, code);
    EXPECT_EQ(code, errpastend);
    EXPECT_EQ(faultof("-3", count, code),
              "model.tek, line 1: a count from 0 up was expected, found -3");
    faultof("99999999999", count, code);
    EXPECT_EQ(code, erroverflow);
    for (const auto utf16 : {"\xFF\xFE\x32\0,\0"sv, "2\0,\0"sv, "\0\x32\0,"sv})
        EXPECT_EQ(faultof(std::string(utf16), count, code),
                  "model.tek, line 1: a number was expected, found bytes that are no plain text; "
                  "save the file as UTF-8");
    EXPECT_EQ(code, errtype);
}

// Numbers, texts over several lines and the line of a fault, some pieces into the file.
TEST(Textin, AFileReadPieceByPieceIsTheSame) {
    const sessionroom room;
    const std::string path = room.file("long.txt"), quoted(400000, 'q');
    std::string content = "\xEF\xBB\xBF";
    for (int i = 0; i < 200000; ++i) content += std::to_string(i) + (i % 7 == 0 ? "\r\n" : ",");
    content += "\"" + quoted + "\n\"\"" + quoted + "\",3\nwrong\n";
    writefile(path, content);
    std::string faults[2];
    for (const auto held : {textin::inmemory::whole, textin::inmemory::piece}) {
        textin in(path, held);
        for (int i = 0; i < 200000; ++i) ASSERT_EQ(in.whole(), i);
        EXPECT_FALSE(in.atend());
        EXPECT_EQ(in.text(), quoted + "\n\"" + quoted);
        EXPECT_EQ(in.rows(), 3);
        try {
            in.number();
        } catch (const runtimeerror& e) {
            faults[held == textin::inmemory::piece] = e.what;
        }
        EXPECT_TRUE(in.atend());
        EXPECT_EQ(in.share(), double(content.size() - 1) / double(content.size()));
    }
    EXPECT_NE(faults[0].find("line 28575: "), std::string::npos) << faults[0];
    EXPECT_EQ(faults[1], faults[0]);
}

TEST(Textin, ReadsOldCharacterSetsAsUtf8) {
    EXPECT_EQ(toutf8("\xEF\xBB\xBF"
                     "plain"),
              "plain");
    EXPECT_EQ(toutf8("d\xC3\xA9j\xC3\xA0"), "d\xC3\xA9j\xC3\xA0");
    EXPECT_EQ(toutf8("caf\xE9 \x80"), "caf\xC3\xA9 \xE2\x82\xAC");  // Windows-1252
}

TEST(Textout, TheOldFileStandsUntilTheNewOneIsWhole) {
    sessionroom room;
    const std::string path = room.file("a.vpl");
    writefile(path, "old");
    {
        textout out(path);
        out.line(1, 2.5f, 0.1);
    }
    EXPECT_EQ(contentof(path), "old");
    {
        textout out(path);
        out.quoted("a \"b\", c").endline();
        out.line(1, 2.5f, 0.1);
        out.commit();
    }
    EXPECT_EQ(contentof(path), "\"a \"\"b\"\", c\"\r\n1,2.5,0.1\r\n");
    EXPECT_EQ(std::distance(fs::directory_iterator(room.folder), fs::directory_iterator()), 4)
        << "nothing is left beside the file";
    EXPECT_THROW(textout("/nowhere/at/all.vpl"), runtimeerror);
}
