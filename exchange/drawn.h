// SPDX-License-Identifier: GPL-3.0-or-later
// What a drawing comes to before it is a model: straight pieces and faces between points, by layer.
// Here ends are joined, lines are split where they meet and divided to length.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "exchange/imported.h"

struct drawnpiece {
    triple from{}, to{};
    int type = typebeam, group = 0;
    bool iscurved = false;  // of a curve
    bool iscut = false;     // of a line that others met
};
struct drawnface {
    std::array<triple, 4> corners{};
    int count = 4, type = typeshell4, group = 0;
    int triangle = typeshell3;  // the type of what has three corners
};

struct drawn {
    std::vector<drawnpiece> pieces;
    std::vector<drawnface> faces;
    std::vector<triple> points;
};

// Equal points are one node: those within the distance of a node join it, the first stands.
class pointjoiner {
  public:
    pointjoiner(imported& into, double distance);
    int join(const triple& at);  // the node's number

  private:
    imported& found;
    double distance, side;
    std::unordered_map<std::uint64_t, int> first;
    std::vector<int> next;  // nodes of the same cell
};

// The diagonal of the box about everything; 0 where nothing is drawn.
double extentof(const drawn& drawing);

// Cuts pieces where others cross them, end on them or lie along them, within the distance; of
// pieces that then lie on each other the first stands. Returns how many were cut.
long splitpieces(drawn& drawing, double distance, const std::string& file);

struct drawnelements {
    std::vector<int> curved, cut;  // of such pieces
};
// Nodes and elements; pieces are divided to the greatest length, what has no extent is left out.
drawnelements buildmodel(const drawn& drawing, double distance, double longest, imported& found);

// Within which distances a drawing's ends become one node.
struct joinings {
    double ends = 0, lines = 0;  // with other ends; with lines, where these are split
    bool split = true;
};
// Ends of lines that stop short of another by more than that and at most `widest` are told in one
// line of the report, which speaks of their nodes.
void tellgaps(imported& found, const joinings& how, double widest);
