// SPDX-License-Identifier: GPL-3.0-or-later
// The window of the selected patches.
#include "tools/patchedit.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"

namespace {

class patchdialog : public QDialog {
  public:
    patchdialog() : QDialog(themainwindow) {
        setWindowTitle("Patches");
        auto* const rows = new QVBoxLayout(this);
        auto* const frame = new QGroupBox("Select Patches", this);
        auto* const grid = new QGridLayout(frame);
        items = new QComboBox(frame);
        items->setObjectName("Combo1");
        grid->addWidget(new QLabel("Patch number =", frame), 0, 0);
        grid->addWidget(items, 0, 1);
        const auto add = [&](int row, const char* caption, const char* name) {
            auto* const value = new QLabel(frame);
            value->setObjectName(name);
            grid->addWidget(new QLabel(caption, frame), row, 0);
            grid->addWidget(value, row, 1);
            return value;
        };
        mesh = add(1, "Mesh Type :", "Label2");
        element = add(2, "Element Type :", "Label3");
        group = add(3, "Group name :", "Label4");
        grid->setColumnStretch(1, 1);
        rows->addWidget(frame);
        edges = new QListWidget(this);
        edges->setObjectName("List1");
        edges->setMinimumSize(280, 110);
        rows->addWidget(edges, 1);
        auto* const row = new QHBoxLayout;
        row->addStretch(1);
        connect(newbutton("Command1", "Ready", this, row), &QPushButton::clicked, this,
                &QDialog::accept);
        rows->addLayout(row);
        connect(items, &QComboBox::activated, this, guardedhandler([this](int i) {
                    choosepatch(form, i);
                    showform();
                }));
        form = openpatchedit();
        showform();
    }

  private:
    void showform() {
        showlist(items, form.items, form.chosen);
        mesh->setText(qtext(form.mesh));
        element->setText(qtext(form.element));
        group->setText(qname(form.group));
        edges->clear();
        for (const std::string& text : form.edges) edges->addItem(qtext(text));
    }

    patcheditform form;
    QComboBox* items;
    QLabel *mesh, *element, *group;
    QListWidget* edges;
};

}  // namespace

QDialog* makepatchedit() {
    return new patchdialog;
}
