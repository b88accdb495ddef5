#include <gallery/frame/panel.hpp>

#include <initializer_list>

#include <gallery/panels/panel_groups.hpp>

namespace gallery {
namespace {

/// Tables of panels as one.
std::vector<Panel> joined(std::initializer_list<std::vector<Panel>> tables) {
    std::vector<Panel> result;
    for (const std::vector<Panel>& table : tables)
        result.insert(result.end(), table.begin(), table.end());
    return result;
}

std::vector<Panel> withoutGroups() {
    std::vector<Panel> result;
    for (const Group& group : groups())
        result.insert(result.end(), group.panels.begin(), group.panels.end());
    return result;
}

} // namespace

const std::vector<Group>& groups() {
    static const std::vector<Group> table = {
        {"Drawing", joined({shapePanels(), rasterPanels()})},
        {"Toolbox", joined({toolboxLinePanels(), toolboxAreaPanels(), toolboxMarkPanels()})},
        {"Canvas", joined({canvasLinePanels(), canvasShapePanels(), canvasScenePanels()})},
        {"Textures", joined({texturePanels(), samplerPanels()})},
        {"Framebuffers", joined({framebufferPanels(), fragmentPanels(), blendingPanels()})},
    };
    return table;
}

const std::vector<Panel>& panels() {
    static const std::vector<Panel> table = withoutGroups();
    return table;
}

} // namespace gallery
