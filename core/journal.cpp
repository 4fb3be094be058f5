// SPDX-License-Identifier: GPL-3.0-or-later
// The journal: keeping pages, comparing, putting back.
#include "core/journal.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <memory>
#include <utility>

#include "core/model.h"
#include "core/modeltable.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/sessionlengths.h"
#include "core/views.h"

const char* const staletext = "Results of the model before it was changed";

static const long pagebytes = 4096;

// --- pages --------------------------------------------------------------------------------------

namespace {

// The cells of one page of a list. Cells of zeros take no room.
struct page {
    long cells = 0;  // in use; 0 where the list ends before
    std::unique_ptr<std::byte[]> bytes;
    std::vector<std::string> texts;

    std::size_t cost() const {
        std::size_t sum = bytes ? std::size_t(pagebytes) : 0;
        for (const std::string& text : texts) sum += sizeof text + text.capacity();
        return sum;
    }
};

struct keptlist {
    std::vector<page> pages;
};

struct place {
    std::size_t row = 0;
    long list = 0;
    std::size_t page = 0;
};

using scalarvalue = std::variant<int, double, bool, Flag, Integer, std::string>;

// What goes with a step as a whole: what was selected, and what was on show.
using bytelist = std::vector<std::byte>;
struct company {
    std::vector<bytelist> lists;
    bool operator==(const company&) const = default;
};
using keptcompany = std::shared_ptr<const company>;

// Which model it is: equal numbers are one model, or one input of the solver.
struct states {
    long model = 0, input = 0;
};

struct entry {
    std::string name;
    std::vector<std::pair<place, page>> pages;  // of the other side of the step
    std::vector<std::pair<std::size_t, scalarvalue>> scalars;
    keptcompany selectedbefore, selectedafter, shownbefore, shownafter;
    states before, after;
    bool typing = false;  // of a text that grows letter by letter
    std::size_t cost() const {
        std::size_t sum = 0;
        for (const auto& [at, p] : pages) sum += sizeof(place) + sizeof(page) + p.cost();
        for (const auto& kept : {selectedbefore, selectedafter, shownbefore, shownafter})
            if (kept)
                for (const bytelist& list : kept->lists) sum += list.size();
        return sum;
    }
};

}  // namespace

template <typename T>
static constexpr long cellsofpage() {
    return pagebytes / long(sizeof(T));
}

template <typename T>
static bool iszero(const T* cells, long count) {
    static const std::array<std::byte, pagebytes> zeros{};
    return std::memcmp(cells, zeros.data(), std::size_t(count) * sizeof(T)) == 0;
}

template <typename T>
static bool isequal(const page& kept, const T* cells, long count) {
    if (kept.cells != count) return false;
    if (!kept.bytes) return iszero(cells, count);
    return std::memcmp(kept.bytes.get(), cells, std::size_t(count) * sizeof(T)) == 0;
}

static bool isequal(const page& kept, const std::string* cells, long count) {
    if (kept.cells != count) return false;
    if (kept.texts.empty())
        return std::all_of(cells, cells + count, [](const std::string& t) { return t.empty(); });
    return std::equal(kept.texts.begin(), kept.texts.end(), cells);
}

template <typename T>
static page copypage(const T* cells, long count) {
    page taken;
    taken.cells = count;
    if (iszero(cells, count)) return taken;
    taken.bytes.reset(new std::byte[std::size_t(pagebytes)]);
    std::memcpy(taken.bytes.get(), cells, std::size_t(count) * sizeof(T));
    return taken;
}

static page copypage(const std::string* cells, long count) {
    page taken;
    taken.cells = count;
    if (std::any_of(cells, cells + count, [](const std::string& t) { return !t.empty(); }))
        taken.texts.assign(cells, cells + count);
    return taken;
}

// The kept cells into the model; what stood there beyond them, up to `before`, is emptied, so that
// an item that is added later finds empty rows.
template <typename T>
static void putpage(const page& kept, T* cells, long before) {
    const std::size_t count = std::size_t(kept.cells) * sizeof(T);
    if (kept.bytes)
        std::memcpy(cells, kept.bytes.get(), count);
    else
        std::memset(static_cast<void*>(cells), 0, count);
    if (before > kept.cells)
        std::memset(static_cast<void*>(cells + kept.cells), 0,
                    std::size_t(before - kept.cells) * sizeof(T));
}

static void putpage(const page& kept, std::string* cells, long before) {
    for (long i = 0; i < std::max(kept.cells, before); ++i) {
        if (std::size_t(i) < kept.texts.size())
            cells[i] = kept.texts[std::size_t(i)];
        else
            cells[i].clear();
    }
}

// --- the kept state -----------------------------------------------------------------------------

static std::vector<std::vector<keptlist>> keptrows;  // by row of the table, then by list
static std::vector<scalarvalue> keptscalars;
static std::size_t keptbytes;
static bool iskept;

static std::vector<entry> done, undone;  // the last one is the next to be taken
static states now;
static long laststate, analysed, saved;

std::function<void(bool)> afterstep;

static bool isofmodel(const modelarray& row) {
    return row.role == roles::model && row.count;
}

// Cells in use of a list: its rows 0..count, as far as there is room.
template <typename T>
static long usedcells(const modelarray& row, long list, const stretch<T>& s) {
    if (list > row.lists()) return 0;
    return std::clamp(row.count(list) + 1, 0L, s.rows) * s.width;
}

template <typename T>
static void eachpage(const T* begin, long used, auto take) {
    const long size = cellsofpage<T>();
    for (long at = 0, i = 0; at < used; at += size, ++i)
        take(std::size_t(i), begin + at, std::min(size, used - at));
}

static std::vector<page> copypages(const modelarray& row, long list) {
    std::vector<page> pages;
    withstretch(row, list, [&](auto s) {
        eachpage(s.begin, usedcells(row, list, s), [&](std::size_t, const auto* cells, long count) {
            pages.push_back(copypage(cells, count));
            keptbytes += sizeof(page) + pages.back().cost();
        });
    });
    return pages;
}

template <typename Pointer>
static scalarvalue valueof(const Pointer& pointer) {
    return std::visit([](const auto* p) { return scalarvalue(*p); }, pointer);
}

static void forget() {
    keptrows.clear();
    keptscalars.clear();
    keptbytes = 0;
    iskept = false;
    done.clear();
    undone.clear();
}

static void keepall() {
    forget();
    for (const modelarray& row : modelarrays()) {
        keptrows.emplace_back();
        if (!isofmodel(row)) continue;
        for (long list = 0; list <= row.lists(); ++list)
            keptrows.back().push_back({copypages(row, list)});
    }
    for (const modelscalar& row : modelscalars()) keptscalars.push_back(valueof(row.value));
    iskept = true;
}

// --- what goes with a step ----------------------------------------------------------------------

template <typename T>
static void appendcells(bytelist& bytes, const T* cells, long count) {
    const auto* const begin = reinterpret_cast<const std::byte*>(cells);
    bytes.insert(bytes.end(), begin, begin + std::size_t(count) * sizeof(T));
}

// Flags as bits.
static void appendcells(bytelist& bytes, const Flag* flags, long count) {
    std::size_t at = bytes.size();
    bytes.resize(at + std::size_t(count + 7) / 8);
    for (long i = 0; i < count; ++at) {
        unsigned bits = 0;
        for (int k = 0; k < 8 && i < count; ++k, ++i) bits |= unsigned(flags[i].value != 0) << k;
        bytes[at] = std::byte(bits);
    }
}

template <typename T>
static void putcells(const bytelist& bytes, T* cells, long room) {
    std::memcpy(static_cast<void*>(cells), bytes.data(),
                std::min(bytes.size(), std::size_t(room) * sizeof(T)));
}

static void putcells(const bytelist& bytes, Flag* flags, long room) {
    for (std::size_t at = 0; at < bytes.size(); ++at)
        for (int k = 0; k < 8 && long(at) * 8 + k < room; ++k)
            flags[at * 8 + std::size_t(k)] = (unsigned(bytes[at]) >> k & 1u) != 0;
}

// No list of a role holds texts.
static void appendcells(bytelist&, const std::string*, long) {}
static void putcells(const bytelist&, std::string*, long) {}

template <typename Step>
static void eachlist(roles role, Step step) {
    for (const modelarray& row : modelarrays()) {
        if (row.role != role || !row.count) continue;
        for (long list = 0; list <= row.lists(); ++list) step(row, list);
    }
}

static array1<int>* const viewchoices[] = {&viewgroup, &viewtype, &viewselnum};

static keptcompany keepselection() {
    auto taken = std::make_shared<company>();
    eachlist(roles::selection, [&](const modelarray& row, long list) {
        withstretch(row, list, [&](auto s) {
            appendcells(taken->lists.emplace_back(), s.begin, usedcells(row, list, s));
        });
    });
    const int item = checkedof(MnuSelectItem);
    appendcells(taken->lists.emplace_back(), &item, 1);
    return taken;
}

static void putselection(const company& kept) {
    std::size_t i = 0;
    eachlist(roles::selection, [&](const modelarray& row, long list) {
        withstretch(row, list,
                    [&](auto s) { putcells(kept.lists[i++], s.begin, s.rows * s.width); });
    });
    int item = 0;
    putcells(kept.lists[i], &item, 1);
    for (int k = selectnodes; k <= selectgraphics; ++k) MnuSelectItem(k).checked = k == item;
}

static keptcompany keepshown() {
    auto taken = std::make_shared<company>();
    eachlist(roles::shown, [&](const modelarray& row, long list) {
        withstretch(row, list, [&](auto s) {
            appendcells(taken->lists.emplace_back(), s.begin, usedcells(row, list, s));
        });
    });
    for (const array1<int>* list : viewchoices)
        appendcells(taken->lists.emplace_back(), list->row().data(), list->upper + 1);
    for (const modelscalar& row : modelscalars())
        if (row.role == roles::shown)
            std::visit([&](const auto* p) { appendcells(taken->lists.emplace_back(), p, 1); },
                       row.value);
    return taken;
}

static void putshown(const company& kept) {
    std::size_t i = 0;
    eachlist(roles::shown, [&](const modelarray& row, long list) {
        withstretch(row, list, [&](auto s) {
            std::fill(s.begin, s.begin + s.rows * s.width,
                      std::remove_cvref_t<decltype(*s.begin)>());
            putcells(kept.lists[i++], s.begin, s.rows * s.width);
        });
    });
    for (array1<int>* list : viewchoices)
        putcells(kept.lists[i++], list->row().data(), list->upper + 1);
    for (const modelscalar& row : modelscalars())
        if (row.role == roles::shown)
            std::visit([&](auto* p) { putcells(kept.lists[i++], p, 1); }, row.value);
}

// --- comparing ----------------------------------------------------------------------------------

namespace {
// What a step has changed, in the making.
struct difference {
    entry found;
    bool input = false;  // of the solver
    bool model = false;
};
}  // namespace

static void compareat(difference& d, const place& at, const modelarray& row, page& kept,
                      page fresh) {
    keptbytes += fresh.cost();
    keptbytes -= kept.cost();
    d.found.pages.push_back({at, std::exchange(kept, std::move(fresh))});
    d.model = true;
    d.input = d.input || row.mechanical;
}

static void comparelist(difference& d, std::size_t r, long list) {
    const modelarray& row = modelarrays()[r];
    std::vector<page>& pages = keptrows[r][std::size_t(list)].pages;
    std::size_t last = 0;
    if (list <= lastlist(row)) {
        withstretch(row, list, [&](auto s) {
            eachpage(s.begin, usedcells(row, list, s),
                     [&](std::size_t i, const auto* cells, long count) {
                         last = i + 1;
                         if (i >= pages.size()) {
                             pages.emplace_back();
                             keptbytes += sizeof(page);
                         }
                         if (!isequal(pages[i], cells, count))
                             compareat(d, {r, list, i}, row, pages[i], copypage(cells, count));
                     });
        });
    }
    for (std::size_t i = last; i < pages.size(); ++i)
        if (pages[i].cells != 0) compareat(d, {r, list, i}, row, pages[i], page());
    keptbytes -= (pages.size() - last) * sizeof(page);
    pages.resize(last);
}

static void comparearrays(difference& d) {
    for (std::size_t r = 0; r < modelarrays().size(); ++r) {
        const modelarray& row = modelarrays()[r];
        if (!isofmodel(row)) continue;
        const auto lists = std::size_t(row.lists() + 1);
        if (keptrows[r].size() < lists) keptrows[r].resize(lists);
        for (std::size_t list = 0; list < keptrows[r].size(); ++list) comparelist(d, r, long(list));
    }
}

static bool isequal(std::size_t scalar) {
    return std::visit(
        [&](const auto* p) {
            return std::get<std::remove_cvref_t<decltype(*p)>>(keptscalars[scalar]) == *p;
        },
        modelscalars()[scalar].value);
}

static void comparescalars(difference& d) {
    for (std::size_t r = 0; r < modelscalars().size(); ++r) {
        const modelscalar& row = modelscalars()[r];
        if (row.role != roles::model) continue;
        if (isequal(r)) continue;
        d.found.scalars.push_back({r, std::exchange(keptscalars[r], valueof(row.value))});
        d.model = true;
        d.input = d.input || row.mechanical;
    }
}

static bool differs(const modelarray& row, long list, const std::vector<page>& pages) {
    bool found = false;
    std::size_t last = 0;
    if (list <= lastlist(row))
        withstretch(row, list, [&](auto s) {
            eachpage(s.begin, usedcells(row, list, s),
                     [&](std::size_t i, const auto* cells, long count) {
                         last = i + 1;
                         found = found || i >= pages.size() || !isequal(pages[i], cells, count);
                     });
        });
    return found || last != pages.size();
}

static bool differs() {
    if (!iskept) return false;
    for (std::size_t r = 0; r < modelscalars().size(); ++r)
        if (modelscalars()[r].role == roles::model && !isequal(r)) return true;
    for (std::size_t r = 0; r < modelarrays().size(); ++r) {
        const modelarray& row = modelarrays()[r];
        if (!isofmodel(row)) continue;
        const auto& lists = keptrows[r];
        for (std::size_t list = 0; list < lists.size(); ++list)
            if (differs(row, long(list), lists[list].pages)) return true;
        if (long(lists.size()) <= row.lists()) return true;
    }
    return false;
}

static bool touches(const entry& e, const std::string& array) {
    return std::ranges::any_of(
        e.pages, [&](const auto& p) { return modelarrays()[p.first.row].name == array; });
}

// --- steps --------------------------------------------------------------------------------------

namespace {
struct openstep {
    int depth = 0;
    std::string name, suggested;
    reaches reach = reaches::nothing;
    keptcompany selected, shown;
    int nodes = 0, graphics = 0;
    bool typing = false;
    bool restarts = false, analyses = false, saves = false, unsaves = false, olds = false;
};
}  // namespace
static openstep under;

std::size_t journallimit = [] {
    std::ifstream in("/proc/meminfo");
    std::string word;
    std::size_t kilobytes = 0;
    in >> word >> kilobytes;
    const std::size_t unknown = std::size_t(1) << 30;  // bytes
    return in && word == "MemTotal:" ? kilobytes * 1024 / 4 : unknown;
}();

std::size_t journalbytes() {
    std::size_t sum = keptbytes;
    for (const auto* list : {&done, &undone})
        for (const entry& e : *list) sum += e.cost();
    return sum;
}

// The oldest steps go first.
static void keeplimit() {
    std::size_t bytes = journalbytes(), drop = 0;
    for (; bytes > journallimit && drop < done.size(); ++drop) bytes -= done[drop].cost();
    done.erase(done.begin(), done.begin() + std::ptrdiff_t(drop));
}

// Typing on in the comment belongs to the step that it began with, unless a save lies between.
static bool goeson(const entry& before, const entry& e) {
    return before.typing && e.typing && before.after.model != saved;
}

static void noteresults() {
    const bool stale = now.input != analysed;
    resultflag = stale ? 1 : 0;
}

static void enter(difference& d) {
    entry& e = d.found;
    e.name = !under.name.empty() ? under.name : under.suggested;
    e.before = now;
    now.model = ++laststate;
    if (d.input) now.input = laststate;
    e.after = now;
    e.selectedbefore = under.selected;
    e.selectedafter = keepselection();
    if (*e.selectedafter == *e.selectedbefore) e.selectedafter = e.selectedbefore;
    if (keptcompany after = keepshown(); *after != *under.shown) {
        e.shownbefore = under.shown;
        e.shownafter = std::move(after);
    }
    e.typing = under.typing && e.pages.empty() && !d.input;
    if (undone.empty() && !done.empty() && goeson(done.back(), e)) {
        done.back().after = e.after;
        done.back().selectedafter = e.selectedafter;
    } else {
        done.push_back(std::move(e));
    }
    undone.clear();
    keeplimit();
}

static void restart() {
    forget();
    now = {++laststate, laststate};
    analysed = now.input;
    saved = now.model;
}

// The end of a door: what has changed becomes an entry.
static void finish() {
    if (under.restarts) {
        restart();
        if (under.unsaves) saved = -1;
        if (under.olds) analysed = -1;
        noteresults();
        keepall();
        if (afterstep) afterstep(true);
    } else if (under.reach != reaches::nothing) {
        const bool wasstale = isresultstale();
        difference d;
        comparescalars(d);
        if (under.reach == reaches::model) comparearrays(d);
        if (under.nodes != nnodes() || touches(d.found, "elems")) dorenumber = 1;
        if (d.model) enter(d);
        if (under.analyses) analysed = now.input;
        if (under.saves) saved = now.model;
        // The places of the last move belong to numbers that have changed.
        if (undomark != 0 && (under.nodes != nnodes() || under.graphics != ngraphics())) dropundo();
        if (d.input || under.analyses) noteresults();
        if ((d.model || under.saves) && afterstep) afterstep(wasstale != isresultstale());
    }
    under.restarts = under.analyses = under.saves = under.unsaves = under.olds = false;
}

static void begin() {
    under.name.clear();
    under.suggested.clear();
    under.reach = reaches::nothing;
    under.typing = false;
    under.restarts = under.analyses = under.saves = under.unsaves = under.olds = false;
    if (!iskept) keepall();
    under.selected = keepselection();
    under.shown = keepshown();
    under.nodes = nnodes();
    under.graphics = ngraphics();
}

// Without memory for the journal the work goes on, from a new beginning.
static void surely(void (*part)()) {
    static bool told;
    guarded(part, [](const runtimeerror& e) {
        forget();
        if (!std::exchange(told, true))
            theplatform().message("Step Back forgets what went before: " + e.what,
                                  icons::exclamation);
    });
}

step::step(const std::string& name, reaches reach) {
    if (under.depth++ == 0) surely(begin);
    if (under.name.empty()) under.name = name;
    under.reach = std::max(under.reach, reach);
    under.typing = under.typing || reach == reaches::texts;
}

step::~step() {
    if (--under.depth > 0 || !iskept) return;
    surely(finish);
}

void suggestname(const std::string& name) {
    under.suggested = name;
}

void nothingchanged() {
    under.reach = reaches::nothing;
}

void cutstep() {
    if (under.depth == 0) return;
    surely(finish);
    surely(begin);
}

void startjournal() {
    startlengths();
    under.restarts = under.depth > 0;
    if (under.restarts) return;
    restart();
    surely(keepall);
}

void noteanalysis() {
    under.analyses = true;
    if (under.depth == 0) analysed = now.input;
}

void noteoldresults() {
    under.olds = under.depth > 0;
    if (under.depth == 0) analysed = -1;
}

bool isresultstale() {
    return now.input != analysed;
}

void notesaved() {
    const step s("");
    under.saves = true;
    saved = now.model;
}

bool isunsaved() {
    return now.model != saved;
}

bool ischanged() {
    return isunsaved() || differs();
}

void noteunsaved() {
    startjournal();
    under.unsaves = under.depth > 0;
    if (under.depth == 0) saved = -1;
}

bool isstepopen() {
    return under.depth > 0;
}

// --- back and forward ---------------------------------------------------------------------------

// Is there room for the pages in the arrays as they are declared now?
static bool hasroom(const entry& e) {
    for (const auto& kept : e.pages) {
        const place& at = kept.first;
        const page& p = kept.second;
        const modelarray& row = modelarrays()[at.row];
        if (p.cells == 0) continue;
        if (at.list > lastlist(row)) return false;
        bool room = false;
        withstretch(row, at.list, [&](auto s) {
            using cell = std::remove_pointer_t<decltype(s.begin)>;
            room = long(at.page) * cellsofpage<cell>() + p.cells <= s.rows * s.width;
        });
        if (!room) return false;
    }
    return true;
}

static void exchange(const place& at, page& other) {
    const modelarray& row = modelarrays()[at.row];
    auto& lists = keptrows[at.row];
    if (lists.size() <= std::size_t(at.list)) lists.resize(std::size_t(at.list) + 1);
    auto& pages = lists[std::size_t(at.list)].pages;
    if (pages.size() <= at.page) pages.resize(at.page + 1);
    page& kept = pages[at.page];
    keptbytes += other.cost();
    keptbytes -= kept.cost();
    std::swap(kept, other);
    if (at.list <= lastlist(row))
        withstretch(row, at.list, [&](auto s) {
            using cell = std::remove_pointer_t<decltype(s.begin)>;
            const long first = long(at.page) * cellsofpage<cell>();
            putpage(kept, s.begin + first, other.cells);
            if (row.blank) blankrows(row, s, first + kept.cells, first + other.cells - 1);
        });
    while (!pages.empty() && pages.back().cells == 0) pages.pop_back();
}

static void exchange(entry& e, bool back) {
    for (auto& [at, p] : e.pages) exchange(at, p);
    for (auto& [r, value] : e.scalars) {
        std::swap(keptscalars[r], value);
        std::visit(
            [&, i = r](auto* p) {
                *p = std::get<std::remove_cvref_t<decltype(*p)>>(keptscalars[i]);
            },
            modelscalars()[r].value);
    }
    if (const auto& shown = back ? e.shownbefore : e.shownafter) putshown(*shown);
    putselection(*(back ? e.selectedbefore : e.selectedafter));
    now = back ? e.before : e.after;
}

// What the session holds must name what there is.
static void keepinrange() {
    if (curlc < 1 || curlc > nlc()) curlc = 1;
    if (meshgroup > ngroups()) meshgroup = 1;
    if (!menupostItem(modeshape).checked && (curlcomb < 1 || curlcomb > ncomb())) curlcomb = 1;
    for (int v = 1; v <= nviews; ++v)
        if (viewgroup(v) > ngroups()) viewgroup(v) = 0;
}

static bool take(std::vector<entry>& from, std::vector<entry>& to, int count, bool back) {
    if (under.depth > 0) cutstep();  // what was done before is a step of its own
    if (!iskept || count < 1 || std::size_t(count) > from.size()) return false;
    const bool wasstale = isresultstale();
    const int nodesbefore = nnodes();
    bool renumbered = false;
    for (int i = 0; i < count; ++i) {
        if (!hasroom(from.back())) {
            theplatform().message(
                "The model of that step does not fit the declared sizes. Increase them: "
                "[File,Model size..]",
                icons::exclamation);
            break;
        }
        renumbered = renumbered || touches(from.back(), "elems");
        exchange(from.back(), back);
        to.push_back(std::move(from.back()));
        from.pop_back();
    }
    keepinrange();
    followlengths();
    dropundo();
    pasteflag = false;
    dorenumber = 1;
    // Results go by the numbers of nodes and elements.
    if (renumbered || nodesbefore != nnodes()) dropresults();
    noteresults();
    if (under.depth > 0) {
        surely(begin);
        nothingchanged();
    }
    if (afterstep) afterstep(wasstale != isresultstale());
    return true;
}

bool stepback(int count) {
    return take(done, undone, count, true);
}

bool stepforward(int count) {
    return take(undone, done, count, false);
}

static std::vector<std::string> namesof(const std::vector<entry>& list, std::size_t most) {
    std::vector<std::string> names;
    for (std::size_t i = list.size(); i > 0 && names.size() < most; --i)
        names.push_back(list[i - 1].name);
    return names;
}

std::vector<std::string> stepsback(std::size_t most) {
    return namesof(done, most);
}

std::vector<std::string> stepsforward(std::size_t most) {
    return namesof(undone, most);
}
