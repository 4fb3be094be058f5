// SPDX-License-Identifier: GPL-3.0-or-later
// Animated PNG (APNG 1.0): the pictures of a motion in one file, which plays for ever. A program
// that knows no APNG shows the first picture.
#pragma once

#include <QByteArray>
#include <QImage>
#include <functional>

// The bytes of the file from so many pictures of one size. Throws errtype for one of another size.
QByteArray apngof(int count, int milliseconds, const std::function<QImage(int)>& picture);
