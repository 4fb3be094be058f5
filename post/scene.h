// SPDX-License-Identifier: GPL-3.0-or-later
// What view 1 shows, as a value: results, loads, symbols, and where it looks. A report draws scenes
// one after the other; what the user had on show comes back at the end.
#pragma once

#include <string>

struct scene {
    std::string caption;
    int combination = 1;  // or number of the mode
    bool deformed = false, contour = false, mode = false, lines = false;
    int component = 13, data = 0, direction = 0, filled = 1, average = 0, global = 0;
    int loads = 0, loadcase = 1;  // entry of the loads on show
    bool constraints = false, nodes = false, elements = true, hidden = false;
    double vertical = 0.7853981633974483, horizontal = 0.7853981633974483;  // radians
    bool fitted = true;  // the model fills the picture; else it looks from here:
    double point[3] = {0, 0, 0}, scale = 1;
    int diagram = 0;                               // of members: its quantity from 1, 0 none
    int source = 0, sourcecase = 1, envelope = 0;  // what in the combination's place
};

scene scenenow();
// Into force, results read; drawn by who asks.
void setscene(const scene& s);

class keptscene {
  public:
    keptscene();
    ~keptscene();
    keptscene(const keptscene&) = delete;
    keptscene& operator=(const keptscene&) = delete;

  private:
    scene before;
    int set;
    float eye, plane, depth;
};
