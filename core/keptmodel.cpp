// SPDX-License-Identifier: GPL-3.0-or-later
// Keeping the model aside.
#include "core/keptmodel.h"

#include <algorithm>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "core/colours.h"
#include "core/kaltext.h"
#include "core/model.h"
#include "core/modeltable.h"
#include "core/session.h"
#include "core/views.h"

// Colours and views: small, held by value.
static auto lookcolours() {
    return std::tie(linecolor, backcolor, meshcolor, nodecolor, patchcolor, selcolor, freecolor,
                    graphcolor, concolor, rotcolor, loadcolor, momcolor, edgecolor, defcolor,
                    hidcolor, nodelabelcolor, elemlabelcolor);
}

namespace {
struct keptlook {
    std::array<colour, std::tuple_size_v<decltype(lookcolours())>> colours =
        std::apply([](const auto&... c) { return std::array{c...}; }, lookcolours());
    std::vector<std::vector<float>> viewnumbers;
    std::vector<std::vector<int>> viewchoices;
    int stress = stresskind;
    bool comment = commentvisible;
    bool undo = mnuEditItem(undoitem).enabled;

    static auto numbers() {
        return std::array{&viewptx,   &viewpty,  &viewptz, &viewvert,  &viewhor,
                          &viewscale, &viewdist, &viewaw,  &viewdepth, &dispscale};
    }
    static auto choices() { return std::array{&viewgroup, &viewtype, &viewselnum}; }

    keptlook() {
        for (const auto* list : numbers())
            viewnumbers.emplace_back(list->row().begin(), list->row().end());
        for (const auto* list : choices())
            viewchoices.emplace_back(list->row().begin(), list->row().end());
    }
    void restorecolours() const {
        std::size_t i = 0;
        std::apply([&](auto&... c) { ((c = colours[i++]), ...); }, lookcolours());
    }
    void restoreviews() const {
        for (std::size_t i = 0; i < viewnumbers.size(); ++i)
            std::ranges::copy(viewnumbers[i], numbers()[i]->row().begin());
        for (std::size_t i = 0; i < viewchoices.size(); ++i)
            std::ranges::copy(viewchoices[i], choices()[i]->row().begin());
    }
    void restore() const {
        restorecolours();
        restoreviews();
        stresskind = stress;
        commentvisible = comment;
        mnuEditItem(undoitem).enabled = undo;
    }
};
}  // namespace

// --- the whole model ----------------------------------------------------------------------------

// A value of the type that a pointer of the table points to.
template <typename Value, typename Pointer>
static Value emptyof(const Pointer& pointer) {
    return std::visit(
        [](auto* p) { return Value(std::in_place_type<std::remove_reference_t<decltype(*p)>>); },
        pointer);
}

using scalarvalue = std::variant<int, double, bool, Flag, Integer, std::string>;

struct keptmodel::store {
    std::vector<arrayvalue> arrays;
    std::vector<scalarvalue> scalars;
    keptlook look;
};

// Calls step(in the model, kept) for two of one type.
template <typename Pointer, typename Value, typename Step>
static void eachpair(const Pointer& pointer, Value& value, Step step) {
    std::visit(
        [&](auto* now) { step(*now, std::get<std::remove_reference_t<decltype(*now)>>(value)); },
        pointer);
}

template <typename Store, typename Step>
static void eachpart(Store& kept, Step step) {
    for (std::size_t i = 0; i < kept.arrays.size(); ++i)
        eachpair(modelarrays()[i].cells, kept.arrays[i], step);
    for (std::size_t i = 0; i < kept.scalars.size(); ++i)
        eachpair(modelscalars()[i].value, kept.scalars[i], step);
}

static const auto swapped = [](auto& now, auto& kept) { std::swap(now, kept); };

keptmodel::keptmodel() : kept(std::make_unique<store>()) {
    for (const modelarray& row : modelarrays())
        kept->arrays.push_back(emptyof<arrayvalue>(row.cells));
    for (const modelscalar& row : modelscalars())
        kept->scalars.push_back(emptyof<scalarvalue>(row.value));
    eachpart(*kept, swapped);
}

keptmodel::~keptmodel() = default;

void keptmodel::restore() {
    eachpart(*kept, swapped);
    kept->look.restore();
}

template <typename T>
static void movecells(T& now, T& kept) {
    now = std::move(kept);
}

template <typename T>
static void movecells(array1<T>& now, array1<T>& kept) {
    for (long i = 0; i <= std::min(now.upper, kept.upper); ++i) now(i) = std::move(kept(i));
}

template <typename T>
static void movecells(array2<T>& now, array2<T>& kept) {
    const long last = std::min(now.upper2, kept.upper2);
    for (long i = 0; i <= std::min(now.upper1, kept.upper1); ++i)
        for (long j = 0; j <= last; ++j)
            if (kept(i, j) != T()) now(i, j) = kept(i, j);  // an untouched page costs no memory
}

template <typename T>
static void movecells(array3<T>& now, array3<T>& kept) {
    if (now.upper1 < 0) {  // results: allocated where they are read
        std::swap(now, kept);
        return;
    }
    const long last = std::min(now.upper3, kept.upper3);
    for (long i = 0; i <= std::min(now.upper1, kept.upper1); ++i)
        for (long j = 0; j <= std::min(now.upper2, kept.upper2); ++j)
            for (long k = 0; k <= last; ++k)
                if (kept(i, j, k) != T()) now(i, j, k) = kept(i, j, k);
}

void keptmodel::restoreinto() {
    eachpart(*kept, [](auto& now, auto& old) { movecells(now, old); });
    kept->look.restore();
}

template <typename T>
static bool issize(const array1<T>& a, const array1<T>& b) {
    return a.upper == b.upper;
}
template <typename T>
static bool issize(const array2<T>& a, const array2<T>& b) {
    return a.upper1 == b.upper1 && a.upper2 == b.upper2;
}
template <typename T>
static bool issize(const array3<T>& a, const array3<T>& b) {
    return a.upper1 == b.upper1 && a.upper2 == b.upper2 && a.upper3 == b.upper3;
}

// --- what the files do not hold -----------------------------------------------------------------

// Arrays with a row for each node, element or group that no file has.
static bool isbesidefiles(const modelarray& row) {
    const bool kept = row.of == items::node || row.of == items::element || row.of == items::group;
    return kept && (row.role == roles::model || row.role == roles::shown) &&
           std::ranges::all_of(row.columns, [](const column& c) { return c.file[0] == '\0'; });
}

struct keptbesidefiles::store {
    int nodes = nnodes(), elements = nelems(), groups = ngroups(), group = meshgroup;
    const double scale = lengthscale;
    std::vector<std::pair<const modelarray*, arrayvalue>> arrays;
    keptlook look;

    bool fits() const {
        return std::ranges::all_of(arrays, [](const auto& kept) {
            return std::visit(
                [&](const auto* a) {
                    return issize(*a, std::get<std::remove_cvref_t<decltype(*a)>>(kept.second));
                },
                kept.first->cells);
        });
    }
    void swap(bool ofgroups) {
        for (auto& [row, cells] : arrays)
            if ((row->of == items::group) == ofgroups) eachpair(row->cells, cells, swapped);
    }
};

keptbesidefiles::keptbesidefiles() : kept(std::make_unique<store>()) {
    for (const modelarray& row : modelarrays())
        if (isbesidefiles(row)) kept->arrays.emplace_back(&row, emptyof<arrayvalue>(row.cells));
    kept->swap(true);
    kept->swap(false);
}

keptbesidefiles::~keptbesidefiles() = default;

void keptbesidefiles::restore() {
    lengthscale = kept->scale;
    kept->look.restorecolours();
    commentvisible = kept->look.comment;
    if (!kept->fits()) return;
    if (ngroups() == kept->groups) {
        kept->swap(true);
        meshgroup = kept->group;
    }
    if (nnodes() != kept->nodes || nelems() != kept->elements) return;
    kept->look.restoreviews();
    kept->swap(false);
}
