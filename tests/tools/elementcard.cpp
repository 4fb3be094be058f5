// SPDX-License-Identifier: GPL-3.0-or-later
// The cards of the element types against the catalogue and against what the check asks of a group.
#include "tools/elementcard.h"

#include <algorithm>

#include "core/catalogue.h"
#include "core/model.h"
#include "tests/support/recorder.h"
#include "tools/findings.h"

static bool lacksproperties() {
    findinglist list;
    findjobfaults(list);
    return std::ranges::any_of(list.lines, [](const finding& f) {
        return f.text.find("without properties") != std::string::npos;
    });
}

TEST(ElementCard, NamesWhatTheCheckAsksOfAGroup) {
    const sessionroom room;
    for (const int corner : {0, 1, 2, 3}) addnode(corner % 3 ? 1000 : 0, corner > 1 ? 1000 : 0, 0);
    for (int i = 1; i <= 6; ++i) groupmat(1, i, i) = 1;
    addelement(typebeam, {1, 2});
    ASSERT_GT(neltypes, typespring);
    for (int type = 1; type < neltypes; ++type) {
        SCOPED_TRACE(eltypname(type));
        const auto rows = elementcard(type);
        ASSERT_EQ(rows.size(), 6u);
        EXPECT_EQ(rows[0].text, eltypdes(type));
        EXPECT_EQ(rows[1].text, std::to_string(eltypnodes(type)));
        for (const cardrow& r : rows) EXPECT_FALSE(r.text.empty()) << r.heading;
        elems(1, 0) = float(type);
        const auto used = fieldsused(type);
        for (int f = 1; f <= groupfields; ++f) groups(1, f) = std::ranges::count(used, f) ? 0.3 : 0;
        EXPECT_FALSE(lacksproperties()) << "more is asked than the card tells";
        for (int f = 1; f <= groupfields; ++f) groups(1, f) = 0;
        const bool any = std::ranges::count(used, fieldmodulus) > 0;
        EXPECT_EQ(lacksproperties(), any || type == typemass) << "less is asked";
    }
    EXPECT_TRUE(elementcard(0).empty());
    EXPECT_TRUE(elementcard(neltypes).empty());
}
