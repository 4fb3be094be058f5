// SPDX-License-Identifier: GPL-3.0-or-later
// Envelopes of a whole result file, item by item, for tables and for pictures of nodes: the file is
// read once, its load cases side by side, and nothing but the item in hand is kept.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "post/governed.h"
#include "post/resultstream.h"

enum class envelopeof { displacements, modes, forces, plates, members };

// A sum of load cases and the number under which it governs.
struct weighedcases {
    int number = 0;
    std::vector<float> factors;
};
std::vector<weighedcases> weighedset();     // the combinations of the envelope
std::vector<weighedcases> weighedsource();  // what is on show: those, or the one sum that it is
weighedcases modeonshow();

// A node, which is one place, a plate with its corners, a member with its stations.
struct enveloped {
    int item = 0;
    std::vector<std::vector<governed>> places;  // each: by quantity
};

class enveloperows {
  public:
    // Throws as resultrows.
    enveloperows(envelopeof what, std::vector<weighedcases> over);
    // "Displacement", "DX" and so on; rotations in degrees. One that the analysis has not stays
    // out.
    const std::vector<std::string>& quantities() const { return names; }
    const std::vector<std::string>& units() const { return unitnames; }  // "F L" of each
    const std::vector<std::string>& headings() const { return headed; }
    bool next(enveloped& out);
    double share() const { return rows.share(); }

  private:
    using blocks = std::vector<resultrows::row>;
    void sum(const blocks& row, const weighedcases& w);
    void takenode(enveloped& out);
    void takeplate(enveloped& out);
    void takemember(enveloped& out);
    bool nextrow();

    envelopeof what;
    resultrows rows;
    std::vector<weighedcases> over;
    std::vector<std::string> names, unitnames, headed;
    void addquantity(const char* name, const char* unit);
    std::vector<double> factors;  // of the quantities, to be shown
    std::vector<int> freedoms;
    std::vector<blocks> held;  // rows of the item in hand
    blocks ahead;
    bool more = false;
    std::vector<double> sums;
};

// Where each quantity is largest and smallest among items.
struct envelopeplace {
    int item = 0, place = 0, combination = 0;
    double value = 0;
};
struct envelopebounds {
    envelopeplace high, low;
    const envelopeplace& bysize() const;
};
void includeitem(std::vector<envelopebounds>& bounds, const enveloped& of);
