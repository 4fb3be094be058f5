// SPDX-License-Identifier: GPL-3.0-or-later
// The bar on the left of the views: coordinates, load combination, mode shape, legend, comment.
#include <QBoxLayout>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QToolButton>
#include <algorithm>
#include <array>
#include <cmath>

#include "core/journal.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/units.h"
#include "core/views.h"
#include "edit/Mouseprocedures.h"
#include "edit/move.h"
#include "post/contour.h"
#include "post/legend.h"
#include "post/postproces.h"
#include "post/shapes.h"
#include "ui/controls.h"
#include "ui/legendwidget.h"
#include "ui/mainwindow.h"
#include "ui/plotswitches.h"

// --- building -----------------------------------------------------------------------------------

void mainwindow::buildcoordinates(QVBoxLayout* rows) {
    for (std::size_t k = 0; k < 3; ++k) {
        auto* const row = new QHBoxLayout;
        coordinatelabels[k] = new QLabel(leftbar);
        coordinatelabels[k]->setObjectName(QString("coordinatelabel(%1)").arg(k));
        coordinates[k] = new QLineEdit(leftbar);
        coordinates[k]->setObjectName(QString("Text%1").arg(k + 1));
        coordinates[k]->setMinimumWidth(40);
        coordinates[k]->installEventFilter(this);
        row->addWidget(coordinatelabels[k]);
        row->addWidget(coordinates[k], 1);
        rows->addLayout(row);
    }
}

void mainwindow::buildcombinations(QVBoxLayout* rows) {
    combinations = new QComboBox(leftbar);
    combinations->setObjectName("Combo1");
    combinations->setToolTip(tr("Load combination on show"));
    combinations->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combinations->setMinimumContentsLength(6);
    rows->addSpacing(6);
    rows->addWidget(combinations);
    connect(combinations, &QComboBox::activated, this, [](int i) { choosecombination(i + 1); });
}

void mainwindow::buildmodes(QVBoxLayout* rows) {
    modegroup = new QGroupBox(tr("Modeshape"), leftbar);
    modegroup->setObjectName("Modeshapecontrol");
    auto* const moderows = new QVBoxLayout(modegroup);
    moderows->addWidget(new QLabel(tr("Select shape no"), modegroup));
    modenumber = new QLineEdit(modegroup);
    modenumber->setObjectName("Text7");
    moderows->addWidget(modenumber);
    modes = new QComboBox(modegroup);
    modes->setObjectName("modelist");
    modes->setToolTip(tr("Mode shapes of the analysis"));
    modes->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    moderows->addWidget(modes);
    connect(modes, &QComboBox::activated, this, [](int i) { choosemode(i + 1); });
    rows->addWidget(modegroup);
    connect(modenumber, &QLineEdit::editingFinished, this, [this] {
        typemode(modenumber->text().toStdString());
        modenumber->setText(QString::number(curlcomb));
    });
}

void mainwindow::buildlegend(QVBoxLayout* rows) {
    resultlabel = new QLabel(leftbar);
    resultlabel->setObjectName("slabel3");
    resultlabel->setWordWrap(true);
    rows->addWidget(resultlabel);

    legendframe = new QGroupBox(leftbar);
    legendframe->setObjectName("Frame1");
    auto* const legendrows = new QVBoxLayout(legendframe);
    legendrows->setContentsMargins(2, 2, 2, 2);
    legend = new legendwidget(legendframe);
    legendrows->addWidget(legend);
    swatches = new paletteswatches(legendframe);
    legendrows->addWidget(swatches);
    rows->addWidget(legendframe);

    switches = new plotswitches(leftbar);
    rows->addWidget(switches);
}

void mainwindow::buildcomment(QVBoxLayout* rows) {
    commentframe = new QGroupBox(tr("Comment"), leftbar);
    commentframe->setObjectName("commentframe");
    auto* const commentrows = new QVBoxLayout(commentframe);
    commentrows->setContentsMargins(2, 2, 2, 2);
    comment = new QPlainTextEdit(commentframe);
    comment->setObjectName("comment");
    comment->setTabChangesFocus(true);
    commentrows->addWidget(comment);
    rows->addWidget(commentframe, 1);
    connect(comment, &QPlainTextEdit::textChanged, this, [this] {
        if (refreshing) return;
        const step s("Comment", reaches::texts);
        commenttext = commentshown = comment->toPlainText().toStdString();
    });

    rows->addStretch(0);

    auto* const notes = new QToolButton(leftbar);
    notes->setObjectName("notesbutton");
    notes->setText(tr("Comment"));
    notes->setCheckable(true);
    notes->setAutoRaise(true);
    notes->setToolTip(tr("Show or hide the comment on the model"));
    rows->addWidget(notes);
    connect(notes, &QToolButton::clicked, this, [this](bool on) {
        commentvisible = on;
        refresh();
    });
}

void mainwindow::buildleftbar() {
    leftbar = new QWidget(workspace);
    auto* const rows = new QVBoxLayout(leftbar);
    rows->setContentsMargins(6, 6, 6, 6);
    rows->setSpacing(4);
    buildcoordinates(rows);
    buildcombinations(rows);
    buildmodes(rows);
    buildlegend(rows);
    buildcomment(rows);
}

void mainwindow::placeleftbar() {
    leftbar->setGeometry(0, 0, int(sidebarw * pixelspertwip()), workspace->height());
}

// --- coordinates --------------------------------------------------------------------------------

// Typed coordinates: the way of a move, a point for the mode that runs, or a place to pick at.
void mainwindow::runtypedcoordinates() {
    const step s("Coordinates");
    double value[3];
    for (std::size_t k = 0; k < 3; ++k) {
        const std::string text = coordinates[k]->text().toStdString();
        if (readvalue(text, "L", value[k])) continue;
        theplatform().message(coordinatelabels[k]->text().toStdString() + " " +
                                  valuefault(text, "L") + ". Nothing was changed.",
                              icons::exclamation);
        return;
    }
    guarded(
        [&] {
            if (!checkplace(value)) return;
            if (ismoving()) return movetyped(value);
            moderow* const row = runningmode();
            if (row && row->commandpoint)
                row->commandpoint(value[0], value[1], value[2]);
            else
                pressat(value[0], value[1], value[2]);
        },
        [](const runtimeerror& e) { theplatform().message(e.what, icons::exclamation); });
}

// The point of the pointer. What the rounding of a view's angles leaves of a coordinate is shown
// as 0.
static std::array<double, 3> pointshown() {
    std::array<double, 3> at = {modelx, modely, modelz};
    const double rounding = 1e-6;  // of the greatest coordinate
    const double greatest =
        std::max({std::fabs(at[0]), std::fabs(at[1]), std::fabs(at[2])}) * rounding;
    for (double& value : at)
        if (std::fabs(value) < greatest) value = 0;
    return at;
}

void mainwindow::refreshcoordinates() {
    static const char* const x[] = {"x =", "y =", "z ="};
    static const char* const dx[] = {"dx=", "dy=", "dz="};
    const bool moving = movepending;  // a typed way needs no reference point
    const std::array<double, 3> at = pointshown();
    for (std::size_t k = 0; k < 3; ++k) {
        coordinatelabels[k]->setText(moving ? dx[k] : x[k]);
        if (!coordinates[k]->hasFocus())
            coordinates[k]->setText(QString::fromStdString(numbertext(float(moving ? 0 : at[k]))));
    }
}

// --- results and comment ------------------------------------------------------------------------

void mainwindow::refreshcombinations() {
    QStringList names;
    for (int c = 1; c <= ncomb(); ++c) names << qname(lcombname(c));
    QStringList shown;
    for (int i = 0; i < combinations->count(); ++i) shown << combinations->itemText(i);
    if (names != shown) {
        combinations->clear();
        combinations->addItems(names);
    }
    combinations->setCurrentIndex(curlcomb <= ncomb() ? curlcomb - 1 : -1);
}

void mainwindow::refreshresults() {
    const bool mode = menupostItem(modeshape).checked;
    modegroup->setVisible(mode);
    if (mode && !modenumber->hasFocus()) modenumber->setText(QString::number(curlcomb));
    showlist(modes, modelist(), curlcomb <= modecount ? curlcomb - 1 : -1);
    resultlabel->setText(QString::fromStdString(plottext()).trimmed());
    legendframe->setVisible(legendshown());
    switches->setVisible(legendshown());
    switches->refresh();
    swatches->refresh();
    legendframe->setTitle(QString::fromStdString(makelegend().title));
}

surface* mainwindow::legendsurface() {
    return legend ? &legend->surface : nullptr;
}

// Set anew where it is another one alone: setting it leads back to its top. A text that would hold
// up the window is shown in its beginning and can not be edited.
void mainwindow::showcomment() {
    const std::size_t most = 200000;  // bytes
    if (commenttext == commentshown) return;
    commentshown = commenttext;
    QString text = QString::fromStdString(commenttext.substr(0, most));
    comment->setReadOnly(commenttext.size() > most);
    if (comment->isReadOnly())
        text += tr("\n... and %1 bytes more, which a save keeps").arg(commenttext.size() - most);
    comment->setPlainText(text);
}
