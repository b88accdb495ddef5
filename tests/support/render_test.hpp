#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <offscreen/context.hpp>

#include "support/extension.hpp"

/// A test on a driver: a fresh context with a default framebuffer is current and the library is
/// initialised. Where there can be no such context, the test fails and says why. At the end no GL
/// error may be pending.
///
/// The environment variable RENDER_WITHOUT has the tests do without an extension of the three:
/// those that need it are skipped.
///
/// \code
/// class TriangleRender : public RenderTest {};
///
/// TEST_F(TriangleRender, FillsItsMiddle) {
///     // ... draw ...
///     const offscreen::Image image = offscreen::readPixels(size, size);
/// }
/// \endcode
class RenderTest : public ::testing::Test {
protected:
    /// The width and height of the default framebuffer, unless a test asks for more.
    static constexpr unsigned int size = 256;

    /// \param needed  Extensions without which the tests of the fixture are skipped.
    explicit RenderTest(unsigned int framebufferSize = size, std::vector<Extension> needed = {})
        : framebufferSize_(framebufferSize),
          needed_(std::move(needed)) {}

    void SetUp() override;
    void TearDown() override;

    /// Whether the driver is Mesa, which environment variables can limit.
    static bool isMesa();

    /// Whether the test goes on after the set-up.
    static bool goesOn() { return !HasFatalFailure() && !IsSkipped(); }

private:
    unsigned int framebufferSize_;
    std::vector<Extension> needed_;
    std::unique_ptr<offscreen::Context> context_;
};

/// Loads the entry points of a test's context, which is current, but for those of the extension
/// that the environment has the tests do without. The context must have all that the library asks
/// for.
bool loadForTests(offscreen::Context& context);

/// The settings of a test's context: the platform and the profile come from the environment.
/// \throws std::invalid_argument where the environment names an unknown one.
offscreen::Settings renderSettings(unsigned int width, unsigned int height);
