// SPDX-License-Identifier: GPL-3.0-or-later
// The page setup. The toolkit's own window needs a native printer and takes effect when it is run
// by exec alone; this one serves PDF files too.
#include "ui/pagesetup.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QDialog>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QPageLayout>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <algorithm>

#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"

namespace {

const QPageSize::PageSizeId papers[] = {QPageSize::A4,     QPageSize::A3,    QPageSize::A2,
                                        QPageSize::A1,     QPageSize::A0,    QPageSize::A5,
                                        QPageSize::Letter, QPageSize::Legal, QPageSize::Tabloid};
const double mostmargin = 50;  // millimetres

class pagesetup : public QDialog {
  public:
    explicit pagesetup(QPrinter& p) : QDialog(themainwindow), printer(p) {
        setObjectName("printsetup");
        setWindowTitle(tr("Page Setup"));
        auto* const rows = new QVBoxLayout(this);
        auto* const form = new QFormLayout;
        rows->addLayout(form);
        form->addRow(tr("Paper"), paper = new QComboBox(this));
        paper->setObjectName("Combo1");
        auto* const ways = new QHBoxLayout;
        portrait = addway("Option1(0)", tr("Portrait"), ways);
        landscape = addway("Option1(1)", tr("Landscape"), ways);
        form->addRow(tr("Orientation"), ways);
        form->addRow(tr("Margin"), margin = new QDoubleSpinBox(this));
        margin->setObjectName("Text1");
        margin->setRange(0, mostmargin);
        margin->setDecimals(1);
        margin->setSuffix(" mm");
        rows->addStretch(1);
        addokcancel(this, rows, [this] { accept(); });
        setMinimumWidth(320);
        showpage();
    }
    void accept() override {
        QPageLayout page = printer.pageLayout();
        page.setUnits(QPageLayout::Millimeter);
        page.setPageSize(QPageSize(QPageSize::PageSizeId(paper->currentData().toInt())));
        page.setOrientation(landscape->isChecked() ? QPageLayout::Landscape
                                                   : QPageLayout::Portrait);
        // Where the printer does not reach as far, its own margin stands.
        const QMarginsF least = page.minimumMargins();
        const double all = margin->value();
        page.setMargins({std::max(all, least.left()), std::max(all, least.top()),
                         std::max(all, least.right()), std::max(all, least.bottom())});
        printer.setPageLayout(page);
        QDialog::accept();
    }

  private:
    QRadioButton* addway(const char* name, const QString& caption, QBoxLayout* row) {
        auto* const way = new QRadioButton(caption, this);
        way->setObjectName(name);
        row->addWidget(way);
        return way;
    }
    void showpage() {
        const QPageLayout page = printer.pageLayout();
        for (const QPageSize::PageSizeId id : papers) paper->addItem(QPageSize::name(id), id);
        const QPageSize now = page.pageSize();
        if (paper->findData(now.id()) < 0) paper->addItem(now.name(), now.id());
        paper->setCurrentIndex(paper->findData(now.id()));
        (page.orientation() == QPageLayout::Landscape ? landscape : portrait)->setChecked(true);
        margin->setValue(page.margins(QPageLayout::Millimeter).left());
    }

    QPrinter& printer;
    QComboBox* paper;
    QRadioButton *portrait, *landscape;
    QDoubleSpinBox* margin;
};

}  // namespace

QDialog* makepagesetup(QPrinter& printer) {
    return new pagesetup(printer);
}
