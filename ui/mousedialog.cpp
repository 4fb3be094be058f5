// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Mouse": what buttons, wheel and fingers do to a view.
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>

#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/mousepresets.h"
#include "ui/viewwidget.h"

namespace {

const char* const movenames[] = {"", "pans", "turns", "zooms"};

QString nameofdrag(const viewdrag& drag) {
    QString name;
    if (drag.held & Qt::ShiftModifier) name += "Shift + ";
    if (drag.held & Qt::ControlModifier) name += "Ctrl + ";
    if (drag.held & Qt::AltModifier) name += "Alt + ";
    name += drag.button == Qt::LeftButton    ? "left button"
            : drag.button == Qt::RightButton ? "right button, dragged"
                                             : "middle button";
    return name;
}

class mousedialog : public QDialog {
  public:
    mousedialog() : QDialog(themainwindow) {
        setWindowTitle("Mouse");
        auto* const rows = new QVBoxLayout(this);
        auto* const top = new QHBoxLayout;
        auto* const label = new QLabel("&Preset", this);
        preset = new QComboBox(this);
        preset->setObjectName("Combo1");
        for (const mousepreset& p : mousepresets()) preset->addItem(p.caption);
        label->setBuddy(preset);
        top->addWidget(label);
        top->addWidget(preset, 1);
        rows->addLayout(top);
        table = new QLabel(this);
        table->setObjectName("Label1");
        table->setTextFormat(Qt::PlainText);
        table->setMinimumHeight(12 * fontMetrics().lineSpacing());
        table->setAlignment(Qt::AlignTop | Qt::AlignLeft);
        rows->addWidget(table, 1);
        reversed = addcheck(rows, "Check1", "The &wheel towards me enlarges");
        cube = addcheck(rows, "Check2", "Show the &cube of the axes in the views");
        auto* const last = new QHBoxLayout;
        newaction("Command1", "As &delivered", this, last, [this] { show({}); });
        last->addStretch(1);
        QPushButton* const ok = newbutton("OK", "OK", this, last);
        QPushButton* const cancel = newbutton("Cancel", "Cancel", this, last);
        rows->addLayout(last);
        connect(preset, &QComboBox::currentIndexChanged, this, [this](int i) { tell(i); });
        connect(ok, &QPushButton::clicked, this, [this] {
            setmouse({preset->currentIndex(), reversed->isChecked(), cube->isChecked()});
            remembermouse();
            for (int v = 1; v <= 4; ++v) themainwindow->view(v)->update();
            accept();
        });
        connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
        ok->setDefault(true);
        show(mousenow());
    }

  private:
    using QDialog::show;
    QCheckBox* addcheck(QBoxLayout* rows, const char* name, const char* caption) {
        auto* const box = new QCheckBox(caption, this);
        box->setObjectName(name);
        rows->addWidget(box);
        return box;
    }
    void show(const mousesettings& settings) {
        preset->setCurrentIndex(settings.preset);
        reversed->setChecked(settings.reversed);
        cube->setChecked(settings.cube);
        tell(settings.preset);
    }
    void tell(int i) {
        const mousepreset& p = mousepresets()[std::size_t(i)];
        QStringList lines = {"Left button: selects, gives points; Ctrl adds, Shift takes away"};
        for (const viewdrag& drag : p.drags)
            lines << nameofdrag(drag) + ": " + movenames[int(drag.does)];
        const std::pair<const char*, viewmoves> wheels[] = {{"Wheel or two fingers", p.wheel},
                                                            {"with Ctrl", p.withctrl},
                                                            {"with Shift", p.withshift}};
        for (const auto& [name, does] : wheels)
            lines << QString(name) + ": " + movenames[int(does)];
        lines << "Middle button, pressed twice: fits the model"
              << "Two fingers apart or together: zooms; on a touch screen two fingers pan";
        for (QString& line : lines) line[0] = line[0].toUpper();
        table->setText(lines.join('\n'));
    }

    QComboBox* preset;
    QLabel* table;
    QCheckBox *reversed, *cube;
};

}  // namespace

QDialog* makemousedialog() {
    return new mousedialog;
}
