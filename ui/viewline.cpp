// SPDX-License-Identifier: GPL-3.0-or-later
// Views as lines of scripts.
#include "ui/viewline.h"

#include "core/numtext.h"
#include "core/views.h"
#include "ui/mainwindow.h"
#include "ui/scriptkeys.h"
#include "ui/viewwidget.h"
#include "view/moddraw.h"

static array1<float>* const viewnumbers[] = {&viewptx,   &viewpty,  &viewptz, &viewvert, &viewhor,
                                             &viewscale, &viewdist, &viewaw,  &viewdepth};

QString viewline(int nview) {
    QString line = "view " + QString::number(nview);
    for (const auto* list : viewnumbers)
        line += " " + QString::fromStdString(numbertext((*list)(nview)));
    return line;
}

void setview(const QStringList& words) {
    const int v = words.value(1).toInt();
    if (v < 1 || v > nviews) refuse("there is no view " + words.value(1));
    int i = 2;
    for (auto* const list : viewnumbers) {
        bool good = false;
        (*list)(v) = words.value(i++).toFloat(&good);
        if (!good) refuse("\"" + words.value(i - 1) + "\" is no number");
    }
    if (themainwindow->view(v)->isVisible()) drawview(v);
}
