// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Member Diagrams": which force or deflection along line elements the views show, and
// how. Every choice shows at once.
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <cmath>

#include "post/diagrams.h"
#include "post/shapes.h"
#include "post/signs.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/surfacewidget.h"

namespace {

class diagramdialog : public sidedialog {
  public:
    diagramdialog() : sidedialog(themainwindow) {
        setWindowTitle("Member Diagrams");
        setProperty(besidemain, true);
        auto* const rows = new QVBoxLayout(this);
        buildquantity(rows);
        buildswitches(rows);
        auto* const signs = new surfacewidget(
            this, "signs", [](surface& s) { drawsigns(s, 0, 0, s.width(), s.height()); });
        signs->setMinimumSize(220, 240);
        rows->addWidget(signs, 1);
        range = newmessageline("range", this, rows);
        auto* const foot = new QHBoxLayout;
        newaction("window", "Member Window", this, foot, [] { opendialog("memberwindow"); });
        foot->addStretch(1);
        connect(newbutton("Ready", "Ready", this, foot), &QPushButton::clicked, this,
                &QDialog::accept);
        rows->addLayout(foot);
        if (!diagramshown) {
            startdiagram();
            changed();
        }
        showform();
    }

  private:
    void buildquantity(QBoxLayout* rows) {
        quantity = new QComboBox(this);
        quantity->setObjectName("quantity");
        quantity->addItem("None");
        for (const quantityrow& row : quantityrows)
            quantity->addItem(QString("%1  %2").arg(row.label, row.caption));
        rows->addWidget(quantity);
        connect(quantity, &QComboBox::activated, this, guardedhandler([this](int i) {
                    diagramshown = i > 0;
                    if (i > 0) diagram.quantity = memberquantity(i - 1);
                    changed();
                }));
    }
    void addswitch(QBoxLayout* rows, const char* name, const char* caption, bool& on) {
        auto* const box = new QCheckBox(caption, this);
        box->setObjectName(name);
        box->setChecked(on);
        rows->addWidget(box);
        connect(box, &QCheckBox::toggled, this, guardedhandler([this, &on](bool now) {
                    on = now;
                    changed();
                }));
    }
    void buildswitches(QBoxLayout* rows) {
        addswitch(rows, "filled", "Filled", diagram.filled);
        addswitch(rows, "values", "Values", diagram.values);
        addswitch(rows, "selected", "Selected elements only", diagram.selected);
        auto* const row = new QHBoxLayout;
        row->addWidget(new QLabel("Scale", this));
        scale = new QSlider(Qt::Horizontal, this);
        scale->setObjectName("scale");
        scale->setRange(-steps, 2 * steps);
        scale->setValue(int(std::lround(steps * std::log10(diagram.scale))));
        row->addWidget(scale, 1);
        rows->addLayout(row);
        connect(scale, &QSlider::valueChanged, this, guardedhandler([this](int at) {
                    diagram.scale = std::pow(10.0, double(at) / steps);
                    changed();
                }));
    }
    void changed() {
        showresults();
        showform();
    }
    void showform() {
        quantity->setCurrentIndex(diagramshown ? int(diagram.quantity) + 1 : 0);
        const std::string missing = diagramnote();
        range->setText(!diagramshown ? "" : qtext(missing.empty() ? diagramtext() : missing));
    }

    static constexpr int steps = 20;  // of the slider a power of ten
    QComboBox* quantity;
    QSlider* scale;
    QLabel* range;
};

}  // namespace

QDialog* makememberdiagrams() {
    return new diagramdialog;
}
