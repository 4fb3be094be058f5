// SPDX-License-Identifier: GPL-3.0-or-later
// The notes on the last press. State: they, and what a player has given.
#include "edit/outcome.h"

#include <algorithm>
#include <deque>

#include "core/model.h"
#include "core/session.h"
#include "view/scaleview.h"

static pressoutcome last;
static const double* given;
static std::deque<pickhit> givenhits;

pressoutcome& lastpress() {
    return last;
}

void newpress() {
    const double at[] = {modelx, modely, modelz};
    std::ranges::copy(at, last.point);
    std::ranges::copy(at, last.last);
    ++last.number;
    last.dragged = false;
    last.path.clear();
}

void notecorner() {
    last.path.push_back({modelx, modely, modelz});
}

void notedrag() {
    const double at[] = {modelx, modely, modelz};
    std::ranges::copy(at, last.last);
    last.dragged = true;
}

givenplace::givenplace(const double* point) {
    given = point;
}

givenplace::~givenplace() {
    given = nullptr;
}

bool isplacegiven() {
    return given != nullptr;
}

void takeplace(int nview, double x, double y) {
    unprojectat(nview, x, y);
    if (given == nullptr) return;
    modelx = given[0];
    modely = given[1];
    modelz = given[2];
}

void givehits(const std::vector<pickhit>& hits) {
    givenhits.assign(hits.begin(), hits.end());
}

pickhit agreedhit(int count, const std::function<pickhit()>& search) {
    pickhit hit{0, 0};
    if (!givenhits.empty()) {
        hit = givenhits.front();
        givenhits.pop_front();
    }
    if (hit.item < 1 || hit.item > count) hit = search();
    last.hits.push_back(hit);
    return hit;
}
