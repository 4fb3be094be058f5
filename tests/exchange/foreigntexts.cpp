// SPDX-License-Identifier: GPL-3.0-or-later
// Damaged texts: whatever a reader makes of them is whole, or it tells a fault.
#include <filesystem>

#include "core/runtime.h"
#include "exchange/MOSESINTERFACE.h"
#include "exchange/cosmosinterface.h"
#include "tests/exchange/samples.h"
#include "tests/files/filledmodel.h"

namespace fs = std::filesystem;

static void readas(const std::string& extension, const std::string& text, imported& found) {
    if (extension == ".dat")
        readmoses(text, "a.dat", found);
    else
        readcosmos(text, "a.geo", found, purposes::open);
}

TEST(Foreigntexts, CutAndChangedTextsGiveWholeItemsOrAFault) {
    exchangeroom room;
    int texts = 0;
    for (const auto& entry : fs::directory_iterator(samplepath(""))) {
        const std::string extension = entry.path().extension().string();
        if (extension != ".dat" && extension != ".geo" && extension != ".inp") continue;
        const std::string good = contentof(entry.path().string()),
                          path = room.file("a" + extension);
        const auto read = [&](const std::string& text, std::size_t at) {
            imported found;
            guarded([&] { readas(extension, text, found); }, [](const runtimeerror&) {});
            EXPECT_EQ(faultof(found), "") << entry.path() << " at " << at;
            ++texts;
        };
        for (std::size_t at = 0; at < good.size(); ++at) {
            read(good.substr(0, at), at);
            for (const char c : {'9', '*', ',', '\\', '%', '\n', '\0', '\xFF'}) {
                std::string bad = good;
                bad[at] = c;
                read(bad, at);
            }
        }
    }
    EXPECT_GT(texts, 30000) << "the samples are there";
}

TEST(Foreigntexts, ARefusedTextLeavesTheModelAsItWas) {
    for (const char* text : {"", "\n\n", "TITLE,x\n", "\xFF\xFE\0\1"})
        for (const char* name : {"a.dat", "a.mod"}) {
            filledroom room("m");
            wireexchange();
            writefile(room.file(name), text);
            EXPECT_EQ(openfile(room.file(name)), reply::failed) << name << text;
            EXPECT_TRUE(room.platform.toldpart(name)) << "a message with the file";
            saveas(room.file("b"));
            EXPECT_EQ(contentof(room.file("b.tek")), contentof(room.file("m.tek"))) << name;
            fileformats().clear();
        }
}

TEST(Foreigntexts, EndlessTextsComeToAnEnd) {
    const std::string big(std::size_t(10) << 20, 'x');
    std::string growing = "&set a = 1234567890\n", calls, spans = "ND,1,0,0,0\nND,2,1,0,0\n";
    for (int i = 0; i < 40; ++i) growing += "&set a = %a%%a\n";
    for (int i = 0; i < 200000; ++i) calls += "*a %b%%b%%b%%b%%b%%b%%b%%b%%b%%b% 0 0\n";
    for (int i = 0; i < 100000; ++i) spans += "DND,1,UX,0,999999999999999,1\n";
    std::string continued = "*p 0 0 0\n";
    for (int i = 0; i < 500000; ++i) continued += "\\\n";
    const std::string brackets(std::size_t(5) << 20, '(');
    const struct {
        const char* extension;
        std::string text;
        bool refused = false;
    } cases[] = {
        {".dat", "*p 0 0 0\nBEAM " + big},
        {".dat", "*p 0 0 0\n*p " + big + " 0 0\n~" + big + " TUBE 1 1\n*" + big + " 1 1 1"},
        {".dat", growing + "*p %a 0 0\n*q 0 0 0\n"},
        {".dat", "&set b = " + std::string(250, '7') + "\n*q 0 0 0\n" + calls, true},
        {".dat", continued},
        {".dat", "*p " + brackets + " 0 0\n*q 0 0 0"},
        {".geo", "ND,1,0,0,0\nEL,1,CR,0,9999999999," + big},
        {".geo", "ND,1,0,0,0\n" + big + "\n" + big + "," + big},
        {".geo", spans},
        {".geo", "ND,9223372036854775807,0,0,0\nND,1,0,0,0\nDND,1,UX,0,9223372036854775807,1\n"},
    };
    for (const auto& c : cases) {
        exchangeroom room;
        imported found;
        const auto read = [&] { readas(c.extension, c.text, found); };
        EXPECT_EQ(guarded(read, [](const runtimeerror&) {}), !c.refused) << c.text.substr(0, 60);
        EXPECT_EQ(faultof(found), "") << c.text.substr(0, 60);
        EXPECT_LT(found.report.text().size(), 100000u) << c.text.substr(0, 60);
    }
}
