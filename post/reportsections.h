// SPDX-License-Identifier: GPL-3.0-or-later
// The sections of the analysis report, each written from the model or from a result file.
#pragma once

#include <string>

#include "post/reportlines.h"

struct reporttext {
    explicit reporttext(const std::string& target) : out(target) {}
    reportlines out;
    int page = 0;
};

void pageheader(reporttext& r);
// Begins a section: page header, title, empty lines.
void section(reporttext& r, const char* title, int linesbelow = 0);
void dashline(reporttext& r);
// Line with the label and the number behind it.
void counted(reporttext& r, const char* label, double number);

// What the reader should know of the results that follow; nothing where the text is empty.
void note(reporttext& r, const std::string& text);

// Model input.
void writebanner(reporttext& r);
void writegeneral(reporttext& r);
void writegroups(reporttext& r);
void writemesh(reporttext& r);
void writeconstraints(reporttext& r);
void writeloads(reporttext& r);

// Results. Where a file is missing the section says so.
struct analysiskind {
    bool valid = false;  // .rvp is there and of this model
    int anadof = 0;
    std::string reason;  // why it is not, where it is there
};
analysiskind readkind();
void writekind(reporttext& r, const analysiskind& kind);
void writenoanalysis(reporttext& r, const analysiskind& kind);
void writemasses(reporttext& r, const analysiskind& kind);
void writedisplacements(reporttext& r);
void writeforces(reporttext& r);
void writestresses(reporttext& r);
void writeaverages(reporttext& r);
void writemembers(reporttext& r);
void writebalance(reporttext& r);
void writeenvelopes(reporttext& r);
