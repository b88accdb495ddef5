#include <common/ready_context.hpp>

#include <stdexcept>
#include <string>

#include <offscreen/requirement.hpp>
#include <vellis/engine.hpp>

namespace common {
namespace {

std::unique_ptr<offscreen::Context> open(unsigned int width, unsigned int height) {
    offscreen::Settings settings;
    settings.width = width;
    settings.height = height;
    std::string error;
    if (!offscreen::platformFromEnvironment(settings.platform, error))
        throw std::runtime_error(error);
    auto context = offscreen::Context::open(settings, error);
    if (context == nullptr)
        throw std::runtime_error(error);
    return context;
}

} // namespace

ReadyContext::ReadyContext(unsigned int width, unsigned int height)
    : context_(open(width, height)) {
    if (!vellis::engine::init())
        throw std::runtime_error("The GL entry points cannot be loaded: install a GL driver, "
                                 "for instance with `apt-get install libgl1-mesa-dri`.");
    const std::string missing = offscreen::missingRequirement();
    if (!missing.empty())
        throw std::runtime_error(missing);
}

ReadyContext::~ReadyContext() {
    vellis::engine::dispose();
}

} // namespace common
