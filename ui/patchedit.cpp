// SPDX-License-Identifier: GPL-3.0-or-later
// The window of the selected patches.
#include "tools/patchedit.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
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
        addspaces(grid, 4, "Spaces, edges 1 and 2 :", "Text1(0)");
        addspaces(grid, 5, "Spaces, edges 3 and 4 :", "Text1(1)");
        grid->setColumnStretch(1, 1);
        rows->addWidget(frame);
        edges = new QListWidget(this);
        edges->setObjectName("List1");
        edges->setMinimumSize(280, 110);
        rows->addWidget(edges, 1);
        message = newmessageline("message", this, rows);
        auto* const row = new QHBoxLayout;
        set = addbutton("Command2", "Set Spaces", row, setpatchspaces);
        set->setToolTip(tr("Along opposite edges, on through the patches beside, and mesh again"));
        again = addbutton("Command3", "Mesh again", row, meshpatchesagain);
        again->setToolTip(tr("In place of the elements that these patches made"));
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
    void addspaces(QGridLayout* grid, int row, const char* caption, const char* name) {
        auto* const box = new QLineEdit(grid->parentWidget());
        box->setObjectName(name);
        auto* const label = new QLabel(caption, grid->parentWidget());
        label->setBuddy(box);
        grid->addWidget(label, row, 0);
        grid->addWidget(box, row, 1);
        const std::size_t i = boxes.size();
        boxes.push_back(box);
        connect(box, &QLineEdit::textEdited, this,
                [this, i](const QString& text) { form.spaces[i] = text.toStdString(); });
    }
    template <typename Action>
    QPushButton* addbutton(const char* name, const char* caption, QBoxLayout* row, Action action) {
        return newaction(name, caption, this, row, [this, action] {
            action(form);
            showform();
        });
    }
    void showform() {
        showlist(items, form.items, form.chosen);
        mesh->setText(qtext(form.mesh));
        element->setText(qtext(form.element));
        group->setText(qname(form.group));
        for (std::size_t i = 0; i < boxes.size(); ++i) {
            boxes[i]->setEnabled(int(i) < form.pairs);
            showtext(boxes[i], int(i) < form.pairs ? form.spaces[i] : "");
        }
        set->setEnabled(form.pairs > 0);
        again->setEnabled(form.items.front() != "None");
        message->setText(qtext(form.message));
        edges->clear();
        for (const std::string& text : form.edges) edges->addItem(qtext(text));
    }

    patcheditform form;
    QComboBox* items;
    QLabel *mesh, *element, *group;
    QListWidget* edges;
    std::vector<QLineEdit*> boxes;
    QPushButton *set, *again;
    QLabel* message;
};

}  // namespace

QDialog* makepatchedit() {
    return new patchdialog;
}
