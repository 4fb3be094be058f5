// SPDX-License-Identifier: GPL-3.0-or-later
// Keeping the model aside.
#include "core/keptmodel.h"

#include <algorithm>
#include <tuple>
#include <utility>
#include <vector>

#include "core/colours.h"
#include "core/model.h"
#include "core/session.h"
#include "core/views.h"

// Every array and scalar that makes up the model, by reference.
static auto modelparts() {
    return std::tie(nodes, nodesel, nodename, tmpnodes, nodework, elems, egroup, rotpo, elemname,
                    elemsel, elemvis, tmpelems, elemdepth, endrelease, elemstress, elemflag, groups,
                    groupname, groupmat, groupcolor, groupshow, ncon, connode, condof, conval,
                    loadnode, loaddof, loadval, elemload, lcname, lctype, lcpar, curlc, nload,
                    lcomb, lcombname, lcdesc, curlcomb, dispres, graphics, graphics2, graphsel,
                    graphsel2, graphmesh, edgedata, edgegrid, edgechordax, edgechorday, edgechordaz,
                    edgechordbx, edgechordby, edgechordbz, patches, patchsel, meshgroup, hasmass,
                    hasplates, doftype, linepressure, commenttext, modeltoolarge, resultflag,
                    stressloaded, maxdisp, undomark);
}

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
    bool undo = mnuEditItem(0).enabled;

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
        mnuEditItem(0).enabled = undo;
    }
};
}  // namespace

// --- the whole model ----------------------------------------------------------------------------

template <typename... T>
static std::tuple<T...> emptyparts(const std::tuple<T&...>&) {
    return {};
}

struct keptmodel::store {
    decltype(emptyparts(modelparts())) parts;
    keptlook look;
};

template <typename References, typename Values, typename Step, std::size_t... I>
static void eachpart(References now, Values& kept, Step step, std::index_sequence<I...>) {
    (step(std::get<I>(now), std::get<I>(kept)), ...);
}

template <typename Values, typename Step>
static void eachpart(Values& kept, Step step) {
    eachpart(modelparts(), kept, step, std::make_index_sequence<std::tuple_size_v<Values>>());
}

static const auto swapped = [](auto& now, auto& kept) { std::swap(now, kept); };

keptmodel::keptmodel() : kept(std::make_unique<store>()) {
    eachpart(kept->parts, swapped);
}

keptmodel::~keptmodel() = default;

void keptmodel::restore() {
    eachpart(kept->parts, swapped);
    kept->look.restore();
}

template <typename T>
static void takeover(T& now, T& kept) {
    now = std::move(kept);
}

template <typename T>
static void takeover(array1<T>& now, array1<T>& kept) {
    for (long i = 0; i <= std::min(now.upper, kept.upper); ++i) now(i) = std::move(kept(i));
}

template <typename T>
static void takeover(array2<T>& now, array2<T>& kept) {
    const long last = std::min(now.upper2, kept.upper2);
    for (long i = 0; i <= std::min(now.upper1, kept.upper1); ++i)
        for (long j = 0; j <= last; ++j)
            if (kept(i, j) != T()) now(i, j) = kept(i, j);  // an untouched page costs no memory
}

template <typename T>
static void takeover(array3<T>& now, array3<T>& kept) {
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
    eachpart(kept->parts, [](auto& now, auto& old) { takeover(now, old); });
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
