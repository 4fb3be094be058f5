// SPDX-License-Identifier: GPL-3.0-or-later
// Every reader on files that are cut or damaged: a message or a sound model, never half of one.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <random>

#include "core/catalogue.h"
#include "exchange/deck.h"
#include "exchange/dxf.h"
#include "exchange/gmsh.h"
#include "tests/exchange/samples.h"

namespace fs = std::filesystem;

static std::string extensionof(const std::string& name) {
    return name.substr(name.rfind('.') + 1);
}

// The samples, and what the writers make of a small model.
static std::vector<std::string> goodfiles(const std::string& folder) {
    for (int n = 0; n < 6; ++n) addnode(float(n % 3), float(n / 3), 0);
    groups(1, fieldixx) = groups(1, fieldiyy) = 1;
    addelement(typeshell4, {1, 2, 5, 4}, 1);
    addelement(typebeam, {3, 6}, 1);
    ncon = connode(1) = condof(1) = 1;
    importreport report;
    int i = 0;
    for (const bool isold : {false, true})
        for (const bool binary : {false, true})
            writegmsh(folder + "/" + std::to_string(++i) + ".msh", {isold, binary}, report);
    writedeck(folder + "/deck.inp", report);
    writedxf(folder + "/model.dxf", report);
    std::vector<std::string> files;
    for (const std::string& place : {folder, samplepath("")})
        for (const auto& entry : fs::directory_iterator(place))
            if (entry.is_regular_file()) files.push_back(entry.path());
    std::ranges::sort(files);
    return files;
}

TEST(Foreignfiles, CutOrDamagedNeverGiveHalfAModel) {
    exchangeroom room;
    const std::vector<std::string> files = goodfiles(room.folder);
    std::mt19937 random(randomseed());
    SCOPED_TRACE(randomseed());
    const std::string path = room.file("damaged");
    long readings = 0, refusals = 0;
    const auto look = [&](const foreignreader& reader, const std::string& text, const char* what,
                          const std::string& file, std::size_t at) {
        fs::remove(path);  // a file that is overwritten goes to the disk at once
        writefile(path, text);
        imported found;
        ++readings;
        if (!guarded([&] { reader.read(path, found); },
                     [&](const runtimeerror& e) {
                         ++refusals;
                         EXPECT_NE(e.what, "") << file;
                     }))
            return;
        EXPECT_EQ(faultof(found), "") << file << " " << what << " at " << at;
    };
    for (const std::string& file : files)
        for (const foreignreader& reader : foreignreaders()) {
            if (extensionof(file) != reader.extension) continue;
            const std::string text = contentof(file);
            for (std::size_t at = 0; at < text.size(); ++at)
                look(reader, text.substr(0, at), "cut", file, at);
            for (int i = 0; i < 200; ++i) {
                std::string damaged = text;
                const std::size_t at = random() % text.size();
                damaged[at] =
                    char(random() % 3 == 0 ? random() : "0123456789-+.,eE \n$*"[random() % 20]);
                look(reader, damaged, "damaged", file, at);
            }
        }
    EXPECT_GT(readings, 10000);
    EXPECT_GT(refusals, readings / 10);
    EXPECT_LT(refusals, readings);
}
