// SPDX-License-Identifier: GPL-3.0-or-later
// DEFAULTS.DAT both ways. The lines of the file are one table, so that writer and reader agree.
#include "files/settings.h"

#include <cmath>
#include <functional>
#include <vector>

#include "core/colours.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/textfile.h"
#include "core/views.h"
#include "edit/Mouseprocedures.h"
#include "view/moddraw.h"
#include "view/setviews.h"

namespace {
struct settingline {
    std::function<void(textout&)> write;
    std::function<void(textin&)> read;
};
}  // namespace

static int labeldigits = 3;  // number of label digits, kept for the file

static settingline positiveline(double& value, double most) {
    return {[&value](textout& out) { out.put(value); },
            [&value, most](textin& in) {
                const double read = in.number();
                if (!(read > 0 && read <= most))
                    in.fail(errtype, "a length above 0 was expected, found " + numbertext(read));
                value = read;
            }};
}

// Proximity tests are strict: at 0 nothing merges.
static settingline toleranceline(double& value) {
    return {[&value](textout& out) { out.put(value); },
            [&value](textin& in) {
                const double read = in.number();
                if (!(read >= 0 && std::isfinite(read)))
                    in.fail(errtype, "a length from 0 up was expected, found " + numbertext(read));
                value = read;
            }};
}

static settingline wholeline(int& value, int low, int high) {
    return {
        [&value](textout& out) { out.put(value); },
        [&value, low, high](textin& in) { value = in.wholewithin(low, high, "a whole number"); }};
}

static settingline colourline(colour& value) {
    return {[&value](textout& out) { out.put(value); },
            [&value](textin& in) {
                const long most = 0xFFFFFF, read = in.whole();
                if (read < 0 || read > most)
                    in.fail(errtype, "a colour was expected, found " + numbertext(read));
                value = colour(read);
            }};
}

static settingline singleline(array1<float>& list, int i) {
    return {[&list, i](textout& out) { out.put(list(i)); },
            [&list, i](textin& in) { list(i) = in.single(); }};
}

// Refuses what is not good for a view: a scale or an eye distance of 0 collapses the picture.
static settingline singleline(array1<float>& list, int v, bool (*isgood)(float),
                              const char* wanted) {
    return {[&list, v](textout& out) { out.put(list(v)); },
            [&list, v, isgood, wanted](textin& in) {
                const float value = in.single();
                if (!isgood(value))
                    in.fail(errtype,
                            std::string(wanted) + " was expected, found " + numbertext(value));
                list(v) = value;
            }};
}

// Written #TRUE# and #FALSE#; read in any case, with or without the marks, and as 0, -1 or 1.
static bool readflag(textin& in) {
    std::string word = in.text();
    std::erase(word, '#');
    for (char& c : word)
        if (c >= 'a' && c <= 'z') c = char(c - 'a' + 'A');
    if (word == "TRUE" || word == "-1" || word == "1") return true;
    if (word != "FALSE" && word != "0")
        in.fail(errtype, "#TRUE# or #FALSE# was expected, found \"" + word + "\"");
    return false;
}

static settingline flagline(std::function<bool()> get, std::function<void(bool)> set) {
    return {[get](textout& out) { out.raw(get() ? "#TRUE#" : "#FALSE#"); },
            [set](textin& in) { set(readflag(in)); }};
}

static settingline checkline(array1<menustate>& list, int i) {
    return flagline([&list, i] { return list(i).checked; },
                    [&list, i](bool on) { list(i).checked = on; });
}

static void addfontlines(std::vector<settingline>& lines, labelfont& font, colour& c) {
    lines.push_back({[&font](textout& out) { out.quoted(font.name); },
                     [&font](textin& in) { font.name = in.text(); }});
    lines.push_back(flagline([&font] { return font.bold; }, [&font](bool on) { font.bold = on; }));
    lines.push_back(
        flagline([&font] { return font.italic; }, [&font](bool on) { font.italic = on; }));
    lines.push_back(positiveline(font.size, 1000));
    lines.push_back(colourline(c));
}

static settingline underlineline(labelfont& font) {
    return flagline([&font] { return font.underline; }, [&font](bool on) { font.underline = on; });
}

static std::vector<settingline> settinglines() {
    std::vector<settingline> lines;
    lines.push_back({[](textout& out) { out.put(singleview ? 1 : 0); },
                     [](textin& in) { singleview = in.whole() != 0; }});
    lines.push_back(toleranceline(nodetol));
    lines.push_back(wholeline(labeldigits, 0, 15));
    lines.push_back(wholeline(stressglobal, 0, 1));
    lines.push_back(flagline([] { return bool(dim2d); }, [](bool on) { dim2d = on; }));
    for (int v = 1; v <= nviews; ++v)
        for (auto* list : {&viewvert, &viewhor}) lines.push_back(singleline(*list, v));
    for (int v = 1; v <= nviews; ++v) {
        lines.push_back(singleline(
            viewscale, v, [](float scale) { return scale > 0; }, "a view scale above 0"));
        lines.push_back(singleline(viewaw, v));
        lines.push_back(singleline(
            viewdist, v, [](float distance) { return distance != 0; },
            "an eye distance other than 0"));
        for (auto* list : {&viewptx, &viewpty, &viewptz}) lines.push_back(singleline(*list, v));
    }
    for (colour* c :
         {&backcolor, &meshcolor, &nodecolor, &patchcolor, &selcolor, &freecolor, &graphcolor,
          &concolor, &rotcolor, &loadcolor, &momcolor, &edgecolor, &defcolor, &hidcolor})
        lines.push_back(colourline(*c));
    lines.push_back(positiveline(unitveclen, 2));
    for (int i : {scrollbarson, globalaxison, localaxison})
        lines.push_back(checkline(mnuSettingsItem, i));
    for (int i = nodesdrawn; i <= loadsdrawn; ++i) lines.push_back(checkline(mnudrawlist, i));
    for (int i = noloads; i <= allcases; ++i) lines.push_back(checkline(viewloads, i));
    addfontlines(lines, nodelabelfont, nodelabelcolor);
    lines.push_back(underlineline(nodelabelfont));  // node labels alone have this line
    addfontlines(lines, elemlabelfont, elemlabelcolor);
    lines.push_back(wholeline(labelsize, 1, 200));
    return lines;
}

static std::string settingsfile() {
    return appdir + "/DEFAULTS.DAT";
}

void savesettings() {
    const bool saved = guarded(
        [] {
            textout out(settingsfile());
            for (const settingline& line : settinglines()) {
                line.write(out);
                out.endline();
            }
            out.commit();
        },
        [](const runtimeerror& e) { theplatform().message(e.what, icons::exclamation); });
    if (saved) theplatform().showstatus("Settings saved in " + settingsfile());
}

// Exactly one entry of the load view is on; the last one where the file has none of the others.
static void completeloads() {
    int on = 3;
    for (int i = 2; i >= 0; --i)
        if (viewloads(i).checked) on = i;
    checkonly(viewloads, on);
}

void getsettings() {
    guarded(
        [] {
            textin in(findnocase(settingsfile()));
            for (const settingline& line : settinglines()) line.read(in);
        },
        [](const runtimeerror& e) {
            addready();
            theplatform().message(
                e.what + (e.number == errfilenotfound
                              ? "\nStore settings first with [File,Save Settings]."
                              : ""),
                icons::exclamation);
        });
    stressloaded = false;  // the axes of stresses may be others now
    completeloads();
    arrangeviews();
    theplatform().refresh();
    redrawall();
}
