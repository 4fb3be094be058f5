// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Combination Rules": the table of factors and the rule of loads/combinationrules.
#include "loads/combinationrules.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>

#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "post/shapes.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"

namespace {

class rulesdialog : public QDialog {
  public:
    rulesdialog() : QDialog(themainwindow), form(openrules()) {
        setWindowTitle("Combination Rules");
        auto* const rows = new QVBoxLayout(this);
        rule = new QComboBox(this);
        rule->setObjectName("rule");
        rule->addItems(
            {"One leading variable action", "All sign patterns of the variable actions"});
        rule->setCurrentIndex(int(form.rule));
        rows->addWidget(rule);
        table = new QTableWidget(nlc(), 5, this);
        table->setObjectName("factors");
        table->setHorizontalHeaderLabels({"Load case", "Action", "Most", "Least", "Companion"});
        table->setMinimumSize(520, 220);
        rows->addWidget(table, 1);
        for (int r = 0; r < nlc(); ++r) fillrow(r);
        widentable(table);
        buildlimit(rows);
        message = newmessageline("message", this, rows);
        auto* const foot = new QHBoxLayout;
        newaction("Write", "Write", this, foot, [this] { write(); });
        foot->addStretch(1);
        connect(newbutton("Ready", "Ready", this, foot), &QPushButton::clicked, this,
                &QDialog::accept);
        rows->addLayout(foot);
    }

  private:
    void fillrow(int r) {
        const casefactors& c = form.cases[std::size_t(r)];
        auto* const name = new QTableWidgetItem(qname(lcname(r + 1)));
        name->setFlags(name->flags() & ~Qt::ItemIsEditable);
        table->setItem(r, 0, name);
        auto* const role = new QComboBox(table);
        role->setObjectName(QString("role(%1)").arg(r + 1));
        role->addItems({"Permanent", "Variable", "Unused"});
        role->setCurrentIndex(int(c.role));
        table->setCellWidget(r, 1, role);
        const double values[] = {c.most, c.least, c.companion};
        for (int k = 0; k < 3; ++k)
            table->setItem(r, 2 + k, new QTableWidgetItem(qtext(numbertext(float(values[k])))));
    }
    void buildlimit(QBoxLayout* rows) {
        auto* const row = new QHBoxLayout;
        row->addWidget(new QLabel("Combinations at most", this));
        limit = new QSpinBox(this);
        limit->setObjectName("limit");
        limit->setRange(1, roomforcombinations());
        limit->setValue(form.limit);
        row->addWidget(limit);
        row->addStretch(1);
        rows->addLayout(row);
    }
    bool readform() {
        form.rule = combinationrules(rule->currentIndex());
        form.limit = limit->value();
        for (int r = 0; r < nlc(); ++r) {
            casefactors& c = form.cases[std::size_t(r)];
            c.role = caseroles(static_cast<QComboBox*>(table->cellWidget(r, 1))->currentIndex());
            double* const values[] = {&c.most, &c.least, &c.companion};
            for (int k = 0; k < 3; ++k)
                if (!readnumber(table->item(r, 2 + k)->text().toStdString(), *values[k])) {
                    message->setText(QString("Row %1: %2 is no number")
                                         .arg(r + 1)
                                         .arg(table->item(r, 2 + k)->text()));
                    return false;
                }
        }
        return true;
    }
    void write() {
        if (!readform()) return;
        messagebox box;
        box.text = "The combinations of the rule take the place of the " + numbertext(ncomb()) +
                   " of the model. Write them?";
        box.set = buttons::yesno;
        box.icon = icons::question;
        if (theplatform().show(box) != answers::yes) return;
        if (writerules(form)) choosecombination(1);
        message->setText(qtext(form.message));
        theplatform().refresh();
    }

    ruleform form;
    QComboBox* rule;
    QTableWidget* table;
    QSpinBox* limit;
    QLabel* message;
};

}  // namespace

QDialog* makecombinationrules() {
    return new rulesdialog;
}
