// SPDX-License-Identifier: GPL-3.0-or-later
// Whole items and references, over every row of the table that has to do with them.
#include "core/modelitems.h"

#include <map>

#include "tests/support/marks.h"
#include "tests/support/recorder.h"

static const int many = 8;  // items of each kind

template <typename T>
constexpr bool isnumber = !std::is_same_v<T, std::string> && !std::is_same_v<T, Flag>;

static void fillmodel() {
    for (const items of : {items::node, items::element, items::group, items::graphic,
                           items::constraint, items::patch, items::loadcase})
        setcount(of, of == items::loadcase ? 2 : many);
    for (int lc = 1; lc <= 2; ++lc) {
        setcount(items::nodalload, many, lc);
        setcount(items::elementload, many, lc);
    }
    nodesel(0) = graphsel(0, 0) = graphsel2(0, 0) = many;
    elemsel(0) = tmpelems(0, 0) = patchsel(0) = many;
    for (const modelarray& row : modelarrays()) {
        if (!row.count) continue;
        for (long list = 0; list <= lastlist(row); ++list)
            withstretch(row, list, [&](auto s) {
                using cell = std::remove_pointer_t<decltype(s.begin)>;
                if (row.of == items::none && row.role == roles::model) return;
                const long last = std::min(long(many), s.rows - 1);
                for (long i = 1; i <= last; ++i)
                    for (long k = 0; k < s.width; ++k)
                        if constexpr (!std::is_same_v<cell, Integer>)
                            s.row(i)[k] = markof<cell>(i, list, k);
                for (const column& c : row.columns)
                    for (long i = 1; i <= last; ++i)
                        for (long k = c.first; c.refers != items::none && k <= c.last; ++k)
                            if constexpr (isnumber<cell>)
                                s.row(i)[k] = cell(int((i * 3 + k) % many + 1));
            });
    }
    for (int e = 1; e <= many; ++e) elems(e, 0) = 9;  // four corners
}

// Every number of the model as text, by array, list, row and cell.
using picture = std::map<std::tuple<std::string, long, long, long>, std::string>;

static picture takepicture() {
    picture taken;
    for (const modelarray& row : modelarrays()) {
        if (!row.count) continue;
        for (long list = 0; list <= lastlist(row); ++list)
            withstretch(row, list, [&](auto s) {
                for (long i = 1; i <= std::min(long(many), s.rows - 1); ++i)
                    for (long k = 0; k < s.width; ++k) {
                        std::string& text = taken[{row.name, list, i, k}];
                        if constexpr (std::is_same_v<decltype(s), stretch<std::string>>)
                            text = s.row(i)[k];
                        else
                            text = std::to_string(double(s.row(i)[k]));
                    }
            });
    }
    return taken;
}

static std::string textof(int n) {
    return std::to_string(double(n));
}

TEST(Modelitems, ClosingUpMovesWholeRowsAndEveryReferenceFollows) {
    const newnumbers number = {0, 1, 2, 0, 3, 4, 0, 5, 6};  // 3 and 6 go
    const int gone = 2, instead = 1;
    for (const items of : {items::node, items::element, items::group, items::graphic}) {
        sessionroom room;
        fillmodel();
        const picture before = takepicture();
        undomark = 1;
        for (int v = 1; v <= nviews; ++v) viewgroup(v) = 4;
        closeitems(of, number);
        followitems(of, number, instead);
        EXPECT_EQ(undomark, of == items::group ? 1 : 0) << "places go by the numbers that were";
        for (int v = 1; v <= nviews; ++v) EXPECT_EQ(viewgroup(v), of == items::group ? 3 : 4) << v;
        picture after = takepicture();
        EXPECT_EQ(countof(of), many - gone);
        for (const modelarray& row : modelarrays()) {
            if (row.of != of) continue;
            for (const auto& [at, text] : before) {
                const auto& [name, list, i, k] = at;
                if (name != row.name) continue;
                bool refers = false;
                for (const column& c : row.columns)
                    refers = refers || (c.refers == of && k >= c.first && k <= c.last);
                const int to = number[std::size_t(i)];
                if (to != 0 && !refers) {
                    EXPECT_EQ((after[{name, list, to, k}]), text) << name << " " << i;
                }
            }
        }
        for (const modelarray& row : modelarrays())
            for (const column& c : row.columns) {
                if (c.refers != of) continue;
                for (long list = 0; list <= row.lists(); ++list) {
                    std::vector<std::string> wanted;
                    const bool separate = row.count(list) > 0;
                    for (long i = 1; separate && i <= many; ++i)
                        for (long k = c.first; k <= c.last; ++k) {
                            const int n = std::stoi(before.at({row.name, list, i, k}));
                            const int to = number[std::size_t(n)];
                            if (to == 0 && c.lost == losses::leaves) continue;
                            const int other = c.lost == losses::stays     ? n
                                              : c.lost == losses::instead ? instead
                                                                          : 0;
                            wanted.push_back(textof(to != 0 ? to : other));
                        }
                    std::vector<std::string> found;
                    for (long i = 1; i <= row.count(list); ++i)
                        for (long k = c.first; k <= c.last; ++k)
                            found.push_back(after[{row.name, list, i, k}]);
                    EXPECT_EQ(found, wanted) << row.name << " " << c.caption << " " << list;
                }
            }
    }
}

TEST(Modelitems, CopyEmptyAndOrderTakeEveryRowOfAKind) {
    sessionroom room;
    fillmodel();
    const picture before = takepicture();
    copyitem(items::element, 2, 5);
    emptyitems(items::element, 7, 7);
    const std::vector<int> order = {4, 2, 8, 1, 3, 7, 5, 6};
    orderitems(items::node, order);
    picture after = takepicture();
    int seen = 0;
    for (const auto& [at, text] : before) {
        const auto& [name, list, i, k] = at;
        const modelarray& row = *findarray(name);
        ++seen;
        if (row.of == items::element && i == 5) {
            EXPECT_EQ(after.at(at), (before.at({name, list, 2, k}))) << name;
        } else if (row.of == items::element && i == 7) {
            EXPECT_TRUE(after.at(at).empty() || after.at(at) == textof(0)) << name;
        } else if (row.of == items::node) {
            EXPECT_EQ(after.at(at), (before.at({name, list, order[std::size_t(i - 1)], k})))
                << name;
        } else {
            EXPECT_EQ(after.at(at), text) << name;
        }
    }
    EXPECT_GT(seen, 1000);
}

TEST(Modelitems, AReferenceToNothingIsTold) {
    sessionroom room;
    fillmodel();
    EXPECT_EQ(checkreferences(), std::vector<std::string>{});
    connode(3) = many + 1;
    elemload(2, 4, 0) = 99;
    elems(5, 3) = many + 2;
    viewgroup(2) = 12;
    const std::vector<std::string> told = {"Element 5: Node 10 does not exist",
                                           "Constraint 3: Node 9 does not exist",
                                           "Element load 4: Element 99 does not exist",
                                           "Group shown in a view: Group 12 does not exist"};
    EXPECT_EQ(checkreferences(), told);
    elems(5, 0) = 6;  // a beam has two corners
    EXPECT_EQ(checkreferences().size(), told.size() - 1);
}

// What refers to what, said once more: a column that loses its mark is not followed any longer.
TEST(Modelitems, TheReferencesAreThese) {
    std::map<items, std::string> found;
    for (const modelarray& row : modelarrays())
        for (const column& c : row.columns)
            if (c.refers != items::none && found[c.refers].find(row.name) == std::string::npos)
                found[c.refers] += std::string(row.name) + " ";
    EXPECT_EQ(found[items::node], "nodesel elems connode loadnode ");
    EXPECT_EQ(found[items::element], "elemsel elemload ");
    EXPECT_EQ(found[items::group], "egroup tmpelems patches ");
    EXPECT_EQ(found[items::graphic], "graphsel graphsel2 patches ");
    EXPECT_EQ(found[items::patch], "elempatch patchsel ");
}

// What the solver reads, said once more: a change of it makes the results old.
TEST(Modelitems, ResultsDependOnAllButThese) {
    std::string others;
    for (const modelarray& row : modelarrays())
        if (row.role == roles::model && !row.mechanical) others += std::string(row.name) + " ";
    EXPECT_EQ(others,
              "nodename elempatch elemname groupname groupcolor lcname lcomb lcombname graphics "
              "patches ");
}
