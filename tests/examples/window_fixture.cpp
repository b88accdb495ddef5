#include "examples/window_fixture.hpp"

void WindowTest::SetUp() {
    if (!XServer::isInstalled())
        GTEST_SKIP() << XServer::howToInstall;
    server_.emplace();
    ASSERT_NE(server_->display(), "") << server_->errors();
    client.emplace(server_->display());
}

void WindowTest::launch(const std::vector<std::string>& arguments,
                        std::vector<std::string> environment) {
    std::vector<std::string> command = {path_};
    command.insert(command.end(), arguments.begin(), arguments.end());
    environment.insert(environment.end(), {"DISPLAY=" + server_->display(), "WAYLAND_DISPLAY"});
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
