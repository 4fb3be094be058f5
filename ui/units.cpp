// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Units": the units of the model and the way into others.
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include "tools/unitsform.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/windowsettings.h"

namespace {
class unitsdialog : public QDialog {
  public:
    unitsdialog() : QDialog(themainwindow), form(openunits()) {
        setWindowTitle("Units");
        auto* const rows = new QVBoxLayout(this);
        buildlist(rows);
        convert = addway(rows, "Option1(0)", "&Convert the model", true);
        keep = addway(rows, "Option1(1)", "The &numbers stay as they are, only the names change",
                      false);
        note = newmessageline("Label1", this, rows);
        note->setMinimumSize(460, 2 * fontMetrics().lineSpacing());
        fornew = new QCheckBox("New &models begin with these units", this);
        fornew->setObjectName("Check1");
        rows->addWidget(fornew);
        rows->addStretch(1);
        addokcancel(this, rows, [this] {
            form.fornew = fornew->isChecked();
            if (!storeunits(form)) return;
            rememberunits();
            accept();
        });
        fornew->setChecked(form.fornew);
        showform();
    }

  private:
    void buildlist(QBoxLayout* rows) {
        auto* const row = new QHBoxLayout;
        auto* const label = new QLabel("&Length, force and mass", this);
        list = new QComboBox(this);
        list->setObjectName("Combo1");
        for (const std::string& caption : form.captions) list->addItem(qtext(caption));
        list->setCurrentIndex(form.chosen);
        label->setBuddy(list);
        row->addWidget(label);
        row->addWidget(list, 1);
        rows->addLayout(row);
        connect(list, &QComboBox::currentIndexChanged, this, [this](int i) {
            chooseunits(form, i);
            showform();
        });
    }
    QRadioButton* addway(QBoxLayout* rows, const char* name, const char* caption, bool converts) {
        auto* const button = new QRadioButton(caption, this);
        button->setObjectName(name);
        rows->addWidget(button);
        connect(button, &QRadioButton::clicked, this, [this, converts] {
            chooseway(form, converts);
            showform();
        });
        return button;
    }
    void showform() {
        convert->setEnabled(form.canconvert);
        (form.convert && form.canconvert ? convert : keep)->setChecked(true);
        note->setText(qtext(form.note));
    }

    unitsform form;
    QComboBox* list = nullptr;
    QRadioButton *convert = nullptr, *keep = nullptr;
    QLabel* note = nullptr;
    QCheckBox* fornew = nullptr;
};
}  // namespace

QDialog* makeunits() {
    return new unitsdialog;
}
