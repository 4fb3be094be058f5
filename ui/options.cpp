// SPDX-License-Identifier: GPL-3.0-or-later
// The window "General Options" and the help on direct commands.
#include "edit/options.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTabWidget>

#include "core/platform.h"
#include "core/session.h"
#include "edit/merge.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/qtsurface.h"
#include "view/moddraw.h"

namespace {

class generaloptions : public QDialog {
  public:
    generaloptions() : QDialog(themainwindow) {
        setWindowTitle("General Options");
        auto* const rows = new QVBoxLayout(this);
        tabs = new QTabWidget(this);
        tabs->setObjectName("TabStrip1");
        tabs->setUsesScrollButtons(false);  // all four are in sight, however large the letters
        rows->addWidget(tabs);
        buildredraw();
        buildhidden();
        buildmerge();
        buildsave();
        auto* const row = new QHBoxLayout;
        row->addStretch(1);
        QPushButton* const ready = newbutton("Command1", "Ready", this, row);
        ready->setDefault(true);
        connect(ready, &QPushButton::clicked, this, guardedhandler([this](bool) {
                    readform();
                    storegeneraloptions(form);
                    const std::string note = tolerancenote();
                    if (!note.empty()) theplatform().message(note + ".", icons::exclamation);
                    accept();
                }));
        rows->addLayout(row);
        form = showgeneraloptions();
        showform();
    }

  private:
    static constexpr int textwidth = 440;  // pixels, at least
    QVBoxLayout* page(const char* caption) {
        auto* const widget = new QWidget(this);
        tabs->addTab(widget, caption);
        return new QVBoxLayout(widget);
    }
    QVBoxLayout* frame(QBoxLayout* rows, const char* caption) {
        auto* const group = new QGroupBox(caption, this);
        rows->addWidget(group);
        return new QVBoxLayout(group);
    }
    QCheckBox* check(QBoxLayout* rows, const char* name, const char* caption) {
        auto* const c = new QCheckBox(caption, this);
        c->setObjectName(name);
        rows->addWidget(c);
        return c;
    }
    void help(QBoxLayout* rows, const char* text) {
        auto* const label = new QLabel(text, this);
        label->setWordWrap(true);
        label->setTextFormat(Qt::PlainText);
        QFont f = label->font();
        f.setItalic(true);
        label->setFont(f);
        label->setIndent(20);
        label->setMinimumWidth(textwidth);
        rows->addWidget(label);
    }
    void buildredraw() {
        QVBoxLayout* const rows = page("Redraw");
        QVBoxLayout* const views = frame(rows, "Views");
        move = check(views, "Check1(0)", "Redraw after move");
        remove = check(views, "Check1(1)", "Redraw after delete");
        edit = check(views, "Check1(2)", "Redraw after edit");
        QVBoxLayout* const mouse = frame(rows, "Mouse");
        pick = check(mouse, "Check5", "Pick what lies under the pointer");
        help(mouse,
             "A click on a line or element, within 6 pixels, takes it. Elsewhere, and with this "
             "option off, the nearest defining point decides.");
        rows->addStretch(1);
    }
    void buildhidden() {
        QVBoxLayout* const rows = page("Hiddenline Shading");
        shading = check(rows, "Check2", "Shading on");
        auto* const columns = new QHBoxLayout;
        QVBoxLayout* const colours = frame(columns, "Colour");
        static const char* const captions[] = {"Shades of Gray", "Red Light", "GreenLight",
                                               "BlueLight"};
        for (int i = 3; i >= 0; --i) {
            shade[i] = new QRadioButton(captions[i], this);
            shade[i]->setObjectName(QString("Option1(%1)").arg(i));
            colours->addWidget(shade[i]);
        }
        colours->addStretch(1);
        auto* const light = new QGroupBox("Light", this);
        columns->addWidget(light, 1);
        auto* const grid = new QGridLayout(light);
        grid->addWidget(new QLabel("Angle to X-axis", this), 0, 0);
        grid->addWidget(new QLabel("Angle to X-Y Plane", this), 1, 0);
        grid->addWidget(new QLabel("Intensity", this), 2, 0);
        anglexy = new QLineEdit(this);
        anglexy->setObjectName("Text2");
        anglez = new QLineEdit(this);
        anglez->setObjectName("Text3");
        for (QLineEdit* box : {anglexy, anglez})
            connect(box, &QLineEdit::editingFinished, this, [this] {
                readform();
                leaveangles(form);
                showform();
            });
        intensity = new QScrollBar(Qt::Horizontal, this);
        intensity->setObjectName("HScroll1");
        intensity->setRange(0, 255);
        intensity->setMinimumWidth(160);
        intensity->setFocusPolicy(Qt::StrongFocus);
        intensity->setInvertedControls(false);  // the left arrow lowers it
        sample = new QLabel(this);
        sample->setObjectName("Text4");
        sample->setMinimumHeight(24);
        sample->setFrameShape(QFrame::StyledPanel);
        sample->setAutoFillBackground(true);
        sample->setAlignment(Qt::AlignCenter);
        connect(intensity, &QScrollBar::valueChanged, this, [this] { showsample(); });
        grid->addWidget(anglexy, 0, 1);
        grid->addWidget(anglez, 1, 1);
        for (const int row : {0, 1}) grid->addWidget(new QLabel("Deg", this), row, 2);
        grid->addWidget(intensity, 2, 1, 1, 2);
        grid->addWidget(sample, 3, 1, 1, 2);
        grid->setRowStretch(4, 1);
        rows->addLayout(columns);
        rows->addStretch(1);
    }
    void buildmerge() {
        QVBoxLayout* const rows = page("Auto Merge Settings");
        QVBoxLayout* const merging = frame(rows, "Auto merge");
        mergenodes = check(merging, "Check3(0)", "Auto merge Nodes");
        help(merging,
             "Select this option to allow the program to merge nodes which are within merge "
             "tolerance.");
        mergeelements = check(merging, "Check3(1)", "Auto merge Elements");
        help(merging, "Select this option to allow the program to merge double elements.");
        auto* const row = new QHBoxLayout;
        row->addWidget(new QLabel("Merge Tolerance Value:", this));
        tolerance = new QLineEdit(this);
        tolerance->setObjectName("Text1");
        row->addWidget(tolerance);
        row->addWidget(new QLabel(lengthsaid(), this));
        row->addStretch(1);
        merging->addLayout(row);
        connect(tolerance, &QLineEdit::editingFinished, this, [this] {
            readform();
            leavetolerance(form);
            showform();
        });
        help(merging,
             "Any two nodes which are closer to each other than the \"Merge Tolerance Value\" will "
             "be merged automatically when \"Auto Merge Nodes\" is checked.");
        help(merging,
             "Auto merge is executed when a selection of nodes or elements is deselected.");
        QVBoxLayout* const once = frame(rows, "Now");
        auto* const buttons = new QHBoxLayout;
        connect(newbutton("Command2", "Find merge Nodes", this, buttons), &QPushButton::clicked,
                this, guardedhandler([this](bool) { report(findmergenodesnow); }));
        connect(newbutton("Command3", "Find double Elements", this, buttons), &QPushButton::clicked,
                this, guardedhandler([this](bool) { report(finddoublesnow); }));
        connect(newbutton("Command4", "Merge now", this, buttons), &QPushButton::clicked, this,
                guardedhandler([this](bool) { report(mergenow); }));
        buttons->addStretch(1);
        once->addLayout(buttons);
        found = newmessageline("found", this, once);
        rows->addStretch(1);
    }
    void buildsave() {
        QVBoxLayout* const rows = page("Save options");
        renumber = check(frame(rows, "File"), "Check4", "Renumber Model before saving");
        rows->addStretch(1);
    }
    static std::string reportof(int lines, const char* what) {
        if (lines < 0) return {};
        return std::to_string(lines) + what + modelname + ".txt";
    }
    static std::string findmergenodesnow() {
        return reportof(findmergenodes(), " pair(s) of nodes, written to ");
    }
    static std::string finddoublesnow() {
        return reportof(finddoubleelems(), " double element(s), written to ");
    }
    static std::string mergenow() {
        const hourglass wait;
        const std::string text = mergeall();
        redrawall();
        return text;
    }
    void report(std::string (*find)()) {
        readform();
        storetolerance(form);
        found->setText(qtext(find()));
    }
    void readform() {
        form.redrawmove = move->isChecked();
        form.redrawdelete = remove->isChecked();
        form.redrawedit = edit->isChecked();
        form.mergenodes = mergenodes->isChecked();
        form.mergeelements = mergeelements->isChecked();
        form.tolerance = tolerance->text().toStdString();
        form.renumber = renumber->isChecked();
        form.pickshapes = pick->isChecked();
        form.shading = shading->isChecked();
        for (int i = 0; i < 4; ++i)
            if (shade[i]->isChecked()) form.shadecolor = i;
        form.anglexy = anglexy->text().toStdString();
        form.anglez = anglez->text().toStdString();
        form.intensity = intensity->value();
    }
    void showsample() {
        QPalette palette = sample->palette();
        const int v = intensity->value();
        palette.setColor(QPalette::Window, QColor(v, v, v));
        palette.setColor(QPalette::WindowText, v > 127 ? Qt::black : Qt::white);
        sample->setPalette(palette);
        sample->setText(QString::number(v));
    }
    void showform() {
        move->setChecked(form.redrawmove);
        remove->setChecked(form.redrawdelete);
        edit->setChecked(form.redrawedit);
        mergenodes->setChecked(form.mergenodes);
        mergeelements->setChecked(form.mergeelements);
        showtext(tolerance, form.tolerance);
        renumber->setChecked(form.renumber);
        pick->setChecked(form.pickshapes);
        shading->setChecked(form.shading);
        shade[form.shadecolor]->setChecked(true);
        showtext(anglexy, form.anglexy);
        showtext(anglez, form.anglez);
        intensity->setValue(form.intensity);
        showsample();
    }

    optionsform form;
    QTabWidget* tabs;
    QCheckBox *move, *remove, *edit, *shading, *mergenodes, *mergeelements, *renumber, *pick;
    QRadioButton* shade[4];
    QLineEdit *anglexy, *anglez, *tolerance;
    QScrollBar* intensity;
    QLabel *sample, *found;
};

}  // namespace

QDialog* makeoptions() {
    return new generaloptions;
}
