// SPDX-License-Identifier: GPL-3.0-or-later
// The only way from the core to a screen: messages, questions, file dialogs, the main window's
// state, the view surfaces, processes and progress. The window program implements it with its
// toolkit, tests with a recorder that answers from a queue.
#pragma once

#include <string>
#include <vector>

struct surface;  // view/surface.h

enum class icons { none, information, question, exclamation, critical };
enum class buttons { ok, okcancel, yesno, yesnocancel };
enum class answers { ok, cancel, yes, no };
enum class printstart { begun, cancelled, noprinter, failed };

struct messagebox {
    std::string text;
    buttons set = buttons::ok;
    icons icon = icons::none;
    answers preset = answers::ok;  // the button that Enter presses, where it is in the set
    std::string title;             // empty: the program's title
    // Of the buttons in the order of the set's name; empty: those of the set.
    std::vector<std::string> captions = {};
};

// Filters are pairs "caption|pattern|caption|pattern"; filterindex counts the pairs from 1.
struct filebox {
    std::string title, filter;
    int filterindex = 1;
    bool saving = false;
    std::string path;  // proposed name
};
struct filechoice {
    bool chosen = false;
    std::string path;
    int filterindex = 1;
};

// A rectangle of the main window in twips (1/1440 inch of the logical screen).
struct twipbox {
    double left = 0, top = 0, width = 0, height = 0;
};

// The scroll bars of a view: both run from -max to max around 0.
struct scrollrange {
    double thickness = 0;  // centimetres
    int horizontal = 0, vertical = 0;
};

class platform {
  public:
    virtual ~platform() = default;

    // Talk with the user.
    virtual answers show(const messagebox& box) = 0;
    virtual filechoice askfile(const filebox& box) = 0;
    void message(const std::string& text, icons icon = icons::none);
    bool yes(const std::string& question);  // Yes and No, question mark

    // The main window.
    virtual void hourglass(bool) {}
    virtual void showtitle(const std::string&) {}
    virtual void showstatus(const std::string&) {}
    virtual void refresh() {}  // check marks, prompts, lists, comment have changed: show them
    virtual void showdialog(const std::string&) {}
    virtual void showpopup(int) {}  // the pop-up menu 1 or 2, at the pointer
    virtual void endprogram() {}

    // The views, 1..4. A surface stays valid as long as the platform.
    virtual surface* viewsurface(int) { return nullptr; }
    virtual surface* legendsurface() { return nullptr; }  // beside the views
    virtual twipbox workarea() { return {}; }  // room for views, scroll bars and left bar
    virtual void placeview(int, const twipbox&, bool) {}
    virtual void viewsize(int, double& width, double& height) { width = height = 0; }  // cm
    virtual void setscrollbars(int, const scrollrange&) {}
    virtual void crosspointer(bool) {}  // over all views

    // The printer. startprint asks for printer, paper and orientation in the print dialog and
    // begins the page that printsurface draws on; endprint ends page and document, false where that
    // failed. A page that is not whole is given up: no file of an earlier job is replaced.
    virtual printstart startprint() { return printstart::noprinter; }
    virtual surface* printsurface() { return nullptr; }
    virtual bool endprint(bool) { return false; }

    // Long work. share is 0..1; false once the user has pressed Cancel, which is offered where the
    // work can be given up.
    virtual bool progress(const std::string&, double, bool cancellable = true) {
        (void)cancellable;
        return true;
    }
    virtual void endprogress() {}

    // Processes. One runs at a time.
    virtual void startprocess(const std::string& program, const std::vector<std::string>& arguments,
                              const std::string& folder);
    virtual bool processruns() { return false; }
    virtual std::string processwords() { return {}; }  // what it printed since the last call
    virtual int processcode() { return 0; }            // exit code, negative for a crash
    virtual void killprocess() {}
    virtual void yield(int milliseconds) { (void)milliseconds; }  // lets window events run
    virtual void openwithbrowser(const std::string&) {}
};

// The platform in use. Until one is set, messages go to standard error and questions get
// Cancel, or No where there is none.
platform& theplatform();
void setplatform(platform* p);
