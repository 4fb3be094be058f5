// SPDX-License-Identifier: GPL-3.0-or-later
// The platform of drawing benchmarks.
#pragma once

#include <array>

#include "core/platform.h"
#include "ui/qtsurface.h"

inline const double pixelspercm = 96 / 2.54;

// The four surfaces without a window around them.
class imageplatform : public platform {
  public:
    answers show(const messagebox&) override { return answers::ok; }
    filechoice askfile(const filebox&) override { return {}; }
    surface* viewsurface(int nview) override { return &views[std::size_t(nview - 1)]; }
    twipbox workarea() override { return {0, 0, 2080 + 1600 * 15, 900 * 15}; }
    void placeview(int nview, const twipbox& box, bool) override {
        views[std::size_t(nview - 1)].resize(int(box.width / 15), int(box.height / 15), 1,
                                             pixelspercm);
    }
    void viewsize(int nview, double& width, double& height) override {
        width = views[std::size_t(nview - 1)].width();
        height = views[std::size_t(nview - 1)].height();
    }
    std::array<qtsurface, 4> views;
};
