// SPDX-License-Identifier: GPL-3.0-or-later
// The dialogs Model Size, Analysis Options, About, Info and Model info.
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <utility>
#include <vector>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "files/analyse.h"
#include "files/setmem.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/icons.h"
#include "ui/mainwindow.h"

static QPushButton* button(const char* name, const QString& caption, QDialog* dialog,
                           QBoxLayout* row) {
    auto* const b = new QPushButton(caption, dialog);
    b->setObjectName(name);
    row->addWidget(b);
    return b;
}

// --- Model Size ---------------------------------------------------------------------------------

namespace {
class sizedialog : public QDialog {
  public:
    sizedialog() : QDialog(themainwindow) {
        setWindowTitle(tr("Model Size"));
        auto* const rows = new QVBoxLayout(this);
        auto* const grid = new QGridLayout;
        grid->addWidget(new QLabel(tr("Memory (kB)"), this), 0, 2, Qt::AlignRight);
        for (int i = 0; i < 7; ++i) {
            grid->addWidget(new QLabel(QString(sizelabels[i]).trimmed(), this), i + 1, 0);
            box[i] = new QLineEdit(this);
            box[i]->setObjectName(QString("Text1(%1)").arg(i));
            box[i]->setAlignment(Qt::AlignRight);
            box[i]->setMinimumWidth(box[i]->fontMetrics().horizontalAdvance("1000000000"));
            grid->addWidget(box[i], i + 1, 1);
            memory[i] = new QLabel(this);
            memory[i]->setObjectName(QString("memory(%1)").arg(i));
            if (i < 6) grid->addWidget(memory[i], i + 1, 2, Qt::AlignRight);
            connect(box[i], &QLineEdit::textEdited, this, [this, i] { edited(i); });
        }
        grid->addWidget(new QLabel(tr("Total (MB)"), this), 8, 0);
        grid->addWidget(memory[6], 8, 2, Qt::AlignRight);
        rows->addLayout(grid);
        auto* const buttons = new QHBoxLayout;
        buttons->addStretch(1);
        auto* const calculate = button("Command1", tr("Calculate"), this, buttons);
        auto* const ok = button("Command2", tr("Ok"), this, buttons);
        auto* const cancel = button("Command3", tr("Cancel"), this, buttons);
        rows->addLayout(buttons);
        ok->setDefault(true);
        connect(ok, &QPushButton::clicked, this, [this] { store(); });
        connect(cancel, &QPushButton::clicked, this, [this] { reject(); });
        calculate->setToolTip(tr("Calculates the memory, stores the sizes and closes"));
        connect(calculate, &QPushButton::clicked, this, [this] { store(); });
        show(showsizes());
    }

  private:
    using QDialog::show;
    void show(const sizeform& f) {
        form = f;
        for (std::size_t i = 0; i < 7; ++i) {
            if (box[i]->text() != qtext(form.text[i])) box[i]->setText(qtext(form.text[i]));
            memory[i]->setText(qtext(form.memory[i]));
        }
    }
    void store() {
        readform();
        if (applysizes(form)) accept();
        show(form);
    }
    void readform() {
        for (std::size_t i = 0; i < 7; ++i) form.text[i] = box[i]->text().toStdString();
    }
    void edited(int i) {
        readform();
        editsize(form, i);
        show(form);
    }
    sizeform form;
    QLineEdit* box[7];
    QLabel* memory[7];
};
}  // namespace

QDialog* makesetmem() {
    return new sizedialog;
}

// --- Analysis Options ---------------------------------------------------------------------------

namespace {
class optionsdialog : public QDialog {
  public:
    optionsdialog() : QDialog(themainwindow) {
        setWindowTitle(tr("Analysis Options"));
        auto* const rows = new QVBoxLayout(this);
        QBoxLayout* general = frame(rows, "General");
        twod = new QRadioButton("2-D analysis (Only X and Y dimensions included)", this);
        threed = new QRadioButton("3-D analysis", this);
        twod->setObjectName("Option1(0)");
        threed->setObjectName("Option1(1)");
        general->addWidget(twod);
        general->addWidget(threed);
        clear = check(general, "Check1", "Clear memory before analysis");
        QBoxLayout* pre = frame(rows, "Pre-processor");
        renumber = check(pre, "Check2", "Renumber model Nodes");
        elementmass = check(pre, "Check3", "Generate element mass matrix");
        QBoxLayout* solver = frame(rows, "Solver");
        stiffness = check(solver, "Check4", "Compile Stiffness Matrix");
        solve = check(solver, "Check5", "Solve Displacements and Reaction forces");
        eigen = check(solver, "Check6", "Solve Eigen Modes and frequencies");
        QBoxLayout* post = frame(rows, "Post-Processor");
        linestress = check(post, "Check7", "Calculate Line Element stresses");
        festress = check(post, "Check8", "Calculate Finite Element stresses");
        addengine(solver);
        auto* const buttons = new QHBoxLayout;
        buttons->addStretch(1);
        auto* const ready = button("Command1", tr("Ready"), this, buttons);
        ready->setDefault(true);
        rows->addLayout(buttons);
        connect(ready, &QPushButton::clicked, this, [this] {
            readform();
            storeoptions(form);
            themainwindow->refresh();
            accept();
        });
        for (QCheckBox* c : {stiffness, solve}) on(c, clicksolver);
        on(eigen, clickeigen);
        for (QCheckBox* c : {linestress, festress}) on(c, clickpostprocessor);
        form = showoptions();
        show();
    }

  private:
    QBoxLayout* frame(QBoxLayout* rows, const char* caption) {
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
    void addengine(QBoxLayout* rows) {
        auto* const row = new QHBoxLayout;
        rows->addLayout(row);
        engine = new QComboBox(this);
        engine->setObjectName("Combo1");
        auto* const label = new QLabel(tr("En&gine"), this);
        label->setBuddy(engine);
        row->addWidget(label);
        row->addWidget(engine, 1);
        for (const char* name : {"cholmod", "mumps", "multigrid", "auto"}) engine->addItem(name);
    }
    void on(QCheckBox* c, void (*click)(analysisoptions&)) {
        connect(c, &QCheckBox::clicked, this, [this, click] {
            readform();
            click(form);
            show();
        });
    }
    void readform() {
        form.twod = twod->isChecked();
        form.clear = clear->isChecked();
        form.stiffness = stiffness->isChecked();
        form.solve = solve->isChecked();
        form.eigen = eigen->isChecked();
        form.renumber = renumber->isChecked();
        form.elementmass = elementmass->isChecked();
        form.linestress = linestress->isChecked();
        form.festress = festress->isChecked();
        form.engine = engine->currentText().toStdString();
    }
    void show() {
        (form.twod ? twod : threed)->setChecked(true);
        clear->setChecked(form.clear);
        stiffness->setChecked(form.stiffness);
        solve->setChecked(form.solve);
        eigen->setChecked(form.eigen);
        renumber->setChecked(form.renumber);
        elementmass->setChecked(form.elementmass);
        linestress->setChecked(form.linestress);
        festress->setChecked(form.festress);
        renumber->setEnabled(form.renumberenabled);
        solve->setEnabled(form.solveenabled);
        linestress->setEnabled(form.stressenabled);
        festress->setEnabled(form.stressenabled);
        engine->setCurrentText(qtext(form.engine));
        engine->setEnabled(form.missing.empty());
        engine->setToolTip(form.missing.empty()
                               ? tr("What factorises the equations: cholmod in one process, the "
                                    "others in many; kept in feiflu.ini")
                               : tr("Other engines than cholmod need %1, which was not found")
                                     .arg(qtext(form.missing)));
    }
    analysisoptions form;
    QRadioButton *twod, *threed;
    QCheckBox *clear, *renumber, *elementmass, *stiffness, *solve, *eigen, *linestress, *festress;
    QComboBox* engine;
};
}  // namespace

QDialog* makeaoptions() {
    return new optionsdialog;
}

// --- About, Info, Model info --------------------------------------------------------------------

static QDialog* textdialog(const QString& title, const QString& text) {
    auto* const dialog = new QDialog(themainwindow);
    dialog->setWindowTitle(title);
    auto* const rows = new QVBoxLayout(dialog);
    auto* const top = new QHBoxLayout;
    auto* const picture = new QLabel(dialog);
    picture->setPixmap(programicon().pixmap(64, 64));
    top->addWidget(picture, 0, Qt::AlignTop);
    auto* const label = new QLabel(text, dialog);
    label->setTextFormat(Qt::RichText);
    label->setWordWrap(true);
    label->setMinimumWidth(360);
    top->addWidget(label, 1);
    rows->addLayout(top);
    auto* const buttons = new QHBoxLayout;
    buttons->addStretch(1);
    auto* const ok = button("Command1", "OK", dialog, buttons);
    ok->setDefault(true);
    rows->addLayout(buttons);
    QObject::connect(ok, &QPushButton::clicked, dialog, &QDialog::accept);
    return dialog;
}

static QString abouttext() {
    return QObject::tr(
               "<h3>%1</h3><p>Finite-element workbench for linear elastic structures in two and "
               "three dimensions, with wave, wind, buoyancy and acceleration loads.</p>"
               "<p>Version %2. Free software under the GNU General Public License, version 3 or "
               "later; it comes without any warranty.</p>")
        .arg(qtext(apptitle), QString(KALVANE_VERSION));
}

QDialog* makeabout() {
    return textdialog(QObject::tr("About"), abouttext());
}

QDialog* makeinfo() {
    return textdialog(
        QObject::tr("Info"),
        abouttext() +
            QObject::tr("<p>Catalogue and settings: %1</p>").arg(qtext(appdir).toHtmlEscaped()));
}

// What the model is, a row each: caption and text.
static std::vector<std::pair<QString, QString>> headingofmodel() {
    std::vector<std::pair<QString, QString>> lines = {{"Model", qname(modelname)},
                                                      {"Analysis", dim2d ? "2-D" : "3-D"}};
    const char* const axes = "xyz";
    for (int k = 0; k < 3 && nnodes() > 0; ++k) {
        float low = nodes(0, 1, k), high = low;
        for (int n = 2; n <= nnodes(); ++n) {
            low = std::min(low, nodes(0, n, k));
            high = std::max(high, nodes(0, n, k));
        }
        lines.emplace_back(
            QChar(axes[k]),
            QString("%1 to %2").arg(qtext(numbertext(low)), qtext(numbertext(high))));
    }
    return lines;
}

QDialog* makemodelinfo() {
    auto* const dialog = new QDialog(themainwindow);
    dialog->setWindowTitle(QObject::tr("Model info"));
    auto* const rows = new QVBoxLayout(dialog);
    auto* const heading = new QFormLayout;
    heading->setHorizontalSpacing(16);
    for (const auto& [caption, text] : headingofmodel()) {
        auto* const line = new QLabel(text, dialog);
        line->setTextInteractionFlags(Qt::TextSelectableByMouse);
        line->setWordWrap(true);
        heading->addRow(new QLabel(caption, dialog), line);  // no key goes to a text
    }
    rows->addLayout(heading);
    auto* const table = new QTableWidget(7, 3, dialog);
    table->setObjectName("Grid1");
    table->setHorizontalHeaderLabels(
        {QObject::tr("Item"), QObject::tr("In the model"), QObject::tr("Declared")});
    table->verticalHeader()->hide();
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    int rowsinuse = ncon;
    for (int lc = 1; lc <= nlc(); ++lc)
        rowsinuse = std::max({rowsinuse, loadnode(lc, 0), int(elemload(lc, 0, 0))});
    int edgenodes = 0;
    for (int g = 1; g <= ngraphics(); ++g)
        if (graphics(g, 0, 0) != 0) edgenodes = std::max(edgenodes, int(graphics(g, 0, 1)) + 1);
    const int counts[] = {nnodes(), nelems(), rowsinuse, ngroups(), ngraphics(), edgenodes, nlc()};
    for (int i = 0; i < 7; ++i) {
        const QString texts[] = {QString(sizelabels[i]).trimmed(), QString::number(counts[i]),
                                 QString::number(modelsize(i + 1))};
        for (int k = 0; k < 3; ++k) {
            auto* const item = new QTableWidgetItem(texts[k]);
            if (k > 0) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            table->setItem(i, k, item);
        }
    }
    table->resizeColumnsToContents();
    const int wide = table->horizontalHeader()->length() + 4;
    table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    table->verticalHeader()->setDefaultSectionSize(dialog->fontMetrics().height() + 8);
    table->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table->setMinimumSize(std::max(430, wide), table->horizontalHeader()->sizeHint().height() + 4 +
                                                   table->verticalHeader()->length());
    rows->addWidget(table);
    auto* const buttons = new QHBoxLayout;
    addcopytable(table, dialog, buttons);
    buttons->addStretch(1);
    auto* const ok = button("Command1", "OK", dialog, buttons);
    ok->setDefault(true);
    rows->addLayout(buttons);
    QObject::connect(ok, &QPushButton::clicked, dialog, &QDialog::accept);
    return dialog;
}
