// SPDX-License-Identifier: GPL-3.0-or-later
// The table of the model: complete, and what goes over its rows.
#include "core/modeltable.h"

#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "core/allocmodel.h"
#include "core/keptmodel.h"
#include "files/setmem.h"
#include "tests/support/recorder.h"

// Whoever declares an array and forgets its row loses it at the next change of the sizes.
TEST(Modeltable, HoldsEveryArrayAndScalarThatIsDeclared) {
    std::istringstream in(contentof(sourcedir() + "/core/model.h") +
                          contentof(sourcedir() + "/core/elempatch.h") +
                          contentof(sourcedir() + "/core/kaltext.h"));
    std::set<std::string> told;
    for (const modelarray& row : modelarrays()) told.insert(row.name);
    for (const modelscalar& row : modelscalars()) told.insert(row.name);
    const std::regex declaration(R"(^extern [^ ]+(?:<[^>]*>)? ([^;]+);.*)"), name(R"([a-z0-9]+)");
    std::size_t seen = 0;
    for (std::string line; std::getline(in, line);) {
        std::smatch found;
        if (!std::regex_match(line, found, declaration)) continue;
        const std::string list = found[1];
        for (std::sregex_iterator i(list.begin(), list.end(), name), end; i != end; ++i) {
            ++seen;
            EXPECT_TRUE(i->str() == "modelsize" || told.count(i->str())) << i->str();
        }
    }
    EXPECT_EQ(seen, told.size() + 1);
}

// An array that is as long as there are nodes has a row for each.
TEST(Modeltable, ARowStandsForTheItemsThatItsBoundDeclares) {
    const std::map<int, items> declared = {
        {1, items::node}, {2, items::element}, {4, items::group}, {5, items::graphic}};
    for (const modelarray& row : modelarrays()) {
        if (row.role != roles::model && row.role != roles::shown) continue;
        const auto at = declared.find(row.bounds[std::size_t(row.along) - 1].size);
        if (at != declared.end()) {
            EXPECT_EQ(row.of, at->second) << row.name;
        }
    }
}

// Any value that tells the place it stands at.
template <typename T>
static T valueat(std::size_t i) {
    if constexpr (std::is_same_v<T, std::string>)
        return std::to_string(i);
    else if constexpr (std::is_same_v<T, Flag>)
        return Flag(true);
    else
        return T(int(i % 1000 + 1));
}

template <typename T>
static std::vector<T*> cellsof(array1<T>& a, long last) {
    std::vector<T*> cells;
    for (long i = 1; i <= std::min(a.upper, last); ++i) cells.push_back(&a(i));
    return cells;
}
template <typename T>
static std::vector<T*> cellsof(array2<T>& a, long last) {
    std::vector<T*> cells;
    for (long i = 1; i <= std::min(a.upper1, last); ++i)
        for (long j = 1; j <= std::min(a.upper2, last); ++j) cells.push_back(&a(i, j));
    return cells;
}
template <typename T>
static std::vector<T*> cellsof(array3<T>& a, long last) {
    std::vector<T*> cells;
    for (long i = 1; i <= std::min(a.upper1, last); ++i)
        for (long j = 1; j <= std::min(a.upper2, last); ++j)
            for (long k = 1; k <= std::min(a.upper3, last); ++k) cells.push_back(&a(i, j, k));
    return cells;
}

TEST(Modeltable, EveryRowOutlivesAFailureAndAChangeOfTheSizes) {
    sessionroom room;
    const long last = 3;  // there is room for 4 load cases
    const auto eachcell = [&](auto step) {
        for (const modelarray& row : modelarrays())
            std::visit(
                [&](auto* a) {
                    std::size_t i = 0;
                    for (auto* cell : cellsof(*a, last)) step(row, *cell, ++i);
                },
                row.cells);
    };
    const auto check = [&](const char* after) {
        eachcell([&](const modelarray& row, auto& cell, std::size_t i) {
            EXPECT_TRUE(cell == valueat<std::remove_reference_t<decltype(cell)>>(i))
                << row.name << " " << i << " " << after;
        });
    };
    eachcell([](const modelarray&, auto& cell, std::size_t i) {
        cell = valueat<std::remove_reference_t<decltype(cell)>>(i);
    });
    {
        keptmodel kept;
        ASSERT_TRUE(allocmodel());
        kept.restore();
        check("a failure");
    }
    sizeform form = showsizes();
    for (std::size_t i = 0; i < 7; ++i) form.text[i] = i == 3 || i == 6 ? "13" : "777";
    ASSERT_TRUE(applysizes(form));
    check("the change");
}
