// SPDX-License-Identifier: GPL-3.0-or-later
// The help window, and the key that leads to it. State: the one window, once it was opened.
#include "ui/helpwindow.h"

#include <QAction>
#include <QBoxLayout>
#include <QDialog>
#include <QFile>
#include <QImageReader>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QTabWidget>
#include <QTextBrowser>
#include <QTreeWidget>
#include <QUrl>
#include <QWindow>

#include "core/appdir.h"
#include "core/platform.h"
#include "core/session.h"
#include "edit/Mouseprocedures.h"
#include "post/shapes.h"
#include "tools/drafttools.h"
#include "ui/controls.h"
#include "ui/helppage.h"
#include "ui/mainwindow.h"
#include "ui/record.h"

namespace {
// The text scales its pictures without smoothing; they come in the size they are shown in.
class helptext : public QTextBrowser {
  public:
    using QTextBrowser::QTextBrowser;
    QString page;  // as it stands in the file

  protected:
    QVariant loadResource(int kind, const QUrl& name) override {
        if (kind == QTextDocument::HtmlResource) return readpage(name);
        if (kind != QTextDocument::ImageResource) return QTextBrowser::loadResource(kind, name);
        const double ratio = devicePixelRatioF();
        QImage picture(source().resolved(name).toLocalFile());
        if (picture.width() > shownwidth * ratio)
            picture = picture.scaledToWidth(int(shownwidth * ratio), Qt::SmoothTransformation);
        return picture;
    }

  private:
    static const int shownwidth = 640;  // pixels, of the widest picture

    QVariant readpage(const QUrl& name) {
        QFile file(name.toLocalFile());
        if (!file.open(QFile::ReadOnly)) return {};
        page = QString::fromUtf8(file.readAll());
        return richpage(page, palette(), shownwidth);
    }
};

class helpwindow : public QDialog {
  public:
    helpwindow() : QDialog(nullptr, Qt::Window) {
        setObjectName("HelpWindow");
        setAttribute(Qt::WA_QuitOnClose, false);
        auto* const rows = new QVBoxLayout(this);
        rows->addLayout(makebuttons());
        auto* const halves = new QSplitter(this);
        halves->addWidget(makepages());
        halves->addWidget(text);
        halves->setStretchFactor(1, 1);
        halves->setSizes({260, 740});
        rows->addWidget(halves, 1);
        connect(text, &QTextBrowser::sourceChanged, this, [this] { follow(); });
        auto* const find = new QShortcut(QKeySequence::Find, this);
        connect(find, &QShortcut::activated, this, [this] {
            pages->setCurrentIndex(2);
            wanted->setFocus();
        });
        const QSize around(60, 120);  // pixels: the toolkit guesses a frame of 40 on each side
        resize(QSize(1000, 720).boundedTo(screen()->availableSize() - around));
    }
    void open(const QUrl& place) {
        text->setSource(place);
        setWindowTitle(text->documentTitle());
        if (tree->topLevelItemCount() == 0) fillpages();
        follow();
    }

  protected:
    void changeEvent(QEvent* event) override {
        QDialog::changeEvent(event);
        if (event->type() == QEvent::PaletteChange && !text->source().isEmpty()) text->reload();
    }

  private:
    QLayout* makebuttons() {
        auto* const row = new QHBoxLayout;
        QPushButton* const back = newbutton("back", "< Back", this, row);
        QPushButton* const forward = newbutton("forward", "Forward >", this, row);
        row->addStretch(1);
        QPushButton* const browser = newbutton("browser", "Open in Browser", this, row);
        QPushButton* const close = newbutton("close", "Close", this, row);
        for (QPushButton* b : {back, forward, browser, close}) b->setAutoDefault(false);
        back->setEnabled(false);
        forward->setEnabled(false);
        text->setObjectName("text");
        text->setOpenExternalLinks(true);
        connect(back, &QPushButton::clicked, text, &QTextBrowser::backward);
        connect(forward, &QPushButton::clicked, text, &QTextBrowser::forward);
        connect(text, &QTextBrowser::backwardAvailable, back, &QPushButton::setEnabled);
        connect(text, &QTextBrowser::forwardAvailable, forward, &QPushButton::setEnabled);
        connect(browser, &QPushButton::clicked, this, [] { openmanual(); });
        connect(close, &QPushButton::clicked, this, &QDialog::close);
        return row;
    }
    QWidget* makepages() {
        pages->setObjectName("pages");
        tree->setObjectName("contents");
        tree->setHeaderHidden(true);
        pages->addTab(tree, "Contents");
        pages->addTab(fieldoverlist(narrow, "narrow", "Begin of a word", index, "index"), "Index");
        pages->addTab(fieldoverlist(wanted, "wanted", "Words to find", hits, "hits"), "Search");
        connect(tree, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
            if (item) turnto(item->data(0, Qt::UserRole).toString());
        });
        connect(narrow, &QLineEdit::textChanged, this, [this] { narrowindex(); });
        connect(wanted, &QLineEdit::textChanged, this, [this] { search(); });
        for (QListWidget* list : {index, hits})
            connect(list, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* item) {
                if (item) turnto(item->data(Qt::UserRole).toString());
            });
        return pages;
    }
    QWidget* fieldoverlist(QLineEdit* field, const char* fieldname, const char* hint,
                           QListWidget* list, const char* listname) {
        auto* const page = new QWidget(this);
        auto* const rows = new QVBoxLayout(page);
        field->setObjectName(fieldname);
        field->setPlaceholderText(hint);
        field->setClearButtonEnabled(true);
        list->setObjectName(listname);
        rows->addWidget(field);
        rows->addWidget(list, 1);
        return page;
    }
    void fillpages() {
        QTreeWidgetItem* chapter = nullptr;
        for (const helpentry& e : contentsof(text->page)) {
            auto* const item = e.level == 3 && chapter ? new QTreeWidgetItem(chapter, {e.title})
                                                       : new QTreeWidgetItem(tree, {e.title});
            item->setData(0, Qt::UserRole, e.anchor);
            if (e.level == 2) chapter = item;
        }
        for (const helpentry& e : indexof(text->page)) add(index, e.title, e.anchor);
    }
    static void add(QListWidget* list, const QString& title, const QString& anchor) {
        auto* const item = new QListWidgetItem(title, list);
        item->setData(Qt::UserRole, anchor);
    }
    void narrowindex() {
        for (int i = 0; i < index->count(); ++i)
            index->item(i)->setHidden(
                !index->item(i)->text().contains(narrow->text(), Qt::CaseInsensitive));
    }
    void search() {
        const QSignalBlocker quiet(hits);
        hits->clear();
        for (const helphit& h : findinpage(text->page, wanted->text()))
            add(hits, QString("%1  (%2)").arg(h.place.title).arg(h.count), h.place.anchor);
        marktext();
    }
    // What is searched stands on the colour of a selection, and the first of it is in sight.
    void marktext() {
        QList<QTextEdit::ExtraSelection> marks;
        const int most = 2000;  // a letter alone stands everywhere
        for (const QString& word : wanted->text().split(' ', Qt::SkipEmptyParts))
            for (QTextCursor at = text->document()->find(word); !at.isNull() && marks.size() < most;
                 at = text->document()->find(word, at)) {
                QTextCharFormat look;
                look.setBackground(palette().highlight());
                look.setForeground(palette().highlightedText());
                marks.push_back({at, look});
            }
        text->setExtraSelections(marks);
    }
    void turnto(const QString& anchor) {
        QUrl place = text->source();
        if (place.fragment() == anchor) return;
        place.setFragment(anchor);
        text->setSource(place);
    }
    // The list of chapters goes with the text.
    void follow() {
        const QSignalBlocker quiet(tree);
        const QString anchor = text->source().fragment();
        for (QTreeWidgetItemIterator at(tree); *at; ++at)
            if ((*at)->data(0, Qt::UserRole).toString() == anchor) tree->setCurrentItem(*at);
    }

    helptext* const text = new helptext(this);
    QTabWidget* const pages = new QTabWidget(this);
    QTreeWidget* const tree = new QTreeWidget(this);
    QListWidget *const index = new QListWidget(this), *const hits = new QListWidget(this);
    QLineEdit *const narrow = new QLineEdit(this), *const wanted = new QLineEdit(this);
};
}  // namespace

static QPointer<helpwindow> shown;

// While a dialog waits all windows but its own are closed to the user: the help belongs to it then.
static void putbefore(QWidget* owner) {
    shown->winId();  // makes the window that the desktop knows
    if (owner && owner->windowHandle())
        shown->windowHandle()->setTransientParent(owner->windowHandle());
}

void showhelp(const QUrl& page) {
    if (!shown) {
        shown = new helpwindow;
        QObject::connect(themainwindow, &QObject::destroyed, shown, [] { delete shown; });
    }
    shown->hide();
    shown->open(page);
    QWidget* const modal = QApplication::activeModalWidget();
    putbefore(modal ? modal : themainwindow);
    shown->show();
    shown->raise();
    shown->activateWindow();
}

void helpat(const std::string& anchor, const std::string& otherwise) {
    QFile file(qtext(appdir + "/manual.htm"));
    if (!file.open(QFile::ReadOnly))
        return theplatform().message(
            "File not found: " + file.fileName().toStdString() + "; it comes with the program",
            icons::exclamation);
    const bool there = hasanchor(QString::fromUtf8(file.readAll()), qtext(anchor));
    QUrl place = QUrl::fromLocalFile(file.fileName());
    place.setFragment(qtext(there ? anchor : otherwise));
    showhelp(place);
}

void openmanual() {
    theplatform().openwithbrowser(appdir + "/manual.htm");
}

void helpbykey(QDialog* dialog) {
    const char* const given = "helpkey";
    if (dialog->property(given).toBool()) return;
    dialog->setProperty(given, true);
    auto* const key = new QShortcut(QKeySequence("F1"), dialog);
    QObject::connect(key, &QShortcut::activated, dialog, [dialog] {
        const recordedline line(helpline);
        helpat("window-" + dialog->objectName().toStdString());
    });
}

// --- what goes on in the main window ------------------------------------------------------------

static std::string topicofmode() {
    const struct {
        bool on;
        const char* topic;
    } modes[] = {
        {bool(drawline), "do-Mnugraphicitem(0)"},  {bool(drawcircle), "do-Mnugraphicitem(1)"},
        {bool(drawcurve), "do-Mnugraphicitem(2)"}, {bool(addnodemode), "do-Mnuadditem(1)"},
        {bool(singleel), "window-addsingleelem"},  {bool(zoomwinmode), "do-viewtool(3)"},
        {bool(movepending), "do-mnuEditItem(6)"},
    };
    for (const auto& m : modes)
        if (m.on) return m.topic;
    for (const drafttool& tool : drafttools())
        if (isdrafting(tool)) return std::string("do-") + tool.name;
    return {};
}

std::string topicnow() {
    static const struct {
        const char *control, *topic;
    } places[] = {{"inputtext", "commands"},
                  {"inputfield", "commands"},
                  {"Combo1", "cases"},
                  {"Text7", "do-menupostItem(3)"},
                  {"comment", "leftbar"}};
    if (const std::string mode = topicofmode(); !mode.empty()) return mode;
    for (const QWidget* w = themainwindow->focusWidget(); w; w = w->parentWidget())
        for (const auto& p : places)
            if (w->objectName() == p.control) return p.topic;
    return "window";
}
