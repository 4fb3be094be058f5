// SPDX-License-Identifier: GPL-3.0-or-later
// Texts of the run-time errors.
#include "core/runtime.h"

subscripterror::subscripterror(long index, long upper)
    : runtimeerror{errsubscript, "Subscript out of range: " + std::to_string(index) +
                                     " is outside 0.." + std::to_string(upper)} {}

overflowerror::overflowerror(const std::string& item)
    : runtimeerror{erroverflow, "Overflow: " + item} {}

memoryerror::memoryerror() : runtimeerror{errmemory, "Out of memory"} {}
