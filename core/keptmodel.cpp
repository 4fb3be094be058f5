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

// --- what the files do not hold -----------------------------------------------------------------

struct keptbesidefiles::store {
    int nodes = nnodes(), elements = nelems(), groups = ngroups(), group = meshgroup;
    array1<std::string> nodename, elemname;
    array3<float> endrelease;
    array1<int> groupcolor;
    array2<Flag> elemvis;
    array1<Flag> elemflag;
    keptlook look;
};

keptbesidefiles::keptbesidefiles() : kept(std::make_unique<store>()) {
    std::swap(kept->nodename, nodename);
    std::swap(kept->elemname, elemname);
    std::swap(kept->endrelease, endrelease);
    std::swap(kept->groupcolor, groupcolor);
    std::swap(kept->elemvis, elemvis);
    std::swap(kept->elemflag, elemflag);
}

keptbesidefiles::~keptbesidefiles() = default;

void keptbesidefiles::restore() {
    kept->look.restorecolours();
    commentvisible = kept->look.comment;
    if (ngroups() == kept->groups && groupcolor.upper == kept->groupcolor.upper) {
        std::swap(kept->groupcolor, groupcolor);
        meshgroup = kept->group;
    }
    if (nnodes() != kept->nodes || nelems() != kept->elements) return;
    if (nodename.upper != kept->nodename.upper || elemname.upper != kept->elemname.upper) return;
    kept->look.restoreviews();
    std::swap(kept->elemvis, elemvis);
    std::swap(kept->elemflag, elemflag);
    std::swap(kept->nodename, nodename);
    std::swap(kept->elemname, elemname);
    std::swap(kept->endrelease, endrelease);
}
