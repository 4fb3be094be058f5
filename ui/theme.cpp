// SPDX-License-Identifier: GPL-3.0-or-later
// Palettes of the two themes.
#include "ui/theme.h"

#include <QApplication>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QStyleOptionButton>

#include "core/colours.h"
#include "ui/windowsettings.h"

static QPalette darkpalette() {
    const QColor window(56, 58, 63), base(26, 27, 30), text(222, 224, 228), dim(146, 149, 154),
        accent(58, 130, 214);
    QPalette p;
    p.setColor(QPalette::Window, window);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, window);
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::Light, QColor(96, 98, 104));  // the line under tabs
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

namespace {
// Outlines the boxes and circles of choices, empty ones too, so that they are seen on any dark
// ground: the style derives the outline from the colour of the window, always darker than that.
class darkstyle : public QProxyStyle {
  public:
    darkstyle() : QProxyStyle("Fusion") {}
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        if (element != PE_IndicatorCheckBox && element != PE_IndicatorRadioButton)
            return QProxyStyle::drawPrimitive(element, option, painter, widget);
        QStyleOptionButton outlined;
        outlined.QStyleOption::operator=(*option);
        outlined.palette.setColor(QPalette::Window, QColor(170, 173, 180));
        QProxyStyle::drawPrimitive(element, &outlined, painter, widget);
    }
};
}  // namespace

bool settheme(const QString& name) {
    if (name != "dark" && name != "light") return false;
    const bool dark = name == "dark";
    QApplication::setStyle(dark ? new darkstyle : QStyleFactory::create("Fusion"));
    QApplication::setPalette(dark ? darkpalette() : QApplication::style()->standardPalette());
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
