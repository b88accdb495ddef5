#include "examples/window_fixture.hpp"

#include <filesystem>
#include <sstream>

#include <unistd.h>

namespace {

/// Whether a program is in the search path.
bool isInstalled(const std::string& program) {
    const char* path = std::getenv("PATH");
    std::istringstream folders(path != nullptr ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (access((std::filesystem::path(folder) / program).c_str(), X_OK) == 0)
            return true;
    }
    return false;
}

} // namespace

void WindowTest::SetUp() {
    if (!isInstalled("Xvfb"))
        GTEST_SKIP() << "Xvfb is missing: install it, for instance with `apt-get install xvfb`";
    // It takes a number that is free and writes it to its standard output.
    server_.emplace(std::vector<std::string>{"Xvfb", "-displayfd", "1", "-noreset", "-nolisten",
                                             "tcp", "-screen", "0", "1600x1600x24"});
    const auto isReady = [this] {
        display_ = server_->output();
        return !display_.empty() && display_.back() == '\n';
    };
    ASSERT_TRUE(eventually(isReady)) << server_->errors();
    display_ = ":" + display_.substr(0, display_.size() - 1);
    client.emplace(display_);
}

void WindowTest::launch(const std::vector<std::string>& arguments,
                        std::vector<std::string> environment) {
    std::vector<std::string> command = {path_};
    command.insert(command.end(), arguments.begin(), arguments.end());
    environment.insert(environment.end(), {"DISPLAY=" + display_, "WAYLAND_DISPLAY"});
    program.emplace(command, environment);
}

void WindowTest::waitForWindow() {
    eventually([this] {
        window = client->findWindow();
        return window != 0 || program->exitStatus();
    });
    ASSERT_NE(window, 0u) << program->errors();
}

void WindowTest::start(const std::vector<std::string>& arguments) {
    launch(arguments);
    waitForWindow();
}

void WindowTest::expectToEnd() {
    EXPECT_EQ(program->wait(), 0);
    EXPECT_EQ(program->errors(), "");
}
