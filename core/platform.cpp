// SPDX-License-Identifier: GPL-3.0-or-later
// The platform in use, and the one that stands while no window has been opened.
#include "core/platform.h"

#include <cstdio>

#include "core/runtime.h"
#include "core/textfile.h"

namespace {
class consoleplatform : public platform {
  public:
    answers show(const messagebox& box) override {
        std::fprintf(stderr, "%s\n", visible(box.text).c_str());
        if (box.set == buttons::ok) return answers::ok;
        return box.set == buttons::yesno ? answers::no : answers::cancel;
    }
    filechoice askfile(const filebox&) override { return {}; }
};
}  // namespace

static platform* current = nullptr;

platform& theplatform() {
    static consoleplatform console;
    return current ? *current : console;
}

void setplatform(platform* p) {
    current = p;
}

void platform::message(const std::string& text, icons icon) {
    messagebox box;
    box.text = text;
    box.icon = icon;
    show(box);
}

bool platform::yes(const std::string& question) {
    messagebox box;
    box.text = question;
    box.set = buttons::yesno;
    box.icon = icons::question;
    box.preset = answers::yes;
    return show(box) == answers::yes;
}

void platform::startprocess(const std::string& program, const std::vector<std::string>&,
                            const std::string&) {
    throw runtimeerror{errfilenotfound, "No process can be started here: " + program};
}
