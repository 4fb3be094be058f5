// SPDX-License-Identifier: GPL-3.0-or-later
// Reading of the element catalogue.
#include "core/catalogue.h"

#include "core/session.h"
#include "core/textfile.h"

array1<std::string> eltypname, eltypdes;
array1<int> eltypnodes;
int neltypes;

void alloccatalogue() {
    eltypname.alloc(maxelementtypes - 1);
    eltypnodes.alloc(maxelementtypes - 1);
    eltypdes.alloc(maxelementtypes - 1);
    neltypes = 0;
}

static textin opencatalogue(const std::string& name) {
    try {
        return textin(findnocase(appdir + "/" + name));
    } catch (runtimeerror& e) {
        if (e.number == errfilenotfound)
            e.what =
                " " + name + " not found; Place this file in the same directory as kalvane.exe";
        throw e;
    }
}

static void readtypes() {
    textin in = opencatalogue("ELTYP.DAT");
    const int n = in.count();
    for (int t = 0; t < n; ++t) {
        eltypname(t) = in.text();
        const int count = in.count();
        if (count > 4 || (count == 0 && t != typenone))
            in.fail(errtype, "an element type has 1, 2, 3 or 4 nodes, found " +
                                 std::to_string(count) + " for \"" + eltypname(t) + "\"");
        eltypnodes(t) = count;
    }
    neltypes = n;
}

static void readdescriptions() {
    textin in = opencatalogue("ELDES.DAT");
    const int n = in.count();
    for (int t = 0; t < n; ++t) eltypdes(t) = in.text();
}

void loadcatalogue() {
    alloccatalogue();
    readtypes();
    readdescriptions();
}

int findtype(const std::string& name) {
    for (int t = 1; t < neltypes; ++t)
        if (eltypname(t) == name) return t;
    return 0;
}

int nodesoftype(float t) {
    return t >= 0 && t < maxelementtypes ? eltypnodes(long(t)) : 0;
}
