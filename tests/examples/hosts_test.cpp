/// vellis as a guest in windows of several toolkits, as a user sees it. The programs watch GL's
/// errors and state themselves, and complain of them.

#include <array>
#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "examples/window_fixture.hpp"
#include "support/temporary_folder.hpp"

namespace {

/// A program, and how to start it.
struct Host {
    const char* name;
    const char* program;
    std::vector<std::string> arguments;
    std::vector<std::string> environment;
};

void PrintTo(const Host& host, std::ostream* out) {
    *out << host.name;
}

const std::vector<std::string> version21 = {"MESA_GL_VERSION_OVERRIDE=2.1",
                                            "MESA_GLSL_VERSION_OVERRIDE=120",
                                            "MESA_SHADER_CACHE_DISABLE=true"};

const Host hosts[] = {
#ifdef VELLIS_HOST_SDL_PROGRAM
    {"Sdl", VELLIS_HOST_SDL_PROGRAM, {}, {}},
    {"SdlCore", VELLIS_HOST_SDL_PROGRAM, {"--core"}, {}},
    {"Sdl21", VELLIS_HOST_SDL_PROGRAM, {}, version21},
#endif
#ifdef VELLIS_HOST_QT_PROGRAM
    {"Qt", VELLIS_HOST_QT_PROGRAM, {}, {"QT_QPA_PLATFORM=xcb"}},
    {"QtCore", VELLIS_HOST_QT_PROGRAM, {"--core"}, {"QT_QPA_PLATFORM=xcb"}},
#endif
#ifdef VELLIS_HOST_GTK_PROGRAM
    {"GtkCore", VELLIS_HOST_GTK_PROGRAM, {}, {"GDK_BACKEND=x11", "NO_AT_BRIDGE=1"}},
    {"Gtk", VELLIS_HOST_GTK_PROGRAM, {}, {"GDK_BACKEND=x11", "NO_AT_BRIDGE=1", "GDK_GL=legacy"}},
#endif
#ifdef VELLIS_HOST_WX_PROGRAM
    {"Wx", VELLIS_HOST_WX_PROGRAM, {}, {"GDK_BACKEND=x11", "NO_AT_BRIDGE=1"}},
    {"WxCore", VELLIS_HOST_WX_PROGRAM, {"--core"}, {"GDK_BACKEND=x11", "NO_AT_BRIDGE=1"}},
#endif
};

struct Color {
    int red;
    int green;
    int blue;
};

/// A place in a window, from its upper left corner, and what is to be seen there.
struct Probe {
    const char* what;
    unsigned int x;
    unsigned int y;
    Color color;
};

constexpr Color sand = {232, 196, 107};
constexpr Color line = {247, 245, 240};
constexpr Color panel = {42, 157, 143};

constexpr std::array<Probe, 13> probes = {{
    {"a square of the paper", 5, 5, {222, 214, 196}},
    {"the square beside it", 45, 5, {236, 231, 219}},
    {"the hub of the mill", 160, 160, sand},
    {"the hub to the right", 180, 160, sand},
    {"the hub above", 160, 140, sand},
    {"the hub to the left", 140, 160, sand},
    {"the hub below", 160, 180, sand},
    {"the canvas's line over the texture", 200, 290, line},
    {"the line beside it", 400, 200, line},
    {"the line just below the toolkit's panel", 400, 125, line},
    {"the panel, above the line", 400, 110, panel},
    {"the panel's left side", 345, 110, panel},
    {"the panel's lower side", 380, 115, panel},
}};

/// What is behind all in the first window, and in the second.
constexpr Color grounds[] = {{38, 69, 84}, {92, 56, 92}};

bool isAbout(const unsigned char* pixel, const Color& color) {
    return std::abs(pixel[0] - color.red) <= 2 && std::abs(pixel[1] - color.green) <= 2 &&
           std::abs(pixel[2] - color.blue) <= 2;
}

/// What is wrong with a picture of a window.
std::string faults(const offscreen::Image& image, const Color& ground) {
    if (image.width != 480 || image.height != 320)
        return "It is of another size.";
    std::string found;
    const auto probe = [&](const char* what, unsigned int x, unsigned int y, const Color& color) {
        const unsigned char* pixel = image.at(x, y);
        if (!isAbout(pixel, color))
            found += std::string(what) + " is " + std::to_string(pixel[0]) + " " +
                     std::to_string(pixel[1]) + " " + std::to_string(pixel[2]) + "\n";
    };
    probe("the ground", 440, 200, ground);
    for (const Probe& each : probes)
        probe(each.what, each.x, each.y, each.color);
    return found;
}

/// Leaves a picture in the folder that VELLIS_HOST_PICTURES names, if it does.
void keep(const offscreen::Image& image, const std::string& name) {
    const char* folder = std::getenv("VELLIS_HOST_PICTURES");
    std::string error;
    if (folder != nullptr) {
        EXPECT_TRUE(offscreen::writePng(std::string(folder) + "/" + name + ".png", image, error))
            << error;
    }
}

class Hosts : public WindowTest, public testing::WithParamInterface<Host> {
protected:
    // Qt wants the folder of a session, and nobody else in it.
    Hosts() : WindowTest(GetParam().program) {
        namespace fs = std::filesystem;
        fs::permissions(session_.path(), fs::perms::owner_all);
    }

    /// Starts the program and waits until it has drawn 100 frames, in two windows of which the
    /// second has been closed and opened again.
    void draw() {
        begin({"--frames", "100"});
        eventually([this] { return !program->output().empty() || program->exitStatus(); });
        ASSERT_EQ(program->output(), "100 frames\n") << program->errors();
    }

    void begin(std::vector<std::string> arguments) {
        const std::vector<std::string>& others = GetParam().arguments;
        arguments.insert(arguments.end(), others.begin(), others.end());
        std::vector<std::string> environment = GetParam().environment;
        environment.push_back("ASAN_OPTIONS=detect_leaks=0"); // toolkits keep some memory
        environment.push_back("XDG_RUNTIME_DIR=" + session_.path().string());
        launch(arguments, environment);
    }

private:
    TemporaryFolder session_;
};

INSTANTIATE_TEST_SUITE_P(, Hosts, testing::ValuesIn(hosts),
                         [](const auto& host) { return host.param.name; });

TEST_P(Hosts, ShowVellisAndTheToolkitAboveIt) {
    draw();
    const std::vector<XClient::Window> windows = client->findWindows();
    ASSERT_EQ(windows.size(), 2u);
    for (const Color& ground : grounds) {
        std::string found;
        const bool isShown = eventually([&] {
            found.clear();
            for (const XClient::Window each : windows) {
                const std::string wrong = faults(client->capture(each), ground);
                if (wrong.empty())
                    return true;
                found += wrong;
            }
            return false;
        });
        EXPECT_TRUE(isShown) << found;
    }
    for (const XClient::Window each : windows) {
        keep(client->capture(each), GetParam().name + std::to_string(each == windows[0] ? 0 : 1));
        client->requestClose(each);
    }
    expectToEnd();
}

TEST_P(Hosts, SayHowTheyAreUsed) {
    for (const std::string argument : {"--wireframe", "--frames"}) {
        begin({argument});
        EXPECT_THAT(program->wait(), testing::Optional(testing::Ne(0)));
        EXPECT_THAT(program->errors(), testing::StartsWith("Usage: "));
        EXPECT_THAT(program->errors(), testing::HasSubstr(" [--frames N]\n"));
        EXPECT_EQ(program->output(), "");
    }
}

} // namespace
