// SPDX-License-Identifier: GPL-3.0-or-later
// Redraw of a million quadrilaterals in wire form, one view and four, against one pass of QPainter
// line drawing over the same segments prepared beforehand, on an image of the same size.
#include <QGuiApplication>
#include <QPainter>
#include <array>
#include <vector>

#include "bench/largemodel.h"
#include "bench/ratio.h"
#include "core/colours.h"
#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/views.h"
#include "ui/qtsurface.h"
#include "view/moddraw.h"
#include "view/scaleview.h"
#include "view/setviews.h"

static const double pixelspercm = 96 / 2.54;

// The four surfaces without a window around them.
class imagedoor : public platform {
  public:
    answers show(const messagebox&) override { return answers::ok; }
    filechoice choosefile(const filebox&) override { return {}; }
    surface* viewsurface(int nview) override { return &views[std::size_t(nview - 1)]; }
    twipbox workarea() override { return {0, 0, 2080 + 1600 * 15, 900 * 15}; }
    void placeview(int nview, const twipbox& box, bool) override {
        views[std::size_t(nview - 1)].resize(int(box.width / 15), int(box.height / 15), 1,
                                             pixelspercm);
    }
    void viewsize(int nview, double& width, double& height) override {
        width = views[std::size_t(nview - 1)].width();
        height = views[std::size_t(nview - 1)].height();
    }
    std::array<qtsurface, 4> views;
};

static std::vector<QLineF> segments(int nview) {
    std::vector<QLineF> lines;
    prepareview(nview);
    for (int e = 1; e <= nelems(); ++e) {
        QPointF corner[4];
        for (int k = 0; k < 4; ++k) {
            setnode(int(elems(e, k + 1)), nview);
            projectpoint(nview);
            corner[k] = QPointF(scrx, scry) * pixelspercm;
        }
        for (int k = 0; k < 4; ++k) lines.emplace_back(corner[k], corner[(k + 1) % 4]);
    }
    return lines;
}

static void plainpass(QImage& image, const std::vector<QLineF>& lines) {
    image.fill(Qt::white);
    QPainter painter(&image);
    QPen pen(Qt::black, 1);
    pen.setCosmetic(true);
    painter.setPen(pen);
    painter.drawLines(lines.data(), int(lines.size()));
}

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    imagedoor door;
    setdoor(&door);
    startsession();
    makelargemodel(1000);
    for (const bool single : {true, false}) {
        single ? setoneview() : setfourviews();
        std::vector<std::vector<QLineF>> prepared;
        std::vector<QImage> images;
        for (int v = 1; v <= shownviews(); ++v) {
            autoscale(v);
            prepared.push_back(segments(v));
            images.push_back(door.views[std::size_t(v - 1)].picture());
        }
        const auto plain = [&] {
            for (std::size_t v = 0; v < images.size(); ++v) plainpass(images[v], prepared[v]);
        };
        const char* const views = single ? "one view" : "four views";
        printratio(std::string("wire redraw with nodes, ") + views, 5, 3, redrawall, plain);
        mnudrawlist(0).checked = false;
        printratio(std::string("wire redraw, ") + views, 5, 3, redrawall, plain);
        mnudrawlist(0).checked = true;
    }
    setdoor(nullptr);
}
