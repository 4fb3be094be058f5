// SPDX-License-Identifier: GPL-3.0-or-later
// Ten eigenmodes of a clamped plate of 100 x 100 shells, from files to files, beside CalculiX.
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "bench/ratio.h"

namespace fs = std::filesystem;

static const int cells = 100;  // a side
static const double side = 1000, thickness = 10, modulus = 210000, poisson = 0.3;
static const double density = 7.85e-9;  // tonnes, so that both programs work in N, mm, s

static int nodeat(int i, int j) {
    return 1 + i + j * (cells + 1);
}

static void eachnode(const auto& use) {
    for (int j = 0; j <= cells; ++j)
        for (int i = 0; i <= cells; ++i) use(i, j);
}

static void eachcell(const auto& use) {
    for (int j = 0; j < cells; ++j)
        for (int i = 0; i < cells; ++i)
            use(nodeat(i, j), nodeat(i + 1, j), nodeat(i + 1, j + 1), nodeat(i, j + 1));
}

static void writefeiflu(const std::string& base) {
    std::ofstream tek(base + ".tek"), mlt(base + ".mlt"), vpl(base + ".vpl");
    tek << nodeat(cells, cells) << "," << cells * cells << "\n";
    eachnode([&](int i, int j) { tek << i * side / cells << "," << j * side / cells << ",0\n"; });
    eachcell([&](int a, int b, int c, int d) {
        tek << "9\n" << a << "," << b << "," << c << "," << d << ",1\n";
    });
    mlt << "1\n\"plate\"\n" << modulus << "\n" << poisson << "\n" << density << "\n" << thickness;
    for (int k = 0; k < 8 + 36; ++k) mlt << "\n0";
    vpl << 6 * (cells + 1) << "\n";
    for (int j = 0; j <= cells; ++j)
        for (int dof = 1; dof <= 6; ++dof) vpl << nodeat(0, j) << "," << dof << ",0\n";
    std::ofstream(fs::path(base).parent_path() / "feiflu.ini") << "mass = 1000\n";
}

static void writecalculix(const std::string& base) {
    std::ofstream out(base + ".inp");
    out << "*NODE,NSET=all\n";
    eachnode([&](int i, int j) {
        out << nodeat(i, j) << "," << i * side / cells << "," << j * side / cells << ",0\n";
    });
    out << "*ELEMENT,TYPE=S4,ELSET=plate\n";
    int e = 0;
    eachcell([&](int a, int b, int c, int d) {
        out << ++e << "," << a << "," << b << "," << c << "," << d << "\n";
    });
    out << "*MATERIAL,NAME=steel\n*ELASTIC\n" << modulus << "," << poisson << "\n*DENSITY\n";
    out << density << "\n*SHELL SECTION,ELSET=plate,MATERIAL=steel\n" << thickness << "\n";
    out << "*BOUNDARY\n";
    for (int j = 0; j <= cells; ++j) out << nodeat(0, j) << ",1,6\n";
    out << "*STEP\n*FREQUENCY\n10\n*NODE FILE\nU\n*END STEP\n";
}

static void run(const std::string& command) {
    if (std::system((command + " >/dev/null 2>&1").c_str()) != 0)
        std::printf("failed: %s\n", command.c_str());
}

// First frequency of each program, so that it is seen that both solve the same plate.
static double firstoffeiflu(const std::string& base) {
    std::ifstream in(base + ".EIG");
    std::string line;
    std::getline(in, line);
    std::getline(in, line);
    return std::sqrt(std::strtod(line.c_str(), nullptr)) / (2 * M_PI);
}

static double firstofcalculix(const std::string& base) {
    std::ifstream in(base + ".dat");
    for (std::string line; std::getline(in, line);) {
        int mode = 0;
        double value = 0, radians = 0, hertz = 0;
        if (std::sscanf(line.c_str(), "%d %lf %lf %lf", &mode, &value, &radians, &hertz) == 4)
            return hertz;
    }
    return 0;
}

int main() {
    const fs::path folder = fs::temp_directory_path() / "kalvane-bench-modes";
    fs::create_directories(folder);
    const std::string base = (folder / "plate").string();
    writefeiflu(base);
    writecalculix(base + "-ccx");
    const fs::path self = fs::read_symlink("/proc/self/exe");
    const std::string solver = (self.parent_path() / "feiflu").string();
    const std::string peer = "cd " + folder.string() + " && OMP_NUM_THREADS=$(nproc) ccx plate-ccx";
    printratio(
        "ten modes of 10,000 shells (plain: ccx)", 3, 0.5,
        [&] { run(solver + " --eigen --model " + base + " --appdir " + folder.string()); },
        [&] { run(peer); });
    std::printf("first frequency: feiflu %.5g Hz, ccx %.5g Hz\n", firstoffeiflu(base),
                firstofcalculix(base + "-ccx"));
    fs::remove_all(folder);
}
