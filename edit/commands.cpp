// SPDX-License-Identifier: GPL-3.0-or-later
// Direct commands. State: the circle of the node found last.
#include "edit/commands.h"

#include <cmath>
#include <functional>

#include "core/colours.h"
#include "core/journal.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/units.h"
#include "core/views.h"
#include "edit/modes.h"
#include "edit/move.h"
#include "view/drawelems.h"
#include "view/moddraw.h"
#include "view/pen.h"
#include "view/scaleview.h"

std::string commandtext;
std::string commandfield[4];
double cmdval1, cmdval2, cmdval3;
double selcentrex, selcentrey, selcentrez;

const char* const commandhelp[10] = {
    "Help on direct commands",
    "dx=x1;x2;x3 to get a relative move of the selected nodes",
    "ax=x1;x2;x3 to go to the absolute location, use * to fix a dof.",
    "rx=45 to rotate the selected nodes 45 degree around the global X axis ",
    "     use ry= and rz= for the y-axis and Z axis. ",
    "sc=scx;scy;scz to multiply the coordinates of the selected nodes by scx, scy and scz",
    "mxy to mirror the selected nodes in the X-Y plane.",
    "myz to mirror the selected nodes in the Y-Z plane.",
    "mxz to mirror the selected nodes in the X-Z plane.",
    "fn find node"};

// --- fields -------------------------------------------------------------------------------------

static void tellunread(const std::string& text) {
    messagebox box;
    box.text = text;
    box.title = "Error reading input";
    box.icon = icons::exclamation;
    theplatform().show(box);
}

// A number, but one beyond the range of a Double.
static bool istoolarge(const std::string& field) {
    const std::size_t begin = std::min(field.find_first_not_of(' '), field.size());
    double value = 0;
    const char* end = nullptr;
    return scannumber(field.data() + begin, field.data() + field.size(), value, end) ==
           numberfault::toolarge;
}

// Places and ways are lengths; the first value of a turn is its angle.
static const char* formulaof(int field) {
    const char kind = commandtext.empty() ? '\0' : commandtext[0];
    if (kind == 'r' && field == 1) return "Deg";
    return kind == 'a' || kind == 'd' || kind == 'r' ? "L" : "";
}

bool parsecommand() {
    std::string fields[4];
    int field = 1;
    for (const char c : commandtext.substr(std::min<std::size_t>(3, commandtext.size()))) {
        if (c == ';') {
            ++field;
        } else if (field <= 3) {
            fields[field] += c;
        } else {
            tellunread("Error format direct input command. Use ; as list seperator");
            return false;
        }
    }
    for (const std::string& text : fields)
        if (istoolarge(text)) {
            tellunread("The number " + text + " is too large. Nothing was changed.");
            return false;
        }
    double* const values[] = {&cmdval1, &cmdval2, &cmdval3};
    for (int i = 1; i <= 3; ++i) {
        commandfield[i] = fields[i];
        if (hasunit(fields[i]) && !readvalue(fields[i], formulaof(i), *values[i - 1])) {
            tellunread(valuefault(fields[i], formulaof(i)) + ". Nothing was changed.");
            return false;
        }
        *values[i - 1] = valueof(fields[i], formulaof(i));
    }
    return true;
}

static bool isfixed(int axis) {
    return commandfield[axis + 1] == "*";
}

static double fieldvalue(int axis) {
    return axis == 0 ? cmdval1 : axis == 1 ? cmdval2 : cmdval3;
}

// --- the points that a command works on ---------------------------------------------------------

static bool changed;  // the command has changed places

// Calls change(point) with the three coordinates of each selected node and graphic point.
static void eachpoint(const std::function<void(double*)>& change) {
    if (nodesel(0) + graphsel2(0, 0) == 0) return;
    if (!redrawedit) eraseselected();
    changed = changeselected(change);
    if (!redrawedit) drawselectedplain();
    if (changed) pasteflag = true;
}

void findcentroid() {
    const int count = nodesel(0) + graphsel2(0, 0);
    if (count == 0) return;
    double sum[3] = {0, 0, 0};
    for (int i = 1; i <= nodesel(0); ++i)
        for (int k = 0; k < 3; ++k) sum[k] += nodes(0, nodesel(i), k);
    for (int i = 1; i <= graphsel2(0, 0); ++i)
        for (int k = 0; k < 3; ++k) sum[k] += graphics(graphsel2(i, 0), graphsel2(i, 1), k + 1);
    selcentrex = sum[0] / count;
    selcentrey = sum[1] / count;
    selcentrez = sum[2] / count;
}

// --- moves --------------------------------------------------------------------------------------

// Gives the point to a mode that takes points. False where none runs.
static bool givepoint(bool relative) {
    moderow* const row = runningmode();
    if (row == nullptr || !row->commandpoint) return false;
    double point[3] = {0, 0, 0};
    if (row->lastpoint) row->lastpoint(point);
    for (int k = 0; k < 3; ++k) {
        if (relative)
            point[k] += fieldvalue(k);
        else if (!isfixed(k))
            point[k] = fieldvalue(k);
    }
    if (checkplace(point)) row->commandpoint(point[0], point[1], point[2]);
    return true;
}

static void relativemove() {
    if (givepoint(true)) return;
    eachpoint([](double* p) {
        for (int k = 0; k < 3; ++k) p[k] += fieldvalue(k);
    });
}

static void absolutemove() {
    if (givepoint(false)) return;
    eachpoint([](double* p) {
        for (int k = 0; k < 3; ++k)
            if (!isfixed(k)) p[k] = fieldvalue(k);
    });
}

// --- find node ----------------------------------------------------------------------------------

static int searchednode() {
    if (cmdval1 != 0) return cmdval1 >= 1 && cmdval1 <= nnodes() ? int(cmdval1) : 0;
    int found = 0;
    if (commandfield[1].empty()) return 0;
    for (int n = 1; n <= nnodes(); ++n)
        if (nodename(n) == commandfield[1]) found = n;
    return found;
}

static point2 foundplace;  // of the circle about the node found last, in view 1
static bool foundshown;    // the circle has not been taken away since

static void drawfound(surface& s, colour c) {
    const double foundsize = 0.5;
    nodesize = foundsize;
    const keptpen pen(&s);
    s.toplane(planes::marks);
    s.fillsolid = false;
    s.circle(foundplace.x, foundplace.y, nodesize / 4 * 3, c);
    s.show();
}

void endfind() {
    surface* const s = target(1);
    if (s == nullptr || !foundshown) return;
    foundshown = false;
    drawfound(*s, backcolor);
    const keptpen pen;
    drawcolor = selcolor;
    drawselection(1);  // where the circle lay on it
    s->show();
}

static void findnode() {
    endfind();
    const int n = searchednode();
    surface* const s = target(1);
    if (n == 0 || s == nullptr) return;
    const keptpoint kept;
    prepareview(1);
    setnode(n, 1);
    projectpoint(1);
    foundplace = {scrx, scry};
    foundshown = true;
    drawfound(*s, rgb(255, 0, 0));
}

// --- turns, scales, mirrors ---------------------------------------------------------------------

// Six decimals take the trace of cos 90 away.
static double rounded(double v) {
    return std::floor(v * 1000000 + 0.5) / 1000000;
}

// Turns about x and y start at the centroid and place it at fields 2 and 3; a turn about z goes
// about the point in those fields.
static void rotate(int axis) {
    const double a = cmdval1 / 180 * pi, c = std::cos(a), s = std::sin(a);
    findcentroid();
    eachpoint([&](double* p) {
        const double x = p[0], y = p[1], z = p[2];
        if (axis == 0) {
            const double dy = y - selcentrey, dz = z - selcentrez;
            p[1] = cmdval2 + rounded(dy * c - dz * s);
            p[2] = cmdval3 + rounded(dy * s + dz * c);
        } else if (axis == 1) {
            const double dx = x - selcentrex, dz = z - selcentrez;
            p[0] = cmdval2 + rounded(dx * c - dz * s);
            p[2] = cmdval3 + rounded(dx * s + dz * c);
        } else {
            const double dx = x - cmdval2, dy = y - cmdval3;
            p[0] = cmdval2 + rounded(dx * c - dy * s);
            p[1] = cmdval3 + rounded(dx * s + dy * c);
        }
    });
}

static void scale() {
    eachpoint([](double* p) {
        for (int k = 0; k < 3; ++k)
            if (!isfixed(k) && fieldvalue(k) != 0) p[k] *= fieldvalue(k);
    });
}

static void mirror(int axis) {
    double c = cmdval1;
    if (commandfield[1].empty() || isfixed(0)) {
        findcentroid();
        c = axis == 0 ? selcentrex : axis == 1 ? selcentrey : selcentrez;
    }
    eachpoint([&](double* p) { p[axis] = 2 * c - p[axis]; });
}

// "mxy" and "mxy=c" carry their field behind the name and an optional equals sign.
static bool parsemirror() {
    const std::string whole = commandtext;
    if (commandtext.size() > 3 && commandtext[3] == '=') commandtext.erase(3, 1);
    const bool good = parsecommand();
    commandtext = whole;
    return good;
}

// --- dispatch -----------------------------------------------------------------------------------

namespace {
struct directcommand {
    const char* name;
    bool whileadding;  // also while elements are added
    bool (*parse)();
    void (*run)();
};
}  // namespace

static const directcommand commands[] = {
    {"dx=", true, parsecommand, relativemove},
    {"ax=", true, parsecommand, absolutemove},
    {"hel", true, nullptr, [] { theplatform().showdialog("cardhelp"); }},
    {"fn=", true, parsecommand, findnode},
    {"rx=", false, parsecommand, [] { rotate(0); }},
    {"ry=", false, parsecommand, [] { rotate(1); }},
    {"rz=", false, parsecommand, [] { rotate(2); }},
    {"sc=", false, parsecommand, scale},
    {"mxy", false, parsemirror, [] { mirror(2); }},
    {"myz", false, parsemirror, [] { mirror(0); }},
    {"mxz", false, parsemirror, [] { mirror(1); }},
};

static void drawmoved(colour c) {
    const keptpen pen;
    drawcolor = c;
    drawselectionall();
}

std::vector<commandrow>& morecommands() {
    static std::vector<commandrow> rows;
    return rows;
}

void dispatchcommand() {
    changed = false;
    drawmoved(backcolor);
    const std::string name = commandtext.substr(0, 3);
    for (const directcommand& row : commands) {
        if (name != row.name) continue;
        if (addelemmode && !row.whileadding) break;
        if (row.parse == nullptr || row.parse()) row.run();
        break;
    }
    drawmoved(selcolor);
    for (const commandrow& row : morecommands())
        if (name == row.name) row.run(commandtext);
    if (changed && redrawedit) redrawall();  // what hangs on the moved points follows
}

void runcommand(const std::string& text) {
    const step s(text);
    const hourglass wait;
    commandtext = text;
    guarded(dispatchcommand, [](const runtimeerror& e) {
        drawmoved(selcolor);
        theplatform().message(e.what, icons::exclamation);
    });
    theplatform().refresh();
}
