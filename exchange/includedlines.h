// SPDX-License-Identifier: GPL-3.0-or-later
// The lines of a file with those of the files that it includes where it does.
#pragma once

#include <memory>
#include <vector>

#include "exchange/textlines.h"

class includedlines {
  public:
    explicit includedlines(const std::string& path);
    // The next raw line; what was included ends before what waits.
    bool next(std::string_view& line);
    // Goes on with a file beneath the first one's folder. Throws where it lies elsewhere, and where
    // files include one another without end.
    void include(std::string_view name);
    const textlines& now() const { return *files.back(); }  // the file of the last line
    textlines& now() { return *files.back(); }
    const textlines& first() const { return *files.front(); }

  private:
    std::string folder;
    std::vector<std::unique_ptr<textlines>> files;   // the last is read, the others wait
    std::vector<std::unique_ptr<textlines>> passed;  // kept: lines are views into them
    std::size_t included = 0;
};
