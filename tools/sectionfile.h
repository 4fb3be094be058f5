// SPDX-License-Identifier: GPL-3.0-or-later
// The database of standard profiles and its two files in appdir.
//
// sections.dat, text: the count n, then for each record name, type and unit in double quotes and
// eight numbers, comma-separated; the file that is supplied has one record a line.
//
// sections.dig, binary, all little-endian: n in 4 bytes; the image of sectnames; the image of
// sectdata. An image holds every cell from (0,0) to the upper bounds, the first index running
// fastest: (0,0) (1,0) .. (n,0) (0,1) ... A text is its length in 2 bytes and that many bytes of
// UTF-8, a number a 4-byte Single.
//
// State: the database that was read last.
#pragma once

#include <string>

#include "core/array.h"

extern long sectcount;                 // n
extern array2<std::string> sectnames;  // (0..n, 0..3): 1 name, 2 type, 3 unit
extern array2<float> sectdata;         // (0..n, 0..8): (0,0) n, 1 area, 2 Ixx, 3 Iyy, 4 Izz,
                                       // 5..8 dimensions in the order of the type's fields

std::string sectionsfile(bool binary);  // path of the file
// Reads the database; what stood before stays when the file is missing or damaged, which throws
// with file and place. Returns what else the user should know, most often nothing.
std::string readsections(bool binary);
void writesectionsbinary();  // sections.dig from the database in memory
