// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Member Window": all diagrams of the selected line elements as one member, and their
// largest and smallest values with their places.
#include <QBoxLayout>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <algorithm>

#include "core/model.h"
#include "post/drawchain.h"
#include "post/plainnumber.h"
#include "post/plotunits.h"
#include "post/source.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/surfacewidget.h"

namespace {

class memberwindow : public QDialog {
  public:
    memberwindow() : QDialog(themainwindow) {
        setWindowTitle("Member Window");
        setProperty(besidemain, true);
        resize(760, 720);
        auto* const rows = new QVBoxLayout(this);
        picture = new surfacewidget(this, "picture", [this](surface& s) {
            drawchain(s, chain, deflections ? memv : memN, deflections ? memw : memMz);
        });
        picture->setMinimumSize(300, 280);
        rows->addWidget(picture, 3);
        table = new QTableWidget(memberquantities, 5, this);
        table->setObjectName("extremes");
        table->setEditTriggers(QAbstractItemView::NoEditTriggers);
        table->setHorizontalHeaderLabels({"", "Largest", "in", "Smallest", "in"});
        table->verticalHeader()->hide();
        table->horizontalHeader()->setStretchLastSection(true);
        rows->addWidget(table, 2);
        message = newmessageline("message", this, rows);
        auto* const foot = new QHBoxLayout;
        newaction("take", "Take Selection", this, foot, [this] { takeselection(); });
        addcopytable(table, this, foot);
        auto* const kind = new QComboBox(this);
        kind->setObjectName("kind");
        kind->addItems({"Forces", "Deflections"});
        foot->addWidget(kind);
        connect(kind, &QComboBox::activated, this, guardedhandler([this](int i) {
                    deflections = i == 1;
                    picture->redraw();
                }));
        foot->addStretch(1);
        connect(newbutton("Ready", "Ready", this, foot), &QPushButton::clicked, this,
                &QDialog::accept);
        rows->addLayout(foot);
        takeselection();
    }

  private:
    void takeselection() {
        std::vector<int> elements;
        for (int i = 1; i <= int(elemsel(0)); ++i) elements.push_back(int(elemsel(i)));
        chain = chainof(elements);
        picture->redraw();
        filltable();
        message->setText(qtext(!chain.fault.empty()
                                   ? chain.fault + ". Select line elements one behind the other"
                                   : membernote));
    }
    void put(int row, int column, const std::string& text) {
        table->setItem(row, column, new QTableWidgetItem(qtext(text)));
    }
    // With the combination that governs, of an envelope.
    static std::string placed(const chainpoint& p, memberquantity q, bool high) {
        if (!isenvelope()) return placeof(p);
        const membergovernors g = governorsof(p.e);
        const int c = high ? g.high[q][p.station] : g.low[q][p.station];
        return placeof(p) + (c > 0 ? ", " + lcombname(c) : "");
    }
    void filltable() {
        table->clearContents();
        for (int i = 0; i < memberquantities; ++i) {
            const auto q = memberquantity(i);
            put(i, 0,
                headed(std::string(quantityrows[i].label) + ", " + quantityrows[i].caption,
                       quantityrows[i].unit));
            const std::vector<chainpoint> curve = chaincurve(chain, q);
            if (curve.empty()) continue;
            const auto high = std::ranges::max_element(curve, {}, &chainpoint::high);
            const auto low = std::ranges::min_element(curve, {}, &chainpoint::low);
            const double size = std::max(std::abs(high->high), std::abs(low->low));
            put(i, 1, plainnumber(high->high, size));
            put(i, 2, placed(*high, q, true));
            put(i, 3, plainnumber(low->low, size));
            put(i, 4, placed(*low, q, false));
        }
        table->resizeColumnsToContents();
    }

    memberchain chain;
    bool deflections = false;
    surfacewidget* picture;
    QTableWidget* table;
    QLabel* message;
};

}  // namespace

QDialog* makememberwindow() {
    return new memberwindow;
}
