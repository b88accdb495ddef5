#include <gallery/frame/panel.hpp>

#include <algorithm>
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

/// The groups that have panels.
std::vector<Group> withPanels(std::vector<Group> all) {
    const auto isEmpty = [](const Group& group) { return group.panels.empty(); };
    all.erase(std::remove_if(all.begin(), all.end(), isEmpty), all.end());
    return all;
}

std::vector<Panel> withoutGroups() {
    std::vector<Panel> result;
    for (const Group& group : groups())
        result.insert(result.end(), group.panels.begin(), group.panels.end());
    return result;
}

} // namespace

const std::vector<Group>& groups() {
    static const std::vector<Group> table = withPanels({
        {"Drawing", joined({shapePanels(), rasterPanels()})},
        {"Toolbox", joined({toolboxLinePanels(), toolboxAreaPanels(), toolboxMarkPanels()})},
        {"Canvas", joined({canvasLinePanels(), canvasShapePanels(), canvasScenePanels(),
                           canvasImagePanels()})},
        {"Text", textPanels()},
        {"Textures", joined({texturePanels(), samplerPanels()})},
        {"Framebuffers", joined({framebufferPanels(), fragmentPanels(), blendingPanels()})},
    });
    return table;
}

const std::vector<Panel>& panels() {
    static const std::vector<Panel> table = withoutGroups();
    return table;
}

} // namespace gallery
