// SPDX-License-Identifier: GPL-3.0-or-later
// The help window, and the key that leads to the manual. State: the topic of the action under way.
#include "ui/helpwindow.h"

#include <QAction>
#include <QBoxLayout>
#include <QDialog>
#include <QImage>
#include <QPushButton>
#include <QShortcut>
#include <QTextBrowser>
#include <QUrl>

#include "core/appdir.h"
#include "core/platform.h"
#include "core/session.h"
#include "ui/controls.h"
#include "ui/mainwindow.h"
#include "ui/record.h"

namespace {
// The text scales its pictures without smoothing; they come in the size they are shown in.
class helptext : public QTextBrowser {
  public:
    using QTextBrowser::QTextBrowser;

  protected:
    QVariant loadResource(int kind, const QUrl& name) override {
        if (kind != QTextDocument::ImageResource) return QTextBrowser::loadResource(kind, name);
        const int shownwidth = 820;  // pixels, as the manual's own width of its pictures
        const double ratio = devicePixelRatioF();
        QImage picture(source().resolved(name).toLocalFile());
        if (picture.width() > shownwidth * ratio)
            picture = picture.scaledToWidth(int(shownwidth * ratio), Qt::SmoothTransformation);
        return picture;
    }
};
}  // namespace

std::string helptopic;

void openmanual(const std::string& topic) {
    const std::string page = appdir + "/manual.htm";
    theplatform().openwithbrowser(topic.empty() ? page : page + "#" + topic);
}

void helpbykey(QDialog* dialog, const std::string& topic) {
    auto* const key = new QShortcut(QKeySequence("F1"), dialog);
    QObject::connect(key, &QShortcut::activated, dialog, [topic] {
        const recordedline line("menu \"Information/User Manual...\"");
        openmanual(topic);
    });
}

void showhelp(const QUrl& page) {
    auto* const dialog = new QDialog(themainwindow, Qt::Window);
    dialog->setObjectName("HelpWindow");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    auto* const rows = new QVBoxLayout(dialog);
    auto* const text = new helptext(dialog);
    text->setObjectName("text");
    text->setOpenExternalLinks(true);
    text->setSource(page);
    dialog->setWindowTitle(text->documentTitle());
    rows->addWidget(text, 1);
    auto* const buttons = new QHBoxLayout;
    QPushButton* const contents = newbutton("contents", "Contents", dialog, buttons);
    QPushButton* const back = newbutton("back", "Back", dialog, buttons);
    buttons->addStretch(1);
    QPushButton* const close = newbutton("close", "Close", dialog, buttons);
    rows->addLayout(buttons);
    for (QPushButton* b : {contents, back, close}) b->setAutoDefault(false);
    back->setEnabled(false);
    QObject::connect(contents, &QPushButton::clicked, text, &QTextBrowser::home);
    QObject::connect(back, &QPushButton::clicked, text, &QTextBrowser::backward);
    QObject::connect(text, &QTextBrowser::backwardAvailable, back, &QPushButton::setEnabled);
    QObject::connect(close, &QPushButton::clicked, dialog, &QDialog::close);
    dialog->resize(900, 700);
    dialog->show();
}
