// SPDX-License-Identifier: GPL-3.0-or-later
// The writer of object files.
#include "tools/genfile.h"

#include <filesystem>
#include <vector>

#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/textfile.h"
#include "files/saving.h"
#include "tools/Surfaces.h"
#include "tools/genmesh.h"
#include "tools/groups.h"
#include "tools/objects.h"

namespace fs = std::filesystem;

static std::string descriptionline() {
    return "Object created form model:" + modelname;
}

// Numbers in the file of the graphic elements: free slots are left out.
static std::vector<int> numbersinfile(int& count) {
    std::vector<int> number(std::size_t(ngraphics()) + 1, 0);
    count = 0;
    for (int g = 1; g <= ngraphics(); ++g)
        if (kindof(graphics, g) != kindfree) number[std::size_t(g)] = ++count;
    return number;
}

// A patch whose recipe can no longer be followed stays away.
static std::vector<int> wholepatches() {
    const keptmeshchoice choice;
    std::vector<int> whole;
    for (int p = 1; p <= patches(0, 0, 0); ++p)
        if (loadpatch(graphics, p)) whole.push_back(p);
    return whole;
}

static void writevariables(textout& out) {
    static const char* const lines[] = {"NMESH,1,\"Mesh refine factor\"", "XSC,1,\"X-Scale\"",
                                        "YSC,1,\"Y-Scale\"", "ZSC,1,\"Z-Scale\""};
    out.raw("VARIABLES, 4").endline();
    for (const char* line : lines) out.raw(line).endline();
}

static void writegraphics(textout& out, const std::vector<int>& number, int count) {
    out.raw("GRAPHICS,").put(count).endline();
    for (int g = 1; g <= ngraphics(); ++g) {
        if (number[std::size_t(g)] == 0) continue;
        out.put(number[std::size_t(g)]).comma().put(kindof(graphics, g)).comma();
        out.put(graphics(g, 0, 1)).raw("*NMESH,");
        out.put(graphics(g, 0, 2)).comma().put(graphics(g, 0, 3));
        for (int j = 1; j <= 3; ++j) {
            out.comma().put(graphics(g, j, 1)).raw("*XSC,");
            out.put(graphics(g, j, 2)).raw("*YSC,");
            out.put(graphics(g, j, 3)).raw("*ZSC");
        }
        out.endline();
    }
}

static void writepatches(textout& out, const std::vector<int>& number) {
    const std::vector<int> whole = wholepatches();
    out.raw("PATCHES,").put(int(whole.size())).endline();
    for (const int p : whole) {
        out.put(int(patches(p, 0, 1)));
        for (int e = 1; e <= patches(p, 0, 0); ++e) {
            out.comma().put(int(patches(p, e, 0)));
            for (int k = 1; k <= patches(p, e, 0); ++k)
                out.comma().put(number[std::size_t(patches(p, e, k))]);
        }
        out.comma().put(int(patches(p, 0, 2))).endline();
    }
}

static void writegroups(textout& out) {
    out.raw("GROUPS,").put(ngroups()).endline();
    for (int g = 1; g <= ngroups(); ++g) {
        out.quoted(groupname(g));
        for (int k = 1; k <= groupfields; ++k) out.comma().put(groups(g, k));
        out.endline();
    }
    for (int g = 1; g <= ngroups(); ++g)
        for (int i = 1; i <= 6; ++i)
            out.line(groupmat(g, i, 1), groupmat(g, i, 2), groupmat(g, i, 3), groupmat(g, i, 4),
                     groupmat(g, i, 5), groupmat(g, i, 6));
}

void Genfile(const std::string& path) {
    int count = 0;
    const std::vector<int> number = numbersinfile(count);
    textout out(path);
    out.raw("DESCRIPTION").endline();
    out.raw(descriptionline()).endline();
    writevariables(out);
    writegraphics(out, number, count);
    writepatches(out, number);
    writegroups(out);
    out.raw("END").endline();
    out.commit();
}

// --- the form -----------------------------------------------------------------------------------

static std::string contentsofmodel() {
    int count = 0;
    numbersinfile(count);
    const int whole = int(wholepatches().size()), gone = patches(0, 0, 0) - whole;
    std::string text = partsinwords(count, whole, ngroups()) + ".";
    if (whole == 0)
        text +=
            " Without patches the object has no mesh: meshes that were accepted in the mesh "
            "generator have one.";
    if (gone > 0)
        text += " " + numbertext(gone) +
                " patches stay away, because a graphic element of theirs is gone.";
    return text +
           " Nodes and elements that no patch has made, constraints and loads are not part of an "
           "object.";
}

defobjectform opendefobject() {
    defobjectform form;
    form.description = descriptionline();
    form.contents = contentsofmodel();
    return form;
}

void savedefobject(defobjectform& form) {
    filebox box;
    box.title = "Save Object";
    box.filter = "All Files (*.*)|*.*|Object (*.obj)|*.obj";
    box.filterindex = 2;
    box.saving = true;
    const std::string path = asktarget(box, ".obj");
    if (path.empty()) return;
    guarded(
        [&] {
            Genfile(path);
            form.message = "Written: " + path;
        },
        [&](const runtimeerror& e) { form.message = "Not written. " + e.what; });
}
