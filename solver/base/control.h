// SPDX-License-Identifier: GPL-3.0-or-later
// What a run is asked to do: the control file EEM.CTR or the command line, and the removal of that
// file, which is the signal that the run has ended.
#pragma once

#include <string>
#include <vector>

struct job {
    std::string base;    // model path without extension
    std::string appdir;  // where feiflu.ini is
    bool eigen = false, elementmass = true, stiffness = true, solve = true;
    bool linestress = true, platestress = true;
    int doftype = 0;    // 1..3; 0: taken from the model's element types
    bool twod = false;  // counts while doftype is 0

    bool statics() const { return solve || linestress || platestress; }
};

// Reads EEM.CTR. Throws a refusal that names file and line.
job readcontrol(const std::string& path);

// Has the control file removed on every way out of the program: return, exit, exception without a
// handler, and the signals that end a program; or, where the file is another process', by such a
// signal alone. An absent file is no fault.
enum class removal { always, bysignal };
void armremoval(const std::string& controlpath, removal when);

// Ends the program as a signal to stop does, for who waits for that signal himself.
[[noreturn]] void endstopped();
// Ends it for a fault that another thread has come upon.
[[noreturn]] void endfaulty(const std::string& why);

// Removes it now, unless another file has taken its name since.
void removecontrol();

// Until it is called with none, a signal removes these files too: half a set of results could be
// taken for a whole one. As many processes as share the analysis name the same ones, since any of
// them may be killed without a word.
void armresults(const std::vector<std::string>& paths);
// The same for the files of a folder whose names begin so; clearfolder removes them now.
void armfolder(const std::string& folder, const std::string& prefix);
void clearfolder();

// Holds EEM.PID with the number of this process until it ends, so that a window finds a solver that
// was left behind. Refuses where another solver holds it.
void holdprocessfile(const std::string& appdir);
