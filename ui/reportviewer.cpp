// SPDX-License-Identifier: GPL-3.0-or-later
// The report viewer. The lines stay in the file's one block; the list draws those in sight.
#include "ui/reportviewer.h"

#include <QAbstractListModel>
#include <QAction>
#include <QBoxLayout>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QShortcut>

#include "core/platform.h"
#include "core/textfile.h"
#include "post/Report.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/helpwindow.h"
#include "ui/mainwindow.h"
#include "ui/printing.h"
#include "ui/reportprint.h"

namespace {

// A log may hold a line without end. On show and on paper it is cut here; Find and Copy see it
// whole.
const int longestshown = 1000;  // characters

// The lines of a text.
class reportmodel : public QAbstractListModel {
  public:
    reportmodel(std::string text, const QFont& f, QObject* parent)
        : QAbstractListModel(parent), content(std::move(text)), font(f) {
        for (std::size_t at = 0; at < content.size();) {
            starts.push_back(at);
            const std::size_t end = std::min(content.find('\n', at), content.size());
            longest = std::clamp(end - at, longest, std::size_t(longestshown));
            at = end + 1;
        }
        const QFontMetrics metrics(font);
        const int margin = 12;
        size =
            QSize(metrics.horizontalAdvance(QString(int(longest), 'M')) + margin, metrics.height());
    }
    std::string_view line(int row) const {
        const std::size_t begin = starts[std::size_t(row)];
        std::size_t end = std::min(content.find('\n', begin), content.size());
        if (end > begin && content[end - 1] == '\r') --end;
        return std::string_view(content).substr(begin, end - begin);
    }
    QString text(int row) const {
        const std::string_view l = line(row);
        return QString::fromUtf8(l.data(), qsizetype(l.size()));
    }
    QString shownline(int row) const { return qtext(shownname(line(row), longestshown)); }
    int lines() const { return int(starts.size()); }
    std::size_t longestline() const { return longest; }
    int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : lines();
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role == Qt::DisplayRole) return shownline(index.row());
        if (role == Qt::SizeHintRole) return size;
        if (role == Qt::FontRole) return font;
        return {};
    }

  private:
    std::string content;
    std::vector<std::size_t> starts;
    std::size_t longest = 1;
    QFont font;
    QSize size;
};

// "**** LOAD CASES ****" as "LOAD CASES", and a warning of a log; empty for a line that is no
// heading.
QString headingof(QString line) {
    const int longest = 70;  // letters of a warning in the list
    if (line.startsWith("Warning: ")) return line.left(longest);
    if (!line.startsWith("*****") && !line.startsWith("~~~~~")) return {};
    return line.remove('*').remove('~').simplified();
}

class reportwindow : public QDialog {
  public:
    reportwindow(const std::string& path, std::string text)
        : QDialog(themainwindow, Qt::Window), name(path) {
        setObjectName("reportviewer");
        setAttribute(Qt::WA_DeleteOnClose);
        setWindowTitle(qname(viewertitle(path)));
        auto* const rows = new QVBoxLayout(this);
        QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        font.setStyleHint(QFont::Monospace);
        model = new reportmodel(std::move(text), font, this);
        buildtools(rows);
        list = new QListView(this);
        list->setObjectName("text");
        list->setUniformItemSizes(true);
        list->setSelectionMode(QAbstractItemView::ExtendedSelection);
        list->setEditTriggers(QAbstractItemView::NoEditTriggers);
        list->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
        list->setModel(model);
        rows->addWidget(list, 1);
        fillsections();
        addkeys();
        resize(1060, 680);
        list->setFocus();
    }

    // 0 is the begin of the text.
    void gotosection(int i) {
        if (i >= sections->count()) return;
        sections->setCurrentIndex(i);
        gotoline(sections->itemData(i).toInt(), QAbstractItemView::PositionAtTop);
    }

  private:
    void buildtools(QBoxLayout* rows) {
        auto* const row = new QHBoxLayout;
        row->addWidget(new QLabel(tr("Section"), this));
        sections = new QComboBox(this);
        sections->setObjectName("sections");
        sections->setSizeAdjustPolicy(QComboBox::AdjustToContents);
        row->addWidget(sections);
        row->addSpacing(12);
        row->addWidget(new QLabel(tr("Find"), this));
        wanted = new QLineEdit(this);
        wanted->setObjectName("find");
        wanted->setClearButtonEnabled(true);
        row->addWidget(wanted, 1);
        QPushButton* const next = newbutton("findnext", "Find next", this, row);
        message = new QLabel(this);
        message->setObjectName("message");
        message->setMinimumWidth(message->fontMetrics().horizontalAdvance("Line 10000000 of"));
        row->addWidget(message);
        QPushButton* const print = newbutton("print", "Print...", this, row);
        QPushButton* const close = newbutton("close", "Close", this, row);
        for (QPushButton* b : {next, print, close}) b->setAutoDefault(false);
        rows->addLayout(row);
        connect(next, &QPushButton::clicked, this, [this] { findnext(); });
        connect(wanted, &QLineEdit::returnPressed, this, [this] { findnext(); });
        connect(print, &QPushButton::clicked, this, [this] { printall(); });
        connect(close, &QPushButton::clicked, this, &QDialog::close);
        connect(sections, &QComboBox::activated, this, [this](int i) { gotosection(i); });
    }

    void fillsections() {
        sections->addItem(tr("Begin"), 0);
        for (int i = 0; i < model->lines(); ++i) {
            const char first = model->line(i).empty() ? ' ' : model->line(i).front();
            if (first != '*' && first != '~' && first != 'W') continue;
            const QString heading = headingof(model->shownline(i));
            if (!heading.isEmpty()) sections->addItem(heading, i);
        }
    }

    void addkeys() {
        connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, wanted,
                [this] { wanted->setFocus(); });
        connect(new QShortcut(QKeySequence::FindNext, this), &QShortcut::activated, this,
                [this] { findnext(); });
        connect(new QShortcut(QKeySequence::Print, this), &QShortcut::activated, this,
                [this] { printall(); });
        connect(new QShortcut(QKeySequence::Copy, list), &QShortcut::activated, this,
                [this] { copylines(); });
    }

    void gotoline(int row, QAbstractItemView::ScrollHint where) {
        const QModelIndex index = model->index(row);
        list->setCurrentIndex(index);
        list->scrollTo(index, where);
        message->setText(tr("Line %1").arg(row + 1));
    }

    // From the line below the current one, and on from the first.
    void findnext() {
        const QString text = wanted->text();
        if (text.isEmpty()) return;
        const int lines = model->lines(), from = list->currentIndex().row();
        for (int i = 1; i <= lines; ++i) {
            const int row = (from + i) % lines;
            if (model->text(row).contains(text, Qt::CaseInsensitive))
                return gotoline(row, QAbstractItemView::PositionAtCenter);
        }
        message->setText(tr("Not found"));
    }

    void copylines() {
        QModelIndexList chosen = list->selectionModel()->selectedIndexes();
        std::sort(chosen.begin(), chosen.end());
        QStringList lines;
        for (const QModelIndex& index : chosen) lines << model->text(index.row());
        QGuiApplication::clipboard()->setText(lines.join('\n'));
    }

    void printall() {
        const reportlist report{QFileInfo(qtext(name)).fileName(), model->lines(),
                                int(model->longestline()),
                                [this](int line) { return model->shownline(line); }};
        printby(
            report.name,
            [&](QPrinter& printer, QPainter& painter) { printsheets(report, printer, painter); },
            islandscape(report));
    }

    std::string name;
    reportmodel* model;
    QListView* list;
    QComboBox* sections;
    QLineEdit* wanted;
    QLabel* message;
};

}  // namespace

static reportwindow* openwindow(const std::string& path) {
    reportwindow* window = nullptr;
    guarded([&] { window = new reportwindow(path, toutf8(readwhole(path))); }, tellfault);
    if (!window) return nullptr;
    helpbykey(window);
    window->show();
    return window;
}

void showreport(const std::string& path) {
    openwindow(path);
}

void showlog(const std::string& path) {
    if (reportwindow* const window = openwindow(path)) window->gotosection(1);
}
