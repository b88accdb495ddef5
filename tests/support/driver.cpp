/// Prints what the tests on a driver would run on, in the context that the environment asks for:
/// GL_RENDERER, GL_VERSION and GL_SHADING_LANGUAGE_VERSION in three lines, or with `--extensions`
/// GL_EXTENSIONS, one a line.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <initializer_list>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>

#include <offscreen/context.hpp>
#include <offscreen/entry_points.hpp>
#include <vellis/gl.hpp>

#include "support/extension.hpp"

namespace {

std::unique_ptr<offscreen::Context> openContext() {
    offscreen::Settings settings;
    std::string error;
    if (!offscreen::settingsFromEnvironment(settings, error))
        throw std::runtime_error(error);
    auto context = offscreen::Context::open(settings, error);
    if (context == nullptr)
        throw std::runtime_error(error);
    const auto hidden = extensionToHide();
    if (!offscreen::loadEntryPoints(*context) || (hidden && !hide(*hidden)))
        throw std::runtime_error("The GL entry points cannot be loaded.");
    return context;
}

std::string text(GLenum name) {
    const GLubyte* answer = glGetString(name);
    return answer != nullptr ? reinterpret_cast<const char*>(answer) : "";
}

void printDriver() {
    for (const GLenum name :
         std::initializer_list<GLenum>{GL_RENDERER, GL_VERSION, GL_SHADING_LANGUAGE_VERSION})
        std::puts(text(name).c_str());
}

void printExtensions() {
    std::istringstream extensions(extensionNames());
    for (std::string extension; extensions >> extension;)
        std::puts(extension.c_str());
}

} // namespace

int main(int argc, char** argv) {
    const bool extensions = argc == 2 && std::string(argv[1]) == "--extensions";
    if (argc > 1 && !extensions) {
        std::fputs("Usage: vellis_driver [--extensions]\n", stderr);
        return EXIT_FAILURE;
    }
    try {
        const auto context = openContext();
        if (extensions)
            printExtensions();
        else
            printDriver();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
