// SPDX-License-Identifier: GPL-3.0-or-later
// Groups of Cosmos texts.
#include "exchange/cosmosgroups.h"

#include "core/model.h"
#include "core/numtext.h"

cosmosgroups::cosmosgroups(imported& f, purposes purpose) : found(f) {
    for (int g = 1; purpose == purposes::import && g <= ngroups(); ++g)
        takennames.insert(groupname(g));
}

bool cosmosgroups::setproperty(long material, const std::string& name, double value) {
    const int field = name == "EX"     ? fieldmodulus
                      : name == "NUXY" ? fieldpoisson
                      : name == "DENS" ? fielddensity
                                       : 0;
    if (field > 0) materials[material][field] = value;
    return field > 0;
}

bool cosmosgroups::begins(long group, const char* name) const {
    const auto at = elementnames.find(group);
    return at != elementnames.end() && at->second.starts_with(name);
}

bool cosmosgroups::arelines(long group) const {
    return begins(group, "BEAM") || begins(group, "TRUSS") || begins(group, "PIPE");
}

int cosmosgroups::typeof(long group, int corners) const {
    if (corners == 3) return typeshell3;
    if (corners == 4) return typeshell4;
    return begins(group, "TRUSS") ? typetruss : typebeam;
}

std::string cosmosgroups::freename(const std::string& name) {
    const std::size_t longest = 60;  // stars, beyond which names are counted
    std::string result = name;
    for (std::size_t& stars = starsofnames[name]; !takennames.insert(result).second;) {
        ++stars;
        result = name + (stars <= longest ? std::string(stars, '*') : "*" + std::to_string(stars));
    }
    return result;
}

// Thickness or area first; of a beam, two second moments, its depths and the torsion constant.
void cosmosgroups::sectionof(importedgroup& group, const activesets& sets) {
    const auto at = constants.find({sets.group, sets.constants});
    if (at == constants.end()) {
        found.report.warn("group " + group.name +
                          " has no constants, set its thickness or section");
        return;
    }
    const auto value = [&](long position) {
        const auto one = at->second.find(position);
        return one == at->second.end() ? nottold : one->second;
    };
    group.fields[fieldthickness] = value(1);
    if (!begins(sets.group, "BEAM")) return;
    group.fields[fieldixx] = value(2);
    group.fields[fieldiyy] = value(3);
    group.fields[fieldizz] = value(8);
    if (value(5) > 0) group.fields[fieldwxx] = value(2) / (value(5) / 2);
    if (value(4) > 0) group.fields[fieldwyy] = value(3) / (value(4) / 2);
}

void cosmosgroups::materialof(importedgroup& group, long material) {
    const auto at = materials.find(material);
    if (at == materials.end()) {
        found.report.warn("group " + group.name + " has no material, that of a new group stands");
        return;
    }
    for (const auto& [field, value] : at->second) group.fields[std::size_t(field)] = value;
}

// One for each combination of group, material and constants in use, named as the group's elements;
// a name that is there already gets a star.
int cosmosgroups::groupof(const activesets& sets) {
    const auto [at, isnew] = groups.try_emplace({sets.group, sets.material, sets.constants}, 0);
    if (!isnew) return at->second;
    const auto told = elementnames.find(sets.group);
    const bool isnamed = told != elementnames.end() && !told->second.empty();
    at->second = found.groupof(freename(isnamed ? told->second : "GR " + numbertext(sets.group)));
    importedgroup& group = found.group(at->second);
    sectionof(group, sets);
    materialof(group, sets.material);
    if (isnamed && !arelines(sets.group) && !begins(sets.group, "SHELL"))
        found.report.warn("elements " + told->second +
                          " are taken as beams or shells by their nodes");
    return at->second;
}

void cosmosgroups::tellunused() const {
    for (const auto& [number, name] : elementnames) {
        const auto at = groups.lower_bound({number, 0, 0});
        if (at == groups.end() || std::get<0>(at->first) != number)
            found.report.skipped("Element groups without elements");
    }
}
