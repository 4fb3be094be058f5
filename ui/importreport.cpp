// SPDX-License-Identifier: GPL-3.0-or-later
// The window of what became of an import or export.
#include "exchange/importreport.h"

#include <QBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"

namespace {

class reportdialog : public sidedialog {
  public:
    reportdialog() : sidedialog(themainwindow) {
        setProperty(besidemain, true);
        const importreport& report = lastreport();
        setWindowTitle(report.exporting ? "Export Report" : "Import Report");
        auto* const rows = new QVBoxLayout(this);
        auto* const head = new QLabel(qtext(headof(report)), this);
        head->setObjectName("Label1");
        head->setWordWrap(true);
        rows->addWidget(head);
        list = new QListWidget(this);
        list->setObjectName("List1");
        list->setWordWrap(true);
        list->setMinimumSize(520, 260);
        fill(report);
        rows->addWidget(list, 1);
        message = newmessageline("message", this, rows);
        auto* const row = new QHBoxLayout;
        select = addbutton("Command2", "&Select", row, [this] { selectline(); });
        zoom = addbutton("Command3", "&Zoom to", row, [this] {
            if (selectline()) zoomtoreported();
        });
        addbutton("Command4", "Sa&ve", row,
                  [this] { message->setText("Written: " + qtext(writereport(lastreport()))); });
        row->addStretch(1);
        connect(newbutton("Command1", "Ready", this, row), &QPushButton::clicked, this,
                &QDialog::accept);
        rows->addLayout(row);
        connect(list, &QListWidget::currentItemChanged, this, [this] { showchoice(); });
        list->setCurrentRow(0);
        showchoice();
    }

  private:
    static std::string headof(const importreport& report) {
        return report.format + (report.exporting ? ", written: " : ", read: ") + report.file;
    }
    // Faults first: they are what the window is for.
    void fill(const importreport& report) {
        for (const reportkinds kind :
             {reportkinds::error, reportkinds::warning, reportkinds::skipped, reportkinds::changed,
              reportkinds::read})
            for (std::size_t i = 0; i < report.lines().size(); ++i) {
                const reportline& line = report.lines()[i];
                if (line.kind != kind) continue;
                const char* const caption = captionof(kind, report.exporting);
                auto* const item =
                    new QListWidgetItem(QString(caption) + ": " + qtext(textof(line)), list);
                item->setData(Qt::UserRole, int(i));
            }
    }
    template <typename Action>
    QPushButton* addbutton(const char* name, const char* caption, QBoxLayout* row, Action action) {
        QPushButton* const b = newbutton(name, caption, this, row);
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, guardedhandler([action](bool) { action(); }));
        return b;
    }
    int chosen() const {
        const QListWidgetItem* const item = list->currentItem();
        return item ? item->data(Qt::UserRole).toInt() : -1;
    }
    void showchoice() {
        const int i = chosen();
        const auto& lines = lastreport().lines();
        const bool speaks = i >= 0 && std::size_t(i) < lines.size() &&
                            lines[std::size_t(i)].items != reportitems::none;
        select->setEnabled(speaks);
        zoom->setEnabled(speaks);
    }
    bool selectline() {
        const int count = selectreported(std::size_t(chosen()));
        message->setText(count > 0 ? QString::number(count) + " selected"
                                   : "What this line speaks of is no longer in the model");
        return count > 0;
    }

    QListWidget* list;
    QPushButton *select, *zoom;
    QLabel* message;
};

}  // namespace

QDialog* makeimportreport() {
    return new reportdialog;
}
