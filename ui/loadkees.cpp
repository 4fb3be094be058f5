// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Define Loadcases": shows the form of loads/loadkees.
#include "loads/loadkees.h"

#include <QBoxLayout>
#include <QButtonGroup>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "core/formulas.h"
#include "core/labels.h"
#include "core/model.h"
#include "core/platform.h"
#include "core/units.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "view/moddraw.h"

namespace {

struct fieldcaption {
    const char *caption, *unit;
};
const fieldcaption wavefields[] = {{"H   = ", "Wave Height (m)"},
                                   {"T   =", "Wave Period (s)"},
                                   {"Dir =", "Force vector direction relative to X-Axis (deg)"},
                                   {"Shift =", "Wave origin shift factor (0.0 - 1.0)"},
                                   {"WD = ", "Waterdepth (m)"}};
const fieldcaption windfields[] = {{"Vel  =", "Wind Velocity at 10 m above surface (m/s)"},
                                   {"Dir =", "Force vector direction relative to X-Axis (deg)"},
                                   {"", ""}};
const fieldcaption buoyancyfields[] = {{"WL   = ", "Z value of waterplane (L)"},
                                       {"WD =", "Waterdepth (L)"},
                                       {"Density  =", "Water Density (F/L^3)"}};
const char* const directions[] = {"x", "y", "z", "rx", "ry", "rz"};
const fieldcaption accelerationfields[] = {
    {"Acc. =", ""}, {"x  =", ""}, {"y  =", ""}, {"z  =", ""}};
const int fieldwidth = 90;  // pixels

class loadcasedialog : public QDialog {
  public:
    loadcasedialog() : QDialog(themainwindow) {
        setWindowTitle(tr("Define Loadcases"));
        auto* const rows = new QVBoxLayout(this);
        auto* const outer = new QGroupBox(tr("Basic Loadcases"), this);
        rows->addWidget(outer, 1);
        auto* const inside = new QVBoxLayout(outer);
        buildlists(inside);
        buildgroups(inside);
        buildbuttons(rows);
        message = newmessageline("Label7", this, rows);
        form = openloadkees();
        showform();
        connect(this, &QDialog::finished, this, guardedhandler([this](int) {
                    theplatform().refresh();
                    if (form.changed) redrawall();
                }));
    }

  private:
    // --- building ---

    void buildlists(QBoxLayout* rows) {
        auto* const grid = new QGridLayout;
        const char* const captions[] = {"Loadcase number", "Loadcase name", "Loadcase type"};
        QComboBox** const lists[] = {&numbers, &names, &kinds};
        for (int i = 0; i < 3; ++i) {
            grid->addWidget(new QLabel(captions[i], this), i, 0);
            *lists[i] = new QComboBox(this);
            (*lists[i])->setObjectName(QString("Combo%1").arg(i + 1));
            grid->addWidget(*lists[i], i, 1);
        }
        grid->setColumnStretch(1, 1);
        rows->addLayout(grid);
        maketyped(names);
        for (int i = kindapplied; i <= kindbuoyancy; ++i) kinds->addItem(qtext(lckindname(i)));
        for (QComboBox* list : {numbers, names})
            onlist(list, [this](int i) { chooseloadcase(form, i); });
        connect(names->lineEdit(), &QLineEdit::textEdited, this, [this] { edited(editloadcase); });
        onlist(kinds, [this](int i) { choosekind(form, i); });
    }

    void buildgroups(QBoxLayout* rows) {
        auto* const area = new QWidget(this);
        auto* const stack = new QVBoxLayout(area);
        stack->setContentsMargins(0, 0, 0, 0);
        auto* const sides = new QHBoxLayout;
        direction = group("Select Direction", sides);
        builddirections();
        auto* const right = new QVBoxLayout;
        sides->addLayout(right, 1);
        acceleration = group("Acceleration", right);
        centre = group("Centre of Rotation", right);
        buildacceleration();
        right->addStretch(1);
        stack->addLayout(sides);
        applied = group("Applied loads", stack);
        auto* const inside = new QVBoxLayout(applied);
        contents = new QLabel(applied);
        contents->setObjectName("contents");
        contents->setWordWrap(true);
        inside->addWidget(contents);
        waves = group("Definition of Waveload", stack);
        winds = group("Definition of Wind load", stack);
        buoyancies = group("Definition of Buoyancy load", stack);
        fields(waves, "Text2", wavefields, wave);
        fields(winds, "Text3", windfields, wind);
        fields(buoyancies, "Text4", buoyancyfields, buoyancy);
        connect(wave[3], &QLineEdit::textEdited, this, [this] { edited(editshift); });
        stack->addStretch(1);
        rows->addWidget(area, 1);
        // Room for the tallest kind, so that the window keeps its size.
        int high = 0, wide = 0;
        for (int kind = kindapplied; kind <= kindbuoyancy; ++kind) {
            form.kind = kind;
            setacclabel(form);
            form.centreshown = form.accelerationshown;
            showgroups();
            stack->activate();
            high = std::max(high, area->sizeHint().height());
            wide = std::max(wide, area->sizeHint().width());
        }
        area->setMinimumSize(wide, high);
    }

    QGroupBox* group(const char* caption, QBoxLayout* layout) {
        auto* const g = new QGroupBox(caption, this);
        g->setObjectName(caption);
        layout->addWidget(g);
        return g;
    }

    void builddirections() {
        auto* const rows = new QVBoxLayout(direction);
        for (int i = 0; i < 6; ++i) {
            auto* const b = new QRadioButton(directions[i], direction);
            b->setObjectName(QString("Option2(%1)").arg(i));
            rows->addWidget(b);
            directionbutton[i] = b;
            connect(b, &QRadioButton::clicked, this, guardedhandler([this, i](bool) {
                        readform();
                        choosedirection(form, i);
                        showform();
                    }));
        }
        rows->addStretch(1);
    }

    void buildacceleration() {
        auto* const value = new QGridLayout(acceleration);
        auto* const place = new QGridLayout(centre);
        for (int i = 0; i < 4; ++i) {
            QGridLayout* const grid = i == 0 ? value : place;
            QGroupBox* const parent = i == 0 ? acceleration : centre;
            grid->addWidget(new QLabel(accelerationfields[i].caption, parent), i, 0);
            if (i > 0 && !unitstext.empty())
                grid->addWidget(new QLabel(qtext(unitname("L")), parent), i, 2);
            auto* const box = newfield(parent, QString("Text1(%1)").arg(i));
            grid->addWidget(box, i, 1);
            grid->setColumnStretch(3, 1);
            accelerationbox[std::size_t(i)] = box;
            connect(box, &QLineEdit::textEdited, this, [this] { edited(editloadcase); });
            connect(box, &QLineEdit::editingFinished, this, [this, i] {
                readform();
                leaveacceleration(form, i);
                showform();
            });
        }
        unit = new QLabel(acceleration);
        unit->setObjectName("unit");
        value->addWidget(unit, 0, 2);
        auto* const mass = new QButtonGroup(this);
        for (int i : {1, 0}) {
            auto* const b =
                new QRadioButton(i == 1 ? "Element Mass ON" : "Element Mass OFF", acceleration);
            b->setObjectName(QString("Option1(%1)").arg(i));
            mass->addButton(b);
            value->addWidget(b, 2 - i + 1, 0, 1, 4);
            massbutton[i] = b;
            connect(b, &QRadioButton::clicked, this, [this] { edited(editloadcase); });
        }
    }

    QLineEdit* newfield(QWidget* parent, const QString& name) {
        auto* const box = new QLineEdit(parent);
        box->setObjectName(name);
        box->setMaximumWidth(fieldwidth);
        return box;
    }

    template <std::size_t N>
    void fields(QGroupBox* parent, const char* name, const fieldcaption (&captions)[N],
                std::array<QLineEdit*, N>& boxes) {
        auto* const grid = new QGridLayout(parent);
        for (std::size_t i = 0; i < N; ++i) {
            boxes[i] = newfield(parent, QString("%1(%2)").arg(name).arg(i));
            connect(boxes[i], &QLineEdit::textEdited, this, [this] { edited(editloadcase); });
            const bool hidden = *captions[i].caption == 0;
            boxes[i]->setHidden(hidden);
            if (hidden) continue;
            grid->addWidget(new QLabel(captions[i].caption, parent), int(i), 0);
            grid->addWidget(boxes[i], int(i), 1);
            const QString told = qtext(captionwithunit(captions[i].unit));
            grid->addWidget(new QLabel(told, parent), int(i), 2);
        }
        grid->setColumnStretch(2, 1);
    }

    void buildbuttons(QBoxLayout* rows) {
        auto* const row = new QHBoxLayout;
        row->addStretch(1);
        onbutton(newbutton("Command1", "Add", this, row), addloadcase);
        QPushButton* const update = newbutton("Command2", "Update", this, row);
        onbutton(update, updateloadcase);
        update->setDefault(true);
        onbutton(newbutton("Command3", "Delete", this, row), delloadcase);
        connect(newbutton("Command4", "Ready", this, row), &QPushButton::clicked, this,
                &QDialog::accept);
        rows->addLayout(row);
    }

    // --- the user's hand ---

    void onbutton(QPushButton* b, void (*operation)(loadcaseform&)) {
        connect(b, &QPushButton::clicked, this, guardedhandler([this, operation](bool) {
                    readform();
                    operation(form);
                    showform();
                }));
    }
    template <typename Choose>
    void onlist(QComboBox* list, Choose choose) {
        connect(list, &QComboBox::activated, this, guardedhandler([this, choose](int i) {
                    readform();
                    choose(i);
                    showform();
                }));
    }
    void edited(void (*edit)(loadcaseform&)) {
        readform();
        edit(form);
        showform();
    }

    // --- form and controls ---

    template <std::size_t N>
    static void readboxes(const std::array<QLineEdit*, N>& boxes,
                          std::array<std::string, N>& texts) {
        for (std::size_t i = 0; i < N; ++i) texts[i] = boxes[i]->text().toStdString();
    }
    template <std::size_t N>
    static void showboxes(const std::array<QLineEdit*, N>& boxes,
                          const std::array<std::string, N>& texts) {
        for (std::size_t i = 0; i < N; ++i) showtext(boxes[i], texts[i]);
    }
    void readform() {
        form.name = typedtext(names->lineEdit());
        form.elementmass = massbutton[1]->isChecked() ? 1 : 0;
        readboxes(accelerationbox, form.acceleration);
        readboxes(wave, form.wave);
        readboxes(wind, form.wind);
        readboxes(buoyancy, form.buoyancy);
    }
    void showgroups() {
        centre->setVisible(form.centreshown);
        acceleration->setVisible(form.accelerationshown);
        direction->setVisible(form.directionshown);
        waves->setVisible(form.waveshown);
        winds->setVisible(form.windshown);
        applied->setVisible(form.kind == kindapplied);
        buoyancies->setVisible(form.buoyancyshown);
    }
    void showform() {
        showlist(numbers, form.numbers, form.chosen);
        showlist(names, form.names, form.chosen);
        showtext(names->lineEdit(), form.name);
        kinds->setCurrentIndex(form.kind);
        directionbutton[form.lcdirection]->setChecked(true);
        massbutton[form.elementmass]->setChecked(true);
        unit->setText(qtext(form.unit));
        showboxes(accelerationbox, form.acceleration);
        showboxes(wave, form.wave);
        showboxes(wind, form.wind);
        showboxes(buoyancy, form.buoyancy);
        showgroups();
        contents->setText(contentsof(form.chosen + 1));
        message->setText(qtext(form.message));
    }

    static QString contentsof(int lc) {
        if (lc < 1 || lc > nlc()) return {};
        int atnodes = 0, onelements = 0;
        for (int i = 1; i <= loadnode(lc, 0); ++i) atnodes += loadnode(lc, i) != 0;
        for (int i = 1; i <= int(elemload(lc, 0, 0)); ++i) onelements += elemload(lc, i, 0) != 0;
        return tr("Forces and moments at nodes: %1\nPressures and line loads on elements: %2\n\n"
                  "Add, Loads gives them to what is selected; gravity is a case of acceleration.")
            .arg(atnodes)
            .arg(onelements);
    }

    loadcaseform form;
    QComboBox *numbers, *names, *kinds;
    QGroupBox *applied, *centre, *acceleration, *direction, *waves, *winds, *buoyancies;
    QRadioButton *directionbutton[6], *massbutton[2];
    std::array<QLineEdit*, 4> accelerationbox;
    std::array<QLineEdit*, 5> wave;
    std::array<QLineEdit*, 3> wind, buoyancy;
    QLabel *unit, *message, *contents;
};
}  // namespace

QDialog* makeloadkees() {
    return new loadcasedialog;
}
