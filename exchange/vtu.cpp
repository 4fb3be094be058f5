// SPDX-License-Identifier: GPL-3.0-or-later
// XML with its arrays appended in blocks that zlib has packed: VTK File Formats, kitware.com.
#include "exchange/vtu.h"

#include <zlib.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <vector>

#include "core/catalogue.h"
#include "core/journal.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/textfile.h"
#include "core/units.h"
#include "exchange/leftout.h"
#include "post/components.h"
#include "post/keptdisplay.h"
#include "post/postproces.h"
#include "post/shapes.h"
#include "post/stressfile.h"
#include "view/localaxes.h"

static std::string escaped(const std::string& name) {
    std::string text;
    for (const char c : name)
        text += c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '"' ? "&quot;" : std::string(1, c);
    return text;
}

namespace {

class vtuwriter {
  public:
    // combination 0: all of them and the modes, each under its name.
    vtuwriter(textout& target, importreport& lines, gridpoints kind, int combination)
        : out(target), report(lines), ofcorners(kind == gridpoints::corners), only(combination) {
        if (!blocks) throw runtimeerror{errpathaccess, "There is no room for work files"};
    }

    void write() {
        for (int e = 1; e <= nelems(); ++e)
            if (nodesoftype(elems(e, 0)) > 0) cells.push_back(e);
        placepoints();
        out.raw(
            "<?xml version=\"1.0\"?>\n<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" "
            "byte_order=\"");
        out.raw(std::endian::native == std::endian::little ? "LittleEndian" : "BigEndian");
        out.raw(
            "\" header_type=\"UInt64\" compressor=\"vtkZLibDataCompressor\">\n"
            "<UnstructuredGrid><Piece NumberOfPoints=\"");
        out.put(long(points.size())).raw("\" NumberOfCells=\"").put(long(cells.size()));
        out.raw("\">\n<PointData>\n");
        pointvalues<std::int32_t>("Int32", "node", 1, [&](int n, int) { return n; });
        results();
        out.raw("</PointData>\n<CellData>\n");
        cellvalues("group", [](int e) { return egroup(e); });
        cellvalues("type", [](int e) { return int(elems(e, 0)); });
        cellvalues("element", [](int e) { return e; });
        for (int axis = 1; axis <= 3; ++axis) celldirections(axis);
        out.raw(cornerstresses).raw("</CellData>\n<Points>\n");
        pointvalues<float>("Float32", "Points", 3, [](int n, int k) { return nodes(0, n, k); });
        out.raw("</Points>\n<Cells>\n");
        writecells();
        out.raw("</Cells>\n</Piece></UnstructuredGrid>\n<AppendedData encoding=\"raw\">\n_");
        copyblocks();
        out.raw("\n</AppendedData>\n</VTKFile>\n");
        report.read("Nodes", nnodes());
        report.read("Elements", long(cells.size()));
        tellleftout(report, {parts::freenodes, parts::properties, parts::rotations,
                             parts::combinations, parts::graphics});
    }

  private:
    // The nodes, or each corner of each element as a point of its own.
    void placepoints() {
        if (!ofcorners)
            for (int n = 1; n <= nnodes(); ++n) points.push_back(n);
        else
            for (const int e : cells)
                for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k)
                    points.push_back(int(elems(e, k)));
    }
    template <typename T, typename Value>
    void pointvalues(const char* type, const std::string& name, int components, Value value,
                     const char* formula = "") {
        std::vector<T> values;
        values.reserve(points.size() * std::size_t(components));
        for (const int n : points)
            for (int k = 0; k < components; ++k) values.push_back(value(n, k));
        array(type, name, components, values, formula);
    }

    // The header of an array, and its packed values to those that go behind the grid.
    template <typename T>
    void array(const char* type, const std::string& name, int components,
               const std::vector<T>& values, const char* formula = "") {
        out.raw(headerof(type, name, components, values, formula));
    }
    template <typename T>
    std::string headerof(const char* type, const std::string& name, int components,
                         const std::vector<T>& values, const char* formula) {
        const std::string header = "<DataArray type=\"" + std::string(type) + "\" Name=\"" +
                                   escaped(name) + "\" NumberOfComponents=\"" +
                                   numbertext(components) + "\" format=\"appended\" offset=\"" +
                                   numbertext(long(offset)) + "\">" + labelof(formula) +
                                   "</DataArray>\n";
        const std::string block = packed(reinterpret_cast<const unsigned char*>(values.data()),
                                         values.size() * sizeof(T));
        if (std::fwrite(block.data(), 1, block.size(), blocks.get()) != block.size())
            throw runtimeerror{errdiskfull, "There is no room for work files"};
        offset += block.size();
        return header;
    }
    // The unit as the viewer shows it beside the name; none where the model does not say its units.
    static std::string labelof(const char* formula) {
        if (*formula == '\0' || unitstext.empty() || modelunits().length.empty()) return "";
        return "<InformationKey name=\"UNITS_LABEL\" location=\"vtkDataArray\">" +
               unitname(formula) + "</InformationKey>";
    }
    void copyblocks() {
        std::rewind(blocks.get());
        std::vector<char> some(1 << 20);
        while (const std::size_t got = std::fread(some.data(), 1, some.size(), blocks.get()))
            out.raw({some.data(), got});
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
            for (int c = 1; c <= elnn; ++c)
                corners.push_back(ofcorners ? int(corners.size()) : int(elems(e, c)) - 1);
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
            if (only != 0 && only != c) continue;
            curlcomb = c;
            if (readdisp()) shape("Displacement" + named(c), "L");
            stresses(c);
        }
        int modes = stands(".EIG") && only == 0 ? 1 : 0;
        for (int m = 1; m <= modes; ++m) {
            curlcomb = m;
            if (!readmode()) break;
            modes = modecount;
            shape("Mode " + numbertext(m) + ", " + roughly(frequencyof(modevalue)) + " Hz", "");
        }
    }
    std::string named(int c) const { return only == 0 ? " " + lcombname(c) : std::string(); }
    void shape(const std::string& name, const char* formula) {
        pointvalues<float>(
            "Float32", name, 3, [](int n, int k) { return nodes(1, n, k); }, formula);
        report.read(name);
    }

    // Stresses in global axes: at nodes the means, of elements those of each corner; on points of
    // corners these.
    void stresses(int c) {
        if (stands(".NSR") && loadstresses(0)) {
            if (ofcorners)
                pointstresses(c);
            else
                cellstresses(c);
            report.read("Stresses by corner" + named(c));
        }
        if (ofcorners || !stands(".NSA") || !loadstresses(1)) return;
        meanstresses(c);
        report.read("Mean stresses" + named(c));
    }
    static bool loadstresses(int average) {
        stressaverage = average;
        stressglobal = 1;
        lineelstress = 0;
        stressloaded = false;
        return readstressquiet();
    }
    // A corner without a record stands at 0.
    void pointstresses(int c) {
        for (int s = 1; s <= stressvalues; ++s) {
            std::vector<float> values;
            values.reserve(points.size());
            for (const int e : cells)
                for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k)
                    values.push_back(k <= stresscorners ? float(elemstress(s, e, k)) : 0);
            array("Float32", stresssymbols[s - 1] + named(c), 1, values, "F/L^2");
        }
    }
    void cellstresses(int c) {
        for (int s = 1; s <= stressvalues; ++s) {
            std::vector<float> values;
            values.reserve(cells.size() * stresscorners);
            for (const int e : cells)
                for (int k = 1; k <= stresscorners; ++k)
                    values.push_back(float(elemstress(s, e, k)));
            cornerstresses +=
                headerof("Float32", stresssymbols[s - 1] + std::string(" by corner") + named(c),
                         stresscorners, values, "F/L^2");
        }
    }
    // The means at a node differ where its elements do not continue one surface: of those the mean.
    void meanstresses(int c) {
        std::vector<int> count(std::size_t(nnodes()) + 1, 0);
        for (int s = 1; s <= stressvalues; ++s) {
            std::vector<float> sum(std::size_t(nnodes()), 0);
            std::ranges::fill(count, 0);
            for (const int e : cells)
                for (int k = 1; k <= std::min(int(elemstress(0, e, 0)), nodesoftype(elems(e, 0)));
                     ++k) {
                    const auto n = std::size_t(elems(e, k));
                    ++count[n];
                    sum[n - 1] += float(elemstress(s, e, k));
                }
            for (std::size_t n = 1; n <= sum.size(); ++n)
                if (count[n] > 0) sum[n - 1] /= float(count[n]);
            array("Float32", stresssymbols[s - 1] + named(c), 1, sum, "F/L^2");
        }
    }

    struct closefile {
        void operator()(std::FILE* f) const { std::fclose(f); }
    };
    textout& out;
    importreport& report;
    const bool ofcorners;
    const int only;
    std::vector<int> cells, points;  // elements; nodes
    std::string cornerstresses;      // headers of arrays of the cells
    std::unique_ptr<std::FILE, closefile> blocks{std::tmpfile()};
    std::uint64_t offset = 0;
};

}  // namespace

static void writegrid(const std::string& path, gridpoints kind, int combination,
                      importreport& report) {
    textout out(path);
    vtuwriter(out, report, kind, combination).write();
    out.commit();
}

void writevtu(const std::string& path, gridpoints kind, importreport& report) {
    writegrid(path, kind, 0, report);
}

void writepvd(const std::string& path, importreport& report) {
    namespace fs = std::filesystem;
    const std::string base = fs::path(path).replace_extension().string();
    textout out(path);
    out.raw("<?xml version=\"1.0\"?>\n<VTKFile type=\"Collection\" version=\"0.1\">\n");
    out.raw("<Collection>\n");
    for (int c = 1; c <= ncomb(); ++c) {
        const std::string grid = base + "_" + numbertext(c) + ".vtu";
        importreport ofone;  // nodes and elements once are enough
        writegrid(grid, gridpoints::nodes, c, c == 1 ? report : ofone);
        out.raw("<DataSet timestep=\"").put(c).raw("\" part=\"0\" name=\"");
        out.raw(escaped(lcombname(c))).raw("\" file=\"");
        out.raw(escaped(fs::path(grid).filename().string())).raw("\"/>\n");
        report.read("Grid of a combination, beside the list");
    }
    out.raw("</Collection>\n</VTKFile>\n");
    out.commit();
}
