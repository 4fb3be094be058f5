// SPDX-License-Identifier: GPL-3.0-or-later
// Where the objects of a drawing stand: turned, scaled and moved.
#pragma once

#include <array>
#include <cmath>

#include "exchange/imported.h"

struct placement {
    std::array<triple, 3> axes{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};  // where x, y and z go
    triple origin{};

    triple operator()(const triple& p) const {
        triple at = origin;
        for (std::size_t k = 0; k < 3; ++k)
            for (std::size_t i = 0; i < 3; ++i) at[k] += p[i] * axes[i][k];
        return at;
    }
    // First the other, then this one.
    placement operator*(const placement& inner) const {
        placement whole;
        whole.origin = (*this)(inner.origin);
        for (std::size_t i = 0; i < 3; ++i) {
            const triple end = (*this)(inner.axes[i]);
            for (std::size_t k = 0; k < 3; ++k) whole.axes[i][k] = end[k] - origin[k];
        }
        return whole;
    }
    bool ismirrored() const {
        const auto& [x, y, z] = axes;
        return x[0] * (y[1] * z[2] - y[2] * z[1]) - x[1] * (y[0] * z[2] - y[2] * z[0]) +
                   x[2] * (y[0] * z[1] - y[1] * z[0]) <
               0;
    }
    // How much longer a length becomes at most, roughly.
    double scale() const {
        double most = 0;
        for (const triple& a : axes)
            most = std::max(most, std::sqrt(a[0] * a[0] + a[1] * a[1] + a[2] * a[2]));
        return most;
    }
};

inline placement moved(const triple& by) {
    placement p;
    p.origin = by;
    return p;
}

inline placement scaled(const triple& by) {
    placement p;
    for (std::size_t k = 0; k < 3; ++k) p.axes[k][k] = by[k];
    return p;
}

inline placement turned(double radians) {  // about z
    placement p;
    const double c = std::cos(radians), s = std::sin(radians);
    p.axes[0] = {c, s, 0};
    p.axes[1] = {-s, c, 0};
    return p;
}

// The axes of flat objects by their extrusion direction: the arbitrary axis algorithm of the DXF
// reference. A direction without length is z.
inline placement extruded(const triple& direction) {
    const double length = std::sqrt(direction[0] * direction[0] + direction[1] * direction[1] +
                                    direction[2] * direction[2]);
    placement p;
    if (!(length > 0) || !std::isfinite(length)) return p;
    const triple n = {direction[0] / length, direction[1] / length, direction[2] / length};
    const double near = 1.0 / 64;
    const auto cross = [](const triple& a, const triple& b) {
        return triple{a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2],
                      a[0] * b[1] - a[1] * b[0]};
    };
    const bool isupright = std::fabs(n[0]) < near && std::fabs(n[1]) < near;
    triple x = cross(isupright ? triple{0, 1, 0} : triple{0, 0, 1}, n);
    const double width = std::sqrt(x[0] * x[0] + x[1] * x[1] + x[2] * x[2]);
    for (double& v : x) v /= width;
    p.axes = {x, cross(n, x), n};
    return p;
}
