// SPDX-License-Identifier: GPL-3.0-or-later
// Start of the program to an empty window against the start of a bare widgets window.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "bench/ratio.h"

int main(int, char** argv) {
    const std::string folder = std::filesystem::absolute(argv[0]).parent_path().string();
    const std::string script = folder + "/empty.kds";
    std::ofstream(script) << "# nothing\n";
    const auto run = [](const std::string& command) {
        if (std::system(("QT_QPA_PLATFORM=offscreen " + command + " 2>/dev/null").c_str()) != 0)
            std::printf("failed: %s\n", command.c_str());
    };
    printratio(
        "start to an empty window", 15, 2, [&] { run(folder + "/kalvane --script " + script); },
        [&] { run(folder + "/bare"); });
}
