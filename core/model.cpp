// SPDX-License-Identifier: GPL-3.0-or-later
// Storage of the model database.
#include "core/model.h"

#include <fstream>
#include <limits>
#include <string>
#include <variant>
#include <vector>

#include "core/elempatch.h"
#include "core/modeltable.h"
#include "core/platform.h"

array1<int> modelsize;

array3<float> nodes;
array1<int> nodesel;
array1<std::string> nodename;
array2<float> tmpnodes, nodework;

array2<float> elems;
array1<int> egroup;
array1<double> rotpo;
array1<int> elempatch;
array1<std::string> elemname;
array1<float> elemsel;
array2<Flag> elemvis;
array2<float> tmpelems;
array1<double> tmprotpo;
array2<double> elemdepth;
array3<float> endrelease;
array3<double> elemstress;
array1<Flag> elemflag;

array2<double> groups;
array1<std::string> groupname;
array3<float> groupmat;
array1<int> groupcolor, groupshow;

int ncon;
array1<int> connode, condof;
array1<float> conval;

array2<int> loadnode, loaddof;
array2<float> loadval;
array3<float> elemload;
array1<std::string> lcname;
array1<Integer> lctype;
array2<double> lcpar;
Integer curlc;
int nload;

array2<float> lcomb;
array1<std::string> lcombname, lcdesc;
int curlcomb;
array3<double> dispres;

array3<float> graphics, graphics2;
array2<int> graphsel, graphsel2, graphmesh, edgedata, edgegrid;
array1<float> edgechordax, edgechorday, edgechordaz, edgechordbx, edgechordby, edgechordbz;
array3<Integer> patches;
array1<float> patchsel;

int meshgroup = 1;

Flag hasmass, hasplates;
int doftype = 2;
Flag linepressure;
std::string commenttext;
bool modeltoolarge;

int resultflag;
Flag stressloaded;
double maxdisp;
int undomark;

template <typename T>
static void allocate(array1<T>& a, const std::vector<bound>& bounds) {
    a.alloc(bounds[0].upper());
}
template <typename T>
static void allocate(array2<T>& a, const std::vector<bound>& bounds) {
    a.alloc(bounds[0].upper(), bounds[1].upper());
}
template <typename T>
static void allocate(array3<T>& a, const std::vector<bound>& bounds) {
    a.alloc(bounds[0].upper(), bounds[1].upper(), bounds[2].upper());
}

// Results get their room where they are read.
static void allocate(const modelarray& row) {
    std::visit([&](auto* a) { row.role == roles::result ? a->clear() : allocate(*a, row.bounds); },
               row.cells);
}

static double bytesofsizes() {
    double sum = 0;
    for (const modelarray& row : modelarrays()) {
        if (row.role == roles::result) continue;
        double bytes = std::visit(
            [](const auto* a) { return double(sizeof(*a->block.cells.get())); }, row.cells);
        for (const bound& b : row.bounds) bytes *= double(b.upper() + 1);
        sum += bytes;
    }
    return sum;
}

// What the machine can give at this moment; no limit where it does not tell.
static double freebytes() {
    const double kibibyte = 1024;
    std::ifstream in("/proc/meminfo");
    std::string name, unit;
    double amount = 0, sum = 0;
    while (in >> name >> amount && std::getline(in, unit))
        if (name == "MemAvailable:" || name == "SwapFree:") sum += amount * kibibyte;
    return sum > 0 ? sum : std::numeric_limits<double>::infinity();
}

bool allocmodel() {
    return guarded(
        [] {
            // Not by trying: a machine that runs out of memory stands still for minutes before.
            if (bytesofsizes() > freebytes()) throw memoryerror();
            for (const modelarray& row : modelarrays()) allocate(row);
        },
        [](const runtimeerror&) {
            theplatform().message("Out of Memory, Reduce size of declaired model",
                                  icons::exclamation);
        });
}

void clearcounts() {
    ncon = nload = 0;
    nodes(0, 0, 0) = 0;
    elems(0, 0) = 0;
    graphics(0, 0, 0) = 0;
    groups(0, 0) = 0;
    resultflag = 0;
    stressloaded = false;
    maxdisp = 0;
    hasmass = hasplates = false;
}
