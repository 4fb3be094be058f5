// SPDX-License-Identifier: GPL-3.0-or-later
// What the program knows of the element types by their numbers.
#include "tools/elementcard.h"

#include <algorithm>

#include "core/catalogue.h"
#include "tools/groups.h"

namespace {
struct elementfacts {
    elementtype type;
    const char* moves;
    std::vector<groupfield> fields;
    const char *loads, *results;
};
}  // namespace

static const char *const space = "DX DY DZ", *const six = "DX DY DZ RX RY RZ";
static const char* const online =
    "Pressure along e1 e2 e3, force a length; accelerations; waves, wind, buoyancy";
static const char* const onplate =
    "Pressure along e1 e2 e3, force an area; accelerations; wind, buoyancy";
static const char* const alongplane =
    "Pressure along e1 e2, force an area (none stiffens e3); accelerations; wind, buoyancy";
static const char* const nodalforces = "Its force among the nodal forces";

static const std::vector<elementfacts>& table() {
    static const std::vector<groupfield> bar = {fieldmodulus, fielddensity, fieldthickness};
    static const std::vector<groupfield> plate = {fieldmodulus, fieldpoisson, fielddensity,
                                                  fieldthickness};
    static const std::vector<groupfield> membrane = {fieldmodulus, fieldpoisson, fielddensity,
                                                     fieldthickness, fieldplane};
    static const std::vector<groupfield> beam = {
        fieldmodulus, fieldpoisson, fielddensity, fieldthickness, fieldrotation, fieldixx,
        fieldwxx,     fieldiyy,     fieldwyy,     fieldizz,       fieldwzz};
    static const char* const inplane = "SX SY SXY and VM at each corner";
    static const char* const bending = "SBX SBY, twist as STX STY, and VM at each corner";
    static const char* const members =
        "SX SBY SBZ STX and VM at both ends; N Vy Vz T My Mz and deflections at 21 places";
    static const std::vector<elementfacts> rows = {
        {typetruss, space, bar, online, "SX at both ends; N at 21 places"},
        {typememb3, space, membrane, alongplane, inplane},
        {typememb4, space, membrane, alongplane, inplane},
        {typemass,
         six,
         {fielddensity, fieldixx, fieldiyy, fieldizz},
         "Accelerations",
         "Its share of the masses and of the modes"},
        {typeshear4, space, membrane, alongplane, "SXY at each corner"},
        {typebeam, six, beam, online, members},
        {typepipe, six, beam, online, members},
        {typeshell3, six, plate, onplate, "All stresses of the middle plane and of bending"},
        {typeshell4, six, plate, onplate, "All stresses of the middle plane and of bending"},
        {typeplate3, "the normal's displacement, both rotations across it", plate, onplate,
         bending},
        {typeplate4, "the normal's displacement, both rotations across it", plate, onplate,
         bending},
        {typespring2, six, {}, "None", nodalforces},
        {typerigid, six, {}, "None", "None: it moves as its first node tells"},
        {typespringt, space, {}, "None", nodalforces},
        {typespringr, "RX RY RZ", {}, "None", nodalforces},
        {typespring, six, {}, "None", nodalforces},
    };
    return rows;
}

static const elementfacts* factsof(int type) {
    const auto found = std::ranges::find(table(), elementtype(type), &elementfacts::type);
    return found == table().end() ? nullptr : &*found;
}

std::vector<groupfield> fieldsused(int type) {
    const elementfacts* const facts = factsof(type);
    return facts ? facts->fields : std::vector<groupfield>();
}

static std::string fieldlist(const elementfacts& facts) {
    std::string list;
    for (const groupfield f : facts.fields)
        list += (list.empty() ? "" : ", ") + std::string(groupcaptions[f].caption);
    if (!list.empty()) return list;
    return facts.type == typerigid ? "None" : "The matrix behind the button Springs";
}

std::vector<cardrow> elementcard(int type) {
    if (type <= 0 || type >= neltypes) return {};
    std::vector<cardrow> rows = {{"Element", eltypdes(type)},
                                 {"Nodes", std::to_string(eltypnodes(type))}};
    const elementfacts* const facts = factsof(type);
    if (!facts) return rows;
    rows.push_back({"Moves at a node", facts->moves});
    rows.push_back({"Of its group", fieldlist(*facts)});
    rows.push_back({"Loads", facts->loads});
    rows.push_back({"Results", facts->results});
    return rows;
}
