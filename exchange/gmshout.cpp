// SPDX-License-Identifier: GPL-3.0-or-later
// Writing of meshes.
#include <algorithm>
#include <cmath>
#include <map>
#include <vector>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/textfile.h"
#include "exchange/gmsh.h"
#include "exchange/leftout.h"

namespace {

// The elements of one group and one dimension with as many corners: a block of the file.
struct meshblock {
    int dimension, group, corners;
    std::vector<int> elements;
};

class gmshwriter {
  public:
    gmshwriter(textout& target, const meshform& how, importreport& lines)
        : out(target), form(how), report(lines) {}

    void write() {
        gather();
        text("$MeshFormat\n");
        text(form.isold ? "2.2 " : "4.1 ");
        text(form.binary ? "1 8\n" : "0 8\n");
        if (form.binary) {
            whole(1);
            text("\n");
        }
        text("$EndMeshFormat\n");
        writenames();
        if (form.isold)
            writeold();
        else
            writenew();
    }

  private:
    static int dimensionof(int corners) { return corners > 2 ? 2 : corners - 1; }
    static int kindof(int corners) {
        static const int kinds[] = {0, 15, 1, 2, 3};
        return kinds[corners];
    }
    void gather() {
        std::map<std::array<int, 3>, std::vector<int>> sorted;
        std::map<int, long> counts;
        for (int e = 1; e <= nelems(); ++e)
            if (const int elnn = nodesoftype(elems(e, 0)); elnn > 0) {
                sorted[{dimensionof(elnn), std::max(egroup(e), 1), elnn}].push_back(e);
                ++counts[int(elems(e, 0))];
            }
        for (const auto& [type, count] : counts) report.read(eltypname(type) + " elements", count);
        for (auto& [key, list] : sorted)
            blocks.push_back({key[0], key[1], key[2], std::move(list)});
        report.read("Nodes", nnodes());
        report.changed("Types of elements have no place in a mesh");
        tellleftout(report, {parts::freenodes});
    }
    // Dimension and group, each once.
    std::vector<std::pair<int, int>> entities() const {
        std::vector<std::pair<int, int>> list;
        for (const meshblock& b : blocks)
            if (list.empty() || list.back() != std::pair(b.dimension, b.group))
                list.push_back({b.dimension, b.group});
        return list;
    }

    void text(std::string_view s) { out.raw(s); }
    // Numbers: of 4 bytes, of 8, and reals; in a text each followed by a blank.
    template <typename T>
    void bytes(T value) {
        out.raw({reinterpret_cast<const char*>(&value), sizeof value});
    }
    void whole(int value) {
        if (form.binary) return bytes(value);
        out.put(value).raw(" ");
    }
    void size(long value) {
        if (form.binary) return bytes(value);
        out.put(value).raw(" ");
    }
    void real(float value) {
        if (form.binary) return bytes(double(value));
        out.put(value).raw(" ");
    }
    void endline() {
        if (!form.binary) text("\n");
    }
    // In a binary section too a line end stands before the mark of its end.
    void endsection(const char* mark) {
        if (form.binary) text("\n");
        text(mark);
    }

    void writenames() {
        const auto list = entities();
        text("$PhysicalNames\n");
        out.put(int(list.size())).raw("\n");
        for (const auto& [dimension, group] : list) {
            std::string name = groupname(group);
            std::ranges::replace(name, '"', '\'');
            out.put(dimension).raw(" ").put(group).raw(" \"").raw(name).raw("\"\n");
        }
        text("$EndPhysicalNames\n");
    }
    void coordinates(int n) {
        for (int k = 0; k < 3; ++k) real(nodes(0, n, k));
        endline();
    }
    void corners(int e, int count, bool wide) {
        for (int c = 1; c <= count; ++c) wide ? size(long(elems(e, c))) : whole(int(elems(e, c)));
        endline();
    }

    void writeold() {
        text("$Nodes\n");
        out.put(nnodes()).raw("\n");
        for (int n = 1; n <= nnodes(); ++n) {
            whole(n);
            coordinates(n);
        }
        endsection("$EndNodes\n$Elements\n");
        std::size_t total = 0;
        for (const meshblock& b : blocks) total += b.elements.size();
        out.put(long(total)).raw("\n");
        for (const meshblock& b : blocks) {
            if (form.binary) {
                whole(kindof(b.corners));
                whole(int(b.elements.size()));
                whole(2);
            }
            for (const int e : b.elements) {
                whole(e);
                if (!form.binary) {
                    whole(kindof(b.corners));
                    whole(2);
                }
                whole(b.group);
                whole(b.group);
                corners(e, b.corners, false);
            }
        }
        endsection("$EndElements\n");
    }

    void writenew() {
        writeentities();
        text("$Nodes\n");
        size(nnodes() > 0);
        size(nnodes());
        size(nnodes() > 0);
        size(nnodes());
        endline();
        if (nnodes() > 0) {
            const auto list = entities();
            whole(list.empty() ? 2 : list.back().first);
            whole(list.empty() ? 1 : list.back().second);
            whole(0);
            size(nnodes());
            endline();
        }
        for (int n = 1; n <= nnodes(); ++n) {
            size(n);
            endline();
        }
        for (int n = 1; n <= nnodes(); ++n) coordinates(n);
        endsection("$EndNodes\n$Elements\n");
        writeelements();
    }
    void writeelements() {
        long total = 0;
        for (const meshblock& b : blocks) total += long(b.elements.size());
        size(long(blocks.size()));
        size(total);
        size(total > 0);
        size(nelems());
        endline();
        for (const meshblock& b : blocks) {
            whole(b.dimension);
            whole(b.group);
            whole(kindof(b.corners));
            size(long(b.elements.size()));
            endline();
            for (const int e : b.elements) {
                size(e);
                corners(e, b.corners, true);
            }
        }
        endsection("$EndElements\n");
    }
    // One entity a group and dimension, in the box of the whole model.
    void writeentities() {
        auto list = entities();
        const bool isbare = list.empty();
        if (isbare) list.push_back({2, 1});
        std::array<float, 6> box{};
        for (int n = 1; n <= nnodes(); ++n)
            for (int k = 0; k < 3; ++k) {
                const float v = nodes(0, n, k);
                box[std::size_t(k)] = n == 1 ? v : std::min(box[std::size_t(k)], v);
                box[std::size_t(k) + 3] = n == 1 ? v : std::max(box[std::size_t(k) + 3], v);
            }
        text("$Entities\n");
        for (int dimension = 0; dimension < 4; ++dimension)
            size(std::ranges::count(list, dimension, &std::pair<int, int>::first));
        endline();
        for (const auto& [dimension, group] : list) {
            whole(group);
            for (int k = 0; k < (dimension == 0 ? 3 : 6); ++k) real(box[std::size_t(k)]);
            size(!isbare);
            if (!isbare) whole(group);
            if (dimension > 0) size(0);
            endline();
        }
        endsection("$EndEntities\n");
    }

    textout& out;
    meshform form;
    importreport& report;
    std::vector<meshblock> blocks;
};

}  // namespace

void writegmsh(const std::string& path, const meshform& form, importreport& report) {
    textout out(path);
    gmshwriter(out, form, report).write();
    out.commit();
}
