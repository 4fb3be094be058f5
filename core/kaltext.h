// SPDX-License-Identifier: GPL-3.0-or-later
// What a model says beyond the told arrays, as the text of its file BASE.kal: UTF-8, lines end with
// LF. Of its form files/kalfile knows.
#pragma once

#include <string>

extern std::string kaltext;
