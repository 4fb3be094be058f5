// SPDX-License-Identifier: GPL-3.0-or-later
// The objects that come with the program.
#include <algorithm>
#include <filesystem>
#include <numeric>

#include "core/catalogue.h"
#include "core/newmodel.h"
#include "core/session.h"
#include "edit/Edit.h"
#include "tests/support/recorder.h"
#include "tests/tools/edges.h"
#include "tools/bereken.h"
#include "tools/objectform.h"

namespace fs = std::filesystem;

// Parts of the model that share no node.
static int partsofmodel() {
    std::vector<int> chief(std::size_t(nnodes()) + 1);
    std::iota(chief.begin(), chief.end(), 0);
    const auto chiefof = [&](int n) {
        while (chief[std::size_t(n)] != n)
            n = chief[std::size_t(n)] = chief[std::size_t(chief[std::size_t(n)])];
        return n;
    };
    int parts = nnodes();
    for (int e = 1; e <= nelems(); ++e)
        for (int k = 2; k <= nodesoftype(elems(e, 0)); ++k) {
            const int a = chiefof(int(elems(e, 1))), b = chiefof(int(elems(e, k)));
            if (a == b) continue;
            chief[std::size_t(a)] = b;
            --parts;
        }
    return parts;
}

struct othervalues {
    const char* name;
    std::vector<std::pair<const char*, const char*>> values;
};

// Another shape of each object: flatter, slimmer, narrower.
static const othervalues settings[] = {
    {"I girder", {{"HW", "1500"}, {"S", "700"}}},
    {"bracket", {{"K", ".55"}, {"H", "800"}}},
    {"cone transition", {{"R1", "300"}, {"R2", "900"}}},
    {"deck frame", {{"LX", "6000"}, {"HC", "2500"}}},
    {"manhole", {{"A", "300"}, {"R", "250"}}},
    {"pad eye", {{"B", "260"}, {"R", "60"}}},
    {"pipe bend", {{"RB", "500"}, {"RP", "300"}}},
    {"plate with hole", {{"W", "2000"}, {"R", "450"}}},
    {"stiffened panel bay", {{"S", "400"}, {"BF", "200"}}},
    {"tank ring", {{"R", "1500"}, {"BW", "500"}}},
    {"truss bay", {{"B2", "2000"}, {"H", "9000"}}},
    {"tubular K joint", {{"S", "240"}, {"DZ", "1"}}},
    {"tubular T joint", {{"S", "270"}, {"L", "3000"}}},
    {"tubular X joint", {{"S", "60"}, {"H", "600"}}},
};

static void setvalue(objectsform& form, const std::string& name, const std::string& value) {
    const auto label = std::ranges::find_if(
        form.labels, [&](const std::string& text) { return text.starts_with(name + " : "); });
    ASSERT_NE(label, form.labels.end()) << name;
    editvariable(form, int(label - form.labels.begin()), value);
}

TEST(ObjectLibrary, EachObjectIsSoundInOnePieceAndHasItsPicture) {
    sessionroom room;
    for (const int size : {1, 2}) modelsize(size) = 40000;
    ASSERT_TRUE(resetmodel());
    objectsform form = openobjects({sourcedir() + "/data/objects"});
    ASSERT_EQ(form.library.size(), std::size(settings));
    for (std::size_t i = 0; i < std::size(settings); ++i) {
        const objectentry& entry = form.library[i];
        const auto* const setting =
            std::ranges::find(settings, entry.name, [](const othervalues& o) { return o.name; });
        ASSERT_NE(setting, std::end(settings)) << entry.name;
        EXPECT_FALSE(entry.picture.empty()) << entry.name;
        chooseobject(form, int(i));
        const float coarse = tmpelems(0, 0);
        for (const bool other : {false, true}) {
            if (other) setvalue(form, "NMESH", "2");
            if (other)
                for (const auto& [name, value] : setting->values) setvalue(form, name, value);
            SCOPED_TRACE(entry.name + (other ? ", other values" : ""));
            ASSERT_TRUE(form.ready) << form.message;
            EXPECT_EQ(objinverted, 0);
            EXPECT_TRUE(form.message.starts_with(std::to_string(int(tmpelems(0, 0))) + " elements"))
                << form.message;
            EXPECT_GE(tmpelems(0, 0), (other ? 2 : 1) * coarse);
            acceptobject(form);
            EXPECT_GT(nelems(), 0);
            for (int g = 1; g <= ngroups(); ++g)
                EXPECT_FLOAT_EQ(groups(g, 3), 7.85e-6f) << "steel, in the units as delivered";
            EXPECT_EQ(partsofmodel(), 1);
            EXPECT_TRUE(room.platform.messages.empty());
            ASSERT_TRUE(resetmodel());
        }
    }
}
