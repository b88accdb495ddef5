/// A Context for each of several windows of Qt's: widgets, and windows that threads draw to.
///
/// Qt's classes have functions with the names of GL's, which are macros of <vellis/gl.hpp>: it is
/// not included here.

#include <memory>
#include <string>
#include <tuple>

#include <QApplication>
#include <QOpenGLContext>
#include <QOpenGLWidget>
#include <QSurfaceFormat>
#include <QThread>
#include <QWidget>
#include <QWindow>
#include <gtest/gtest.h>

#include "engine/window_scenes.hpp"
#include "examples/running_program.hpp"

namespace {

using vellis::test::Window;
using vellis::test::windowSize;

/// Lets Qt work until something holds.
template <class Condition>
bool eventuallyInQt(Condition condition) {
    return eventually([&] {
        QCoreApplication::processEvents();
        return condition();
    });
}

/// A widget that GL draws. Those in one frame share their objects.
class WidgetWindow : public Window {
public:
    explicit WidgetWindow(const Window* sharing)
        : frame_(sharing != nullptr ? static_cast<const WidgetWindow*>(sharing)->frame_
                                    : std::make_shared<QWidget>()),
          widget_(new QOpenGLWidget(frame_.get())) {
        const int size = windowSize;
        widget_->setGeometry(sharing != nullptr ? size : 0, 0, size, size);
        frame_->resize(2 * size, size);
        frame_->show();
        widget_->show();
    }

    /// The widget's end says that its GL context is about to go, which disposes of the Context.
    ~WidgetWindow() override {
        delete widget_;
        EXPECT_EQ(context, nullptr);
    }

    bool isOpen() {
        if (!eventuallyInQt([this] { return widget_->isValid(); }))
            return false;
        QObject::connect(widget_->context(), &QOpenGLContext::aboutToBeDestroyed,
                         [this] { dispose(); });
        return true;
    }

    bool makeCurrent() override {
        widget_->makeCurrent();
        return QOpenGLContext::currentContext() == widget_->context();
    }
    void release() override { widget_->doneCurrent(); }

    /// Has Qt put the widgets together, with GL contexts of its own choice current meanwhile.
    void swap() override {
        widget_->update();
        QCoreApplication::processEvents();
    }

private:
    std::shared_ptr<QWidget> frame_;
    QOpenGLWidget* widget_;
};

/// A window with a GL context that goes from thread to thread.
class PlainWindow : public Window {
public:
    PlainWindow() {
        surface_.setSurfaceType(QSurface::OpenGLSurface);
        surface_.resize(windowSize, windowSize);
        surface_.create();
        gl_.create();
    }

    ~PlainWindow() override {
        dispose();
        gl_.doneCurrent();
    }

    bool makeCurrent() override { return gl_.makeCurrent(&surface_); }
    void release() override { gl_.doneCurrent(); }
    void swap() override { gl_.swapBuffers(&surface_); }

    void handOver() override {
        gl_.doneCurrent();
        gl_.moveToThread(nullptr);
    }
    void takeOver() override { gl_.moveToThread(QThread::currentThread()); }

private:
    QWindow surface_;
    QOpenGLContext gl_;
};

class ContextQtWindows : public testing::Test {
protected:
    void SetUp() override {
        const std::string reason = vellis::test::provideDisplay();
        if (!reason.empty())
            GTEST_SKIP() << reason;
        static int numArguments = 1;
        static char name[] = "windows";
        static char* arguments[] = {name, nullptr};
        static const bool isXcb = qputenv("QT_QPA_PLATFORM", "xcb");
        static const QApplication application(numArguments, arguments);
        ASSERT_TRUE(isXcb);
        QSurfaceFormat format;
        format.setDepthBufferSize(24);
        format.setStencilBufferSize(8);
        QSurfaceFormat::setDefaultFormat(format);
        QApplication::setQuitOnLastWindowClosed(false);
    }

    static std::unique_ptr<Window> openWidget(const Window* sharing) {
        auto window = std::make_unique<WidgetWindow>(sharing);
        if (!window->isOpen() || !window->makeCurrent())
            return nullptr;
        return window;
    }

    static std::unique_ptr<Window> openPlain(const Window*) {
        auto window = std::make_unique<PlainWindow>();
        if (!window->makeCurrent())
            return nullptr;
        return window;
    }
};

class ContextQtPairs : public ContextQtWindows,
                       public testing::WithParamInterface<std::tuple<bool, bool>> {};

INSTANTIATE_TEST_SUITE_P(SharingFirstGoes, ContextQtPairs,
                         testing::Combine(testing::Bool(), testing::Bool()));

TEST_P(ContextQtPairs, OneGoesAndTheOtherDrawsAsBefore) {
    const auto [areSharing, firstGoes] = GetParam();
    vellis::test::drawAndGo(openWidget, areSharing, firstGoes);
}

TEST_F(ContextQtWindows, DrawEachTimeThatTheyAreOpened) {
    vellis::test::openAndClose(openWidget, true);
}

TEST_F(ContextQtWindows, DrawEachTimeThatTheyAreOpenedBesideAnother) {
    vellis::test::openAndClose(openWidget, false);
}

TEST_F(ContextQtWindows, AreDrawnOnAThreadEach) {
    vellis::test::drawOnThreads(openPlain);
}

} // namespace
