/// In place of the panels of text, where vellis::text is missing.

#include <gallery/panels/panel_groups.hpp>

namespace gallery {

std::vector<Panel> textPanels() {
    return {};
}

} // namespace gallery
