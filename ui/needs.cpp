// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Before the analysis".
#include "ui/needs.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <algorithm>

#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "edit/Mouseprocedures.h"
#include "files/analyse.h"
#include "tools/needs.h"
#include "ui/actions.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"

static void runnamed(const char* name) {
    if (const action* const row = findaction(name)) runaction(*row);
}

// Something must be selected before a window can give it a support or a load.
static void gotonodes(const char* action, const char* words) {
    if (nodesel(0) != 0) return runnamed(action);
    addready();
    runnamed("MnuSelectItem(0)");
    selecttype = selecttypes::window;
    theplatform().refresh();
    theplatform().showstatus(words);
}

namespace {

struct placerow {
    needplaces place;
    const char *caption, *tip;
    void (*go)(const need&);
};
const placerow places[] = {
    {needplaces::elements, "Mesh...", "Add, Mesh...",
     [](const need&) { runnamed("Mnuadditem(3)"); }},
    {needplaces::groups, "Element Group...", "Define, Element Group...",
     [](const need& n) {
         meshgroup = n.group;
         runnamed("definegroup(0)");
     }},
    {needplaces::supports, "Constraints...", "Add, Constraints...",
     [](const need&) {
         gotonodes("Mnuadditem(6)",
                   "Drag a box about the nodes to hold, then choose Add, Constraints...");
     }},
    {needplaces::plane, "2-D analysis", "Analyse, Options..., 2-D analysis",
     [](const need&) {
         dim2d = true;
         theplatform().refresh();
         startanalysis();
     }},
    {needplaces::loads, "Loads...", "Add, Loads, Nodal Loads or Mass",
     [](const need&) {
         gotonodes("mnuloads(0)", "Drag a box about the nodes to load, then choose Add, Loads");
     }},
};

class needsdialog : public QDialog {
  public:
    needsdialog() : QDialog(themainwindow) {
        setWindowTitle("Before the analysis");
        auto* const rows = new QVBoxLayout(this);
        rows->addWidget(new QLabel("The model is not ready to be analysed:", this));
        auto* const grid = new QGridLayout;
        grid->setColumnStretch(0, 1);
        const std::vector<need> needs = findneeds();
        const std::size_t most = 8;  // rows that a small screen has room for
        for (std::size_t i = 0; i < std::min(most, needs.size()); ++i) add(grid, needs[i], int(i));
        rows->addLayout(grid);
        if (needs.size() > most)
            rows->addWidget(
                new QLabel(QString("and %1 more of the kind; Analyse, Check model lists all")
                               .arg(needs.size() - most),
                           this));
        rows->addStretch(1);
        auto* const last = new QHBoxLayout;
        last->addStretch(1);
        newaction("Analyse", "Analyse all the same", this, last, [this] {
            close();
            runanalysis();
        });
        QPushButton* const ready = newbutton("Ready", "Close", this, last);
        connect(ready, &QPushButton::clicked, this, &QDialog::reject);
        rows->addLayout(last);
    }

  private:
    void add(QGridLayout* grid, const need& n, int row) {
        auto* const text = new QLabel(qtext(n.text), this);
        text->setTextFormat(Qt::PlainText);
        text->setWordWrap(true);
        text->setMinimumWidth(std::max(320, fontMetrics().averageCharWidth() * 50));
        grid->addWidget(text, row, 0);
        auto* const cell = new QHBoxLayout;
        const placerow& place = *std::ranges::find(places, n.place, &placerow::place);
        const std::string name = "Place(" + std::to_string(row) + ")";
        QPushButton* const button =
            newaction(name.c_str(), place.caption, this, cell, [this, n, &place] {
                close();
                place.go(n);
            });
        button->setToolTip(place.tip);
        button->setAccessibleName(qtext(n.text) + " " + place.caption);
        grid->addLayout(cell, row, 1);
    }
};

}  // namespace

QDialog* makeneeds() {
    return new needsdialog;
}

void startanalysis() {
    if (findneeds().empty()) return runanalysis();
    opendialog("needs");
}
