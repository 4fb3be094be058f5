// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Illustrated Report": the parts as a tree of check marks, the words of the cover, and
// the buttons that write it. What is chosen is kept with the model at once.
#include <QBoxLayout>
#include <QFileInfo>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <array>
#include <filesystem>

#include "core/platform.h"
#include "core/session.h"
#include "files/filop.h"
#include "files/saving.h"
#include "post/book.h"
#include "post/bookhtml.h"
#include "ui/bookcontents.h"
#include "ui/bookpdf.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/record.h"
#include "ui/scriptcontrols.h"

static std::function<void()> contentschanged;  // the open window follows

bool changecontents(const QString& key, bool wanted, QString& fault) {
    const recordedline line("contents " + quotedword(key) + (wanted ? " on" : " off"));
    bookchoice book = thebook();
    if (!wantpart(book, key.toStdString(), wanted)) {
        fault = "The report has no part " + key + "; its parts are";
        for (const bookpart& p : bookparts()) fault += QString(" ") + p.key;
        return false;
    }
    storebook(book);
    if (contentschanged) contentschanged();
    return true;
}

namespace {

struct coverfield {
    const char *name, *caption;
    std::string bookchoice::*text;
};
const coverfield coverfields[] = {{"booktitle", "&Title", &bookchoice::title},
                                  {"bookproject", "&Project", &bookchoice::project},
                                  {"bookclient", "&Client", &bookchoice::client},
                                  {"bookauthor", "&Author", &bookchoice::author},
                                  {"bookremarks", "&Remarks", &bookchoice::remarks}};
const int keyrole = Qt::UserRole;

class bookdialog : public QDialog {
  public:
    bookdialog() : QDialog(themainwindow) {
        setWindowTitle("Illustrated Report");
        setProperty(besidemain, true);
        auto* const all = new QVBoxLayout(this);
        auto* const columns = new QHBoxLayout;
        all->addLayout(columns, 1);
        buildtree(columns);
        buildfields(columns);
        message = newmessageline("message", this, all);
        auto* const row = new QHBoxLayout;
        all->addLayout(row);
        row->addStretch(1);
        newaction("bookpdf", "PDF...", this, row, [this] { save(true); });
        newaction("bookhtml", "HTML...", this, row, [this] { save(false); });
        newaction("bookready", "Ready", this, row, [this] { accept(); });
        showform();
        contentschanged = [this] { showform(); };
        connect(this, &QDialog::finished, this, guardedhandler([this](int) { store(); }));
        resize(720, 560);
    }
    ~bookdialog() override { contentschanged = nullptr; }

  private:
    void buildtree(QBoxLayout* columns) {
        tree = new QTreeWidget(this);
        tree->setObjectName("bookparts");
        tree->setHeaderHidden(true);
        tree->setProperty("watched", true);  // what is checked is recorded itself
        columns->addWidget(tree, 3);
        connect(tree, &QTreeWidget::itemChanged, this,
                guardedhandler([this](QTreeWidgetItem* item, int) { changed(item); }));
        connect(tree, &QTreeWidget::currentItemChanged, this, [this] { enable(); });
    }
    void buildfields(QBoxLayout* columns) {
        auto* const rows = new QVBoxLayout;
        columns->addLayout(rows, 2);
        auto* const form = new QFormLayout;
        form->setRowWrapPolicy(QFormLayout::WrapAllRows);
        rows->addLayout(form);
        for (std::size_t i = 0; i < texts.size(); ++i) {
            texts[i] = new QLineEdit(this);
            texts[i]->setObjectName(coverfields[i].name);
            form->addRow(coverfields[i].caption, texts[i]);
            connect(texts[i], &QLineEdit::editingFinished, this,
                    guardedhandler([this] { store(); }));
        }
        rows->addStretch(1);
        add = newaction("bookadd", "Add View 1 as a Picture", this, rows, [this] {
            store();
            bookchoice book = thebook();
            book.views.push_back(sceneforbook());
            storebook(book);
            showform();
        });
        remove = newaction("bookremove", "Remove Picture", this, rows, [this] {
            bookchoice book = thebook();
            const int i = chosenview();
            if (i < 0 || i >= int(book.views.size())) return;
            book.views.erase(book.views.begin() + i);
            storebook(book);
            showform();
        });
    }
    static QTreeWidgetItem* chapterof(QTreeWidget* tree, const char* caption) {
        for (int i = 0; i < tree->topLevelItemCount(); ++i)
            if (tree->topLevelItem(i)->text(0) == caption) return tree->topLevelItem(i);
        auto* const item = new QTreeWidgetItem(tree, {caption});
        item->setExpanded(true);
        return item;
    }
    void showform() {
        const QSignalBlocker quiet(tree);
        const bookchoice book = thebook();
        const int chosen = chosenview();
        tree->clear();
        for (const bookpart& p : bookparts()) {
            auto* const item = *p.chapter ? new QTreeWidgetItem(chapterof(tree, p.chapter))
                                          : new QTreeWidgetItem(tree);
            item->setText(0, p.caption);
            item->setData(0, keyrole, QString(p.key));
            item->setCheckState(0, ispartwanted(book, p.key) ? Qt::Checked : Qt::Unchecked);
        }
        auto* const views = chapterof(tree, "Chosen pictures");
        for (const scene& s : book.views) {
            auto* const item = new QTreeWidgetItem(views, {qtext(s.caption)});
            item->setFlags(item->flags() | Qt::ItemIsEditable);
        }
        if (chosen >= 0 && chosen < views->childCount()) tree->setCurrentItem(views->child(chosen));
        for (std::size_t i = 0; i < texts.size(); ++i)
            showtext(texts[i], book.*coverfields[i].text);
        enable();
    }
    int chosenview() const {
        const QTreeWidgetItem* const item = tree->currentItem();
        if (!item || !item->parent() || item->data(0, keyrole).isValid()) return -1;
        return item->parent()->indexOfChild(const_cast<QTreeWidgetItem*>(item));
    }
    void enable() { remove->setEnabled(chosenview() >= 0); }
    void changed(QTreeWidgetItem* item) {
        const QVariant key = item->data(0, keyrole);
        QString fault;
        if (key.isValid()) {
            const bool on = item->checkState(0) == Qt::Checked;
            QMetaObject::invokeMethod(
                this,
                [key, on] {
                    QString reason;
                    changecontents(key.toString(), on, reason);
                },
                Qt::QueuedConnection);  // the tree is still at work on the item
            return;
        }
        bookchoice book = thebook();
        const int i = item->parent() ? item->parent()->indexOfChild(item) : -1;
        if (i < 0 || i >= int(book.views.size())) return;
        book.views[std::size_t(i)].caption = item->text(0).toStdString();
        storebook(book);
    }
    void store() {
        bookchoice book = thebook();
        bool same = true;
        for (std::size_t i = 0; i < texts.size(); ++i) {
            std::string& text = book.*coverfields[i].text;
            same = same && text == typedtext(texts[i]);
            text = typedtext(texts[i]);
        }
        if (!same) storebook(book);
    }
    void save(bool pdf) {
        store();
        const std::string extension = pdf ? ".pdf" : ".html";
        filebox box;
        box.title = "Write Illustrated Report";
        box.filter = pdf ? "PDF files (*.pdf)|*.pdf|All Files (*.*)|*.*"
                         : "HTML files (*.html)|*.html|All Files (*.*)|*.*";
        box.saving = true;
        if (isnamed()) box.path = modelname + "-report" + extension;
        const std::string path = asktarget(box, extension);
        if (path.empty()) return;
        message->setText("");
        const bool good =
            guarded([&] { pdf ? writepdfbook(path) : writehtmlbook(path); },
                    [this](const runtimeerror& e) { message->setText(qtext(e.what)); });
        theplatform().endprogress();
        if (good) message->setText("Written: " + qtext(path));
    }

    QTreeWidget* tree;
    std::array<QLineEdit*, 5> texts{};
    QPushButton *add, *remove;
    QLabel* message;
};

}  // namespace

QDialog* makebookdialog() {
    bookpng = pngofbook;
    return new bookdialog;
}
