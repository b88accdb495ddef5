/// In place of the gears in a window, where GLFW is missing.

#include "live.hpp"

#include <stdexcept>

namespace gears {

void showLive() {
    throw std::runtime_error(
        "This program has been built without GLFW and cannot open a window: install GLFW, for "
        "instance with `apt-get install libglfw3-dev`, and build it again, or draw to files with "
        "--frames and --out.");
}

} // namespace gears
