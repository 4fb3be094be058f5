// SPDX-License-Identifier: GPL-3.0-or-later
// Controls that the dialogs share.
#include "ui/controls.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QStringListModel>
#include <QTableView>

#include "core/textfile.h"
#include "core/units.h"

QString qtext(const std::string& text) {
    return QString::fromStdString(text);
}

QString lengthsaid() {
    const std::string name = unitstext.empty() ? "" : unitname("L");
    return name == "L" ? QString() : qtext(name);
}

QString qname(const std::string& name) {
    return qtext(shownname(name));
}

QPushButton* newbutton(const char* name, const char* caption, QWidget* parent, QBoxLayout* row) {
    auto* const b = new QPushButton(caption, parent);
    b->setObjectName(name);
    row->addWidget(b);
    return b;
}

QLabel* newmessageline(const char* name, QWidget* parent, QBoxLayout* rows) {
    auto* const line = new QLabel(parent);
    line->setObjectName(name);
    line->setWordWrap(true);
    line->setMinimumHeight(line->fontMetrics().height() + 4);
    rows->addWidget(line);
    return line;
}

void maketyped(QComboBox* list) {
    list->setEditable(true);
    list->setInsertPolicy(QComboBox::NoInsert);
    list->setCompleter(nullptr);
    // The list's own answer to the end of typing would jump to an entry with the same text.
    QObject::disconnect(list->lineEdit(), &QLineEdit::editingFinished, list, nullptr);
}

// One row of equal height for all entries, of which there may be a million.
static QStringListModel* textsof(QComboBox* list) {
    if (auto* const model = qobject_cast<QStringListModel*>(list->model())) return model;
    auto* const view = new QListView(list);
    view->setUniformItemSizes(true);
    list->setView(view);
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    list->setMinimumContentsLength(10);
    auto* const model = new QStringListModel(list);
    list->setModel(model);
    return model;
}

void showlist(QComboBox* list, const std::vector<std::string>& entries, int chosen) {
    QStringListModel* const model = textsof(list);
    QStringList texts;
    texts.reserve(qsizetype(entries.size()));
    for (const std::string& entry : entries) texts << qname(entry);
    if (texts != model->stringList()) model->setStringList(texts);
    if (list->currentIndex() != chosen) list->setCurrentIndex(chosen);
}

static const char* const wholetext = "wholetext";

void showtext(QLineEdit* box, const std::string& text) {
    const QString beginning = qname(text);
    box->setProperty(wholetext, qtext(text));
    if (box->text() == beginning || box->text() == qtext(text)) return;
    box->setText(beginning);
    if (!box->hasFocus()) box->setCursorPosition(0);
}

std::string typedtext(const QLineEdit* box) {
    const std::string whole = box->property(wholetext).toString().toStdString();
    return box->text() == qname(whole) ? whole : box->text().toStdString();
}

static QString textof(const QTableView* table) {
    const QAbstractItemModel& model = *table->model();
    QStringList lines;
    for (int i = table->horizontalHeader()->isHidden() ? 0 : -1; i < model.rowCount(); ++i) {
        QStringList cells;
        for (int k = 0; k < model.columnCount(); ++k)
            cells << (i < 0 ? model.headerData(k, Qt::Horizontal) : model.index(i, k).data())
                         .toString();
        lines << cells.join('\t');
    }
    return lines.join('\n') + '\n';
}

void widentable(QTableView* table) {
    QHeaderView* const head = table->horizontalHeader();
    const QAbstractItemView* const cells = table;
    int wide = 2 * table->frameWidth() + table->verticalScrollBar()->sizeHint().width();
    if (!table->verticalHeader()->isHidden()) wide += table->verticalHeader()->sizeHint().width();
    int stretched = 0, widest = 0;  // columns that share the width equally
    for (int c = 0; c < head->count(); ++c) {
        int column = std::max(head->sectionSizeHint(c), cells->sizeHintForColumn(c));
        if (head->sectionResizeMode(c) == QHeaderView::Stretch) {
            ++stretched;
            widest = std::max(widest, column);
            continue;
        }
        if (head->sectionResizeMode(c) == QHeaderView::Interactive) {
            column = std::max(column, table->columnWidth(c));
            table->setColumnWidth(c, column);
        }
        wide += column;
    }
    wide += stretched * widest;
    const int most = 2 * table->screen()->availableSize().width() / 3;
    table->setMinimumWidth(std::max(table->minimumWidth(), std::min(wide, most)));
}

void addcopytable(const QTableView* table, QWidget* parent, QBoxLayout* row) {
    QPushButton* const b = newbutton("copytable", "&Copy Table", parent, row);
    b->setAutoDefault(false);
    QObject::connect(b, &QPushButton::clicked, table,
                     [table] { QGuiApplication::clipboard()->setText(textof(table)); });
}
