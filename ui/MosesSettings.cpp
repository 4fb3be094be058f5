// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Moses Export Settings": the group whose plates become the hull.
#include <QBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

#include "exchange/mosesexport.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"

namespace {

class mosesdialog : public QDialog {
  public:
    mosesdialog() : QDialog(themainwindow) {
        setWindowTitle("Moses Export Settings");
        auto* const rows = new QVBoxLayout(this);
        auto* const label = new QLabel("&Group of the hull panels", this);
        label->setObjectName("Label1");
        rows->addWidget(label);
        list = new QListWidget(this);
        list->setObjectName("List1");
        label->setBuddy(list);
        for (const std::string& group : mosessettingsform().groups) list->addItem(qname(group));
        rows->addWidget(list, 1);
        auto* const row = new QHBoxLayout;
        row->addStretch(1);
        QPushButton* const ok = newbutton("Command1", "OK", this, row);
        ok->setDefault(true);
        connect(ok, &QPushButton::clicked, this, &QDialog::accept);
        connect(newbutton("Command2", "Cancel", this, row), &QPushButton::clicked, this,
                &QDialog::reject);
        rows->addLayout(row);
        connect(list, &QListWidget::itemDoubleClicked, this, [this] { accept(); });
        connect(list, &QListWidget::currentRowChanged, this,
                [](int i) { mosessettingsform().chosen = i; });
        connect(this, &QDialog::accepted, this, guardedhandler([] { acceptmosessettings(); }));
        list->setCurrentRow(mosessettingsform().chosen);
        list->setFocus();
    }

  private:
    QListWidget* list;
};

}  // namespace

QDialog* makemosessettings() {
    return new mosesdialog;
}
