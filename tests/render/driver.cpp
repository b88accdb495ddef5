/// Prints what the tests on a driver would run on, in three lines: GL_RENDERER, GL_VERSION and
/// GL_SHADING_LANGUAGE_VERSION of the context that the environment asks for.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string>

#include <offscreen/context.hpp>
#include <vellis/gl.hpp>

#include "render/extension.hpp"

namespace {

void printDriver() {
    offscreen::Settings settings;
    std::string error;
    if (!offscreen::platformFromEnvironment(settings.platform, error))
        throw std::runtime_error(error);
    const auto context = offscreen::Context::open(settings, error);
    if (context == nullptr)
        throw std::runtime_error(error);
    const auto hidden = extensionToHide();
    if (!context->loadEntryPoints() || (hidden && !hide(*hidden)))
        throw std::runtime_error("The GL entry points cannot be loaded.");
    for (const GLenum name : {GL_RENDERER, GL_VERSION, GL_SHADING_LANGUAGE_VERSION})
        std::puts(reinterpret_cast<const char*>(glGetString(name)));
}

} // namespace

int main() {
    try {
        printDriver();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
