#pragma once

#include <string>

#include <gallery/frame/panel.hpp>

namespace window {

/// One of the gallery's panels, and the ways from it to others.
class Selection {
public:
    /// \throws std::runtime_error that lists the names where no panel has that one.
    void chooseByName(const std::string& name);

    /// Goes to the panel before, or to the one after; around at the ends.
    /// @{
    void toPrevious();
    void toNext();
    /// @}

    /// Goes to the first panel of the group before, or of the one after; around at the ends.
    /// @{
    void toPreviousGroup();
    void toNextGroup();
    /// @}

    /// Goes to a panel of the group, counted from 0; stays where there is no such panel.
    void choose(std::size_t panel);

    const gallery::Panel& panel() const { return group().panels[panel_]; }

    /// Its caption, its group, and where it stands among all.
    std::string title() const;

private:
    const gallery::Group& group() const { return gallery::groups()[group_]; }

    std::size_t group_ = 0;
    std::size_t panel_ = 0; ///< within the group
};

} // namespace window
