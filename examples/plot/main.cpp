/// A signal of a million samples, drawn by a canvas: in a window, where it can be moved and zoomed,
/// or off screen into a PNG file.

#include <cstdlib>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>

#include <common/picture_file.hpp>
#include <common/ready_context.hpp>
#include <offscreen/image.hpp>

#include "layout.hpp"
#include "live.hpp"
#include "plot.hpp"
#include "signal.hpp"
#include "view.hpp"
#include "words.hpp"

namespace {

/// What the program is told to do.
struct Options {
    std::string font;    ///< a file, or none
    std::string picture; ///< where to draw to, or none for a window
};

std::optional<Options> readOptions(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--font" && i + 1 < argc && options.font.empty())
            options.font = argv[++i];
        else if (argument.rfind("--", 0) != 0 && options.picture.empty())
            options.picture = argument;
        else
            return std::nullopt;
    }
    return options;
}

void drawToFile(const Options& options) {
    const glm::uvec2 size = plot::usualSize;
    const common::ReadyContext context(size.x, size.y);
    const plot::Signal signal = plot::makeSignal();
    const plot::View view(signal.range(), signal.samples[signal.highest]);
    plot::Plot(signal, plot::loadFonts(options.font)).draw(size, view.range());
    common::writePicture(options.picture, offscreen::readPixels(size.x, size.y));
}

} // namespace

int main(int argc, char** argv) {
    const std::optional<Options> options = readOptions(argc, argv);
    if (!options) {
        std::cerr << "Usage: vellis_plot [--font file] [picture.png]\n";
        return EXIT_FAILURE;
    }
    try {
        if (!options->picture.empty())
            drawToFile(*options);
        else
            plot::showLive(options->font);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
