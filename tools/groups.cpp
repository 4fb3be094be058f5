// SPDX-License-Identifier: GPL-3.0-or-later
// Element groups: the form of their dialog.
#include "tools/groups.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/modelitems.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/textfile.h"
#include "core/units.h"
#include "core/views.h"
#include "view/moddraw.h"

const char allgroups[] = "All Groups";

const groupcaption groupcaptions[groupfields + 1] = {
    {"", ""},
    {"E Modulus", "F/L^2"},
    {"Poisson ratio", "-"},
    {"Specific Mass", "W/L^3"},
    {"Thickness | Area", "L | L^2"},
    {"Stress condition", ""},
    {"Section rotation", "Deg"},
    {"I xx", "L^4"},
    {"W xx", "L^3"},
    {"I yy", "L^4"},
    {"W yy", "L^3"},
    {"I zz", "L^4"},
    {"W zz", "L^3"},
};

const int lastmaterialfield = 3;  // E modulus, Poisson ratio, specific mass
const int planefield = 5;         // 0 plane stress, 1 plane strain

// Place of row i, column j (1..6) among the matrix boxes.
static std::size_t matrixbox(int i, int j) {
    return std::size_t(i - 1 + 6 * (j - 1));
}

static bool isblank(const std::string& text) {
    return text.find_first_not_of(' ') == text.npos;
}

// --- between boxes and model --------------------------------------------------------------------

static std::string formulaof(const groupform& form, int field) {
    const auto g = std::size_t(meshgroup);
    return groupformula(meshgroup != 0 && g < form.uses.size() ? form.uses[g] : groupuse(), field);
}

static void tellnonumber(groupform& form, const std::string& what, const std::string& text,
                         const std::string& formula) {
    if (form.message.empty() && !isblank(text))
        form.message = what + ": " + valuefault(text, formula) + ", 0 is stored";
}

static void getmatrix(groupform& form) {
    for (int i = 1; i <= 6; ++i)
        for (int j = 1; j <= 6; ++j) {
            const std::string& text = form.matrix[matrixbox(i, j)];
            const std::string what =
                "Matrix row " + std::to_string(i) + ", column " + std::to_string(j);
            double value = 0;
            const char* const formula = matrixformula(i, j);
            if (!readvalue(text, formula, value)) tellnonumber(form, what, text, formula);
            if (std::abs(value) <= std::numeric_limits<float>::max())
                groupmat(meshgroup, i, j) = float(value);
            else if (form.message.empty())
                form.message = what + ": " + text + " is too large, the old value is kept";
        }
}

void getgroup(groupform& form) {
    form.message.clear();
    if (meshgroup == 0) return;
    for (int k = 1; k <= groupfields; ++k) {
        const std::string& text = form.text[std::size_t(k)];
        double value = 0;
        const std::string formula = formulaof(form, k);
        if (!readvalue(text, formula, value))
            tellnonumber(form, groupcaptions[k].caption, text, formula);
        groups(meshgroup, k) = value;
    }
    getmatrix(form);
}

void setplane(groupform& form) {
    const std::string& text = form.text[planefield];
    if (form.all && isblank(text))
        form.plane = "Toggle";
    else
        form.plane = text == "1" ? "Plane Strain" : "Plane Stress";
}

void putgroup(groupform& form) {
    form.all = meshgroup == 0;
    form.text.fill("");
    form.matrix.fill("");
    for (int k = 1; k <= groupfields; ++k)
        form.unit[std::size_t(k)] =
            unitstext.empty() ? groupcaptions[k].unit : unitname(formulaof(form, k));
    if (form.all) {
        form.name = allgroups;
        setplane(form);
        return;
    }
    form.name = groupname(meshgroup);
    form.shade = groupcolor(meshgroup);
    for (int k = 1; k <= groupfields; ++k)
        form.text[std::size_t(k)] = numbertext(groups(meshgroup, k));
    for (int i = 1; i <= 6; ++i)
        for (int j = 1; j <= 6; ++j)
            form.matrix[matrixbox(i, j)] = numbertext(groupmat(meshgroup, i, j));
    setplane(form);
}

void notename(groupform& form) {
    form.names.clear();
    for (int g = 1; g <= ngroups(); ++g) form.names.push_back(groupname(g));
    form.names.push_back(allgroups);
}

static void showgroup(groupform& form, int g) {
    meshgroup = g;
    putgroup(form);
}

groupform opengroups() {
    groupform form;
    form.uses = groupuses();
    meshgroup = 0;
    notename(form);
    showgroup(form, std::min(1, ngroups()));
    return form;
}

// --- the list -----------------------------------------------------------------------------------

static bool isnametaken(const std::string& name, int except) {
    for (int g = 1; g <= ngroups(); ++g)
        if (g != except && groupname(g) == name) return true;
    return name == allgroups;
}

bool changename(groupform& form, const std::string& name) {
    form.message.clear();
    if (meshgroup != 0 && name != groupname(meshgroup)) {
        if (isblank(name))
            form.message = "A group needs a name";
        else if (isnametaken(name, meshgroup))
            form.message = "Name allready excists";
        else
            groupname(meshgroup) = name;
    }
    form.name = meshgroup == 0 ? allgroups : groupname(meshgroup);
    notename(form);
    return form.message.empty();
}

// Stores the group that is left; the message tells which one it was.
static void leavegroup(groupform& form) {
    getgroup(form);
    if (!form.message.empty()) form.message = shownname(groupname(meshgroup)) + ", " + form.message;
}

void choosegroup(groupform& form, int row) {
    leavegroup(form);
    showgroup(form, row >= 0 && row < ngroups() ? row + 1 : 0);
}

// The colour as delivered, or the next one that no group has.
static colour freecolour(int g) {
    const int tried = 10;  // they repeat then
    for (int k = 0; k < tried; ++k) {
        const colour c = groupcolorof(g + k);
        if (std::find(&groupcolor(1), &groupcolor(g), c) == &groupcolor(g)) return c;
    }
    return groupcolorof(g);
}

void addgroup(groupform& form) {
    if (ngroups() >= modelsize(sizegroups)) {
        form.message = "Maximum number of groups";
        return;
    }
    leavegroup(form);
    std::string name = "GR " + std::to_string(ngroups() + 1);
    while (isnametaken(name, 0)) name += "*";
    const int g = appenditems(items::group);
    groupname(g) = name;
    groupcolor(g) = freecolour(g);
    // Of the group on show it has the material; the section is its own.
    for (int k = 1; k <= lastmaterialfield && meshgroup != 0; ++k)
        groups(g, k) = groups(meshgroup, k);
    notename(form);
    showgroup(form, g);
}

// Row g leaves the table and those above move down. No element is in group g; a patch, a buffered
// element or a free slot that names it takes the group instead, a view shows all groups.
void removegroup(int g) {
    const int instead = std::max(g - 1, 1), last = ngroups();
    newnumbers number(std::size_t(last) + 1, 0);
    for (int i = 1; i <= last; ++i) number[std::size_t(i)] = i < g ? i : i == g ? 0 : i - 1;
    closeitems(items::group, number);
    followitems(items::group, number, instead);
}

bool isgroupused(int g) {
    for (int e = 1; e <= nelems(); ++e)
        if (egroup(e) == g && elems(e, 0) != 0) return true;
    return false;
}

void deletegroup(groupform& form) {
    form.message.clear();
    const int g = meshgroup;
    if (ngroups() <= 1) {
        form.message = "Not allowed, one group minimum";
        return;
    }
    if (g == 0) {
        form.message = "Choose the group to delete from the list";
        return;
    }
    if (!theplatform().yes("Delete Group?")) return;
    if (isgroupused(g)) {
        form.message = "Not deleted,Group in use";
        return;
    }
    const int next = std::max(g - 1, 1);
    removegroup(g);
    form.redraw = true;
    notename(form);
    showgroup(form, next);
}

// --- edits --------------------------------------------------------------------------------------

static void notechange(groupform& form) {
    form.message =
        form.all ? "Press <Update> to apply edit to all groups" : "Press <Update> to save changes";
}

void editfield(groupform& form, int field, const std::string& text) {
    form.text[std::size_t(field)] = text;
    if (field == planefield) setplane(form);
    notechange(form);
}

void editmatrix(groupform& form, int index, const std::string& text) {
    if (form.all) return;
    form.matrix[std::size_t(index)] = text;
    const int i = index / 6 + 1, j = index - 6 * (i - 1) + 1;
    if (i > j) form.matrix[matrixbox(i, j)] = text;
    notechange(form);
}

void toggleplane(groupform& form) {
    double value = 0;
    const bool on = readnumber(form.text[planefield], value) && value != 0;
    editfield(form, planefield, on ? "0" : "1");
}

void choosecolour(groupform& form, colour c) {
    if (meshgroup == 0 || c == groupcolor(meshgroup)) return;
    form.shade = groupcolor(meshgroup) = c;
    form.redraw = true;
}

void togglesprings(groupform& form) {
    form.springs = !form.springs;
}

static void updateall(groupform& form) {
    if (!theplatform().yes("Edit will be applied to all groups, continue?")) return;
    for (int k = 1; k <= groupfields; ++k) {
        double value = 0;
        const std::string& text = form.text[std::size_t(k)];
        const std::string formula = formulaof(form, k);
        if (!readvalue(text, formula, value)) {
            if (form.message.empty() && !isblank(text))
                form.message = std::string(groupcaptions[k].caption) + ": " +
                               valuefault(text, formula) + ", the groups keep their values";
            continue;
        }
        for (int g = 1; g <= ngroups(); ++g) groups(g, k) = value;
    }
}

void updategroups(groupform& form) {
    form.message.clear();
    if (form.all) {
        updateall(form);
        return;
    }
    getgroup(form);
    putgroup(form);
}

bool readygroups(groupform& form) {
    getgroup(form);
    if (!form.message.empty()) {
        putgroup(form);
        return false;
    }
    meshgroup = std::max(meshgroup, 1);
    if (form.redraw) redrawall();
    form.redraw = false;
    return true;
}
