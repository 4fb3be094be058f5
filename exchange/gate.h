// SPDX-License-Identifier: GPL-3.0-or-later
// The gate through which foreign models enter: everything is checked before anything is touched,
// nodes and elements go through the buffers and the paste, then come groups, load cases,
// constraints, loads and names. What is refused leaves the model as it was.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "exchange/imported.h"
#include "files/filemenu.h"

// Lets it in behind the model in hand, or as a new model named after the file. Keeps the report and
// shows it where it says more than what was read.
reply admit(imported& found, const std::string& path, purposes purpose);

// Runs a reader and lets in what it has found. A reader's fault is told in a message, and the model
// stays as it was.
reply readforeign(const std::string& path, purposes purpose, const std::string& format,
                  const std::function<void(const std::string& path, imported& found)>& read);
// Runs a writer, keeps and shows its report. A fault is told, and the old file stands.
reply writeforeign(const std::string& path, const std::string& format,
                   const std::function<void(const std::string& path, importreport& report)>& write);
