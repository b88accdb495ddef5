#include <gallery/contact_sheet.hpp>

#include <algorithm>
#include <cmath>

#include <gallery/font.hpp>
#include <gallery/picture.hpp>

namespace gallery {
namespace {

constexpr unsigned int margin = 28;
constexpr unsigned int gap = 24;
constexpr unsigned int captionGap = 10;
constexpr unsigned int cellWidth = panelSize + gap;
constexpr unsigned int cellHeight = panelSize + captionGap + textHeight + gap;

/// So many columns that the sheet is a little wider than high.
unsigned int columnsFor(std::size_t panelCount) {
    const double columns = std::sqrt(1.35 * static_cast<double>(panelCount));
    return std::max(1u, static_cast<unsigned int>(std::lround(columns)));
}

/// One panel with a thin frame, and its caption centred below.
void addPanel(offscreen::Image& sheet, unsigned int left, unsigned int top, const Panel& panel,
              const offscreen::Image& picture) {
    fill(sheet, left - 1, top - 1, panelSize + 2, panelSize + 2, palette::frame);
    paste(picture, sheet, left, top);
    const unsigned int width = std::min(textWidth(panel.caption), panelSize);
    write(sheet, left + (panelSize - width) / 2, top + panelSize + captionGap, panel.caption,
          palette::ink);
}

} // namespace

SheetLayout::SheetLayout(std::size_t panelCount)
    : columns_(columnsFor(panelCount)),
      rows_((static_cast<unsigned int>(panelCount) + columns_ - 1) / columns_) {}

unsigned int SheetLayout::width() const {
    return 2 * margin + columns_ * cellWidth - gap;
}

unsigned int SheetLayout::height() const {
    return 2 * margin + rows_ * cellHeight - gap;
}

unsigned int SheetLayout::left(std::size_t panel) const {
    return margin + static_cast<unsigned int>(panel) % columns_ * cellWidth;
}

unsigned int SheetLayout::top(std::size_t panel) const {
    return margin + static_cast<unsigned int>(panel) / columns_ * cellHeight;
}

offscreen::Image contactSheet(const std::vector<Panel>& panels,
                              const std::vector<offscreen::Image>& pictures) {
    const SheetLayout layout(panels.size());
    offscreen::Image sheet = filled(layout.width(), layout.height(), palette::sheet);
    for (std::size_t i = 0; i < panels.size(); ++i)
        addPanel(sheet, layout.left(i), layout.top(i), panels[i], pictures[i]);
    return sheet;
}

} // namespace gallery
