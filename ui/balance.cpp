// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Balance": loads and reactions of each load case, what is left of both, the largest
// displacements and the solver's warnings. It comes up by itself after a run.
#include "post/balance.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <algorithm>

#include "files/analyse.h"
#include "ui/balance.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/qtplatform.h"
#include "ui/windowsettings.h"

static bool showbalance = true;  // by itself after a run
static const char* const setting = "balance/after";

namespace {

class balancewindow : public sidedialog {
  public:
    balancewindow() : sidedialog(themainwindow) {
        setWindowTitle("Balance");
        setProperty(besidemain, true);
        resize(560, 380);
        auto* const rows = new QVBoxLayout(this);
        message = new QLabel(this);
        message->setObjectName("message");
        message->setWordWrap(true);
        rows->addWidget(message);
        table = new QTableWidget(this);
        table->setObjectName("sums");
        table->setColumnCount(columns);
        table->setEditTriggers(QAbstractItemView::NoEditTriggers);
        table->horizontalHeader()->hide();
        table->verticalHeader()->hide();
        rows->addWidget(table, 1);
        auto* const foot = new QHBoxLayout;
        auto* const after = new QCheckBox("Show after each analysis", this);
        after->setObjectName("after");
        after->setChecked(showbalance);
        connect(after, &QCheckBox::toggled, this, [](bool on) {
            showbalance = on;
            windowsettings().setValue(setting, on);
        });
        foot->addWidget(after);
        foot->addStretch(1);
        addcopytable(table, this, foot);
        connect(newbutton("Ready", "Ready", this, foot), &QPushButton::clicked, this,
                &QDialog::accept);
        rows->addLayout(foot);
        fill();
    }

  private:
    void fill() {
        const balance b = readbalance();
        const std::vector<balancerow> page = balancepage(b);
        int out = 0;
        for (const casebalance& c : b.cases) out += !c.isbalanced();
        message->setText(!b.fault.empty() ? qtext(b.fault)
                         : out == 0       ? "Loads and reactions are in balance in every load case."
                                          : QString("Out of balance: %1 of %2 load cases, in red.")
                                          .arg(out)
                                          .arg(b.cases.size()));
        table->setRowCount(int(page.size()));
        for (int r = 0; r < int(page.size()); ++r)
            if (!issentence(page[std::size_t(r)])) fillrow(r, page[std::size_t(r)]);
        table->resizeColumnsToContents();
        widentable(table);
        for (int r = 0; r < int(page.size()); ++r)
            if (issentence(page[std::size_t(r)])) fillsentence(r, page[std::size_t(r)]);
    }
    static bool issentence(const balancerow& row) { return row.cells.size() == 1; }
    // Over all columns in as many lines as it needs: none of them shall be as wide as a warning.
    void fillsentence(int r, const balancerow& row) {
        fillrow(r, row);
        int width = 0;
        for (int k = 0; k < columns; ++k) width += table->columnWidth(k);
        const int margin = 8;
        const QRect room(0, 0, width - margin, 10000);
        const QRect text =
            table->fontMetrics().boundingRect(room, Qt::TextWordWrap, table->item(r, 0)->text());
        table->setRowHeight(r, std::max(table->rowHeight(r), text.height() + margin));
    }
    void fillrow(int r, const balancerow& row) {
        for (int k = 0; k < int(row.cells.size()); ++k) {
            auto* const item = new QTableWidgetItem(qtext(row.cells[std::size_t(k)]));
            if (k > 0) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            QFont font = item->font();
            font.setBold(row.head);
            item->setFont(font);
            if (row.red) {
                item->setBackground(QColor(200, 30, 30));
                item->setForeground(Qt::white);
            }
            table->setItem(r, k, item);
        }
        if (issentence(row)) table->setSpan(r, 0, 1, columns);
    }

    static constexpr int columns = 7;
    QLabel* message;
    QTableWidget* table;
};

}  // namespace

QDialog* makebalance() {
    return new balancewindow;
}

// A script has its own pictures and expects no window that it did not open.
void wirebalance() {
    analysisdone = [] {
        showbalance = windowsettings().value(setting, true).toBool();
        if (showbalance && !theqtplatform().scripted && themainwindow->isVisible()) {
            if (QWidget* const open = themainwindow->findChild<QDialog*>("balance")) open->close();
            opendialog("balance");
        }
    };
}
