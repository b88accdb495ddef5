/// In place of the plot in a window, where GLFW is missing.

#include "live.hpp"

#include <stdexcept>

namespace plot {

void showLive(const std::string& /*font*/) {
    throw std::runtime_error(
        "This program has been built without GLFW and cannot open a window: install GLFW, for "
        "instance with `apt-get install libglfw3-dev`, and build it again, or name a file to draw "
        "to.");
}

} // namespace plot
