// SPDX-License-Identifier: GPL-3.0-or-later
// Damaged files end in a message, never otherwise.
#include "tests/solver/build.h"
#include "tests/solver/mutate.h"

TEST(Damage, EveryDamageEndsInResultsOrAMessage) {
    tempfolder folder;
    for (const std::string& set : samplesets()) EXPECT_EQ(runset(set, folder.path), "");
    EXPECT_NE(runset("", folder.path), "");
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
