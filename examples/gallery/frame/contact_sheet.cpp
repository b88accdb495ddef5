#include <gallery/frame/contact_sheet.hpp>

#include <algorithm>

#include <gallery/frame/font.hpp>
#include <gallery/frame/picture.hpp>

namespace gallery {
namespace {

constexpr unsigned int columns = 6;
constexpr unsigned int margin = 28;
constexpr unsigned int gap = 24;
constexpr unsigned int captionGap = 10;
constexpr unsigned int headingGap = 16;
constexpr unsigned int groupGap = 16;

constexpr unsigned int cellWidth = panelSize + gap;

unsigned int cellHeight() {
    return panelSize + captionGap + textHeight(TextSize::Caption) + gap;
}

/// From the top of a heading to that of the pictures below it.
unsigned int headingHeight() {
    return textHeight(TextSize::Heading) + headingGap;
}

std::vector<unsigned int> sizesOf(const std::vector<Group>& groups) {
    std::vector<unsigned int> sizes;
    for (const Group& group : groups)
        sizes.push_back(static_cast<unsigned int>(group.panels.size()));
    return sizes;
}

/// A group's name, and behind it a thin line up to the right margin.
void addHeading(offscreen::Image& sheet, unsigned int top, const std::string& heading) {
    const unsigned int height = textHeight(TextSize::Heading);
    const unsigned int lineLeft = margin + textWidth(heading, TextSize::Heading) + headingGap;
    write(sheet, margin, top, heading, palette::blue, TextSize::Heading);
    fill(sheet, lineLeft, top + height / 2, sheet.width - margin - lineLeft, 2, palette::frame);
}

/// One panel with a thin frame, and its caption centred below.
void addPanel(offscreen::Image& sheet, unsigned int left, unsigned int top, const Panel& panel,
              const offscreen::Image& picture) {
    fill(sheet, left - 1, top - 1, panelSize + 2, panelSize + 2, palette::frame);
    paste(picture, sheet, left, top);
    const unsigned int width = std::min(textWidth(panel.caption, TextSize::Caption), panelSize);
    write(sheet, left + (panelSize - width) / 2, top + panelSize + captionGap, panel.caption,
          palette::ink, TextSize::Caption);
}

} // namespace

SheetLayout::SheetLayout(const std::vector<unsigned int>& groupSizes) {
    unsigned int top = margin;
    for (const unsigned int size : groupSizes) {
        const unsigned int rows = (size + columns - 1) / columns;
        headingTops_.push_back(top);
        top += headingHeight() + rows * cellHeight() + groupGap;
    }
    height_ = top - groupGap - gap + margin;
}

unsigned int SheetLayout::width() const {
    return 2 * margin + columns * cellWidth - gap;
}

unsigned int SheetLayout::left(unsigned int panel) const {
    return margin + panel % columns * cellWidth;
}

unsigned int SheetLayout::top(unsigned int group, unsigned int panel) const {
    return headingTop(group) + headingHeight() + panel / columns * cellHeight();
}

offscreen::Image contactSheet(const std::vector<Group>& groups,
                              const std::vector<offscreen::Image>& pictures) {
    const SheetLayout layout(sizesOf(groups));
    offscreen::Image sheet = filled(layout.width(), layout.height(), palette::sheet);
    auto picture = pictures.begin();
    for (unsigned int group = 0; group < groups.size(); ++group) {
        addHeading(sheet, layout.headingTop(group), groups[group].heading);
        for (unsigned int i = 0; i < groups[group].panels.size(); ++i)
            addPanel(sheet, layout.left(i), layout.top(group, i), groups[group].panels[i],
                     *picture++);
    }
    return sheet;
}

} // namespace gallery
