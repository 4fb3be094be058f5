// SPDX-License-Identifier: GPL-3.0-or-later
// The window "DXF Interface Control".
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "exchange/dxfform.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"

namespace {

class dxfdialog : public QDialog {
  public:
    dxfdialog() : QDialog(themainwindow), form(opendxf()) {
        setWindowTitle("DXF Interface Control");
        auto* const rows = new QVBoxLayout(this);
        auto* const file = new QLabel(qtext(form.file), this);
        file->setWordWrap(true);
        rows->addWidget(file);
        auto* const frame = new QGroupBox("DXF Import Options", this);
        auto* const grid = new QGridLayout(frame);
        for (int kind = 0; kind < 4; ++kind) addkind(grid, kind);
        longest = addfield(grid, 4, "Specifiy maximum Element size: ", "Text1", form.longest);
        within = addfield(grid, 5, "Join ends within: ", "Text2", form.joinwithin);
        within->setPlaceholderText("from its size");
        split =
            addswitch(grid, 6, "Split lines where others meet or cross them", "Check5", form.split);
        graphic = addswitch(grid, 7, "LINES, CIRCLE and ARC as graphic elements", "Check6",
                            form.asgraphics);
        without = addfield(grid, 8, "Leave out the layers: ", "Text3", form.without);
        without->setPlaceholderText("GRID; DIM*");
        rows->addWidget(frame);
        message = newmessageline("message", this, rows);
        addokcancel(this, rows, [this] { take(); });
        showform();
    }

  private:
    void addkind(QGridLayout* grid, int kind) {
        const auto k = std::size_t(kind);
        QWidget* const frame = grid->parentWidget();
        checks[k] = new QCheckBox(dxfcaptions[k], frame);
        checks[k]->setObjectName(QString("Check%1").arg(kind + 1));
        lists[k] = new QComboBox(frame);
        lists[k]->setObjectName(QString("Combo%1").arg(kind + 1));
        lists[k]->setAccessibleName(dxfcaptions[k]);
        grid->addWidget(checks[k], kind, 0);
        grid->addWidget(lists[k], kind, 1);
        connect(checks[k], &QCheckBox::clicked, this, guardedhandler([this, kind](bool on) {
                    tickdxf(form, kind, on);
                    showform();
                }));
        connect(lists[k], &QComboBox::activated, this, guardedhandler([this, kind](int entry) {
                    choosedxf(form, kind, entry);
                    showform();
                }));
    }
    QLineEdit* addfield(QGridLayout* grid, int row, const char* caption, const char* name,
                        const std::string& text) {
        auto* const box = new QLineEdit(qtext(text), grid->parentWidget());
        box->setObjectName(name);
        auto* const label = new QLabel(caption, grid->parentWidget());
        label->setBuddy(box);
        grid->addWidget(label, row, 0);
        grid->addWidget(box, row, 1);
        return box;
    }
    QCheckBox* addswitch(QGridLayout* grid, int row, const char* caption, const char* name,
                         bool on) {
        auto* const box = new QCheckBox(caption, grid->parentWidget());
        box->setObjectName(name);
        box->setChecked(on);
        grid->addWidget(box, row, 0, 1, 2);
        return box;
    }
    void showform() {
        for (std::size_t k = 0; k < 4; ++k) {
            checks[k]->setChecked(form.taken[k]);
            showlist(lists[k], form.types, form.chosen[k]);
            lists[k]->setEnabled(form.taken[k]);
        }
        message->setText(qtext(form.message));
    }
    void take() {
        form.longest = longest->text().toStdString();
        form.joinwithin = within->text().toStdString();
        form.without = without->text().toStdString();
        form.split = split->isChecked();
        form.asgraphics = graphic->isChecked();
        if (acceptdxf(form)) accept();
        showform();
    }

    dxfform form;
    std::array<QCheckBox*, 4> checks{};
    std::array<QComboBox*, 4> lists{};
    QLineEdit *longest, *within, *without;
    QCheckBox *split, *graphic;
    QLabel* message;
};

}  // namespace

QDialog* makedxf() {
    return new dxfdialog;
}
