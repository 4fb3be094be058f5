// SPDX-License-Identifier: GPL-3.0-or-later
// The line elements of a view by their ends, to find the graphic elements that they lie on: with
// hidden lines there is no second pass over the beams, and a graphic line would take their colour.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "tools/graphiclist.h"

class beamlines {
  public:
    explicit beamlines(int nview);
    // Do line elements lead from place to place of a chain, all along it?
    bool lieon(const std::vector<point3>& chain) const;

  private:
    struct beam {
        point3 from, to;
    };
    bool lead(const point3& from, const point3& to) const;
    const beam* along(const point3& from, const point3& to) const;
    void enter(const point3& from, const point3& to);
    std::unordered_multimap<std::uint64_t, beam> byend;
};
