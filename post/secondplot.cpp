// SPDX-License-Identifier: GPL-3.0-or-later
// The second result in the place of the first.
#include "post/secondplot.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "core/model.h"
#include "core/session.h"
#include "core/textfile.h"
#include "post/source.h"
#include "view/drawelems.h"

static const std::size_t corners = 4;

secondplot second;
std::function<void()> readsecond;
static valuespan firstspan;  // of view 1's values
static int shown;            // guests within each other

valuespan::valuespan() : low(std::numeric_limits<double>::max()), high(-low) {}

void valuespan::take(double v) {
    low = std::min(low, v);
    high = std::max(high, v);
}

std::string nameofview(int nview) {
    if (nview != 2 && !menupostItem(modeshape).checked) return sourcename();
    const int number = nview == 2 ? second.number : curlcomb;
    if (menupostItem(modeshape).checked) return "Mode shape " + std::to_string(number);
    return number >= 1 && number <= ncomb() ? shownname(lcombname(number)) : "";
}

const float* comparedvalues(int e) {
    const std::size_t at = std::size_t(e) * corners;
    return shown > 0 && at + corners <= second.values.size() ? &second.values[at] : nullptr;
}

void includecompared(double& low, double& high) {
    if (!sidebyside || second.reading || !second.valid || !second.commonscale) return;
    if (shown == 0) {
        firstspan = {};
        firstspan.take(low);
        firstspan.take(high);
    }
    const valuespan& other = shown == 0 ? second.span : firstspan;
    low = std::min(low, other.low);
    high = std::max(high, other.high);
}

bool issecond() {
    return shown > 0;
}

static void swapdisplacements() {
    std::vector<float>& list = second.displacements;
    const std::size_t count = std::min(list.size() / 3, std::size_t(nnodes()));
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t k = 0; k < 3; ++k)
            std::swap(list[3 * i + k], nodes(1, long(i) + 1, long(k)));
}

ofview::ofview(int nview) : mine(sidebyside && nview == 2 && second.valid) {
    if (mine && shown++ == 0) swapdisplacements();
}

ofview::~ofview() {
    if (mine && --shown == 0) swapdisplacements();
}
