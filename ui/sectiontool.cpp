// SPDX-License-Identifier: GPL-3.0-or-later
// The window of the section tool.
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include "core/units.h"
#include "tools/sections.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/sectionpicture.h"

namespace {
class sectiondialog : public QDialog {
  public:
    explicit sectiondialog(groupform& g) : QDialog(themainwindow), group(g) {
        setWindowTitle(tr("Section Tool"));
        auto* const rows = new QVBoxLayout(this);
        auto* const columns = new QHBoxLayout;
        auto* const first = new QVBoxLayout;
        auto* const second = new QVBoxLayout;
        addchoice(first);
        addunits(second);
        adddimensions(second);
        addresults(second);
        second->addStretch(1);
        picture = new sectionpicture(this);
        picture->setObjectName("Picture1");
        columns->addLayout(first);
        columns->addLayout(second);
        columns->addWidget(picture, 1);
        rows->addLayout(columns, 1);
        addbuttons(rows);
        message = newmessageline("Label4", this, rows);
        form = Initiate();
        showprofile(form, group);
        showform();
        names->setFocus();
    }

  private:
    void addchoice(QBoxLayout* rows);
    void addunits(QBoxLayout* rows);
    void adddimensions(QBoxLayout* rows);
    void addresults(QBoxLayout* rows);
    void addbuttons(QBoxLayout* rows);
    // Does what the user asked for and shows the form again.
    void run(const std::function<void()>& action) {
        guarded(action, tellfault);
        showform();
    }
    void showform();
    void shownames();
    QCheckBox* check(const char* name, const QString& caption, QBoxLayout* row);

    groupform& group;
    sectionform form;
    QComboBox *types, *units, *sourceunits;
    QCheckBox *database, *binary, *autoname;
    QListWidget* names;
    QLabel *labels[ndims], *unitlabels[ndims], *name, *message;
    QLineEdit *boxes[ndims], *results[nresults];
    sectionpicture* picture;
};
}  // namespace

QCheckBox* sectiondialog::check(const char* objectname, const QString& caption, QBoxLayout* row) {
    auto* const c = new QCheckBox(caption, this);
    c->setObjectName(objectname);
    row->addWidget(c);
    return c;
}

void sectiondialog::addchoice(QBoxLayout* rows) {
    types = new QComboBox(this);
    types->setObjectName("Combo1");
    for (const sectiontyperow& row : sectiontypes) types->addItem(row.name);
    rows->addWidget(types);
    connect(types, &QComboBox::activated, this,
            [this](int t) { run([&] { choosetype(form, t); }); });
    names = new QListWidget(this);
    names->setObjectName("List1");
    names->setMinimumWidth(170);
    rows->addWidget(names, 1);
    const auto choose = [this](QListWidgetItem* item) {
        if (item == nullptr) return;
        run([&] { choosesection(form, item->text().toStdString()); });
    };
    connect(names, &QListWidget::currentItemChanged, this, choose);
    connect(names, &QListWidget::itemClicked, this, choose);
    database = check("Check1", tr("Use database"), rows);
    connect(database, &QCheckBox::clicked, this,
            [this](bool on) { run([&] { usedatabase(form, on); }); });
    auto* const file = new QHBoxLayout;
    binary = check("Check2", tr("Binary file"), file);
    connect(binary, &QCheckBox::clicked, this,
            [this](bool on) { run([&] { usebinary(form, on); }); });
    QPushButton* const write = newbutton("Command3", "Write it", this, file);
    write->setToolTip(tr("Writes the database in memory to sections.dig"));
    write->setAutoDefault(false);
    connect(write, &QPushButton::clicked, this, [this] { run([&] { writebinary(form); }); });
    rows->addLayout(file);
}

void sectiondialog::addunits(QBoxLayout* rows) {
    auto* const frame = new QGroupBox(tr("Units"), this);
    auto* const grid = new QGridLayout(frame);
    const auto list = [&](const char* objectname, const QString& caption, int row) {
        auto* const box = new QComboBox(this);
        box->setObjectName(objectname);
        for (const char* unit : unitnames) box->addItem(unit);
        grid->addWidget(new QLabel(caption, this), row, 0);
        grid->addWidget(box, row, 1);
        return box;
    };
    units = list("Combo2", tr("Model"), 0);
    sourceunits = list("Combo3", tr("Section"), 1);
    sourceunits->setEnabled(false);  // the record's
    connect(units, &QComboBox::activated, this,
            [this](int u) { run([&] { chooseunit(form, u); }); });
    rows->addWidget(frame);
}

void sectiondialog::adddimensions(QBoxLayout* rows) {
    auto* const frame = new QGroupBox(tr("Dimensions"), this);
    auto* const grid = new QGridLayout(frame);
    for (int k = 0; k < ndims; ++k) {
        labels[k] = new QLabel(this);
        labels[k]->setObjectName(QString("Label1(%1)").arg(k));
        unitlabels[k] = new QLabel(this);
        unitlabels[k]->setObjectName(QString("Label2(%1)").arg(k));
        boxes[k] = new QLineEdit(this);
        boxes[k]->setObjectName(QString("Text1(%1)").arg(k));
        QSizePolicy keep = boxes[k]->sizePolicy();  // its room, where a type has no such field
        keep.setRetainSizeWhenHidden(true);
        boxes[k]->setSizePolicy(keep);
        grid->addWidget(labels[k], k, 0);
        grid->addWidget(boxes[k], k, 1);
        grid->addWidget(unitlabels[k], k, 2);
        connect(boxes[k], &QLineEdit::textEdited, this, [this, k](const QString& text) {
            run([&] { editdimension(form, k, text.toStdString()); });
        });
    }
    grid->setColumnMinimumWidth(0, 40);
    rows->addWidget(frame);
}

void sectiondialog::addresults(QBoxLayout* rows) {
    auto* const frame = new QGroupBox(tr("Properties"), this);
    auto* const grid = new QGridLayout(frame);
    static const char* const powers[nresults] = {"L^2", "L^4", "L^3", "L^4", "L^3", "L^4", "L^3"};
    for (int i = 0; i < nresults; ++i) {
        results[i] = new QLineEdit(this);
        results[i]->setObjectName(QString("Text2(%1)").arg(i));
        results[i]->setReadOnly(true);
        results[i]->setMinimumWidth(130);
        grid->addWidget(new QLabel(resultnames[i], this), i, 0);
        grid->addWidget(results[i], i, 1);
        grid->addWidget(new QLabel(qtext(captionunit(powers[i])), this), i, 2);
    }
    grid->setColumnMinimumWidth(0, 40);
    rows->addWidget(frame);
}

void sectiondialog::addbuttons(QBoxLayout* rows) {
    auto* const row = new QHBoxLayout;
    autoname = check("Check3", tr("Auto name"), row);
    connect(autoname, &QCheckBox::clicked, this, [this](bool on) { form.autoname = on; });
    name = new QLabel(this);
    name->setObjectName("Label3");
    row->addWidget(name);
    row->addStretch(1);
    QPushButton* const accepting = newbutton("Command1", "Accept", this, row);
    accepting->setDefault(true);
    connect(accepting, &QPushButton::clicked, this, [this] {
        bool done = false;
        run([&] { done = acceptsection(form, group); });
        if (done) accept();
    });
    connect(newbutton("Command2", "Cancel", this, row), &QPushButton::clicked, this,
            &QDialog::reject);
    rows->addLayout(row);
}

void sectiondialog::shownames() {
    const QSignalBlocker quiet(names);
    QStringList wanted, shown;
    for (const std::string& n : form.names) wanted << qtext(n);
    for (int i = 0; i < names->count(); ++i) shown << names->item(i)->text();
    if (wanted != shown) {
        names->clear();
        names->addItems(wanted);
    }
    const int row = int(wanted.indexOf(qtext(form.section)));
    if (names->currentRow() < 0 || names->currentItem()->text() != qtext(form.section))
        names->setCurrentRow(row);
}

void sectiondialog::showform() {
    types->setCurrentIndex(form.type);
    units->setCurrentIndex(form.unit);
    sourceunits->setCurrentIndex(form.sourceunit);
    database->setChecked(form.database);
    binary->setChecked(form.binary);
    autoname->setChecked(form.autoname);
    shownames();
    QStringList marks;
    for (std::size_t k = 0; k < ndims; ++k) {
        const bool used = !form.labels[k].empty();
        labels[k]->setText(qtext(form.labels[k]));
        unitlabels[k]->setText(qtext(form.unitlabels[k]));
        boxes[k]->setVisible(used);
        unitlabels[k]->setVisible(used);
        showtext(boxes[k], form.dims[k]);
        marks << qtext(form.labels[k] + " " + form.dims[k]);
    }
    for (std::size_t i = 0; i < nresults; ++i) {
        results[i]->setText(qtext(form.results[i]));
        results[i]->setCursorPosition(0);
        results[i]->setEnabled(!form.stale);
    }
    name->setText(qtext(form.name));
    message->setText(qtext(form.message));
    picture->setsection(form.type, dimensionsof(form), marks);
}

QDialog* makesectiontool(groupform& group) {
    return new sectiondialog(group);
}
