// SPDX-License-Identifier: GPL-3.0-or-later
// The choice of the group. State: the file that the dialog is open for.
#include "exchange/plyform.h"

#include <algorithm>
#include <filesystem>

#include "core/model.h"
#include "core/platform.h"
#include "exchange/gate.h"
#include "exchange/ply.h"

static const char* const formatname = "Polygon file";

plyform& plyimport() {
    static plyform form;
    return form;
}

static std::string stemof(const std::string& path) {
    return std::filesystem::path(path).stem().string();
}

reply startply(const std::string& path, purposes purpose) {
    if (purpose == purposes::open) return readforeign(path, purpose, formatname, readply);
    plyform& form = plyimport();
    form = {path, {}, std::clamp(meshgroup - 1, 0, std::max(0, ngroups() - 1))};
    for (int g = 1; g <= ngroups(); ++g) form.groups.push_back(groupname(g));
    form.groups.push_back("New group " + stemof(path));
    theplatform().showdialog("plygroup");
    return reply::cancelled;
}

void acceptply() {
    const plyform form = plyimport();
    const bool isnew = form.chosen >= ngroups();
    const auto current = meshgroup;
    if (!isnew) meshgroup = form.chosen + 1;
    readforeign(form.path, purposes::import, formatname,
                [&](const std::string& path, imported& found) {
                    readply(path, found);
                    if (!isnew) return;
                    const int group = found.groupof(stemof(path));
                    for (importedelement& e : found.elements) e.group = group;
                });
    meshgroup = current;
}
