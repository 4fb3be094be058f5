// SPDX-License-Identifier: GPL-3.0-or-later
// The nine files that stand beside .tek: graphic elements, constraints, loads, groups, load cases,
// combinations, element loads, patches and the comment.
//
// base is the path without extension. Readers and writers throw runtimeerror with file and line. A
// reader that throws leaves its part of the model at the default of a new model.
#pragma once

#include <string>

class textout;

void writegra(textout& out);
void writevpl(textout& out);
void writeknk(textout& out);
void writemlt(textout& out);
void writelcd(textout& out);  // also sets elemmassflag
void writelco(textout& out);
void writeell(textout& out);
void writepat(textout& out);
void writetxt(textout& out);

void readgra(const std::string& base);
void readvpl(const std::string& base);  // rows of nodes that do not exist are dropped
void readknk(const std::string& base);  // the same
void readmlt(const std::string& base);  // also the old layout of ten properties
void readlcd(const std::string& base);  // also the old layout of four parameters
void readlco(const std::string& base);
void readell(const std::string& base);  // rows of elements that do not exist are dropped
void readpat(const std::string& base);
void readtxt(const std::string& base);

// Groups of another model, appended to the groups in hand; a name in use gets "*". Returns how
// many came in.
int appendmlt(const std::string& base);
