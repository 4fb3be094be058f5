// SPDX-License-Identifier: GPL-3.0-or-later
// The form of the objects.
#include "tools/objectform.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/textfile.h"
#include "core/units.h"
#include "core/views.h"
#include "edit/Mouseprocedures.h"
#include "edit/move.h"
#include "edit/selection.h"
#include "tools/bereken.h"
#include "tools/enterbuffers.h"
#include "tools/genmesh.h"
#include "view/autoscale.h"
#include "view/drawelems.h"
#include "view/moddraw.h"

namespace fs = std::filesystem;

// --- library ------------------------------------------------------------------------------------

// NAME.png and its like beside NAME.obj.
static std::string picturebeside(const fs::path& object) {
    for (const char* extension : {".png", ".svg", ".bmp", ".ico"}) {
        fs::path picture = object;
        std::error_code ec;
        if (fs::exists(picture.replace_extension(extension), ec)) return picture.string();
    }
    return {};
}

static std::string lowered(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z') c = char(c - 'A' + 'a');
    return text;
}

objectsform openobjects(const std::vector<std::string>& folders) {
    objectsform form;
    std::set<fs::path> seen;  // two names can lead to one folder
    for (const std::string& folder : folders) {
        std::error_code ec;
        if (!seen.insert(fs::weakly_canonical(folder, ec)).second) continue;
        for (const auto& entry : fs::directory_iterator(folder, ec)) {
            const fs::path& path = entry.path();
            if (entry.is_regular_file(ec) && lowered(path.extension().string()) == ".obj")
                form.library.push_back({path.stem().string(), path.string(), picturebeside(path)});
        }
    }
    std::ranges::sort(form.library, {}, [](const objectentry& e) { return lowered(e.name); });
    dropobject();
    previewbuffers = true;
    form.message = "Choose an object from the list, or press <Open...>";
    return form;
}

void closeobjects(objectsform& form) {
    const bool shown = form.ready;
    dropobject();
    form.ready = false;
    previewbuffers = false;
    if (shown) redrawall();
}

// --- the object in the buffers ------------------------------------------------------------------

static bool readtriple(const std::array<std::string, 3>& text, const char* formula, point3& value) {
    for (std::size_t k = 0; k < 3; ++k)
        if (!readvalue(text[k], formula, value[k])) return false;
    return true;
}

// The first fault and how many there are.
static std::string faulttext(const std::vector<std::string>& faults) {
    std::map<std::string, int> counted;
    for (const std::string& fault : faults) ++counted[fault];
    std::string text = faults.front();
    if (counted[text] > 1) text += " (" + numbertext(counted[text]) + " uses)";
    if (counted.size() > 1) text += ", and " + numbertext(int(counted.size()) - 1) + " more faults";
    return text + "; what has no value counts as 0";
}

static std::string countsofobject() {
    const int elements = int(tmpelems(0, 0));
    std::string text = numbertext(elements) + (elements == 1 ? " element, " : " elements, ") +
                       partsinwords(objgraphcount, objpatchcount, objgroupcount);
    if (objwithoutgroup > 0)
        text += ". " + numbertext(objwithoutgroup) +
                " patches name a group that the object lacks: their elements are in group 1";
    if (objinverted > 0)
        text += ". " + numbertext(objinverted) +
                " elements are inverted: it can not be accepted with these values";
    else if (!objhasend)
        text += ". The file has no END: part of it may be missing";
    return text;
}

// Makes the object with the values as they stand. faults: out, of its expressions.
static void makeobject(objectsform& form, std::vector<std::string>& faults) {
    form.ready = false;
    dropobject();
    objectplace place;
    if (form.file.path.empty()) return;
    if (!readtriple(form.at, "L", place.at) || !readtriple(form.turn, "Deg", place.turn)) {
        form.message = "Place and turn want a number in each box";
        return;
    }
    for (std::size_t i = 0; i < form.values.size(); ++i)
        objvarvalue(form.variables[i]) = form.values[i];
    faultlist taken;
    form.ready = guarded([&] { Readfile(form.file, place); },
                         [&](const runtimeerror& e) { form.message = e.what; });
    faults = taken.texts;
    if (!form.ready && faults.empty()) return;
    const std::string rest = form.ready ? "" : ". " + form.message;  // what came of the faults
    form.message = faults.empty() ? countsofobject() : faulttext(faults) + rest;
}

static void remake(objectsform& form) {
    std::vector<std::string> faults;
    makeobject(form, faults);
}

// --- choosing -----------------------------------------------------------------------------------

static void openobject(objectsform& form, const std::string& path) {
    form.labels.clear();
    form.values.clear();
    form.variables.clear();
    form.description.clear();
    form.picture = picturebeside(path);
    form.file = {};
    const bool good = guarded(
        [&] {
            const objectfile file{path, readwhole(path)};
            Readvar(file);
            form.file = file;
        },
        [&](const runtimeerror& e) { form.message = e.what; });
    if (good) {
        form.description = objdescription;
        for (int i = 1; i <= objvarcount; ++i) {
            if (objvartext(i).empty() && !isnumeric(objvarvalue(i))) continue;
            form.variables.push_back(i);
            form.labels.push_back(objvarname(i) + " : " + objvartext(i));
            form.values.push_back(objvarvalue(i));
        }
    }
    const std::string fault = form.message;
    remake(form);
    if (!good) form.message = fault;
    // The scale of an empty view fits nothing.
    const bool alone = form.ready && nnodes() == 0 && ngraphics() == 0;
    for (int v = 1; alone && v <= nviews; ++v) autoscale(v);
    redrawall();
}

void chooseobject(objectsform& form, int entry) {
    if (entry < 0 || entry >= int(form.library.size())) return;
    form.chosen = entry;
    openobject(form, form.library[std::size_t(entry)].path);
}

void getobject(objectsform& form) {
    filebox box;
    box.title = "Retrieve Symbol";
    box.filter = "All Files (*.*)|*.*|Object (*.obj)|*.obj";
    box.filterindex = 2;
    const filechoice choice = theplatform().askfile(box);
    if (!choice.chosen) return;
    form.chosen = -1;
    openobject(form, choice.path);
}

void choosepicture(objectsform& form) {
    filebox box;
    box.title = "Picture";
    box.filter =
        "All Files (*.*)|*.*|Bitmap (*.bmp)|*.bmp|Icon (*.ico)|*.ico|"
        "PNG (*.png)|*.png|SVG (*.svg)|*.svg";
    const filechoice choice = theplatform().askfile(box);
    if (choice.chosen) form.picture = choice.path;
}

// --- typing -------------------------------------------------------------------------------------

void editvariable(objectsform& form, int i, const std::string& text) {
    form.values[std::size_t(i)] = text;
    remake(form);
}

void editplace(objectsform& form, int axis, const std::string& text) {
    form.at[std::size_t(axis)] = text;
    remake(form);
}

void editturn(objectsform& form, int axis, const std::string& text) {
    form.turn[std::size_t(axis)] = text;
    remake(form);
}

// --- into the model -----------------------------------------------------------------------------

// One box a use, as far as anybody reads them.
static void tellfaults(const std::vector<std::string>& faults) {
    const std::size_t most = 20;
    for (std::size_t i = 0; i < std::min(faults.size(), most); ++i)
        theplatform().message(faults[i], icons::exclamation);
    if (faults.size() > most)
        theplatform().message("And " + std::to_string(faults.size() - most) + " more of these",
                              icons::exclamation);
}

void acceptobject(objectsform& form) {
    std::vector<std::string> faults;
    makeobject(form, faults);
    tellfaults(faults);
    if (!form.ready) {
        if (form.file.path.empty())
            form.message = "There is no object to accept; choose one first";
        else
            theplatform().message(form.message, icons::exclamation);
        return;
    }
    if (objinverted > 0) return;
    const hourglass wait;
    const int before = nelems();
    const entrance entered = enterbuffers([before] { takeobject(before); });
    if (!entered.done) return;
    form.message = "The object is part of the model" + entered.text +
                   ". Change a value or the place to put another one";
    form.ready = false;
    dropobject();
    redrawall();
}

void resetobject(objectsform& form) {
    form.at = form.turn = {"0", "0", "0"};
    if (!form.file.path.empty()) openobject(form, std::string(form.file.path));
}
