// SPDX-License-Identifier: GPL-3.0-or-later
// Building and refreshing of the main window.
#include "ui/mainwindow.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCloseEvent>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QStyle>
#include <QTimer>
#include <QToolButton>
#include <algorithm>

#include "core/colours.h"
#include "core/journal.h"
#include "core/model.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/Mouseprocedures.h"
#include "edit/commands.h"
#include "edit/selectionsums.h"
#include "files/filemenu.h"
#include "files/runlog.h"
#include "files/solverlock.h"
#include "post/shapes.h"
#include "tools/unitsform.h"
#include "ui/actionrows.h"
#include "ui/controlnames.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/examples.h"
#include "ui/icons.h"
#include "ui/menus.h"
#include "ui/mousepresets.h"
#include "ui/qtsurface.h"
#include "ui/record.h"
#include "ui/reportviewer.h"
#include "ui/startpage.h"
#include "ui/steps.h"
#include "ui/theme.h"
#include "ui/toolbars.h"
#include "ui/viewkeys.h"
#include "ui/viewwidget.h"
#include "ui/windowsettings.h"
#include "view/moddraw.h"
#include "view/scaleview.h"
#include "view/setviews.h"

mainwindow* themainwindow;

static const double twipsperinch = 1440;

mainwindow::mainwindow() {
    themainwindow = this;
    setObjectName("main");
    setWindowIcon(programicon());
    setAcceptDrops(true);
    fillactions();
    buildmenus(menuBar());
    buildtoolbars();
    buildworkspace();
    buildleftbar();
    buildcommandline();
    // One way round with the Tab key: method, coordinates, lists, command line.
    setTabOrder(selectmethod, coordinates[0]);
    setTabOrder(coordinates[0], coordinates[1]);
    setTabOrder(coordinates[1], coordinates[2]);
    setTabOrder(coordinates[2], combinations);
    setTabOrder(combinations, inputfield);
    refresh();
    namecontrols(this);
}

// A dialog that is still open gives up the keyboard before its fields go.
mainwindow::~mainwindow() {
    for (QDialog* dialog : findChildren<QDialog*>(QString(), Qt::FindDirectChildrenOnly)) {
        dialog->hide();
        delete dialog;
    }
    themainwindow = nullptr;
}

double mainwindow::pixelspertwip() const {
    return logicalDpiX() / twipsperinch;
}

// --- workspace ----------------------------------------------------------------------------------

void mainwindow::buildworkspace() {
    QWidget* const central = new QWidget(this);
    auto* const rows = new QVBoxLayout(central);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    workspace = new QWidget(central);
    workspace->setObjectName("workspace");
    workspace->setMinimumSize(200, 100);
    workspace->installEventFilter(this);
    rows->addWidget(workspace, 1);
    setCentralWidget(central);
    for (int v = 1; v <= 4; ++v) views[std::size_t(v - 1)] = new viewwidget(v, workspace);
    start = new startpage(view(1));
}

static const char* const commandprompt = "Enter Command or type help";

void mainwindow::buildcommandline() {
    auto* const strip = new QWidget(centralWidget());
    auto* const row = new QHBoxLayout(strip);
    row->setContentsMargins(6, 3, 6, 3);
    auto* const run = new QToolButton(strip);
    run->setObjectName("Command1");
    run->setText(tr("Command"));
    inputfield = new QComboBox(strip);
    inputfield->setObjectName("inputfield");
    inputfield->setEditable(true);
    inputfield->setInsertPolicy(QComboBox::NoInsert);
    inputfield->setCompleter(nullptr);  // what is typed runs, not what the history would add
    inputfield->lineEdit()->setObjectName("inputtext");
    for (QWidget* part :
         {static_cast<QWidget*>(inputfield), static_cast<QWidget*>(inputfield->lineEdit())})
        part->setAccessibleName(tr("Command"));
    inputfield->lineEdit()->setPlaceholderText(commandprompt);
    inputfield->setMinimumWidth(260);
    inputfield->installEventFilter(this);  // it has the focus, and hands its keys to the line
    statuslabel = new QLabel(strip);
    statuslabel->setObjectName("Label1");
    statuslabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    statuslabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    snaplabel = new QLabel(strip);
    snaplabel->setObjectName("snap");
    warningbutton = new QToolButton(strip);
    warningbutton->setObjectName("warnings");
    warningbutton->setIcon(style()->standardIcon(QStyle::SP_MessageBoxWarning));
    warningbutton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    warningbutton->setAutoRaise(true);
    warningbutton->setToolTip(tr("Show what the last analysis warned of"));
    dimensionlabel = new QLabel(tr("2-D analysis"), strip);
    dimensionlabel->setObjectName("dimension");
    dimensionlabel->setToolTip(tr("Analyse, Options... chooses between 2-D and 3-D"));
    row->addWidget(run);
    row->addWidget(inputfield);
    stalelabel = new QLabel(staletext, strip);
    stalelabel->setObjectName("stale");
    stalelabel->setStyleSheet("color: #c05000; font-weight: bold");
    row->addWidget(statuslabel, 1);
    selectedlabel = new QLabel(strip);
    selectedlabel->setObjectName("selected");
    selectedlabel->setTextFormat(Qt::PlainText);
    row->addWidget(selectedlabel);
    sumslater = new QTimer(this);
    sumslater->setSingleShot(true);
    sumslater->setInterval(120);  // milliseconds: clicks in a row wait for no sum
    connect(sumslater, &QTimer::timeout, this, [this] { showsums(); });
    row->addWidget(warningbutton);
    row->addWidget(dimensionlabel);
    row->addWidget(stalelabel);
    row->addWidget(snaplabel);
    unitsbutton = new QToolButton(strip);
    unitsbutton->setObjectName("unitsnow");
    unitsbutton->setAutoRaise(true);
    unitsbutton->setFocusPolicy(Qt::NoFocus);  // the keyboard has the menu
    unitsbutton->setToolTip(tr("The units of the model: Settings, Units..."));
    connect(unitsbutton, &QToolButton::clicked, this, [] { theplatform().showdialog("Units"); });
    row->addWidget(unitsbutton);
    centralWidget()->layout()->addWidget(strip);
    connect(run, &QToolButton::clicked, this, [this] { runtypedcommand(); });
    connect(warningbutton, &QToolButton::clicked, this, [] { showlog(solverlog().path); });
}

// The point in work beside what the active view shows.
static bool isoutsideview() {
    const keptpoint kept;
    prepareview(activeview);
    projectplace(activeview, modelx, modely, modelz);
    return !(scrx >= 0 && scrx <= vieww && scry >= 0 && scry <= viewh);
}

void mainwindow::runtypedcommand() {
    const QString text = inputfield->currentText();
    if (text.isEmpty()) return keyhandler(keyenter);  // the end of a mode, as outside the line
    inputfield->addItem(text);
    inputfield->setCurrentIndex(-1);
    inputfield->clearEditText();
    const double x = modelx, y = modely, z = modelz;
    runcommand(text.toStdString());
    const bool moved = x != modelx || y != modely || z != modelz;
    if (moved && isoutsideview())
        showstatus(tr("Outside the view: Ctrl+0 fits it.   ") + qtext(statusline()));
}

// --- geometry -----------------------------------------------------------------------------------

twipbox mainwindow::workarea() const {
    const double twip = pixelspertwip();
    return {0, 0, workspace->width() / twip, workspace->height() / twip};
}

void mainwindow::placeview(int nview, const twipbox& box, bool shown) {
    const double twip = pixelspertwip();
    viewwidget* const v = view(nview);
    if (box.width > 0 && box.height > 0)
        v->setGeometry(int(box.left * twip), int(box.top * twip), int(box.width * twip),
                       int(box.height * twip));
    v->setVisible(shown);
    if (shown) v->sizesurface();
    placeleftbar();
}

static bool isenter(const QEvent* event) {
    if (event->type() != QEvent::KeyPress) return false;
    const int key = static_cast<const QKeyEvent*>(event)->key();
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

// Keys of the command line. True for one that goes no further; Up and Down between the commands of
// the history are the list's own.
bool mainwindow::commandkey(const QKeyEvent* event) {
    const int last = inputfield->count() - 1;
    if (isenter(event)) {
        const QString text = inputfield->currentText();
        const recordedline line(text.isEmpty() ? text : "command " + text);
        runtypedcommand();
    } else if (event->key() == Qt::Key_Escape) {
        keyhandler(keyescape);
    } else if (event->key() == Qt::Key_Up && inputfield->currentIndex() < 0) {
        inputfield->setCurrentIndex(last);  // upwards from the empty line lies the last command
    } else if (event->key() == Qt::Key_Down && inputfield->currentIndex() == last) {
        inputfield->setCurrentIndex(-1);
        inputfield->clearEditText();
    } else {
        return false;
    }
    return true;
}

bool mainwindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == workspace && event->type() == QEvent::Resize) {
        arrangeviews();
        redrawall();
        return false;
    }
    // Enter gives the point and goes no further: to the window it means the end of the mode.
    if (isenter(event) && std::ranges::find(coordinates, watched) != coordinates.end()) {
        runtypedcoordinates();
        return true;
    }
    if (watched == inputfield) {
        if (event->type() == QEvent::FocusIn) inputfield->lineEdit()->setPlaceholderText("");
        if (event->type() == QEvent::FocusOut)
            inputfield->lineEdit()->setPlaceholderText(commandprompt);
        if (event->type() == QEvent::KeyPress && commandkey(static_cast<QKeyEvent*>(event)))
            return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

void mainwindow::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    if (isMinimized()) return;
    const double twip = pixelspertwip();
    double wide = width() / twip, high = height() / twip;
    const double before[] = {wide, high};
    leastwindow(wide, high);
    if (wide != before[0] || high != before[1]) resize(int(wide * twip) + 1, int(high * twip) + 1);
    wraptoolbars(this);
}

void mainwindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::PaletteChange) return;
    menuBar()->update();
    if (!remembers || !doviewsfollow()) return;
    followtheme();
    redrawall();
}

// --- dropped files -------------------------------------------------------------------------------

static QStringList filesdropped(const QDropEvent* event) {
    QStringList files;
    for (const QUrl& url : event->mimeData()->urls())
        if (const QString file = url.toLocalFile(); !file.isEmpty()) files << file;
    return files;
}

void mainwindow::dragEnterEvent(QDragEnterEvent* event) {
    if (!menulock && !filesdropped(event).isEmpty()) event->acceptProposedAction();
}

// After the drop is over: a question would hold up the window that the file comes from.
void mainwindow::dropEvent(QDropEvent* event) {
    const QStringList files = filesdropped(event);
    event->acceptProposedAction();
    QTimer::singleShot(0, this, [files] { openmodels(files); });
}

// --- keys and closing ---------------------------------------------------------------------------

void mainwindow::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Escape:
            keyhandler(keyescape);
            break;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            keyhandler(keyenter);
            break;
        case Qt::Key_Space:
            keyhandler(keyspace);
            break;
        case Qt::Key_Backspace:
            keyhandler(keyback);
            break;
        default:
            if (!isviewkey(event) && !takestyping(event)) QMainWindow::keyPressEvent(event);
    }
}

// What is typed while no field has the keyboard begins a command.
bool mainwindow::takestyping(const QKeyEvent* event) {
    const QString text = event->text();
    const bool held =
        event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    if (held || text.isEmpty() || !text[0].isPrint() || !inputfield->isEnabled()) return false;
    inputfield->setFocus();
    inputfield->lineEdit()->insert(text);
    return true;
}

void mainwindow::closeEvent(QCloseEvent* event) {
    if (!ending && (menulock || !exitprompt(closemodes::user))) {
        event->ignore();
        return;
    }
    deletecontrolfile();
    if (remembers) rememberwindow(*this);
    event->accept();
}

// --- state --------------------------------------------------------------------------------------

void mainwindow::showstatus(const QString& text) {
    statuslabel->setText(text);
    statuslabel->setToolTip(text);
}

void mainwindow::crosspointer(bool on) {
    for (viewwidget* v : views) on ? v->setCursor(Qt::CrossCursor) : v->unsetCursor();
}

void mainwindow::showsums() {
    const QString counts = qtext(selectioncounts());
    const QString sums = counts.isEmpty() ? counts : qtext(sumstext(sumselection()));
    const QString text = sums.isEmpty() ? counts : counts + ": " + sums;
    const int most = std::max(200, width() / 2 - 60);  // pixels that the prompt leaves
    selectedlabel->setText(selectedlabel->fontMetrics().elidedText(text, Qt::ElideRight, most));
    selectedlabel->setToolTip(text);
    sumsof = selectionstamp();
}

// The counts at once, the sums of a large selection when the user pauses.
void mainwindow::refreshselected() {
    const int atonce = 20000;  // items
    if (selectionstamp() == sumsof) return;
    if (nodesel(0) + int(elemsel(0)) <= atonce) return showsums();
    selectedlabel->setText(qtext(selectioncounts()));
    sumslater->start();
}

void mainwindow::refresh() {
    if (refreshing || !snaplabel) return;
    refreshing = true;
    refreshmenus();
    if (remembers) rememberfiles(recentfiles());
    if (remembers) remembersymbols();
    if (const long other = remembers ? open.follow(modelname) : 0; other != 0)
        QTimer::singleShot(0, this, [other] {
            theplatform().message(modelname + " is open in another window, process " +
                                      std::to_string(other) +
                                      ". The one that saves last replaces what the other has "
                                      "saved; save under another name to keep both.",
                                  icons::exclamation);
        });
    snaplabel->setText(statusofsnap());
    unitsbutton->setText(qtext(unitsinwords()));
    showsteps();
    stalelabel->setVisible(isstaleshown());
    selectmethod->setCurrentIndex(int(selecttype));
    refreshcoordinates();
    refreshcombinations();
    // The frame follows the font of the element labels, as the legend does.
    const QFont font = qtfont(elemlabelfont);
    for (QWidget* part : {static_cast<QWidget*>(modegroup), static_cast<QWidget*>(resultlabel),
                          static_cast<QWidget*>(commentframe)})
        if (part->font() != font) part->setFont(font);
    refreshresults();
    refreshselected();
    commentframe->setVisible(commentvisible);
    if (auto* const notes = findChild<QToolButton*>("notesbutton"))
        notes->setChecked(commentvisible);
    showcomment();
    start->refresh();
    dimensionlabel->setVisible(dim2d);
    const int warned = solverlog().warnings;
    warningbutton->setVisible(warned > 0);
    warningbutton->setText(warned == 1 ? tr("1 warning") : tr("%1 warnings").arg(warned));
    refreshing = false;
}

void mainwindow::focusstart() {
    start->takefocus();
}

void showmainwindow(mainwindow& window, bool fixedsize) {
    window.setWindowTitle(qname(apptitle + ": " + modelname));
    window.resize(1280, 860);
    window.remembers = !fixedsize;
    if (!fixedsize) restoresymbols();
    if (!fixedsize) followtheme();
    if (!fixedsize) setrecentfiles(rememberedfiles());
    if (!fixedsize) setmouse(rememberedmouse());
    if (!fixedsize) showtoolbars(&window, rememberedtoolbars());
    if (fixedsize || restorewindow(window))
        window.show();
    else
        window.showMaximized();
    window.view(1)->setFocus();  // not the notes, where a key of a view would be written
    textcaption();
    setoneview();
    redrawall();
    if (!fixedsize) window.focusstart();
}
