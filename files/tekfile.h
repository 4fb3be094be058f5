// SPDX-License-Identifier: GPL-3.0-or-later
// The files .tek (nodes, elements, views) and .rot (element rotations) of a model.
//
// Readers throw runtimeerror with file and line; what they had stored by then stands, and the
// caller decides what becomes of it.
#pragma once

#include <string>

class textout;

// Free element slots are left out of both.
void writetek(textout& out);
void writerot(textout& out);
// base is the path without extension. Into arrays that hold an empty model. A model that does not
// fit throws errsubscript.
void readtek(const std::string& base);
void readtekgeometry(const std::string& base);  // nodes and elements alone, the views stay
void readrot(const std::string& base);          // all rotations 0 first

// The whole part of a model's nodes and elements, for import: .tek into tmpnodes and tmpelems.
// groupoffset is added to group numbers.
void readtekbuffer(const std::string& base, int groupoffset);
