/// Three gears that turn each other: in a window, or off screen as numbered PNG files, which show
/// one tooth's turn and can be repeated without a break.

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <common/output_folder.hpp>
#include <common/picture_file.hpp>
#include <common/ready_context.hpp>

#include "antialiased_picture.hpp"
#include "live.hpp"
#include "scene.hpp"
#include "spur_gear.hpp"

namespace {

namespace fs = std::filesystem;

/// What is to be drawn to files.
struct Frames {
    unsigned int count = 0;
    fs::path folder;
    glm::uvec2 size{640, 480};
};

/// The name of a frame's file, with as many digits as the last one needs.
std::string frameName(unsigned int frame, unsigned int count) {
    const std::size_t digits = std::max<std::size_t>(3, std::to_string(count - 1).size());
    std::string number = std::to_string(frame);
    number.insert(0, digits - number.size(), '0');
    return "gears-" + number + ".png";
}

void drawFrames(const Frames& frames) {
    const common::ReadyContext context(1, 1); // pictures have framebuffers of their own
    common::makeFolder(frames.folder);
    const gears::Scene scene;
    const gears::AntialiasedPicture picture(frames.size);
    const float turn = gears::pitchAngle(gears::makeTrain().front().teeth);
    for (unsigned int i = 0; i < frames.count; ++i) {
        const float at = static_cast<float>(i) / static_cast<float>(frames.count);
        picture.begin();
        scene.draw(frames.size, gears::View(), at * turn);
        picture.end();
        common::writePicture(frames.folder / frameName(i, frames.count), picture.download());
    }
}

/// A whole text as a number from 1 on.
bool parse(std::string_view text, unsigned int& number) {
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end && number > 0;
}

/// A text such as 640x480.
bool parse(std::string_view text, glm::uvec2& size) {
    const std::size_t middle = text.find('x');
    return middle != text.npos && parse(text.substr(0, middle), size.x) &&
           parse(text.substr(middle + 1), size.y);
}

/// \return empty where the arguments make no sense.
std::optional<Frames> parse(const std::vector<std::string>& arguments) {
    Frames frames;
    for (std::size_t i = 0; i + 1 < arguments.size(); i += 2) {
        const std::string& value = arguments[i + 1];
        if (arguments[i] == "--out")
            frames.folder = value;
        else if (!(arguments[i] == "--frames" && parse(value, frames.count)) &&
                 !(arguments[i] == "--size" && parse(value, frames.size)))
            return {};
    }
    const bool complete = frames.count > 0 && !frames.folder.empty();
    if (!complete || arguments.size() % 2 != 0)
        return {};
    return frames;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const std::optional<Frames> frames = parse(arguments);
    if (!frames && !arguments.empty()) {
        std::cerr << "Usage: vellis_gears [--frames COUNT --out FOLDER [--size WIDTHxHEIGHT]]\n";
        return EXIT_FAILURE;
    }
    try {
        if (frames)
            drawFrames(*frames);
        else
            gears::showLive();
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
