// SPDX-License-Identifier: GPL-3.0-or-later
// Element groups, material and constant sets of Cosmos texts as element groups of the model.
#pragma once

#include <map>
#include <string>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

#include "exchange/imported.h"
#include "files/filemenu.h"

// The sets that are active at a line.
struct activesets {
    long group = 1, material = 1, constants = 1, system = 0, loadcase = 1;
};

class cosmosgroups {
  public:
    cosmosgroups(imported& found, purposes purpose);
    void nameelements(long group, const std::string& name) { elementnames[group] = name; }
    void setconstant(long group, long set, long position, double value) {
        constants[{group, set}][position] = value;
    }
    // False for a property that the model has no place for.
    bool setproperty(long material, const std::string& name, double value);
    // Elements of the group are lines: a third node only tells where they look.
    bool arelines(long group) const;
    // The type of an element of so many corners.
    int typeof(long group, int corners) const;
    // The group of the model; made, with what is missing told, where there is none yet.
    int groupof(const activesets& sets);
    void tellunused() const;

  private:
    bool begins(long group, const char* name) const;
    std::string freename(const std::string& name);
    void sectionof(importedgroup& group, const activesets& sets);
    void materialof(importedgroup& group, long material);

    imported& found;
    std::map<long, std::string> elementnames;                           // by group
    std::map<std::pair<long, long>, std::map<long, double>> constants;  // by group and set
    std::map<long, std::map<int, double>> materials;                    // by field of the group
    std::map<std::tuple<long, long, long>, int> groups;                 // in use
    std::unordered_set<std::string> takennames;
    std::unordered_map<std::string, std::size_t> starsofnames;
};
