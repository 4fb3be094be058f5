// SPDX-License-Identifier: GPL-3.0-or-later
// How the solver says no: every refusal is a runtimeerror whose text names the item and the remedy.
#pragma once

#include <string>

#include "core/runtime.h"

[[noreturn]] inline void refuse(const std::string& why) {
    throw runtimeerror{errtype, why};
}

// The names of the degrees of freedom 1..6 in messages.
inline const char* dofname(int dof) {
    static const char* const names[] = {"?", "DX", "DY", "DZ", "RX", "RY", "RZ"};
    return names[dof >= 1 && dof <= 6 ? dof : 0];
}
