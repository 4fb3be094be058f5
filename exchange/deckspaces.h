// SPDX-License-Identifier: GPL-3.0-or-later
// Whose numbers and names a deck speaks of. Parts are drafts; each instance of one has numbers and
// sets of its own, which the assembly around it calls by the instance's name: "Beam-1.3",
// "Beam-1.Flange". A deck without parts is the assembly alone.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/imported.h"
#include "exchange/placement.h"

class deckspaces {
  public:
    using itemsets = std::map<std::string, std::vector<int>, std::less<>>;
    itemsets nodesets, elementsets;  // by whole names in capitals

    // What is read from here on belongs to an instance of a part; "" for the assembly.
    void enter(std::string_view instance, std::string_view part, const placement& place);
    bool isempty() const { return where.empty(); }
    const std::string& part() const { return ofpart; }
    const placement& place() const { return stand; }
    bool hasinstances() const { return spaces.size() > 1; }

    numbertable& nodes() { return here().nodes; }
    numbertable& elements() { return here().elements; }
    std::string whole(std::string_view name) const;   // of a set of the space that is open
    std::string named(std::string_view group) const;  // of a group: parts begin with theirs
    std::string nodename(long number) const;          // "Beam-1.3"
    const std::vector<int>* find(const itemsets& sets, std::string_view name) const;
    // The item of "3" or "Beam-1.3"; false where it is no number.
    bool numbered(std::string_view text, bool ofnodes, int& item);
    // For the members of a set that names the instance they are of; false for one that is unknown.
    bool look(std::string_view instance);
    void lookback() { looking.clear(); }

  private:
    struct space {
        numbertable nodes, elements;
    };
    space& here() { return spaces[looking.empty() ? where : looking]; }
    std::string where, shownas, ofpart, looking;  // in capitals, as written
    placement stand;
    std::map<std::string, space, std::less<>> spaces{{"", {}}};
};

// About the axis from a to b, counter-clockwise seen against it.
placement turnedabout(const triple& a, const triple& b, double radians);
