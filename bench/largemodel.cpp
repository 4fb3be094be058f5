// SPDX-License-Identifier: GPL-3.0-or-later
// The large model of the benchmarks.
#include "bench/largemodel.h"

#include <cmath>
#include <filesystem>
#include <string>
#include <variant>

#include "core/model.h"
#include "core/modeltable.h"
#include "core/newmodel.h"
#include "core/session.h"
#include "core/start.h"
#include "view/moddraw.h"
#include "view/symbols.h"

namespace fs = std::filesystem;

const char* startsession() {
    static std::string folder = (fs::temp_directory_path() / "kalvane-bench").string();
    fs::create_directories(folder);
    for (const char* name : {"ELTYP.DAT", "ELDES.DAT"})
        fs::copy_file(std::string(KALVANE_SOURCE_DIR) + "/data/" + name, folder + "/" + name,
                      fs::copy_options::overwrite_existing);
    initsymbols();
    wirelayers();
    start(folder);
    return folder.c_str();
}

void makelargemodel(int side) {
    const int row = side + 1;
    modelsize(sizenodes) = row * row;
    modelsize(sizeelements) = side * side;
    resetmodel();
    for (int i = 0; i < row; ++i)
        for (int j = 0; j < row; ++j) {
            const int n = i * row + j + 1;
            nodes(0, n, 0) = float(j) * 0.137f;
            nodes(0, n, 1) = float(i) * 0.211f;
            nodes(0, n, 2) = 3 * std::sin(float(i) * 0.01f) * std::cos(float(j) * 0.013f);
        }
    nodes(0, 0, 0) = float(row * row);
    for (int i = 0; i < side; ++i)
        for (int j = 0; j < side; ++j) {
            const int e = i * side + j + 1, n = i * row + j + 1;
            elems(e, 0) = 9;
            elems(e, 1) = float(n);
            elems(e, 2) = float(n + 1);
            elems(e, 3) = float(n + 1 + row);
            elems(e, 4) = float(n + row);
            egroup(e) = 1;
        }
    elems(0, 0) = float(side * side);
}

double declaredbytes() {
    double sum = 0;
    for (const modelarray& row : modelarrays())
        std::visit(
            [&](const auto* a) { sum += double(a->block.count) * sizeof(*a->block.cells.get()); },
            row.cells);
    return sum;
}
