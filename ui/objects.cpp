// SPDX-License-Identifier: GPL-3.0-or-later
// The windows "Objects", which places parametric objects, and "Define Object", which writes one.
#include <QBoxLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>

#include "core/model.h"
#include "core/session.h"
#include "edit/Mouseprocedures.h"
#include "tools/genfile.h"
#include "tools/objectform.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/examples.h"
#include "ui/mainwindow.h"
#include "ui/objectpicture.h"
#include "view/moddraw.h"

namespace {

class objectsdialog : public sidedialog {
  public:
    objectsdialog() : sidedialog(themainwindow) {
        setWindowTitle("Objects");
        auto* const rows = new QVBoxLayout(this);
        auto* const columns = new QHBoxLayout;
        rows->addLayout(columns, 1);
        buildlibrary(columns);
        buildvariables(columns);
        buildpreview(columns);
        message = newmessageline("message", this, rows);
        message->setMinimumHeight(2 * fontMetrics().height());
        buildbuttons(rows);
        form = openobjects({shippeddata() + "/objects", appdir + "/objects"});
        for (const objectentry& entry : form.library) list->addItem(qtext(entry.name));
        showform();
        // What is selected: the focus alone makes the first entry the current one.
        connect(list, &QListWidget::itemSelectionChanged, this, guardedhandler([this] {
                    if (list->selectedItems().isEmpty()) return;
                    chooseobject(form, list->row(list->selectedItems().first()));
                    showobject();
                }));
        connect(this, &QDialog::finished, this, guardedhandler([this](int) {
                    closeobjects(form);
                    addready();
                }));
    }

  private:
    void buildlibrary(QBoxLayout* columns) {
        auto* const frame = new QGroupBox("Object", this);
        auto* const rows = new QVBoxLayout(frame);
        list = new QListWidget(frame);
        list->setObjectName("List1");
        list->setMinimumWidth(150);
        rows->addWidget(list, 1);
        picture = new QLabel(frame);
        picture->setObjectName("Picture1");
        picture->setAlignment(Qt::AlignCenter);
        picture->setFrameShape(QFrame::StyledPanel);
        picture->setFixedSize(picturewidth, pictureheight);
        rows->addWidget(picture);
        columns->addWidget(frame);
    }
    void buildvariables(QBoxLayout* columns) {
        auto* const frame = new QGroupBox("Variables", this);
        auto* const rows = new QVBoxLayout(frame);
        description = new QLabel(frame);
        description->setObjectName("description");
        description->setWordWrap(true);
        description->setMinimumWidth(300);
        rows->addWidget(description);
        area = new QScrollArea(frame);
        area->setWidgetResizable(true);
        area->setFrameShape(QFrame::NoFrame);
        rows->addWidget(area, 1);
        auto* const grid = new QGridLayout;
        const char* const axes[] = {"X", "Y", "Z"};
        for (int i = 0; i < 3; ++i) grid->addWidget(new QLabel(axes[i], frame), 0, i + 1);
        addtriple(grid, 1, "Place", "Place(%1)", at, editplace);
        addtriple(grid, 2, "Turn about, deg", "Turn(%1)", turn, editturn);
        rows->addLayout(grid);
        columns->addWidget(frame, 1);
    }
    template <typename Edit>
    void addtriple(QGridLayout* grid, int row, const char* caption, const char* name,
                   QLineEdit* (&boxes)[3], Edit edit) {
        grid->addWidget(new QLabel(caption), row, 0);
        for (int i = 0; i < 3; ++i) {
            boxes[i] = new QLineEdit;
            boxes[i]->setObjectName(QString(name).arg(i));
            grid->addWidget(boxes[i], row, i + 1);
            follow(boxes[i],
                   [this, i, edit](const QString& text) { edit(form, i, text.toStdString()); });
        }
    }
    // The object follows each key, the views once the field is left.
    template <typename Take>
    void follow(QLineEdit* box, Take take) {
        connect(box, &QLineEdit::textEdited, this,
                guardedhandler([this, take](const QString& text) {
                    take(text);
                    showform();
                }));
        connect(box, &QLineEdit::editingFinished, this, guardedhandler([this] {
                    if (std::exchange(edited, false)) redrawall();
                }));
    }
    void buildpreview(QBoxLayout* columns) {
        auto* const frame = new QGroupBox("Preview", this);
        auto* const rows = new QVBoxLayout(frame);
        preview = new objectpicture(frame);
        preview->setObjectName("preview");
        rows->addWidget(preview);
        columns->addWidget(frame, 2);
    }
    void buildbuttons(QBoxLayout* rows) {
        auto* const row = new QHBoxLayout;
        const auto add = [&](const char* name, const char* caption, auto action) {
            newaction(name, caption, this, row, action);
        };
        add("Command1", "Open...", [this] {
            getobject(form);
            if (form.chosen < 0) list->clearSelection();
            showobject();
        });
        add("Command2", "Picture...", [this] {
            choosepicture(form);
            showpicture();
        });
        add("Command3", "Accept", [this] {
            acceptobject(form);
            showform();
        });
        add("Command4", "Reset", [this] {
            resetobject(form);
            showobject();
        });
        row->addStretch(1);
        add("Command5", "Ready", [this] { accept(); });
        rows->addLayout(row);
    }
    // Another object: other variables.
    void showobject() {
        auto* const inside = new QWidget;
        auto* const grid = new QGridLayout(inside);
        grid->setContentsMargins(0, 0, 6, 0);
        values.clear();
        for (int i = 0; i < int(form.labels.size()); ++i) {
            auto* const box = new QLineEdit(inside);
            box->setObjectName(QString("Text1(%1)").arg(i));
            box->setMinimumWidth(90);
            auto* const label = new QLabel(qtext(form.labels[std::size_t(i)]), inside);
            label->setObjectName(QString("Label1(%1)").arg(i));
            label->setWordWrap(true);
            label->setBuddy(box);
            grid->addWidget(label, i, 0);
            grid->addWidget(box, i, 1);
            values.push_back(box);
            follow(box,
                   [this, i](const QString& text) { editvariable(form, i, text.toStdString()); });
        }
        grid->setColumnStretch(0, 1);
        grid->setRowStretch(int(form.labels.size()), 1);
        area->setWidget(inside);
        description->setText(qname(form.description));
        showpicture();
        showform();
        edited = false;
    }
    void showpicture() {
        picture->clear();
        if (form.picture.empty()) return;
        QImageReader reader(qtext(form.picture));
        reader.setAutoTransform(true);
        const QSize most(picturewidth - 4, pictureheight - 4);
        if (const QSize size = reader.size();
            size.isValid() && reader.supportsOption(QImageIOHandler::ScaledSize))
            reader.setScaledSize(size.scaled(most, Qt::KeepAspectRatio));
        const QImage image = reader.read();
        if (image.isNull()) {
            picture->setText(tr("No picture:\n%1").arg(reader.errorString()));
            return;
        }
        picture->setPixmap(
            QPixmap::fromImage(image.scaled(most, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
    }
    void showform() {
        edited = true;
        for (std::size_t i = 0; i < values.size(); ++i) showtext(values[i], form.values[i]);
        for (std::size_t i = 0; i < 3; ++i) {
            showtext(at[i], form.at[i]);
            showtext(turn[i], form.turn[i]);
        }
        message->setText(qtext(form.message));
        if (form.ready)
            preview->takeobject();
        else
            preview->empty();
    }

    static constexpr int picturewidth = 190, pictureheight = 150;
    objectsform form;
    bool edited = false;
    QListWidget* list;
    QLabel *picture, *description, *message;
    QScrollArea* area;
    std::vector<QLineEdit*> values;
    QLineEdit *at[3], *turn[3];
    objectpicture* preview;
};

class defobjectdialog : public QDialog {
  public:
    defobjectdialog() : QDialog(themainwindow) {
        setWindowTitle("Define Object");
        form = opendefobject();
        auto* const rows = new QVBoxLayout(this);
        addframe(rows, "Description", "description")->setText(qname(form.description));
        addframe(rows, "Variables", "variables")
            ->setText("NMESH : Mesh refine factor\nXSC : X-Scale\nYSC : Y-Scale\nZSC : Z-Scale");
        addframe(rows, "Contents", "contents")->setText(qtext(form.contents));
        QLabel* const message = newmessageline("message", this, rows);
        auto* const row = new QHBoxLayout;
        connect(newbutton("Command1", "Save...", this, row), &QPushButton::clicked, this,
                guardedhandler([this, message](bool) {
                    savedefobject(form);
                    message->setText(qtext(form.message));
                }));
        row->addStretch(1);
        connect(newbutton("Command2", "Ready", this, row), &QPushButton::clicked, this,
                &QDialog::accept);
        rows->addLayout(row);
        setMinimumWidth(420);
    }

  private:
    QLabel* addframe(QBoxLayout* rows, const char* caption, const char* name) {
        auto* const frame = new QGroupBox(caption, this);
        auto* const inside = new QVBoxLayout(frame);
        auto* const label = new QLabel(frame);
        label->setObjectName(name);
        label->setWordWrap(true);
        inside->addWidget(label);
        rows->addWidget(frame);
        return label;
    }
    defobjectform form;
};

}  // namespace

QDialog* makeobjects() {
    return new objectsdialog;
}

QDialog* makedefobject() {
    return new defobjectdialog;
}
