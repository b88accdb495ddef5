/// vellis in widgets of Qt 6, and a QPainter above.
///
/// Qt's classes have functions with the names of GL's, which are macros of <vellis/gl.hpp>: it is
/// not included here.

#include <array>
#include <memory>

#include <QApplication>
#include <QCloseEvent>
#include <QOpenGLContext>
#include <QOpenGLWidget>
#include <QPainter>
#include <QSurfaceFormat>
#include <QTimer>

#include "run.hpp"

namespace {

using hosts::Run;

class Window : public QOpenGLWidget {
public:
    Window(Run& run, std::size_t number) : run_(run), number_(number) {
        setWindowTitle("vellis in Qt 6");
        setGeometry(hosts::windowLeft(number), 0, hosts::windowWidth, hosts::windowHeight);
        show();
    }

    /// The GL context goes with the widget, when this class's part of it is gone already.
    ~Window() override {
        if (scene_ == nullptr)
            return;
        disconnect(context(), nullptr, this, nullptr);
        letGo();
    }

protected:
    /// The widget has a GL context, which is current here: for the first time, or once more, since
    /// Qt makes another one when the widget gets another window.
    void initializeGL() override {
        connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, [this] { letGo(); });
        scene_ = std::make_unique<hosts::Scene>(hosts::ground(number_));
    }

    /// The GL context is current, and the framebuffer object that Qt shows the widget from is
    /// bound.
    void paintGL() override {
        const auto toPixels = [this](int length) {
            return static_cast<unsigned int>(length * devicePixelRatio());
        };
        run_.draw(*scene_, number_, {toPixels(width()), toPixels(height())});
        drawPanel();
        run_.finish(*scene_);
    }

private:
    void letGo() {
        makeCurrent();
        scene_.reset();
        doneCurrent();
    }

    void drawPanel() {
        namespace panel = hosts::panel;
        const QRect place(panel::left, panel::top, panel::width, panel::height);
        QPainter painter(this);
        painter.fillRect(place, QColor(panel::red, panel::green, panel::blue));
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(Qt::white, 2));
        painter.drawText(place.adjusted(8, 8, -8, -8), Qt::AlignTop | Qt::AlignLeft, "QPainter");
        painter.drawEllipse(QPoint(place.right() - 24, place.bottom() - 24), 16, 16);
    }

    Run& run_;
    std::size_t number_;
    std::unique_ptr<hosts::Scene> scene_;
};

using Windows = std::array<std::unique_ptr<Window>, hosts::numWindows>;

void proceed(Run& run, Windows& windows) {
    const Run::Step step = run.next();
    if (step == Run::Step::CloseSecond)
        windows[1].reset();
    if (step == Run::Step::OpenSecond)
        windows[1] = std::make_unique<Window>(run, 1);
    for (const auto& window : windows) {
        if (window != nullptr && step != Run::Step::Rest)
            window->update();
    }
}

/// What the GL contexts of the windows are to be.
QSurfaceFormat format(bool isCore) {
    QSurfaceFormat result;
    if (isCore) {
        result.setVersion(3, 3);
        result.setProfile(QSurfaceFormat::CoreProfile);
    }
    return result;
}

} // namespace

int main(int argc, char** argv) {
    Run run(argc, argv, true);
    QSurfaceFormat::setDefaultFormat(format(run.isCore()));
    const QApplication application(argc, argv);
    Windows windows = {std::make_unique<Window>(run, 0), std::make_unique<Window>(run, 1)};
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { proceed(run, windows); });
    timer.start(10);
    QApplication::exec(); // until no window is shown
    return run.status();
}
