// SPDX-License-Identifier: GPL-3.0-or-later
// The window of the element groups.
#include <QApplication>
#include <QBoxLayout>
#include <QColorDialog>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>

#include "core/labels.h"
#include "core/model.h"
#include "tools/groups.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/pickbutton.h"

static QColor qcolour(colour c) {
    return {redof(c), greenof(c), blueof(c)};
}

namespace {
class groupdialog : public QDialog {
  public:
    groupdialog() : QDialog(themainwindow) {
        setWindowTitle(tr("Element Group"));
        auto* const rows = new QVBoxLayout(this);
        addlist(rows);
        pages = new QStackedWidget(this);
        addproperties();
        addmatrix();
        rows->addWidget(pages, 1);
        addbuttons(rows);
        message = newmessageline("Label3", this, rows);
        form = opengroups();
        showform();
    }
    // Every way of closing is Ready. What was stored other than typed is read before the window
    // goes.
    void done(int result) override {
        bool ready = false;
        run([&] { ready = readygroups(form); });
        if (ready) QDialog::done(result);
    }

  private:
    void addlist(QBoxLayout* rows);
    void addproperties();
    void addmatrix();
    void addbuttons(QBoxLayout* rows);
    void addfields(QGridLayout* grid, std::initializer_list<int> fields);
    QPushButton* button(const char* name, const char* caption, QBoxLayout* row,
                        std::function<void()> click);
    // Takes a name that was typed, does what the user asked for unless the name was refused, and
    // shows the form again.
    void run(const std::function<void()>& action) {
        guarded(
            [&] {
                if (storetypedname()) action();
            },
            tellfault);
        showform();
    }
    bool storetypedname();
    void showform();
    void askcolour();
    void opensections();

    groupform form;
    QString typed;  // in the list field, not yet taken as a name
    bool istyped = false;
    QComboBox* list;
    QStackedWidget* pages;
    QLineEdit *boxes[groupfields + 1], *cells[matrixfields];
    QPushButton *shade, *plane, *springs;
    QLabel *units[groupfields + 1], *message, *count;
};
}  // namespace

// Enter in a box must press none of the buttons.
QPushButton* groupdialog::button(const char* name, const char* caption, QBoxLayout* row,
                                 std::function<void()> click) {
    auto* const b = newbutton(name, caption, this, row);
    b->setAutoDefault(false);
    connect(b, &QPushButton::clicked, this, [this, click] { run(click); });
    return b;
}

void groupdialog::addlist(QBoxLayout* rows) {
    auto* const row = new QHBoxLayout;
    row->addWidget(new QLabel(tr("Element Group :"), this));
    list = new QComboBox(this);
    list->setObjectName("Combo1");
    list->setMinimumWidth(190);
    maketyped(list);
    list->setDuplicatesEnabled(true);  // Enter with the name of another group chooses nothing
    row->addWidget(list, 1);
    connect(list->lineEdit(), &QLineEdit::textEdited, this, [this](const QString& text) {
        typed = text;
        istyped = true;
    });
    connect(list->lineEdit(), &QLineEdit::editingFinished, this, [this] {
        // A button takes the name itself, and does nothing where it is refused.
        if (qobject_cast<QPushButton*>(QApplication::focusWidget()) == nullptr) run([] {});
    });
    connect(list, &QComboBox::activated, this,
            [this](int i) { run([&] { choosegroup(form, i); }); });
    shade = button("Picture1", "Color...", row, [this] { askcolour(); });
    count = new QLabel(this);
    count->setObjectName("count");
    row->addWidget(count);
    button("Command1", "Add", row, [this] { addgroup(form); });
    button("Command2", "Delete", row, [this] { deletegroup(form); });
    rows->addLayout(row);
}

void groupdialog::addfields(QGridLayout* grid, std::initializer_list<int> fields) {
    int row = 0;
    for (const int k : fields) {
        boxes[k] = new QLineEdit(this);
        boxes[k]->setObjectName(QString("Text1(%1)").arg(k));
        boxes[k]->setMinimumWidth(150);
        grid->addWidget(new QLabel(groupcaptions[k].caption, this), row, 0);
        grid->addWidget(boxes[k], row, 1);
        units[k] = new QLabel(this);
        units[k]->setObjectName(QString("unit(%1)").arg(k));
        grid->addWidget(units[k], row, 2);
        connect(boxes[k], &QLineEdit::textEdited, this, [this, k](const QString& text) {
            run([&] { editfield(form, k, text.toStdString()); });
        });
        ++row;
    }
    grid->setRowStretch(row + 1, 1);
}

void groupdialog::addproperties() {
    auto* const page = new QWidget(this);
    auto* const columns = new QHBoxLayout(page);
    columns->setContentsMargins(0, 0, 0, 0);
    auto* const material = new QGroupBox(tr("Material"), page);
    auto* const left = new QGridLayout(material);
    addfields(left, {1, 2, 3, 4, 5});
    auto* const under = new QHBoxLayout;
    plane = button("Command5", "", under, [this] { toggleplane(form); });
    left->addLayout(under, 5, 1);
    auto* const section = new QGroupBox(tr("Section"), page);
    addfields(new QGridLayout(section), {6, 7, 8, 9, 10, 11, 12});
    columns->addWidget(material);
    columns->addWidget(section);
    pages->addWidget(page);
}

void groupdialog::addmatrix() {
    auto* const page = new QGroupBox(tr("Spring stiffness matrix"), this);
    auto* const grid = new QGridLayout(page);
    const int widest = fontMetrics().horizontalAdvance("-1.2345678E-05") + 14;  // of a Single
    for (int i = 1; i <= 6; ++i) {
        grid->addWidget(new QLabel(qtext(doflabel(i)), page), 0, i, Qt::AlignCenter);
        grid->addWidget(new QLabel(qtext(doflabel(i)), page), i, 0);
    }
    for (int column = 1; column <= 6; ++column)
        for (int row = 1; row <= 6; ++row) {
            const int index = (row - 1) + 6 * (column - 1);
            cells[index] = new QLineEdit(page);
            cells[index]->setObjectName(QString("Text2(%1)").arg(index));
            cells[index]->setMinimumWidth(widest);
            grid->addWidget(cells[index], row, column);
            connect(cells[index], &QLineEdit::textEdited, this, [this, index](const QString& text) {
                run([&] { editmatrix(form, index, text.toStdString()); });
            });
        }
    // Along the rows, as one reads.
    for (int at = 1; at < matrixfields; ++at)
        setTabOrder(cells[(at - 1) / 6 + 6 * ((at - 1) % 6)], cells[at / 6 + 6 * (at % 6)]);
    auto* const note =
        new QLabel(tr("A value above the diagonal goes to its place below as well."));
    grid->addWidget(note, 7, 1, 1, 6);
    grid->setRowStretch(8, 1);
    pages->addWidget(page);
}

void groupdialog::addbuttons(QBoxLayout* rows) {
    auto* const row = new QHBoxLayout;
    springs = button("SPRINGBUT", "", row, [this] { togglesprings(form); });
    button("Command6", "Section...", row, [this] { opensections(); });
    auto* const pick = new pickbutton(this, 1, [this] {
        if (const int e = int(elemsel(1)); elemsel(0) > 0 && e > 0)
            run([&] { choosegroup(form, egroup(e) - 1); });
    });
    pick->setToolTip(tr("The group of an element that is selected in a view"));
    row->addWidget(pick);
    row->addStretch(1);
    button("Command3", "Update", row, [this] { updategroups(form); });
    auto* const ready = newbutton("Command4", "Ready", this, row);
    ready->setAutoDefault(false);
    connect(ready, &QPushButton::clicked, this, &QDialog::accept);
    rows->addLayout(row);
}

bool groupdialog::storetypedname() {
    if (!istyped) return true;
    istyped = false;
    return changename(form, typed.toStdString());
}

void groupdialog::showform() {
    if (!istyped) {
        showlist(list, form.names, form.all ? ngroups() : meshgroup - 1);
        showtext(list->lineEdit(), form.name);
    }
    for (int k = 1; k <= groupfields; ++k) {
        showtext(boxes[k], form.text[std::size_t(k)]);
        units[k]->setText(qtext(form.unit[std::size_t(k)]));
    }
    for (int i = 0; i < matrixfields; ++i) {
        showtext(cells[i], form.matrix[std::size_t(i)]);
        cells[i]->setEnabled(!form.all);
    }
    plane->setText(qtext(form.plane));
    springs->setText(form.springs ? tr("Properties") : tr("Springs"));
    pages->setCurrentIndex(form.springs ? 1 : 0);
    QPixmap swatch(22, 14);
    swatch.fill(form.all ? Qt::transparent : qcolour(form.shade));
    shade->setIcon(swatch);
    shade->setEnabled(!form.all);
    int held = 0;
    for (int e = 1; e <= nelems() && !form.all; ++e)
        held += elems(e, 0) != 0 && egroup(e) == meshgroup;
    count->setText(form.all    ? QString()
                   : held == 1 ? tr("1 element")
                               : tr("%1 elements").arg(held));
    message->setText(qtext(form.message));
}

void groupdialog::askcolour() {
    auto* const dialog = new QColorDialog(qcolour(form.shade), this);
    dialog->setObjectName("colordialog");
    dialog->setWindowTitle(tr("Color of group %1").arg(qname(form.name)));
    dialog->setOption(QColorDialog::DontUseNativeDialog);
    // Its controls by name for scripts: "Red", "Green", "Blue".
    for (QLabel* l : dialog->findChildren<QLabel*>())
        if (l->buddy()) l->buddy()->setObjectName(l->text().remove('&').remove(':'));
    connect(dialog, &QColorDialog::colorSelected, this, [this](const QColor& c) {
        run([&] { choosecolour(form, rgb(c.red(), c.green(), c.blue())); });
    });
    showmodal(dialog);
}

// The section tool takes this window's place and gives it back with the values in the fields.
void groupdialog::opensections() {
    QDialog* const tool = makesectiontool(form);
    tool->setObjectName("Sectiontool");
    connect(tool, &QDialog::finished, this, [this] {
        showform();
        show();
    });
    hide();
    showmodal(tool);
}

QDialog* makedefgroup() {
    return new groupdialog;
}
