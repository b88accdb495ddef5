/// A Context for each of several windows of GLFW's.

#include <vellis/gl.hpp>

#include <memory>
#include <string>
#include <tuple>

#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

#include "engine/window_scenes.hpp"

namespace {

using vellis::test::Window;
using vellis::test::windowSize;

class GlfwWindow : public Window {
public:
    explicit GlfwWindow(const Window* sharing)
        : handle_(glfwCreateWindow(
              windowSize, windowSize, "window", nullptr,
              sharing != nullptr ? static_cast<const GlfwWindow*>(sharing)->handle_ : nullptr)) {}

    ~GlfwWindow() override {
        dispose();
        if (handle_ != nullptr)
            glfwDestroyWindow(handle_);
    }

    bool isOpen() const { return handle_ != nullptr; }

    bool makeCurrent() override {
        glfwMakeContextCurrent(handle_);
        return glfwGetCurrentContext() == handle_;
    }
    void release() override { glfwMakeContextCurrent(nullptr); }
    void swap() override { glfwSwapBuffers(handle_); }

private:
    GLFWwindow* handle_;
};

class ContextGlfwWindows : public testing::Test {
protected:
    void SetUp() override {
        const std::string reason = vellis::test::provideDisplay();
        if (!reason.empty())
            GTEST_SKIP() << reason;
        ASSERT_EQ(glfwInit(), GLFW_TRUE);
        glfwWindowHint(GLFW_RESIZABLE, GLFW_FALSE);
        glfwWindowHint(GLFW_DECORATED, GLFW_FALSE);
    }
    void TearDown() override { glfwTerminate(); }

    static std::unique_ptr<Window> open(const Window* sharing) {
        auto window = std::make_unique<GlfwWindow>(sharing);
        if (!window->isOpen() || !window->makeCurrent())
            return nullptr;
        glfwSwapInterval(0);
        return window;
    }
};

class ContextGlfwPairs : public ContextGlfwWindows,
                         public testing::WithParamInterface<std::tuple<bool, bool>> {};

INSTANTIATE_TEST_SUITE_P(SharingFirstGoes, ContextGlfwPairs,
                         testing::Combine(testing::Bool(), testing::Bool()));

TEST_P(ContextGlfwPairs, OneGoesAndTheOtherDrawsAsBefore) {
    const auto [areSharing, firstGoes] = GetParam();
    vellis::test::drawAndGo(open, areSharing, firstGoes);
}

TEST_F(ContextGlfwWindows, DrawEachTimeThatTheyAreOpened) {
    vellis::test::openAndClose(open, true);
}

TEST_F(ContextGlfwWindows, DrawEachTimeThatTheyAreOpenedBesideAnother) {
    vellis::test::openAndClose(open, false);
}

TEST_F(ContextGlfwWindows, AreDrawnOnAThreadEach) {
    vellis::test::drawOnThreads(open);
}

} // namespace
