/// In place of the words at the plot, where vellis::text is missing.

#include "words.hpp"

#include <stdexcept>

namespace plot {

struct Fonts {};

std::shared_ptr<const Fonts> loadFonts(const std::string& file) {
    if (file.empty())
        return nullptr;
    throw std::runtime_error("This program has been built without vellis::text and cannot write: "
                             "install what that needs, and build it again.");
}

void writeWords(const std::shared_ptr<vellis::Canvas>& /*canvas*/, const Fonts& /*fonts*/,
                const glm::uvec2& /*size*/, const Subject& /*subject*/) {}

} // namespace plot
