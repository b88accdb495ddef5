/// Draws the examples of the documentation's pages off screen, from the very text of the pages, and
/// writes the pictures that stand beside them, or compares them with those that do.

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <stdexcept>
#include <string>

#include <common/picture_file.hpp>
#include <common/ready_context.hpp>
#include <offscreen/image.hpp>
#include <vellis/gl.hpp>
#include <vellis/internal.hpp>

#define VELLIS_PICTURE(name, function, width, height) void function();
#include "pictures.inc"
#undef VELLIS_PICTURE

namespace {

/// The exit status where the context is not good enough.
constexpr int skipped = 77;

struct Picture {
    const char* name;
    void (*draw)();
    unsigned int width;
    unsigned int height;
};

constexpr Picture pictures[] = {
#define VELLIS_PICTURE(name, function, width, height) {name, function, width, height},
#include "pictures.inc"
#undef VELLIS_PICTURE
};

const Picture& find(const std::string& name) {
    for (const Picture& picture : pictures) {
        if (name == picture.name)
            return picture;
    }
    throw std::runtime_error("No page has a picture of the name " + name + ".");
}

bool isOfOneColor(const offscreen::Image& image) {
    for (std::size_t i = 4; i < image.pixels.size(); i += 4) {
        if (std::memcmp(&image.pixels[i], image.pixels.data(), 4) != 0)
            return false;
    }
    return true;
}

/// An example that leaves an error or an empty picture is wrong.
offscreen::Image draw(const Picture& picture) {
    picture.draw();
    if (const char* error = vellis::internal::check_glerror())
        throw std::runtime_error(std::string("The example leaves the error ") + error + ".");
    offscreen::Image image = offscreen::readPixels(picture.width, picture.height);
    // What blending leaves as alpha is no transparency.
    for (std::size_t i = 3; i < image.pixels.size(); i += 4)
        image.pixels[i] = 255;
    if (isOfOneColor(image))
        throw std::runtime_error("The picture is empty.");
    return image;
}

/// The share of pixels that differ visibly. A picture in a page has 256 colours at most, and
/// drivers draw edges a little differently.
double difference(const offscreen::Image& a, const offscreen::Image& b) {
    constexpr int visible = 24;
    std::size_t count = 0;
    for (std::size_t i = 0; i < a.pixels.size(); i += 4) {
        int most = 0;
        for (std::size_t c = 0; c < 3; ++c)
            most = std::max(most, std::abs(int{a.pixels[i + c]} - int{b.pixels[i + c]}));
        count += most > visible ? 1 : 0;
    }
    return static_cast<double>(count) / (static_cast<double>(a.pixels.size()) / 4.0);
}

/// The pictures are drawn by Mesa's llvmpipe. Other drivers place lines a little differently.
double tolerated() {
    const auto* renderer = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    return std::strstr(renderer, "llvmpipe") != nullptr ? 0.001 : 0.04;
}

/// \param drawn  Where the drawn picture goes for a look when the two differ.
void compare(const offscreen::Image& image, const std::string& path, const std::string& drawn) {
    offscreen::Image expected;
    std::string error;
    if (!offscreen::readPng(path, expected, error))
        throw std::runtime_error(error);
    if (expected.width != image.width || expected.height != image.height)
        throw std::runtime_error(path + " has another size than the page says.");
    const double share = difference(image, expected);
    if (share > tolerated()) {
        common::writePicture(drawn, image);
        throw std::runtime_error(path + " is not what the page's example draws (" +
                                 std::to_string(100.0 * share) + " % of the pixels differ): see " +
                                 drawn +
                                 ", and run scripts/updates/pictures.sh where the page is right.");
    }
}

} // namespace

int main(int argc, char** argv) {
    const bool isComparison = argc == 5 && std::strcmp(argv[3], "--compare") == 0;
    if (argc == 2 && std::strcmp(argv[1], "--list") == 0) {
        for (const Picture& picture : pictures)
            std::cout << picture.name << '\n';
        return EXIT_SUCCESS;
    }
    if (argc != 3 && !isComparison) {
        std::cerr << "Usage: vellis_docs_pictures --list\n"
                     "       vellis_docs_pictures name picture.png\n"
                     "       vellis_docs_pictures name picture.png --compare drawn.png\n";
        return EXIT_FAILURE;
    }
    try {
        const Picture& picture = find(argv[1]);
        const common::ReadyContext context(picture.width, picture.height);
        if (GLVersion.major * 10 + GLVersion.minor < 41) {
            std::cerr << "The pages' pictures need OpenGL 4.1, for GLSL 4.10.\n";
            return skipped;
        }
        const offscreen::Image image = draw(picture);
        if (isComparison)
            compare(image, argv[2], argv[4]);
        else
            common::writePicture(argv[2], image);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
