// SPDX-License-Identifier: GPL-3.0-or-later
// The table of the Numerical Interface.
#include "ui/numinttable.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPalette>
#include <QTimer>

#include "core/journal.h"
#include "core/units.h"
#include "ui/controls.h"

// --- model --------------------------------------------------------------------------------------

gridmodel::gridmodel(const numintform& f, int number, QObject* parent)
    : QAbstractTableModel(parent), form(f), nt(number) {
    count = int(table().rows());
    columns = int(table().columns.size());
}

int gridmodel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count + 1;
}

int gridmodel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns;
}

static QColor markcolor() {
    const QColor base = QApplication::palette().color(QPalette::Base), red(220, 40, 40);
    const double share = 0.25;
    const auto mix = [&](int a, int b) { return int(a * (1 - share) + b * share); };
    return {mix(base.red(), red.red()), mix(base.green(), red.green()),
            mix(base.blue(), red.blue())};
}

QVariant gridmodel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.column() >= int(table().columns.size())) return {};
    const gridcolumn& c = table().columns[std::size_t(index.column())];
    const long item = table().itemof(index.row());
    switch (role) {
        case Qt::DisplayRole:
            if (item != 0) return qtext(showcell(table().tab, c, item));
            return index.row() == count && index.column() == 0 ? tr("New") : QVariant();
        case Qt::EditRole:
            return qtext(celltext(table().tab, c, item));
        case Qt::TextAlignmentRole: {
            const bool texts = c.list != labels::none || (c.about && c.about->kind == kinds::text);
            return int((texts ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
        }
        case Qt::BackgroundRole:
            return rowfault(table().tab, item).empty() ? QVariant() : markcolor();
        case Qt::ToolTipRole:
            return qtext(rowfault(table().tab, item));
        default:
            return {};
    }
}

QVariant gridmodel::headerData(int section, Qt::Orientation along, int role) const {
    if (along == Qt::Vertical) {
        const std::string fault = rowfault(table().tab, table().itemof(section));
        if (role == Qt::ToolTipRole) return qtext(fault);
        if (role == Qt::DisplayRole) return QString(fault.empty() ? " " : "!");
        return {};
    }
    if (role != Qt::DisplayRole || section >= int(table().columns.size())) return {};
    const gridcolumn& c = table().columns[std::size_t(section)];
    const QString caption = qtext(c.caption), unit = qtext(captionunit(c.unit));
    const bool sorted = section == table().sortcolumn;
    const QString mark = !sorted ? "" : table().descending ? QString(" ▼") : QString(" ▲");
    return unit.isEmpty() ? caption + mark : caption + mark + "\n" + unit;
}

Qt::ItemFlags gridmodel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags shown = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    if (nt == 0 || index.column() >= int(table().columns.size())) return shown;
    const bool fixed = table().columns[std::size_t(index.column())].isfixed();
    return fixed ? shown : shown | Qt::ItemIsEditable;
}

bool gridmodel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::EditRole || !typed) return false;
    typed(index.row(), index.column(), value.toString());
    return true;
}

void gridmodel::restart() {
    beginResetModel();
    count = int(table().rows());
    columns = int(table().columns.size());
    endResetModel();
}

void gridmodel::update() {
    const int rows = int(table().rows());
    if (columns != int(table().columns.size())) return restart();
    if (rows > count) {
        beginInsertRows({}, count, rows - 1);
        count = rows;
        endInsertRows();
    } else if (rows < count) {
        beginRemoveRows({}, rows, count - 1);
        count = rows;
        endRemoveRows();
    }
    emit dataChanged(index(0, 0), index(count, columns - 1));
    emit headerDataChanged(Qt::Horizontal, 0, columns - 1);
}

// --- view ---------------------------------------------------------------------------------------

gridview::gridview(QWidget* parent) : QTableView(parent) {
    const int sampled = 50;  // rows whose cells a column is measured by
    setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
    setSelectionMode(ExtendedSelection);
    setContextMenuPolicy(Qt::CustomContextMenu);
    setWordWrap(false);
    setTabKeyNavigation(true);
    horizontalHeader()->setResizeContentsPrecision(sampled);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    verticalHeader()->setFixedWidth(fontMetrics().horizontalAdvance("!!!"));
    verticalHeader()->setDefaultAlignment(Qt::AlignCenter);
}

void gridview::setcolwidth() {
    const int least = fontMetrics().horizontalAdvance("0000000");
    resizeColumnsToContents();
    for (int c = 0; c < model()->columnCount(); ++c)
        if (columnWidth(c) < least) setColumnWidth(c, least);
}

std::vector<long> gridview::selectedrows() const {
    std::vector<bool> marks(std::size_t(model()->rowCount()), false);
    for (const QItemSelectionRange& range : selectionModel()->selection())
        for (int row = range.top(); row <= range.bottom(); ++row) marks[std::size_t(row)] = true;
    std::vector<long> rows;
    for (std::size_t row = 0; row < marks.size(); ++row)
        if (marks[row]) rows.push_back(long(row));
    return rows;
}

std::vector<int> gridview::selectedcolumns() const {
    std::vector<bool> marks(std::size_t(model()->columnCount()), false);
    for (const QItemSelectionRange& range : selectionModel()->selection())
        for (int c = range.left(); c <= range.right(); ++c) marks[std::size_t(c)] = true;
    std::vector<int> columns;
    for (std::size_t c = 0; c < marks.size(); ++c)
        if (marks[c]) columns.push_back(int(c));
    return columns;
}

bool gridview::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
    const bool begins = trigger != NoEditTriggers && (editTriggers() & trigger) != 0;
    const bool byhand = begins || trigger == AllEditTriggers;
    if (byhand && state() != EditingState && index.isValid() && mayedit && !mayedit()) return false;
    return QTableView::edit(index, trigger, event);
}

// With Ctrl too the cell that the keys go to is the selected one, as in a spreadsheet: what is
// pasted goes where the user looks.
QItemSelectionModel::SelectionFlags gridview::selectionCommand(const QModelIndex& index,
                                                               const QEvent* event) const {
    if (event != nullptr && event->type() == QEvent::KeyPress) {
        const auto* const key = static_cast<const QKeyEvent*>(event);
        if (key->modifiers() == Qt::ControlModifier && key->key() != Qt::Key_Space)
            return QItemSelectionModel::ClearAndSelect;
    }
    return QTableView::selectionCommand(index, event);
}

void gridview::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) return copy();
    if (event->matches(QKeySequence::Paste)) return paste(QApplication::clipboard()->text());
    if (event->key() == Qt::Key_Delete) return erase();
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        edit(currentIndex(), EditKeyPressed, event);
        return;
    }
    QTableView::keyPressEvent(event);
    nothingchanged();  // what was typed comes later, at the end of the edit
}

void gridview::mousePressEvent(QMouseEvent* event) {
    QTableView::mousePressEvent(event);
    nothingchanged();
}

// --- editors ------------------------------------------------------------------------------------

QWidget* gridediting::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                   const QModelIndex& index) const {
    const std::vector<std::string> entries = loadcombo(form.table[1], index.column());
    if (entries.empty()) {
        auto* const box = new QLineEdit(parent);
        box->setObjectName("Text1");
        box->setFrame(false);
        return box;
    }
    auto* const list = new QComboBox(parent);
    list->setObjectName("Combo1");
    showlist(list, entries, -1);
    auto* const self = const_cast<gridediting*>(this);
    connect(list, &QComboBox::activated, self, [self, list] {
        emit self->commitData(list);
        emit self->closeEditor(list);
    });
    QTimer::singleShot(0, list, &QComboBox::showPopup);
    return list;
}

void gridediting::setEditorData(QWidget* editor, const QModelIndex& index) const {
    const QString text = index.data(Qt::EditRole).toString();
    if (auto* const list = qobject_cast<QComboBox*>(editor)) {
        list->setCurrentIndex(list->findText(text));
    } else if (auto* const box = qobject_cast<QLineEdit*>(editor)) {
        box->setText(text);
        box->selectAll();
    }
}

// An editor that closes with the text it was opened with has changed nothing.
void gridediting::setModelData(QWidget* editor, QAbstractItemModel*,
                               const QModelIndex& index) const {
    if (const auto* list = qobject_cast<const QComboBox*>(editor)) {
        if (list->currentIndex() >= 0) ended(index.column(), list->currentText());
    } else if (const auto* box = qobject_cast<const QLineEdit*>(editor)) {
        if (box->isModified()) ended(index.column(), box->text());
    }
}
