// SPDX-License-Identifier: GPL-3.0-or-later
// The log of a run.
#include "solver/base/report.h"

#include <sys/resource.h>

#include <algorithm>
#include <cstdio>

#include "core/runtime.h"
#include "core/textfile.h"

double peakmemory() {
    const double kibibytes = 1024;  // ru_maxrss counts them
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / kibibytes;
}

// Processor time of all threads and of processes that helped so far, seconds.
static double processortime() {
    const auto seconds = [](const timeval& t) {
        return double(t.tv_sec) + 1e-6 * double(t.tv_usec);
    };
    double all = 0;
    for (const auto who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage{};
        getrusage(who, &usage);
        all += seconds(usage.ru_utime) + seconds(usage.ru_stime);
    }
    return all;
}

std::string shortnumber(double value) {
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.6g", value == 0 ? 0.0 : value);
    return buffer;
}

std::string padded(const std::string& text, int width) {
    return text.size() < std::size_t(width)
               ? text + std::string(std::size_t(width) - text.size(), ' ')
               : text;
}

std::string rightaligned(const std::string& text, int width) {
    return text.size() < std::size_t(width)
               ? std::string(std::size_t(width) - text.size(), ' ') + text
               : text;
}

void runlog::line(const std::string& text) {
    content += visible(text);
    content += "\r\n";
}

void runlog::warn(const std::string& text, int lc) {
    warned.push_back(text);
    warnedcase.push_back(lc);
    line("Warning: " + text);
}

runlog::told runlog::since(const place& from) const {
    const auto first = std::ptrdiff_t(from.warnings);
    return {content.substr(from.text),
            {warned.begin() + first, warned.end()},
            {warnedcase.begin() + first, warnedcase.end()}};
}

void runlog::tell(const told& words) {
    content += words.text;
    warned.insert(warned.end(), words.warnings.begin(), words.warnings.end());
    warnedcase.insert(warnedcase.end(), words.cases.begin(), words.cases.end());
}

void runlog::stage(const std::string& name) {
    if (name == running) return;
    const auto now = std::chrono::steady_clock::now();
    if (!running.empty()) {
        const std::chrono::duration<double> spent = now - started;
        auto row = std::ranges::find(stages, running, &stagerow::name);
        if (row == stages.end()) row = stages.insert(row, {running, 0, 0, 0});
        row->seconds += spent.count();
        row->work += processortime() - workbefore;
        row->peak = peakmemory();
    }
    running = name;
    started = now;
    workbefore = processortime();
    if (!name.empty()) progress(name.c_str(), 0);
}

void runlog::progress(const char* name, int percent) {
    const std::string now = std::string(name) + " " + std::to_string(percent);
    if (silent || now == lastprogress) return;
    lastprogress = now;
    std::printf("%s\n", now.c_str());
    std::fflush(stdout);
}

bool runlog::write(const std::string& path, const std::string& outcome) {
    stage("");
    line();
    line("Stage          seconds  processor   peak MiB");
    for (const stagerow& s : stages) {
        char row[80];
        std::snprintf(row, sizeof row, "%-12s %9.3f %10.3f %10.1f", s.name.c_str(), s.seconds,
                      s.work, s.peak);
        line(row);
    }
    line();
    if (!warned.empty()) line(std::to_string(warned.size()) + " warning(s), see above");
    line(outcome);
    return guarded(
        [&] {
            textout out(path);
            out.raw(content);
            out.commit();
        },
        [](const runtimeerror&) {});
}
