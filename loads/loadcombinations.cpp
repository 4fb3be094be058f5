// SPDX-License-Identifier: GPL-3.0-or-later
// Load combinations: the form of the dialog, the equation text, the changes of the model.
#include "loads/loadcombinations.h"

#include <algorithm>
#include <cmath>

#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/textfile.h"

static const int longestrow = 25;  // characters after which an equation goes on in a new row

// --- the equation -------------------------------------------------------------------------------

// Characters of a text in UTF-8: the bytes that do not continue one.
static int lengthof(const std::string& utf8) {
    return int(std::ranges::count_if(utf8, [](char c) { return (c & 0xC0) != 0x80; }));
}

std::vector<std::string> equationof(int c) {
    std::vector<std::string> rows(1);
    for (int l = 1; l <= nlc(); ++l) {
        const float m = lcomb(c, l), size = std::fabs(m);
        if (m == 0) continue;
        if (lengthof(rows.back()) > longestrow) rows.emplace_back();
        rows.back() += m < 0 ? "- " : "+ ";
        if (size != 1) rows.back() += numbertext(size) + " x ";
        rows.back() += shownname(lcname(l)) + " ";
    }
    return rows;
}

void showcomb(combinationform& form) {
    form.heading = "Equation of Load Combination: " + shownname(lcombname(curlcomb));
    form.equation = equationof(curlcomb);
    for (std::string& row : lcdesc.row()) row.clear();
    for (std::size_t r = 0; r < form.equation.size(); ++r) lcdesc(long(r) + 1) = form.equation[r];
}

// --- showing ------------------------------------------------------------------------------------

void loadloadcomb(combinationform& form) {
    form.names.clear();
    form.cases.clear();
    for (int c = 1; c <= ncomb(); ++c) form.names.push_back(lcombname(c));
    for (int l = 1; l <= nlc(); ++l) form.cases.push_back(lcname(l));
}

void putloadcomb(combinationform& form) {
    form.chosen = curlcomb - 1;
    form.chosencase = form.curlcase - 1;
    form.name = lcombname(curlcomb);
    form.multiplier = numbertext(lcomb(curlcomb, form.curlcase));
    form.message.clear();
}

combinationform openloadcombinations() {
    combinationform form;
    if (menupostItem(modeshape).checked) form.mode = curlcomb;
    // A mode shape's number stays when the shape is switched off.
    if (curlcomb < 1 || curlcomb > ncomb()) curlcomb = 1;
    loadloadcomb(form);
    putloadcomb(form);
    showcomb(form);
    return form;
}

void closeloadcombinations(const combinationform& form) {
    if (form.mode != 0) curlcomb = form.mode;
}

// --- the user's hand ----------------------------------------------------------------------------

void choosecomb(combinationform& form, int entry) {
    if (entry < 0 || entry >= ncomb()) return;
    curlcomb = entry + 1;
    putloadcomb(form);
    showcomb(form);
}

void choosecombcase(combinationform& form, int entry) {
    if (entry < 0 || entry >= nlc()) return;
    form.curlcase = entry + 1;
    putloadcomb(form);
}

void editcomb(combinationform& form) {
    form.message = "Press <Update> to save changes";
}

void leavemultiplier(combinationform& form) {
    if (!isnumeric(form.multiplier)) form.multiplier = "0";
}

// --- changes of the model -----------------------------------------------------------------------

static bool iscombname(const std::string& name, int last) {
    for (int c = 1; c <= last; ++c)
        if (lcombname(c) == name) return true;
    return false;
}

bool addloadcomb(combinationform& form) {
    if (ncomb() >= maxcombinations) {
        form.message = "Maximum number of loadcombinations";
        return false;
    }
    const int before = ncomb();
    curlcomb = before + 1;
    lcomb(0, 0) = float(curlcomb);
    lcomb(curlcomb, 0) = 0;
    std::string name = "Lcomb" + numbertext(curlcomb);
    while (iscombname(name, before)) name += "*";
    lcombname(curlcomb) = name;
    for (int l = 1; l <= nlc(); ++l) lcomb(curlcomb, l) = 0;
    loadloadcomb(form);
    putloadcomb(form);
    showcomb(form);
    form.message = name + " is new: choose a load case and its multiplier, then press <Update>";
    return true;
}

void copyloadcomb(int from, int to) {
    for (int l = 0; l <= nlc(); ++l) lcomb(to, l) = lcomb(from, l);
}

void addcopy(combinationform& form) {
    const int before = curlcomb;
    if (!addloadcomb(form)) return;
    copyloadcomb(before, curlcomb);
    showcomb(form);
    putloadcomb(form);
}

// Does the field hold a Single?
static bool ismultiplier(const combinationform& form) {
    return isnumeric(form.multiplier) && std::isfinite(float(numberof(form.multiplier)));
}

void getloadcomb(combinationform& form) {
    curlcomb = form.chosen + 1;
    form.curlcase = form.chosencase + 1;
    if (ismultiplier(form)) lcomb(curlcomb, form.curlcase) = float(numberof(form.multiplier));
}

static bool isnameofanothercomb(const std::string& name) {
    for (int c = 1; c <= ncomb(); ++c)
        if (c != curlcomb && lcombname(c) == name) return true;
    return false;
}

static std::string faultofcombname(const std::string& name) {
    if (name.find_first_not_of(' ') == name.npos) return "A load combination needs a name";
    return isnameofanothercomb(name) ? "Name allready excists" : "";
}

void updateloadcomb(combinationform& form) {
    form.message.clear();
    const std::string fault = faultofcombname(form.name);
    leavemultiplier(form);
    if (fault.empty() && !ismultiplier(form)) {
        form.message = "Multiplier " + form.multiplier + " is too large, nothing was stored";
        return;
    }
    if (fault.empty()) {
        lcombname(curlcomb) = form.name;
        form.chosen = curlcomb - 1;
        getloadcomb(form);
    }
    loadloadcomb(form);
    putloadcomb(form);
    form.message = fault;
    showcomb(form);
}

void removeloadcomb(int c) {
    const int old = ncomb();
    if (c < 1 || c > old) return;
    for (int i = c; i < old; ++i) {
        for (int l = 1; l <= nlc(); ++l) lcomb(i, l) = lcomb(i + 1, l);
        lcombname(i) = lcombname(i + 1);
    }
    for (int l = 0; l <= nlc(); ++l) lcomb(old, l) = 0;
    lcombname(old).clear();
    lcomb(0, 0) = float(old > 1 ? old - 1 : 1);
    if (curlcomb >= c && curlcomb > 1) --curlcomb;
}

void delloadcomb(combinationform& form) {
    if (ncomb() <= 1) {
        form.message = "Not allowed, one loadcombination minimum";
        return;
    }
    if (!theplatform().yes("Delete loadcombination?")) return;
    removeloadcomb(curlcomb);
    loadloadcomb(form);
    putloadcomb(form);
    showcomb(form);
}
