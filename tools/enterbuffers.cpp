// SPDX-License-Identifier: GPL-3.0-or-later
// From the buffers into the model.
#include "tools/enterbuffers.h"

#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "edit/Edit.h"
#include "edit/merge.h"
#include "edit/move.h"
#include "edit/selection.h"
#include "view/drawelems.h"
#include "view/moddraw.h"

entrance enterbuffers(const std::function<void()>& pasted) {
    entrance result;
    graphics2(0, 0, 0) = 0;
    const bool hasnodes = tmpnodes(0, 0) != 0, haselements = tmpelems(0, 0) != 0;
    hideselection();
    if (!editpaste()) {
        showselection();
        return result;
    }
    pasted();
    result.done = true;
    tmpnodes(0, 0) = tmpelems(0, 0) = 0;
    const int merged = hasnodes && automergenodes ? mergenodes() : 0;
    const int doubles = haselements && automergeelems ? mergeelements() : 0;
    movepending = editing = false;
    redrawall();
    if (hasnodes && automergenodes) result.text = "; " + numbertext(merged) + " nodes merged";
    if (doubles > 0) result.text += ", " + numbertext(doubles) + " double elements";
    return result;
}
