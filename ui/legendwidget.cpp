// SPDX-License-Identifier: GPL-3.0-or-later
// The legend's widget, its menu and its palettes.
#include "ui/legendwidget.h"

#include <QBoxLayout>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QToolButton>

#include "core/numtext.h"
#include "core/platform.h"
#include "post/contour.h"
#include "post/legendedit.h"
#include "post/legendlook.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/record.h"
#include "ui/scriptcontrols.h"
#include "ui/windowsettings.h"

static const double cmperinch = 2.54;
static const char* const palettekey = "legend/palette";

bool changelegend(const QString& what, const QString& value, QString& fault) {
    const recordedline line("legend " + what + (value.isEmpty() ? "" : " " + quotedword(value)));
    std::string reason;
    const bool good = editlegend(what.toStdString(), value.toStdString(), reason);
    fault = QString::fromStdString(reason);
    if (good && what == "palette")
        windowsettings().setValue(palettekey, palettes()[std::size_t(rememberedpalette)].name);
    return good;
}

static void changeandtell(const QString& what, const QString& value) {
    QString fault;
    if (!changelegend(what, value, fault)) theplatform().message(fault.toStdString());
}

// --- the picture --------------------------------------------------------------------------------

legendwidget::legendwidget(QWidget* parent) : QWidget(parent) {
    setObjectName("sindex");
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setToolTip(
        tr("Click the highest or the lowest value to type another; the scale, or the right "
           "button, for palette, bands and decimals"));
    surface.onshow = [this] { update(); };
    const QString kept = windowsettings().value(palettekey).toString();
    for (std::size_t i = 0; i < palettes().size(); ++i)
        if (kept == palettes()[i].name) rememberedpalette = int(i);
}

// Three lines of heading, ten colours and the exponent in the font of the labels.
static QSize roomfor(int lines) {
    const QFontMetrics metrics(qtfont(elemlabelfont));
    return {metrics.horizontalAdvance("Combined Stress 0"), lines * metrics.height()};
}

QSize legendwidget::sizeHint() const {
    const int atease = 27;
    return roomfor(atease);
}

QSize legendwidget::minimumSizeHint() const {
    const int closely = 17, narrow = 60;
    return {narrow, roomfor(closely).height()};
}

void legendwidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    surface.paint(painter);
    if (!hasFocus()) return;
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1, Qt::DotLine));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void legendwidget::resizeEvent(QResizeEvent*) {
    surface.resize(width(), height(), devicePixelRatioF(), pixelspercm());
    drawlegend();
}

double legendwidget::pixelspercm() const {
    return logicalDpiX() / cmperinch;
}

// --- edits in place -----------------------------------------------------------------------------

legendparts legendwidget::partat(const QPointF& pixel) const {
    return legendpartat(pixel.x() / pixelspercm(), pixel.y() / pixelspercm());
}

void legendwidget::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    switch (partat(event->position())) {
        case legendparts::none:
            return;
        case legendparts::scale:
            return showmenu(event->globalPosition().toPoint());
        default:
            return edit(partat(event->position()));
    }
}

void legendwidget::mouseMoveEvent(QMouseEvent* event) {
    const legendparts part = partat(event->position());
    const bool bound = part == legendparts::most || part == legendparts::least;
    setCursor(bound                        ? Qt::IBeamCursor
              : part == legendparts::scale ? Qt::PointingHandCursor
                                           : Qt::ArrowCursor);
}

// Up and Down begin with the highest and the lowest value.
void legendwidget::keyPressEvent(QKeyEvent* event) {
    if (findChild<QLineEdit*>()) return event->accept();  // what its field has done with
    if (!legendshown()) return QWidget::keyPressEvent(event);
    if (event->key() == Qt::Key_Up) return edit(legendparts::most);
    if (event->key() == Qt::Key_Down) return edit(legendparts::least);
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Space)
        return showmenu(mapToGlobal(rect().center()));
    QWidget::keyPressEvent(event);
}

// A field over the value: Enter takes it, leaving the field in any other way gives it up.
void legendwidget::edit(legendparts part) {
    const legendfield place = fieldoflegend(part);
    auto* const field = new QLineEdit(this);
    const bool most = part == legendparts::most;
    field->setObjectName(most ? "legendmax" : "legendmin");
    field->setProperty("watched", true);  // what comes of it is recorded
    field->setText(QString::fromStdString(numbertext(float(most ? indexmax : indexmin))));
    const int tall = field->sizeHint().height(), least = 70;
    const double pixels = pixelspercm();
    const int left = std::min(int(place.left * pixels), width() - least);
    field->setGeometry(left, int((place.top + place.height / 2) * pixels) - tall / 2,
                       width() - left, tall);
    field->selectAll();
    field->show();
    field->setFocus();
    connect(field, &QLineEdit::editingFinished, field, guardedhandler([field, most] {
                if (field->property("ended").toBool()) return;
                field->setProperty("ended", true);
                field->deleteLater();
                if (field->hasFocus() && field->isModified())
                    changeandtell(most ? "max" : "min", field->text());
            }));
    auto* const give = new QAction(field);
    give->setShortcut(Qt::Key_Escape);
    give->setShortcutContext(Qt::WidgetShortcut);
    field->addAction(give);
    connect(give, &QAction::triggered, field, [field] {
        field->setProperty("ended", true);
        field->deleteLater();
    });
}

// --- the menu -----------------------------------------------------------------------------------

// Five steps of a palette.
static QIcon swatchof(int which, const QSize& size) {
    QPixmap picture(size);
    QPainter painter(&picture);
    const int steps = 5;
    for (int k = 0; k < steps; ++k)
        painter.fillRect(k * size.width() / steps, 0, size.width() / steps + 1, size.height(),
                         qtcolor(palettecolour(which, double(k) / (steps - 1))));
    return QIcon(picture);
}

static QMenu* submenu(QMenu* menu, const QString& caption, const QString& what,
                      const QStringList& entries, const QString& now) {
    QMenu* const inner = menu->addMenu(caption);
    for (const QString& entry : entries) {
        QAction* const item = inner->addAction(entry);
        item->setCheckable(true);
        item->setChecked(entry == now);
        QObject::connect(item, &QAction::triggered, menu,
                         [what, entry] { changeandtell(what, entry); });
    }
    return inner;
}

void legendwidget::showmenu(const QPoint& at) {
    const legendlook look = lookoflegend();
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QMenu* const colours = menu->addMenu(tr("Palette"));
    for (std::size_t i = 0; i < palettes().size(); ++i) {
        QAction* const item =
            colours->addAction(swatchof(int(i), {40, 12}), tr(palettes()[i].caption));
        item->setCheckable(true);
        item->setChecked(int(i) == look.palette);
        connect(item, &QAction::triggered, menu,
                [i] { changeandtell("palette", palettes()[i].name); });
    }
    submenu(menu, tr("Bands"), "bands",
            {"2", "4", "5", "6", "8", "9", "10", "11", "12", "15", "20"},
            QString::number(look.bands));
    submenu(menu, tr("Decimals"), "decimals", {"auto", "0", "1", "2", "3", "4", "5", "6"},
            look.decimals < 0 ? QString("auto") : QString::number(look.decimals));
    menu->addSeparator();
    connect(menu->addAction(tr("Highest value...")), &QAction::triggered, this,
            [this] { edit(legendparts::most); });
    connect(menu->addAction(tr("Lowest value...")), &QAction::triggered, this,
            [this] { edit(legendparts::least); });
    QAction* const automatic = menu->addAction(tr("Limits of the values"));
    automatic->setEnabled(legendlimits(legendquantity()) || !indexautoscale);
    connect(automatic, &QAction::triggered, menu, [] { changeandtell("auto", ""); });
    menu->popup(at);
}

void legendwidget::contextMenuEvent(QContextMenuEvent* event) {
    if (legendshown()) showmenu(event->globalPos());
    event->accept();
}

// --- palettes -----------------------------------------------------------------------------------

paletteswatches::paletteswatches(QWidget* parent) : QWidget(parent) {
    setObjectName("palettes");
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(1);
    for (std::size_t i = 0; i < palettes().size(); ++i) {
        const legendpalette& p = palettes()[i];
        auto* const b = new QToolButton(this);
        b->setObjectName(QString(p.name) + "palette");
        b->setToolTip(tr(p.tip));
        b->setAccessibleName(tr(p.caption));
        b->setCheckable(true);
        b->setAutoRaise(true);
        b->setIconSize({24, 10});
        b->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        b->setProperty("watched", true);  // the edit is recorded
        row->addWidget(b, 1);
        connect(b, &QToolButton::clicked, this, guardedhandler([this, name = p.name](bool) {
                    changeandtell("palette", name);
                    refresh();
                }));
        buttons.push_back(b);
    }
}

void paletteswatches::refresh() {
    const int now = lookoflegend().palette;
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        buttons[i]->setIcon(swatchof(int(i), {24, 10}));
        buttons[i]->setChecked(int(i) == now);
    }
}
