// SPDX-License-Identifier: GPL-3.0-or-later
// Steps over every array of the model, back and forward.
#include "core/journal.h"

#include <gtest/gtest.h>

#include <random>

#include "core/model.h"
#include "core/modeltable.h"
#include "core/session.h"
#include "core/views.h"
#include "files/setmem.h"
#include "tests/support/recorder.h"

// Everything that makes up the model, as one text.
static std::string digest() {
    std::string all;
    const auto append = [&](const auto* cells, long count) {
        for (long i = 0; i < count; ++i) {
            if constexpr (std::is_same_v<decltype(cells), const std::string*>)
                all += cells[i] + "|";
            else
                all.append(reinterpret_cast<const char*>(cells + i), sizeof *cells);
        }
    };
    for (const modelarray& row : modelarrays()) {
        if (row.role != roles::model) continue;
        for (long list = 0; list <= row.lists(); ++list)
            withstretch(row, list, [&](auto s) {
                const auto* const cells = s.begin;
                append(cells, std::min(row.count(list) + 1, s.rows) * s.width);
            });
    }
    return all + std::to_string(ncon) + commenttext;
}

namespace {

struct randomchanges {
    std::mt19937 dice;
    int upto(int most) { return int(dice() % unsigned(most + 1)); }

    template <typename T>
    T any() {
        if constexpr (std::is_same_v<T, std::string>)
            return std::string(std::size_t(upto(40)), char('a' + upto(20)));
        else if constexpr (std::is_same_v<T, Flag>)
            return Flag(upto(1) == 1);
        else
            return T(upto(9));
    }

    // Some cells of any row, not those of row 0: counts stand there.
    void cells() {
        const auto& rows = modelarrays();
        const modelarray& row = rows[std::size_t(upto(int(rows.size()) - 1))];
        if (row.role != roles::model) return;
        const long list = upto(int(row.lists()));
        withstretch(row, list, [&](auto s) {
            using cell = std::remove_pointer_t<decltype(s.begin)>;
            const long count = std::min(row.count(list), s.rows - 1) * s.width;
            for (int i = upto(8); i >= 0 && count > 0; --i)
                s.begin[s.width + upto(int(count - 1))] = any<cell>();
        });
    }

    void count() {
        const int lc = 1 + upto(std::max(nlc() - 1, 0));
        switch (upto(9)) {
            case 0:
                nodes(0, 0, 0) = float(upto(900));
                break;
            case 1:
                elems(0, 0) = float(upto(700));
                break;
            case 2:
                groups(0, 0) = 1 + upto(40);
                break;
            case 3:
                ncon = upto(2000);
                break;
            case 4:
                loadnode(0, 0) = 1 + upto(3);
                break;
            case 5:
                loadnode(lc, 0) = upto(1500);
                break;
            case 6:
                elemload(lc, 0, 0) = float(upto(800));
                break;
            case 7:
                lcomb(0, 0) = float(1 + upto(9));
                break;
            case 8:
                graphics(0, 0, 0) = float(upto(300));
                break;
            default:
                patches(0, 0, 0) = upto(40);
        }
    }

    void change() {
        const step s("change");
        for (int i = upto(3); i >= 0; --i) upto(2) == 0 ? count() : cells();
        if (upto(9) == 0) commenttext += "x";
    }
};

}  // namespace

TEST(Journal, TakesRandomChangesOfEveryArrayBackAndForward) {
    sessionroom room;
    const unsigned seed = randomseed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    randomchanges random{std::mt19937(seed)};
    startjournal();
    std::vector<std::string> model = {digest()};
    for (int i = 0; i < 200; ++i) {
        random.change();
        if (digest() != model.back()) model.push_back(digest());
        ASSERT_EQ(stepsback(1000).size() + 1, model.size());
    }
    std::size_t at = model.size() - 1;
    const auto walk = [&](std::size_t to) {
        while (at != to) {
            ASSERT_TRUE(at > to ? stepback() : stepforward());
            at += at > to ? std::size_t(-1) : 1;
            ASSERT_TRUE(digest() == model[at]) << "state " << at;
        }
    };
    walk(0);
    EXPECT_FALSE(stepback());
    sizeform form = showsizes();
    for (const std::size_t i : {0u, 2u, 6u}) form.text[i] = "7";
    {
        const step s("sizes");
        ASSERT_TRUE(applysizes(form));
    }
    ASSERT_TRUE(digest() == model[0]) << "declared sizes are no part of the model";
    EXPECT_TRUE(stepforward(int(model.size()) - 1)) << "goes as far as there is room";
    EXPECT_TRUE(room.platform.toldpart("The model of that step does not fit the declared sizes."));
    for (const std::size_t i : {0u, 2u, 6u}) form.text[i] = "6000";
    form.text[6] = "5";
    {
        const step s("sizes");
        ASSERT_TRUE(applysizes(form));
    }
    at = model.size() - 1 - stepsforward(1000).size();
    ASSERT_TRUE(digest() == model[at]) << "state " << at;
    walk(model.size() - 1);
    for (int i = 0; i < 20; ++i) {
        walk(std::size_t(random.upto(int(model.size()) - 1)));
        if (HasFatalFailure()) return;
    }
    walk(model.size() / 2);
    {
        const step s("a new way");
        nodes(0, 0, 0) = 901;
    }
    EXPECT_FALSE(stepforward());
    ASSERT_TRUE(stepback());
    walk(0);
}

TEST(Journal, WhatComesWithAStep) {
    sessionroom room;
    for (int n = 1; n <= 3; ++n) addnode(float(n), 0, 0);
    addelement(1, {1, 2});
    startjournal();
    { const step nothing("nothing"); }
    EXPECT_TRUE(stepsback(9).empty());
    nodesel(0) = 2;
    nodesel(1) = 3;
    nodesel(2) = 1;
    {
        const step outer(""), inner("Move"), last("other");
        nodes(0, 3, 1) = 5;
        nodesel(0) = 0;
        elemvis(2, 1) = true;
    }
    EXPECT_EQ(stepsback(9), std::vector<std::string>{"Move"});
    EXPECT_TRUE(isresultstale());
    EXPECT_EQ(resultflag, 1);
    elemvis(3, 1) = true;  // what is shown alone is no step
    { const step look("View"); }
    nodesel(0) = 1;
    ASSERT_TRUE(stepback());
    EXPECT_EQ(nodesel(0) * 100 + nodesel(1) * 10 + nodesel(2), 231);
    EXPECT_FALSE(elemvis(2, 1) || elemvis(3, 1));
    EXPECT_EQ(stepsforward(9), std::vector<std::string>{"Move"});
    EXPECT_FALSE(isresultstale());
    EXPECT_EQ(resultflag, 0);
    ASSERT_TRUE(stepforward());
    EXPECT_EQ(nodesel(0), 0);
    EXPECT_TRUE(elemvis(2, 1));
    EXPECT_EQ(nodes(0, 3, 1), 5);

    noteanalysis();
    EXPECT_FALSE(isresultstale());
    {
        const step s("Name");
        nodename(1) = "corner";
    }
    EXPECT_FALSE(isresultstale()) << "a name changes no result";
    ASSERT_TRUE(stepback(2));
    EXPECT_TRUE(isresultstale()) << "before the analysis";
    ASSERT_TRUE(stepforward());
    EXPECT_FALSE(isresultstale());

    undomark = 1;
    {
        const step s("Node");
        nodes(0, 0, 0) = 4;
    }
    EXPECT_EQ(undomark, 0) << "the numbers of the told undo store have changed";
    {
        const step s("Load case");
        loadnode(0, 0) = 2;
        curlc = 2;
    }
    curlc = 2;
    ASSERT_TRUE(stepback());
    EXPECT_EQ(curlc, 1);
}

TEST(Journal, TypingACommentIsOneStepAndTheOldestStepsGoFirst) {
    sessionroom room;
    commenttext.clear();
    startjournal();
    for (const char c : {'a', 'b', 'c'}) {
        const step s("Comment", reaches::texts);
        commenttext += c;
    }
    EXPECT_EQ(stepsback(9).size(), 1u);
    for (const char* const other : {"typed by a script", "once more"}) {
        const step s("Script");
        commenttext = other;
    }
    EXPECT_EQ(stepsback(9).size(), 3u) << "what is not typed is a step each time";
    ASSERT_TRUE(stepback(2));
    notesaved();
    {
        const step s("Comment", reaches::texts);
        commenttext += "d";
    }
    ASSERT_TRUE(stepback());
    EXPECT_FALSE(isunsaved()) << "a save ends the step";
    ASSERT_TRUE(stepback());
    EXPECT_EQ(commenttext, "");
    const std::size_t limit = journallimit, pages = 20;
    startjournal();
    { const step first("first"); }
    journallimit = journalbytes() + pages * 4096;
    for (int i = 1; i <= 100; ++i) {
        const step s(std::to_string(i));
        nodes(0, 0, 0) = 1;
        nodes(0, 1, 0) = float(i);
    }
    const std::vector<std::string> kept = stepsback(999);
    EXPECT_LT(journalbytes(), journallimit);
    EXPECT_GT(kept.size(), pages / 2);
    EXPECT_LT(kept.size(), pages);
    EXPECT_EQ(kept.front(), "100");
    ASSERT_TRUE(stepback(int(kept.size())));
    EXPECT_EQ(nodes(0, 1, 0), float(100 - int(kept.size())));
    journallimit = limit;
}
