// What consumers of vellis::text build: a word, drawn on a driver and read back.
//
// Usage: words shared|static font

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <glm/mat4x4.hpp>
#include <offscreen/context.hpp>
#include <vellis/gl.hpp>
#include <vellis/text.hpp>
#include <vellis/vellis.hpp>

#if defined(VELLIS_TEXT_STATIC_DEFINE) && defined(VELLIS_STATIC_DEFINE)
constexpr const char* kind = "static";
#elif !defined(VELLIS_TEXT_STATIC_DEFINE) && !defined(VELLIS_STATIC_DEFINE)
constexpr const char* kind = "shared";
#else
constexpr const char* kind = "one of each";
#endif

namespace {

constexpr unsigned int size = 64;
constexpr unsigned char ink = 255;

/// How many pixels of the framebuffer's left or right half are not black.
std::size_t numPixels(bool right) {
    std::vector<unsigned char> red(std::size_t{size} * size);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, size, size, GL_RED, GL_UNSIGNED_BYTE, red.data());
    std::size_t count = 0;
    for (std::size_t i = 0; i < red.size(); ++i)
        count += (i % size >= size / 2) == right && red[i] == ink;
    return count;
}

/// Draws a word in the middle of the left half: its stems cover whole pixels.
bool draws(const std::shared_ptr<vellis::text::Font>& font) {
    const auto canvas = vellis::Canvas::make();
    canvas->begin(glm::mat4(1.f));
    vellis::text::draw(canvas, font, {-0.5, 0.}, "HI", glm::vec4(1.f),
                       vellis::text::Anchor::Center);
    canvas->end();
    std::printf("%zu pixels left, %zu right\n", numPixels(false), numPixels(true));
    return numPixels(false) > 20 && numPixels(true) == 0;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3 || std::strcmp(arguments[1], kind) != 0) {
        std::fprintf(stderr, "the headers are for a library that is %s\n", kind);
        return 1;
    }
    offscreen::Settings settings;
    settings.width = settings.height = size;
    std::string error;
    if (!offscreen::settingsFromEnvironment(settings, error)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return 1;
    }
    const auto context = offscreen::Context::open(settings, error);
    if (context == nullptr || !vellis::engine::init()) {
        std::fprintf(stderr, "no context: %s\n", error.c_str());
        return 1;
    }
    const auto font = vellis::text::Font::load(arguments[2], 20.f);
    glClearColor(0.f, 0.f, 0.f, 0.f);
    glClear(GL_COLOR_BUFFER_BIT);
    const bool right = font != nullptr && draws(font) && glGetError() == GL_NO_ERROR;
    vellis::engine::dispose();
    return right ? 0 : 1;
}
