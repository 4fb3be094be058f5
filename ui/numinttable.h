// SPDX-License-Identifier: GPL-3.0-or-later
// A table of the Numerical Interface: a model that reads the cells where they stand, a view with
// the keys of a spreadsheet, and the editors that lie over a cell.
#pragma once

#include <QAbstractTableModel>
#include <QStyledItemDelegate>
#include <QTableView>
#include <functional>

#include "tools/numint.h"

class gridmodel : public QAbstractTableModel {
  public:
    gridmodel(const numintform& f, int number, QObject* parent);
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation along, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    void restart();  // another tab, order or choice of rows
    void update();   // other values, and rows that came or went at the end
    // What a cell is given by a program.
    std::function<void(int row, int col, const QString& text)> typed;

  private:
    const numinttable& table() const { return form.table[nt]; }
    const numintform& form;
    int nt, count, columns;  // rows without the spare one, as the view knows them
};

class gridview : public QTableView {
  public:
    explicit gridview(QWidget* parent);
    // Rows and columns of the selection, rising.
    std::vector<long> selectedrows() const;
    std::vector<int> selectedcolumns() const;
    void setcolwidth();
    void editcurrent() { edit(currentIndex(), EditKeyPressed, nullptr); }

    std::function<bool()> mayedit;  // asked before an editor opens
    std::function<void()> copy, erase;
    std::function<void(const QString& text)> paste;
    std::function<void(int col, const QString& text)> fill;  // the selected rows
    std::function<void()> marked;    // the views mark what is selected, at once
    std::function<void()> follow;    // the table shows the model as it is, at once
    bool selectedbyprogram = false;  // the views do not follow a selection made meanwhile

  protected:
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
};

// A text box or a list over the cell.
class gridediting : public QStyledItemDelegate {
  public:
    gridediting(const numintform& f, QObject* parent) : QStyledItemDelegate(parent), form(f) {}
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex&) const override;
    std::function<void(int col, const QString& text)> ended;

  private:
    const numintform& form;
};
