// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Define Load Combinations": shows the form of loads/loadcombinations. When it closes,
// results on show are read again with the new multipliers.
#include "loads/loadcombinations.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "files/filop.h"
#include "files/saving.h"
#include "post/shapes.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "view/moddraw.h"

// A changed multiplier needs no new analysis: it is stored at once and shows in the results.
static void applychanges(const combinationform& form) {
    const hourglass wait;
    closeloadcombinations(form);
    rereadshown();
    if (isnamed()) savecombinations();
    showresults();
}

namespace {
class combinationdialog : public QDialog {
  public:
    combinationdialog() : QDialog(themainwindow) {
        setWindowTitle(tr("Define Load Combinations"));
        auto* const rows = new QVBoxLayout(this);
        auto* const group = new QGroupBox(tr("Load Combinations"), this);
        rows->addWidget(group, 1);
        auto* const inside = new QVBoxLayout(group);
        buildfields(inside);
        frame = new QGroupBox(group);
        frame->setObjectName("Frame2");
        auto* const framerows = new QVBoxLayout(frame);
        equation = new QListWidget(frame);
        equation->setObjectName("List1");
        equation->setSelectionMode(QAbstractItemView::NoSelection);
        equation->setMinimumSize(380, 130);
        framerows->addWidget(equation);
        inside->addWidget(frame, 1);
        buildbuttons(rows);
        message = newmessageline("Label6", this, rows);
        form = openloadcombinations();
        showform();
        connect(this, &QDialog::finished, this,
                guardedhandler([this](int) { applychanges(form); }));
    }

  private:
    void buildfields(QBoxLayout* rows) {
        auto* const grid = new QGridLayout;
        names = new QComboBox(this);
        cases = new QComboBox(this);
        multiplier = new QLineEdit(this);
        names->setObjectName("Combo1");
        cases->setObjectName("Combo2");
        multiplier->setObjectName("Text1");
        const std::pair<const char*, QWidget*> lines[] = {
            {"Load combination name", names}, {"Loadcase name", cases}, {"Multiplier", multiplier}};
        int row = 0;
        for (const auto& [caption, control] : lines) {
            grid->addWidget(new QLabel(caption, this), row, 0);
            grid->addWidget(control, row++, 1);
        }
        grid->setColumnStretch(1, 1);
        rows->addLayout(grid);
        maketyped(names);
        onlist(names, choosecomb);
        onlist(cases, choosecombcase);
        for (QLineEdit* box : {names->lineEdit(), multiplier})
            connect(box, &QLineEdit::textEdited, this, [this] { run(editcomb); });
        connect(multiplier, &QLineEdit::editingFinished, this, [this] { run(leavemultiplier); });
    }

    void buildbuttons(QBoxLayout* rows) {
        auto* const row = new QHBoxLayout;
        row->addStretch(1);
        onbutton(newbutton("Command1(1)", "Add", this, row),
                 [](combinationform& f) { addloadcomb(f); });
        onbutton(newbutton("Command1(0)", "Add Copy", this, row), addcopy);
        QPushButton* const update = newbutton("Command2", "Update", this, row);
        onbutton(update, updateloadcomb);
        update->setDefault(true);
        onbutton(newbutton("Command3", "Delete", this, row), delloadcomb);
        connect(newbutton("Command4", "Ready", this, row), &QPushButton::clicked, this,
                &QDialog::accept);
        rows->addLayout(row);
    }

    template <typename Operation>
    void run(Operation operation) {
        form.name = typedtext(names->lineEdit());
        form.multiplier = multiplier->text().toStdString();
        operation(form);
        showform();
    }
    template <typename Operation>
    void onbutton(QPushButton* b, Operation operation) {
        connect(b, &QPushButton::clicked, this,
                guardedhandler([this, operation](bool) { run(operation); }));
    }
    void onlist(QComboBox* list, void (*choose)(combinationform&, int)) {
        connect(list, &QComboBox::activated, this, guardedhandler([this, choose](int i) {
                    run([choose, i](combinationform& f) { choose(f, i); });
                }));
    }

    void showform() {
        showlist(names, form.names, form.chosen);
        showtext(names->lineEdit(), form.name);
        showlist(cases, form.cases, form.chosencase);
        showtext(multiplier, form.multiplier);
        frame->setTitle(qname(form.heading).replace("&", "&&"));
        equation->clear();
        for (const std::string& row : form.equation) equation->addItem(qtext(row));
        message->setText(qtext(form.message));
    }

    combinationform form;
    QComboBox *names, *cases;
    QLineEdit* multiplier;
    QGroupBox* frame;
    QListWidget* equation;
    QLabel* message;
};
}  // namespace

QDialog* makeloadcombinations() {
    return new combinationdialog;
}
