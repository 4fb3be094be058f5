// SPDX-License-Identifier: GPL-3.0-or-later
// What an analysis came to.
#pragma once

#include <string>

// "largest displacement 12.3 at node 17, load combination Lcomb1", or the count of modes with the
// lowest frequency; empty where the files hold neither. Read from the files: what the views show
// stays as it is.
std::string outcometext();
