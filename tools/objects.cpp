// SPDX-License-Identifier: GPL-3.0-or-later
// The readers of an object's sections.
#include "tools/objects.h"

#include <algorithm>
#include <cmath>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/modelsize.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/textfile.h"
#include "tools/Surfaces.h"
#include "tools/bereken.h"
#include "tools/genmesh.h"
#include "tools/groups.h"
#include "tools/meshcheck.h"
#include "tools/patchmesh.h"

std::string objdescription;
int objgraphcount, objpatchcount, objgroupcount, objinverted, objwithoutgroup;
bool objhasend;

static objectplace standing;          // of the object that is being read
static std::vector<int> lastelement;  // of each patch in the buffer

// --- fields -------------------------------------------------------------------------------------

// The value of the next field; more terms than there may be are told with their line, and so is the
// next section where a field is missing.
static double field(textin& in) {
    const std::string text = in.text();
    for (const char* keyword : {"GRAPHICS", "PATCHES", "GROUPS", "END"})
        if (text == keyword) in.fail(errtype, "a value was expected, found " + text);
    double value = 0;
    guarded([&] { value = bereken(text); },
            [&](const runtimeerror& e) { in.fail(e.number, e.what); });
    return value;
}

static long wholefield(textin& in, const char* what, long least, long most) {
    const double value = field(in);
    if (!(value >= double(least) && value <= double(most)) || value != std::floor(value))
        in.fail(errtype, std::string(what) + ": a whole number from " + numbertext(least) + " to " +
                             numbertext(most) + " was expected, found " + numbertext(value));
    return long(value);
}

static float singlefield(textin& in) {
    const double value = field(in);
    if (!std::isfinite(float(value)))
        in.fail(erroverflow, "the value " + numbertext(value) + " is too large");
    return float(value);
}

// --- first pass ---------------------------------------------------------------------------------

// The line of text stands behind the keyword or on the next line.
static void objreaddes(textin& in) {
    objdescription = in.line();
    if (objdescription.empty()) objdescription = in.line();
    const std::size_t n = objdescription.size();
    if (n >= 2 && objdescription.front() == '"' && objdescription.back() == '"')
        objdescription = objdescription.substr(1, n - 2);
}

static void objreadvar(textin& in) {
    const int most = 1000;  // as many as a list is usable with
    const int count = in.rows();
    if (count > most)
        in.fail(erroverflow, numbertext(count) + " variables, at most " + numbertext(most));
    allocobjvars(count);
    for (int i = 1; i <= count; ++i) {
        objvarname(i) = in.text();
        objvarvalue(i) = in.text();
        objvartext(i) = in.text();
    }
}

// --- graphic elements ---------------------------------------------------------------------------

namespace {
struct graphicrow {
    int number, kind;
    float spaces, factor, fourth;
    std::array<point3, 4> point;
};
}  // namespace

static point3 turned(point3 p, const objectplace& place) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (place.turn[axis] == 0) continue;
        const double angle = place.turn[axis] * pi / 180;
        double &u = p[(axis + 1) % 3], &v = p[(axis + 2) % 3];
        const double before = u;
        u = before * std::cos(angle) - v * std::sin(angle);
        v = before * std::sin(angle) + v * std::cos(angle);
    }
    return p + place.at;
}

static graphicrow readgraphic(textin& in) {
    graphicrow row{};
    row.number = int(wholefield(in, "number of a graphic element", 1, 10000000));
    row.kind = int(wholefield(in, "kind", kindfree, kindcircle));
    row.spaces = std::max(1.0f, std::round(singlefield(in)));
    row.factor = singlefield(in);
    row.fourth = singlefield(in);
    for (std::size_t j = 1; j <= 3; ++j) {
        for (double& x : row.point[j]) x = singlefield(in);
        // Of a line the third point is none, and stays at zero.
        if (j < 3 || row.kind > kindline) row.point[j] = turned(row.point[j], standing);
    }
    return row;
}

// A size that does not suffice has its own message, with no line of the file.
static void needroom(int size, long count) {
    if (const std::string fault = sizefault(size, count); !fault.empty())
        throw runtimeerror{errsubscript, fault};
}

static void objreadgra(textin& in) {
    const int count = in.rows(), offset = ngraphics();
    std::vector<graphicrow> rows;
    for (int i = 1; i <= count; ++i) {
        rows.push_back(readgraphic(in));
        objgraphcount = std::max(objgraphcount, rows.back().number);
    }
    needroom(5, long(offset) + objgraphcount);
    for (int g = offset + 1; g <= offset + objgraphcount; ++g)
        for (int j = 0; j <= 3; ++j) std::ranges::fill(graphics.row(g, j), 0.0f);
    for (const graphicrow& row : rows) {
        const int g = offset + row.number;
        if (graphics(g, 0, 1) != 0)
            throw runtimeerror{errtype, in.name() + ": graphic element " + numbertext(row.number) +
                                            " stands there twice"};
        graphics(g, 0, 0) = float(row.kind);
        graphics(g, 0, 1) = row.spaces;
        graphics(g, 0, 2) = row.factor;
        graphics(g, 0, 3) = row.fourth;
        for (int j = 1; j <= 3; ++j) setdefinitionpoint(graphics, g, j, row.point[std::size_t(j)]);
    }
}

// --- patches ------------------------------------------------------------------------------------

static void readchain(textin& in, int edge) {
    const int count = int(wholefield(in, "graphic elements of an edge", 1, maxedgepieces));
    for (int k = 1; k <= count; ++k) {
        const int number = int(wholefield(in, "number of a graphic element", 1, 10000000));
        const int g = ngraphics() + number;
        if (number > objgraphcount || kindof(graphics, g) == kindfree)
            in.fail(errtype, "patch " + numbertext(objpatchcount + 1) + " names graphic element " +
                                 numbertext(number) + ", which the object lacks");
        graphmesh(edge, k) = g;
    }
    graphmesh(edge, 0) = count;
}

static void readrecipe(textin& in) {
    mesheltype = int(wholefield(in, "element type", 1, maxelementtypes - 1));
    const int corners = eltypnodes(mesheltype);
    if (corners < 2)
        in.fail(errtype, "element type " + numbertext(mesheltype) + " can not be meshed");
    meshtype = corners == 2 ? "Line" : corners == 3 ? "Triang" : "Quad";
    for (int e = 1; e <= edgesof(meshtype); ++e) readchain(in, e);
    meshgroup = ngroups() + int(wholefield(in, "group of a patch", 0, 30000));
}

static void meshpatch(textin& in) {
    const int before = int(tmpelems(0, 0));
    checkedges(graphics);
    if (meshok) checkmeshsize(graphics);
    if (!meshok || !buildmesh(graphics))
        in.fail(errtype, "patch " + numbertext(objpatchcount + 1) + ": " + meshmessage);
    objinverted += invertedelements(before + 1);
}

static void objreadpatch(textin& in) {
    const int count = in.rows();
    for (int i = 1; i <= count; ++i) {
        readrecipe(in);
        meshpatch(in);
        guarded([&] { storepatch(patches(0, 0, 0) + objpatchcount + 1); },
                [&](const runtimeerror& e) { in.fail(e.number, "the patches: " + e.what); });
        ++objpatchcount;
        lastelement.push_back(int(tmpelems(0, 0)));
    }
}

// --- groups -------------------------------------------------------------------------------------

static std::string freename(std::string name, int before) {
    const auto taken = [&] {
        for (int g = 1; g < before; ++g)
            if (groupname(g) == name) return true;
        return false;
    };
    while (taken()) name += "*";
    return name;
}

static void readgrouprows(textin& in) {
    const int count = in.rows(), offset = ngroups();
    needroom(4, long(offset) + count);
    for (int g = offset + 1; g <= offset + count; ++g) {
        groupname(g) = freename(in.text(), g);
        for (int k = 1; k <= groupfields; ++k) groups(g, k) = field(in);
    }
    for (int g = offset + 1; g <= offset + count; ++g)
        for (int i = 1; i <= 6; ++i)
            for (int j = 1; j <= 6; ++j) groupmat(g, i, j) = singlefield(in);
    objgroupcount = count;
}

static void objreadgroups(textin& in) {
    guarded(
        [&] { readgrouprows(in); },
        [](const runtimeerror& e) {
            if (e.what.starts_with("Error: ")) throw e;  // the message of the size
            throw runtimeerror{e.number, "Error occurred while trying to read groups. " + e.what};
        });
}

// Elements of a group that the object lacks go to group 1.
static void checkgroups() {
    const int last = ngroups() + objgroupcount;
    const auto lacks = [&](float g) { return g <= float(ngroups()) || g > float(last); };
    for (int i = 1; i <= objpatchcount; ++i) {
        Integer& g = patches(patches(0, 0, 0) + i, 0, 2);
        if (!lacks(float(g))) continue;
        g = 1;
        ++objwithoutgroup;
    }
    for (int e = 1; e <= int(tmpelems(0, 0)); ++e)
        if (lacks(tmpelems(e, 5))) tmpelems(e, 5) = 1;
}

// --- the passes ---------------------------------------------------------------------------------

namespace {
using sectionreader = void (*)(textin&);
struct section {
    const char* keyword;
    sectionreader first, second;  // null: its lines are passed over
};
}  // namespace

static void passvar(textin& in) {
    for (long n = 3L * in.rows(); n > 0; --n) (void)in.text();
}

static const section sections[] = {
    {"DESCRIPTION", objreaddes, objreaddes}, {"VARIABLES", objreadvar, passvar},
    {"GRAPHICS", nullptr, objreadgra},       {"PATCHES", nullptr, objreadpatch},
    {"GROUPS", nullptr, objreadgroups},
};

static std::string upper(std::string text) {
    for (char& c : text)
        if (c >= 'a' && c <= 'z') c = char(c - 'a' + 'A');
    return text;
}

static void readsections(const objectfile& file, sectionreader section::*pass) {
    textin in(file.content, file.path);
    objhasend = false;
    while (!objhasend && !in.atend()) {
        const std::string keyword = upper(in.text());
        objhasend = keyword == "END";
        const auto* const found =
            std::ranges::find_if(sections, [&](const section& s) { return keyword == s.keyword; });
        const sectionreader reader = found == std::end(sections) ? nullptr : found->*pass;
        if (reader != nullptr)
            reader(in);
        else if (!in.atlineend())
            (void)in.line();
    }
}

void dropobject() {
    tmpnodes(0, 0) = tmpelems(0, 0) = 0;
    objgraphcount = objpatchcount = objgroupcount = objinverted = objwithoutgroup = 0;
    lastelement.clear();
}

void Readvar(const objectfile& file) {
    dropobject();
    objdescription.clear();
    allocobjvars(0);
    readsections(file, &section::first);
}

void Readfile(const objectfile& file, const objectplace& place) {
    const keptmeshchoice choice;
    dropobject();
    standing = place;
    try {
        readsections(file, &section::second);
        checkgroups();
    } catch (...) {
        dropobject();
        throw;
    }
}

void takeobject(int elementsbefore) {
    graphics(0, 0, 0) += float(objgraphcount);
    groups(0, 0) += objgroupcount;
    for (std::size_t i = 0; i < lastelement.size(); ++i)
        ownelements(patches(0, 0, 0) + int(i) + 1,
                    elementsbefore + 1 + (i == 0 ? 0 : lastelement[i - 1]),
                    elementsbefore + lastelement[i]);
    patches(0, 0, 0) = patches(0, 0, 0) + objpatchcount;
}

std::string partsinwords(int graphicelements, int patchcount, int groupcount) {
    const auto counted = [](int n, const char* one, const char* several) {
        return numbertext(n) + (n == 1 ? one : several);
    };
    return counted(graphicelements, " graphic element, ", " graphic elements, ") +
           counted(patchcount, " patch and ", " patches and ") +
           counted(groupcount, " group", " groups");
}
