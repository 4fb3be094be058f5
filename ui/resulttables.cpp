// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Table of results".
#include <QBoxLayout>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>

#include "exchange/tables.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"

namespace {

class tablesdialog : public QDialog {
  public:
    tablesdialog() : QDialog(themainwindow), form(opentables()) {
        setWindowTitle("Table of results");
        auto* const rows = new QVBoxLayout(this);
        auto* const file = new QLabel(qtext(form.path), this);
        file->setWordWrap(true);
        rows->addWidget(file);
        auto* const fields = new QFormLayout;
        rows->addLayout(fields);
        table = addlist(fields, "&Table", "Combo1", form.tables, form.chosen);
        block = addlist(fields, "&Of", "Combo2", form.blocks, form.block);
        group = addlist(fields, "&Group", "Combo3", form.groups, form.group);
        separator = addlist(fields, "&Separator", "Combo4", form.separators, form.separator);
        addokcancel(this, rows, [this] { accept(); });
        connect(table, &QComboBox::activated, this, guardedhandler([this](int entry) {
                    choosetable(form, entry);
                    showlist(block, form.blocks, form.block);
                }));
        connect(this, &QDialog::accepted, this, guardedhandler([this] { take(); }));
    }

  private:
    QComboBox* addlist(QFormLayout* fields, const char* caption, const char* name,
                       const std::vector<std::string>& entries, int chosen) {
        auto* const list = new QComboBox(this);
        list->setObjectName(name);
        list->setMinimumWidth(fontMetrics().averageCharWidth() * 24);
        showlist(list, entries, chosen);
        fields->addRow(caption, list);
        return list;
    }
    void take() {
        form.block = block->currentIndex();
        form.group = group->currentIndex();
        form.separator = separator->currentIndex();
        accepttables(form);
    }

    tableform form;
    QComboBox *table, *block, *group, *separator;
};

}  // namespace

QDialog* makeresulttables() {
    return new tablesdialog;
}
