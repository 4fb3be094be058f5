// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Values along a Cut": shows the form of post/cut beside the views, its curves as a
// plot and its points as a table.
#include <QAbstractTableModel>
#include <QApplication>
#include <QBoxLayout>
#include <QClipboard>
#include <QComboBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <array>

#include "post/cut.h"
#include "post/shapes.h"
#include "ui/controls.h"
#include "ui/curveplot.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"

namespace {

// The points of all curves, row by row.
class cutrows : public QAbstractTableModel {
  public:
    using QAbstractTableModel::QAbstractTableModel;
    void follow() {
        beginResetModel();
        first.assign(1, 0);
        for (const cutcurve& curve : cutshown) first.push_back(first.back() + int(curve.size()));
        endResetModel();
    }
    int rowCount(const QModelIndex& = {}) const override { return first.back(); }
    int columnCount(const QModelIndex& = {}) const override { return 7; }
    QVariant data(const QModelIndex& at, int role) const override {
        if (role == Qt::TextAlignmentRole) return int(Qt::AlignRight | Qt::AlignVCenter);
        if (role != Qt::DisplayRole || at.row() >= rowCount()) return {};
        const auto above = std::ranges::upper_bound(first, at.row());
        const std::size_t curve = std::size_t(above - first.begin()) - 1;
        const cutpoint& p = cutshown[curve][std::size_t(at.row() - first[curve])];
        const double numbers[] = {double(curve + 1), p.distance,  p.at[0], p.at[1],
                                  p.at[2],           double(p.e), p.value};
        return QString::number(numbers[at.column()], 'g', 6);
    }
    QVariant headerData(int section, Qt::Orientation along, int role) const override {
        static const char* const captions[] = {"Curve", "Distance", "x",    "y",
                                               "z",     "Element",  "Value"};
        if (role != Qt::DisplayRole || along != Qt::Horizontal) return {};
        return QString(captions[section]);
    }

  private:
    std::vector<int> first = {0};  // row of each curve, and of what would come next
};

class cutwindow : public sidedialog {
  public:
    cutwindow() : sidedialog(themainwindow) {
        setWindowTitle("Values along a Cut");
        setProperty(besidemain, true);
        auto* const all = new QVBoxLayout(this);
        build(all);
        plot = new curveplot(this);
        plot->setObjectName("cutplot");
        all->addWidget(plot, 2);
        table = new QTableView(this);
        table->setObjectName("cuttable");
        rows = new cutrows(this);
        table->setModel(rows);
        table->verticalHeader()->hide();
        table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
        table->setMinimumHeight(120);
        widentable(table);
        all->addWidget(table, 1);
        message = newmessageline("message", this, all);
        buildbuttons(all);
        showcut();
        showform();
        computecut();
        showform();
        resultschanged = [this] { compute(); };
        connect(this, &QDialog::finished, this, guardedhandler([](int) {
                    resultschanged = nullptr;
                    endcut();
                }));
        resize(520, 620);
    }
    ~cutwindow() override { resultschanged = nullptr; }

  private:
    QLineEdit* addfield(const char* name, QGridLayout* grid, int row, int column) {
        auto* const field = new QLineEdit(this);
        field->setObjectName(name);
        grid->addWidget(field, row, column);
        connect(field, &QLineEdit::returnPressed, this, guardedhandler([this] {
                    readform();
                    compute();
                }));
        return field;
    }
    void build(QBoxLayout* all) {
        auto* const grid = new QGridLayout;
        kind = new QComboBox(this);
        kind->setObjectName("cutkind");
        kind->addItems({"Plane X", "Plane Y", "Plane Z", "Line"});
        grid->addWidget(kind, 0, 0);
        positionlabel = new QLabel("at", this);
        grid->addWidget(positionlabel, 0, 1);
        position = addfield("cutposition", grid, 0, 2);
        static const char* const names[] = {"cutfromx", "cutfromy", "cutfromz",
                                            "cuttox",   "cuttoy",   "cuttoz"};
        for (int end : {0, 1}) {
            captions[std::size_t(end)] = new QLabel(end ? "to x, y, z" : "from x, y, z", this);
            grid->addWidget(captions[std::size_t(end)], 1 + end, 0);
            for (int k = 0; k < 3; ++k)
                ends[std::size_t(3 * end + k)] = addfield(names[3 * end + k], grid, 1 + end, 1 + k);
        }
        all->addLayout(grid);
        connect(kind, &QComboBox::activated, this, guardedhandler([this](int i) {
                    readform();
                    thecut.kind = i;
                    thecut.position.clear();
                    showcut();
                    compute();
                }));
    }
    void buildbuttons(QBoxLayout* all) {
        auto* const row = new QHBoxLayout;
        all->addLayout(row);
        newaction("cutselection", "From Selection", this, row, [this] {
            readform();
            cutfromselection();
            showform();
        });
        newaction("cutcompute", "Show", this, row, [this] {
            readform();
            compute();
        });
        newaction("cutcopy", "Copy Table", this, row, [] {
            QApplication::clipboard()->setText(QString::fromStdString(cuttable('\t')));
        });
        newaction("cutsave", "CSV...", this, row, [this] {
            savecut();
            showform();
        });
        newaction("cutready", "Ready", this, row, [this] { accept(); });
    }
    void readform() {
        thecut.position = position->text().toStdString();
        for (std::size_t i = 0; i < 6; ++i)
            (i < 3 ? thecut.from[i] : thecut.to[i - 3]) = ends[i]->text().toStdString();
    }
    void compute() {
        computecut();
        showform();
    }
    void showform() {
        kind->setCurrentIndex(thecut.kind);
        const bool line = thecut.kind == 3;
        showtext(position, thecut.position);
        position->setVisible(!line);
        positionlabel->setVisible(!line);
        for (QLabel* caption : captions) caption->setVisible(line);
        for (std::size_t i = 0; i < 6; ++i) {
            showtext(ends[i], i < 3 ? thecut.from[i] : thecut.to[i - 3]);
            ends[i]->setVisible(line);
        }
        message->setText(qtext(thecut.message));
        rows->follow();
        std::vector<std::vector<QPointF>> curves;
        for (const cutcurve& curve : cutshown) {
            curves.emplace_back();
            for (const cutpoint& p : curve) curves.back().emplace_back(p.distance, p.value);
        }
        plot->show(std::move(curves), "Distance along the cut", qtext(cutquantity()));
    }

    QComboBox* kind;
    QLabel* positionlabel;
    QLineEdit* position;
    std::array<QLabel*, 2> captions{};
    std::array<QLineEdit*, 6> ends{};
    curveplot* plot;
    QTableView* table;
    cutrows* rows;
    QLabel* message;
};

}  // namespace

QDialog* makecutwindow() {
    return new cutwindow;
}
