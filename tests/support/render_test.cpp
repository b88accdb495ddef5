#include "support/render_test.hpp"

#include <stdexcept>

#include <offscreen/entry_points.hpp>
#include <offscreen/requirement.hpp>
#include <vellis/engine.hpp>
#include <vellis/gl.hpp>
#include <vellis/internal.hpp>

void RenderTest::SetUp() {
    std::string error;
    context_ = offscreen::Context::open(renderSettings(framebufferSize_, framebufferSize_), error);
    ASSERT_NE(context_, nullptr) << error;
    ASSERT_TRUE(loadForTests(*context_));
    for (const Extension extension : needed_)
        SKIP_WITHOUT(extension);
}

void RenderTest::TearDown() {
    if (context_ == nullptr)
        return;
    const char* error = vellis::internal::check_glerror();
    EXPECT_EQ(error, nullptr) << "pending: " << error;
    vellis::engine::dispose();
    context_.reset();
}

bool loadForTests(offscreen::Context& context) {
    if (!offscreen::loadEntryPoints(context))
        return false;
    const std::string missing = offscreen::missingRequirement();
    EXPECT_EQ(missing, "");
    const auto hidden = extensionToHide();
    return missing.empty() && (!hidden || hide(*hidden));
}

bool RenderTest::isMesa() {
    const auto* version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
    return std::string(version != nullptr ? version : "").find("Mesa") != std::string::npos;
}

offscreen::Settings renderSettings(unsigned int width, unsigned int height) {
    offscreen::Settings settings;
    settings.width = width;
    settings.height = height;
    std::string error;
    if (!offscreen::settingsFromEnvironment(settings, error))
        throw std::invalid_argument(error);
    return settings;
}
