#include "engine/window_scenes.hpp"

#include <cstdlib>
#include <optional>
#include <thread>
#include <vector>

#include "examples/x_server.hpp"
#include "support/scene.hpp"

namespace vellis::test {
namespace {

static_assert(windowSize == sceneSize);

constexpr Color colors[] = {red, green, blue, yellow};

/// Makes the Context of a new window.
std::unique_ptr<Window> openWith(const OpenWindow& open, const Window* sharing) {
    std::unique_ptr<Window> window = open(sharing);
    if (window != nullptr)
        window->context = sharing != nullptr ? Context::make(*sharing->context) : Context::make();
    if (window == nullptr || window->context == nullptr) {
        ADD_FAILURE() << "no window";
        return nullptr;
    }
    return window;
}

/// Draws a frame with the Context in use, and shows it.
void drawFrame(Window& window, const Scene& scene, const Color& left, const Color& right) {
    EXPECT_TRUE(window.use());
    EXPECT_TRUE(draws(scene, left, right));
    EXPECT_TRUE(isQuiet());
    window.swap();
}

/// Draws with what another has made that shares its objects.
void drawShared(const SharedParts& shared, const Color& left) {
    const OwnParts own(shared);
    clear();
    drawLeft(shared, own);
    drawRight(yellow);
    EXPECT_TRUE(shows(left, yellow));
    EXPECT_TRUE(isQuiet());
}

} // namespace

void Window::dispose() {
    if (context == nullptr)
        return;
    EXPECT_TRUE(makeCurrent());
    context->dispose();
    context.reset();
}

std::string provideDisplay() {
    static std::optional<XServer> server;
    if (server)
        return {};
    if (!XServer::isInstalled())
        return XServer::howToInstall;
    server.emplace();
    if (server->display().empty())
        return server->errors();
    setenv("DISPLAY", server->display().c_str(), 1);
    unsetenv("WAYLAND_DISPLAY");
    return {};
}

void drawAndGo(const OpenWindow& open, bool areSharing, bool firstGoes) {
    std::unique_ptr<Window> a = openWith(open, nullptr);
    ASSERT_NE(a, nullptr);
    std::unique_ptr<Window> b = openWith(open, areSharing ? a.get() : nullptr);
    ASSERT_NE(b, nullptr);
    auto& goes = firstGoes ? a : b;
    auto& stays = firstGoes ? b : a;
    ASSERT_TRUE(stays->use());
    std::optional<Scene> ofStaying(red);
    ASSERT_TRUE(goes->use());
    std::optional<Scene> ofGoing(green);
    for (int frame = 0; frame < 5; ++frame) {
        drawFrame(*goes, *ofGoing, green, blue);
        drawFrame(*stays, *ofStaying, red, yellow);
    }
    goes.reset();
    for (int frame = 0; frame < 5; ++frame)
        drawFrame(*stays, *ofStaying, red, blue);
    if (areSharing)
        drawShared(ofGoing->shared, green);
    else
        EXPECT_EQ(ofGoing->shared.texture->id(), 0u);
    ofGoing.reset();
    drawFrame(*stays, *ofStaying, red, green);
    ofStaying.reset();
}

void openAndClose(const OpenWindow& open, bool isAlone) {
    const std::unique_ptr<Window> beside = isAlone ? nullptr : openWith(open, nullptr);
    for (int time = 0; time < 10; ++time) {
        SCOPED_TRACE(time);
        const std::unique_ptr<Window> window = openWith(open, nullptr);
        ASSERT_NE(window, nullptr);
        ASSERT_TRUE(window->use());
        const Scene scene(colors[time % 4]);
        for (int frame = 0; frame < 3; ++frame)
            drawFrame(*window, scene, colors[time % 4], colors[(time + 1) % 4]);
        if (beside != nullptr) {
            ASSERT_TRUE(beside->use());
            const Scene another(colors[(time + 2) % 4]);
            drawFrame(*beside, another, colors[(time + 2) % 4], colors[time % 4]);
        }
    }
}

void drawOnThreads(const OpenWindow& open) {
    std::vector<std::unique_ptr<Window>> windows;
    for (int i = 0; i < 4; ++i) {
        windows.push_back(openWith(open, nullptr));
        ASSERT_NE(windows.back(), nullptr);
        windows.back()->handOver();
    }
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        threads.emplace_back([&window = *windows[i], left = colors[i]] {
            window.takeOver();
            for (int frame = 0; frame < 20; ++frame) {
                EXPECT_TRUE(window.use());
                const Scene scene(left);
                drawFrame(window, scene, left, colors[frame % 4]);
            }
            window.handOver();
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (const auto& window : windows)
        window->takeOver();
    const Scene scene = [&] {
        EXPECT_TRUE(windows[0]->use());
        return Scene(red);
    }();
    drawFrame(*windows[0], scene, red, green);
}

} // namespace vellis::test
