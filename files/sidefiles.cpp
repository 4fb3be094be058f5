// SPDX-License-Identifier: GPL-3.0-or-later
// Reading and writing of the files beside .tek.
#include "files/sidefiles.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/model.h"
#include "core/modelsize.h"
#include "core/newmodel.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/textfile.h"

static const int scaledfrom = 3;  // dof codes whose prescribed value the file holds times pi/180:
                                  // the rotations, and DZ with them
static const int nproperties = 12, oldproperties = 10;
static const int nparameters = 5, oldparameters = 4;

static textin open(const std::string& base, const char* extension) {
    return textin(findnocase(base + extension));
}

// The degree of freedom of a row; any number in a row that falls away, such as the zeros that other
// writers leave behind a deleted condition.
static int dofof(textin& in, bool dropped) {
    if (!dropped) return in.wholewithin(1, 6, "a degree of freedom");
    in.number();
    return 0;
}

// --- graphic elements ---------------------------------------------------------------------------

void writegra(textout& out) {
    for (int g = 1; g <= ngraphics(); ++g) {
        if (graphics(g, 0, 0) == 0) continue;
        out.put(graphics(g, 0, 0));  // kind; row 0 goes on with spaces, factor and 0
        for (int j = 0; j <= 3; ++j)
            for (int k = 1; k <= 3; ++k) out.comma().put(graphics(g, j, k));
        out.endline();
    }
}

void readgra(const std::string& base) {
    textin in = open(base, ".gra");
    int count = 0;
    while (!in.atend()) {
        ++count;
        if (count > modelsize(sizegraphics)) {
            in.skip(13);
            continue;
        }
        graphics(count, 0, 0) = float(in.wholewithin(1, 3, "a kind of graphic element"));
        for (int j = 0; j <= 3; ++j)
            for (int k = 1; k <= 3; ++k) graphics(count, j, k) = in.single();
        graphics(0, 0, 0) = float(count);
    }
    checksize(count);
}

// --- constraints --------------------------------------------------------------------------------

void writevpl(textout& out) {
    out.line(ncon);
    for (int i = 1; i <= ncon; ++i) {
        out.put(connode(i)).comma().put(condof(i)).comma();
        // Written as a Double, so that the Single in memory comes back unchanged.
        if (condof(i) >= scaledfrom)
            out.put(conval(i) * pi / 180);
        else
            out.put(conval(i));
        out.endline();
    }
}

void readvpl(const std::string& base) {
    textin in = open(base, ".vpl");
    const int count = in.rows();
    ncon = 0;
    int kept = 0;
    for (int i = 1; i <= count; ++i) {
        const long node = in.whole();
        const bool dropped = node < 1 || node > nnodes();
        const int dof = dofof(in, dropped);
        const double written = in.number();
        if (dropped) continue;
        const double value = dof >= scaledfrom ? written * 180 / pi : written;
        if (!std::isfinite(float(value)))
            in.fail(erroverflow, "the prescribed value " + numbertext(value) + " is too large");
        if (++kept > modelsize(sizeconditions)) continue;
        connode(kept) = int(node);
        condof(kept) = dof;
        conval(kept) = float(value);
    }
    needsize(sizeconditions, kept);
    ncon = std::min(kept, modelsize(sizeconditions));
}

// --- nodal loads --------------------------------------------------------------------------------

void writeknk(textout& out) {
    for (int lc = 1; lc <= nlc(); ++lc) {
        out.line(loadnode(lc, 0));
        for (int i = 1; i <= loadnode(lc, 0); ++i)
            out.line(loadnode(lc, i), loaddof(lc, i), loadval(lc, i));
    }
}

void readknk(const std::string& base) {
    textin in = open(base, ".knk");
    int lc = 0;
    while (!in.atend()) {
        ++lc;
        const int count = in.rows();
        checksize();
        if (modeltoolarge) return;
        int kept = 0;
        for (int i = 1; i <= count; ++i) {
            const long node = in.whole();
            const bool dropped = node < 1 || node > nnodes();
            const int dof = dofof(in, dropped);
            const double value = in.number();
            if (dropped) continue;
            if (!std::isfinite(float(value)))
                in.fail(erroverflow, "the load " + numbertext(value) + " is too large");
            if (++kept > modelsize(sizeconditions) || lc > modelsize(sizeloadcases)) continue;
            loadnode(lc, kept) = int(node);
            loaddof(lc, kept) = dof;
            loadval(lc, kept) = float(value);
        }
        needsize(sizeconditions, kept);
        nload = std::min(kept, modelsize(sizeconditions));
        if (lc <= modelsize(sizeloadcases)) loadnode(lc, 0) = nload;
    }
    needsize(sizeloadcases, lc);
    loadnode(0, 0) = std::clamp(lc, 1, modelsize(sizeloadcases));
}

// --- element groups -----------------------------------------------------------------------------

void writemlt(textout& out) {
    const int n = ngroups();
    out.line(groups(0, 0));
    for (int g = 1; g <= n; ++g) {
        out.quoted(groupname(g)).endline();
        for (int k = 1; k <= nproperties; ++k) out.line(groups(g, k));
    }
    for (int g = 1; g <= n; ++g)
        for (int i = 1; i <= 6; ++i) {
            const auto row = groupmat.row(g, i);
            out.line(row[1], row[2], row[3], row[4], row[5], row[6]);
        }
}

// Groups first..first+n-1 from a file with this many properties a group.
static void readgroupdata(textin& in, int first, int n, int properties) {
    for (int g = first; g < first + n; ++g) {
        groupname(g) = in.quoted();
        for (int k = 1; k <= nproperties; ++k) groups(g, k) = k <= properties ? in.number() : 0;
    }
}

static void readmatrices(textin& in, int first, int n) {
    for (int g = first; g < first + n; ++g)
        for (int i = 1; i <= 6; ++i)
            for (int j = 1; j <= 6; ++j) groupmat(g, i, j) = in.single();
}

// Reads the table as one of the old layout: ten properties a group and no matrices. False where it
// is none.
static bool isoldgrouptable(const std::string& base, int first, int n) {
    textin in = open(base, ".mlt");
    in.count();
    const auto neither = [](const runtimeerror&) {};
    if (!guarded([&] { readgroupdata(in, first, n, oldproperties); }, neither)) return false;
    for (int g = first; g < first + n; ++g)
        for (int i = 1; i <= 6; ++i) std::ranges::fill(groupmat.row(g, i), 0.0f);
    return in.atend();
}

// Reads the group table behind row `before`; sets the count before the rows, so that a table that
// does not fit is known by its count.
static int readgrouptable(const std::string& base, int before) {
    textin in = open(base, ".mlt");
    const int n = in.rows();
    groups(0, 0) = before + n;
    if (before + n > modelsize(sizegroups)) return n;
    try {
        readgroupdata(in, before + 1, n, nproperties);
        readmatrices(in, before + 1, n);
    } catch (const runtimeerror&) {
        if (!isoldgrouptable(base, before + 1, n)) throw;
    }
    return n;
}

void readmlt(const std::string& base) {
    readgrouptable(base, 0);
    checksize();
    if (!modeltoolarge && groups(0, 0) == 0) newgroup();
}

// The name with as many "*" as it takes to differ from the groups before it.
static void makenameunique(int g) {
    for (bool clash = true; clash;) {
        clash = false;
        for (int other = 1; other < g && !clash; ++other) clash = groupname(other) == groupname(g);
        if (clash) groupname(g) += "*";
    }
}

int appendmlt(const std::string& base) {
    const int before = ngroups();
    int n = 0;
    try {
        n = readgrouptable(base, before);
        if (before + n > modelsize(sizegroups))
            throw subscripterror(before + n, modelsize(sizegroups));
    } catch (const runtimeerror&) {
        groups(0, 0) = before;
        throw;
    }
    for (int g = before + 1; g <= before + n; ++g) makenameunique(g);
    return n;
}

// --- load cases ---------------------------------------------------------------------------------

void writelcd(textout& out) {
    out.line(nlc());
    for (int lc = 1; lc <= nlc(); ++lc) {
        out.quoted(lcname(lc)).endline();
        out.line(int(lctype(lc)));
        for (int k = 0; k < nparameters; ++k) out.line(lcpar(lc, k));
        if (lctype(lc) > caseaccx && lcpar(lc, accelementmass) == 1) elemmassflag = 1;
    }
}

static int readcasedata(textin& in, int parameters) {
    const int count = in.rows();
    needsize(sizeloadcases, count);
    for (int lc = 1; lc <= count && count <= modelsize(sizeloadcases); ++lc) {
        lcname(lc) = in.quoted();
        lctype(lc) = in.wholewithin(caseapplied, casebuoyancy, "a type of load case");
        for (int k = 0; k < parameters; ++k) lcpar(lc, k) = in.number();
        if (parameters == oldparameters) lcpar(lc, accelementmass) = 1;
    }
    return count;
}

void readlcd(const std::string& base) {
    textin in = open(base, ".lcd");
    int count = 0;
    try {
        count = readcasedata(in, nparameters);
    } catch (const runtimeerror& fault) {
        textin old = open(base, ".lcd");
        const auto neither = [](const runtimeerror&) {};
        const bool isold = fault.number != errsubscript &&
                           guarded([&] { count = readcasedata(old, oldparameters); }, neither) &&
                           old.atend();
        if (!isold) throw;
    }
    loadnode(0, 0) = std::clamp(count, 1, modelsize(sizeloadcases));
}

// --- load combinations --------------------------------------------------------------------------

void writelco(textout& out) {
    out.line(lcomb(0, 0));
    out.line(nlc());
    for (int c = 1; c <= ncomb(); ++c) {
        out.quoted(lcombname(c)).endline();
        for (int lc = 1; lc <= nlc(); ++lc) out.line(lcomb(c, lc));
    }
}

void readlco(const std::string& base) {
    textin in = open(base, ".lco");
    const int count = in.rows(), cases = in.rows();
    needsize(sizeloadcases, std::max(count > lcomb.upper1 ? count : 0, cases));
    if (count > lcomb.upper1 || cases > modelsize(sizeloadcases)) return;
    for (int c = 1; c <= count; ++c) {
        lcombname(c) = in.quoted();
        for (int lc = 1; lc <= cases; ++lc) lcomb(c, lc) = in.single();
    }
    lcomb(0, 0) = float(std::max(count, 1));
}

// --- element loads ------------------------------------------------------------------------------

void writeell(textout& out) {
    for (int lc = 1; lc <= nlc(); ++lc) {
        const int count = int(elemload(lc, 0, 0));
        out.line(count);
        for (int i = 1; i <= count; ++i)
            out.line(elemload(lc, i, 0), elemload(lc, i, 1), elemload(lc, i, 2));
    }
}

void readell(const std::string& base) {
    textin in = open(base, ".ell");
    int lc = 0;
    while (!in.atend()) {
        ++lc;
        const int count = in.rows();
        int kept = 0;
        for (int i = 1; i <= count; ++i) {
            const float e = in.single(), kind = in.single(), value = in.single();
            if (e < 1 || e > elems(0, 0) || e != std::floor(e)) continue;
            if (++kept > modelsize(sizeconditions) || lc > modelsize(sizeloadcases)) continue;
            elemload(lc, kept, 0) = e;
            elemload(lc, kept, 1) = kind;
            elemload(lc, kept, 2) = value;
        }
        needsize(sizeconditions, kept);
        if (lc <= modelsize(sizeloadcases))
            elemload(lc, 0, 0) = float(std::min(kept, modelsize(sizeconditions)));
    }
    needsize(sizeloadcases, lc);
    elemload(0, 0, 0) = float(std::min(lc, modelsize(sizeloadcases)));
}

// --- patches ------------------------------------------------------------------------------------

void writepat(textout& out) {
    const int count = patches(0, 0, 0);
    out.line(count);
    for (int p = 1; p <= count; ++p) {
        const int edges = patches(p, 0, 0);
        out.line(edges, int(patches(p, 0, 1)), int(patches(p, 0, 2)));
        for (int j = 1; j <= edges; ++j) {
            out.put(int(patches(p, j, 0)));
            for (int k = 1; k <= patches(p, j, 0); ++k) out.comma().put(int(patches(p, j, k)));
            out.endline();
        }
    }
}

// A patch may name a graphic element that was deleted since: the number is kept, and who uses
// patches passes over members that do not exist.
void readpat(const std::string& base) {
    const int mostmember = 32767;
    textin in = open(base, ".pat");
    const int count = in.rows();
    for (int p = 1; p <= count; ++p) {
        const int edges = in.wholewithin(0, maxpatchedges, "a number of edges");
        patches(p, 0, 0) = edges;
        patches(p, 0, 1) = in.whole();
        patches(p, 0, 2) = in.whole();
        for (int j = 1; j <= edges; ++j) {
            const int pieces = in.wholewithin(0, maxedgepieces, "a number of graphic elements");
            patches(p, j, 0) = pieces;
            for (int k = 1; k <= pieces; ++k)
                patches(p, j, k) = in.wholewithin(0, mostmember, "a graphic element");
        }
    }
    patches(0, 0, 0) = count;
}

// --- comment ------------------------------------------------------------------------------------

// In memory a line ends with LF, in the file with CR LF as in all others.
void writetxt(textout& out) {
    std::string text;
    for (const char c : commenttext) {
        if (c == '\n') text += '\r';
        text += c;
    }
    out.raw(text);
}

void readtxt(const std::string& base) {
    const std::string text = toutf8(readwhole(findnocase(base + ".txt")));
    commenttext.clear();
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool pair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
        if (!pair) commenttext += text[i] == '\r' ? '\n' : text[i];
    }
    commentvisible = !commenttext.empty();
}
