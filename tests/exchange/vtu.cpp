// SPDX-License-Identifier: GPL-3.0-or-later
// Grids for ParaView: the packed arrays hold the model and its results.
#include "exchange/vtu.h"

#include <zlib.h>

#include <cstring>

#include "core/journal.h"
#include "core/units.h"
#include "post/postproces.h"
#include "tests/post/plotroom.h"

// The values of an array of a file, unpacked.
template <typename T>
static std::vector<T> arrayof(const std::string& file, const std::string& name) {
    const std::size_t header = file.find("Name=\"" + name + "\"");
    if (header == file.npos) return {};
    const std::size_t offset = std::stoul(file.substr(file.find("offset=\"", header) + 8, 20));
    const char* at = file.data() + file.find("_", file.find("<AppendedData")) + 1 + offset;
    std::array<std::uint64_t, 3> head;
    std::memcpy(head.data(), at, sizeof head);
    std::vector<std::uint64_t> sizes(head[0]);
    std::memcpy(sizes.data(), at + sizeof head, 8 * sizes.size());
    at += sizeof head + 8 * sizes.size();
    std::string bytes;
    for (const std::uint64_t size : sizes) {
        const bool islast = &size == &sizes.back() && head[2] != 0;
        uLongf room = islast ? head[2] : head[1];
        std::string block(room, '\0');
        EXPECT_EQ(uncompress(reinterpret_cast<Bytef*>(block.data()), &room,
                             reinterpret_cast<const Bytef*>(at), size),
                  Z_OK);
        bytes += block.substr(0, room);
        at += size;
    }
    std::vector<T> values(bytes.size() / sizeof(T));
    std::memcpy(values.data(), bytes.data(), bytes.size());
    return values;
}

TEST(Vtu, HoldsTheModelAndEveryResult) {
    plotroom room;
    room.write(".NSA", {{1, 10}, {1, 20}, {1, 30}, {1, 40}, {2, 60}, {2, 0}, {2, 0}, {2, 10}});
    room.writemodes({4, 9});
    lcombname(2) = "Snow & <ice>";
    curlcomb = 2;
    modevalue = 7;
    nodes(1, 3, 1) = 0.25;
    importreport report;
    writevtu(room.file("a.vtu"), gridpoints::nodes, report);
    EXPECT_EQ(curlcomb, 2);
    EXPECT_EQ(modevalue, 7);
    EXPECT_EQ(nodes(1, 3, 1), 0.25) << "the display keeps its shape";
    EXPECT_EQ(report.count(reportkinds::warning), 0);
    noteoldresults();
    importreport old;
    writevtu(room.file("b.vtu"), gridpoints::nodes, old);
    EXPECT_NE(old.text().find(staletext), std::string::npos);
    const std::string file = contentof(room.file("a.vtu"));
    EXPECT_NE(file.find("NumberOfPoints=\"6\" NumberOfCells=\"3\""), file.npos);
    EXPECT_EQ(arrayof<float>(file, "Points").size(), 18u);
    EXPECT_EQ(arrayof<std::int32_t>(file, "connectivity"),
              (std::vector<std::int32_t>{0, 1, 4, 3, 1, 2, 5, 4, 0, 5}));
    EXPECT_EQ(arrayof<std::int64_t>(file, "offsets"), (std::vector<std::int64_t>{4, 8, 10}));
    EXPECT_EQ(arrayof<std::uint8_t>(file, "types"), (std::vector<std::uint8_t>{9, 9, 3}));
    EXPECT_EQ(arrayof<std::int32_t>(file, "group"), (std::vector<std::int32_t>{1, 2, 1}));
    const auto wind = arrayof<float>(file, "Displacement Wind");
    ASSERT_EQ(wind.size(), 18u);
    EXPECT_EQ(wind[3], 3);
    EXPECT_EQ(wind[4], 4);
    EXPECT_EQ(arrayof<float>(file, "Displacement Snow &amp; &lt;ice>").at(3), -6);
    EXPECT_EQ(arrayof<float>(file, "Mode 2, 0.4775 Hz").at(16), 1);
    const auto stress = arrayof<float>(file, "Sx Wind");
    ASSERT_EQ(stress.size(), 6u);
    EXPECT_EQ(stress[0], 10);
    EXPECT_EQ(stress[1], 40) << "of two elements that do not continue one another the mean";
    // As the other kinds of files have them.
    room.write(".NSR", {{1, 1}, {1, 2}, {1, 3}, {1, 4}, {2, 5}, {2, 6}, {2, 7}, {2, 8}});
    writevtu(room.file("c.vtu"), gridpoints::corners, report);
    const std::string corners = contentof(room.file("c.vtu"));
    EXPECT_EQ(arrayof<float>(corners, "Sx Wind"),
              (std::vector<float>{1, 2, 3, 4, 5, 6, 7, 8, 0, 0}));
    EXPECT_EQ(arrayof<std::int32_t>(corners, "node"),
              (std::vector<std::int32_t>{1, 2, 5, 4, 2, 3, 6, 5, 1, 6}));
    EXPECT_EQ(arrayof<std::int32_t>(corners, "connectivity").at(9), 9);
    EXPECT_EQ(arrayof<float>(corners, "Displacement Wind").at(13), 4) << "node 2 once more";
    EXPECT_EQ(corners.find("UNITS_LABEL"), corners.npos) << "the model says none";
    unitstext = "m kN t";
    writepvd(room.file("d.pvd"), report);
    unitstext.clear();
    EXPECT_NE(contentof(room.file("d.pvd")).find("timestep=\"2\" part=\"0\" name=\"Snow &amp; "),
              std::string::npos);
    const std::string second = contentof(room.file("d_2.vtu"));
    EXPECT_EQ(arrayof<float>(second, "Displacement").at(3), -6);
    for (const char* const unit : {">m</InformationKey>", ">kN/m2</InformationKey>"})
        EXPECT_NE(second.find(unit), second.npos) << unit;
    EXPECT_EQ(arrayof<float>(second, "Sx by corner").at(7), -16);
}
