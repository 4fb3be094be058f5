// SPDX-License-Identifier: GPL-3.0-or-later
// The second of two results side by side, as much of it as view 2 draws: the values of the plot and
// the displacements. Post/compare reads it.
#pragma once

#include <functional>
#include <string>
#include <vector>

struct valuespan {
    double low, high;
    valuespan();  // holds nothing
    void take(double v);
};
struct secondplot {
    int number = 0;                       // combination or mode
    bool reading = false, valid = false;  // valid: it is of the plot on show
    std::vector<float> values;            // four corners of each element; none without a plot
    std::vector<float> displacements;     // x y z of each node, from node 1
    valuespan span;                       // of the values
    bool commonscale = true;              // both views have one
};
extern secondplot second;
extern std::function<void()> readsecond;  // where the plot has become another one

// The four values of an element's corners while view 2 is drawn or asked; null otherwise.
const float* comparedvalues(int e);
// With one scale for both: the range of the one in hand takes in that of the other.
void includecompared(double& low, double& high);
std::string nameofview(int nview);  // what view 1 or 2 shows
bool issecond();                    // view 2's results are in the place of view 1's

// View 2's own results as long as it lives; of another view it does nothing.
class ofview {
  public:
    explicit ofview(int nview);
    ~ofview();
    ofview(const ofview&) = delete;
    ofview& operator=(const ofview&) = delete;

  private:
    const bool mine;
};
