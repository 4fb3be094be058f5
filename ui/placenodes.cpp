// SPDX-License-Identifier: GPL-3.0-or-later
// The windows "Edit graphic Elements" and "Graphic Element Options".
#include "tools/placenodes.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"

namespace {

using fieldedit = void (*)(placenodesform&, const std::string&);

class graphicdialog : public sidedialog {
  public:
    graphicdialog() : sidedialog(themainwindow) {
        setWindowTitle("Edit graphic Elements");
        form = openplacenodes();
        auto* const rows = new QVBoxLayout(this);
        buildnodes(rows);
        buildproperties(rows);
        rows->addStretch(1);
        auto* const row = new QHBoxLayout;
        row->addStretch(1);
        QPushButton* const ok = newbutton("Command1", "OK", this, row);
        ok->setAutoDefault(false);
        connect(ok, &QPushButton::clicked, this, &QDialog::accept);
        rows->addLayout(row);
        connect(this, &QDialog::finished, this,
                guardedhandler([this](int) { closeplacenodes(form); }));
        showform();
        nodes->setFocus();
    }

  private:
    QLineEdit* addbox(QGridLayout* grid, int row, const char* name, QLabel* label, fieldedit edit) {
        auto* const box = new QLineEdit(this);
        box->setObjectName(name);
        label->setBuddy(box);
        grid->addWidget(label, row, 0);
        grid->addWidget(box, row, 1);
        connect(box, &QLineEdit::textEdited, this,
                guardedhandler([this, edit, box](const QString& text) {
                    edit(form, text.toStdString());
                    showform();
                    if (box->text() != text) box->selectAll();  // put back: to be typed over
                }));
        connect(box, &QLineEdit::editingFinished, this, guardedhandler([this] {
                    leavefield(form);
                    showform();
                }));
        return box;
    }
    void buildnodes(QBoxLayout* rows) {
        auto* const frame = new QGroupBox("Graphic Nodes", this);
        auto* const grid = new QGridLayout(frame);
        nodes = addbox(grid, 0, "Text1", new QLabel("Nodes  =", this), editnodes);
        spaces = addbox(grid, 1, "Text2", new QLabel("Spaces =", this), editspaces);
        factor = addbox(grid, 2, "Text3", new QLabel("Distribution factor =", this), editfactor);
        rows->addWidget(frame);
    }
    void buildproperties(QBoxLayout* rows) {
        auto* const frame = new QGroupBox("Element Properties", this);
        auto* const grid = new QGridLayout(frame);
        numbers = new QComboBox(this);
        numbers->setObjectName("Combo1");
        maketyped(numbers);
        grid->addWidget(new QLabel("Element number =", this), 0, 0);
        grid->addWidget(numbers, 0, 1);
        connect(numbers, &QComboBox::activated, this, guardedhandler([this](int i) {
                    choosegraphic(form, i);
                    showform();
                }));
        connect(numbers->lineEdit(), &QLineEdit::editingFinished, this, guardedhandler([this] {
                    if (const std::string text = numbers->currentText().toStdString();
                        text != form.number)
                        editnumber(form, text);
                    showform();
                }));
        type = new QLabel(this);
        type->setObjectName("Label5");
        grid->addWidget(new QLabel("Element Type =", this), 1, 0);
        grid->addWidget(type, 1, 1);
        valuelabel = new QLabel(this);
        valuelabel->setObjectName("Label6");
        value = addbox(grid, 2, "Text4", valuelabel, editlengthradius);
        grid->setColumnStretch(1, 1);
        rows->addWidget(frame);
    }
    void showform() {
        showtext(nodes, form.nodes);
        showtext(spaces, form.spaces);
        showtext(factor, form.factor);
        showlist(numbers, form.numbers, form.chosen);
        showtext(numbers->lineEdit(), form.number);
        type->setText(qtext(form.type));
        valuelabel->setText(qtext(form.valuelabel));
        valuelabel->setVisible(form.valueshown);
        value->setVisible(form.valueshown);
        value->setEnabled(form.valueenabled);
        showtext(value, form.value);
    }

    placenodesform form;
    QLineEdit *nodes, *spaces, *factor, *value;
    QComboBox* numbers;
    QLabel *type, *valuelabel;
};

class graphicoptions : public QDialog {
  public:
    graphicoptions() : QDialog(themainwindow) {
        setWindowTitle("Graphic Element Options");
        auto* const rows = new QVBoxLayout(this);
        snap = new QCheckBox("Snap", this);
        snap->setObjectName("Check1");
        snap->setChecked(opengraphoptions().snap);
        snap->setToolTip(tr("New points go to nodes and graphic elements within reach"));
        rows->addWidget(snap);
        rows->addStretch(1);
        auto* const row = new QHBoxLayout;
        row->addStretch(1);
        connect(newbutton("Command1", "Ready", this, row), &QPushButton::clicked, this,
                &QDialog::accept);
        rows->addLayout(row);
        setMinimumWidth(240);
    }
    // Every way of closing stores the state.
    void done(int result) override {
        storegraphoptions({snap->isChecked()});
        QDialog::done(result);
    }

  private:
    QCheckBox* snap;
};

}  // namespace

QDialog* makeplacenodes() {
    return new graphicdialog;
}

QDialog* makegraphoptions() {
    return new graphicoptions;
}
