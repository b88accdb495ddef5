/// A signal of a million samples, drawn by a canvas: in a window, where it can be moved and zoomed,
/// or off screen into a PNG file.

#include <cstdlib>
#include <iostream>
#include <stdexcept>

#include <common/picture_file.hpp>
#include <common/ready_context.hpp>
#include <offscreen/image.hpp>

#include "live.hpp"
#include "plot.hpp"
#include "signal.hpp"
#include "view.hpp"

namespace {

void drawToFile(const char* path) {
    const glm::uvec2 size(640, 400);
    const common::ReadyContext context(size.x, size.y);
    const plot::Signal signal = plot::makeSignal();
    const plot::View view(signal.range(), signal.samples[signal.highest]);
    plot::Plot(signal).draw(size, view.range());
    common::writePicture(path, offscreen::readPixels(size.x, size.y));
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 2) {
        std::cerr << "Usage: vellis_plot [picture.png]\n";
        return EXIT_FAILURE;
    }
    try {
        if (argc == 2)
            drawToFile(argv[1]);
        else
            plot::showLive();
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
