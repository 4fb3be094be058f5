// SPDX-License-Identifier: GPL-3.0-or-later
// The commands of the File menu.
#include "files/filemenu.h"

#include <algorithm>
#include <filesystem>

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

// The extension of a filter, for a name typed without one.
static std::string extensionoffilter(int filterindex) {
    static const char* const extensions[] = {"tek", "tek", "inp", "ppo"};
    return extensions[filterindex >= 2 && filterindex <= 4 ? filterindex - 1 : 0];
}

static const fileformat* findformat(const std::string& extension) {
    const auto& list = fileformats();
    const auto at = std::ranges::find(list, extension, &fileformat::extension);
    return at == list.end() ? nullptr : &*at;
}

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

static void afteropen() {
    startjournal();
    if (isnamed() && areresultsold(modelname)) noteoldresults();
    stressloaded = false;
    forgetsolverlog();
    for (int i = deformedshape; i <= elementstress; ++i) menupostItem(i).checked = false;
    nodesel(0) = 0;
    setscrollbars();
    theplatform().refresh();
    redrawall();
}

reply openfile(const std::string& path) {
    const hourglass wait;
    addready();
    const splitpath parts = splitformodel(path);
    bool good = false;
    if (parts.extension == "tek") {
        good = openmodel(parts.base);
    } else if (const fileformat* format = findformat(parts.extension); format && format->open) {
        good = format->open(parts.base);
    } else {
        return refuse(path);
    }
    if (good) {
        addrecentfile();
        notesaved();
    }
    if (good || modeltoolarge) afteropen();  // else the model before stands, with its results
    return good ? reply::done : reply::failed;
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

reply menuopen() {
    if (ischanged() && !mayleave()) return reply::cancelled;
    filebox box;
    box.title = "Retrieve Model";
    box.filter = openfilter;
    box.filterindex = 2;
    const filechoice choice = theplatform().askfile(box);
    if (!choice.chosen) return reply::cancelled;
    return openfile(choice.path);
}

reply menuimport() {
    filebox box;
    box.title = "Import Model";
    box.filter = importfilter;
    box.filterindex = 2;
    const filechoice choice = theplatform().askfile(box);
    if (!choice.chosen) return reply::cancelled;
    const splitpath parts = splitformodel(choice.path);
    const double groupsbefore = groups(0, 0);
    bool good = false;
    if (parts.extension == "tek") {
        good = importmodel(parts.base);
    } else if (const fileformat* format = findformat(parts.extension); format && format->import) {
        good = format->import(parts.base);
    } else {
        return refuse(choice.path);
    }
    if (good && !editpaste()) {
        groups(0, 0) = groupsbefore;
        good = false;
    }
    redrawall();
    return good ? reply::done : reply::failed;
}

reply menusave() {
    filebox box;
    box.title = "Save Model";
    box.filter = savefilter;
    box.filterindex = 2;
    box.saving = true;
    if (isnamed()) box.path = modelname + ".tek";
    const filechoice choice = theplatform().askfile(box);
    if (!choice.chosen) return reply::cancelled;
    splitpath parts = split(absolute(choice.path));
    if (parts.extension.empty()) parts.extension = extensionoffilter(choice.filterindex);
    if (parts.extension == "tek") {
        if (!askreplacemodel(parts.base)) return reply::cancelled;
        modelname = parts.base;
        showmodelname();
        return savemodel() ? reply::done : reply::failed;
    }
    const fileformat* const format = findformat(parts.extension);
    if (format == nullptr || !format->save) return refuse(choice.path);
    if (!askoverwrite(parts.base, "." + parts.extension)) return reply::cancelled;
    modelname = parts.base;
    showmodelname();
    return format->save(parts.base) ? reply::done : reply::failed;
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
    if (!resetmodel()) return endwithoutmemory();
    modelname.clear();
    commenttext = "No Info";
    notesaved();
    showmodelname();
    afteropen();
    return reply::done;
}

static std::vector<std::string> recent;

const std::vector<std::string>& recentfiles() {
    return recent;
}

void addrecentfile() {
    if (!isnamed() || std::ranges::find(recent, modelname) != recent.end()) return;
    recent.push_back(modelname);
    theplatform().refresh();
}

reply openrecent(int i) {
    if (i < 0 || i >= int(recent.size())) return reply::cancelled;
    return askandopen(recent[std::size_t(i)] + ".tek");
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

bool menuexit() {
    return askandend(buttons::yesnocancel);
}
