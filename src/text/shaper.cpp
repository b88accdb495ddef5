#include "text/shaper.hpp"

#include <algorithm>
#include <vector>

#include "text/boxes.hpp"
#include "text/face.hpp"

namespace vellis::text {
ShapedText Shaper::shape(Face& face, std::string_view text) {
    Characters characters = decode(text);
    std::vector<std::uint32_t>& values = characters.values;
    ShapedText shape;
    shape.glyphs.reserve(values.size());
    for (std::size_t begin = 0;;) {
        const auto first = values.begin() + static_cast<std::ptrdiff_t>(begin);
        const auto end =
            static_cast<std::size_t>(std::find(first, values.end(), '\n') - values.begin());
        const bool isLast = end == values.size();
        const bool endsInTwo = !isLast && end > begin && values[end - 1] == '\r';
        std::replace(first, values.begin() + static_cast<std::ptrdiff_t>(end), std::uint32_t{'\t'},
                     std::uint32_t{' '});
        shapeLine(face, characters, begin, endsInTwo ? end - 1 : end, shape);
        if (isLast)
            return shape;
        begin = end + 1;
    }
}

void Shaper::shapeLine(Face& face, const Characters& characters, std::size_t begin, std::size_t end,
                       ShapedText& shape) {
    const std::uint32_t* const first = characters.values.data() + begin;
    const LineRuns runs = findRuns(first, end - begin);
    ShapedLine line;
    line.firstGlyph = shape.glyphs.size();
    line.isRightToLeft = runs.isRightToLeft;
    const Work work{face, first, characters.bytes.data() + begin, end - begin, shape, line};
    for (const Run& run : runs.runs)
        shapeRun(work, run);
    line.numGlyphs = shape.glyphs.size() - line.firstGlyph;
    shape.lines.push_back(line);
}

void Shaper::shapeRun(const Work& work, const Run& run) {
    hb_buffer_t* const buffer = buffer_.get();
    hb_buffer_clear_contents(buffer);
    hb_buffer_add_utf32(buffer, work.characters, static_cast<int>(work.count),
                        static_cast<unsigned int>(run.begin),
                        static_cast<int>(run.end - run.begin));
    hb_buffer_set_direction(buffer, run.isRightToLeft() ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
    hb_buffer_set_script(buffer, run.script);
    hb_shape(work.face.shapingFont(), buffer, nullptr, 0);
    unsigned int count = 0;
    const hb_glyph_info_t* const infos = hb_buffer_get_glyph_infos(buffer, &count);
    const hb_glyph_position_t* const positions = hb_buffer_get_glyph_positions(buffer, &count);
    for (unsigned int i = 0; i < count; ++i) {
        const hb_glyph_position_t& position = positions[i];
        const Fixed x = work.line.advance + position.x_offset;
        const Fixed y = position.y_offset;
        work.shape.glyphs.push_back({infos[i].codepoint, work.bytes[infos[i].cluster], x, y});
        work.line.ink = unionOf(work.line.ink, moved(work.face.boxOf(infos[i].codepoint), x, y));
        work.line.advance += position.x_advance;
    }
}

} // namespace vellis::text
