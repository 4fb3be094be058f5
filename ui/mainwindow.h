// SPDX-License-Identifier: GPL-3.0-or-later
// The room ui: the window, its menus and dialogs, the script player. It alone knows the toolkit;
// what can be right or wrong is decided in the forms of the rooms below.
//
// The main window: menus, toolbars, left bar, the four views, command line and status line.
#pragma once

#include <QMainWindow>
#include <array>

#include "core/platform.h"
#include "ui/modellock.h"

class QCloseEvent;
class QComboBox;
class QFrame;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QTimer;
class QToolBar;
class QVBoxLayout;
class QToolButton;
class legendwidget;
class startpage;
class paletteswatches;
class plotswitches;
class viewwidget;
struct surface;

class mainwindow : public QMainWindow {
    Q_OBJECT
  public:
    mainwindow();
    ~mainwindow() override;

    viewwidget* view(int nview) const { return views[std::size_t(nview - 1)]; }
    twipbox workarea() const;  // of the workspace, twips
    void placeview(int nview, const twipbox& box, bool shown);
    void showstatus(const QString& text);
    void refresh();  // everything that mirrors the session's state
    void crosspointer(bool on);
    surface* legendsurface();  // beside the views
    void focusstart();         // the keyboard to what an empty model begins with

    bool ending = false;     // the program has decided to end: no more questions
    bool remembers = false;  // its place and toolbars, for the next start

  protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void buildtoolbars();
    void buildworkspace();
    void buildleftbar();
    void buildcoordinates(QVBoxLayout* rows);
    void buildcombinations(QVBoxLayout* rows);
    void buildmodes(QVBoxLayout* rows);
    void buildlegend(QVBoxLayout* rows);
    void buildcomment(QVBoxLayout* rows);
    void buildcommandline();
    void runtypedcommand();
    bool commandkey(const QKeyEvent* event);
    bool takestyping(const QKeyEvent* event);
    void runtypedcoordinates();
    void refreshcoordinates();
    void refreshcombinations();
    void refreshresults();
    void refreshselected();
    void showsums();
    void showcomment();
    void placeleftbar();
    double pixelspertwip() const;

    QWidget* workspace = nullptr;
    QWidget* leftbar = nullptr;
    std::array<viewwidget*, 4> views{};
    std::array<QLineEdit*, 3> coordinates{};
    std::array<QLabel*, 3> coordinatelabels{};
    QComboBox *selectmethod = nullptr, *combinations = nullptr, *inputfield = nullptr,
              *modes = nullptr;
    QGroupBox *modegroup = nullptr, *legendframe = nullptr, *commentframe = nullptr;
    legendwidget* legend = nullptr;
    paletteswatches* swatches = nullptr;
    QLineEdit* modenumber = nullptr;
    QPlainTextEdit* comment = nullptr;
    QLabel *statuslabel = nullptr, *snaplabel = nullptr, *resultlabel = nullptr,
           *dimensionlabel = nullptr, *stalelabel = nullptr, *selectedlabel = nullptr;
    QTimer* sumslater = nullptr;
    std::size_t sumsof = 0;  // stamp of the selection that the sums on show belong to
    QToolButton *warningbutton = nullptr, *unitsbutton = nullptr;
    plotswitches* switches = nullptr;
    startpage* start = nullptr;
    std::string commentshown;
    bool refreshing = false;
    modellock open;
};

extern mainwindow* themainwindow;
// A property of it while a demonstration plays: dialogs hold up no other window.
const char* const freewindows = "freewindows";

// Shows the window: maximised, or in a size of its own that does not depend on the screen.
void showmainwindow(mainwindow& window, bool fixedsize);
