// SPDX-License-Identifier: GPL-3.0-or-later
// The platform on Qt.
#include "ui/qtplatform.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QTimer>
#include <QUrl>
#include <utility>

#include "core/runtime.h"
#include "core/session.h"
#include "core/views.h"
#include "files/filop.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/examples.h"
#include "ui/helpwindow.h"
#include "ui/mainwindow.h"
#include "ui/menus.h"
#include "ui/printing.h"
#include "ui/record.h"
#include "ui/viewwidget.h"
#include "ui/windowsettings.h"

static const int progressafter = 500;  // milliseconds of work before its progress shows

static std::deque<std::string>* queuedtargets() {
    return theqtplatform().scripted ? &theqtplatform().filequeue : nullptr;
}

qtplatform::qtplatform() {
    scripttargets = queuedtargets;
}

qtplatform& theqtplatform() {
    static qtplatform only;
    return only;
}

// --- talk ---------------------------------------------------------------------------------------

namespace {
// Boxes belong to the main window, which would have the keyboard after them: it goes back to the
// window beside that asked.
class keptwindow {
  public:
    ~keptwindow() {
        if (before && before != themainwindow && before->isVisible()) before->activateWindow();
    }

  private:
    QPointer<QWidget> before = QApplication::activeWindow();
};
}  // namespace

static QMessageBox::StandardButtons buttonsof(buttons set) {
    switch (set) {
        case buttons::ok:
            return QMessageBox::Ok;
        case buttons::okcancel:
            return QMessageBox::Ok | QMessageBox::Cancel;
        case buttons::yesno:
            return QMessageBox::Yes | QMessageBox::No;
        case buttons::yesnocancel:
            return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    }
    return QMessageBox::Ok;
}

static QMessageBox::StandardButton buttonof(answers answer) {
    switch (answer) {
        case answers::ok:
            return QMessageBox::Ok;
        case answers::cancel:
            return QMessageBox::Cancel;
        case answers::yes:
            return QMessageBox::Yes;
        case answers::no:
            return QMessageBox::No;
    }
    return QMessageBox::Ok;
}

static answers answerof(int button) {
    switch (button) {
        case QMessageBox::Yes:
            return answers::yes;
        case QMessageBox::No:
            return answers::no;
        case QMessageBox::Ok:
            return answers::ok;
        default:
            return answers::cancel;
    }
}

static QMessageBox::Icon iconof(icons icon) {
    switch (icon) {
        case icons::information:
            return QMessageBox::Information;
        case icons::question:
            return QMessageBox::Question;
        case icons::exclamation:
            return QMessageBox::Warning;
        case icons::critical:
            return QMessageBox::Critical;
        case icons::none:
            return QMessageBox::NoIcon;
    }
    return QMessageBox::NoIcon;
}

static void setcaptions(QMessageBox& window, const messagebox& box) {
    static const QMessageBox::StandardButton yesnocancel[] = {QMessageBox::Yes, QMessageBox::No,
                                                              QMessageBox::Cancel};
    static const QMessageBox::StandardButton okcancel[] = {QMessageBox::Ok, QMessageBox::Cancel};
    const bool three = box.set == buttons::yesno || box.set == buttons::yesnocancel;
    for (std::size_t i = 0; i < box.captions.size(); ++i)
        if (QAbstractButton* const b = window.button(three ? yesnocancel[i] : okcancel[i]))
            b->setText(qtext(box.captions[i]));
}

answers qtplatform::show(const messagebox& box) {
    lastmessage = box.text;
    const answers answer = answered(box);
    if (box.set != buttons::ok) recordanswer(answer);
    return answer;
}

answers qtplatform::answered(const messagebox& box) {
    if (scripted) {
        if (box.set == buttons::ok) return answers::ok;
        if (answerqueue.empty()) {
            unanswered = box.text;
            return box.set == buttons::yesno ? answers::no : answers::cancel;
        }
        const answers answer = answerqueue.front();
        answerqueue.pop_front();
        return answer;
    }
    const keptwindow back;
    QMessageBox window(themainwindow);
    window.setWindowTitle(qtext(box.title.empty() ? apptitle : box.title));
    window.setText(qtext(box.text));
    window.setTextFormat(Qt::PlainText);
    window.setIcon(iconof(box.icon));
    window.setStandardButtons(buttonsof(box.set));
    setcaptions(window, box);
    const QMessageBox::StandardButton preset = buttonof(box.preset);
    if (window.button(preset)) window.setDefaultButton(preset);
    if (box.set == buttons::yesno) {
        // Esc and the box's close button put a question aside. They press this one; without it, No.
        QPushButton* const aside = window.addButton(QMessageBox::Cancel);
        aside->hide();
        window.setEscapeButton(aside);
    }
    while (QApplication::overrideCursor()) QApplication::restoreOverrideCursor();
    const recordrest quiet;
    return answerof(window.exec());
}

// Pairs "caption|pattern" as the toolkit wants them: "caption (pattern)", captions hold theirs.
static QStringList filtersof(const std::string& filter) {
    const QStringList parts = qtext(filter).split('|');
    QStringList list;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QString caption = parts[i];
        list << caption.replace("(*.*)", "(*)");
    }
    return list;
}

// The folder that a file dialog of this or an earlier session ended in.
static QString beginfolder() {
    if (isnamed()) return QFileInfo(qtext(modelname)).path();
    const QString last = windowsettings().value("folder").toString();
    return QFileInfo(last).isDir() ? last : QDir::homePath();
}

// The toolkit keeps the side bar for all programs: examples that are gone leave it, places of the
// user stay.
static void fillsidebar(QFileDialog& dialog, bool withexamples) {
    QList<QUrl> places = dialog.sidebarUrls();
    places.removeIf([](const QUrl& place) {
        const QFileInfo folder(place.toLocalFile());
        return place.isLocalFile() && folder.fileName() == "examples" && !folder.exists();
    });
    const QUrl examples = QUrl::fromLocalFile(qtext(examplesfolder()));
    if (withexamples && !examples.isEmpty() && !places.contains(examples)) places << examples;
    dialog.setSidebarUrls(places);
}

// The name gets the extension of a filter that is chosen, "Drawing (*.svg)", in the place of one
// of three letters.
static void followfilter(QFileDialog& dialog, const QString& filter) {
    static const QRegularExpression ofone("\\(\\*(\\.\\w+)\\)$"), extension("\\.[A-Za-z]{3}$");
    const QRegularExpressionMatch chosen = ofone.match(filter);
    auto* const name = dialog.findChild<QLineEdit*>("fileNameEdit");
    if (chosen.hasMatch() && name && !name->text().isEmpty())
        name->setText(name->text().remove(extension) + chosen.captured(1));
}

filechoice qtplatform::askfile(const filebox& box) {
    const filechoice choice = chosenfile(box);
    recordfile(choice, box);
    return choice;
}

filechoice qtplatform::chosenfile(const filebox& box) {
    filechoice choice;
    choice.filterindex = box.filterindex;
    if (scripted) {
        if (filequeue.empty()) return choice;
        choice.path = filequeue.front();
        filequeue.pop_front();
        choice.chosen = !choice.path.empty();
        if (const int filter = std::exchange(nextfilter, 0)) choice.filterindex = filter;
        return choice;
    }
    const keptwindow back;
    QFileDialog dialog(themainwindow, qtext(box.title), beginfolder());
    dialog.setOption(QFileDialog::DontUseNativeDialog);  // others have no side bar to fill
    fillsidebar(dialog, !box.saving);
    const QStringList filters = filtersof(box.filter);
    dialog.setNameFilters(filters);
    if (box.filterindex >= 1 && box.filterindex <= filters.size())
        dialog.selectNameFilter(filters[box.filterindex - 1]);
    dialog.setAcceptMode(box.saving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(box.saving ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);  // the program asks in its own words
    if (!box.path.empty()) dialog.selectFile(qtext(box.path));
    if (box.saving)
        QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog,
                         [&dialog](const QString& filter) { followfilter(dialog, filter); });
    while (QApplication::overrideCursor()) QApplication::restoreOverrideCursor();
    const recordrest quiet;
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return choice;
    choice.chosen = true;
    choice.path = dialog.selectedFiles().first().toStdString();
    // A path that was typed may lead elsewhere than the list of the dialog.
    windowsettings().setValue("folder", QFileInfo(qtext(choice.path)).path());
    choice.filterindex = int(filters.indexOf(dialog.selectedNameFilter())) + 1;
    return choice;
}

// --- main window --------------------------------------------------------------------------------

void qtplatform::hourglass(bool on) {
    if (on)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

void qtplatform::showtitle(const std::string& text) {
    title = text;
    if (themainwindow) themainwindow->setWindowTitle(qname(text));
}

void qtplatform::showstatus(const std::string& text) {
    if (themainwindow) themainwindow->showstatus(qtext(text));
}

void qtplatform::refresh() {
    if (themainwindow) themainwindow->refresh();
}

void qtplatform::showdialog(const std::string& name) {
    if (!opendialog(name)) message("There is no dialog " + name, icons::exclamation);
}

void qtplatform::showpopup(int which) {
    if (!themainwindow) return;
    const QWidget* const view = themainwindow->view(activeview);
    const bool pointed = view->rect().contains(view->mapFromGlobal(QCursor::pos()));
    popupmenu(which, themainwindow)
        ->popup(pointed ? QCursor::pos() : view->mapToGlobal(view->rect().center()));
}

void qtplatform::endprogram() {
    if (themainwindow) {
        themainwindow->ending = true;
        themainwindow->close();
    }
    if (!scripted) QTimer::singleShot(0, qApp, &QApplication::quit);
}

surface* qtplatform::viewsurface(int nview) {
    return themainwindow ? &themainwindow->view(nview)->surface : nullptr;
}

twipbox qtplatform::workarea() {
    return themainwindow ? themainwindow->workarea() : twipbox{};
}

void qtplatform::placeview(int nview, const twipbox& box, bool shown) {
    if (themainwindow) themainwindow->placeview(nview, box, shown);
}

void qtplatform::viewsize(int nview, double& width, double& height) {
    width = themainwindow ? themainwindow->view(nview)->surface.width() : 0;
    height = themainwindow ? themainwindow->view(nview)->surface.height() : 0;
}

surface* qtplatform::legendsurface() {
    return themainwindow ? themainwindow->legendsurface() : nullptr;
}

void qtplatform::setscrollbars(int nview, const scrollrange& range) {
    if (themainwindow) themainwindow->view(nview)->setbars(range);
}

void qtplatform::crosspointer(bool on) {
    if (themainwindow) themainwindow->crosspointer(on);
}

// --- the printer --------------------------------------------------------------------------------

printstart qtplatform::startprint() {
    return ::startprint();
}

surface* qtplatform::printsurface() {
    return printpage();
}

bool qtplatform::endprint(bool whole) {
    return ::endprint(whole);
}

// --- long work ----------------------------------------------------------------------------------

bool qtplatform::progress(const std::string& what, double share, bool cancellable) {
    if (!busy.isValid()) {
        busy.start();
        cancelled = false;
        return true;
    }
    if (scripted || busy.elapsed() < progressafter) return true;
    if (!bar) {
        bar = new QProgressDialog(themainwindow);
        bar->setObjectName("progress");
        bar->setWindowTitle(qtext(apptitle));
        bar->setWindowModality(Qt::ApplicationModal);
        bar->setAutoClose(false);
        bar->setAutoReset(false);
        bar->setMinimumDuration(0);
        bar->setRange(0, 100);
        if (!cancellable) bar->setCancelButton(nullptr);
        bar->show();
    }
    bar->setLabelText(qtext(what));
    bar->setValue(int(share * 100));
    if (bar->wasCanceled() && !cancelled) {
        cancelled = true;
        recordremark("not recorded: the work that follows was cancelled");
    }
    return !cancelled;
}

void qtplatform::endprogress() {
    busy.invalidate();
    delete bar.data();
}

void qtplatform::yield(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

// --- processes ----------------------------------------------------------------------------------

void qtplatform::startprocess(const std::string& program, const std::vector<std::string>& arguments,
                              const std::string& folder) {
    QStringList list;
    for (const std::string& a : arguments) list << qtext(a);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setWorkingDirectory(qtext(folder));
    process.start(qtext(program), list);
    const int patience = 5000;  // milliseconds
    if (!process.waitForStarted(patience))
        throw runtimeerror{errfilenotfound, process.errorString().toStdString()};
}

bool qtplatform::processruns() {
    return process.state() != QProcess::NotRunning;
}

std::string qtplatform::processwords() {
    return process.readAll().toStdString();
}

int qtplatform::processcode() {
    return process.exitStatus() == QProcess::CrashExit ? -1 : process.exitCode();
}

void qtplatform::killprocess() {
    // A launcher ends its processes, on other machines too, when it is asked to; not when it is
    // killed.
    const int patience = 1500;  // milliseconds
    process.terminate();
    if (!process.waitForFinished(patience)) process.kill();
    process.waitForFinished(patience);
}

void qtplatform::openwithbrowser(const std::string& path) {
    const QUrl page = QUrl::fromLocalFile(qtext(path));
    if (!QFile::exists(page.toLocalFile()))
        return message("File not found: " + path + "; it comes with the program",
                       icons::exclamation);
    if (scripted || !QDesktopServices::openUrl(page)) showhelp(page);
}
