#pragma once

#include <optional>
#include <string>

#include "examples/running_program.hpp"

/// An X server without a screen, for as long as the object lives.
class XServer {
public:
    /// Whether there is one on this system.
    static bool isInstalled();

    /// What to say where there is none.
    static constexpr const char* howToInstall =
        "Xvfb is missing: install it, for instance with `apt-get install xvfb`";

    /// Starts it, on a number that is free.
    XServer();

    /// Its name, as `$DISPLAY` has it; empty where it does not start.
    const std::string& display() const { return display_; }

    /// What it has to say of that.
    std::string errors() const { return program_.errors(); }

private:
    RunningProgram program_;
    std::string display_;
};
