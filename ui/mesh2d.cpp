// SPDX-License-Identifier: GPL-3.0-or-later
// The windows "Mesh Select" and "2-D Mesh Generator". The generator hides while graphic elements
// are picked for an edge and comes back when the picking ends.
#include "tools/mesh2d.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

#include "core/platform.h"
#include "edit/Mouseprocedures.h"
#include "ui/cardhelp.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/meshpicture.h"

namespace {

class meshdialog : public sidedialog {
  public:
    meshdialog() : sidedialog(themainwindow) {
        setWindowTitle("2-D Mesh Generator");
        auto* const rows = new QVBoxLayout(this);
        buildchoices(rows);
        buildedges(rows);
        auto* const frame = new QGroupBox("Message", this);
        auto* const inside = new QVBoxLayout(frame);
        message = new QLabel(frame);
        message->setObjectName("message");
        message->setWordWrap(true);
        message->setMinimumHeight(3 * fontMetrics().height());
        message->setAlignment(Qt::AlignTop | Qt::AlignLeft);
        inside->addWidget(message);
        rows->addWidget(frame);
        buildbuttons(rows);
        setMinimumWidth(520);
        form = openmesh2d();
        showform();
        connect(this, &QDialog::finished, this, guardedhandler([this](int) {
                    waiting.end();
                    closemesh2d(form);
                    addready();
                }));
    }

  private:
    void buildchoices(QBoxLayout* rows) {
        auto* const frame = new QGroupBox("Mesh", this);
        auto* const grid = new QGridLayout(frame);
        const auto add = [&](int row, const char* caption, const char* name, auto choose) {
            auto* const list = new QComboBox(frame);
            list->setObjectName(name);
            auto* const label = new QLabel(caption, frame);
            label->setBuddy(list);
            grid->addWidget(label, row, 0);
            grid->addWidget(list, row, 1);
            connect(list, &QComboBox::activated, this, guardedhandler([this, choose](int i) {
                        choose(form, i);
                        showform();
                    }));
            return list;
        };
        kinds = add(0, "Mesh Type :", "Combo1", choosemeshtype);
        types = add(1, "Element Type :", "Combo2", chooseelementtype);
        names = add(2, "Group name :", "Combo3", choosemeshgroup);
        for (const char* kind : meshtypes) kinds->addItem(kind);
        nodes = new QLabel(frame);
        nodes->setObjectName("Label4");
        grid->addWidget(new QLabel("Nodes", frame), 1, 2);
        grid->addWidget(nodes, 1, 3);
        grid->addWidget(newcardbutton(this, types), 1, 4);
        grid->setColumnStretch(1, 1);
        grid->setColumnMinimumWidth(3, 24);
        rows->addWidget(frame);
    }
    void buildedges(QBoxLayout* rows) {
        auto* const frame = new QGroupBox("Edges", this);
        auto* const columns = new QHBoxLayout(frame);
        auto* const grid = new QGridLayout;
        for (int i = 0; i < 4; ++i) {
            auto* const b = new QPushButton(QString("Edge &%1").arg(i + 1), frame);
            b->setObjectName(QString("Edge(%1)").arg(i));
            b->setAutoDefault(false);
            counts[i] = new QLabel(frame);
            counts[i]->setObjectName(QString("count(%1)").arg(i));
            counts[i]->setMinimumWidth(60);
            counts[i]->setToolTip(tr("Nodes on edge %1").arg(i + 1));
            grid->addWidget(b, i, 0);
            grid->addWidget(counts[i], i, 1);
            buttons[i] = b;
            connect(b, &QPushButton::clicked, this, guardedhandler([this, i](bool) {
                        picture->setedge(i + 1);
                        startedge(form, i);
                        hide();
                    }));
        }
        grid->setRowStretch(4, 1);
        columns->addLayout(grid);
        example = new QGroupBox(frame);
        example->setObjectName("example");
        auto* const inside = new QVBoxLayout(example);
        picture = new meshpicture(example);
        inside->addWidget(picture);
        columns->addWidget(example, 1);
        rows->addWidget(frame, 1);
    }
    void buildbuttons(QBoxLayout* rows) {
        auto* const row = new QHBoxLayout;
        const auto add = [&](const char* name, const char* caption, auto action) {
            return newaction(name, caption, this, row, [this, action] {
                action(form);
                showform();
            });
        };
        generate = add("Command1", "Generate Mesh", generatemesh);
        equal = add("Command5", "Equal Spaces", equalspaces);
        equal->setToolTip(tr("Opposite edges get the spaces of the finer one"));
        add("Command2", "Accept", acceptmesh);
        add("Command3", "Reset", resetmesh);
        row->addStretch(1);
        newaction("Command4", "Ready", this, row, [this] { accept(); });
        rows->addLayout(row);
    }
    void edgeended() {
        storeedge(form);
        showmodal(this);
        showform();
        buttons[(edgeno + 1) % form.edges]->setFocus();
    }
    void showform() {
        kinds->setCurrentIndex(form.type);
        showlist(types, form.types, form.chosentype);
        showlist(names, form.groups, form.chosengroup);
        nodes->setText(qtext(form.typenodes));
        example->setTitle(qtext(form.frame));
        picture->setkind(form.type);
        for (int i = 0; i < 4; ++i) {
            buttons[i]->setVisible(i < form.edges);
            counts[i]->setVisible(i < form.edges);
            counts[i]->setText(qtext(form.count[std::size_t(i)]));
        }
        generate->setEnabled(form.cangenerate);
        equal->setEnabled(form.edges > 1);
        message->setText(qtext(form.message));
    }

    mesh2dform form;
    QComboBox *kinds, *types, *names;
    QLabel *nodes, *message;
    QLabel* counts[4];
    QPushButton *buttons[4], *generate, *equal;
    QGroupBox* example;
    meshpicture* picture;
    selectionwait waiting{edgepending, [this] { edgeended(); }};
};

class meshselect : public QDialog {
  public:
    meshselect() : QDialog(themainwindow) {
        setWindowTitle("Mesh Select");
        auto* const rows = new QVBoxLayout(this);
        auto* const kinds = new QGroupBox("Mesh", this);
        rows->addWidget(kinds);
        auto* const inside = new QVBoxLayout(kinds);
        // The generator opens once this window is gone.
        connect(newbutton("Command1", "2-D Mesh", this, inside), &QPushButton::clicked, this,
                [this] {
                    accept();
                    theplatform().showdialog("mesh2d");
                });
        newbutton("Command2", "3-D Mesh", this, inside)->setToolTip(nospace);
        QLabel* const hint = newmessageline("hint", this, inside);
        hint->setText(nospace);
        hint->setMinimumWidth(280);
        auto* const foot = new QHBoxLayout;
        foot->addStretch(1);
        connect(newbutton("Command3", "Close", this, foot), &QPushButton::clicked, this,
                &QDialog::reject);
        rows->addLayout(foot);
    }

  private:
    const QString nospace =
        tr("3-D Mesh does nothing: there is no mesh generator in space. Frames come from a mesh of "
           "type Line and from Connect 3-D.");
};

}  // namespace

QDialog* makemselect() {
    return new meshselect;
}

QDialog* makemesh2d() {
    return new meshdialog;
}
