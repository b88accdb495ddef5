/// Shows the gallery's panels in a window.

#include <cstdlib>
#include <iostream>
#include <stdexcept>

#include <common/window.hpp>

#include "viewer.hpp"

namespace {

/// A multiple of a panel's size, so that panels drawn without further samples stay sharp.
constexpr unsigned int windowSize = 3 * gallery::panelSize;

void showGallery(const window::Selection& selection) {
    common::Window window(selection.title(), {windowSize, windowSize});
    window::Viewer(window, selection).run();
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 2) {
        std::cerr << "Usage: vellis_window [name of the first panel]\n";
        return EXIT_FAILURE;
    }
    try {
        window::Selection selection;
        if (argc == 2)
            selection.chooseByName(argv[1]);
        showGallery(selection);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
