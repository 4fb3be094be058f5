// SPDX-License-Identifier: GPL-3.0-or-later
// Contents and order of the illustrated report. They live in the model's further data, section
// "report":
//
//     "text","title","Platform B"
//     "part","nodes"                      one that is not as it is preset
//     "view","Stress at the joint",1,...  a picture: its scene, number by number
#include "post/book.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <filesystem>

#include "core/journal.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/runtime.h"
#include "core/session.h"
#include "core/textfile.h"
#include "files/filop.h"
#include "files/kalfile.h"
#include "post/bookparts.h"
#include "post/components.h"
#include "post/contour.h"
#include "post/legend.h"
#include "post/printdraw.h"
#include "post/shapes.h"
#include "post/source.h"
#include "view/moddraw.h"

static const char* const booksection = "report";

const std::vector<bookpart>& bookparts() {
    static const char *const model = "Model", *const loads = "Loads", *const results = "Results",
                             *const tables = "Tables of all values";
    static const std::vector<bookpart> parts = {
        {"", "cover", "Cover", true, nullptr},
        {"", "contents", "Table of contents", true, nullptr},
        {model, "modelpictures", "Pictures of the model", true, bookmodelpictures},
        {model, "summary", "What the model holds", true, booksummary},
        {model, "groups", "Element groups", true, bookgroups},
        {model, "nodes", "Nodes", false, booknodes},
        {model, "elements", "Elements", false, bookelements},
        {model, "supports", "Supports", true, booksupports},
        {model, "masses", "Masses", true, bookmasses},
        {loads, "loads", "Load cases", true, bookloads},
        {loads, "combinations", "Load combinations", true, bookcombinations},
        {results, "balance", "Balance of loads and reactions", true, bookbalance},
        {results, "displacements", "Largest displacements", true, bookdisplacements},
        {results, "shapes", "Deformed shapes", true, bookshapes},
        {results, "reactions", "Reactions of the supports", true, bookreactions},
        {results, "stresses", "Largest stresses by group", true, bookstresses},
        {results, "envelopes", "Envelopes of the combinations", true, bookenvelopes},
        {results, "normalforces", "Normal forces in line elements", true,
         [](booksink& b) { bookdiagrams(b, {memN}); }},
        {results, "shearforces", "Shear forces in line elements", false,
         [](booksink& b) {
             bookdiagrams(b, {memVy, memVz});
         }},
        {results, "torsion", "Torsion of line elements", false,
         [](booksink& b) { bookdiagrams(b, {memT}); }},
        {results, "moments", "Moments of line elements", true,
         [](booksink& b) {
             bookdiagrams(b, {memMy, memMz});
         }},
        {results, "contours", "Combined stress", true, bookcontours},
        {results, "modes", "Modes of vibration", true, bookmodes},
        {tables, "alldisplacements", "Displacements of all nodes", false, bookalldisplacements},
        {tables, "allforces", "Forces at all nodes", false, bookallforces},
        {tables, "allstresses", "Stresses of all elements", false, bookallstresses},
        {tables, "allmembers", "Forces along all line elements", false, bookallmembers},
        {tables, "allenvelopes", "Envelopes of all values", false, bookallenvelopes},
    };
    return parts;
}

static const bookpart* findpart(const std::string& key) {
    for (const bookpart& p : bookparts())
        if (key == p.key) return &p;
    return nullptr;
}

// --- the section --------------------------------------------------------------------------------

namespace {
struct bookfield {
    const char* name;
    std::string bookchoice::*text;
};
}  // namespace

static const bookfield fields[] = {{"title", &bookchoice::title},
                                   {"project", &bookchoice::project},
                                   {"client", &bookchoice::client},
                                   {"author", &bookchoice::author},
                                   {"remarks", &bookchoice::remarks}};

// The numbers of a scene, in the order of the file.
template <typename Take>
static void eachnumber(scene& s, Take take) {
    take(s.combination);
    for (bool* flag : {&s.deformed, &s.contour, &s.mode, &s.lines}) take(*flag);
    for (int* n : {&s.component, &s.data, &s.direction, &s.filled, &s.average, &s.global, &s.loads,
                   &s.loadcase})
        take(*n);
    for (bool* flag : {&s.constraints, &s.nodes, &s.elements, &s.hidden, &s.fitted}) take(*flag);
    for (double* x : {&s.vertical, &s.horizontal, &s.point[0], &s.point[1], &s.point[2], &s.scale})
        take(*x);
}

// Those of members and sources came later: a view may end before them.
template <typename Take>
static void eachlater(scene& s, Take take) {
    for (int* n : {&s.diagram, &s.source, &s.sourcecase, &s.envelope}) take(*n);
}

static scene readscene(textin& in) {
    scene s;
    s.caption = in.text();
    eachnumber(s, [&](auto& value) {
        using kind = std::remove_reference_t<decltype(value)>;
        if constexpr (std::is_same_v<kind, double>)
            value = in.number();
        else
            value = kind(in.wholewithin(0, 32767, "a number of a view"));
    });
    if (!in.atlineend())
        eachlater(s, [&](int& value) { value = in.wholewithin(0, 32767, "a number of a view"); });
    const bool listed = s.component >= 1 && s.component <= componentcount &&
                        s.data <= displacementdata && s.direction < directioncount &&
                        s.loads <= viewloads.upper && s.diagram <= memberquantities &&
                        s.source <= int(sources::envelope) &&
                        s.envelope <= int(envelopekinds::smallest);
    if (!listed || !(s.scale > 0))
        in.fail(errtype, "the view \"" + s.caption + "\" can not be shown");
    return s;
}

static bookchoice readrows(textin& in) {
    bookchoice book;
    while (!in.atend()) {
        const std::string word = in.text();
        if (word == "text") {
            const std::string name = in.text(), text = in.text();
            for (const bookfield& f : fields)
                if (name == f.name) book.*f.text = text;
        } else if (word == "part") {
            book.changed.push_back(in.text());
        } else if (word == "view") {
            book.views.push_back(readscene(in));
        } else {
            in.fail(errtype, R"("text", "part" or "view" was expected, found ")" + word + "\"");
        }
    }
    return book;
}

bookchoice thebook() {
    textin in = kalreader(booksection);
    return readrows(in);
}

static std::string asquoted(const std::string& text) {
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"') out += '"';
        out += c == '\r' || c == '\n' ? ' ' : c;
    }
    return out + "\"";
}

void storebook(const bookchoice& book) {
    std::string rows;
    for (const bookfield& f : fields)
        if (!(book.*f.text).empty())
            rows += "\"text\"," + asquoted(f.name) + "," + asquoted(book.*f.text) + "\n";
    for (const std::string& key : book.changed) rows += "\"part\"," + asquoted(key) + "\n";
    for (scene s : book.views) {
        rows += "\"view\"," + asquoted(s.caption);
        const auto put = [&](auto value) { rows += "," + numbertext(double(value)); };
        eachnumber(s, put);
        eachlater(s, put);
        rows += "\n";
    }
    const step change("Report", reaches::texts);
    putkalsection(booksection, rows);
}

void wirebook() {
    checkkalsection(booksection, [](textin& in) { readrows(in); });
}

// --- what is chosen -----------------------------------------------------------------------------

bool ispartwanted(const bookchoice& book, const std::string& key) {
    const bookpart* const part = findpart(key);
    if (part == nullptr) return false;
    return part->preset != (std::ranges::find(book.changed, key) != book.changed.end());
}

bool wantpart(bookchoice& book, const std::string& key, bool wanted) {
    if (findpart(key) == nullptr) return false;
    if (ispartwanted(book, key) == wanted) return true;
    if (std::erase(book.changed, key) == 0) book.changed.push_back(key);
    return true;
}

static std::string nameofmodel() {
    return isnamed() ? std::filesystem::path(modelname).filename().string()
                     : "Model without a name";
}

std::string booktitle(const bookchoice& book) {
    return book.title.empty() ? nameofmodel() : book.title;
}

scene sceneforbook() {
    scene s = scenenow();
    const std::string what = legendshown() ? plotlabel() + " - " : "";
    s.caption = what + footleft();
    return s;
}

// --- writing ------------------------------------------------------------------------------------

static long partsdone, partsinall;

void bookprogress() {
    const double share = partsinall > 0 ? double(partsdone) / double(partsinall) : 0;
    if (!theplatform().progress("Writing the report", share))
        throw runtimeerror{errstopped, "The report was cancelled"};
}

void bookpicture(booksink& b, const scene& s) {
    b.picture(s.caption, [s](surface& page) {
        setscene(s);
        drawpage(page, {1, false, false});
    });
    bookprogress();
}

static std::string today() {
    char day[40];
    const std::time_t now = std::time(nullptr);
    std::strftime(day, sizeof day, "%Y-%m-%d", std::localtime(&now));
    return day;
}

static void writecover(booksink& b, const bookchoice& book) {
    std::vector<std::string> lines;
    const auto add = [&](const char* caption, const std::string& text) {
        if (!text.empty()) lines.push_back(std::string(caption) + ": " + text);
    };
    add("Project", book.project);
    add("Client", book.client);
    add("Author", book.author);
    add("Model", nameofmodel());
    add("Date", today());
    add("Program", apptitle);
    if (!book.remarks.empty()) lines.push_back(book.remarks);
    if (isresultstale()) lines.emplace_back(staletext);
    scene s;
    b.cover(booktitle(book), lines, [s](surface& page) {
        setscene(s);
        drawpage(page, {1, false, false});
    });
}

void writebook(booksink& to) {
    const hourglass wait;
    const keptscene kept;
    const bookchoice book = thebook();
    postset = setofall;
    shownsource.of = sources::combination;
    partsdone = 0;
    partsinall = 1;
    for (const bookpart& p : bookparts()) partsinall += p.write && ispartwanted(book, p.key);
    if (ispartwanted(book, "cover")) writecover(to, book);
    if (ispartwanted(book, "contents")) to.contents();
    std::string chapter;
    for (const bookpart& p : bookparts()) {
        if (!p.write || !ispartwanted(book, p.key)) continue;
        if (chapter != p.chapter) to.chapter(chapter = p.chapter);
        to.part(p.key, p.caption);
        p.write(to);
        ++partsdone;
        bookprogress();
    }
    if (book.views.empty()) return;
    to.chapter("Chosen pictures");
    to.part("views", "Views of the model and its results");
    for (const scene& s : book.views) bookpicture(to, s);
}
