// SPDX-License-Identifier: GPL-3.0-or-later
// The dialogs by name: opening one by its form name, and what they share.
#pragma once

#include <QDialog>
#include <functional>
#include <string>
#include <vector>

#include "core/array.h"
#include "core/runtime.h"

class QBoxLayout;
class QPushButton;

// Opens the dialog of this form name over the main window; false when there is none.
bool opendialog(const std::string& name);
// Registers a dialog; each dialog's file does it once through wiredialogs.
void adddialog(const std::string& name, std::function<QDialog*()> make);
void wiredialogs();
std::vector<std::string> dialognames();

// Shows a dialog without holding up the caller: the main window is disabled until it closes, unless
// the dialog carries the property besidemain.
void showmodal(QDialog* dialog);
const char* const besidemain = "besidemain";

// A dialog that stands at the right border of the main window, beside the model.
class sidedialog : public QDialog {
  public:
    using QDialog::QDialog;

  protected:
    void showEvent(QShowEvent* event) override;
};

// A dialog's wait for a selection, as long as the dialog is there: however it goes, nothing calls
// into it afterwards.
class selectionwait {
  public:
    selectionwait(Flag& flag, std::function<void()> ended);
    ~selectionwait() { end(); }
    selectionwait(const selectionwait&) = delete;
    selectionwait& operator=(const selectionwait&) = delete;
    void end();

  private:
    Flag& flag;
};

// Tells a run-time error that nothing nearer has handled, with its number.
void tellfault(const runtimeerror& fault);
// A command that fails returns to the rest state and tells why.
void fallback(const runtimeerror& fault);
// A button's or list's handler under guard: an error that leaves it is told, the dialog stays.
template <typename Handler>
auto guardedhandler(Handler handler) {
    return [handler](auto... arguments) { guarded([&] { handler(arguments...); }, tellfault); };
}

// A button that does this, guarded; Enter elsewhere in the dialog does not press it.
QPushButton* newaction(const char* name, const char* caption, QWidget* parent, QBoxLayout* row,
                       std::function<void()> pressed);
// The foot of a dialog: "OK", which Enter presses and which runs take, and "Cancel".
void addokcancel(QDialog* dialog, QBoxLayout* rows, std::function<void()> take);

// One maker a dialog.
QDialog* makesetmem();
QDialog* makeaoptions();
QDialog* makeabout();
QDialog* makeinfo();
QDialog* makemodelinfo();
QDialog* makeviewcontrol();
QDialog* makecolorset();
QDialog* makesymbols();
QDialog* makeoptions();
QDialog* makecardhelp();
void asknodefont();  // the font dialogs of the labels
void askelementfont();
QDialog* makeloadkees();
QDialog* makeloadcombinations();
QDialog* makenodeattributes();
QDialog* makedefgroup();
QDialog* makeroptions();
QDialog* makesoptions();
QDialog* makeplacenodes();
QDialog* makegraphoptions();
QDialog* makemselect();
QDialog* makemesh2d();
QDialog* makepatchedit();
QDialog* makeobjects();
QDialog* makedefobject();
QDialog* makemodifyelem();
QDialog* makecheckmodel();
QDialog* makeaddsingleelem();
QDialog* makenumint();
QDialog* makedrafttool();
QDialog* makeimportreport();
QDialog* maketoptions();
QDialog* makedxf();
QDialog* makemosessettings();
QDialog* makeneeds();
QDialog* makecutwindow();
QDialog* makeanimation();
QDialog* makecompare();
QDialog* makebookdialog();
QDialog* makeplygroup();
QDialog* makeresulttables();
QDialog* makeviewpicture();
void wirepictures();  // pixels and symbols of picture files
QDialog* makeselectby();
QDialog* makemousedialog();
QDialog* makedemonstrations();
QDialog* makememberdiagrams();
QDialog* makememberwindow();
QDialog* makebalance();
QDialog* makeresultsof();
QDialog* makecombinationrules();
QDialog* makeunits();
struct groupform;
QDialog* makesectiontool(groupform& group);  // writes what is accepted into the form
