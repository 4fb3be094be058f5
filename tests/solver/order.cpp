// SPDX-License-Identifier: GPL-3.0-or-later
// Errors against closed forms fall with the square of the element's size.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/solver/verify.h"

namespace {
// Errors of meshes each twice as fine as the one before.
class convergence {
  public:
    void add(double value, double truth) {
        const double error = std::fabs(value / truth - 1);
        if (last > 0) order = std::log2(last / error);
        last = error;
    }
    double order = 0;  // between the two finest

  private:
    double last = 0;
};
}  // namespace

static const double quadratic = 1.7;  // what a last step towards the second order shows at least
static const double right = M_PI / 2;

// Lame: ring of radii 1 and 2 in plane stress under pressure 1 from inside.
TEST(Verification, RingUnderPressureFromInside) {
    const double modulus = 1000, poisson = 0.3, inner = 1, outer = 2;
    const double truth = inner / modulus / (outer * outer - inner * inner) *
                         ((1 - poisson) * inner * inner + (1 + poisson) * outer * outer);
    for (const int type : {typememb3, typememb4, typeshell3, typeshell4}) {
        convergence c;
        for (const int n : {4, 8, 16, 32}) {
            build b;
            b.m.twod = true;
            const auto at =
                b.mesh(type, b.plate(modulus, poisson, 0.5), n, n, [&](double r, double s) {
                    const double radius = inner + (outer - inner) * r;
                    return vec3(radius * std::cos(right * s), radius * std::sin(right * s), 0);
                });
            for (int i = 0; i <= n; ++i) {
                b.fix(at.number(i, 0), {2}), b.fix(at.number(i, n), {1});
                if (type == typeshell3 || type == typeshell4)
                    b.fix(at.number(i, 0), {6}), b.fix(at.number(i, n), {6});
                const double push = 0.5 * inner * right / n * (i == 0 || i == n ? 0.5 : 1);
                b.load(1, at.number(0, i), 1, push * std::cos(right * i / n));
                b.load(1, at.number(0, i), 2, push * std::sin(right * i / n));
            }
            const results r = b.solve();
            provebalance(r);
            const double widened = moved(r, 1, at.number(0, 0), 1);
            c.add(widened, truth);
            if (n > 4)
                prove({"membrane", "Ring under pressure from inside, inner radius",
                       meshname(type, n, n), "closed", 0, truth, widened,
                       (type == typememb3 || type == typeshell3 ? 3.5 : 0.6) / (n * n)});
        }
        EXPECT_GT(c.order, quadratic) << kindof(type).name;
    }
}

// Widening of the edge of a long cylinder under a ring load: a beam on an elastic foundation, with
// shear. w = exp(-a x) (w0 cos b x + w1 sin b x); no moment at the edge, shear force 1.
static double edgeunderring(double rigidity, double shear, double foundation) {
    const double half = foundation / (2 * shear), size = std::sqrt(foundation / rigidity);
    const double a = std::sqrt((size + half) / 2), b = std::sqrt((size - half) / 2);
    const double w1 = -half / (2 * a * b);  // over w0
    const double first = -a + b * w1;
    const double third = -a * a * a + 3 * a * b * b + (3 * a * a * b - b * b * b) * w1;
    return 1 / (rigidity * (third - 2 * half * first));
}

TEST(Verification, CylinderUnderARingLoad) {
    const double modulus = 2e5, poisson = 0.3, radius = 10, thickness = 0.1, length = 10;
    const double truth =
        edgeunderring(modulus * std::pow(thickness, 3) / (12 * (1 - poisson * poisson)),
                      5.0 / 6 * modulus / (2 * (1 + poisson)) * thickness,
                      modulus * thickness / (radius * radius));
    for (const int type : {typeshell4, typeshell3}) {
        convergence c;
        for (const int n : {16, 32, 64}) {
            build b;
            const int around = n / 2;
            const auto at = b.mesh(type, b.plate(modulus, poisson, thickness), around, n,
                                   [&](double r, double s) {
                                       return vec3(radius * std::cos(right * r),
                                                   radius * std::sin(right * r), length * s);
                                   });
            for (int j = 0; j <= n; ++j) {
                b.fix(at.number(0, j), {2, 4, 6});
                b.fix(at.number(around, j), {1, 5, 6});
            }
            for (int i = 0; i <= around; ++i) {
                b.fix(at.number(i, n), {1, 2, 3, 4, 5, 6});
                const double push = radius * right / around * (i == 0 || i == around ? 0.5 : 1);
                b.load(1, at.number(i, 0), 1, push * std::cos(right * i / around));
                b.load(1, at.number(i, 0), 2, push * std::sin(right * i / around));
            }
            const results r = b.solve();
            provebalance(r);
            const double widened = moved(r, 1, at.number(0, 0), 1);
            c.add(widened, truth);
            prove({"shell", "Cylinder under a ring load at its edge", meshname(type, around, n),
                   "closed", 0, truth, widened,
                   n == 16   ? 0.1
                   : n == 32 ? 0.03
                             : 0.01});
        }
        EXPECT_GT(c.order, quadratic) << kindof(type).name;
    }
}

// Quarter of a clamped circle, elements of every shape: w = q a^4 / 64 D.
TEST(Verification, ClampedCircle) {
    for (const int type : {typeplate4, typeplate3, typeshell4}) {
        convergence c;
        for (const int n : {4, 8, 16}) {
            build b;
            const int g = b.plate(10.92e3, 0.3, 0.1);
            const auto at = b.mesh(type, g, n, n, [](double r, double s) {
                // a square drawn out to a circle towards its far edges
                const double far = std::max(r, s), near = std::min(r, s);
                const double a = far > 0 ? M_PI / 4 * near / far : 0;
                const vec3 round = far * vec3(std::cos(a), std::sin(a), 0);
                const vec3 corner = r >= s ? round : vec3(round.y(), round.x(), 0);
                return vec3(far * corner + (1 - far) * vec3(r, s, 0) * 0.8);
            });
            for (int i = 0; i <= n; ++i) {
                b.fix(at.number(i, 0), {2, 4, 6});
                b.fix(at.number(0, i), {1, 5, 6});
                b.fix(at.number(i, n), {3, 4, 5});
                b.fix(at.number(n, i), {3, 4, 5});
            }
            for (int e = 1; e <= b.m.nelems(); ++e) b.press(1, e, 3, 1);
            const results r = b.solve();
            provebalance(r);
            // D = 1; shear adds q a^2 / 4 k G t
            const double shear = 1 / (4 * 5.0 / 6 * 4200 * 0.1), truth = 1.0 / 64 + shear;
            const double middle = moved(r, 1, at.number(0, 0), 3);
            c.add(middle, truth);
            prove({"plate", "Clamped circle, even load", meshname(type, n, n), "T", 0, truth,
                   middle,
                   n == 4   ? 0.02
                   : n == 8 ? 0.005
                            : 0.0012});
        }
        EXPECT_GT(c.order, quadratic) << kindof(type).name;
    }
}
