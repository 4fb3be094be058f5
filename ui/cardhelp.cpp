// SPDX-License-Identifier: GPL-3.0-or-later
// The help by cards. State: the type whose card the next window opens at.
#include "ui/cardhelp.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QDialog>
#include <QFormLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>

#include "core/catalogue.h"
#include "core/platform.h"
#include "edit/commands.h"
#include "tools/elementcard.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/elementpicture.h"
#include "ui/mainwindow.h"

static int wanted = 0;

namespace {
class cardhelp : public QDialog {
  public:
    cardhelp() : QDialog(themainwindow) {
        setWindowTitle(tr("Help"));
        auto* const rows = new QVBoxLayout(this);
        auto* const pages = new QTabWidget(this);
        pages->setObjectName("pages");
        auto* const list = new QListWidget(pages);
        list->setObjectName("List1");
        for (const char* line : commandhelp) list->addItem(line);
        list->setMinimumSize(560, list->sizeHintForRow(0) * (list->count() + 1));
        pages->addTab(list, "Direct commands");
        pages->addTab(makecard(), "Element types");
        rows->addWidget(pages);
        auto* const row = new QHBoxLayout;
        row->addStretch(1);
        connect(newbutton("Command1", "OK", this, row), &QPushButton::clicked, this,
                &QDialog::accept);
        rows->addLayout(row);
        const int first = 1;  // of the catalogue
        types->setCurrentIndex(wanted > 0 ? wanted - first : typebeam - first);
        if (wanted > 0) pages->setCurrentIndex(1);
        wanted = 0;
        showcard();
    }

  private:
    QWidget* makecard() {
        auto* const page = new QWidget(this);
        auto* const rows = new QVBoxLayout(page);
        types = new QComboBox(page);
        types->setObjectName("Combo1");
        for (int t = 1; t < neltypes; ++t) types->addItem(qtext(eltypname(t)));
        rows->addWidget(types);
        picture = new elementpicture(page);
        picture->setObjectName("Picture1");
        rows->addWidget(picture, 1);
        card = new QFormLayout;
        rows->addLayout(card);
        connect(types, &QComboBox::currentIndexChanged, this, [this] { showcard(); });
        return page;
    }
    void showcard() {
        const int type = types->currentIndex() + 1;
        picture->settype(type);
        while (card->rowCount() > 0) card->removeRow(0);
        int number = 0;
        for (const cardrow& r : elementcard(type)) {
            auto* const text = new QLabel(qtext(r.text), this);
            text->setObjectName(QString("Label1(%1)").arg(number++));
            text->setWordWrap(true);
            card->addRow(QString(r.heading) + ":", text);
        }
    }

    QComboBox* types = nullptr;
    elementpicture* picture = nullptr;
    QFormLayout* card = nullptr;
};
}  // namespace

QDialog* makecardhelp() {
    return new cardhelp;
}

QPushButton* newcardbutton(QWidget* parent, const QComboBox* types) {
    auto* const button = new QPushButton("Card...", parent);
    button->setObjectName("card");
    button->setAutoDefault(false);
    button->setToolTip("What this element type needs and gives");
    QObject::connect(button, &QPushButton::clicked, parent, [types] {
        wanted = findtype(types->currentText().toStdString());  // 0 for "No Change"
        theplatform().showdialog("cardhelp");
    });
    return button;
}
