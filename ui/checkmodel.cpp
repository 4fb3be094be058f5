// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Check model": local axes, what is wrong before an analysis, quality of the elements.
#include <QApplication>
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTabWidget>

#include "core/journal.h"
#include "core/numtext.h"
#include "tools/checkform.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/qtsurface.h"

namespace {

// A line of the histogram: the bar in the colour of its band behind the text.
class bardelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    enum roles { share = Qt::UserRole, barcolour };
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const int beneath = 10;  // pixels
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, beneath);
    }
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyleOptionViewItem plain = option;
        initStyleOption(&plain, index);
        const int beside = 150;  // pixels of text before the bars
        QRect bar = option.rect.adjusted(beside, 2, -4, -2);
        bar.setWidth(int(std::max(0, bar.width()) * index.data(share).toDouble()));
        QStyledItemDelegate::paint(painter, option, index);
        painter->fillRect(bar, index.data(barcolour).value<QColor>());
    }
};

class checkdialog : public sidedialog {
  public:
    checkdialog() : sidedialog(themainwindow), form(opencheckmodel()) {
        setWindowTitle("Check model");
        setProperty(besidemain, true);
        auto* const rows = new QVBoxLayout(this);
        auto* const top = new QHBoxLayout;
        groups = addlist(top, "Combo1", "Group name :");
        rows->addLayout(top);
        tabs = new QTabWidget(this);
        tabs->setObjectName("SSTab1");
        tabs->addTab(axespage(), "Axes");
        tabs->addTab(checkpage(), "Check");
        tabs->addTab(qualitypage(), "Quality");
        connect(tabs, &QTabWidget::currentChanged, this, guardedhandler([this](int) {
                    countseen();
                    showform();
                }));
        rows->addWidget(tabs, 1);
        message = newmessageline("message", this, rows);
        auto* const row = new QHBoxLayout;
        row->addStretch(1);
        QPushButton* const ready = newbutton("Command10", "Ready", this, row);
        ready->setAutoDefault(false);
        connect(ready, &QPushButton::clicked, this, &QDialog::accept);
        rows->addLayout(row);
        connect(groups, &QComboBox::activated, this, guardedhandler([this](int entry) {
                    getvgroup(form, entry);
                    countseen();
                    showform();
                }));
        showlist(reference, form.references, form.reference);
        showform();
    }
    ~checkdialog() override {
        guarded([this] { closecheckmodel(form); }, tellfault);
    }

  private:
    QComboBox* addlist(QBoxLayout* row, const char* name, const char* caption) {
        auto* const list = new QComboBox(this);
        list->setObjectName(name);
        auto* const label = new QLabel(caption, this);
        label->setBuddy(list);
        row->addWidget(label);
        row->addWidget(list, 1);
        return list;
    }
    template <typename Action>
    QPushButton* add(QBoxLayout* row, const char* name, const char* caption, Action action,
                     const char* tip) {
        QPushButton* const b = newbutton(name, caption, this, row);
        b->setAutoDefault(false);
        b->setToolTip(tip);
        connect(b, &QPushButton::clicked, this, guardedhandler([this, action](bool) {
                    readform();
                    form.message.clear();
                    action(form);
                    showform();
                }));
        return b;
    }
    QCheckBox* addcheck(QBoxLayout* row, const char* name, const char* caption) {
        auto* const box = new QCheckBox(caption, this);
        box->setObjectName(name);
        row->addWidget(box);
        return box;
    }
    static QHBoxLayout* newrow(QBoxLayout* rows) {
        auto* const row = new QHBoxLayout;
        rows->addLayout(row);
        return row;
    }
    QLabel* addvalue(QGridLayout* grid, int row, const char* caption, const char* name) {
        auto* const value = new QLabel(this);
        value->setObjectName(name);
        grid->addWidget(new QLabel(caption, this), row, 0);
        grid->addWidget(value, row, 1);
        grid->setColumnStretch(1, 1);
        return value;
    }

    QWidget* axespage() {
        auto* const page = new QWidget(this);
        auto* const rows = new QVBoxLayout(page);
        auto* const walk = new QGroupBox("Local axes of the group", page);
        auto* const walkrows = new QVBoxLayout(walk);
        reference = addlist(newrow(walkrows), "Combo2", "Axes as of :");
        QBoxLayout* row = newrow(walkrows);
        add(row, "Command1", "First", stepfirst, "Selects the element where the walk starts");
        add(row, "Command2", "Next", stepnext,
            "Makes the neighbours of the selected element agree and selects the next");
        add(row, "Command3", "Homogenize Axis", homogenizeaxis,
            "Mirrors and turns the elements of the group until the axes of neighbours agree");
        auto* const values = new QGridLayout;
        walkrows->addLayout(values);
        element = addvalue(values, 0, "Element :", "Label1");
        angle = addvalue(values, 1, "Angle :", "Label2");
        add(newrow(walkrows), "Command4", "Flip", flipgroup,
            "Turns all elements of the group over, with the same first edge");
        rows->addWidget(walk);
        auto* const hand = new QGroupBox("Selected elements", page);
        auto* const handrows = new QVBoxLayout(hand);
        row = newrow(handrows);
        add(row, "Command5", "Rotate", rotateselected, "Moves the nodes one place on, or three");
        add(row, "Command6", "Mirror", mirrorselected, "Reverses the order of the nodes");
        three = addcheck(row, "Check2", "Three places");
        rows->addWidget(hand);
        auto* const wrong = new QGroupBox("Wrong elements", page);
        auto* const wrongrows = new QVBoxLayout(wrong);
        row = newrow(wrongrows);
        limit = new QLineEdit(wrong);
        limit->setObjectName("Text1");
        auto* const caption = new QLabel("Quality limit :", wrong);
        caption->setBuddy(limit);
        row->addWidget(caption);
        row->addWidget(limit, 1);
        row = newrow(wrongrows);
        add(row, "Command7", "Find", showwrong,
            "Selects the elements whose corners lie below the limit; 3 is full agreement");
        add(row, "Command8", "Modify", modifywrong,
            "Rotates or reverses them, and changes to the other way for the next");
        rotate = addcheck(row, "Check1", "Rotate");
        auto* const found = new QGridLayout;
        wrongrows->addLayout(found);
        quality = addvalue(found, 0, "Quality :", "Label3");
        rows->addWidget(wrong);
        rows->addStretch(1);
        return page;
    }

    QListWidget* newlines(QWidget* page, const char* name) {
        auto* const list = new QListWidget(page);
        list->setObjectName(name);
        list->setMinimumSize(380, 200);
        return list;
    }
    // A row that is chosen by keys, or clicked, also once more.
    template <typename Action>
    void whenchosen(QListWidget* list, Action action) {
        const auto run = guardedhandler([this, action](int line) {
            if (showing || line < 0) return;
            action(line);
            message->setText(qtext(form.message));
        });
        connect(list, &QListWidget::currentRowChanged, this, [run](int line) {
            if (QApplication::mouseButtons() == Qt::NoButton) run(line);
        });
        connect(list, &QListWidget::itemClicked, this,
                [run, list](QListWidgetItem* item) { run(list->row(item)); });
    }
    QWidget* checkpage() {
        auto* const page = new QWidget(this);
        auto* const rows = new QVBoxLayout(page);
        add(
            newrow(rows), "Command9", "Check",
            [this](checkmodelform& f) {
                findall(f);
                showfindings();
            },
            "Looks for what is wrong with the whole model");
        lines = newlines(page, "List1");
        lines->setWordWrap(true);
        rows->addWidget(lines, 1);
        whenchosen(lines, [this](int line) { showfinding(form, std::size_t(line)); });
        return page;
    }
    QWidget* qualitypage() {
        auto* const page = new QWidget(this);
        auto* const rows = new QVBoxLayout(page);
        auto* const text = new QLabel(
            "1 is a square or a triangle of equal sides, 0 has no area. Click a line to select its "
            "elements.",
            page);
        text->setWordWrap(true);
        rows->addWidget(text);
        bands = newlines(page, "List2");
        bands->setItemDelegate(new bardelegate(bands));
        rows->addWidget(bands, 1);
        whenchosen(bands, [this](int line) { selectband(form, qualitybands - 1 - line); });
        picture = addcheck(newrow(rows), "Check3", "Show in the views");
        connect(picture, &QCheckBox::toggled, this, guardedhandler([this](bool on) {
                    showqualities(form, on);
                    showform();
                }));
        return page;
    }

    void readform() {
        form.reference = reference->currentIndex();
        form.limit = limit->text().toStdString();
        form.rotate = rotate->isChecked();
        form.three = three->isChecked();
    }
    void showfindings() {
        showing = true;
        lines->clear();
        for (const finding& f : form.findings) {
            auto* const item =
                new QListWidgetItem((f.heading ? "" : "    ") + qtext(f.text), lines);
            QFont font = item->font();
            font.setBold(f.heading);
            item->setFont(font);
            if (f.heading && f.grave) item->setForeground(QColor(190, 0, 0));
        }
        showing = false;
    }
    // A look at every element, which waits until its page is on show.
    void countseen() {
        if (tabs->currentWidget()->isAncestorOf(bands)) countgroup(form);
    }
    // The best band stands on top.
    void showbands() {
        showing = true;
        const long most = std::max(1L, *std::max_element(form.counts.begin(), form.counts.end()));
        for (int i = 0; i < qualitybands; ++i) {
            const int band = qualitybands - 1 - i;
            if (bands->count() <= i) bands->addItem("");
            const long count = form.counts[std::size_t(band)];
            QListWidgetItem* const item = bands->item(i);
            item->setText(QString("%1 to %2: %3")
                              .arg(band / 10.0, 0, 'f', 1)
                              .arg((band + 1) / 10.0, 0, 'f', 1)
                              .arg(count));
            item->setData(bardelegate::share, double(count) / double(most));
            item->setData(bardelegate::barcolour, qtcolor(colourofband(band)));
        }
        showing = false;
    }
    void showform() {
        listgroups(form);
        showlist(groups, form.groups, form.group);
        element->setText(qtext(form.element));
        angle->setText(qtext(form.angle));
        quality->setText(qtext(form.quality));
        showtext(limit, form.limit);
        rotate->setChecked(form.rotate);
        three->setChecked(form.three);
        showbands();
        message->setText(qtext(form.message));
    }

    checkmodelform form;
    bool showing = false;
    QTabWidget* tabs;
    QComboBox *groups, *reference;
    QLabel *element, *angle, *quality, *message;
    QLineEdit* limit;
    QCheckBox *rotate, *three, *picture;
    QListWidget *lines, *bands;
};

}  // namespace

QDialog* makecheckmodel() {
    return new checkdialog;
}
