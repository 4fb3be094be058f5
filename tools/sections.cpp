// SPDX-License-Identifier: GPL-3.0-or-later
// The form of the section tool.
#include "tools/sections.h"

#include <cmath>
#include <filesystem>

#include "core/numtext.h"
#include "core/platform.h"
#include "core/runtime.h"
#include "core/session.h"
#include "core/units.h"
#include "tools/groupsection.h"
#include "tools/sectionfile.h"

const char* const unitnames[nunits] = {"mm", "cm", "dm", "m", "Inch", "Foot"};
const double unitmetres[nunits] = {0.001, 0.01, 0.1, 1, 0.0254, 0.3048};
const char* const resultnames[nresults] = {"Area", "I xx", "W xx", "I yy", "W yy", "I zz", "W zz"};

double sectscale = 1;
static int lasttype = tubular, lastunit = 0;

// -1 for none.
static int findunit(const std::string& name) {
    for (int u = 0; u < nunits; ++u)
        if (name == unitnames[u]) return u;
    return -1;
}

// What is left of rounding does not show.
static double withoutnoise(double value) {
    return roundedto(value, 12);
}

// For a text that is read, not counted with.
static double sixdigits(double value) {
    return roundedto(value, 6);
}

// A Single as the decimal number that it stands for.
static double decimal(float value) {
    return numberof(numbertext(value));
}

dimensions dimensionsof(const sectionform& form) {
    unitset set;
    set.metres = unitmetres[form.unit];
    dimensions d{};
    for (std::size_t k = 0; k < ndims; ++k)
        if (!form.labels[k].empty()) readvalue(form.dims[k], "L", d[k], set);
    return d;
}

// --- the database -------------------------------------------------------------------------------

void loadsections(sectionform& form) {
    form.names.clear();
    for (long s = 1; s <= sectcount; ++s)
        if (sectnames(s, 2) == sectiontypes[form.type].name) form.names.push_back(sectnames(s, 1));
    form.section = form.names.empty() ? "" : form.names.front();
}

int getsection(const std::string& name) {
    for (long s = sectcount; s >= 1; --s)
        if (sectnames(s, 1) == name) return int(s);
    return 0;
}

void scalesections(sectionform& form) {
    sectscale = 1;
    if (!form.database) return;
    const int s = getsection(form.section);
    if (s == 0) return;
    form.sourceunit = findunit(sectnames(s, 3));
    if (form.sourceunit >= 0) sectscale = unitmetres[form.sourceunit] / unitmetres[form.unit];
}

// --- results ------------------------------------------------------------------------------------

static void showresults(sectionform& form, const sectionvalues& v) {
    const std::array<double, nresults> values = {v.area, v.ixx, v.wxx, v.iyy, v.wyy, v.izz, v.wzz};
    for (const double value : values)
        if (!std::isfinite(value)) throw runtimeerror{erroverflow, "The dimensions are too large"};
    for (std::size_t i = 0; i < nresults; ++i) {
        form.values[i] = withoutnoise(values[i]);
        form.results[i] = numbertext(form.values[i]);
    }
    form.stale = false;
}

static void calcrecord(sectionform& form, int s) {
    dimensions d;
    for (int k = 0; k < ndims; ++k) {
        const bool used = !form.labels[std::size_t(k)].empty();
        d[std::size_t(k)] = decimal(sectdata(s, 5 + k));
        form.dims[std::size_t(k)] =
            used ? numbertext(withoutnoise(d[std::size_t(k)] * sectscale)) : std::string();
    }
    const double second = sectscale * sectscale * sectscale * sectscale;
    const int own = findsectiontype(sectnames(s, 2));
    std::array<double, 3> far{};
    const bool known = guarded(
        [&] {
            far = extremefibres(own >= 0 ? own : form.type, d);
            if (own == cprofile)
                far[1] = channeltips(d, decimal(sectdata(s, 1)), decimal(sectdata(s, 3)));
        },
        [](const runtimeerror&) {});
    const auto modulus = [&](int k, double distance) {
        if (!known) return 0.0;
        return decimal(sectdata(s, k)) / distance * sectscale * sectscale * sectscale;
    };
    sectionvalues v;
    v.area = decimal(sectdata(s, 1)) * sectscale * sectscale;
    v.ixx = decimal(sectdata(s, 2)) * second;
    v.iyy = decimal(sectdata(s, 3)) * second;
    v.izz = decimal(sectdata(s, 4)) * second;
    v.wxx = modulus(2, far[0]);
    v.wyy = modulus(3, far[1]);
    v.wzz = modulus(4, far[2]);
    showresults(form, v);
    if (!known) form.message = form.section + ": without all dimensions the section moduli are 0";
}

// What the user should know of the rule by which typed dimensions are counted.
static std::string noteofrule(const sectionform& form, const dimensions& d) {
    if ((form.type == lprofile || form.type == dlprofile) && d[dimtf] != 0)
        return "An angle has one thickness, tw: leave tf empty, it is taken off the area";
    if (form.type == tprofile) {
        const axisvalues centred = centredstem(d);
        return "I yy, W yy: the stem is counted at the edge of the flange; with the stem in the "
               "middle they are " +
               numbertext(sixdigits(centred.i)) + " and " + numbertext(sixdigits(centred.w));
    }
    return "";
}

// Do the typed dimensions still tell the chosen section, changed but none of them beyond twofold?
static bool isofrecord(const sectionform& form) {
    const int s = getsection(form.section), source = s == 0 ? -1 : findunit(sectnames(s, 3));
    if (source < 0) return false;
    const double scale = unitmetres[source] / unitmetres[form.unit];
    const dimensions d = dimensionsof(form);
    for (std::size_t k = 0; k < ndims; ++k) {
        const double known = sectdata(s, 5 + long(k)) * scale;
        if (form.labels[k].empty() || known == 0 || d[k] == 0) continue;
        if (d[k] > 2 * known || 2 * d[k] < known) return false;
    }
    return true;
}

// A section of its own is called by its type and its dimensions.
static std::string ownname(const sectionform& form) {
    std::string name = sectiontypes[form.type].name;
    const char* between = " ";
    for (std::size_t k = 0; k < ndims; ++k) {
        if (form.labels[k].empty() || form.dims[k].empty()) continue;
        name += between + form.dims[k];
        between = "x";
    }
    return name;
}

static void namesection(sectionform& form) {
    if (form.database)
        form.name = form.section;
    else
        form.name = isofrecord(form) ? form.section + " Mod." : ownname(form);
}

// A field left 0 is told and counts as 0; what no section can have is not to be accepted.
static void checktyped(sectionform& form) {
    const dimensions d = dimensionsof(form);
    const std::string fault = sectionfault(form.type, d);
    if (isimpossible(form.type, d)) form.stale = true;
    if (!fault.empty())
        form.message = fault;
    else if (!form.stale)
        form.message = noteofrule(form, d);
}

void sectioncalc(sectionform& form) {
    form.stale = true;
    form.message.clear();
    scalesections(form);
    namesection(form);
    const int s = form.database ? getsection(form.section) : 0;
    if (form.database && s == 0) {
        form.message = "The database holds no section of this type";
        return;
    }
    if (form.database && form.sourceunit < 0) {
        form.message = form.section + ": the unit \"" + sectnames(s, 3) + "\" is not known";
        return;
    }
    guarded(
        [&] {
            if (form.database)
                calcrecord(form, s);
            else
                showresults(form, calcsection(form.type, dimensionsof(form)));
        },
        [&](const runtimeerror& e) { form.message = e.what; });
    if (!form.database) checktyped(form);
}

// --- actions ------------------------------------------------------------------------------------

void settype(sectionform& form, int type) {
    form.type = type;
    for (std::size_t k = 0; k < ndims; ++k) {
        form.labels[k] = sectiontypes[type].fields[k];
        if (!form.database) form.unitlabels[k] = "L";
        if (!unitstext.empty()) form.unitlabels[k] = unitnames[form.unit];
    }
}

static bool readdatabase(sectionform& form) {
    std::string note;
    const bool read = guarded([&] { note = readsections(form.binary); },
                              [&](const runtimeerror& e) { note = e.what; });
    loadsections(form);
    form.database = read && sectcount > 0;
    settype(form, form.type);
    sectioncalc(form);
    if (!note.empty()) form.message = note;
    return read;
}

// The unit of a model that says it, else that of the last use.
static int modelunit() {
    for (int u = 0; u < nunits && !unitstext.empty(); ++u)
        if (std::fabs(unitmetres[u] - modelunits().metres) <= 1e-9) return u;
    return lastunit;
}

sectionform Initiate() {
    sectionform form;
    form.unit = modelunit();
    form.unitlabels.fill("O");
    settype(form, lasttype);
    readdatabase(form);
    return form;
}

// Is record s, in model unit u, what the group holds?
static bool isrecordof(const groupform& group, long s, int u) {
    const int source = findunit(sectnames(s, 3));
    if (source < 0) return false;
    const double scale = unitmetres[source] / unitmetres[u];
    const auto agrees = [&](int field, int k, int power) {
        const double value = decimal(sectdata(s, k)) * std::pow(scale, power);
        return std::fabs(numberof(group.text[std::size_t(field)]) - value) <= 1e-6 * value;
    };
    return agrees(4, 1, 2) && agrees(7, 2, 4) && agrees(9, 3, 4) && agrees(11, 4, 4);
}

void showprofile(sectionform& form, const groupform& group) {
    const int most = unitstext.empty() ? nunits : 1;
    for (int tried = 0; tried < most; ++tried) {
        const int u = (form.unit + tried) % nunits;  // the unit of the last use first
        for (long s = 1; s <= sectcount; ++s) {
            const int type = findsectiontype(sectnames(s, 2));
            if (type < 0 || !isrecordof(group, s, u)) continue;
            form.unit = lastunit = u;
            choosetype(form, type);
            return choosesection(form, sectnames(s, 1));
        }
    }
}

void choosetype(sectionform& form, int type) {
    lasttype = type;
    if (!form.database && sectiontypes[type].fields != sectiontypes[form.type].fields)
        form.dims.fill("");
    settype(form, type);
    loadsections(form);
    sectioncalc(form);
}

void choosesection(sectionform& form, const std::string& name) {
    form.section = name;
    form.database = true;
    sectioncalc(form);
}

void usedatabase(sectionform& form, bool on) {
    form.database = on;
    settype(form, form.type);
    sectioncalc(form);
}

void usebinary(sectionform& form, bool on) {
    const bool before = form.binary;
    form.binary = on;
    if (readdatabase(form)) return;
    form.binary = before;
    form.database = sectcount > 0;
    const std::string why = form.message;
    sectioncalc(form);
    form.message = why;
}

void writebinary(sectionform& form) {
    if (std::filesystem::exists(sectionsfile(true)) &&
        !theplatform().yes("sections.dig stands there already, replace it?"))
        return;
    guarded(
        [&] {
            writesectionsbinary();
            form.message = "sections.dig written, " + std::to_string(sectcount) + " sections";
        },
        [&](const runtimeerror& e) { form.message = e.what; });
}

void chooseunit(sectionform& form, int unit) {
    form.unit = lastunit = unit;
    settype(form, form.type);
    sectioncalc(form);
}

void editdimension(sectionform& form, int field, const std::string& text) {
    form.dims[std::size_t(field)] = text;
    usedatabase(form, false);
}

// Members of a flat frame lie with e2 in its plane.
static std::string weakaxisnote(const sectionform& form, const groupform& group) {
    bool flat = true;
    for (int n = 1; n <= nnodes() && flat && !dim2d; ++n) flat = nodes(0, n, 2) == 0;
    const double xx = form.values[1], yy = form.values[3];
    if (!flat || xx <= 1.01 * yy || numberof(group.text[6]) != 0) return {};
    return "Loads in the plane x-y bend it about y, the weaker axis (I yy): Section rotation 90 "
           "turns it";
}

bool acceptsection(sectionform& form, groupform& group) {
    if (form.stale) {
        if (form.message.empty()) form.message = "There are no results to accept";
        return false;
    }
    if (!form.database) {
        const auto& v = form.values;
        keepshape(form.type, dimensionsof(form), {v[0], v[1], v[2], v[3], v[4], v[5], v[6]});
    }
    const int fields[nresults] = {4, 7, 8, 9, 10, 11, 12};
    for (std::size_t i = 0; i < nresults; ++i)
        editfield(group, fields[i], numbertext(form.values[i]));
    if (meshgroup == 0) return true;
    getgroup(group);
    if (form.autoname) changename(group, form.name);
    const std::string note = weakaxisnote(form, group);
    if (group.message.empty()) group.message = note;
    return true;
}
