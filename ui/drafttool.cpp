// SPDX-License-Identifier: GPL-3.0-or-later
// The window that asks for the values of a drawing tool: radius, distance, copies and the like.
#include <QBoxLayout>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "core/numtext.h"
#include "core/units.h"
#include "tools/drafttools.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"

namespace {
QString unitof(const std::string& formula) {
    const std::string name = unitname(formula);
    return name == "L" ? "length" : name == "Deg" ? "degrees" : qtext(name);
}

class drafttooldialog : public QDialog {
  public:
    explicit drafttooldialog(drafttool& of) : QDialog(themainwindow), tool(of) {
        setWindowTitle(tool.caption);
        auto* const rows = new QVBoxLayout(this);
        auto* const tip = new QLabel(tool.tip, this);
        tip->setWordWrap(true);
        rows->addWidget(tip);
        auto* const grid = new QGridLayout;
        rows->addLayout(grid);
        for (std::size_t i = 0; i < tool.fields.size(); ++i) addfield(grid, int(i));
        enablefields();
        addokcancel(this, rows, [this] { take(); });
        setMinimumWidth(340);
    }

  private:
    void addfield(QGridLayout* grid, int i) {
        const draftfield& field = tool.fields[std::size_t(i)];
        auto* const label = new QLabel(field.caption, this);
        const QString name = QString("value%1").arg(i);
        QWidget* widget = nullptr;
        if (field.choices.empty()) {
            auto* const box = new QLineEdit(qtext(numbertext(field.value)), this);
            box->selectAll();  // typing replaces the value of the last use
            boxes.push_back(box);
            lists.push_back(nullptr);
            widget = box;
        } else {
            auto* const list = new QComboBox(this);
            for (const char* choice : field.choices) list->addItem(choice);
            list->setCurrentIndex(int(field.value));
            connect(list, &QComboBox::currentIndexChanged, this, [this] { enablefields(); });
            boxes.push_back(nullptr);
            lists.push_back(list);
            widget = list;
        }
        widget->setObjectName(name);
        label->setBuddy(widget);
        grid->addWidget(label, i, 0);
        grid->addWidget(widget, i, 1);
        grid->addWidget(new QLabel(unitof(field.unit), this), i, 2);
    }
    // Those that mean nothing with the entry chosen are grey.
    void enablefields() {
        unsigned chosen = 0;
        bool any = false;
        for (const QComboBox* list : lists)
            if (list != nullptr) {
                chosen = unsigned(list->currentIndex());
                any = true;
            }
        for (std::size_t i = 0; i < boxes.size(); ++i)
            if (boxes[i] != nullptr)
                boxes[i]->setEnabled(!any || (tool.fields[i].countswith >> chosen & 1u) != 0);
    }
    void take() {
        std::vector<std::string> texts;
        for (std::size_t i = 0; i < boxes.size(); ++i)
            texts.push_back(boxes[i] != nullptr ? boxes[i]->text().toStdString()
                                                : numbertext(lists[i]->currentIndex()));
        if (!setdraftvalues(tool, texts)) return;
        accept();
        startdraft(tool);
    }

    drafttool& tool;
    std::vector<QLineEdit*> boxes;
    std::vector<QComboBox*> lists;
};

}  // namespace

QDialog* makedrafttool() {
    return new drafttooldialog(valuedtool ? *valuedtool : drafttools().back());
}
