// SPDX-License-Identifier: GPL-3.0-or-later
// A million quadrilaterals from and to each foreign format: reading until the model stands merged,
// against from_chars over the numbers of the same file; writing, against to_chars of them; memory,
// against the model and the file.
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/largemodel.h"
#include "bench/ratio.h"
#include "core/model.h"
#include "core/newmodel.h"
#include "core/session.h"
#include "core/textfile.h"
#include "exchange/bulkdata.h"
#include "exchange/deck.h"
#include "exchange/dxf.h"
#include "exchange/gate.h"
#include "exchange/gmsh.h"
#include "exchange/ply.h"

static const char* const blanks = " ,\r\n\t";

// Every number of a text; words are passed over.
static std::vector<double> numbersof(const std::string& content) {
    std::vector<double> numbers;
    const char *p = content.data(), *const last = p + content.size();
    while (p < last) {
        double value = 0;
        const auto result = std::from_chars(p, last, value);
        if (result.ptr != p) numbers.push_back(value);
        p = result.ptr == p ? p + 1 : result.ptr;
        while (p < last && std::char_traits<char>::find(blanks, 5, *p)) ++p;
    }
    return numbers;
}

static void writeplain(const std::string& path, const std::vector<double>& numbers) {
    std::string out;
    out.reserve(numbers.size() * 10);
    for (const double value : numbers) {
        char text[32];
        const auto result = value == double(long(value))
                                ? std::to_chars(text, text + sizeof text, long(value))
                                : std::to_chars(text, text + sizeof text, float(value));
        out.append(text, result.ptr);
        out += '\n';
    }
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    std::fwrite(out.data(), 1, out.size(), file);
    std::fclose(file);
}

// There is no writer of polygon files in the program.
static void writeply(const std::string& path, importreport&) {
    textout out(path);
    out.raw("ply\nformat ascii 1.0\nelement vertex ").put(nnodes());
    out.raw("\nproperty double x\nproperty double y\nproperty double z\nelement face ");
    out.put(nelems()).raw("\nproperty list uchar int vertex_indices\nend_header\n");
    for (int n = 1; n <= nnodes(); ++n)
        out.put(nodes(0, n, 0)).raw(" ").put(nodes(0, n, 1)).raw(" ").put(nodes(0, n, 2)).raw("\n");
    for (int e = 1; e <= nelems(); ++e) {
        out.raw("4");
        for (int c = 1; c <= 4; ++c) out.raw(" ").put(int(elems(e, c)) - 1);
        out.raw("\n");
    }
    out.commit();
}

// Nor of bulk data: free fields, as most programs write them.
static void writebulk(const std::string& path, importreport&) {
    textout out(path);
    out.raw("BEGIN BULK\nMAT1,1,210000.,,0.3,7.8E-9\nPSHELL,1,1,10.,1\n");
    for (int n = 1; n <= nnodes(); ++n) {
        out.raw("GRID,").put(n).raw(",");
        for (int k = 0; k < 3; ++k) out.raw(",").put(nodes(0, n, k));
        out.raw("\n");
    }
    for (int e = 1; e <= nelems(); ++e) {
        out.raw("CQUAD4,").put(e).raw(",1");
        for (int c = 1; c <= 4; ++c) out.raw(",").put(int(elems(e, c)));
        out.raw("\n");
    }
    out.raw("ENDDATA\n");
    out.commit();
}

static void readdrawing(const std::string& path, imported& found) {
    readdxf(path, {}, 1, found);
}

// A value of this process in /proc, in bytes.
static double memoryof(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (double kilobytes = 0; word == name + ":" && status >> kilobytes)
            return kilobytes * 1024;
    return 0;
}

static void emptymodel() {
    resetmodel();
    malloc_trim(0);
}

// What the reading takes beyond an empty session, against the model that it leaves and the file. In
// a process of its own: what reading leaves to the next one is no part of it.
static void printmemory(const std::string& path, const char* name,
                        void (*read)(const std::string& path, imported& found)) {
    std::fflush(stdout);
    if (const pid_t child = fork(); child != 0) {
        waitpid(child, nullptr, 0);
        return;
    }
    emptymodel();
    const double before = memoryof("VmRSS");
    std::ofstream("/proc/self/clear_refs") << 5;  // the peak begins anew
    readforeign(path, purposes::open, name, read);
    const double peak = memoryof("VmHWM") - before;
    malloc_trim(0);
    const double model = memoryof("VmRSS") - before,
                 file = double(std::filesystem::file_size(path));
    const double ratio = peak / (model + file), limit = 1.5;
    std::printf(
        "%-46s peak %8.0f MB model %4.0f + file %3.0f  ratio %6.2f  (wanted: at most %.2f)%s\n",
        ("memory of " + std::string(name)).c_str(), peak / 1e6, model / 1e6, file / 1e6, ratio,
        limit, ratio > limit ? "  ABOVE" : "");
    std::fflush(stdout);
    _exit(0);
}

// Against the mesher that engineers know, which parses the file and ends; its start is small.
static void printpeer(const std::string& path, const char* name,
                      void (*read)(const std::string& path, imported& found)) {
    const std::string parse = "gmsh " + path + " - >/dev/null 2>&1";
    if (std::system("command -v gmsh >/dev/null 2>&1") != 0) return;
    const double wanted = 0.5;
    printratio(
        "reading " + std::string(name) + ", gmsh", 3, wanted,
        [&] { readforeign(path, purposes::open, name, read); },
        [&] {
            if (std::system(parse.c_str()) != 0) std::puts("gmsh could not read it");
        });
}

// bench_exchange [NAME]: all formats, or those whose file's name holds NAME.
int main(int argc, char** argv) {
    const std::string chosen = argc > 1 ? argv[1] : "";
    const std::string base = std::string(startsession()) + "/";
    const struct {
        const char* file;
        void (*write)(const std::string& path, importreport& report);
        void (*read)(const std::string& path, imported& found);
        bool peer = false;  // does gmsh read it?
    } formats[] = {
        {"large.ply", writeply, readply},
        {"large.msh",
         [](const std::string& path, importreport& report) { writegmsh(path, {}, report); },
         readgmsh, true},
        {"large.inp", writedeck, readdeck},
        {"large.bdf", writebulk, readbulkdata, true},
        {"large.dxf", writedxf, readdrawing},
    };
    makelargemodel(1000);
    modelname = base + "large";
    const int runs = 3;
    for (const auto& format : formats) {
        const std::string path = base + format.file;
        if (std::string(format.file).find(chosen) == std::string::npos) continue;
        importreport report;
        format.write(path, report);
        const std::vector<double> numbers = numbersof(readwhole(path));
        printratio(
            "writing " + std::string(format.file), runs, 2, [&] { format.write(path, report); },
            [&] { writeplain(base + "plain", numbers); });
    }
    for (const auto& format : formats)
        if (std::string(format.file).find(chosen) != std::string::npos)
            printmemory(base + format.file, format.file, format.read);
    for (const auto& format : formats) {
        const std::string path = base + format.file;
        if (std::string(format.file).find(chosen) == std::string::npos) continue;
        printratio(
            "reading " + std::string(format.file), runs, 3,
            [&] { readforeign(path, purposes::open, format.file, format.read); },
            [&] { numbersof(readwhole(path)); });
        std::printf("%d nodes, %d elements\n", nnodes(), nelems());
        if (format.peer) printpeer(path, format.file, format.read);
    }
    std::filesystem::remove_all(base);
}
