// SPDX-License-Identifier: GPL-3.0-or-later
// A million quadrilaterals from and to each foreign format: reading until the model stands merged,
// against from_chars over the numbers of the same file; writing, against to_chars of them.
#include <charconv>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/largemodel.h"
#include "bench/ratio.h"
#include "core/model.h"
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

// bench_exchange [NAME]: all formats, or those whose file's name holds NAME.
int main(int argc, char** argv) {
    const std::string chosen = argc > 1 ? argv[1] : "";
    const std::string base = std::string(startsession()) + "/";
    const struct {
        const char* file;
        void (*write)(const std::string& path, importreport& report);
        void (*read)(const std::string& path, imported& found);
    } formats[] = {
        {"large.ply", writeply, readply},
        {"large.msh",
         [](const std::string& path, importreport& report) { writegmsh(path, {}, report); },
         readgmsh},
        {"large.inp", writedeck, readdeck},
        {"large.bdf", writebulk, readbulkdata},
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
    for (const auto& format : formats) {
        const std::string path = base + format.file;
        if (std::string(format.file).find(chosen) == std::string::npos) continue;
        printratio(
            "reading " + std::string(format.file), runs, 3,
            [&] { readforeign(path, purposes::open, format.file, format.read); },
            [&] { numbersof(readwhole(path)); });
        std::printf("%d nodes, %d elements, at most %.0f MB by now\n", nnodes(), nelems(),
                    peakmemory() / 1e6);
    }
    std::filesystem::remove_all(base);
}
