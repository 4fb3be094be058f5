// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Picture of the views", and what of pictures needs the toolkit: pixels, and symbols.
#include <QBoxLayout>
#include <QBuffer>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>

#include "core/besidefile.h"
#include "exchange/pictures.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/printsurface.h"
#include "view/svgsurface.h"

static const double cmperinch = 2.54;

static void paintpng(const pngpage& page, const std::function<void(surface&)>& draw) {
    const double pixels = page.dots / cmperinch;
    QImage image(qRound(page.width * pixels), qRound(page.height * pixels), QImage::Format_RGB32);
    if (image.isNull())
        throw runtimeerror{errmemory, "There is no room for a picture of this size"};
    image.setDotsPerMeterX(qRound(pixels * 100));
    image.setDotsPerMeterY(qRound(pixels * 100));
    image.fill(Qt::white);
    QPainter painter(&image);
    printsurface paper;
    paper.aspaper = page.aspaper;
    paper.begin(&painter, QRectF(image.rect()), pixels);
    draw(paper);
    paper.end();
    painter.end();
    QBuffer bytes;
    if (!image.save(&bytes, "png"))
        throw runtimeerror{errmemory, "There is no room for a picture of this size"};
    besidefile file(page.path);
    file.write(bytes.data().constData(), std::size_t(bytes.size()));
    file.replacetarget();
}

static symbolfile pngofsymbol(std::string_view name) {
    const auto found = symbolpictures().find(name);
    if (found == symbolpictures().end() || found->second.isNull()) return {};
    QBuffer bytes;
    found->second.save(&bytes, "png");
    const QSizeF size = found->second.deviceIndependentSize() * cmperinch / 96;
    return {bytes.data().toStdString(), size.width(), size.height()};
}

void wirepictures() {
    writepng = paintpng;
    symbolpng = pngofsymbol;
}

namespace {

class picturedialog : public QDialog {
  public:
    picturedialog() : QDialog(themainwindow), form(openpicture()) {
        setWindowTitle("Picture of the views");
        setMinimumWidth(fontMetrics().averageCharWidth() *
                        50);  // the frame's buttons stand beside it
        auto* const rows = new QVBoxLayout(this);
        auto* const file = new QLabel(qtext(form.path), this);
        file->setWordWrap(true);
        rows->addWidget(file);
        auto* const fields = new QFormLayout;
        rows->addLayout(fields);
        view = new QComboBox(this);
        view->setObjectName("Combo1");
        for (const std::string& one : form.views) view->addItem(qtext(one));
        view->setCurrentIndex(form.view);
        fields->addRow("&View", view);
        width = addfield(fields, "&Width, cm", "Text1", form.width);
        dots = addfield(fields, "&Dots per inch", "Text2", form.dots);
        fields->setRowVisible(dots, !form.issvg);
        foot = addswitch(rows, "&Name and date below", "Check1", form.foot);
        screen = addswitch(rows, "&Colours of the screen", "Check2", form.screencolours);
        size = new QLabel(this);
        size->setObjectName("Label1");
        rows->addWidget(size);
        message = newmessageline("message", this, rows);
        addokcancel(this, rows, [this] { take(); });
        connect(view, &QComboBox::currentIndexChanged, this, [this] { refresh(); });
        refresh();
    }

  private:
    QLineEdit* addfield(QFormLayout* fields, const char* caption, const char* name,
                        const std::string& text) {
        auto* const box = new QLineEdit(qtext(text), this);
        box->setObjectName(name);
        fields->addRow(caption, box);
        connect(box, &QLineEdit::textChanged, this, [this] { refresh(); });
        return box;
    }
    QCheckBox* addswitch(QBoxLayout* rows, const char* caption, const char* name, bool on) {
        auto* const box = new QCheckBox(caption, this);
        box->setObjectName(name);
        box->setChecked(on);
        rows->addWidget(box);
        connect(box, &QCheckBox::toggled, this, [this] { refresh(); });
        return box;
    }
    void readform() {
        form.view = view->currentIndex();
        form.width = width->text().toStdString();
        form.dots = dots->text().toStdString();
        form.foot = foot->isChecked();
        form.screencolours = screen->isChecked();
    }
    void refresh() {
        if (!message) return;  // the fields are still being made
        readform();
        showsize(form);
        size->setText(qtext(form.size));
        message->setText(qtext(form.message));
    }
    void take() {
        readform();
        if (acceptpicture(form)) accept();
        message->setText(qtext(form.message));
    }

    pictureform form;
    QComboBox* view;
    QLineEdit *width, *dots;
    QCheckBox *foot, *screen;
    QLabel *size, *message = nullptr;
};

}  // namespace

QDialog* makeviewpicture() {
    return new picturedialog;
}
