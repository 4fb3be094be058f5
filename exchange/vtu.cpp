// SPDX-License-Identifier: GPL-3.0-or-later
// XML with its arrays appended in blocks that zlib has packed: VTK File Formats, kitware.com.
#include "exchange/vtu.h"

#include <zlib.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <vector>

#include "core/catalogue.h"
#include "core/journal.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/textfile.h"
#include "post/keptdisplay.h"
#include "post/postproces.h"
#include "post/shapes.h"
#include "post/stressfile.h"
#include "view/localaxes.h"

namespace {

const char* const stressnames[stressvalues] = {"Sx",  "Sy",  "Sz",  "Sxy", "Sxz", "Syz",     "Sbx",
                                               "Sby", "Sbz", "Stx", "Sty", "Stz", "Combined"};

class vtuwriter {
  public:
    vtuwriter(textout& target, importreport& lines) : out(target), report(lines) {}

    void write() {
        for (int e = 1; e <= nelems(); ++e)
            if (nodesoftype(elems(e, 0)) > 0) cells.push_back(e);
        out.raw(
            "<?xml version=\"1.0\"?>\n<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" "
            "byte_order=\"");
        out.raw(std::endian::native == std::endian::little ? "LittleEndian" : "BigEndian");
        out.raw(
            "\" header_type=\"UInt64\" compressor=\"vtkZLibDataCompressor\">\n"
            "<UnstructuredGrid><Piece NumberOfPoints=\"");
        out.put(nnodes()).raw("\" NumberOfCells=\"").put(long(cells.size())).raw("\">\n");
        out.raw("<PointData>\n");
        results();
        out.raw("</PointData>\n<CellData>\n");
        cellvalues("group", [](int e) { return egroup(e); });
        cellvalues("type", [](int e) { return int(elems(e, 0)); });
        cellvalues("element", [](int e) { return e; });
        for (int axis = 1; axis <= 3; ++axis) celldirections(axis);
        out.raw("</CellData>\n<Points>\n");
        std::vector<float> points;
        for (int n = 1; n <= nnodes(); ++n)
            for (int k = 0; k < 3; ++k) points.push_back(nodes(0, n, k));
        array("Float32", "Points", 3, points);
        out.raw("</Points>\n<Cells>\n");
        writecells();
        out.raw("</Cells>\n</Piece></UnstructuredGrid>\n<AppendedData encoding=\"raw\">\n_");
        for (const std::string& block : appended) out.raw(block);
        out.raw("\n</AppendedData>\n</VTKFile>\n");
        report.read("Nodes", nnodes());
        report.read("Elements", long(cells.size()));
    }

  private:
    static std::string escaped(const std::string& name) {
        std::string text;
        for (const char c : name)
            text += c == '&'   ? "&amp;"
                    : c == '<' ? "&lt;"
                    : c == '"' ? "&quot;"
                               : std::string(1, c);
        return text;
    }
    // The header of an array here, its packed values behind the grid.
    template <typename T>
    void array(const char* type, const std::string& name, int components,
               const std::vector<T>& values) {
        out.raw("<DataArray type=\"").raw(type).raw("\" Name=\"").raw(escaped(name));
        out.raw("\" NumberOfComponents=\"").put(components);
        out.raw("\" format=\"appended\" offset=\"").put(long(offset)).raw("\"/>\n");
        appended.push_back(packed(reinterpret_cast<const unsigned char*>(values.data()),
                                  values.size() * sizeof(T)));
        offset += appended.back().size();
    }
    // Count of blocks, size of one, size of the last, packed size of each; then the blocks.
    static std::string packed(const unsigned char* data, std::size_t size) {
        const std::size_t blocksize = 1 << 20;
        std::vector<std::uint64_t> header = {(size + blocksize - 1) / blocksize, blocksize,
                                             size % blocksize};
        std::string blocks;
        for (std::size_t begin = 0; begin < size; begin += blocksize) {
            const uLong length = uLong(std::min(blocksize, size - begin));
            uLongf room = compressBound(length);
            const std::size_t at = blocks.size();
            blocks.resize(at + room);
            if (compress2(reinterpret_cast<Bytef*>(blocks.data() + at), &room, data + begin, length,
                          Z_BEST_SPEED) != Z_OK)
                throw runtimeerror{errmemory, "The values could not be packed"};
            blocks.resize(at + room);
            header.push_back(room);
        }
        return std::string(reinterpret_cast<const char*>(header.data()), header.size() * 8) +
               blocks;
    }

    template <typename Value>
    void cellvalues(const char* name, Value value) {
        std::vector<std::int32_t> values;
        for (const int e : cells) values.push_back(value(e));
        array("Int32", name, 1, values);
    }
    void celldirections(int axis) {
        const double* const axes[] = {localx, localy, localz};
        std::vector<float> values;
        for (const int e : cells) {
            localaxes(e);
            for (int k = 0; k < 3; ++k) values.push_back(float(axes[axis - 1][k]));
        }
        array("Float32", "e" + numbertext(axis), 3, values);
    }
    void writecells() {
        std::vector<std::int32_t> corners;
        std::vector<std::int64_t> ends;
        std::vector<std::uint8_t> kinds;
        static const std::uint8_t kindof[] = {0, 1, 3, 5, 9};  // vertex, line, triangle, quad
        for (const int e : cells) {
            const int elnn = nodesoftype(elems(e, 0));
            for (int c = 1; c <= elnn; ++c) corners.push_back(int(elems(e, c)) - 1);
            ends.push_back(std::int64_t(corners.size()));
            kinds.push_back(kindof[elnn]);
        }
        array("Int32", "connectivity", 1, corners);
        array("Int64", "offsets", 1, ends);
        array("UInt8", "types", 1, kinds);
    }

    // --- results ---

    static bool stands(const char* extension) {
        std::error_code ec;
        return std::filesystem::exists(modelname + extension, ec);
    }
    void results() {
        const keptdisplay kept;
        if (!stands(".rvp") && !stands(".EIG"))
            report.skipped("Results: none stand beside the model");
        else if (isresultstale())
            report.warn(staletext);
        for (int c = 1; stands(".rvp") && c <= ncomb(); ++c) {
            curlcomb = c;
            if (readdisp()) shape("Displacement " + lcombname(c));
            if (stands(".NSA")) stresses(c);
        }
        int modes = stands(".EIG") ? 1 : 0;
        for (int m = 1; m <= modes; ++m) {
            curlcomb = m;
            if (!readmode()) break;
            modes = modecount;
            shape("Mode " + numbertext(m) + ", " + roughly(frequencyof(modevalue)) + " Hz");
        }
    }
    void shape(const std::string& name) {
        std::vector<float> values;
        for (int n = 1; n <= nnodes(); ++n)
            for (int k = 0; k < 3; ++k) values.push_back(nodes(1, n, k));
        array("Float32", name, 3, values);
        report.read(name);
    }
    // The means at a node differ where its elements do not continue one surface: of those the mean.
    void stresses(int c) {
        stressaverage = stressglobal = 1;
        lineelstress = 0;
        stressloaded = false;
        if (!readstressquiet()) return;
        std::vector<int> count(std::size_t(nnodes()) + 1, 0);
        std::vector<float> values(std::size_t(nnodes()) * stressvalues, 0);
        for (const int e : cells)
            for (int k = 1; k <= std::min(int(elemstress(0, e, 0)), nodesoftype(elems(e, 0)));
                 ++k) {
                const auto n = std::size_t(elems(e, k));
                ++count[n];
                for (int s = 1; s <= stressvalues; ++s)
                    values[(n - 1) * stressvalues + std::size_t(s) - 1] +=
                        float(elemstress(s, e, k));
            }
        for (int s = 0; s < stressvalues; ++s) {
            std::vector<float> one(std::size_t(nnodes()), 0);
            for (std::size_t n = 1; n <= one.size(); ++n)
                if (count[n] > 0)
                    one[n - 1] = values[(n - 1) * stressvalues + std::size_t(s)] / float(count[n]);
            array("Float32", std::string(stressnames[s]) + " " + lcombname(c), 1, one);
        }
        report.read("Mean stresses, " + lcombname(c));
    }

    textout& out;
    importreport& report;
    std::vector<int> cells;
    std::vector<std::string> appended;
    std::uint64_t offset = 0;
};

}  // namespace

void writevtu(const std::string& path, importreport& report) {
    textout out(path);
    vtuwriter(out, report).write();
    out.commit();
}
