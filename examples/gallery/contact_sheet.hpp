#pragma once

#include <cstddef>
#include <vector>

#include <gallery/panel.hpp>
#include <offscreen/image.hpp>

namespace gallery {

/// A number of cells in rows, one for each panel.
class SheetLayout {
public:
    explicit SheetLayout(std::size_t panelCount);

    unsigned int width() const;
    unsigned int height() const;

    /// Where the left and the top of a panel's picture are; panels are counted from 0.
    unsigned int left(std::size_t panel) const;
    unsigned int top(std::size_t panel) const;

private:
    unsigned int columns_;
    unsigned int rows_;
};

/// All panels with their captions on one picture.
/// \param pictures  The picture of each panel, in the order of \p panels.
offscreen::Image contactSheet(const std::vector<Panel>& panels,
                              const std::vector<offscreen::Image>& pictures);

} // namespace gallery
