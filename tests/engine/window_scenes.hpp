#pragma once

#include <functional>
#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <vellis/context.hpp>

/// \file
/// What windows go through with a Context each, whatever toolkit opens them.

namespace vellis::test {

/// The width and height of a window.
constexpr int windowSize = 32;

/// A window with a GL context, and the library's Context for it.
class Window {
public:
    virtual ~Window() = default;

    /// Makes the GL context current on this thread.
    virtual bool makeCurrent() = 0;

    /// Leaves the thread without a current one.
    virtual void release() = 0;

    /// Shows what was drawn.
    virtual void swap() = 0;

    /// Before and after the window is drawn to on another thread: called on the one that has it.
    /// @{
    virtual void handOver() { release(); }
    virtual void takeOver() {}
    /// @}

    bool use() { return makeCurrent() && context->use(); }

    /// Disposes of the Context, which each window does before it goes.
    void dispose();

    std::shared_ptr<Context> context;
};

/// Opens a window, whose GL context is current then and shares its objects with those of another,
/// or with nothing where that is null. Empty where it cannot be opened.
using OpenWindow = std::function<std::unique_ptr<Window>(const Window* sharing)>;

/// Starts an X server for the program, unless it has one.
/// \return why there is none; empty where there is.
std::string provideDisplay();

/// Two windows draw in turns; one goes, and the other draws as before.
void drawAndGo(const OpenWindow& open, bool areSharing, bool firstGoes);

/// A window is opened and closed ten times, beside another or alone.
void openAndClose(const OpenWindow& open, bool isAlone);

/// Four windows, each drawn to on a thread of its own.
void drawOnThreads(const OpenWindow& open);

} // namespace vellis::test
