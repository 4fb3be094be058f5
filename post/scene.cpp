// SPDX-License-Identifier: GPL-3.0-or-later
// Scenes into the session and out of it.
#include "post/scene.h"

#include <algorithm>
#include <cmath>

#include "core/model.h"
#include "core/session.h"
#include "core/views.h"
#include "post/contour.h"
#include "post/diagrams.h"
#include "post/postproces.h"
#include "post/shapes.h"
#include "post/source.h"
#include "post/stressfile.h"
#include "view/autoscale.h"
#include "view/moddraw.h"

scene scenenow() {
    scene s;
    s.combination = curlcomb;
    s.deformed = menupostItem(deformedshape).checked;
    s.contour = menupostItem(contourplot).checked;
    s.mode = menupostItem(modeshape).checked;
    s.lines = menupostItem(elementstress).checked;
    s.component = stresscomp;
    s.data = contourdata;
    s.direction = dispcontour;
    s.filled = contourfilled;
    s.average = stressaverage;
    s.global = stressglobal;
    s.loads = checkedof(viewloads);
    s.loadcase = curlc;
    s.constraints = mnudrawlist(constraintsdrawn).checked;
    s.nodes = mnudrawlist(nodesdrawn).checked;
    s.elements = mnudrawlist(elementsdrawn).checked;
    s.hidden = mnudrawlist(hiddenline).checked;
    s.vertical = viewvert(1);
    s.horizontal = viewhor(1);
    s.fitted = false;
    s.point[0] = viewptx(1);
    s.point[1] = viewpty(1);
    s.point[2] = viewptz(1);
    s.scale = viewscale(1);
    s.diagram = diagramshown ? int(diagram.quantity) + 1 : 0;
    s.source = int(shownsource.of);
    s.sourcecase = shownsource.lc;
    s.envelope = int(shownsource.kind);
    return s;
}

static void setplace(const scene& s) {
    viewvert(1) = float(s.vertical);
    viewhor(1) = float(s.horizontal);
    if (s.fitted) return fit(1);
    viewptx(1) = float(s.point[0]);
    viewpty(1) = float(s.point[1]);
    viewptz(1) = float(s.point[2]);
    viewscale(1) = float(s.scale);
}

void setscene(const scene& s) {
    curlcomb = s.combination;
    menupostItem(deformedshape).checked = s.deformed;
    menupostItem(contourplot).checked = s.contour;
    menupostItem(modeshape).checked = s.mode;
    menupostItem(elementstress).checked = s.lines;
    stresscomp = s.component;
    contourdata = s.data;
    dispcontour = s.direction;
    contourfilled = s.filled;
    stressaverage = s.average;
    stressglobal = s.global;
    if (s.loads >= 0) checkonly(viewloads, s.loads);
    curlc = Integer(std::clamp(s.loadcase, 1, nlc()));  // one may have gone since
    mnudrawlist(constraintsdrawn).checked = s.constraints;
    mnudrawlist(nodesdrawn).checked = s.nodes;
    mnudrawlist(elementsdrawn).checked = s.elements;
    mnudrawlist(hiddenline).checked = s.hidden;
    setplace(s);
    diagramshown = s.diagram > 0;
    if (diagramshown) diagram.quantity = memberquantity(s.diagram - 1);
    shownsource.of = sources(s.source);
    shownsource.lc = std::clamp(s.sourcecase, 1, nlc());
    shownsource.kind = envelopekinds(s.envelope);
    forgetmembers();
    if (s.deformed || s.contour || s.mode || s.lines || diagramshown) readshown();
}

keptscene::keptscene()
    : before(scenenow()), set(postset), eye(viewdist(1)), plane(viewaw(1)), depth(viewdepth(1)) {}

keptscene::~keptscene() {
    setscene(before);
    postset = set;
    viewdist(1) = eye;
    viewaw(1) = plane;
    viewdepth(1) = depth;
    readshown();
}
