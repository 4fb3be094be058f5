// SPDX-License-Identifier: GPL-3.0-or-later
// The windows "Colors" with its fourteen samples and "colorcostum" with three sliders, the font
// choice of labels, and the window "Symbols".
#include <QBoxLayout>
#include <QCheckBox>
#include <QFileDialog>
#include <QFontDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QToolButton>
#include <array>

#include "core/colours.h"
#include "core/platform.h"
#include "core/views.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/qtplatform.h"
#include "ui/qtsurface.h"
#include "ui/theme.h"
#include "view/moddraw.h"
#include "view/setviews.h"
#include "view/symbols.h"
#include "view/symbolstyle.h"

namespace {

struct namedcolour {
    colour* value;
    const char* caption;
};

const namedcolour namedcolours[] = {{&backcolor, "View "},
                                    {&meshcolor, "Mesh "},
                                    {&nodecolor, "Model Nodes"},
                                    {&selcolor, "Selection "},
                                    {&graphcolor, "Graphics"},
                                    {&concolor, "Constrains"},
                                    {&rotcolor, "Rotations"},
                                    {&loadcolor, "Loads"},
                                    {&momcolor, "Moments"},
                                    {&edgecolor, "Edges"},
                                    {&defcolor, "Deformed shape"},
                                    {&hidcolor, "Hiddenline fill color"},
                                    {&nodelabelcolor, "Node labels"},
                                    {&elemlabelcolor, "Element labels"}};
const int ncolours = int(std::size(namedcolours));

void showsample(QToolButton* sample, colour c) {
    sample->setStyleSheet(QString("QToolButton { background: %1; border: 1px solid gray; }"
                                  "QToolButton:focus { border: 3px solid palette(highlight); }")
                              .arg(qtcolor(c).name()));
}

// --- three sliders ------------------------------------------------------------------------------

class colourdialog : public QDialog {
  public:
    colourdialog(colour start, std::function<void(colour)> take, QWidget* parent)
        : QDialog(parent), taken(std::move(take)) {
        setObjectName("colorcostum");
        setWindowTitle(tr("Color"));
        auto* const rows = new QVBoxLayout(this);
        auto* const grid = new QGridLayout;
        static const char* const names[] = {"Red", "Green", "Blue"};
        const int parts[] = {redof(start), greenof(start), blueof(start)};
        for (int i = 0; i < 3; ++i) {
            grid->addWidget(new QLabel(names[i], this), i, 0);
            slider[i] = new QSlider(Qt::Horizontal, this);
            slider[i]->setObjectName(QString("hsb%1").arg(names[i]));
            slider[i]->setRange(0, 255);
            slider[i]->setMinimumWidth(220);
            slider[i]->setValue(parts[i]);
            grid->addWidget(slider[i], i, 1);
            value[i] = new QLabel(this);
            value[i]->setObjectName(QString("lbl%1").arg(names[i]));
            value[i]->setMinimumWidth(30);
            grid->addWidget(value[i], i, 2);
            connect(slider[i], &QSlider::valueChanged, this, [this] { showcolour(); });
        }
        rows->addLayout(grid);
        sample = new QToolButton(this);
        sample->setObjectName("viewcolor");
        sample->setFixedHeight(40);
        sample->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        sample->setEnabled(false);
        rows->addWidget(sample);
        auto* const row = new QHBoxLayout;
        row->addStretch(1);
        connect(newbutton("cmdClose", "Close", this, row), &QPushButton::clicked, this, [this] {
            taken(chosen());
            accept();
        });
        rows->addLayout(row);
        showcolour();
    }

  private:
    colour chosen() const {
        return rgb(slider[0]->value(), slider[1]->value(), slider[2]->value());
    }
    void showcolour() {
        for (int i = 0; i < 3; ++i) value[i]->setText(QString::number(slider[i]->value()));
        showsample(sample, chosen());
    }
    std::function<void(colour)> taken;
    QSlider* slider[3];
    QLabel* value[3];
    QToolButton* sample;
};

// --- the samples --------------------------------------------------------------------------------

class colorset : public QDialog {
  public:
    colorset() : QDialog(themainwindow) {
        setWindowTitle(tr("Colors"));
        auto* const rows = new QVBoxLayout(this);
        auto* const grid = new QGridLayout;
        grid->setHorizontalSpacing(12);
        for (int i = 0; i < ncolours; ++i) {
            shown[std::size_t(i)] = *namedcolours[i].value;
            const int row = i % 7, column = i / 7 * 2;
            grid->addWidget(new QLabel(namedcolours[i].caption, this), row, column);
            auto* const sample = new QToolButton(this);
            sample->setObjectName(QString("Picture1(%1)").arg(i));
            sample->setFixedSize(56, 24);
            grid->addWidget(sample, row, column + 1);
            samples[std::size_t(i)] = sample;
            showsample(sample, shown[std::size_t(i)]);
            connect(sample, &QToolButton::clicked, this, [this, i] { edit(i); });
        }
        rows->addLayout(grid);
        auto* const follow = new QCheckBox(tr("Dark views where the &window is dark"), this);
        follow->setObjectName("Check1");
        follow->setChecked(doviewsfollow());
        rows->addWidget(follow);
        connect(follow, &QCheckBox::clicked, this, guardedhandler([this](bool on) {
                    setviewsfollow(on);
                    showcolours();
                    apply();
                }));
        auto* const row = new QHBoxLayout;
        row->addStretch(1);
        connect(newbutton("Command1(0)", "Apply", this, row), &QPushButton::clicked, this, [this] {
            apply();
            accept();
        });
        connect(newbutton("Command1(1)", "Cancel", this, row), &QPushButton::clicked, this,
                [this] { reject(); });
        connect(newbutton("Command1(2)", "OK", this, row), &QPushButton::clicked, this, [this] {
            apply();
            accept();
        });
        rows->addLayout(row);
    }

  private:
    void edit(int i) {
        showmodal(new colourdialog(
            shown[std::size_t(i)],
            [this, i](colour c) {
                shown[std::size_t(i)] = c;
                showsample(samples[std::size_t(i)], c);
            },
            this));
    }
    void showcolours() {
        for (std::size_t i = 0; i < shown.size(); ++i) {
            shown[i] = *namedcolours[i].value;
            showsample(samples[i], shown[i]);
        }
    }
    void getcolor() {
        for (int i = 0; i < ncolours; ++i) *namedcolours[i].value = shown[std::size_t(i)];
    }
    void apply() {
        getcolor();
        arrangeviews();
        redrawall();
    }
    std::array<colour, std::size_t(ncolours)> shown{};
    std::array<QToolButton*, std::size_t(ncolours)> samples{};
};

// --- symbols ------------------------------------------------------------------------------------

class symbolsdialog : public QDialog {
  public:
    symbolsdialog() : QDialog(themainwindow) {
        setWindowTitle("Symbols");
        auto* const rows = new QVBoxLayout(this);
        auto* const frame = new QGroupBox("Special Symbols", this);
        rows->addWidget(frame);
        auto* const grid = new QGridLayout(frame);
        static const char* const headings[] = {"Symbol Name", "Symbol Normal", "Symbol Selected",
                                               "Size"};
        for (int k = 0; k < 4; ++k) grid->addWidget(new QLabel(headings[k], this), 0, k);
        for (int i = 0; i < 3; ++i) {
            names[i] = new QLineEdit(qtext(symbolname(i)), this);
            names[i]->setMinimumWidth(
                fontMetrics().horizontalAdvance("Translation Spring symbol 0"));
            names[i]->setObjectName(QString("Text1(%1)").arg(i));
            grid->addWidget(names[i], i + 1, 0);
            addpicture(grid, i, false);
            addpicture(grid, i, true);
            size[i] = new QLabel(this);
            grid->addWidget(size[i], i + 1, 3);
            showpictures(i);
        }
        buildchoices(rows);
        auto* const row = new QHBoxLayout;
        row->addStretch(1);
        QPushButton* const ok = newbutton("Command1", "OK", this, row);
        ok->setDefault(true);
        connect(ok, &QPushButton::clicked, this, &QDialog::accept);
        rows->addLayout(row);
        connect(this, &QDialog::finished, this, [this](int) {
            for (int i = 0; i < 3; ++i) symbolname(i) = names[i]->text().toStdString();
            redrawall();
        });
    }

  private:
    // The views behind show at once what is chosen.
    static void show() {
        theplatform().refresh();
        redrawall();
    }
    void buildchoices(QBoxLayout* rows) {
        static const struct {
            const char* caption;
            bool symbolstyle::*on;
        } choices[] = {
            {"&Supports as pins, rollers and clamps, loads as arrows", &symbolstyle::field},
            {"&Values beside loads", &symbolstyle::values},
            {"&Members with their section, plates with their thickness", &symbolstyle::solid},
            {"&Legend of the groups while they are told by colors", &symbolstyle::legend},
            {"Labels that would &cover each other move aside", &symbolstyle::apart}};
        auto* const frame = new QGroupBox("In the views", this);
        auto* const column = new QVBoxLayout(frame);
        for (const auto& [caption, on] : choices) {
            auto* const box = new QCheckBox(caption, frame);
            box->setObjectName(QString("Check1(%1)").arg(column->count()));
            box->setChecked(symbolsdrawn.*on);
            column->addWidget(box);
            connect(box, &QCheckBox::clicked, this, guardedhandler([on = on](bool checked) {
                        symbolsdrawn.*on = checked;
                        show();
                    }));
        }
        auto* const line = new QHBoxLayout;
        auto* const caption = new QLabel("Si&ze of supports, loads and axes", frame);
        auto* const slider = new QSlider(Qt::Horizontal, frame);
        auto* const percent = new QLabel(frame);
        slider->setObjectName("HScroll1");
        slider->setRange(leastsymbols, mostsymbols);
        slider->setPageStep(25);
        slider->setValue(symbolsdrawn.size);
        caption->setBuddy(slider);
        percent->setText(QString("%1 %").arg(symbolsdrawn.size));
        percent->setMinimumWidth(percent->fontMetrics().horizontalAdvance("400 %"));
        line->addWidget(caption);
        line->addWidget(slider, 1);
        line->addWidget(percent);
        column->addLayout(line);
        connect(slider, &QSlider::valueChanged, this, guardedhandler([percent](int size) {
                    symbolsdrawn.size = size;
                    percent->setText(QString("%1 %").arg(size));
                    show();
                }));
        rows->addWidget(frame);
    }
    void addpicture(QGridLayout* grid, int i, bool selected) {
        auto* const b = new QToolButton(this);
        b->setObjectName(QString(selected ? "symbolsel(%1)" : "Symbol(%1)").arg(i));
        b->setMinimumSize(44, 44);
        b->setIconSize(QSize(32, 32));
        showsample(b, backcolor);  // a symbol is judged on the ground that it will stand on
        grid->addWidget(b, i + 1, selected ? 2 : 1, Qt::AlignCenter);
        (selected ? marked : plain)[i] = b;
        connect(b, &QToolButton::clicked, this,
                guardedhandler([this, i, selected](bool) { opensymbol(i, selected); }));
    }
    void opensymbol(int i, bool selected) {
        filebox box;
        box.title = "Retrieve Symbol";
        box.filter = "All Files (*.*)|*.*|Bitmap (*.bmp)|*.bmp|Icon (*.ico)|*.ico";
        const filechoice choice = theplatform().askfile(box);
        if (!choice.chosen) return;
        const QPixmap picture(qtext(choice.path));
        if (picture.isNull()) {
            theplatform().message("This file holds no picture that can be read: " + choice.path,
                                  icons::exclamation);
            return;
        }
        symbolpictures()[pictureof(i, selected)] = picture;
        showpictures(i);
    }
    void showpictures(int i) {
        const QPixmap& normal = symbolpictures()[pictureof(i, false)];
        plain[i]->setIcon(normal);
        marked[i]->setIcon(symbolpictures()[pictureof(i, true)]);
        const QSize s = normal.deviceIndependentSize().toSize();
        size[i]->setText(QString("%1 x %2").arg(s.width()).arg(s.height()));
    }
    QLineEdit* names[3];
    QToolButton *plain[3], *marked[3];
    QLabel* size[3];
};

void askfont(labelfont& font) {
    auto* const dialog = new QFontDialog(qtfont(font), themainwindow);
    dialog->setObjectName("fontdialog");
    QObject::connect(dialog, &QFontDialog::fontSelected, dialog, [&font](const QFont& chosen) {
        font.name = chosen.family().toStdString();
        font.bold = chosen.bold();
        font.italic = chosen.italic();
        font.size = chosen.pointSizeF();
        font.underline = chosen.underline();
        theplatform().refresh();
        redrawall();
    });
    showmodal(dialog);
}

}  // namespace

QDialog* makecolorset() {
    return new colorset;
}

QDialog* makesymbols() {
    return new symbolsdialog;
}

void asknodefont() {
    askfont(nodelabelfont);
}

void askelementfont() {
    askfont(elemlabelfont);
}
