#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <offscreen/context.hpp>

/// A test on a driver: a fresh context with a default framebuffer is current and the library is
/// initialised. Where there can be no such context, the test fails and says why. At the end no GL
/// error may be pending.
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

    explicit RenderTest(unsigned int framebufferSize = size) : framebufferSize_(framebufferSize) {}

    void SetUp() override;
    void TearDown() override;

    /// Whether the driver is Mesa, which environment variables can limit.
    static bool isMesa();

private:
    unsigned int framebufferSize_;
    std::unique_ptr<offscreen::Context> context_;
};

/// The settings of a test's context: the platform comes from the environment.
/// \throws std::invalid_argument where the environment names an unknown one.
offscreen::Settings renderSettings(unsigned int width, unsigned int height);
