// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Toolbars": which of them show, what stands on them and in which order, icons or texts
// and their size. The window behind shows at once what is chosen; Cancel gives back what was.
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QToolBar>

#include "ui/actions.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/toolbars.h"

static const char* const stylecaptions[] = {"Icons", "Text", "Text beside the icons",
                                            "Text under the icons"};
static const char* const linecaption = "--------";

static toolbarset presenttoolbars() {
    toolbarset set = rememberedtoolbars();
    for (toolbarplan& plan : set.bars)
        if (const auto* const bar = themainwindow->findChild<QToolBar*>(plan.name))
            plan.shown = !bar->isHidden();
    return set;
}

namespace {

class toolbardialog : public QDialog {
  public:
    toolbardialog() : QDialog(themainwindow), before(presenttoolbars()), set(before) {
        setWindowTitle("Toolbars");
        auto* const rows = new QVBoxLayout(this);
        auto* const columns = new QHBoxLayout;
        buildbars(columns);
        buildoffered(columns);
        buildchosen(columns);
        rows->addLayout(columns, 1);
        buildlook(rows);
        buildend(rows);
        for (const toolbarplan& plan : set.bars) bars->addItem(plan.caption);
        for (const offeredaction& a : all) addentry(offered, a.name, a.caption);
        bars->setCurrentRow(0);
        showset();
        resize(820, 460);
    }
    void reject() override {
        set = before;
        apply();
        QDialog::reject();
    }

  private:
    QListWidget* newlist(QBoxLayout* columns, const char* name, const char* caption,
                         QVBoxLayout*& rows) {
        rows = new QVBoxLayout;
        auto* const label = new QLabel(caption, this);
        auto* const list = new QListWidget(this);
        list->setObjectName(name);
        label->setBuddy(list);
        rows->addWidget(label);
        rows->addWidget(list, 1);
        columns->addLayout(rows, 1);
        return list;
    }
    QPushButton* newaction(QBoxLayout* row, const char* name, const char* caption,
                           std::function<void()> run) {
        QPushButton* const b = newbutton(name, caption, this, row);
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, guardedhandler([run](bool) { run(); }));
        return b;
    }

    void buildbars(QBoxLayout* columns) {
        QVBoxLayout* rows = nullptr;
        bars = newlist(columns, "List1", "&Toolbars", rows);
        shown = new QCheckBox("&Show this toolbar", this);
        shown->setObjectName("Check1");
        rows->addWidget(shown);
        connect(bars, &QListWidget::currentRowChanged, this,
                guardedhandler([this](int) { showbar(0); }));
        connect(shown, &QCheckBox::clicked, this, guardedhandler([this](bool on) {
                    plan().shown = on;
                    apply();
                }));
    }

    void buildoffered(QBoxLayout* columns) {
        QVBoxLayout* rows = nullptr;
        offered = newlist(columns, "List2", "All &actions", rows);
        filter = new QLineEdit(this);
        filter->setObjectName("Text1");
        filter->setPlaceholderText("Filter");
        filter->setClearButtonEnabled(true);
        rows->addWidget(filter);
        connect(filter, &QLineEdit::textChanged, this, [this](const QString& text) {
            for (int i = 0; i < offered->count(); ++i)
                offered->item(i)->setHidden(
                    !offered->item(i)->text().contains(text, Qt::CaseInsensitive));
        });
        connect(offered, &QListWidget::currentRowChanged, this, [this] { enable(); });
        connect(offered, &QListWidget::itemDoubleClicked, this,
                guardedhandler([this](QListWidgetItem*) { add(); }));
    }

    void buildchosen(QBoxLayout* columns) {
        auto* const between = new QVBoxLayout;
        between->addStretch(1);
        adding = newaction(between, "Command4", "A&dd >", [this] { add(); });
        line = newaction(between, "Command8", "Add &Line >", [this] { insert(""); });
        removing = newaction(between, "Command5", "< &Remove", [this] { remove(); });
        up = newaction(between, "Command6", "&Up", [this] { move(-1); });
        down = newaction(between, "Command7", "Do&wn", [this] { move(1); });
        between->addStretch(1);
        columns->addLayout(between);
        QVBoxLayout* rows = nullptr;
        chosen = newlist(columns, "List3", "&On the toolbar", rows);
        connect(chosen, &QListWidget::currentRowChanged, this, [this] { enable(); });
        connect(chosen, &QListWidget::itemDoubleClicked, this,
                guardedhandler([this](QListWidgetItem*) { remove(); }));
    }

    void buildlook(QBoxLayout* rows) {
        auto* const row = new QHBoxLayout;
        const auto newchoice = [&](const char* name, const char* caption) {
            auto* const list = new QComboBox(this);
            list->setObjectName(name);
            auto* const label = new QLabel(caption, this);
            label->setBuddy(list);
            row->addWidget(label);
            row->addWidget(list);
            return list;
        };
        style = newchoice("Combo1", "&Buttons show");
        size = newchoice("Combo2", "Si&ze of the icons");
        for (const char* caption : stylecaptions) style->addItem(caption);
        for (const int pixels : toolbarsizes) size->addItem(QString::number(pixels));
        row->addStretch(1);
        rows->addLayout(row);
        connect(style, &QComboBox::activated, this, guardedhandler([this](int i) {
                    set.style = Qt::ToolButtonStyle(i);
                    apply();
                }));
        connect(size, &QComboBox::activated, this, guardedhandler([this](int i) {
                    set.size = toolbarsizes[i];
                    apply();
                }));
    }

    void buildend(QBoxLayout* rows) {
        auto* const row = new QHBoxLayout;
        newaction(row, "Command3", "As deli&vered", [this] {
            set = deliveredtoolbars();
            showset();
            apply();
        });
        row->addStretch(1);
        QPushButton* const ok = newbutton("Command1", "OK", this, row);
        ok->setDefault(true);
        connect(ok, &QPushButton::clicked, this, guardedhandler([this](bool) {
                    remembertoolbars(set);
                    accept();
                }));
        connect(newbutton("Command2", "Cancel", this, row), &QPushButton::clicked, this,
                &QDialog::reject);
        rows->addLayout(row);
    }

    toolbarplan& plan() { return set.bars[std::size_t(std::max(bars->currentRow(), 0))]; }

    void addentry(QListWidget* list, const QString& name, const QString& caption) {
        auto* const entry = new QListWidgetItem(caption, list);
        entry->setData(Qt::UserRole, name);
        entry->setSizeHint(QSize(0, fontMetrics().height() + 10));  // with an icon or without
        const action* const row = findaction(name.toStdString());
        if (row && row->item) entry->setIcon(row->item->icon());
    }

    void showset() {
        style->setCurrentIndex(set.style);
        size->setCurrentText(QString::number(set.size));
        showbar(0);
    }

    void showbar(int at) {
        chosen->clear();
        for (const QString& name : plan().actions) {
            const auto found = std::ranges::find(all, name, &offeredaction::name);
            addentry(chosen, name, found == all.end() ? QString(linecaption) : found->caption);
        }
        chosen->setCurrentRow(std::min(at, chosen->count() - 1));
        shown->setChecked(plan().shown);
        enable();
    }

    QString offeredname() const {
        const QListWidgetItem* const entry = offered->currentItem();
        return entry && !entry->isHidden() ? entry->data(Qt::UserRole).toString() : QString();
    }

    void enable() {
        const int at = chosen->currentRow();
        const QString name = offeredname();
        adding->setEnabled(!name.isEmpty() && !plan().actions.contains(name));
        removing->setEnabled(at >= 0);
        up->setEnabled(at > 0);
        down->setEnabled(at >= 0 && at + 1 < chosen->count());
    }

    void add() {
        const QString name = offeredname();
        if (!name.isEmpty() && !plan().actions.contains(name)) insert(name);
    }
    void insert(const QString& name) {
        const int at = chosen->currentRow() + 1;
        plan().actions.insert(at, name);
        showbar(at);
        apply();
    }
    void remove() {
        const int at = chosen->currentRow();
        if (at < 0) return;
        plan().actions.removeAt(at);
        showbar(at);
        apply();
    }
    void move(int by) {
        const int at = chosen->currentRow();
        plan().actions.move(at, at + by);
        showbar(at + by);
        apply();
    }
    void apply() { showtoolbars(themainwindow, set); }

    const toolbarset before;
    toolbarset set;
    const std::vector<offeredaction> all = offeredactions();
    QListWidget *bars, *offered, *chosen;
    QCheckBox* shown;
    QLineEdit* filter;
    QPushButton *adding, *line, *removing, *up, *down;
    QComboBox *style, *size;
};

}  // namespace

QDialog* maketoptions() {
    return new toolbardialog;
}
