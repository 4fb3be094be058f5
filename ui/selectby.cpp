// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Select and find": by number, group, type, place, and what hangs together.
#include <QBoxLayout>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>

#include "core/catalogue.h"
#include "core/labels.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/units.h"
#include "edit/selectby.h"
#include "edit/selectionsums.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"

namespace {

class selectbydialog : public sidedialog {
  public:
    selectbydialog() : sidedialog(themainwindow) {
        setWindowTitle("Select and find");
        setProperty(besidemain, true);
        auto* const rows = new QVBoxLayout(this);
        auto* const form = new QFormLayout;
        rows->addLayout(form);
        kind = addlist(form, "Combo1", "&Items", {"Nodes", "Elements"});
        kind->setCurrentIndex(selectitem() == selectelements ? 1 : 0);
        way = addlist(form, "Combo2", "&By",
                      {"Number", "Group", "Type", "Coordinate", "Connected face", "Same normal",
                       "Joined part"});
        pages = new QStackedWidget(this);
        rows->addWidget(pages);
        buildpages();
        addbuttons(rows);
        message = newmessageline("message", this, rows);
        connect(way, &QComboBox::currentIndexChanged, this, [this](int i) { showpage(i); });
        connect(numbers, &QLineEdit::returnPressed, this, guardedhandler([this] { find(); }));
        numbers->setFocus();
    }

  private:
    QComboBox* addlist(QFormLayout* form, const char* name, const char* caption,
                       const QStringList& entries) {
        auto* const list = new QComboBox(this);
        list->setObjectName(name);
        list->addItems(entries);
        form->addRow(caption, list);
        return list;
    }
    QLineEdit* addfield(QFormLayout* form, const char* name, const char* caption,
                        const char* text) {
        auto* const box = new QLineEdit(text, this);
        box->setObjectName(name);
        form->addRow(caption, box);
        return box;
    }
    QFormLayout* addpage() {
        auto* const page = new QWidget(pages);
        pages->addWidget(page);
        auto* const form = new QFormLayout(page);
        form->setContentsMargins(0, 0, 0, 0);
        return form;
    }
    // A page for each way; those from the selection share the last.
    void buildpages() {
        numbers = addfield(addpage(), "Text1", "&Numbers", "");
        numbers->setPlaceholderText("1-20, 35, 40-60/5");
        numbers->setToolTip("Numbers, ranges, ranges with a step, or names");
        group = addlist(addpage(), "Combo3", "&Group", {});
        for (int g = 1; g <= ngroups(); ++g) group->addItem(qname(groupname(g)));
        type = addlist(addpage(), "Combo4", "&Type", {});
        for (int t = 1; t < neltypes; ++t)
            if (eltypnodes(t) != 0) type->addItem(qname(eltypname(t)), t);
        QFormLayout* const place = addpage();
        axis = addlist(place, "Combo5", "A&xis", {"x", "y", "z"});
        low = addfield(place, "Text2", "F&rom", "0");
        high = addfield(place, "Text3", "T&o", "0");
        QFormLayout* const together = addpage();
        angle = addfield(together, "Text4", "Ang&le between normals", "20");
        together->addRow(
            new QLabel("From the elements that are selected,\n"
                       "or those at the nodes that are.",
                       this));
    }
    void addbuttons(QBoxLayout* rows) {
        auto* const first = new QHBoxLayout;
        newaction("Select", "&Select", this, first, [this] { select(picks::instead); });
        newaction("Add", "&Add", this, first, [this] { select(picks::add); });
        newaction("Takeaway", "Ta&ke away", this, first, [this] { select(picks::takeaway); });
        rows->addLayout(first);
        auto* const second = new QHBoxLayout;
        newaction("Find", "&Find", this, second, [this] {
            find();
        })->setToolTip("Selects it and brings it into the middle of the view (Enter)");
        newaction("Show", "S&how selected", this, second, [this] { show(zoomtoselection()); });
        QPushButton* const ready = newbutton("Ready", "Close", this, second);
        ready->setAutoDefault(false);
        connect(ready, &QPushButton::clicked, this, &QDialog::accept);
        rows->addLayout(second);
    }
    void showpage(int i) { pages->setCurrentIndex(std::min(i, pages->count() - 1)); }

    // False with the message set where a field holds no number.
    bool readvaluein(const QLineEdit* box, const char* formula, double& value) {
        const std::string text = box->text().toStdString();
        if (readvalue(text, formula, value)) return true;
        message->setText(qtext(valuefault(text, formula)));
        return false;
    }
    bool readquery(selectquery& q) {
        q.ofnodes = kind->currentIndex() == 0;
        q.way = selectways(way->currentIndex());
        q.numbers = numbers->text().toStdString();
        q.group = group->currentIndex() + 1;
        q.type = type->currentData().toInt();
        q.axis = axis->currentIndex();
        if (q.way == selectways::coordinate)
            return readvaluein(low, "L", q.low) && readvaluein(high, "L", q.high);
        return q.way < selectways::face || readvaluein(angle, "Deg", q.angle);
    }
    bool select(picks mode) {
        selectquery q;
        message->clear();
        if (!readquery(q)) return false;
        const selectfound found = findby(q);
        if (!found.fault.empty()) {
            message->setText(qname(found.fault));
            return false;
        }
        if (found.items.empty()) message->setText("Nothing has these properties");
        selectlist(q.ofnodes, found.items, mode);
        if (!found.items.empty()) show(true);
        theplatform().refresh();
        return !found.items.empty();
    }
    void find() {
        if (select(picks::instead)) show(zoomtoselection());
    }
    void show(bool any) {
        const std::string counts = selectioncounts();
        message->setText(!any             ? QString("Nothing is selected")
                         : counts.empty() ? QString("Nothing is selected now")
                                          : qtext(counts));
    }

    QComboBox *kind, *way, *group = nullptr, *type = nullptr, *axis = nullptr;
    QStackedWidget* pages;
    QLineEdit *numbers = nullptr, *low = nullptr, *high = nullptr, *angle = nullptr;
    QLabel* message = nullptr;
};

}  // namespace

QDialog* makeselectby() {
    return new selectbydialog;
}
