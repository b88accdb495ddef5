#include "selection.hpp"

#include <stdexcept>

namespace window {

void Selection::chooseByName(const std::string& name) {
    std::string names;
    for (std::size_t group = 0; group < gallery::groups().size(); ++group) {
        const std::vector<gallery::Panel>& panels = gallery::groups()[group].panels;
        for (std::size_t panel = 0; panel < panels.size(); ++panel) {
            if (name == panels[panel].name) {
                group_ = group;
                panel_ = panel;
                return;
            }
            names += (names.empty() ? "" : ", ") + std::string(panels[panel].name);
        }
    }
    throw std::runtime_error("There is no panel \"" + name + "\"; there are " + names + ".");
}

void Selection::toPrevious() {
    if (panel_ == 0) {
        toPreviousGroup();
        panel_ = group().panels.size();
    }
    --panel_;
}

void Selection::toNext() {
    ++panel_;
    if (panel_ == group().panels.size())
        toNextGroup();
}

void Selection::toPreviousGroup() {
    const std::size_t count = gallery::groups().size();
    group_ = (group_ + count - 1) % count;
    panel_ = 0;
}

void Selection::toNextGroup() {
    group_ = (group_ + 1) % gallery::groups().size();
    panel_ = 0;
}

void Selection::choose(std::size_t panel) {
    if (panel < group().panels.size())
        panel_ = panel;
}

std::string Selection::title() const {
    std::size_t number = panel_ + 1;
    for (std::size_t i = 0; i < group_; ++i)
        number += gallery::groups()[i].panels.size();
    return std::string(panel().caption) + " - " + group().heading + " (" + std::to_string(number) +
           " of " + std::to_string(gallery::panels().size()) + ")";
}

} // namespace window
