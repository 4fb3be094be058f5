// SPDX-License-Identifier: GPL-3.0-or-later
// Texts of engines.
#include "solver/base/enginetexts.h"

std::string mumpsfault(int code, int detail, const std::string& scratch) {
    switch (code) {
        case -5:
        case -7:
        case -8:
        case -9:
        case -13:
        case -14:
        case -15:
        case -17:
        case -19:
        case -20:
            return "Not enough memory for the factor in one of the processes. Use more processes "
                   "or hosts, or a scratch folder: the keys processes, hosts and scratch of "
                   "feiflu.ini";
        case -90:
            return "The scratch folder " + scratch +
                   " does not take the factor: the disc is full or the folder cannot be written. "
                   "Free some room there or name another folder at the key scratch of feiflu.ini";
        case -51:
        case -52:
            return "The model is too large for the ordering by METIS in 32-bit integers; use "
                   "engine = multigrid in feiflu.ini";
        default:
            return "The engine MUMPS ended with its fault " + std::to_string(code) + ", " +
                   std::to_string(detail) + "; use engine = cholmod in feiflu.ini";
    }
}
