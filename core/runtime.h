// SPDX-License-Identifier: GPL-3.0-or-later
// The run-time errors of the program, each with its number, and the guard under which the steps
// of a long task run one by one.
#pragma once

#include <new>
#include <string>

// What went wrong inside a step. The number is shown to the user beside the text.
struct runtimeerror {
    int number;
    std::string what;
};

enum errornumber {
    errargument = 5,       // what was given cannot be worked with
    erroverflow = 6,       // a number that does not fit its storage
    errmemory = 7,         // an allocation failed
    errsubscript = 9,      // an index outside the bounds of an array
    errstopped = 18,       // the user gave up the work
    errdivision = 11,      // division by zero
    errtype = 13,          // text where a number was expected
    errfilenotfound = 53,  // the file is not there
    errdiskfull = 61,      // writing failed, most often for want of space
    errpastend = 62,       // the file ended where a value was expected
    errpathaccess = 75,    // the file or directory cannot be opened or written
};

struct subscripterror : runtimeerror {
    subscripterror(long index, long upper);  // bounds are 0..upper, both included
};
struct overflowerror : runtimeerror {
    explicit overflowerror(const std::string& item);
};
struct memoryerror : runtimeerror {
    memoryerror();
};

// Runs step; a run-time error or an exhausted memory goes to onfail(const runtimeerror&).
// Returns true when the step came to its end.
template <typename Step, typename Onfail>
bool guarded(Step step, Onfail onfail) {
    try {
        step();
        return true;
    } catch (const runtimeerror& e) {
        onfail(e);
    } catch (const std::bad_alloc&) {
        onfail(memoryerror());
    }
    return false;
}
