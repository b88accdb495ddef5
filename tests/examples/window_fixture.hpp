#pragma once

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <offscreen/image.hpp>

#include "examples/running_program.hpp"
#include "examples/x_client.hpp"
#include "examples/x_server.hpp"

/// A test of a program that opens a window, on an X server that has no other.
class WindowTest : public ::testing::Test {
    const char* path_;
    std::optional<XServer> server_; // ends last

protected:
    explicit WindowTest(const char* path) : path_(path) {}

    void SetUp() override;

    /// Starts the program.
    void launch(const std::vector<std::string>& arguments,
                std::vector<std::string> environment = {});

    /// Waits for the program's window.
    void waitForWindow();

    /// Starts the program and waits for its window.
    void start(const std::vector<std::string>& arguments = {});

    /// Waits until the window shows what it should.
    /// \param matches  Takes a picture of the window, which may be empty.
    template <class Matches>
    bool eventuallyShows(Matches matches) {
        return eventually([&] { return matches(capture()); });
    }

    /// Waits for an end without a word of complaint.
    void expectToEnd();

    offscreen::Image capture() { return client->capture(window); }
    std::string title() { return client->title(window); }
    void press(unsigned long keySymbol) { client->press(window, keySymbol); }
    void resize(unsigned int width, unsigned int height) { client->resize(window, width, height); }

    std::optional<XClient> client;
    std::optional<RunningProgram> program;
    XClient::Window window = 0;
};
