// SPDX-License-Identifier: GPL-3.0-or-later
// The window "View": shows the form of view/viewcontrol. It hides while the user selects elements
// for a view and comes back when the selection ends.
#include "view/viewcontrol.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>

#include "core/colours.h"
#include "core/model.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/Mouseprocedures.h"
#include "edit/move.h"
#include "edit/selection.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/qtsurface.h"
#include "view/moddraw.h"
#include "view/setviews.h"

namespace {

class viewdialog : public QDialog {
  public:
    viewdialog() : QDialog(themainwindow) {
        setWindowTitle("View");
        auto* const rows = new QVBoxLayout(this);
        heading = new QLabel(this);
        heading->setObjectName("heading");
        QFont bold = heading->font();
        bold.setBold(true);
        heading->setFont(bold);
        rows->addWidget(heading);
        auto* const columns = new QHBoxLayout;
        auto *const left = new QVBoxLayout, *const right = new QVBoxLayout;
        columns->addLayout(left, 1);
        columns->addLayout(right, 1);
        rows->addLayout(columns);
        buildpoint(left);
        buildangles(left);
        buildelements(left);
        buildscale(right);
        buildpreviews(right);
        buildbuttons(rows);
        form.current = 1;
        showvalues(form, 1);
        showform();
        singleview ? setonepreview() : setfourpreview();
        connect(this, &QDialog::finished, this, [this](int) {
            waiting.end();
            setscrollbars();
        });
    }

  private:
    QLineEdit* addbox(QGridLayout* grid, int row, int box, const QString& unit = {}) {
        grid->addWidget(new QLabel(viewboxcaptions[box], this), row, 0);
        auto* const edit = new QLineEdit(this);
        edit->setObjectName(QString("Text1(%1)").arg(box));
        edit->setMinimumWidth(130);
        grid->addWidget(edit, row, 1, 1, unit.isEmpty() ? 2 : 1);
        if (!unit.isEmpty()) grid->addWidget(new QLabel(unit, this), row, 2);
        boxes[box] = edit;
        connect(edit, &QLineEdit::editingFinished, this, guardedhandler([this, box] {
                    readform();
                    leavebox(form, box);
                    showform();
                }));
        return edit;
    }
    QGridLayout* addframe(QBoxLayout* column, const char* caption) {
        auto* const frame = new QGroupBox(caption, this);
        column->addWidget(frame);
        auto* const grid = new QGridLayout(frame);
        grid->setColumnMinimumWidth(0, fontMetrics().horizontalAdvance(viewboxcaptions[boxunit]));
        return grid;
    }
    void buildpoint(QBoxLayout* column) {
        QGridLayout* const grid = addframe(column, "View point");
        for (int i = 0; i < 3; ++i) addbox(grid, i, boxx + i, lengthsaid());
    }
    void buildangles(QBoxLayout* column) {
        QGridLayout* const grid = addframe(column, "View angle");
        addbox(grid, 0, boxvertical, "Deg");
        addbox(grid, 1, boxhorizontal, "Deg");
        auto* const row = new QHBoxLayout;
        for (int i = 0; i < 4; ++i) {
            QPushButton* const b = newbutton("", viewpresets[i].caption, this, row);
            b->setObjectName(QString("preset(%1)").arg(i));
            connect(b, &QPushButton::clicked, this, guardedhandler([this, i](bool) {
                        readform();
                        presetboxes(form, i);
                        showform();
                    }));
        }
        grid->addLayout(row, 2, 0, 1, 3);
    }
    void buildscale(QBoxLayout* column) {
        QGridLayout* const grid = addframe(column, "Scale and depth");
        addbox(grid, 0, boxscale);
        addbox(grid, 1, boxdistance);
        addbox(grid, 2, boxaw);
        addbox(grid, 3, boxdepth, lengthsaid());
        addbox(grid, 4, boxunit);
    }
    void buildelements(QBoxLayout* column) {
        QGridLayout* const grid = addframe(column, "Elements");
        static const char* const captions[] = {"All elements", "Group", "Selection"};
        for (int i = 0; i < 3; ++i) {
            options[i] = new QRadioButton(captions[i], this);
            options[i]->setObjectName(QString("Option1(%1)").arg(i));
            grid->addWidget(options[i], i, 0);
            connect(options[i], &QRadioButton::clicked, this,
                    guardedhandler([this, i](bool) { choose(i); }));
        }
        groups = new QComboBox(this);
        groups->setObjectName("Combo1");
        for (int g = 1; g <= ngroups(); ++g) groups->addItem(qname(groupname(g)));
        grid->addWidget(groups, 1, 1, 1, 2);
        connect(groups, &QComboBox::activated, this,
                guardedhandler([this](int) { choose(form.option); }));
        selected = new QLineEdit(this);
        selected->setObjectName("Text2");
        selected->setReadOnly(true);
        grid->addWidget(selected, 2, 1);
        auto* const select = new QPushButton("Select", this);
        select->setObjectName("Select");
        grid->addWidget(select, 2, 2);
        connect(select, &QPushButton::clicked, this, guardedhandler([this](bool) {
                    readform();
                    getvalues(form);
                    hide();
                    setselectitem(selectelements);
                    startviewselection();
                }));
    }
    void buildpreviews(QBoxLayout* column) {
        previews = new QWidget(this);
        previews->setFixedSize(209, 145);  // 3135 by 2175 twips
        for (int v = 1; v <= 4; ++v) {
            auto* const rectangle = new QToolButton(previews);
            rectangle->setObjectName(QString("Picture%1").arg(v));
            rectangle->setText(QString::number(v));
            rectangle->setToolTip(tr("View %1").arg(v));
            preview[v - 1] = rectangle;
            connect(rectangle, &QToolButton::clicked, this, guardedhandler([this, v](bool) {
                        readform();
                        chooseview(form, v);
                        showform();
                    }));
        }
        column->addWidget(previews, 0, Qt::AlignHCenter);
        auto* const row = new QHBoxLayout;
        connect(newbutton("Single", "Single", this, row), &QPushButton::clicked, this,
                guardedhandler([this](bool) {
                    readform();
                    setoneview();
                    setonepreview();
                    chooseview(form, 1);
                    showform();
                    redrawall();
                }));
        connect(newbutton("Multi", "Multi", this, row), &QPushButton::clicked, this,
                guardedhandler([this](bool) {
                    readform();
                    allviews(form);
                    setfourpreview();
                    showform();
                    redrawall();
                }));
        column->addLayout(row);
        column->addStretch(1);
    }
    void buildbuttons(QBoxLayout* rows) {
        auto* const row = new QHBoxLayout;
        const auto add = [&](const char* caption, auto action) {
            connect(newbutton(caption, caption, this, row), &QPushButton::clicked, this,
                    guardedhandler([this, action](bool) {
                        readform();
                        action();
                        showform();
                    }));
        };
        add("Copy", [this] { form.copied = form.current; });
        add("Paste", [this] { pasteview(form); });
        add("Autoscale", [this] { autoscaleview(form); });
        add("Show", [this] {
            getvalues(form);
            drawview(form.current);
        });
        QPushButton* const ok = newbutton("OK", "OK", this, row);
        ok->setDefault(true);
        connect(ok, &QPushButton::clicked, this, guardedhandler([this](bool) {
                    readform();
                    getvalues(form);
                    refreshselection();
                    accept();
                    redrawall();
                }));
        rows->addLayout(row);
    }
    void setonepreview() {
        preview[0]->setGeometry(previews->rect());
        for (int v = 2; v <= 4; ++v) preview[v - 1]->hide();
    }
    void setfourpreview() {
        const int w = previews->width() / 2, h = previews->height() / 2;
        for (int v = 1; v <= 4; ++v) {
            preview[v - 1]->setGeometry((v - 1) % 2 * w, (v - 1) / 2 * h, w, h);
            preview[v - 1]->show();
        }
    }
    void choose(int option) {
        if (option == 1 && groups->currentIndex() < 0) groups->setCurrentIndex(0);
        readform();
        getvalues(form);
        chooseoption(form, option, chosengroup());
        showform();
    }
    void selectionended() {
        endviewselection(form);
        showmodal(this);
        showform();
    }
    std::string chosengroup() const {
        const int g = groups->currentIndex() + 1;
        return g > 0 ? groupname(g) : "";
    }
    void readform() {
        for (int i = 0; i < viewboxcount; ++i) form.box[i] = boxes[i]->text().toStdString();
        for (int i = 0; i < 3; ++i)
            if (options[i]->isChecked()) form.option = i;
        form.group = chosengroup();
    }
    void showform() {
        for (int i = 0; i < viewboxcount; ++i) showtext(boxes[i], form.box[i]);
        options[form.option]->setChecked(true);
        groups->setCurrentIndex(form.group.empty() ? -1 : form.group0 - 1);
        selected->setText(qtext(form.selected));
        heading->setText(qtext(form.heading));
        for (int v = 1; v <= 4; ++v) {
            const QColor colour = v == form.current ? qtcolor(backcolor) : QColor(192, 192, 192);
            preview[v - 1]->setStyleSheet(
                QString("QToolButton { background: %1; color: %2; border: 1px solid gray; }"
                        "QToolButton:focus { border: 3px solid palette(highlight); }")
                    .arg(colour.name(), colour.lightness() > 128 ? "black" : "white"));
        }
    }

    viewform form;
    QLabel* heading;
    QLineEdit* boxes[viewboxcount] = {};
    QRadioButton* options[3];
    QComboBox* groups;
    QLineEdit* selected;
    QWidget* previews;
    QToolButton* preview[4];
    selectionwait waiting{viewselpending, [this] { selectionended(); }};
};

}  // namespace

QDialog* makeviewcontrol() {
    return new viewdialog;
}
