// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Report Options": shows the check boxes of post/Report and runs its buttons. It stays
// beside the main window, as does the viewer that it opens.
#include <QBoxLayout>
#include <QCheckBox>
#include <QGroupBox>
#include <QPushButton>

#include "post/Report.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/reportviewer.h"

namespace {

class reportdialog : public QDialog {
  public:
    reportdialog() : QDialog(themainwindow) {
        setWindowTitle("Report Options");
        setProperty(besidemain, true);
        auto* const rows = new QVBoxLayout(this);
        QBoxLayout* const input = frame(rows, "Select input data to write in report file");
        QBoxLayout* const output = frame(rows, "Select output data to write in report file");
        for (const reportcheck& check : reportchecks) add(check, check.output ? output : input);
        auto* const buttons = new QHBoxLayout;
        buttons->addStretch(1);
        QPushButton* const write = newbutton("Command1", "Write", this, buttons);
        QPushButton* const view = newbutton("Command2", "View", this, buttons);
        QPushButton* const ready = newbutton("Command3", "Ready", this, buttons);
        rows->addLayout(buttons);
        write->setDefault(true);
        connect(write, &QPushButton::clicked, this, guardedhandler([](bool) { writereport(); }));
        connect(view, &QPushButton::clicked, this, guardedhandler([](bool) {
                    if (const std::string path = askreport(); !path.empty()) showreport(path);
                }));
        connect(ready, &QPushButton::clicked, this, &QDialog::accept);
    }

  private:
    QBoxLayout* frame(QBoxLayout* rows, const char* caption) {
        auto* const group = new QGroupBox(caption, this);
        rows->addWidget(group);
        return new QVBoxLayout(group);
    }
    void add(const reportcheck& check, QBoxLayout* rows) {
        // An ampersand of the caption is shown, it marks no key.
        auto* const box = new QCheckBox(QString(check.caption).replace("&", "&&"), this);
        box->setObjectName(QString("Check1(%1)").arg(check.index));
        const std::size_t index = std::size_t(check.index);
        box->setChecked(reportwanted[index]);
        rows->addWidget(box);
        connect(box, &QCheckBox::toggled, this, [index](bool on) { reportwanted[index] = on; });
    }
};

}  // namespace

QDialog* makeroptions() {
    return new reportdialog;
}
