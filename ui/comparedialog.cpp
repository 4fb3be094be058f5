// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Compare": which combination, or which mode, each of two views side by side shows. It
// stays beside the views, and the comparison stays when it closes.
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>

#include "core/diagramshown.h"
#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "post/compare.h"
#include "post/contour.h"
#include "post/secondplot.h"
#include "post/shapes.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"

namespace {

class comparedialog : public sidedialog {
  public:
    comparedialog() : sidedialog(themainwindow) {
        setWindowTitle("Compare");
        setProperty(besidemain, true);
        auto* const all = new QVBoxLayout(this);
        auto* const form = new QFormLayout;
        all->addLayout(form);
        left = addlist(form, "comparefirst", "View 1", [](int i) {
            menupostItem(modeshape).checked ? choosemode(i) : choosecombination(i);
        });
        right = addlist(form, "comparesecond", "View 2", [](int i) { startcomparison(i); });
        auto* const common = new QCheckBox("One scale for both views", this);
        common->setObjectName("comparescale");
        common->setChecked(second.commonscale);
        connect(common, &QCheckBox::toggled, this,
                guardedhandler([](bool on) { choosecommonscale(on); }));
        all->addWidget(common);
        message = newmessageline("message", this, all);
        auto* const row = new QHBoxLayout;
        all->addLayout(row);
        newaction("compareend", "End", this, row, [this] {
            endcomparison();
            accept();
        });
        newaction("compareready", "Ready", this, row, [this] { accept(); });
        if (!iscontour() && !iselementstress() && !isdeformed() && !diagramshown) showcontour();
        if (comparedwith() == 0) startcomparison(std::min(ncomb(), curlcomb == 1 ? 2 : 1));
        showform();
    }

  private:
    QComboBox* addlist(QFormLayout* form, const char* name, const char* caption,
                       std::function<void(int)> choose) {
        auto* const list = new QComboBox(this);
        list->setObjectName(name);
        form->addRow(caption, list);
        connect(list, &QComboBox::activated, this, guardedhandler([this, choose](int i) {
                    choose(i + 1);
                    showform();
                }));
        return list;
    }
    void showform() {
        std::vector<std::string> names = modelist();
        if (!menupostItem(modeshape).checked) {
            names.clear();
            for (int c = 1; c <= ncomb(); ++c) names.push_back(lcombname(c));
        }
        showlist(left, names, curlcomb - 1);
        showlist(right, names, comparedwith() - 1);
        message->setText(names.size() < 2 ? "There is only one to show" : "");
    }

    QComboBox *left, *right;
    QLabel* message;
};

}  // namespace

QDialog* makecompare() {
    return new comparedialog;
}
