#pragma once

#include <vector>

#include <gallery/frame/panel.hpp>
#include <offscreen/image.hpp>

namespace gallery {

/// Where things are on a contact sheet: below each other groups of cells with a heading, each with
/// its cells in rows of six.
class SheetLayout {
public:
    /// \param groupSizes  The number of panels in each group.
    explicit SheetLayout(const std::vector<unsigned int>& groupSizes);

    unsigned int width() const;
    unsigned int height() const { return height_; }

    /// Where the top of a group's heading is; its left is that of the first cell.
    unsigned int headingTop(unsigned int group) const { return headingTops_[group]; }

    /// Where the left of a panel's picture is; the panels of a group are counted from 0.
    unsigned int left(unsigned int panel) const;

    /// Where the top of a panel's picture is.
    unsigned int top(unsigned int group, unsigned int panel) const;

private:
    std::vector<unsigned int> headingTops_;
    unsigned int height_;
};

/// All panels with their captions, below the headings of their groups, on one picture.
/// \param pictures  The picture of each panel, in the order of the groups.
offscreen::Image contactSheet(const std::vector<Group>& groups,
                              const std::vector<offscreen::Image>& pictures);

} // namespace gallery
