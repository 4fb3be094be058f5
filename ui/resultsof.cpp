// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Results of": the combination in the main window's list, one load case, or an envelope
// over a set of combinations with the places that govern it.
#include <QBoxLayout>
#include <QComboBox>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <algorithm>

#include "core/model.h"
#include "core/textfile.h"
#include "post/contour.h"
#include "post/diagrams.h"
#include "post/nodeenvelope.h"
#include "post/plainnumber.h"
#include "post/plotunits.h"
#include "post/shapes.h"
#include "post/source.h"
#include "post/stressenvelope.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"

namespace {

class sourcedialog : public sidedialog {
  public:
    sourcedialog() : sidedialog(themainwindow) {
        setWindowTitle("Results of");
        setProperty(besidemain, true);
        auto* const rows = new QVBoxLayout(this);
        static const char* const captions[] = {"Load combination in the list", "Load case",
                                               "Envelope of combinations"};
        for (int i = 0; i < 3; ++i) {
            kinds[i] = new QRadioButton(captions[i], this);
            kinds[i]->setObjectName(QString("source(%1)").arg(i));
            kinds[i]->setChecked(i == int(shownsource.of));
            connect(kinds[i], &QRadioButton::clicked, this,
                    guardedhandler([this](bool) { changed(); }));
            rows->addWidget(kinds[i]);
            if (i == 1) buildcases(rows);
        }
        buildset(rows);
        buildtable(rows);
        auto* const foot = new QHBoxLayout;
        addcopytable(table, this, foot);
        foot->addStretch(1);
        connect(newbutton("Ready", "Ready", this, foot), &QPushButton::clicked, this,
                &QDialog::accept);
        rows->addLayout(foot);
        showform();
    }

  protected:
    // What the views show may have become another meanwhile.
    void changeEvent(QEvent* event) override {
        sidedialog::changeEvent(event);
        if (event->type() == QEvent::ActivationChange && isActiveWindow()) showform();
    }

  private:
    void buildcases(QBoxLayout* rows) {
        cases = new QComboBox(this);
        cases->setObjectName("case");
        std::vector<std::string> names;
        for (int lc = 1; lc <= nlc(); ++lc) names.push_back(lcname(lc));
        showlist(cases, names, std::clamp(shownsource.lc, 1, nlc()) - 1);
        rows->addWidget(cases);
        connect(cases, &QComboBox::activated, this, guardedhandler([this](int) {
                    kinds[1]->setChecked(true);
                    changed();
                }));
    }
    void buildset(QBoxLayout* rows) {
        kind = new QComboBox(this);
        kind->setObjectName("kind");
        kind->addItems({"Largest by size", "Largest", "Smallest"});
        kind->setCurrentIndex(int(shownsource.kind));
        rows->addWidget(kind);
        set = new QListWidget(this);
        set->setObjectName("set");
        const std::vector<int> in = envelopeset();
        for (int c = 1; c <= ncomb(); ++c) {
            auto* const item = new QListWidgetItem(qname(lcombname(c)), set);
            item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
            item->setCheckState(std::ranges::find(in, c) != in.end() ? Qt::Checked : Qt::Unchecked);
        }
        rows->addWidget(set);
        const auto chosen = [this] {
            kinds[2]->setChecked(true);
            changed();
        };
        connect(kind, &QComboBox::activated, this, guardedhandler([chosen](int) { chosen(); }));
        connect(set, &QListWidget::itemChanged, this,
                guardedhandler([chosen](QListWidgetItem*) { chosen(); }));
    }
    void buildtable(QBoxLayout* rows) {
        table = new QTableWidget(0, 4, this);
        table->setObjectName("governing");
        table->setHorizontalHeaderLabels({"Of", "Value", "Place", "Governed by"});
        table->setEditTriggers(QAbstractItemView::NoEditTriggers);
        table->setMinimumSize(420, 150);
        widentable(table);
        rows->addWidget(table, 1);
    }
    void changed() {
        resultsource source = shownsource;
        for (int i = 0; i < 3; ++i)
            if (kinds[i]->isChecked()) source.of = sources(i);
        source.lc = cases->currentIndex() + 1;
        source.kind = envelopekinds(kind->currentIndex());
        source.set.clear();
        for (int c = 1; c <= set->count(); ++c)
            if (set->item(c - 1)->checkState() == Qt::Checked) source.set.push_back(c);
        if (int(source.set.size()) == set->count()) source.set.clear();
        choosesource(source);
        keepsource();
        showform();
    }
    void put(int column, const std::string& text) {
        table->setItem(table->rowCount() - 1, column, new QTableWidgetItem(qtext(text)));
    }
    void addrow(const std::string& of, double value, const std::string& place, int c) {
        table->insertRow(table->rowCount());
        put(0, of);
        put(1, shorttext(value));
        put(2, place);
        put(3, c >= 1 && c <= ncomb() ? shownname(lcombname(c)) : "");
    }
    void addnodes(const std::string& of, const envelopebounds& b) {
        for (const envelopeplace* at : {&b.high, &b.low})
            addrow(of, at->value, "node " + std::to_string(at->item), at->combination);
    }
    void showform() {
        table->setRowCount(0);
        if (!isenvelope()) return;
        if (plotready() && plotsstress())
            for (const enveloperow& row : envelopetable(isplotted))
                addrow(groupname(row.group), row.value * shownfactor(plotformula()),
                       "element " + std::to_string(row.e) + ", node " +
                           std::to_string(int(elems(row.e, row.corner))),
                       row.combination);
        const bool moves = isdeformed() || (iscontour() && !plotsstress());
        if (moves && needsnodeenvelope(dispcontour) && readnodeenvelope(dispcontour))
            for (std::size_t q = 0; q < extremesofnodes().bounds.size(); ++q)
                addnodes(extremesofnodes().names[q], extremesofnodes().bounds[q]);
        if (diagramshown && diagramrange().high.e != 0 && !diagramrange().isnoise()) {
            const memberextreme &high = diagramrange().high, &low = diagramrange().low;
            const memberquantity q = diagram.quantity;
            const std::string label = quantityrows[q].label;
            addrow(label, high.value, "element " + std::to_string(high.e),
                   governorsof(high.e).high[q][high.station]);
            addrow(label, low.value, "element " + std::to_string(low.e),
                   governorsof(low.e).low[q][low.station]);
        }
        table->resizeColumnsToContents();
    }

    QRadioButton* kinds[3];
    QComboBox *cases, *kind;
    QListWidget* set;
    QTableWidget* table;
};

}  // namespace

QDialog* makeresultsof() {
    return new sourcedialog;
}
