// SPDX-License-Identifier: GPL-3.0-or-later
// The windows that ask for a group: "Moses Export Settings", of the plates that become the hull,
// and that of polygon files, of the faces.
#include <QBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

#include "exchange/mosesexport.h"
#include "exchange/plyform.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"

namespace {

class groupdialog : public QDialog {
  public:
    groupdialog(const char* title, const char* caption, const std::vector<std::string>& groups,
                int& chosen, void (*accepted)())
        : QDialog(themainwindow) {
        setWindowTitle(title);
        auto* const rows = new QVBoxLayout(this);
        auto* const label = new QLabel(caption, this);
        label->setObjectName("Label1");
        rows->addWidget(label);
        auto* const list = new QListWidget(this);
        list->setObjectName("List1");
        label->setBuddy(list);
        for (const std::string& group : groups) list->addItem(qname(group));
        rows->addWidget(list, 1);
        addokcancel(this, rows, [this] { accept(); });
        connect(list, &QListWidget::itemDoubleClicked, this, [this] { accept(); });
        connect(list, &QListWidget::currentRowChanged, this, [&chosen](int i) { chosen = i; });
        connect(this, &QDialog::accepted, this, guardedhandler([accepted] { accepted(); }));
        list->setCurrentRow(chosen);
        list->setFocus();
    }
};

}  // namespace

QDialog* makemosessettings() {
    return new groupdialog("Moses Export Settings", "&Group of the hull panels",
                           mosessettingsform().groups, mosessettingsform().chosen,
                           acceptmosessettings);
}

QDialog* makeplygroup() {
    return new groupdialog("Polygon File", "&Group of the faces", plyimport().groups,
                           plyimport().chosen, acceptply);
}
