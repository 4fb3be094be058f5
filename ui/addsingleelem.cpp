// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Add Single Element". It hides while nodes are picked and comes back when that ends.
#include <QBoxLayout>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <vector>

#include "core/session.h"
#include "tools/singleelem.h"
#include "ui/cardhelp.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"

namespace {

// The shape of the element with its corners numbered in the order of picking.
class cornerpicture : public QWidget {
  public:
    explicit cornerpicture(QWidget* parent) : QWidget(parent) { setMinimumSize(170, 130); }
    void setcorners(int n) {
        corners = n;
        update();
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        p.fillRect(rect(), palette().base());
        p.setPen(palette().color(QPalette::Mid));
        p.drawRect(rect().adjusted(0, 0, -1, -1));
        const double side = std::min(width(), height()) - 50.0;  // room for the numbers
        const QPointF middle(width() / 2.0, height() / 2.0);
        std::vector<QPointF> at;
        for (const QPointF& c : places())
            at.push_back(middle + QPointF((c.x() - 0.5) * side, (0.5 - c.y()) * side));
        p.setPen(QPen(palette().color(QPalette::Text), 1.6));
        for (std::size_t k = 1; k < at.size(); ++k) p.drawLine(at[k - 1], at[k]);
        if (at.size() > 2) p.drawLine(at.back(), at.front());
        p.setBrush(palette().color(QPalette::Text));
        for (std::size_t k = 0; k < at.size(); ++k) {
            const double radius = 3, beside = 15;  // pixels
            p.drawEllipse(at[k], radius, radius);
            const double y = at.size() > 2 && at[k].y() < middle.y() ? -beside : beside;
            p.drawText(QRectF(at[k].x() - 15, at[k].y() + y - 10, 30, 20), Qt::AlignCenter,
                       QString::number(k + 1));
        }
    }

  private:
    // In a square of side 1, y up.
    std::vector<QPointF> places() const {
        switch (corners) {
            case 1:
                return {{0.5, 0.5}};
            case 2:
                return {{0, 0.2}, {1, 0.8}};
            case 3:
                return {{0, 0}, {1, 0.1}, {0.45, 1}};
            default:
                return {{0, 0}, {1, 0.1}, {0.9, 1}, {0.1, 0.9}};
        }
    }
    int corners = 4;
};

class singledialog : public QDialog {
  public:
    singledialog() : QDialog(themainwindow) {
        setWindowTitle("Add Single Element");
        auto* const rows = new QVBoxLayout(this);
        auto* const frame = new QGroupBox("Element", this);
        auto* const grid = new QGridLayout(frame);
        types = list(grid, 0, "Element Type :", "Combo1", choosesingletype);
        groups = list(grid, 1, "Group name :", "Combo2", choosesinglegroup);
        nodes = new QLabel(frame);
        nodes->setObjectName("Label3");
        grid->addWidget(new QLabel("Nodes", frame), 0, 2);
        grid->addWidget(nodes, 0, 3);
        grid->setColumnStretch(1, 1);
        grid->setColumnMinimumWidth(3, 24);
        rows->addWidget(frame);
        picture = new cornerpicture(this);
        rows->addWidget(picture, 1);
        auto* const row = new QHBoxLayout;
        QPushButton* const pick = newbutton("Command1", "Pick Nodes", this, row);
        pick->setDefault(true);
        connect(pick, &QPushButton::clicked, this, guardedhandler([this](bool) {
                    hide();
                    startsingle([this] {
                        showmodal(this);
                        // Once the rest state, which follows, has set its own prompt.
                        QTimer::singleShot(0, this, [] { prompt("Single", "", "", ""); });
                    });
                }));
        row->addWidget(newcardbutton(this, types));
        row->addStretch(1);
        connect(newbutton("Command2", "Ready", this, row), &QPushButton::clicked, this,
                &QDialog::accept);
        rows->addLayout(row);
        connect(this, &QDialog::finished, this, guardedhandler([](int) { closeaddsingle(); }));
        setMinimumWidth(360);
        form = openaddsingle();
        showform();
    }

  private:
    QComboBox* list(QGridLayout* grid, int row, const char* caption, const char* name,
                    void (*choose)(addsingleform&, int)) {
        auto* const box = new QComboBox(this);
        box->setObjectName(name);
        auto* const label = new QLabel(caption, this);
        label->setBuddy(box);
        grid->addWidget(label, row, 0);
        grid->addWidget(box, row, 1);
        connect(box, &QComboBox::activated, this, guardedhandler([this, choose](int i) {
                    choose(form, i);
                    showform();
                }));
        return box;
    }
    void showform() {
        showlist(types, form.types, form.chosentype);
        showlist(groups, form.groups, form.chosengroup);
        nodes->setText(qtext(form.typenodes));
        picture->setcorners(nodes->text().toInt());
    }

    addsingleform form;
    QComboBox *types, *groups;
    QLabel* nodes;
    cornerpicture* picture;
};

}  // namespace

QDialog* makeaddsingleelem() {
    return new singledialog;
}
