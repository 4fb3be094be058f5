// SPDX-License-Identifier: GPL-3.0-or-later
// The commands of the File menu.
#include "files/filemenu.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "core/journal.h"
#include "core/model.h"
#include "core/modelsize.h"
#include "core/newmodel.h"
#include "core/platform.h"
#include "core/session.h"
#include "edit/Edit.h"
#include "edit/Mouseprocedures.h"
#include "files/filop.h"
#include "files/runlog.h"
#include "files/saving.h"
#include "files/solverunits.h"
#include "view/moddraw.h"
#include "view/setviews.h"

namespace fs = std::filesystem;

static const char* const openfilter =
    "All Files (*.*)|*.*|Kalvane Model (*.tek)|*.tek|Cosmos6 Model (*.inp)|*.inp|Cosmos/M Model "
    "(*.mod)|*.mod|MOSES Model (*.dat)|*.dat|Polygon File Format (*.ply)|*.ply";
static const char* const savefilter =
    "All Files (*.*)|*.*|Kalvane model (*.tek)|*.tek|Cosmos6 model (*.inp)|*.inp|MOSES model "
    "(*.ppo)|*.ppo";
static const char* const importfilter =
    "All Files (*.*)|*.*|FE Model (*.tek)|*.tek|dxf CAD file (*.dxf)|*.dxf";

std::vector<fileformat>& fileformats() {
    static std::vector<fileformat> formats;
    return formats;
}

// A chosen path as base and three-letter extension in lower case.
namespace {
struct splitpath {
    std::string base, extension;
};
}  // namespace

// What ends in ".1.2" or ".001" is a name without extension.
static splitpath split(const std::string& path) {
    if (path.size() < 5 || path[path.size() - 4] != '.') return {path, ""};
    const auto isletter = [](char c) { return (c | ' ') >= 'a' && (c | ' ') <= 'z'; };
    if (!isletter(path[path.size() - 3]) || path.find('.', path.size() - 3) != path.npos)
        return {path, ""};
    splitpath parts{path.substr(0, path.size() - 4), path.substr(path.size() - 3)};
    for (char& c : parts.extension)
        if (c >= 'A' && c <= 'Z') c = char(c - 'A' + 'a');
    return parts;
}

// The model works on absolute paths: the solver runs in another directory.
static std::string absolute(const std::string& path) {
    std::error_code ec;
    const fs::path whole = fs::absolute(path, ec);
    return ec ? path : whole.lexically_normal().string();
}

// --- formats ------------------------------------------------------------------------------------

namespace {
// An entry of a dialog's list of filters, and the format that it stands for: null for the model's
// own and for all files.
struct filterentry {
    std::string caption, pattern;
    const fileformat* format = nullptr;
};
}  // namespace

// The told filters first, those of the other formats behind them.
static std::vector<filterentry> filters(const std::string& told, std::string fileformat::*caption) {
    std::vector<filterentry> list;
    for (std::size_t begin = 0; begin < told.size();) {
        const std::size_t bar = told.find('|', begin);
        const std::size_t end = std::min(told.find('|', bar + 1), told.size());
        list.push_back({told.substr(begin, bar - begin), told.substr(bar + 1, end - bar - 1)});
        begin = end + 1;
    }
    for (const fileformat& format : fileformats()) {
        if ((format.*caption).empty()) continue;
        const auto at = std::ranges::find(list, format.*caption, &filterentry::caption);
        if (at != list.end())
            at->format = &format;
        else
            list.push_back({format.*caption, "*." + format.extension, &format});
    }
    return list;
}

static std::string textof(const std::vector<filterentry>& list) {
    std::string text;
    for (const filterentry& entry : list)
        text += (text.empty() ? "" : "|") + entry.caption + "|" + entry.pattern;
    return text;
}

// The entry that was chosen in a dialog, the model's own for all files.
static const filterentry& chosenentry(const std::vector<filterentry>& list, int filterindex) {
    const auto i = std::size_t(filterindex);
    return i >= 2 && i <= list.size() ? list[i - 1] : list[1];
}

static std::string headof(const std::string& path) {
    std::string head(65536, '\0');
    std::ifstream in(path, std::ios::binary);
    in.read(head.data(), std::streamsize(head.size()));
    head.resize(std::size_t(in.gcount()));
    return head;
}

// By the extension, and by the content where several formats have it.
static const fileformat* findreader(const std::string& path, const std::string& extension) {
    const fileformat* any = nullptr;
    for (const fileformat& format : fileformats()) {
        if (format.extension != extension || !format.read) continue;
        if (!format.knows)
            any = any ? any : &format;
        else if (format.knows(headof(path)))
            return &format;
    }
    return any;
}

// The chosen filter decides; without one that fits, the first format of the extension.
static const fileformat* findwriter(const std::string& extension, const filterentry& entry) {
    if (entry.format && entry.format->extension == extension && entry.format->write)
        return entry.format;
    for (const fileformat& format : fileformats())
        if (format.extension == extension && format.write) return &format;
    return nullptr;
}

// --- commands -----------------------------------------------------------------------------------

static reply refuse(const std::string& path) {
    theplatform().message("Files of type \"" + fs::path(path).extension().string() +
                              "\" can not be used here: " + path,
                          icons::exclamation);
    return reply::failed;
}

// A name typed without extension is a model's, unless a file of another kind has it.
static splitpath splitformodel(const std::string& path) {
    splitpath parts = split(absolute(path));
    std::error_code ec;
    if (parts.extension.empty() && !fs::is_regular_file(parts.base, ec)) parts.extension = "tek";
    return parts;
}

static std::vector<std::string> recent;  // models without extension, foreign files with theirs

std::function<void()> modelopened;

static void afteropen() {
    startjournal();
    if (isnamed() && areresultsold(modelname)) noteoldresults();
    stressloaded = false;
    forgetsolverlog();
    for (int i = deformedshape; i <= elementstress; ++i) menupostItem(i).checked = false;
    if (modelopened) modelopened();
    nodesel(0) = 0;
    setscrollbars();
    theplatform().refresh();
    redrawall();
}

reply openfile(const std::string& path) {
    const hourglass wait;
    addready();
    const splitpath parts = splitformodel(path);
    if (parts.extension != "tek") {
        const fileformat* const format = findreader(absolute(path), parts.extension);
        return format ? format->read(absolute(path), purposes::open) : refuse(path);
    }
    const bool good = openmodel(parts.base);
    if (good) {
        addrecentfile();
        notesaved();
    }
    if (good || modeltoolarge) afteropen();  // else the model before stands, with its results
    return good ? reply::done : reply::failed;
}

void noteforeign(const std::string& path) {
    modelname = split(absolute(path)).base;
    noteunnamed();
    showmodelname();
    if (std::ranges::find(recent, absolute(path)) == recent.end()) recent.push_back(absolute(path));
    notesaved();
    afteropen();
}

// "Save model ?" before another model takes the place of this one. False when it is to stay: also
// where it was to be kept and was not saved.
static bool mayleave() {
    messagebox box;
    box.text = "Save model ?";
    box.set = buttons::yesnocancel;
    box.icon = icons::question;
    const answers answer = theplatform().show(box);
    return answer == answers::no || (answer == answers::yes && menusave() == reply::done);
}

reply askandopen(const std::string& path) {
    return ischanged() && !mayleave() ? reply::cancelled : openfile(path);
}

// The native files stand second among the filters, behind all.
static filechoice asktoread(const char* title, const std::string& filter) {
    filebox box;
    box.title = title;
    box.filter = filter;
    box.filterindex = 2;
    return theplatform().askfile(box);
}

reply menuopen() {
    if (ischanged() && !mayleave()) return reply::cancelled;
    const filechoice choice =
        asktoread("Retrieve Model", textof(filters(openfilter, &fileformat::opencaption)));
    if (!choice.chosen) return reply::cancelled;
    return openfile(choice.path);
}

static reply importnative(const std::string& base) {
    const double groupsbefore = groups(0, 0);
    bool good = importmodel(base);
    if (good && !editpaste()) {
        groups(0, 0) = groupsbefore;
        good = false;
    }
    redrawall();
    return good ? reply::done : reply::failed;
}

reply menuimport() {
    const filechoice choice =
        asktoread("Import Model", textof(filters(importfilter, &fileformat::importcaption)));
    if (!choice.chosen) return reply::cancelled;
    const splitpath parts = splitformodel(choice.path);
    if (parts.extension == "tek") return importnative(parts.base);
    const fileformat* const format = findreader(absolute(choice.path), parts.extension);
    if (format == nullptr) return refuse(choice.path);
    const hourglass wait;
    return format->read(absolute(choice.path), purposes::import);
}

void nameafter(const std::string& path) {
    const std::string base = split(absolute(path)).base;
    if (modelname == base) return;
    modelname = base;
    noteunnamed();  // there is no model of that name, or another
    showmodelname();
}

static reply saveasmodel(const std::string& base) {
    if (!askreplacemodel(base)) return reply::cancelled;
    const bool unnamed = isunnamed();
    modelname = base;
    notenamed();
    showmodelname();
    if (savemodel()) return reply::done;
    if (unnamed) noteunnamed();
    return reply::failed;
}

reply menusave() {
    const auto list = filters(savefilter, &fileformat::savecaption);
    filebox box;
    box.title = "Save Model";
    box.filter = textof(list);
    box.filterindex = 2;
    box.saving = true;
    if (isnamed()) box.path = modelname + ".tek";
    const filechoice choice = theplatform().askfile(box);
    if (!choice.chosen) return reply::cancelled;
    const filterentry& entry = chosenentry(list, choice.filterindex);
    splitpath parts = split(absolute(choice.path));
    if (parts.extension.empty()) parts.extension = entry.pattern.substr(2);
    if (parts.extension == "tek") return saveasmodel(parts.base);
    const fileformat* const format = findwriter(parts.extension, entry);
    if (format == nullptr) return refuse(choice.path);
    if (!askoverwrite(parts.base, "." + parts.extension)) return reply::cancelled;
    const std::string path = parts.base + "." + parts.extension;
    const reply result = format->write(path);
    const bool told = std::string_view(savefilter).find(format->savecaption) != std::string::npos;
    if (result == reply::done && (told || (format->ismodel && !isnamed()))) nameafter(path);
    return result;
}

[[maybe_unused]] static const auto elsewhere = saveelsewhere =
    +[] { return menusave() == reply::done; };

// The declared sizes are more than the machine gives: the session goes on with the default sizes.
static reply endwithoutmemory() {
    defaultmodelsize();
    resetmodel();
    modelname.clear();
    showmodelname();
    afteropen();
    return reply::failed;
}

reply menunew() {
    if (!mayleave()) return reply::cancelled;
    addready();
    readsolverunits();
    if (!resetmodel()) return endwithoutmemory();
    modelname.clear();
    commenttext = "No Info";
    notesaved();
    showmodelname();
    afteropen();
    return reply::done;
}

const std::vector<std::string>& recentfiles() {
    return recent;
}

void addrecentfile() {
    if (!isnamed() || isunnamed() || std::ranges::find(recent, modelname) != recent.end()) return;
    recent.push_back(modelname);
    theplatform().refresh();
}

void setrecentfiles(std::vector<std::string> files) {
    recent = std::move(files);
}

std::string pathofrecent(std::size_t i) {
    const std::string& entry = recent[i];
    const bool isforeign = findreader(entry, split(entry).extension) != nullptr;
    std::error_code ec;
    return entry + (isforeign && !fs::exists(entry + ".tek", ec) ? "" : ".tek");
}

// Saves under the model's name, or asks for one. False when it was not saved.
static bool savebeforeexit() {
    if (isnamed()) return savemodel();
    return menusave() == reply::done;
}

static bool askandend(buttons set) {
    messagebox box;
    box.text = "Save model before Exit?";
    box.set = set;
    box.icon = icons::question;
    const answers answer = theplatform().show(box);
    if (answer == answers::cancel) return false;
    if (answer == answers::yes && !savebeforeexit()) return false;
    theplatform().endprogram();
    return true;
}

bool exitprompt(closemodes mode) {
    if (mode == closemodes::user) return askandend(buttons::yesno);
    theplatform().endprogram();
    return true;
}

bool logoutprompt() {
    if (!isunsaved()) return true;
    messagebox box;
    box.text = "The session ends. Save the model?";
    box.set = buttons::yesnocancel;
    box.icon = icons::question;
    const answers answer = theplatform().show(box);
    return answer == answers::no || (answer == answers::yes && savebeforeexit());
}

bool menuexit() {
    return askandend(buttons::yesnocancel);
}
