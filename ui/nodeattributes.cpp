// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Edit loads and constraints": shows the form of loads/nodeattributes. It stands at the
// right border of the main window, beside the model.
#include "loads/nodeattributes.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShowEvent>

#include "core/session.h"
#include "loads/presentrows.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/pickbutton.h"

namespace {

// Six fields with caption and unit; the constraint group and the load group have one each.
struct fieldgroup {
    QGroupBox* frame = nullptr;
    std::array<QLabel*, 6> caption{}, unit{};
    std::array<QLineEdit*, 6> box{};
};

class attributedialog : public sidedialog {
  public:
    attributedialog() : sidedialog(themainwindow) {
        form = openattributes();
        setWindowTitle(qtext(form.title));
        auto* const rows = new QVBoxLayout(this);
        buildlists(rows);
        buildfields(constraints, "Text1", rows);
        buildfields(loads, "Text2", rows);
        constraints.frame->setObjectName("Constrains");
        constraints.frame->setTitle("Constrains");
        addsupports();
        addsharing();
        loads.frame->setObjectName("Loads");
        present = newmessageline("present", this, rows);
        newmessageline("hint", this, rows)->setText(qtext(form.hint));
        rows->addStretch(1);
        auto* const row = new QHBoxLayout;
        row->addWidget(new pickbutton(this, editelemload ? 1 : 0, [this] { picked(); }));
        row->addStretch(1);
        QPushButton* const apply = newbutton("Command1", "Apply", this, row);
        apply->setDefault(true);
        connect(apply, &QPushButton::clicked, this, guardedhandler([this](bool) {
                    applyattributes(form);
                    present->setText(qtext(presentrows(form)));
                }));
        connect(newbutton("Command2", "Ready", this, row), &QPushButton::clicked, this,
                &QDialog::accept);
        rows->addLayout(row);
        showform();
        shown().box[0]->setFocus();
        connect(this, &QDialog::finished, this,
                guardedhandler([this](int) { closeattributes(form); }));
    }

  private:
    void buildlists(QBoxLayout* rows) {
        auto* const frame = selectframe = new QGroupBox(qtext(form.listgroup), this);
        frame->setObjectName("Select");
        listlabel = new QLabel(qtext(form.listcaption), frame);
        auto* const grid = new QGridLayout(frame);
        items = new QComboBox(frame);
        cases = new QComboBox(frame);
        items->setObjectName("Combo1");
        cases->setObjectName("Combo2");
        grid->addWidget(listlabel, 0, 0);
        grid->addWidget(items, 0, 1);
        grid->addWidget(new QLabel(tr("Loadcase:"), frame), 1, 0);
        grid->addWidget(cases, 1, 1);
        grid->setColumnStretch(1, 1);
        rows->addWidget(frame);
        showlist(items, form.items, form.chosen);
        showlist(cases, form.cases, form.chosencase);
        onlist(items, chooseitem);
        onlist(cases, chooseattributecase);
    }

    void picked() {
        Initiate(form);
        form.text.fill("");
        showlist(items, form.items, form.chosen);
        listlabel->setText(qtext(form.listcaption));
        selectframe->setTitle(qtext(form.listgroup));
        showform();
        shown().box[0]->setFocus();
    }

    void buildfields(fieldgroup& group, const char* name, QBoxLayout* rows) {
        group.frame = new QGroupBox(this);
        auto* const grid = new QGridLayout(group.frame);
        for (std::size_t i = 0; i < 6; ++i) {
            group.caption[i] = new QLabel(group.frame);
            group.unit[i] = new QLabel(group.frame);
            group.box[i] = new QLineEdit(group.frame);
            group.box[i]->setObjectName(QString("%1(%2)").arg(name).arg(i));
            grid->addWidget(group.caption[i], int(i), 0);
            grid->addWidget(group.box[i], int(i), 1);
            grid->addWidget(group.unit[i], int(i), 2);
            connect(group.box[i], &QLineEdit::textEdited, this,
                    [this, i](const QString& text) { form.text[i] = text.toStdString(); });
        }
        grid->setColumnStretch(1, 1);
        rows->addWidget(group.frame);
    }

    // Buttons that fill the fields of the usual supports.
    void addsupports() {
        auto* const row = new QHBoxLayout;
        for (const bool clamped : {true, false}) {
            QPushButton* const b = clamped ? newbutton("clamp", "Clamp", constraints.frame, row)
                                           : newbutton("pin", "Pin", constraints.frame, row);
            b->setAutoDefault(false);
            b->setToolTip(clamped ? tr("0 for all directions and rotations")
                                  : tr("0 for the directions, rotations are free"));
            connect(b, &QPushButton::clicked, this, guardedhandler([this, clamped](bool) {
                        fillsupport(form, clamped);
                        showform();
                    }));
        }
        static_cast<QGridLayout*>(constraints.frame->layout())->addLayout(row, 6, 1, 1, 2);
    }

    void addsharing() {
        share = new QCheckBox(tr("Totals, shared out"), loads.frame);
        share->setObjectName("share");
        share->setToolTip(
            tr("The values are those of all selected nodes together, each of which "
               "takes its part of the edge or face"));
        static_cast<QGridLayout*>(loads.frame->layout())->addWidget(share, 6, 0, 1, 3);
        connect(share, &QCheckBox::toggled, this, [this](bool on) { form.shared = on; });
    }

    fieldgroup& shown() { return form.constraintgroup ? constraints : loads; }

    void onlist(QComboBox* list, void (*choose)(attributeform&, int)) {
        connect(list, &QComboBox::activated, this, guardedhandler([this, choose](int i) {
                    choose(form, i);
                    showform();
                }));
    }

    void showfields(fieldgroup& group, const std::array<attributelabel, 6>& labels) {
        for (std::size_t i = 0; i < 6; ++i) {
            group.caption[i]->setText(qtext(labels[i].caption));
            group.unit[i]->setText(qtext(labels[i].unit));
            group.caption[i]->setVisible(labels[i].shown);
            group.unit[i]->setVisible(labels[i].shown);
            group.box[i]->setVisible(labels[i].shown);
            if (&group == &shown()) showtext(group.box[i], form.text[i]);
        }
    }

    void showform() {
        loads.frame->setTitle(qtext(form.loadgroup));
        constraints.frame->setVisible(form.constraintgroup);
        loads.frame->setVisible(!form.constraintgroup);
        share->setVisible(editnodalload);
        showfields(constraints, constraintlabels());
        showfields(loads, form.loadlabel);
        present->setText(qtext(presentrows(form)));
    }

    attributeform form;
    QComboBox *items, *cases;
    QGroupBox* selectframe;
    QCheckBox* share;
    QLabel *listlabel, *present;
    fieldgroup constraints, loads;
};
}  // namespace

QDialog* makenodeattributes() {
    return new attributedialog;
}
