// SPDX-License-Identifier: GPL-3.0-or-later
// What a reader has found in a foreign file, before anything of it is in the model.
//
// Items are numbered from 1 in the order in which they are added; corners, groups and conditions
// name them by these numbers. What a reader adds is whole: corners that exist, numbers that are
// finite. Lengths are those of the file.
#pragma once

#include <array>
#include <limits>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/codes.h"
#include "exchange/importreport.h"

using triple = std::array<double, 3>;

struct importedelement {
    int type = typenone;  // of the catalogue
    std::array<int, 4> corners{};
    int group = 0;        // 0: the current group of the model
    double rotation = 0;  // of the local axes of a plate, radians
};

// Which way a line element's section looks: local axis 2 or 3 lies in the plane of the element and
// this vector, on the vector's side.
struct importedorientation {
    int element = 0;
    int axis = 2;
    triple towards{};
};

struct importedrelease {
    int element = 0, end = 1, dof = 1;
};

const double nottold = std::numeric_limits<double>::quiet_NaN();

struct importedgroup {
    std::string name;                                       // UTF-8
    int colour = -1;                                        // 0xBBGGRR; -1: none told
    std::array<double, groupfields + 1> fields = untold();  // 1..12; what is not told stays as a
                                                            // new group has it
    std::vector<float> matrix;  // of springs, 36 numbers row by row; empty: none

    static std::array<double, groupfields + 1> untold() {
        std::array<double, groupfields + 1> none;
        none.fill(nottold);
        return none;
    }
};

struct importedgraphic {
    int kind = kindline;
    std::array<std::array<float, 4>, 4> rows{};  // as graphics(g, ...)
};

struct importedrow {
    int item = 0;  // node, or element
    int dof = 1;   // 1..6; direction 1..3 of an element load
    double value = 0;
};

struct importedcase {
    std::string name;
    int type = caseapplied;
    std::array<double, caseparameters> parameters{};
    bool hasparameters = false;
    std::vector<importedrow> nodal, onelements;
};

struct imported {
    std::vector<triple> nodes;
    std::vector<importedelement> elements;
    std::vector<importedgroup> groups;
    // Numbers and names of the file; empty, or one an item.
    std::vector<long> nodenumbers, elementnumbers;
    std::vector<std::string> nodenames, elementnames;
    std::vector<importedorientation> orientations;
    std::vector<importedrelease> releases;
    std::vector<importedgraphic> graphics;
    std::vector<importedrow> constraints;  // rotations in degrees
    std::vector<importedcase> cases;
    std::string units;          // "m kN t", where the file tells them
    bool isconsistent = false;  // the unit of mass follows from those of force and length, and
                                // accelerations are in that of length (importunits.h)
    importreport report;

    int addnode(const triple& at) {
        nodes.push_back(at);
        return int(nodes.size());
    }
    int addelement(int type, const std::array<int, 4>& corners, int group = 0) {
        elements.push_back({type, corners, group, 0});
        return int(elements.size());
    }
    // The group of this name, made where there is none.
    int groupof(const std::string& name);
    importedgroup& group(int g) { return groups[std::size_t(g) - 1]; }

  private:
    std::unordered_map<std::string, int> groupsbyname;
};

// Nodes, elements by type, constraints and load cases into the report.
void tellread(imported& found);

// Items by the numbers of a file: a plain table while the numbers are dense.
class numbertable {
  public:
    void put(long number, int item);  // an item of that number before is forgotten
    int find(long number) const;      // 0 for none

  private:
    std::vector<int> dense;
    std::unordered_map<long, int> sparse;
    long count = 0;
};

// Takes out the nodes that no element, constraint or load names, but for some: those of what was
// left out.
void dropunused(imported& found, const std::vector<int>& butfor = {});

// Tells how far the reading is. Throws errstopped when the user gives up
// the reading; called every few thousand items.
void readingprogress(const std::string& name, double share);
