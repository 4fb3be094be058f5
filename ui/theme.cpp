// SPDX-License-Identifier: GPL-3.0-or-later
// Palettes of the two themes.
#include "ui/theme.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>

#include "core/colours.h"
#include "ui/windowsettings.h"

static QPalette darkpalette() {
    // The style draws the empty boxes and circles of choices in base on window, with no outline
    // lighter than these: the two lie far enough apart to be told from each other.
    const QColor window(56, 58, 63), base(26, 27, 30), text(222, 224, 228), dim(146, 149, 154),
        accent(58, 130, 214);
    QPalette p;
    p.setColor(QPalette::Window, window);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, window);
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::PlaceholderText, dim);
    p.setColor(QPalette::Button, QColor(70, 72, 78));
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::BrightText, Qt::white);
    p.setColor(QPalette::ToolTipBase, base);
    p.setColor(QPalette::ToolTipText, text);
    p.setColor(QPalette::Highlight, accent);
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Link, accent.lighter(130));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        p.setColor(QPalette::Disabled, role, dim);
    p.setColor(QPalette::Disabled, QPalette::Base, window);
    return p;
}

bool settheme(const QString& name) {
    if (name != "dark" && name != "light") return false;
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QApplication::setPalette(name == "dark" ? darkpalette()
                                            : QApplication::style()->standardPalette());
    return true;
}

static const char* const followkey = "view/followtheme";

bool doviewsfollow() {
    return windowsettings().value(followkey, false).toBool();
}

void setviewsfollow(bool on) {
    windowsettings().setValue(followkey, on);
    if (on)
        followtheme();
    else
        setdarkviews(false);
}

void followtheme() {
    const int middle = 128;
    if (doviewsfollow())
        setdarkviews(QApplication::palette().color(QPalette::Window).lightness() < middle);
}
