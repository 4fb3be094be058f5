// SPDX-License-Identifier: GPL-3.0-or-later
// Number expressions.
#include "exchange/arithmetic.h"

#include <cmath>

#include "exchange/textlines.h"

namespace {

// expression = [sign] term {sign term}; term = power {("*" | "/") power};
// power = {sign} (number | "(" expression ")") ["**" power]
class evaluation {
  public:
    explicit evaluation(std::string_view text) : at(text.data()), last(at + text.size()) {}
    bool whole(double& value) { return sum(value) && at == last && std::isfinite(value); }

  private:
    bool takes(char c) {
        const bool is = at != last && *at == c;
        if (is) ++at;
        return is;
    }
    bool takespower() {
        const bool is = last - at > 1 && at[0] == '*' && at[1] == '*';
        if (is) at += 2;
        return is;
    }
    bool sum(double& value) {
        if (!product(value)) return false;
        double next = 0;
        while (at != last && (*at == '+' || *at == '-')) {
            const double sign = *at++ == '-' ? -1 : 1;
            if (!product(next)) return false;
            value += sign * next;
        }
        return true;
    }
    bool product(double& value) {
        if (!power(value)) return false;
        double next = 0;
        while (at != last && (*at == '*' || *at == '/')) {
            const bool divides = *at++ == '/';
            if (!power(next)) return false;
            value = divides ? value / next : value * next;
        }
        return true;
    }
    bool power(double& value) {
        const int deepest = 200;  // brackets and powers inside each other
        if (++depth > deepest) return false;
        double sign = 1;
        for (; at != last && (*at == '+' || *at == '-'); ++at)
            if (*at == '-') sign = -sign;
        const char* end = at;
        if (takes('(')) {
            if (!sum(value) || !takes(')')) return false;
        } else {
            if (at == last || scannumber(at, last, value, end) != numberfault::none) return false;
            at = end;
        }
        double exponent = 0;
        if (takespower()) {
            if (!power(exponent)) return false;
            value = std::pow(value, exponent);
        }
        value *= sign;
        --depth;
        return true;
    }
    const char *at, *last;
    int depth = 0;
};

}  // namespace

bool readexpression(std::string_view text, double& number) {
    if (readreal(text, number)) return true;
    double value = 0;
    if (!evaluation(text).whole(value)) return false;
    number = value;
    return true;
}
