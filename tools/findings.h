// SPDX-License-Identifier: GPL-3.0-or-later
// What is wrong with the model before an analysis, as a list of lines that name their nodes and
// elements. The mesh is looked at in tools/meshfindings, what stands on it in tools/jobfindings.
#pragma once

#include <functional>
#include <string>
#include <vector>

struct finding {
    std::string text;
    bool heading = false;  // sums up one kind; the lines after it name single ones, the worst first
    bool grave = false;    // the solver refuses it or its answer is not that of the model meant
    std::vector<int> nodes = {}, elements = {};
};

// One kind of finding: "3 free nodes: no element uses them".
struct findingkind {
    const char *one, *many;  // after the count
    const char* remedy;      // what to do
    bool grave = false;
};

class findinglist {
  public:
    // `single(i)` tells the i-th of `count`; they come in the order in which they are to be listed.
    void add(const findingkind& kind, std::size_t count,
             const std::function<finding(std::size_t)>& single);
    void add(const findingkind& kind, const std::vector<finding>& singles);
    std::vector<finding> lines;
};

// All findings, none for a sound model. Tells progress; false in `whole` when it was cancelled.
std::vector<finding> findfaults(bool& whole);

void findmeshfaults(findinglist& list);
void findjobfaults(findinglist& list);
// What a group lacks for elements of a type, "E modulus"; empty for nothing.
std::string lackofgroup(int g, int type);
bool iscaseempty(int lc);  // a load case that acts on nothing
void tellcheckprogress(double share);  // throws checkcancelled when the user has pressed Cancel
struct checkcancelled {};

std::string nodetext(int n);            // "Node 12"
std::string elementtext(int e);         // "Element 12"
std::string shortfigure(double value);  // three digits that count
