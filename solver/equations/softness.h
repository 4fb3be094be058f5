// SPDX-License-Identifier: GPL-3.0-or-later
// How soft the softest motion is, for engines that do not show their pivots.
#pragma once

#include <random>

#include "solver/equations/engine.h"

// Numbers between 0.5 and 1.5 to begin an iteration with, by places that ascend: the same wherever
// one stands.
class startnoise {
  public:
    double at(std::int64_t place) {
        random.discard(drawsofone * std::uint64_t(place - next));
        next = place + 1;
        return spread(random);
    }

  private:
    static constexpr std::uint64_t drawsofone = 2;
    std::mt19937 random{1};
    std::uniform_real_distribution<double> spread{0.5, 1.5};
    std::int64_t next = 0;
};

// The smallest eigenvalue of the matrix scaled to a unit diagonal, near enough to tell a mechanism
// from a slender structure. unknown: out, of all, where its motion is largest. a is factorised.
double softness(engine& l, const sparsematrix& a, std::int64_t& unknown);
