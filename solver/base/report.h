// SPDX-License-Identifier: GPL-3.0-or-later
// The run's log beside the model, its progress on standard output, and the time and memory of its
// stages.
#pragma once

#include <chrono>
#include <string>
#include <vector>

// Text of the log gathers in memory and is written to BASE.log when the run ends, whichever way.
class runlog {
  public:
    void line(const std::string& text = {});
    // Numbered among the warnings, told at the end too. lc: the case that it concerns, 0: the
    // model.
    void warn(const std::string& text, int lc = 0);
    // Ends the running stage, starts the next; "" only ends.
    void stage(const std::string& name);
    // "name percent" on standard output, at once; repeated values are left out.
    void progress(const char* name, int percent);
    void quiet() { silent = true; }
    const std::vector<std::string>& warnings() const { return warned; }
    int caseof(std::size_t warning) const { return warnedcase[warning]; }
    const std::string& text() const { return content; }
    // What has been told from a place on, to be told again.
    struct place {
        std::size_t text = 0, warnings = 0;
    };
    struct told {
        std::string text;
        std::vector<std::string> warnings;
        std::vector<int> cases;
    };
    place here() const { return {content.size(), warned.size()}; }
    told since(const place& from) const;
    void tell(const told& words);
    // Adds the table of stages and the outcome, writes the file; false where it cannot be written.
    bool write(const std::string& path, const std::string& outcome);

  private:
    struct stagerow {
        std::string name;
        double seconds, work, peak;  // wall and processor time; peak memory at its end, MiB
    };
    std::string content, running, lastprogress;
    std::vector<std::string> warned;
    std::vector<int> warnedcase;
    std::vector<stagerow> stages;
    std::chrono::steady_clock::time_point started;
    double workbefore = 0;
    bool silent = false;
};

// Progress of a search whose steps are not known beforehand.
class steplog {
  public:
    steplog(runlog& to, const char* stage) : log(to), name(stage) {}
    void step() {
        const int expected = 50;
        ++steps;
        log.progress(name, int(100.0 * steps / (steps + expected)));
    }

  private:
    runlog& log;
    const char* name;
    int steps = 0;
};

// Largest memory that the process has held so far, MiB.
double peakmemory();

// A number with six significant digits, for the log.
std::string shortnumber(double value);
// The text filled with blanks to this width, at its right or its left.
std::string padded(const std::string& text, int width);
std::string rightaligned(const std::string& text, int width);
