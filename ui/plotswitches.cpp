// SPDX-License-Identifier: GPL-3.0-or-later
// Marks, value at the pointer.
#include "ui/plotswitches.h"

#include <QBoxLayout>
#include <QCheckBox>

#include "core/runtime.h"
#include "post/contour.h"
#include "post/shapes.h"
#include "ui/dialogs.h"

namespace {
struct plotswitch {
    const char *name, *caption, *tip;
    bool* on;
};
}  // namespace

static const plotswitch switches[] = {
    {"markextremes", "Marks", "Mark the highest and the lowest value", &markextremes},
    {"valueatpointer", "Value at Pointer", "Show the value under the pointer", &valueatpointer},
};

plotswitches::plotswitches(QWidget* parent) : QWidget(parent) {
    setObjectName("plotswitches");
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(1);
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const plotswitch& s = switches[i];
        boxes[i] = new QCheckBox(tr(s.caption), this);
        boxes[i]->setObjectName(s.name);
        boxes[i]->setToolTip(tr(s.tip));
        rows->addWidget(boxes[i]);
        connect(boxes[i], &QCheckBox::clicked, this,
                [&s] { guarded([&s] { toggleswitch(*s.on); }, fallback); });
    }
}

void plotswitches::refresh() {
    for (std::size_t i = 0; i < boxes.size(); ++i) boxes[i]->setChecked(*switches[i].on);
}
