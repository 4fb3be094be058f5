// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Numerical Interface": two tables of the model's numbers beside the main window. The
// operations are those of tools/numint; what changes the model is a step of its own.
#include "tools/numint.h"

#include <QApplication>
#include <QBoxLayout>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProxyStyle>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QTabBar>
#include <QTimer>
#include <filesystem>

#include "core/journal.h"
#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "edit/selection.h"
#include "files/saving.h"
#include "tools/numintpaste.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/numinttable.h"
#include "ui/record.h"
#include "ui/scriptcontrols.h"
#include "ui/scriptgrids.h"
#include "ui/steps.h"
#include "view/moddraw.h"

static const char* const csvfilter = "CSV (*.csv)|*.csv|All files (*.*)|*";
static const int followtime = 150;  // milliseconds until tables and views follow each other

namespace {

// What the tables must follow: counts, and what is selected.
struct modelsignature {
    std::vector<long> numbers;
    bool operator==(const modelsignature&) const = default;
    static modelsignature now() {
        modelsignature s;
        for (int tab = 0; tab < ngridtabs; ++tab) s.numbers.push_back(itemcount(tab));
        const long n = nodesel(0), e = long(elemsel(0));
        for (const long number : {n, n > 0 ? long(nodesel(1)) : 0, n > 0 ? long(nodesel(n)) : 0, e,
                                  e > 0 ? long(elemsel(1)) : 0, e > 0 ? long(elemsel(e)) : 0})
            s.numbers.push_back(number);
        return s;
    }
};

// The style of the program with little space beside the captions, so that both strips show all.
class narrowtabs : public QProxyStyle {
  public:
    explicit narrowtabs(QWidget* owner) : QProxyStyle(nameofstyle()) { setParent(owner); }
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override {
        return metric == PM_TabBarTabHSpace ? 10 : QProxyStyle::pixelMetric(metric, option, widget);
    }

  private:
    static QString nameofstyle() {  // that of the dark theme has none
        const QString name = QApplication::style()->name();
        return name.isEmpty() ? "Fusion" : name;
    }
};

// Where the strip is too narrow for the captions each stands shortened; its tip is the whole one.
class tabstrip : public QTabBar {
  public:
    explicit tabstrip(QWidget* parent) : QTabBar(parent) {
        setStyle(new narrowtabs(this));
        for (const char* caption : tabcaptions) {
            setTabToolTip(addTab(caption), caption);
            fullwidth += QTabBar::tabSizeHint(count() - 1).width();
        }
    }
    QSize sizeHint() const override { return {fullwidth, QTabBar::sizeHint().height()}; }

  protected:
    QSize tabSizeHint(int tab) const override {
        QSize size = QTabBar::tabSizeHint(tab);
        const auto wide = [this](const QString& s) { return fontMetrics().horizontalAdvance(s); };
        if (isshort()) size.rwidth() -= wide(tabText(tab)) - wide(shortcaptions[tab]);
        return size;
    }
    void initStyleOption(QStyleOptionTab* option, int tab) const override {
        QTabBar::initStyleOption(option, tab);
        if (isshort()) option->text = shortcaptions[tab];
    }

  private:
    static constexpr const char* shortcaptions[ngridtabs] = {
        "Nodes", "Elems", "Groups", "Constr", "Cases", "Nodal", "El. Loads", "Comb"};
    bool isshort() const { return count() == ngridtabs && width() < fullwidth; }
    int fullwidth = 0;  // pixels, of the tabs with their captions
};

class numintdialog : public QDialog {
  public:
    numintdialog() : QDialog(themainwindow), form(opennumint()), seen(modelsignature::now()) {
        setWindowTitle("Numerical Interface");
        setProperty(besidemain, true);
        setWindowFlag(Qt::WindowMinMaxButtonsHint);
        auto* const rows = new QVBoxLayout(this);
        buildtools(rows);
        auto* const tables = new QSplitter(this);
        for (const int nt : {0, 1}) tables->addWidget(buildtable(nt));
        rows->addWidget(tables, 1);
        message = newmessageline("Label1", this, rows);
        auto* const row = new QHBoxLayout;
        row->addStretch(1);
        newaction("CommandButton1", "Close", this, row, [this] { accept(); });
        rows->addLayout(row);
        wireright();
        addsteps();
        resize(std::min(1340, screen()->availableGeometry().width() - 16), 520);
        grid[1]->setFocus();
        follower = new QTimer(this);
        connect(follower, &QTimer::timeout, this,
                [this] { guarded([this] { follow(); }, tellfault); });
        follower->start(followtime);
        afterothers = afterstep;
        afterstep = [this](bool stale) {
            if (afterothers) afterothers(stale);
            stepped = true;
        };
    }
    ~numintdialog() override { afterstep = afterothers; }

  protected:
    // Enter belongs to the cells and the boxes.
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return;
        QDialog::keyPressEvent(event);
    }

  private:
    QWidget* buildtable(int nt) {
        auto* const side = new QWidget(this);
        auto* const rows = new QVBoxLayout(side);
        rows->setContentsMargins(0, 0, 0, 0);
        rows->addWidget(new QLabel(nt == 0 ? "Database" : "Modified Database", side));
        const QString number = QString("(%1)").arg(nt);
        tabs[nt] = new tabstrip(side);
        tabs[nt]->setObjectName("TabStrip1" + number);
        rows->addWidget(tabs[nt]);
        grid[nt] = new gridview(side);
        grid[nt]->setObjectName("Grid1" + number);
        model[nt] = new gridmodel(form, nt, grid[nt]);
        grid[nt]->setModel(model[nt]);
        grid[nt]->setcolwidth();
        rows->addWidget(grid[nt], 1);
        connect(tabs[nt], &QTabBar::currentChanged, this, guardedhandler([this, nt](int tab) {
                    choosetab(form, nt, tab);
                    reshow(nt);
                    if (nt == 1) filter->setText("");
                    showform();
                }));
        connect(grid[nt], &QWidget::customContextMenuRequested, this,
                [this, nt](const QPoint& at) { popup(nt, at); });
        connect(grid[nt]->selectionModel(), &QItemSelectionModel::selectionChanged, this,
                [this, nt] {
                    if (!following && !grid[nt]->selectedbyprogram) markedin = nt;
                });
        grid[nt]->mayedit = [this, nt] { return beginedit(nt); };
        grid[nt]->copy = [this, nt] { copy(nt); };
        grid[nt]->paste = [this, nt](const QString& text) { paste(nt, text); };
        grid[nt]->erase = [this, nt] { erase(nt); };
        grid[nt]->follow = [this] { followviews(); };
        grid[nt]->marked = [this, nt] {
            markedin = nt;
            seen = modelsignature::now();
            marktheviews();
        };
        return side;
    }

    QLineEdit* newbox(QBoxLayout* row, const char* caption, const char* name, const char* tip) {
        row->addWidget(new QLabel(caption, this));
        auto* const box = new QLineEdit(this);
        box->setObjectName(name);
        box->setToolTip(tip);
        box->setClearButtonEnabled(true);
        row->addWidget(box);
        return box;
    }
    void newtool(QBoxLayout* row, const char* name, const char* caption, const char* tip,
                 std::function<void()> operation) {
        newaction(name, caption, this, row, std::move(operation))->setToolTip(tip);
    }

    void buildtools(QBoxLayout* rows) {
        auto* const row = new QHBoxLayout;
        find = newbox(row, "Find", "Find", "A text or number; Enter goes to the next cell");
        filter = newbox(row, "Filter", "Filter",
                        "Shows the rows that hold the text; >5, <5, =5 or 2..5 compares the "
                        "numbers of the column that is chosen");
        sum = newbox(row, "Calculate", "Calculate",
                     "*1.1, /2, +250 or -3 on the numbers that are selected in one column");
        newtool(row, "Sort", "Sort", "By the chosen column: upwards, downwards, by number",
                [this] { sort(); });
        newtool(row, "Faults", "Next fault", "Goes to the next row that is marked",
                [this] { nextfault(); });
        newtool(row, "CsvOut", "CSV out...", "The rows on show as a file", [this] { csvout(); });
        newtool(row, "CsvIn", "CSV in...", "A file into the right table", [this] { csvin(); });
        rows->addLayout(row);
        connect(find, &QLineEdit::returnPressed, this, guardedhandler([this] { findtext(); }));
        connect(filter, &QLineEdit::returnPressed, this, guardedhandler([this] { filterrows(); }));
        connect(filter, &QLineEdit::textEdited, this, guardedhandler([this](const QString& text) {
                    if (text.isEmpty()) filterrows();
                }));
        connect(sum, &QLineEdit::returnPressed, this, guardedhandler([this] { apply(); }));
    }

    void wireright() {
        auto* const editing = new gridediting(form, this);
        // After the editor has gone: the question for a new item opens a window of its own.
        editing->ended = [this](int col, const QString& text) {
            const std::vector<long> rows = grid[1]->selectedrows();
            QMetaObject::invokeMethod(
                this, [this, rows, col, text] { commit(rows, col, text); }, Qt::QueuedConnection);
        };
        grid[1]->setItemDelegate(editing);
        grid[1]->fill = [this](int col, const QString& text) {
            commit(grid[1]->selectedrows(), col, text);
        };
        model[1]->typed = [this](int row, int col, const QString& text) {
            commit({row}, col, text);
        };
    }

    // Steps are taken from here as in the main window.
    void addsteps() {
        for (const auto& [keys, back] :
             {std::pair{"Ctrl+Z", true}, {"Ctrl+Y", false}, {"Ctrl+Shift+Z", false}})
            connect(new QShortcut(QKeySequence(keys), this), &QShortcut::activated, this,
                    guardedhandler([back = back] { stepby(1, back); }));
    }

    // --- changes --------------------------------------------------------------------------------

    // One door: a step with a name, and afterwards all that shows the model.
    template <typename Change>
    void change(const char* name, Change operation) {
        if (menulock) {
            form.message = "The model is in work; wait until that is done";
            return showform();
        }
        const step s(name);
        const hourglass wait;
        guarded(operation, [this](const runtimeerror& fault) {
            form.message = fault.what;
            form.changed = true;
            refill(form);
        });
        for (const int nt : {1, 0}) model[nt]->update();
        showform();
    }

    QString gridname(int nt) const { return controlname(grid[nt]); }
    // A script selects as the user did before it does what goes by that.
    void recordcells(int nt) {
        if (isrecording()) recordbefore(cellsline(grid[nt]));
    }

    void commit(const std::vector<long>& rows, int col, const QString& text) {
        if (rows.size() != 1) recordcells(1);
        const QString row = rows.size() == 1 ? QString::number(rows[0]) + " " : QString();
        const recordedline line((row.isEmpty() ? "fill " : "cell ") + gridname(1) + " " + row +
                                QString::number(col) + " " + quotedword(text));
        change("Numerical Interface: Edit", [&] { closedit(form, rows, col, text.toStdString()); });
    }

    void paste(int nt, const QString& text) {
        if (!rightonly(nt)) return;
        recordcells(1);
        const recordedline line("paste " + gridname(1) + " " + quotedword(text));
        change("Numerical Interface: Paste", [&] {
            ::pastecells(form, grid[1]->selectedrows(), firstcolumn(1), text.toStdString());
        });
    }

    void erase(int nt) {
        if (!rightonly(nt)) return;
        recordcells(1);
        const recordedline line("erase " + gridname(1));
        change("Numerical Interface: Delete", [&] { delitem(form, grid[1]->selectedrows()); });
        for (const int i : {1, 0}) reshow(i);
    }

    void apply() {
        const std::vector<int> columns = grid[1]->selectedcolumns();
        if (!showedit(form, 1, columns.empty() ? 0 : columns.front(),
                      columns.empty() ? 0 : columns.back()))
            return;
        recordcells(1);
        change("Numerical Interface: Calculate", [&] {
            calculate(form, grid[1]->selectedrows(), columns.front(), sum->text().toStdString());
        });
    }

    void csvin() {
        const filechoice file = theplatform().askfile({"Read CSV", csvfilter, 1, false, ""});
        if (!file.chosen) return;
        change("Numerical Interface: CSV in", [&] { readcsv(form, file.path); });
    }

    // --- the rest -------------------------------------------------------------------------------

    bool rightonly(int nt) { return nt == 1 || showedit(form, 0, 0, 0); }
    int column(int nt) const { return std::max(grid[nt]->currentIndex().column(), 0); }
    int firstcolumn(int nt) const {
        const std::vector<int> columns = grid[nt]->selectedcolumns();
        return columns.empty() ? column(nt) : columns.front();
    }

    bool beginedit(int nt) {
        const std::vector<int> columns = grid[nt]->selectedcolumns();
        if (columns.empty()) return nt == 1;
        return showedit(form, nt, columns.front(), columns.back());
    }

    void copy(int nt) {
        const std::string text =
            copycells(form, nt, grid[nt]->selectedrows(), grid[nt]->selectedcolumns());
        QApplication::clipboard()->setText(qtext(text));
    }

    void popup(int nt, const QPoint& at) {
        QMenu menu(this);
        menu.setObjectName("pop01");
        const QModelIndex under = grid[nt]->indexAt(at);
        if (under.isValid() && !grid[nt]->selectionModel()->isSelected(under))
            grid[nt]->setCurrentIndex(under);
        menu.addAction("Edit", [this, nt] { grid[nt]->editcurrent(); });
        menu.addAction("Copy", [this, nt] { copy(nt); });
        menu.addAction("Paste", [this, nt] { paste(nt, QApplication::clipboard()->text()); });
        menu.addAction("Delete", [this, nt] { erase(nt); });
        menu.exec(grid[nt]->viewport()->mapToGlobal(at));
    }

    void filterrows() {
        recordcells(1);
        filterby(form, 1, filter->text().toStdString(), column(1));
        reshow(1);
        showform();
    }

    void sort() {
        recordcells(1);
        sortby(form, 1, column(1));
        reshow(1);
        showform();
    }

    void goplace(const gridcell& place, const std::string& none) {
        recordcells(1);
        form.message = place.row < 0 ? none : "";
        if (place.row >= 0) {
            grid[1]->setCurrentIndex(model[1]->index(int(place.row), place.col));
            const std::string fault = rowfault(form.table[1].tab, form.table[1].itemof(place.row));
            if (!fault.empty()) form.message = fault;
        }
        showform();
    }
    gridcell current() const { return {grid[1]->currentIndex().row(), column(1)}; }
    void findtext() {
        goplace(findnext(form, 1, find->text().toStdString(), current()), "Not found");
    }
    void nextfault() { goplace(findfault(form, 1, current()), "No row is marked"); }

    void csvout() {
        const std::string name = std::string(tabcaptions[form.table[1].tab]) + ".csv";
        const std::string path = asktarget({"Write CSV", csvfilter, 1, true, name}, ".csv");
        if (path.empty()) return;
        guarded([&] { writecsv(form, 1, path); },
                [this](const runtimeerror& fault) { form.message = fault.what; });
        showform();
    }

    // Other rows or columns.
    void reshow(int nt) {
        const int col = column(nt);
        model[nt]->restart();
        grid[nt]->setcolwidth();
        grid[nt]->setCurrentIndex(model[nt]->index(0, std::min(col, model[nt]->columnCount() - 1)));
    }

    void showform() {
        message->setText(qtext(form.message));
        if (!form.changed) return;
        form.changed = false;
        redrawall();
        seen = modelsignature::now();
        stepped = false;
    }

    // --- in step with the views -----------------------------------------------------------------

    void follow() {
        if (QApplication::activeModalWidget() != nullptr || isstepopen()) return;
        if (markedin >= 0) marktheviews();
        followviews();
    }

    void followviews() {
        const modelsignature now = modelsignature::now();
        if (now == seen && !stepped) return;
        const bool other = !(now == seen);
        seen = now;
        stepped = false;
        for (const int nt : {1, 0}) other ? followmodel(nt) : model[nt]->update();
    }

    void marktheviews() {
        const int nt = std::exchange(markedin, -1);
        if (!modelsignature::now().numbers.empty() && !(modelsignature::now() == seen)) return;
        recordcells(nt);
        if (isrecording()) recordbefore("mark " + gridname(nt));
        selectitem(form, nt, grid[nt]->selectedrows());
        seen = modelsignature::now();
    }

    // The selection or the counts have changed outside.
    void followmodel(int nt) {
        numinttable& t = form.table[nt];
        if (t.picked) {
            t.picked = (t.tab == tabnodes ? nodesel(0) : int(elemsel(0))) != 0;
            Showdata(form, nt);
            return reshow(nt);
        }
        if (!t.all) Showdata(form, nt);
        setgrid(t);
        model[nt]->update();
        showselected(nt);
    }

    void showselected(int nt) {
        const numinttable& t = form.table[nt];
        if (t.tab != tabnodes && t.tab != tabelements) return;
        const std::vector<bool> marks = marksof(
            t.tab == tabnodes ? selectednodes() : selectedelements(), int(itemcount(t.tab)));
        QItemSelection rows;
        const int last = model[nt]->columnCount() - 1;
        for (int row = 0; row < int(t.rows()); ++row) {
            if (!marks[std::size_t(t.itemof(row))]) continue;
            const int first = row;
            while (row + 1 < int(t.rows()) && marks[std::size_t(t.itemof(row + 1))]) ++row;
            rows.append({model[nt]->index(first, 0), model[nt]->index(row, last)});
        }
        following = true;
        grid[nt]->selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect);
        if (!rows.isEmpty()) grid[nt]->scrollTo(rows.first().topLeft());
        following = false;
    }

    numintform form;
    QTabBar* tabs[2];
    gridview* grid[2];
    gridmodel* model[2];
    QLineEdit *find, *filter, *sum;
    QLabel* message;
    QTimer* follower;
    modelsignature seen;
    std::function<void(bool)> afterothers;
    bool stepped = false, following = false;
    int markedin = -1;  // the table whose rows the views have to mark
};

}  // namespace

QDialog* makenumint() {
    return new numintdialog;
}
