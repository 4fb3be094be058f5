// SPDX-License-Identifier: GPL-3.0-or-later
// What to begin with, over the first view as long as the model is empty: a new drawing, a file, an
// example, a demonstration, a recent model.
#pragma once

#include <QFrame>
#include <vector>

class QBoxLayout;
class QGridLayout;
class QLabel;
class QToolButton;

class startpage : public QFrame {
  public:
    explicit startpage(QWidget* view);
    void refresh();  // shows it, or takes it away
    void takefocus();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QToolButton* addway(QBoxLayout* row, const char* name, const char* icon, const QString& caption,
                        void (*go)());
    void addexamples(QBoxLayout* rows);
    void showrecent();
    void place();

    QWidget* pictures;  // the examples
    QWidget* recent;
    std::vector<QToolButton*> recentbuttons;
    std::vector<std::string> recentshown;
};
