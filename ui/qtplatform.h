// SPDX-License-Identifier: GPL-3.0-or-later
// The platform on Qt: message boxes, file dialogs, the main window's surfaces, processes and
// progress. While a script plays, answers and paths come from its queues and no box is shown.
#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QProcess>
#include <QProgressDialog>
#include <deque>
#include <string>

#include "core/platform.h"

class qtplatform : public platform {
  public:
    qtplatform();
    answers show(const messagebox& box) override;
    filechoice askfile(const filebox& box) override;
    void hourglass(bool on) override;
    void showtitle(const std::string& text) override;
    void showstatus(const std::string& text) override;
    void refresh() override;
    void showdialog(const std::string& name) override;
    void showpopup(int which) override;
    void endprogram() override;
    surface* viewsurface(int nview) override;
    twipbox workarea() override;
    void placeview(int nview, const twipbox& box, bool shown) override;
    void viewsize(int nview, double& width, double& height) override;
    surface* legendsurface() override;
    void setscrollbars(int nview, const scrollrange& range) override;
    void crosspointer(bool on) override;
    printstart startprint() override;
    surface* printsurface() override;
    bool endprint(bool whole) override;
    bool progress(const std::string& what, double share, bool cancellable) override;
    void endprogress() override;
    void startprocess(const std::string& program, const std::vector<std::string>& arguments,
                      const std::string& folder) override;
    bool processruns() override;
    std::string processwords() override;
    int processcode() override;
    void killprocess() override;
    void yield(int milliseconds) override;
    void openwithbrowser(const std::string& path) override;

    // While a script plays.
    bool scripted = false;
    std::deque<answers> answerqueue;
    std::deque<std::string> filequeue;
    int nextfilter = 0;       // of the next file dialog, from 1; 0: as it is proposed
    std::string lastmessage;  // text of the last message or question
    std::string unanswered;   // the question for which the queue held no answer
    std::string title;

  private:
    answers answered(const messagebox& box);
    filechoice chosenfile(const filebox& box);
    QElapsedTimer busy;  // since the first report of the work under way
    QPointer<QProgressDialog> bar;
    QProcess process;
    bool cancelled = false;
};

qtplatform& theqtplatform();
