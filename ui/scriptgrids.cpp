// SPDX-License-Identifier: GPL-3.0-or-later
// Grids under a script.
#include "ui/scriptgrids.h"

#include <QItemSelection>
#include <QPointer>

#include "ui/numinttable.h"
#include "ui/scriptcontrols.h"

static gridview* gridof(const QString& form, const QString& name) {
    auto* const grid = dynamic_cast<gridview*>(findkind<QTableView>(form, name, "grid"));
    if (grid == nullptr) refuse(name + " of " + form + " takes no numbers");
    return grid;
}

// What a program does to a grid meets it as a user finds it: it has followed the model, and marks
// nothing in the views by itself.
namespace {
struct programhand {
    explicit programhand(gridview* g) : grid(g) {
        if (grid && grid->follow) grid->follow();
        if (grid) grid->selectedbyprogram = true;
    }
    ~programhand() {
        if (grid) grid->selectedbyprogram = false;
    }
    programhand(const programhand&) = delete;
    programhand& operator=(const programhand&) = delete;
    const QPointer<gridview> grid;
};
}  // namespace

QString cellsline(const QTableView* grid) {
    QStringList words = {"cells", controlname(grid)};
    const QModelIndex at = grid->currentIndex();
    words << QString::number(at.row()) << QString::number(at.column());
    for (const QItemSelectionRange& r : grid->selectionModel()->selection())
        for (const int n : {r.top(), r.left(), r.bottom(), r.right()}) words << QString::number(n);
    return words.join(' ');
}

static int numberat(const QStringList& numbers, int i) {
    bool good = false;
    const int n = numbers[i].toInt(&good);
    if (!good) refuse("\"" + numbers[i] + "\" is no row or column");
    return n;
}

static QModelIndex cellof(const QTableView* grid, int row, int column) {
    const QModelIndex cell = grid->model()->index(row, column);
    if (!cell.isValid())
        refuse(QString("%1 has no cell %2, %3").arg(grid->objectName()).arg(row).arg(column));
    return cell;
}

void markcells(const QString& form, const QString& name, const QStringList& numbers) {
    auto* const grid = gridof(form, name);
    const programhand hand(grid);
    if (numbers.size() % 4 != 2) refuse("cells takes a cell, then ranges of four numbers");
    QItemSelection chosen;
    for (int i = 2; i < numbers.size(); i += 4)
        chosen.select(cellof(grid, numberat(numbers, i), numberat(numbers, i + 1)),
                      cellof(grid, numberat(numbers, i + 2), numberat(numbers, i + 3)));
    const int row = numberat(numbers, 0), column = numberat(numbers, 1);
    grid->selectionModel()->setCurrentIndex(grid->model()->index(row, column),
                                            QItemSelectionModel::NoUpdate);
    grid->selectionModel()->select(chosen, QItemSelectionModel::ClearAndSelect);
}

void markviews(const QString& form, const QString& name) {
    gridof(form, name)->marked();
}

void setcell(const QString& form, const QString& name, int row, int column, const QString& value) {
    auto* const grid = findkind<QTableView>(form, name, "grid");
    const programhand hand(dynamic_cast<gridview*>(grid));
    const QModelIndex cell = cellof(grid, row, column);
    if (!(cell.flags() & Qt::ItemIsEditable))
        refuse(QString("cell %1, %2 of %3 is not typed over").arg(row).arg(column).arg(name));
    grid->setCurrentIndex(cell);
    grid->model()->setData(cell, value, Qt::EditRole);
}

void fillcells(const QString& form, const QString& name, int column, const QString& value) {
    auto* const grid = gridof(form, name);
    if (!grid->fill) refuse(name + " is not typed over");
    grid->fill(column, value);
}

void pastecells(const QString& form, const QString& name, const QString& text) {
    gridof(form, name)->paste(text);
}

void erasecells(const QString& form, const QString& name) {
    gridof(form, name)->erase();
}
