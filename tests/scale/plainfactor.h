// SPDX-License-Identifier: GPL-3.0-or-later
// The factorisation as CHOLMOD itself does it: the yardstick beside the program's own one.
#pragma once

#include <memory>

#include "solver/equations/engine.h"

class plainfactor : public engine {
  public:
    plainfactor();
    ~plainfactor() override;

    void analyse(const sparsematrix& a) override;
    double entries() const override;
    double operations() const override;
    double bytes() const override;
    bool factorise(const sparsematrix& a) override;
    // 1: it looks at none.
    double smallestpivot(const sparsematrix& a, std::int64_t& unknown) override;
    void solve(double* x, int columns, triangles which) override;
    bool splits() const override { return false; }
    std::int64_t countnegative(const sparsematrix&, double) override { return -1; }

  private:
    struct inside;
    std::unique_ptr<inside> in;
};
