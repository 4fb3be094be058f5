// SPDX-License-Identifier: GPL-3.0-or-later
// Windows know of each other's models: a lock for each model that is open, under its path, in
// appdir. Nothing is forbidden; who opens a model a second time is told.
#pragma once

#include <QLockFile>
#include <memory>
#include <string>

class modellock {
  public:
    // Follows the model's name. The process that has this model open already, 0 for none, or when
    // that was told.
    long follow(const std::string& model);

  private:
    std::unique_ptr<QLockFile> lock;
    std::string held;
};
