// SPDX-License-Identifier: GPL-3.0-or-later
// Hand-over to the solver program: the options dialog, the control file EEM.CTR, the start of
// feiflu, and the wait until it removes that file.
#pragma once

#include <functional>
#include <string>

// The dialog "Analysis Options": its controls as the user sees them, and what may be changed.
struct analysisoptions {
    bool twod = false, clear = true;
    bool stiffness = true, solve = true, eigen = false;
    bool renumber = true, elementmass = true;
    bool linestress = true, festress = true;
    // What is greyed out.
    bool renumberenabled = true, solveenabled = true, stressenabled = true;
    // Engine of feiflu.ini; what of the parallel solver is not here, "" where it is whole.
    std::string engine, engineatfirst, missing;
};
analysisoptions showoptions();            // from the session's values
void clicksolver(analysisoptions& form);  // a click in the Solver frame
void clickeigen(analysisoptions& form);   // a click at Solve Eigen Modes and frequencies
void clickpostprocessor(analysisoptions& form);
void storeoptions(const analysisoptions& form);

// Saves the model, runs the solver on it and reads the model back; waits while another window's
// solver is at work. A result counts when this run has written it. Every way out leaves a usable
// model; what went wrong is told.
void runanalysis();
// Reads results anew after a run; the post-processor hangs its routine here.
extern std::function<void()> rereadresults;
extern std::function<void()> analysisdone;  // static results are new, and drawn
// What they amount to in a few words, for the status line after a run; hung in likewise.
extern std::function<std::string()> resultsummary;
