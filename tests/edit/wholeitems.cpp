// SPDX-License-Identifier: GPL-3.0-or-later
// Whatever deletes, merges, renumbers, copies or packs items moves all of each item and every
// reference, leaves nothing beyond the counts, and is taken back to the last cell: over the rows of
// the table, by the marks that each item carries.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "core/journal.h"
#include "core/model.h"
#include "core/modelitems.h"
#include "core/numtext.h"
#include "core/pack.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/Edit.h"
#include "edit/merge.h"
#include "edit/move.h"
#include "edit/renumber.h"
#include "edit/selection.h"
#include "tests/support/marks.h"
#include "tests/support/recorder.h"
#include "tools/groups.h"

static const int many = 8;      // items of each kind
static const long looked = 30;  // rows, those of no item included

static const items kindsinuse[] = {items::node,      items::element,     items::group,
                                   items::graphic,   items::patch,       items::constraint,
                                   items::nodalload, items::elementload, items::loadcase};

static bool isload(items of) {
    return of == items::nodalload || of == items::elementload;
}

static bool isreference(const modelarray& row, long cell) {
    return std::ranges::any_of(row.columns, [&](const column& c) {
        return c.refers != items::none && cell >= c.first && cell <= c.last;
    });
}

// Calls take(row, list, stretch) for each list with rows of items, those of one kind alone if told.
template <typename Take>
static void eachlist(Take take, items of = items::none) {
    for (const modelarray& row : modelarrays()) {
        if (row.of == items::none || (of != items::none && row.of != of)) continue;
        for (long list = isload(row.of); list <= row.lists(); ++list)
            withstretch(row, list, [&](auto s) { take(row, list, s); });
    }
}

// --- a model full of marks ----------------------------------------------------------------------

// Elements have all nodes but 3 and 4.
static int referred(items by, long i, long k) {
    if (by != items::element) return int((i * 3 + k) % many) + 1;
    const int n = int((i * 3 + k) % (many - 2)) + 1;
    return n < 3 ? n : n + 2;
}

static void fillmodel() {
    for (const items of : kindsinuse)
        for (int lc = 1; lc <= 2; ++lc) setcount(of, of == items::loadcase ? 2 : many, lc);
    eachlist([](const modelarray& row, long list, auto s) {
        using cell = std::remove_pointer_t<decltype(s.begin)>;
        for (long i = 1; i <= row.count(list); ++i)
            for (long k = 0; k < s.width; ++k)
                if (!isreference(row, k))
                    s.row(i)[k] = markof<cell>(i, list, k);
                else if constexpr (!std::is_same_v<cell, std::string> &&
                                   !std::is_same_v<cell, Flag>)
                    s.row(i)[k] = cell(referred(row.of, i, k));
    });
    for (int i = 1; i <= many; ++i) {
        elems(i, 0) = 9;  // four corners
        patches(i, 0, 0) = 4;
        egroup(i) = i == 5 ? 2 : i;
    }
    meshgroup = 5;
    viewgroup(2) = 7;
    setselectitem(selectelements);
}

// --- what an item is, and what it refers to -----------------------------------------------------

using marks = std::vector<std::string>;
using picture = std::map<std::string, marks>;  // references by the marks of the item

static std::string marksof(items of, long i, long list = 1) {
    std::string text;
    if (i == 0) return text;
    eachlist(
        [&](const modelarray& row, long at, auto s) {
            if (isload(of) && at != list) return;
            for (long k = 0; k < s.width; ++k) {
                if (isreference(row, k)) continue;
                if constexpr (std::is_same_v<decltype(s), stretch<std::string>>)
                    text += s.row(i)[k] + " ";
                else
                    text += numbertext(double(s.row(i)[k])) + " ";
            }
        },
        of);
    return text;
}

static picture takepicture() {
    picture taken;
    for (const modelarray& row : modelarrays())
        for (const column& c : row.columns) {
            if (c.refers == items::none || row.role == roles::buffer) continue;
            for (long list = 0; list <= row.lists(); ++list)
                withstretch(row, list, [&](auto s) {
                    if constexpr (!std::is_same_v<decltype(s), stretch<std::string>> &&
                                  !std::is_same_v<decltype(s), stretch<Flag>>)
                        for (long i = 1; i <= row.count(list); ++i)
                            for (long k = c.first; k <= c.last; ++k) {
                                const bool list0 = row.of == items::none;
                                taken[row.name + (" " + (list0 ? "" : marksof(row.of, i, list)))]
                                    .push_back(marksof(c.refers, long(s.row(i)[k])));
                            }
                });
        }
    for (const items of : {items::node, items::graphic, items::group, items::loadcase})
        for (long i = 1; i <= countof(of); ++i) taken[marksof(of, i)];
    for (const heldreference& held : heldreferences())
        for (const int n : held.numbers()) taken[held.caption].push_back(marksof(held.refers, n));
    return taken;
}

// The picture after items have gone, each with the one that takes its place; empty for none.
static picture without(const picture& before, const std::map<std::string, std::string>& gone) {
    picture after;
    for (const auto& [key, references] : before) {
        const bool leaves = std::ranges::any_of(gone, [&, &name = key](const auto& g) {
            return name == g.first || name.ends_with(" " + g.first);
        });
        if (leaves) continue;
        const bool condition = key.starts_with("connode") || key.starts_with("load") ||
                               key.starts_with("elemload"),
                   list = key.ends_with("sel ");
        marks now;
        for (const std::string& mark : references) {
            const auto at = gone.find(mark);
            const std::string to = at == gone.end() ? mark : at->second;
            if (to.empty() && !mark.empty() && (condition || list)) continue;
            if (list && std::ranges::count(now, to) > 0) continue;
            now.push_back(to);
        }
        if (!now.empty() || !(condition || list)) after[key] = now;
    }
    return after;
}

// Every cell of the model, with those of no item.
static marks cells() {
    marks all;
    eachlist([&](const modelarray& row, long list, auto s) {
        for (long i = 0; i <= std::min(looked, s.rows - 1); ++i)
            for (long k = 0; k < s.width; ++k) {
                const std::string at = row.name + (" " + numbertext(list)) + " " + numbertext(i);
                if constexpr (std::is_same_v<decltype(s), stretch<std::string>>)
                    all.push_back(at + ": " + s.row(i)[k]);
                else
                    all.push_back(at + ": " + numbertext(double(s.row(i)[k])));
            }
    });
    return all;
}

// Cells of no item that hold something.
static marks leftovers() {
    marks found;
    eachlist([&](const modelarray& row, long list, auto s) {
        using cell = std::remove_pointer_t<decltype(s.begin)>;
        for (long i = row.count(list) + 1; i <= std::min(looked, s.rows - 1); ++i)
            for (long k = 0; k < s.width; ++k) {
                cell blank{};
                if constexpr (std::is_same_v<cell, int>)
                    if (row.blank) blank = row.blank(i);
                if (!(s.row(i)[k] == blank))
                    found.push_back(row.name + (" " + numbertext(list)) + " " + numbertext(i));
            }
    });
    return found;
}

static std::string textof(const picture& p, const std::string& key) {
    if (!p.count(key)) return "none";
    std::string text;
    for (const std::string& mark : p.at(key)) text += "[" + mark.substr(0, 20) + "] ";
    return text;
}

static marks differences(const picture& found, const picture& wanted, bool mayadd = false) {
    marks list;
    std::set<std::string> keys;
    for (const picture* p : {&found, &wanted})
        for (const auto& [key, references] : *p) keys.insert(key);
    for (const std::string& key : keys) {
        if (mayadd && (!wanted.count(key) || key.ends_with("sel "))) continue;
        const std::string one = textof(found, key), other = textof(wanted, key);
        if (one != other) list.push_back(key.substr(0, 40) + ": " + one + "instead of " + other);
    }
    return list;
}

// --- the work -----------------------------------------------------------------------------------

namespace {
struct work {
    const char* name;
    void (*prepare)();
    void (*run)();
    std::vector<std::pair<items, std::pair<int, int>>> gone;  // number, and what stands for it
    bool adds = false;
};
}  // namespace

template <typename T>
static void select(array1<T>& list, std::vector<int> numbers) {
    list(0) = T(int(numbers.size()));
    for (std::size_t i = 0; i < numbers.size(); ++i) list(long(i) + 1) = T(numbers[i]);
}

static void nothing() {}

static const work works[] = {
    {"delete nodes",
     [] {
         select(nodesel, {3, 4});
     },
     editdelete,
     {{items::node, {3, 0}}, {items::node, {4, 0}}}},
    {"delete elements",
     [] {
         select(elemsel, {3, 6});
     },
     editdelete,
     {{items::element, {3, 0}}, {items::element, {6, 0}}}},
    {"delete patches",
     [] {
         select(patchsel, {1, 4});
     },
     editdelete,
     {{items::patch, {1, 0}}, {items::patch, {4, 0}}}},
    {"pack graphic elements",
     nothing,
     [] {
         graphics(2, 0, 0) = graphics(5, 0, 0) = 0;
         packgraphics();
     },
     {{items::graphic, {2, 0}}, {items::graphic, {5, 0}}}},
    {"merge nodes",
     [] {
         for (const int n : {3, 4}) std::ranges::copy(nodes.row(0, 2), nodes.row(0, n).begin());
         nodes(0, 3, 0) += 0.0005f;
         nodes(0, 4, 0) -= 0.0005f;
         select(nodesel, {4, 3, 1});
     },
     [] { mergenodes(); },
     {{items::node, {3, 2}}, {items::node, {4, 2}}}},
    {"merge elements",
     [] {
         std::ranges::copy(elems.row(2), elems.row(4).begin());
         egroup(4) = egroup(2);
         select(elemsel, {4, 5});
     },
     [] { mergeelements(); },
     {{items::element, {4, 0}}}},
    {"renumber",
     [] {
         std::ranges::swap_ranges(nodes.row(0, 2), nodes.row(0, 6));
         select(nodesel, {});
     },
     renumbermodel,
     {}},
    {"delete a group",
     [] { meshgroup = 5; },
     [] {
         groupform form = opengroups();
         choosegroup(form, 4);
         deletegroup(form);
     },
     {{items::group, {5, 4}}}},
    {"copy and paste",
     [] {
         select(elemsel, {2, 5});
     },
     [] {
         editcopy();
         editpaste();
     },
     {},
     true},
};

TEST(WholeItems, MoveWithAllThatIsTheirsAndAreTakenBack) {
    for (const work& w : works) {
        SCOPED_TRACE(w.name);
        sessionroom room;
        room.platform.answerqueue.assign(9, answers::yes);
        fillmodel();
        w.prepare();
        startjournal();
        const marks cellsbefore = cells();
        const picture before = takepicture();
        std::map<std::string, std::string> gone;
        for (const auto& [of, numbers] : w.gone)
            gone[marksof(of, numbers.first)] = marksof(of, numbers.second);
        {
            const step s(w.name);
            w.run();
        }
        const picture after = takepicture();
        EXPECT_EQ(differences(after, without(before, gone), w.adds), marks{});
        EXPECT_EQ(leftovers(), marks{});
        EXPECT_EQ(checkreferences(), marks{});
        const marks cellsafter = cells();
        EXPECT_TRUE(cellsafter != cellsbefore);
        ASSERT_TRUE(stepback());
        EXPECT_TRUE(cells() == cellsbefore);
        EXPECT_EQ(differences(takepicture(), before), marks{});
        ASSERT_TRUE(stepforward());
        EXPECT_TRUE(cells() == cellsafter);
        EXPECT_EQ(differences(takepicture(), after), marks{});
    }
}
