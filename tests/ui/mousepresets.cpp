// SPDX-License-Identifier: GPL-3.0-or-later
// What buttons and wheel do to a view in each preset, by the events of the toolkit.
#include "ui/mousepresets.h"

#include <QNativeGestureEvent>
#include <QPointingDevice>
#include <QTest>

#include "edit/Mouseprocedures.h"
#include "tests/support/recorder.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/viewwidget.h"
#include "view/scaleview.h"

namespace {

struct mouseroom : sessionroom {
    mouseroom() {
        if (modes().empty()) wiremouse();
        wiredialogs();
        window.ending = true;
        window.show();
        view = window.view(1);
        view->resize(800, 600);
    }
    ~mouseroom() { setmouse({}); }
    // What the view does meanwhile: "turn", "pan", "zoom" or "".
    template <typename Act>
    static std::string effect(Act act) {
        const float hor = viewhor(1), scale = viewscale(1), x = viewptx(1), y = viewpty(1);
        act();
        if (viewhor(1) != hor) return "turn";
        if (viewscale(1) != scale) return "zoom";
        return viewptx(1) != x || viewpty(1) != y ? "pan" : "";
    }
    void send(QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::KeyboardModifiers keys) {
        const bool none = type == QEvent::MouseMove;
        QMouseEvent event(type, at, view->mapToGlobal(at), none ? Qt::NoButton : button,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : button, keys);
        QApplication::sendEvent(view, &event);
    }
    std::string drag(Qt::MouseButton button, Qt::KeyboardModifiers keys) {
        return effect([&] {
            send(QEvent::MouseButtonPress, {300, 200}, button, keys);
            send(QEvent::MouseMove, {330, 220}, button, keys);
            send(QEvent::MouseMove, {350, 240}, button, keys);
            send(QEvent::MouseButtonRelease, {350, 240}, button, keys);
        });
    }
    std::string wheel(Qt::KeyboardModifiers keys) {
        return effect([&] {
            QWheelEvent event({300, 200}, view->mapToGlobal(QPointF(300, 200)), {}, {120, 120},
                              Qt::NoButton, keys, Qt::NoScrollPhase, false);
            QApplication::sendEvent(view, &event);
        });
    }
    mainwindow window;
    viewwidget* view;
};

}  // namespace

TEST(Mousepresets, EachDoesWhatItSays) {
    mouseroom room;
    const auto none = Qt::NoModifier, shift = Qt::ShiftModifier, ctrl = Qt::ControlModifier,
               alt = Qt::AltModifier;
    const auto left = Qt::LeftButton, middle = Qt::MiddleButton, right = Qt::RightButton;
    const struct {
        int preset;
        Qt::MouseButton button;
        Qt::KeyboardModifier keys;
        const char* does;
    } drags[] = {{0, middle, none, "pan"},   {0, middle, shift, "turn"}, {0, left, alt, "turn"},
                 {0, right, none, ""},       {1, middle, none, "turn"},  {1, middle, shift, "pan"},
                 {1, middle, ctrl, "zoom"},  {2, right, none, "pan"},    {2, middle, none, "turn"},
                 {2, middle, shift, "zoom"}, {3, left, alt, "turn"},     {3, left, none, ""}};
    for (const auto& d : drags) {
        setmouse({.preset = d.preset});
        EXPECT_EQ(room.drag(d.button, d.keys), d.does) << d.preset << " " << int(d.button);
    }
    const char* const wheels[][3] = {{"zoom", "zoom", "zoom"},
                                     {"zoom", "zoom", "pan"},
                                     {"zoom", "zoom", "pan"},
                                     {"pan", "zoom", "turn"}};
    for (int p = 0; p < 4; ++p) {
        setmouse({.preset = p});
        EXPECT_EQ(room.wheel(none), wheels[p][0]) << p;
        EXPECT_EQ(room.wheel(ctrl), wheels[p][1]) << p;
        EXPECT_EQ(room.wheel(shift), wheels[p][2]) << p;
    }
    // A right click that is no drag still ends what runs.
    setmouse({.preset = 2});
    startmode(addnodemode);
    room.send(QEvent::MouseButtonPress, {300, 200}, right, none);
    EXPECT_TRUE(addnodemode);
    room.send(QEvent::MouseButtonRelease, {301, 200}, right, none);
    EXPECT_FALSE(addnodemode);
}

// Two fingers on a touchpad or a touch screen, as the desktop tells of them: where the point of the
// model under 300, 200 goes, and how much larger it is drawn.
TEST(Mousepresets, FingersPinchAndPan) {
    mouseroom room;
    setmouse({.preset = 3});
    QPointingDevice pad("pad", 1, QInputDevice::DeviceType::TouchPad,
                        QPointingDevice::PointerType::Finger, QInputDevice::Capability::Position, 2,
                        0);
    QPointingDevice* const screen = QTest::createTouchDevice();
    const QPointF at(300, 200), way(40, 30);
    const auto inwindow = [&](QPointF p) { return QPointF(room.view->mapTo(&room.window, p)); };
    const auto native = [&](Qt::NativeGestureType type, double value, QPointF delta) {
        QNativeGestureEvent event(type, &pad, 2, at, inwindow(at), room.view->mapToGlobal(at),
                                  value, delta);
        QApplication::sendEvent(room.view, &event);
    };
    const auto two = [&](QPointF a, QPointF b) {
        const QPoint side(50, 0);
        QTest::touchEvent(room.view, screen)
            .press(0, at.toPoint() - side)
            .press(1, at.toPoint() + side);
        QTest::touchEvent(room.view, screen).move(0, a.toPoint()).move(1, b.toPoint());
        QTest::touchEvent(room.view, screen).release(0, a.toPoint()).release(1, b.toPoint());
    };
    const struct {
        const char* name;
        std::function<void()> act;
        QPointF lands;
        double larger;
    } cases[] = {
        {"pinch", [&] { native(Qt::ZoomNativeGesture, 0.25, {}); }, at, 1.25},
        {"two fingers", [&] { native(Qt::PanNativeGesture, 0, way); }, at + way, 1},
        {"scrolled",
         [&] {
             QWheelEvent event(at, room.view->mapToGlobal(at), way.toPoint(), {90, 120},
                               Qt::NoButton, Qt::NoModifier, Qt::ScrollUpdate, false);
             QApplication::sendEvent(room.view, &event);
         },
         at + way, 1},
        {"touched, panned", [&] { two(at + way - QPointF(50, 0), at + way + QPointF(50, 0)); },
         at + way, 1},
        {"touched, spread", [&] { two(at - QPointF(100, 0), at + QPointF(100, 0)); }, at, 2},
    };
    const double cm = room.view->pixelspercm();
    for (const auto& c : cases) {
        const double scale = viewscale(1);
        unprojectat(1, at.x() / cm, at.y() / cm);
        const double x = modelx, y = modely, z = modelz;
        c.act();
        prepareview(1);
        projectplace(1, x, y, z);
        EXPECT_NEAR(scrx * cm, c.lands.x(), 0.5) << c.name;
        EXPECT_NEAR(scry * cm, c.lands.y(), 0.5) << c.name;
        EXPECT_NEAR(viewscale(1) / scale, c.larger, 1e-3) << c.name;
    }
}

TEST(Mousepresets, TheChoiceIsRememberedAndTheCubeGoes) {
    mouseroom room;
    EXPECT_TRUE(opendialog("Mouse"));
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w->objectName() != "Mouse" || !w->isVisible()) continue;
        w->findChild<QComboBox*>("Combo1")->setCurrentIndex(3);
        w->findChild<QCheckBox*>("Check2")->click();
        w->findChild<QPushButton*>("OK")->click();
    }
    EXPECT_EQ(rememberedmouse(), (mousesettings{3, false, false}));
    const QPointF cube(room.view->width() - 60, 44);
    EXPECT_FALSE(room.view->presscube(cube));
    setmouse({});
    viewvert(1) = viewhor(1) = 0.7f;
    bool pressed = false;
    for (int x = 20; x < 90 && !pressed; x += 4)
        pressed = room.view->presscube({double(room.view->width() - x), 44});
    EXPECT_TRUE(pressed);
    EXPECT_NE(viewhor(1), 0.7f);
}
