// SPDX-License-Identifier: GPL-3.0-or-later
// Expressions.
#include "tools/bereken.h"

#include "core/runtime.h"
#include "tests/support/recorder.h"

static void definevariables(const std::vector<std::pair<std::string, std::string>>& list) {
    allocobjvars(int(list.size()));
    for (std::size_t i = 0; i < list.size(); ++i) {
        objvarname(long(i) + 1) = list[i].first;
        objvarvalue(long(i) + 1) = list[i].second;
    }
}

TEST(Bereken, TheGrammarToTheLetter) {
    sessionroom room;
    definevariables({{"A", "3"}, {"B", "2"}, {"A", "5"}, {"TWICE", "B*2"}, {"NEG", "-4"}});
    const struct {
        const char* text;
        double value;
        const char* told;
    } cases[] = {
        {"2+3*4^2", 146, ""},
        {"2^3*4", 32, ""},
        {"2^2^3", 64, ""},
        {"10/2/5", 1, ""},
        {"-2*3", -6, ""},
        {"2*-3", -6, ""},
        {"12/-3+1", -3, ""},
        {"2^-1", 0, ""},  // the sign begins a term: 2^nothing - 1
        {"1E-3*2", 0.002, ""},
        {"1.5E+2-.5", 149.5, ""},
        {"", 0, ""},
        {"-", 0, ""},
        {"2+-3", -1, ""},
        {"4 * B", 8, ""},
        {"A", 5, ""},  // the last of that name
        {"A*-B", -10, ""},
        {"TWICE+A", 0, "Object variable TWICE+A not defined"},  // as if 1E+A
        {"A+TWICE*2", 13, ""},
        {"B*X+1", 1, "Object variable X not defined"},
        {"a", 0, "Object variable a not defined"},
        {"6/0*2+1", 13, "Division by zero in 6/0*2+1"},
        {"NEG^.5+1", 1, "Root of a negative number in NEG^.5+1"},
        {"1E200*1E200", 0, "Number too large in 1E200*1E200"},
        {"1E400", 0, "Number too large: 1E400"},
    };
    for (const auto& c : cases) {
        room.platform.messages.clear();
        const double value = bereken(c.text);
        EXPECT_DOUBLE_EQ(value, c.value) << c.text;
        EXPECT_EQ(room.platform.messages.size(), *c.told ? 1u : 0u) << c.text;
        EXPECT_EQ(room.platform.told(c.told), *c.told != 0) << c.text;
    }
    EXPECT_EQ(vervang("A"), "5");
    EXPECT_EQ(vervang("AA"), "");
}

TEST(Bereken, TwentyTermsAndNoMore) {
    sessionroom room;
    std::string terms = "1", factors = "1";
    for (int i = 1; i < 20; ++i) {
        terms += "+1";
        factors += "*1";
    }
    EXPECT_EQ(bereken(terms), 20);
    EXPECT_EQ(bereken(factors), 1);
    EXPECT_THROW(bereken(terms + "-1"), runtimeerror);
    EXPECT_THROW(bereken(factors + "/1"), runtimeerror);
}

TEST(Bereken, NamesThatComeBackToThemselvesAreToldOnce) {
    sessionroom room;
    definevariables({{"A", "B+1"}, {"B", "2*A"}});
    bereken("A");
    EXPECT_EQ(room.platform.messages.size(), 1u);
    EXPECT_TRUE(room.platform.toldpart("leads back to itself"));
    // Twenty factors each, thirty deep: what would never end is given up.
    std::vector<std::pair<std::string, std::string>> ladder;
    for (int i = 0; i < 30; ++i) {
        std::string product = "V" + std::to_string(i + 1);
        for (int k = 0; k < 19; ++k) product += "*V" + std::to_string(i + 1);
        ladder.emplace_back("V" + std::to_string(i), product);
    }
    ladder.emplace_back("V30", "1");
    definevariables(ladder);
    room.platform.messages.clear();
    bereken("V0");
    EXPECT_EQ(room.platform.messages.size(), 1u);
}
