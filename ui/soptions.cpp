// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Post Process Options": shows the form of post/soptions. It hides while the user
// selects elements and comes back when the selection ends.
#include "post/soptions.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>

#include "core/model.h"
#include "core/session.h"
#include "edit/Mouseprocedures.h"
#include "post/components.h"
#include "post/contour.h"
#include "post/stressfile.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"

namespace {

class postoptions : public QDialog {
  public:
    postoptions() : QDialog(themainwindow) {
        setWindowTitle("Post Process Options");
        auto* const rows = new QVBoxLayout(this);
        auto* const columns = new QHBoxLayout;
        rows->addLayout(columns);
        buildplot(addcolumn(columns));
        buildcomponents(addcolumn(columns));
        buildkinds(addcolumn(columns));
        message = new QLabel(this);
        message->setObjectName("message");
        auto* const foot = new QHBoxLayout;
        foot->addWidget(message, 1);
        QPushButton* const done = newbutton("Ready", "Ready", this, foot);
        done->setDefault(true);
        connect(done, &QPushButton::clicked, this, guardedhandler([this](bool) { finish(); }));
        rows->addLayout(foot);
        showsoptions(form);
        showform();
        connect(this, &QDialog::finished, this, guardedhandler([this](int) {
                    soptionsclosed();
                    waiting.end();
                }));
    }

  private:
    using action = std::function<void(int)>;

    static QVBoxLayout* addcolumn(QBoxLayout* columns) {
        auto* const column = new QVBoxLayout;
        columns->addLayout(column);
        return column;
    }
    QGridLayout* addframe(QBoxLayout* column, const char* caption) {
        auto* const frame = new QGroupBox(QString(caption).trimmed(), this);
        column->addWidget(frame);
        auto* const grid = new QGridLayout(frame);
        grid->setVerticalSpacing(3);
        return grid;
    }
    // An option in a row of its frame; a click makes the choice and shows what became of it.
    QRadioButton* addoption(QGridLayout* grid, const char* name, int i, const char* caption,
                            const action& choose) {
        auto* const b = new QRadioButton(QString(caption).trimmed(), this);
        b->setObjectName(QString("%1(%2)").arg(name).arg(i));
        grid->addWidget(b, grid->rowCount(), 0);
        connect(b, &QRadioButton::clicked, this, guardedhandler([this, choose, i](bool) {
                    choose(i);
                    showform();
                }));
        return b;
    }
    void buildplot(QBoxLayout* column) {
        QGridLayout* grid = addframe(column, "Select contour plot type");
        kind[0] = addoption(grid, "Option1", 0, "Contour Lines", choosefilled);
        kind[1] = addoption(grid, "Option1", 1, "Filled Contour", choosefilled);
        grid = addframe(column, "Select data for contour plot ");
        const action data = [](int i) { choosedata(1 - i); };
        source[0] = addoption(grid, "Option3", 0, "Displacements contour plot", data);
        source[1] = addoption(grid, "Option3", 1, "Stresses contour plot", data);
        buildscale(addframe(column, "Index Scale"));
        buildset(addframe(column, "Define elements to post-process"));
        column->addStretch(1);
    }
    void buildscale(QGridLayout* grid) {
        const action scale = [this](int i) { choosescale(form, i == 0); };
        scaling[0] = addoption(grid, "Option5", 0, "Auto", scale);
        scaling[1] = addoption(grid, "Option5", 1, "Manual", scale);
        const auto addbound = [&](const char* caption, const char* name) {
            const int row = grid->rowCount();
            grid->addWidget(new QLabel(caption, this), row, 0);
            auto* const box = new QLineEdit(this);
            box->setObjectName(name);
            grid->addWidget(box, row, 1);
            return box;
        };
        maximum = addbound("Maximum", "Text2");
        minimum = addbound("Minimum", "Text3");
    }
    void buildset(QGridLayout* grid) {
        static const char* const captions[] = {"All elements", "Group", "Selection"};
        for (int i = 0; i < 3; ++i)
            elements[i] = addoption(grid, "Option6", i, captions[i], [this](int set) {
                form.group = groups->currentIndex();
                chooseset(form, set);
            });
        groups = new QComboBox(this);
        groups->setObjectName("Combo1");
        std::vector<std::string> names;
        for (int g = 1; g <= ngroups(); ++g) names.push_back(groupname(g));
        showlist(groups, names, 0);
        grid->addWidget(groups, 2, 1);
        connect(groups, &QComboBox::activated, this, guardedhandler([this](int i) {
                    form.group = i;
                    getgr(form);
                    showform();
                }));
        auto* const select = new QPushButton("Select", this);
        select->setObjectName("Select");
        grid->addWidget(select, 3, 1);
        connect(select, &QPushButton::clicked, this, guardedhandler([this](bool) {
                    readform();
                    hide();
                    startpostselection();
                }));
        const int row = grid->rowCount();
        grid->addWidget(new QLabel(tr("Number of elements"), this), row, 0);
        count = new QLineEdit(this);
        count->setObjectName("Text1");
        count->setReadOnly(true);
        grid->addWidget(count, row, 1);
    }
    void buildcomponents(QBoxLayout* column) {
        QGridLayout* const grid = addframe(column, "Select stress component for contour plot");
        for (int i = 0; i < 13; ++i) {
            components[i] = addoption(grid, "Option9", i, stresscomponents[i].caption,
                                      [](int c) { choosecomponent(c + 1); });
            grid->addWidget(new QLabel(stresscomponents[i].label, this), grid->rowCount() - 1, 1);
        }
        buildfurther(grid);
        column->addStretch(1);
    }
    // The results beyond, in a list behind the others.
    void buildfurther(QGridLayout* grid) {
        further = addoption(grid, "Option9", toldcomponents, "Further results", [this](int) {
            choosecomponent(list->currentRow() + toldcomponents + 1);
        });
        list = new QListWidget(this);
        list->setObjectName("List1");
        for (int i = toldcomponents; i < componentcount; ++i) {
            const componentrow& row = stresscomponents[i];
            list->addItem(QString("%1 (%2)").arg(row.caption, row.label));
        }
        list->setCurrentRow(0);
        grid->addWidget(list, grid->rowCount(), 0, 1, 2);
        connect(list, &QListWidget::currentRowChanged, this, guardedhandler([this](int i) {
                    choosecomponent(i + toldcomponents + 1);
                    showform();
                }));
    }
    void buildkinds(QBoxLayout* column) {
        QGridLayout* grid = addframe(column, "Select stress type");
        averages[0] = addoption(grid, "Option7", 0, "Nodal Element stress", chooseaverage);
        averages[1] = addoption(grid, "Option7", 1, "Nodal Stress Average", chooseaverage);
        grid = addframe(column, "Select stress coordinate system");
        const action axes = [](int i) { chooseaxes(1 - i); };
        systems[0] = addoption(grid, "Option8", 0, "Global system coordinates", axes);
        systems[1] = addoption(grid, "Option8", 1, "Local element coordinates", axes);
        grid = addframe(column, "Select displacement");
        for (int i = 0; i < directioncount; ++i)
            ways[i] = addoption(grid, "Option4", i, directions[i].caption, choosedirection);
        column->addStretch(1);
    }

    void readform() {
        form.maximum = maximum->text().toStdString();
        form.minimum = minimum->text().toStdString();
    }
    void finish() {
        readform();
        if (storesoptions(form)) return accept();
        message->setText(qtext(form.message));
    }
    void selectionended() {
        endpostselection(form);
        showmodal(this);
        showform();
    }
    void showform() {
        kind[contourfilled ? 1 : 0]->setChecked(true);
        source[contourdata == displacementdata ? 0 : 1]->setChecked(true);
        scaling[indexautoscale ? 0 : 1]->setChecked(true);
        for (QLineEdit* box : {maximum, minimum}) box->setEnabled(!indexautoscale);
        if (!maximum->isModified()) showtext(maximum, form.maximum);
        if (!minimum->isModified()) showtext(minimum, form.minimum);
        elements[postset]->setChecked(true);
        groups->setEnabled(postset == setofgroup);
        if (groups->currentIndex() != form.group) groups->setCurrentIndex(form.group);
        count->setText(QString::number(postcount));
        if (stresscomp <= toldcomponents) {
            components[stresscomp - 1]->setChecked(true);
        } else {
            further->setChecked(true);
            list->setCurrentRow(stresscomp - toldcomponents - 1);
        }
        averages[stressaverage ? 1 : 0]->setChecked(true);
        systems[stressglobal ? 0 : 1]->setChecked(true);
        ways[dispcontour]->setChecked(true);
        message->setText(qtext(form.message));
    }

    soptionsform form;
    QRadioButton *kind[2], *source[2], *scaling[2], *elements[3], *components[toldcomponents],
        *averages[2], *systems[2], *ways[directioncount];
    QLineEdit *maximum, *minimum, *count;
    QRadioButton* further;
    QListWidget* list;
    QComboBox* groups;
    QLabel* message;
    selectionwait waiting{postselpending, [this] { selectionended(); }};
};

}  // namespace

QDialog* makesoptions() {
    return new postoptions;
}
