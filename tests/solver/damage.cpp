// SPDX-License-Identifier: GPL-3.0-or-later
// Damaged files end in a message, never otherwise.
#include <gtest/gtest.h>

#include "tests/solver/build.h"
#include "tests/solver/mutate.h"

TEST(Damage, EveryDamageEndsInResultsOrAMessage) {
    tempfolder folder;
    for (const std::string& set : samplesets()) EXPECT_EQ(runset(set, folder.path), "");
    std::mt19937 random(20);
    int refused = 0;
    const int rounds = 400;
    for (int i = 0; i < rounds; ++i) {
        const std::string set = damaged(samplesets()[std::size_t(i) % samplesets().size()], random);
        refused += !runset(set, folder.path).empty();
    }
    EXPECT_GT(refused, rounds / 4);
    EXPECT_LT(refused, rounds * 95 / 100) << "some damage leaves a model that can be analysed";
}

TEST(Damage, FilesCutAnywhereAreToldOrStillWhole) {
    tempfolder folder;
    const std::string& set = samplesets()[0];
    const std::size_t step = 41;
    for (std::size_t size = 0; size < set.size(); size += step)
        runset(set.substr(0, size), folder.path);
    EXPECT_NE(runset("", folder.path), "");
}
