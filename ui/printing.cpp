// SPDX-License-Identifier: GPL-3.0-or-later
// The printer and its dialogs.
#include "ui/printing.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <filesystem>
#include <memory>
#include <optional>

#include "core/besidefile.h"
#include "core/runtime.h"
#include "core/session.h"
#include "files/filop.h"
#include "files/saveset.h"
#include "files/saving.h"
#include "post/printdraw.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/pagesetup.h"
#include "ui/printsurface.h"
#include "ui/record.h"

namespace fs = std::filesystem;

static const int dotsperinch = 300;  // of coordinates; lines and letters of a PDF are exact anyway
static const double cmperinch = 2.54;
static const double margin = 12;  // millimetres; all printers reach that far

// Made when it is first needed: looking for printers takes a moment.
static QPrinter& theprinter() {
    static const std::unique_ptr<QPrinter> printer = [] {
        auto made = std::make_unique<QPrinter>();
        made->setResolution(dotsperinch);
        made->setPageOrientation(QPageLayout::Landscape);
        made->setPageMargins(QMarginsF(margin, margin, margin, margin), QPageLayout::Millimeter);
        made->setCreator("Kalvane");
        return made;
    }();
    return *printer;
}

static bool noprinters() {
    return QPrinterInfo::availablePrinterNames().isEmpty();
}

// --- jobs ---------------------------------------------------------------------------------------

namespace {
struct printjob {
    QPainter painter;
    printsurface page;
    std::optional<besidefile> pdf;  // none for paper
};
}  // namespace
static std::unique_ptr<printjob> job;
static printsurface* previewpage;  // while a preview draws

static void topdf(QPrinter& printer, const besidefile& file) {
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(QString::fromStdString(file.path()));
}

static void topaper(QPrinter& printer) {
    if (!noprinters()) printer.setOutputFormat(QPrinter::NativeFormat);
    printer.setOutputFileName(QString());
}

static QString documentname() {
    const std::string name = isnamed() ? fs::path(modelname).filename().string() : "model";
    return QString::fromStdString(name);
}

static void beginpage(printsurface& page, QPrinter& printer, QPainter& painter) {
    const QRectF paper(QPointF(0, 0), printer.pageLayout().paintRectPixels(dotsperinch).size());
    page.begin(&painter, paper, dotsperinch / cmperinch);
}

std::deque<std::string>* (*scripttargets)() = nullptr;

// The file as it should be: a PDF reader looks for the mark at its end.
static bool iswhole(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return false;
    const qint64 tail = 32;
    file.seek(std::max<qint64>(0, file.size() - tail));
    return file.readAll().contains("%%EOF");
}

static void tellunwritten(const std::string& reason) {
    theplatform().showstatus(reason);
}

static bool replacetarget(besidefile& file) {
    if (!iswhole(QString::fromStdString(file.path()))) {
        tellunwritten("The file was not written: " + file.target());
        return false;
    }
    return guarded([&] { file.replacetarget(); },
                   [](const runtimeerror& e) { tellunwritten(e.what); });
}

static printstart beginjob(const std::string& target, const QString& document) {
    QPrinter& printer = theprinter();
    job = std::make_unique<printjob>();
    const bool opened = guarded(
        [&] {
            if (target.empty()) return topaper(printer);
            sweepfolder(target);
            job->pdf.emplace(target);
            topdf(printer, *job->pdf);
        },
        [](const runtimeerror& e) { tellunwritten(e.what); });
    printer.setDocName(document);
    if (opened && job->painter.begin(&printer)) return printstart::begun;
    job.reset();
    if (opened)
        tellunwritten(target.empty() ? "The printer does not answer"
                                     : "File can not be written: " + target);
    return printstart::failed;
}

// A path with the extension of its kind.
static std::string aspdf(const std::string& path) {
    return QFileInfo(QString::fromStdString(path)).suffix().isEmpty() ? path + ".pdf" : path;
}

// While a script plays, the file queued for the next file dialog is the PDF to print to.
static printstart asscripted(const QString& document, std::deque<std::string>& queue) {
    if (queue.empty()) return noprinters() ? printstart::noprinter : printstart::cancelled;
    const std::string target = queue.front();
    queue.pop_front();
    return target.empty() ? printstart::cancelled : beginjob(aspdf(target), document);
}

// The PDF file to print to, which may be replaced; empty where the user gave it up.
static std::string askpdf(const QString& document) {
    filebox box;
    box.title = "Print to PDF";
    box.filter = "PDF files (*.pdf)|*.pdf|All Files (*.*)|*.*";
    box.saving = true;
    box.path =
        isnamed() ? fs::path(modelname).parent_path() / (document.toStdString() + ".pdf") : "";
    const filechoice choice = theplatform().askfile(box);
    if (!choice.chosen) return {};
    const fs::path target = aspdf(choice.path);
    return askoverwrite(fs::path(target).replace_extension().string(), target.extension().string())
               ? target.string()
               : std::string();
}

static printstart beginpdf(const QString& document) {
    const std::string target = askpdf(document);
    return target.empty() ? printstart::cancelled : beginjob(target, document);
}

static printstart askandbegin(const QString& document) {
    if (auto* const targets = scripttargets ? scripttargets() : nullptr)
        return asscripted(document, *targets);
    if (noprinters()) {
        theplatform().message("No printer found", icons::exclamation);
        return beginpdf(document);  // what can be had without one
    }
    QPrinter& printer = theprinter();
    topaper(printer);
    QPrintDialog dialog(&printer, themainwindow);
    while (QApplication::overrideCursor()) QApplication::restoreOverrideCursor();
    recordremark("not recorded: what the print dialog was told; played, nothing is printed");
    const recordrest quiet;
    if (dialog.exec() != QDialog::Accepted) return printstart::cancelled;
    printer.setResolution(dotsperinch);
    const bool tofile = printer.outputFormat() == QPrinter::PdfFormat;
    return beginjob(tofile ? printer.outputFileName().toStdString() : std::string(), document);
}

// What is not whole is given up, and the former file stays.
static bool endjob(bool whole) {
    if (!job) return false;
    job->page.end();
    if (!whole) theprinter().abort();
    const bool ended = job->painter.end() && theprinter().printerState() != QPrinter::Error;
    std::optional<besidefile> pdf = std::move(job->pdf);
    job.reset();
    topaper(theprinter());
    if (!pdf) return whole && ended;
    return whole && replacetarget(*pdf) && ended;
}

// --- views --------------------------------------------------------------------------------------

printstart startprint() {
    const printstart start = askandbegin(documentname());
    if (start == printstart::begun) beginpage(job->page, theprinter(), job->painter);
    return start;
}

surface* printpage() {
    if (previewpage) return previewpage;
    return job ? &job->page : nullptr;
}

bool endprint(bool whole) {
    return endjob(whole);
}

static void tellproblem() {
    theplatform().message("There was a problem printing to your printer.", icons::exclamation);
}

void printtopdf() {
    switch (beginpdf(documentname())) {
        case printstart::begun:
            break;
        case printstart::failed:
            return tellproblem();
        default:
            return;
    }
    beginpage(job->page, theprinter(), job->painter);
    if (!endjob(guarded(printview, tellfault))) tellproblem();
}

// Asked for again on each change of paper or orientation.
static void drawpreview(QPrinter* printer) {
    QPainter painter;
    if (!painter.begin(printer)) return;
    printsurface page;
    const double dots = printer->resolution();
    page.begin(&painter,
               QRectF(QPointF(0, 0), printer->pageLayout().paintRectPixels(int(dots)).size()),
               dots / cmperinch);
    previewpage = &page;
    guarded(printview, tellfault);
    previewpage = nullptr;
    page.end();
}

void showprintpreview() {
    topaper(theprinter());
    auto* const dialog = new QPrintPreviewDialog(&theprinter(), themainwindow);
    dialog->setObjectName("printpreview");
    dialog->setWindowTitle("Print preview");
    dialog->resize(1000, 760);
    QObject::connect(dialog, &QPrintPreviewDialog::paintRequested, dialog, drawpreview);
    showmodal(dialog);
}

void showprintsetup() {
    topaper(theprinter());
    showmodal(makepagesetup(theprinter()));
}

// --- other documents ----------------------------------------------------------------------------

// The sheet lies for one document and then as it was set.
namespace {
struct turnedpaper {
    explicit turnedpaper(bool landscape) : before(theprinter().pageLayout().orientation()) {
        if (landscape) theprinter().setPageOrientation(QPageLayout::Landscape);
    }
    ~turnedpaper() { theprinter().setPageOrientation(before); }
    turnedpaper(const turnedpaper&) = delete;
    turnedpaper& operator=(const turnedpaper&) = delete;
    const QPageLayout::Orientation before;
};
}  // namespace

void printby(const QString& document, const std::function<void(QPrinter&, QPainter&)>& draw,
             bool landscape) {
    const turnedpaper turned(landscape);
    switch (askandbegin(document)) {
        case printstart::cancelled:
            return;
        case printstart::noprinter:
            theplatform().message("No printer found", icons::exclamation);
            return;
        case printstart::failed:
            return tellproblem();
        case printstart::begun:
            break;
    }
    bool cancelled = false;
    const bool drawn = guarded([&] { draw(theprinter(), job->painter); },
                               [&](const runtimeerror& e) {
                                   cancelled = e.number == errstopped;
                                   if (!cancelled) tellfault(e);
                               });
    theplatform().endprogress();
    if (!endjob(drawn) && !cancelled) tellproblem();
    if (cancelled) theplatform().showstatus("The printing was cancelled");
}
