#include <common/ready_context.hpp>

#include <stdexcept>
#include <string>

#include <offscreen/entry_points.hpp>

namespace common {
namespace {

std::unique_ptr<offscreen::Context> open(unsigned int width, unsigned int height) {
    offscreen::Settings settings;
    settings.width = width;
    settings.height = height;
    std::string error;
    if (!offscreen::settingsFromEnvironment(settings, error))
        throw std::runtime_error(error);
    auto context = offscreen::Context::open(settings, error);
    if (context == nullptr)
        throw std::runtime_error(error);
    return context;
}

} // namespace

ReadyContext::ReadyContext(unsigned int width, unsigned int height)
    : context_(open(width, height)),
      library_(offscreen::loadEntryPoints(*context_)) {}

} // namespace common
