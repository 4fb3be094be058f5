// SPDX-License-Identifier: GPL-3.0-or-later
// The window "Animation": moves the shape on show. Each picture is drawn once and then kept, so
// that a large model moves as smoothly as a small one after its first cycle; whatever else is drawn
// in the views meanwhile ends the kept ones.
#include <QApplication>
#include <QBoxLayout>
#include <QBuffer>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QTimer>
#include <array>
#include <map>

#include "core/besidefile.h"
#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "files/filop.h"
#include "files/saving.h"
#include "post/contour.h"
#include "post/legend.h"
#include "post/motion.h"
#include "post/postproces.h"
#include "post/shapes.h"
#include "ui/apng.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/qtsurface.h"
#include "ui/viewwidget.h"
#include "view/moddraw.h"
#include "view/scaleview.h"

namespace {

const double keptbytes = 400e6;  // of pictures; a longer motion is drawn again

// A view as it stands, with the legend of its plot beside it.
QImage pictureofview(int nview) {
    const QImage view = themainwindow->view(nview)->surface.picture();
    if (!legendshown()) return view;
    const QImage legend = static_cast<qtsurface*>(themainwindow->legendsurface())->picture();
    QImage both(view.width() + legend.width(), std::max(view.height(), legend.height()),
                QImage::Format_RGB32);
    both.fill(qtcolor(backcolor));
    QPainter p(&both);
    p.drawImage(QRectF(0, 0, view.width(), view.height()), view);
    p.drawImage(QRectF(view.width(), 0, legend.width(), legend.height()), legend);
    return both;
}

class animation : public sidedialog {
  public:
    animation() : sidedialog(themainwindow) {
        setWindowTitle("Animation");
        setProperty(besidemain, true);
        auto* const all = new QVBoxLayout(this);
        buildplaying(all);
        buildmotion(all);
        message = newmessageline("message", this, all);
        buildfiles(all);
        if (!isdeformed()) showdeformed();
        now.swings = fieldismode;
        range->setCurrentIndex(now.swings ? 1 : 0);
        timer.setSingleShot(true);
        timer.callOnTimeout(this, [this] { guarded([this] { tick(); }, tellfault); });
        connect(this, &QDialog::finished, this, guardedhandler([this](int) { end(); }));
    }
    ~animation() override { shapepart = 1; }

  private:
    void buildplaying(QBoxLayout* all) {
        auto* const row = new QHBoxLayout;
        all->addLayout(row);
        newaction("stepback", "Back", this, row, [this] { step(-1); });
        play = newaction("play", "Play", this, row, [this] { playing ? stop() : start(); });
        play->setDefault(true);
        newaction("stepforward", "Forward", this, row, [this] { step(1); });
    }
    void buildmotion(QBoxLayout* all) {
        auto* const grid = new QGridLayout;
        all->addLayout(grid);
        const auto add = [&](const char* caption, QWidget* control, const char* name) {
            const int row = grid->rowCount();
            control->setObjectName(name);
            grid->addWidget(new QLabel(caption, this), row, 0);
            grid->addWidget(control, row, 1);
        };
        range = new QComboBox(this);
        range->addItems({"0 to 1", "-1 to 1"});
        add("Shape from", range, "range");
        connect(range, &QComboBox::activated, this, guardedhandler([this](int i) {
                    now.swings = i == 1;
                    forget();
                }));
        pictures = new QSpinBox(this);
        pictures->setRange(fewestpictures, mostpictures);
        pictures->setValue(now.pictures);
        add("Pictures one way", pictures, "pictures");
        connect(pictures, &QSpinBox::valueChanged, this, guardedhandler([this](int count) {
                    now.pictures = count;
                    forget();
                }));
        speed = new QSlider(Qt::Horizontal, this);
        speed->setRange(1, 40);
        speed->setValue(int(10 / now.seconds * 2));
        add("Speed", speed, "speed");
        connect(speed, &QSlider::valueChanged, this,
                [this](int tenths) { now.seconds = 20.0 / tenths; });
    }
    void buildfiles(QBoxLayout* all) {
        auto* const row = new QHBoxLayout;
        all->addLayout(row);
        newaction("saveframes", "Save Pictures...", this, row, [this] { saveframes(); });
        newaction("saveanimation", "Save Animation...", this, row, [this] { saveanimation(); });
        newaction("ready", "Ready", this, row, [this] { accept(); });
    }

    // --- playing --------------------------------------------------------------------------------

    void start() {
        if (!isdeformed()) {
            message->setText("There is no shape to move: show a deformed or a mode shape");
            return;
        }
        playing = true;
        play->setText("Stop");
        tick();
    }
    void stop() {
        playing = false;
        timer.stop();
        play->setText("Play");
    }
    void end() {
        stop();
        forget();
        shapepart = 1;
        redrawall();
    }
    void forget() {
        kept.clear();
        bytes = 0;
    }
    void step(int by) {
        stop();
        place = (place + by + picturesofcycle(now)) % picturesofcycle(now);
        showplace();
    }
    void tick() {
        if (!playing) return;
        if (!isdeformed()) return stop();
        place = (place + 1) % picturesofcycle(now);
        showplace();
        timer.start(std::max(1, int(1000 * now.seconds / picturesofcycle(now))));
    }
    void showplace() {
        const int k = pictureat(now, place);
        if (drawnat != picturesdrawn) forget();  // the model or a view is another
        message->setText(QString("Picture %1 of %2").arg(k + 1).arg(now.pictures + 1));
        const auto found = kept.find(k);
        if (found == kept.end()) return draw(k);
        for (int v = 1; v <= shownviews(); ++v)
            themainwindow->view(v)->showstill(found->second[std::size_t(v - 1)]);
    }
    void draw(int k) {
        shapepart = float(partof(now, k));
        redrawall();
        shapepart = 1;  // what else is drawn or picked meanwhile is of the whole shape
        drawnat = picturesdrawn;
        if (bytes > keptbytes) return;
        for (int v = 1; v <= shownviews(); ++v) {
            QImage& picture = kept[k][std::size_t(v - 1)];
            picture = themainwindow->view(v)->surface.picture();
            bytes += double(picture.sizeInBytes());
        }
    }

    // --- files ----------------------------------------------------------------------------------

    // The view that was worked in last, with the legend of a plot beside it.
    QImage pictureof(int k) {
        const int v = std::clamp(int(activeview), 1, shownviews());
        shapepart = float(partof(now, k));
        drawview(v);
        shapepart = 1;
        return pictureofview(v);
    }
    // "" when there is nothing to write or the user gives it up.
    std::string ask(const char* title, const char* tail) {
        stop();
        if (!isdeformed()) {
            message->setText("There is no shape to move: show a deformed or a mode shape");
            return {};
        }
        filebox box;
        box.title = title;
        box.filter = "PNG pictures (*.png)|*.png|All Files (*.*)|*.*";
        box.saving = true;
        if (isnamed()) box.path = modelname + tail;
        return asktarget(box, ".png");
    }
    static void write(const std::string& path, const QByteArray& data) {
        besidefile file(path);
        file.write(data.constData(), std::size_t(data.size()));
        file.finish();
        file.replacetarget();
    }
    static void report(int done, int count) {
        if (!theplatform().progress("Drawing the animation", double(done) / count))
            throw runtimeerror{errstopped, "The animation was cancelled"};
    }
    template <typename Work>
    void save(Work work) {
        guarded(work, [this](const runtimeerror& e) { message->setText(qtext(e.what)); });
        theplatform().endprogress();
        shapepart = 1;
        redrawall();
    }
    // NAME-01.png and on: one cycle.
    void saveframes() {
        const std::string path = ask("Save Pictures of the Animation", "-motion.png");
        if (path.empty()) return;
        const std::size_t dot = path.find_last_of('.');
        if (!askoverwrite(path.substr(0, dot) + "-01", path.substr(dot))) return;
        save([&] {
            const int count = picturesofcycle(now);
            for (int i = 0; i < count; ++i) {
                QBuffer png;
                pictureof(pictureat(now, i)).save(&png, "PNG");
                const QString number = QString("-%1").arg(i + 1, 2, 10, QChar('0'));
                write(path.substr(0, dot) + number.toStdString() + path.substr(dot), png.data());
                report(i + 1, count);
            }
            message->setText(QString("%1 pictures written beside %2").arg(count).arg(qtext(path)));
        });
    }
    void saveanimation() {
        const std::string path = ask("Save Animation", "-animation.png");
        if (path.empty()) return;
        save([&] {
            const int count = picturesofcycle(now);
            const int pause = std::max(10, int(1000 * now.seconds / count));
            write(path, apngof(count, pause, [&](int i) {
                      report(i, count);
                      return pictureof(pictureat(now, i));
                  }));
            message->setText("Written: " + qtext(path));
        });
    }

    shapemotion now;
    bool playing = false;
    int place = 0;  // in the cycle
    long drawnat = -1;
    std::map<int, std::array<QImage, 4>> kept;
    double bytes = 0;
    QTimer timer;
    QPushButton* play;
    QComboBox* range;
    QSpinBox* pictures;
    QSlider* speed;
    QLabel* message;
};

}  // namespace

QDialog* makeanimation() {
    return new animation;
}
