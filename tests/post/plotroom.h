// SPDX-License-Identifier: GPL-3.0-or-later
// A small model with results, for the tests of the plots.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/journal.h"
#include "post/contour.h"
#include "post/legendlook.h"
#include "post/shapes.h"
#include "post/stressfile.h"
#include "tests/support/recorder.h"
#include "view/moddraw.h"
#include "view/scaleview.h"

// Two squares side by side and a bar, with a stress file: the first square from 10 to 40, the
// second from -5 to 35 in component 1; the bar from 7 to 9.
struct plotroom : sessionroom {
    plotroom() {
        wirepost();
        modelname = file("job");
        resultflag = 0;
        for (const auto& p : {point2{0, 0}, {1, 0}, {2, 0}, {0, 1}, {1, 1}, {2, 1}})
            addnode(0, float(p.x), float(p.y));
        addelement(3, {1, 2, 5, 4});
        addelement(3, {2, 3, 6, 5}, 2);
        addelement(1, {1, 6});
        groups(0, 0) = 2;
        lcomb(0, 0) = 2;
        lcomb(1, 1) = 1;
        lcomb(2, 1) = -2;
        lcombname(1) = "Wind";
        curlcomb = 1;
        contourdata = dispcontour = postset = 0;
        contourfilled = stresscomp = 1;
        stressaverage = stressglobal = 0;
        indexautoscale = true;
        markextremes = valueatpointer = false;
        scalemax = scalemin = 0;
        rememberedpalette = 0;
        retryresults();
        viewhor(1) = viewvert(1) = 0;
        viewscale(1) = 2;
        viewptx(1) = 0;
        viewpty(1) = 1;
        viewptz(1) = 0.5;
        viewdist(1) = 1e9f;
        write(".NSL", {{1, 10}, {1, 20}, {1, 30}, {1, 40}, {2, -5}, {2, 0}, {2, 25}, {2, 35}});
        write(".LES", {{3, 7}});
        writedisplacements();
        startjournal();
    }
    bool tells(const char* part) const { return platform.status.find(part) != std::string::npos; }
    // Modes of this eigenvalue each, that move the last node by 1 along y.
    void writemodes(const std::vector<double>& values) const {
        std::string text = "1," + std::to_string(values.size()) + "\r\n";
        for (const double v : values)
            text += std::to_string(v) + "\r\n0,0\r\n0,0\r\n0,0\r\n0,0\r\n0,0\r\n0,1\r\n";
        writefile(file("job.EIG"), text);
    }
    ~plotroom() {
        for (layers l : {layers::contour, layers::elementstress, layers::extremes})
            layer(l).draw = nullptr;
    }
    // Records of elements that hold a first component and twelve zeros; of a line two in a row.
    void write(const std::string& extension,
               const std::vector<std::pair<int, double>>& rows) const {
        const std::string zeros = ",0,0,0,0,0,0,0,0,0,0,0,0";
        std::string text;
        for (const auto& [e, first] : rows) {
            text += std::to_string(e) + ",0,0,0," + std::to_string(first) + zeros;
            if (extension == ".LES") text += "," + std::to_string(first + 2) + zeros;
            text += "\r\n";
        }
        writefile(file("job" + extension), text + "END\r\n");
    }
    void writedisplacements() const {
        writefile(file("job.rvp"), "6,1\r\n0,0\r\n3,4\r\n0,0\r\n0,0\r\n0,0\r\n-1,0\r\n\"LC\"\r\n");
    }
};
