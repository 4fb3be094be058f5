// SPDX-License-Identifier: GPL-3.0-or-later
// The window that changes the selected elements.
#include "tools/modifyelem.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

#include "core/model.h"
#include "ui/cardhelp.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/pickbutton.h"

namespace {

class modifydialog : public QDialog {
  public:
    modifydialog() : QDialog(themainwindow) {
        setWindowTitle("Modify Elements");
        form = openmodifyelem();
        auto* const rows = new QVBoxLayout(this);
        auto* const frame = new QGroupBox("Elements", this);
        auto* const grid = new QGridLayout(frame);
        grid->addWidget(new QLabel("From", frame), 0, 1);
        grid->addWidget(new QLabel("To", frame), 0, 2);
        grid->addWidget(new QLabel("Element Type :", frame), 1, 0);
        grid->addWidget(new QLabel("Group name :", frame), 2, 0);
        fromtype = list(grid, 1, 1, "Combo1", form.fromtypes, form.fromtype);
        totype = list(grid, 1, 2, "Combo2", form.totypes, form.totype);
        fromgroup = list(grid, 2, 1, "Combo3", form.fromgroups, form.fromgroup);
        togroup = list(grid, 2, 2, "Combo4", form.togroups, form.togroup);
        rows->addWidget(frame);
        rotate = check(rows, "Check1", "Rotate local axes");
        mirror = check(rows, "Check2", "Mirror local axes");
        message = newmessageline("message", this, rows);
        auto* const row = new QHBoxLayout;
        row->addWidget(new pickbutton(this, 1, [this] { picked(); }));
        row->addWidget(newcardbutton(this, totype));
        row->addStretch(1);
        QPushButton* const ok = newbutton("Command1", "OK", this, row);
        ok->setDefault(true);
        connect(ok, &QPushButton::clicked, this, guardedhandler([this](bool) { apply(); }));
        connect(newbutton("Command2", "Ready", this, row), &QPushButton::clicked, this,
                &QDialog::accept);
        rows->addLayout(row);
        showselected();
    }

  private:
    QComboBox* list(QGridLayout* grid, int row, int column, const char* name,
                    const std::vector<std::string>& entries, int chosen) {
        auto* const box = new QComboBox(this);
        box->setObjectName(name);
        showlist(box, entries, chosen);
        grid->addWidget(box, row, column);
        return box;
    }
    QCheckBox* check(QBoxLayout* rows, const char* name, const char* caption) {
        auto* const box = new QCheckBox(caption, this);
        box->setObjectName(name);
        rows->addWidget(box);
        return box;
    }
    void picked() {
        form = openmodifyelem();
        showlist(fromtype, form.fromtypes, form.fromtype);
        showlist(fromgroup, form.fromgroups, form.fromgroup);
        showselected();
    }
    void showselected() {
        const int n = int(elemsel(0));
        message->setText(n == 1 ? QString("1 element is selected")
                                : QString("%1 elements are selected").arg(n));
    }
    void apply() {
        form.fromtype = fromtype->currentIndex();
        form.totype = totype->currentIndex();
        form.fromgroup = fromgroup->currentIndex();
        form.togroup = togroup->currentIndex();
        form.rotate = rotate->isChecked();
        form.mirror = mirror->isChecked();
        modselelem(form);
        showlist(fromtype, form.fromtypes, form.fromtype);
        message->setText(qtext(form.message));
    }

    modifyelemform form;
    QComboBox *fromtype, *totype, *fromgroup, *togroup;
    QCheckBox *rotate, *mirror;
    QLabel* message;
};

}  // namespace

QDialog* makemodifyelem() {
    return new modifydialog;
}
