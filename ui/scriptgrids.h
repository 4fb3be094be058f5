// SPDX-License-Identifier: GPL-3.0-or-later
// What a script does to the cells of a grid of an open window, and the line that tells a selection
// there. Rows and columns count from 0 as they are shown.
#pragma once

#include <QString>
#include <QStringList>

class QTableView;

// "cells WINDOW GRID ROW COL [TOP LEFT BOTTOM RIGHT]...": the current cell and what is selected.
QString cellsline(const QTableView* grid);
// Selects by the numbers of such a line.
void markcells(const QString& form, const QString& name, const QStringList& numbers);

// The views mark what is selected, as they do a moment after it was.
void markviews(const QString& form, const QString& name);

void setcell(const QString& form, const QString& name, int row, int column, const QString& value);
// Into one column of all rows that are selected.
void fillcells(const QString& form, const QString& name, int column, const QString& value);
void pastecells(const QString& form, const QString& name, const QString& text);
void erasecells(const QString& form, const QString& name);  // the items of the selected rows
