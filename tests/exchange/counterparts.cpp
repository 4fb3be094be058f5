// SPDX-License-Identifier: GPL-3.0-or-later
// Other programs' readers and writers: python3-meshio and python3-ezdxf, where they are installed.
#include <cstdlib>

#include "exchange/bulkdata.h"
#include "exchange/deck.h"
#include "exchange/dxf.h"
#include "exchange/gmsh.h"
#include "exchange/ply.h"
#include "exchange/vtu.h"
#include "tests/exchange/samples.h"

// What a script prints, run beside the room's files; empty where a module is not there.
static std::string python(const exchangeroom& room, const std::string& script) {
    writefile(room.file("s.py"), script);
    const std::string run = "cd " + room.folder + " && /usr/bin/python3 s.py >out 2>err";
    if (std::system(run.c_str()) != 0) {
        const std::string error = contentof(room.file("err"));
        EXPECT_NE(error.find("ModuleNotFoundError"), std::string::npos) << error;
        return "";
    }
    std::string lines;  // without the empty ones that a module prints
    for (const char c : contentof(room.file("out")))
        if (c != '\n' || (!lines.empty() && !lines.ends_with('\n'))) lines += c;
    return lines;
}

static void makemodel() {
    for (int n = 0; n < 6; ++n) addnode(float(n % 3) * 1000, float(n / 3) / 3, 0.125f);
    groups(0, 0) = 2;
    groupname(1) = "Skin";
    groupname(2) = "Rib";
    addelement(typeshell4, {1, 2, 5, 4}, 1);
    addelement(typeshell3, {2, 3, 5}, 1);
    addelement(typebeam, {3, 6}, 2);
}

TEST(Counterparts, ReadWhatIsWritten) {
    exchangeroom room;
    makemodel();
    importreport report;
    writegmsh(room.file("a.msh"), {true, false}, report);
    writegmsh(room.file("b.msh"), {false, true}, report);
    writevtu(room.file("c.vtu"), gridpoints::nodes, report);
    writedxf(room.file("d.dxf"), report);
    const std::string seen = python(
        room,
        "import meshio, ezdxf\n"
        "for f in 'a.msh', 'b.msh', 'c.vtu':\n"
        "    m = meshio.read(f)\n"
        "    n = {c.type: len(c.data) for c in m.cells}\n"
        "    print(f, len(m.points), n['quad'], n['triangle'], n['line'], '%.3f' % "
        "m.points.sum())\n"
        "d = ezdxf.readfile('d.dxf').modelspace()\n"
        "print(len(d.query('3DFACE[layer==\"SKIN\"]')), len(d.query('LINE[layer==\"RIB\"]')))\n");
    if (seen.empty()) GTEST_SKIP() << "python3-meshio and python3-ezdxf are not installed";
    EXPECT_EQ(seen,
              "a.msh 6 1 1 1 6001.750\nb.msh 6 1 1 1 6001.750\nc.vtu 6 1 1 1 6001.750\n2 1\n");
}

TEST(Counterparts, WriteWhatIsRead) {
    exchangeroom room;
    const std::string done = python(
        room,
        "import meshio, ezdxf, numpy as np\n"
        "p = np.array([[0,0,0],[1,0,0],[2,0,.5],[0,1,0],[1,1,0],[2,1,.5],[3,0,1.]])\n"
        "q = ('quad', np.array([[0,1,4,3],[1,2,5,4]])); t = ('triangle', np.array([[2,6,5]]))\n"
        "m = meshio.Mesh(p, [q, t])\n"
        "meshio.write('a.msh', m, file_format='gmsh22', binary=False)\n"
        "meshio.write('b.msh', m, file_format='gmsh22')\n"
        "meshio.write('c.msh', meshio.Mesh(p, [q]), file_format='gmsh')\n"
        "meshio.write('d.ply', m, binary=False)\n"
        "meshio.write('e.bdf', m, file_format='nastran')\n"
        "d = ezdxf.new('R2018'); b = d.blocks.new('B'); s = d.modelspace()\n"
        "b.add_lwpolyline([(0,0),(1,0),(1,1)], close=True)\n"
        "s.add_blockref('B', (5,0), dxfattribs={'layer': 'L', 'xscale': 2, 'rotation': 90})\n"
        "s.add_line((0,0), (4,0)); s.add_line((2,-1), (2,1)); d.saveas('f.dxf')\n"
        "print('done')\n");
    if (done.empty()) GTEST_SKIP() << "python3-meshio and python3-ezdxf are not installed";
    const struct {
        const char* file;
        void (*read)(const std::string& path, imported& found);
        std::size_t nodes, elements;
    } cases[] = {
        {"a.msh", readgmsh, 7, 3},
        {"b.msh", readgmsh, 7, 3},
        {"c.msh", readgmsh, 7, 2},
        {"d.ply", readply, 7, 3},
        {"e.bdf", readbulkdata, 7, 3},
        {"f.dxf", [](const std::string& p, imported& f) { readdxf(p, {}, 1, f); }, 8, 7},
    };
    for (const auto& c : cases) {
        imported found;
        found.report.file = room.file(c.file);
        c.read(room.file(c.file), found);
        EXPECT_EQ(found.nodes.size(), c.nodes) << c.file << found.report.text();
        EXPECT_EQ(found.elements.size(), c.elements) << c.file << found.report.text();
        if (std::string(c.file) == "f.dxf") continue;
        double sum = 0;
        for (const triple& at : found.nodes) sum += at[0] + at[1] + at[2];
        EXPECT_NEAR(sum, 14, 1e-9) << c.file;
    }
}
