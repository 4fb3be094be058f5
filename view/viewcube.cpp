// SPDX-License-Identifier: GPL-3.0-or-later
// Geometry of the cube.
#include "view/viewcube.h"

#include <cmath>

#include "core/session.h"
#include "core/views.h"

namespace {

struct faceplan {
    const char* name;
    int axis, sign;
    double vertical, horizontal;  // X, Y and Z look as the presets Y-Z, X-Z and X-Y do
};
const faceplan plans[] = {{"X", 0, 1, 0, 0},     {"-X", 0, -1, 0, 180}, {"Y", 1, 1, 0, 90},
                          {"-Y", 1, -1, 0, -90}, {"Z", 2, 1, 90, -90},  {"-Z", 2, -1, -90, -90}};

// Unit vectors of the view: to the right, up, towards the eye.
struct viewaxes {
    double right[3], up[3], eye[3];
    explicit viewaxes(int nview) {
        const double h = viewhor(nview), v = viewvert(nview);
        const double axes[3][3] = {
            {-std::sin(h), std::cos(h), 0},
            {-std::cos(h) * std::sin(v), -std::sin(h) * std::sin(v), std::cos(v)},
            {std::cos(h) * std::cos(v), std::sin(h) * std::cos(v), std::sin(v)}};
        for (int k = 0; k < 3; ++k) {
            right[k] = axes[0][k];
            up[k] = axes[1][k];
            eye[k] = axes[2][k];
        }
    }
};

double dot(const double* a, const double* b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

bool holds(const std::vector<point2>& corner, double x, double y) {
    bool inside = false;
    for (std::size_t i = 0; i < corner.size(); ++i) {
        const point2 &a = corner[i], &b = corner[(i + 1) % corner.size()];
        if ((a.y > y) != (b.y > y) && x < a.x + (y - a.y) / (b.y - a.y) * (b.x - a.x))
            inside = !inside;
    }
    return inside;
}

}  // namespace

viewcube::viewcube(int nview, point2 middle, double half) : reach(0.4 * half) {
    const double edgeon = 0.05;  // cosine from which a face can be seen
    const viewaxes axes(nview);
    const auto place = [&](const double* p) {
        return point2{middle.x + half * dot(axes.right, p), middle.y - half * dot(axes.up, p)};
    };
    for (const faceplan& plan : plans) {
        double normal[3] = {0, 0, 0};
        normal[plan.axis] = plan.sign;
        const double facing = dot(axes.eye, normal);
        if (facing < edgeon) continue;
        cubepart face{plan.name, plan.vertical, plan.horizontal, {}, facing};
        const int a = (plan.axis + 1) % 3, b = (plan.axis + 2) % 3;
        for (const auto& [s, t] : {std::pair(1, 1), {-1, 1}, {-1, -1}, {1, -1}}) {
            double corner[3];
            corner[plan.axis] = plan.sign;
            corner[a] = s;
            corner[b] = t;
            face.outline.push_back(place(corner));
        }
        faces.push_back(face);
    }
    for (int i = 0; i < 8; ++i) {
        const double corner[] = {i & 1 ? 1.0 : -1.0, i & 2 ? 1.0 : -1.0, i & 4 ? 1.0 : -1.0};
        if (dot(axes.eye, corner) < 0.5) continue;  // on the far side, or on the rim
        const char* const names[] = {"X", "Y", "Z"};
        std::string name;
        for (int k = 0; k < 3; ++k)
            name += std::string(k ? " " : "") + (corner[k] < 0 ? "-" : "") + names[k];
        corners.push_back({name,
                           45 * corner[2],
                           std::atan2(corner[1], corner[0]) * 180 / pi,
                           {place(corner)},
                           dot(axes.eye, corner) / std::sqrt(3.0)});
    }
}

const cubepart* viewcube::at(double x, double y) const {
    for (const cubepart& c : corners)
        if (std::hypot(x - c.outline[0].x, y - c.outline[0].y) < reach) return &c;
    for (const cubepart& f : faces)
        if (holds(f.outline, x, y)) return &f;
    return nullptr;
}
