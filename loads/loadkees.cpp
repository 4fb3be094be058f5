// SPDX-License-Identifier: GPL-3.0-or-later
// Load cases: the form of the dialog and the changes it makes to the model.
#include "loads/loadkees.h"

#include "core/formulas.h"
#include "core/labels.h"
#include "core/model.h"
#include "core/newmodel.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/units.h"

static const int rotational = 3;  // directions from here on turn about an axis

static const char* const presstosave = "Press <Update> to save changes";

// --- showing ------------------------------------------------------------------------------------

void setacclabel(loadcaseform& form) {
    form.centreshown = false;
    form.accelerationshown = form.directionshown = form.kind == kindacceleration;
    form.waveshown = form.kind == kindwave;
    form.windshown = form.kind == kindwind;
    form.buoyancyshown = form.kind == kindbuoyancy;
}

static void showdirection(loadcaseform& form, int direction) {
    form.lcdirection = direction;
    form.unit = parameterformula(caseaccx + direction, accvalue);
    form.centreshown = form.kind == kindacceleration && direction >= rotational;
}

// The centre of rotation stands with a rotational direction, also when the kind comes back to it.
static void showkind(loadcaseform& form, int kind) {
    form.kind = kind;
    setacclabel(form);
    showdirection(form, form.lcdirection);
}

static int kindoftype(int type) {
    if (type == caseapplied) return kindapplied;
    return type < casewave ? kindacceleration : kindwave + type - casewave;
}

void loadloadcase(loadcaseform& form) {
    form.numbers.clear();
    form.names.clear();
    for (int i = 1; i <= nlc(); ++i) {
        form.numbers.push_back(numbertext(i));
        form.names.push_back(lcname(i));
    }
}

template <std::size_t N>
static void showparameters(std::array<std::string, N>& boxes) {
    for (std::size_t k = 0; k < N; ++k) boxes[k] = numbertext(lcpar(curlc, long(k)));
}

void putloadcase(loadcaseform& form) {
    const int type = lctype(curlc);
    form.chosen = curlc - 1;
    form.name = lcname(curlc);
    if (kindoftype(type) == kindacceleration) form.lcdirection = type - caseaccx;
    showkind(form, kindoftype(type));
    switch (form.kind) {
        case kindacceleration:
            showparameters(form.acceleration);
            form.elementmass = lcpar(curlc, accelementmass) == 0 ? 0 : 1;
            break;
        case kindwave:
            showparameters(form.wave);
            break;
        case kindwind:
            showparameters(form.wind);
            break;
        case kindbuoyancy:
            showparameters(form.buoyancy);
            break;
        default:
            break;
    }
    form.message.clear();
}

loadcaseform openloadkees() {
    loadcaseform form;
    if (curlc < 1 || curlc > nlc()) curlc = 1;
    showkind(form, kindapplied);
    loadloadcase(form);
    putloadcase(form);
    return form;
}

// --- the user's hand ----------------------------------------------------------------------------

void chooseloadcase(loadcaseform& form, int entry) {
    if (entry < 0 || entry >= nlc()) return;
    form.changed = form.changed || curlc != entry + 1;
    curlc = entry + 1;
    putloadcase(form);
}

void choosekind(loadcaseform& form, int kind) {
    showkind(form, kind);
    editloadcase(form);
}

void choosedirection(loadcaseform& form, int direction) {
    showdirection(form, direction);
    editloadcase(form);
}

void editloadcase(loadcaseform& form) {
    form.message = presstosave;
}

void leaveacceleration(loadcaseform& form, int i) {
    std::string& text = form.acceleration[std::size_t(i)];
    double value = 0;
    if (!readvalue(text, parameterformula(caseaccx + form.lcdirection, i), value)) text = "0";
}

void editshift(loadcaseform& form) {
    std::string& shift = form.wave[3];
    double value = 0;
    if (readnumber(shift, value) && value > 1) shift = "1";
    if (readnumber(shift, value) && value < 0) shift = "0";
    editloadcase(form);
}

// --- changes of the model -----------------------------------------------------------------------

static bool iscasename(const std::string& name, int last) {
    for (int i = 1; i <= last; ++i)
        if (lcname(i) == name) return true;
    return false;
}

// The slot may hold what a deleted load case left: a new load case has no loads, and no combination
// counts it.
static void emptyslot(int lc) {
    loadnode(lc, 0) = 0;
    elemload(lc, 0, 0) = 0;
    for (int c = 1; c <= ncomb(); ++c) lcomb(c, lc) = 0;
}

void addloadcase(loadcaseform& form) {
    if (nlc() >= modelsize(sizeloadcases)) {
        form.message = "Maximum number of loadcase";
        return;
    }
    const bool typed = form.message == presstosave;
    const int before = nlc();
    curlc = before + 1;
    loadnode(0, 0) = curlc;
    emptyslot(curlc);
    std::string name = "LC " + numbertext(int(curlc));
    while (iscasename(name, before)) name += "*";
    lcname(curlc) = name;
    defaultloadcase(curlc);
    form.changed = true;
    loadloadcase(form);
    putloadcase(form);
    form.message = (typed ? "What was typed is not stored. " : "") + name +
                   " is new: give it a name and a type, then press <Update>";
}

// One parameter of curlc; the boxes of a kind are stored in their order up to the first that holds
// no number.
static void storeparameter(const char* caption, const std::string& text, int k) {
    const char* const formula = parameterformula(lctype(curlc), k);
    double value = 0;
    if (!readvalue(text, formula, value))
        throw runtimeerror{errtype, std::string(caption) + ": " + valuefault(text, formula)};
    lcpar(curlc, k) = value;
}

template <std::size_t N>
static void storeparameters(const std::array<std::string, N>& boxes, const char* const* captions) {
    for (std::size_t k = 0; k < N; ++k) storeparameter(captions[k], boxes[k], int(k));
}

static void storekind(loadcaseform& form) {
    static const char* const accelerations[] = {"Acc.", "x", "y", "z"};
    static const char* const waves[] = {"H", "T", "Dir", "Shift", "WD"};
    static const char* const winds[] = {"Vel", "Dir", "third field"};
    static const char* const buoyancies[] = {"WL", "WD", "Density"};
    if (form.kind >= kindwave) lctype(curlc) = casewave + form.kind - kindwave;
    switch (form.kind) {
        case kindacceleration:
            lctype(curlc) = caseaccx + form.lcdirection;
            for (int i = 0; i < 4; ++i) leaveacceleration(form, i);
            storeparameters(form.acceleration, accelerations);
            lcpar(curlc, accelementmass) = form.elementmass;
            break;
        case kindwave:
            storeparameters(form.wave, waves);
            break;
        case kindwind:
            storeparameters(form.wind, winds);
            break;
        case kindbuoyancy:
            storeparameters(form.buoyancy, buoyancies);
            break;
        default:
            lctype(curlc) = caseapplied;
    }
}

static bool isnameofanothercase(const std::string& name) {
    for (int i = 1; i <= nlc(); ++i)
        if (i != curlc && lcname(i) == name) return true;
    return false;
}

static std::string faultofcasename(const std::string& name) {
    if (name.find_first_not_of(' ') == name.npos) return "A load case needs a name";
    return isnameofanothercase(name) ? "Name allready excists" : "";
}

void updateloadcase(loadcaseform& form) {
    if (const std::string fault = faultofcasename(form.name); !fault.empty()) {
        loadloadcase(form);
        putloadcase(form);
        form.message = fault;
        return;
    }
    form.changed = true;
    const auto store = [&] {
        storekind(form);
        lcname(curlc) = form.name;
        loadloadcase(form);
        putloadcase(form);
    };
    guarded(store, [&](const runtimeerror& e) {
        form.message = e.what;  // the reason, beside the message
        theplatform().message("Check loadcases, Error occured", icons::exclamation);
    });
}

// Rows of load case lc+1 into the slot lc, as many as the slot has; where the upper case has fewer
// the rest become holes.
static void moverows(int lc) {
    const int upper = loadnode(lc + 1, 0);
    for (int j = 1; j <= loadnode(lc, 0); ++j) {
        loadnode(lc, j) = j <= upper ? loadnode(lc + 1, j) : 0;
        loaddof(lc, j) = loaddof(lc + 1, j);
        loadval(lc, j) = loadval(lc + 1, j);
    }
}

void removeloadcase(int lc) {
    const int old = nlc();
    if (lc < 1 || lc > old) return;
    for (int i = lc; i < old; ++i) {
        moverows(i);
        lcname(i) = lcname(i + 1);
        lctype(i) = lctype(i + 1);
    }
    loadnode(old, 0) = 0;
    lcname(old).clear();
    lctype(old) = caseapplied;
    loadnode(0, 0) = old > 1 ? old - 1 : 1;
    if (curlc >= lc && curlc > 1) curlc = curlc - 1;
}

void delloadcase(loadcaseform& form) {
    if (nlc() <= 1) {
        form.message = "Not allowed, one loadcase minimum";
        return;
    }
    if (!theplatform().yes("Delete loadcase?")) return;
    removeloadcase(curlc);
    form.changed = true;
    dropresults();
    loadloadcase(form);
    putloadcase(form);
    form.message =
        "Deleted. Parameters, element loads and multipliers stay with their numbers: check the "
        "load "
        "cases from the deleted one on";
}
