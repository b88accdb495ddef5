#include "text/face.hpp"

#include <algorithm>
#include <cstring>
#include <utility>

#include <hb-ft.h>
#include FT_OUTLINE_H

namespace vellis::text {
namespace {

/// The pixels that an outline reaches, as FreeType's rasteriser counts them.
bool isTooLarge(FT_Outline& outline) {
    FT_BBox box;
    FT_Outline_Get_CBox(&outline, &box);
    const FT_Pos most = FT_Pos{Font::largestGlyph} * fixedPixel;
    const FT_Pos farthest = FT_Pos{1} << 24; // where sums of positions are still far from the end
    for (const FT_Pos edge : {box.xMin, box.yMin, box.xMax, box.yMax}) {
        if (edge < -farthest || edge > farthest)
            return true;
    }
    return box.xMax - box.xMin > most || box.yMax - box.yMin > most;
}

/// The rows of a bitmap without what lies between them.
void copyRows(const FT_Bitmap& bitmap, GlyphBitmap& result) {
    result.width = bitmap.width;
    result.height = bitmap.rows;
    result.coverage.resize(std::size_t{bitmap.width} * bitmap.rows);
    for (unsigned int row = 0; row < bitmap.rows; ++row) {
        const std::ptrdiff_t offset = std::ptrdiff_t{bitmap.pitch} * static_cast<int>(row);
        std::memcpy(result.coverage.data() + std::size_t{bitmap.width} * row,
                    bitmap.buffer + offset, bitmap.width);
    }
}

} // namespace

std::unique_ptr<Face> Face::make(std::vector<std::uint8_t> bytes, FT_F26Dot6 size,
                                 const char*& error) {
    std::unique_ptr<Face> face(new Face(std::move(bytes)));
    error = face->open(size);
    if (error != nullptr)
        return nullptr;
    return face;
}

/// Null, or what is wrong.
const char* Face::open(FT_F26Dot6 size) {
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) != 0)
        return "FreeType does not start";
    library_.reset(library);
    FT_Face face = nullptr;
    if (FT_New_Memory_Face(library, bytes_.data(), static_cast<FT_Long>(bytes_.size()), 0, &face) !=
        0)
        return "not a font, or a broken one";
    face_.reset(face);
    if (!FT_IS_SCALABLE(face))
        return "a font without outlines";
    FT_Size_RequestRec request = {FT_SIZE_REQUEST_TYPE_NOMINAL, size, size, 0, 0};
    if (FT_Request_Size(face, &request) != 0)
        return "a font that cannot have this size";
    font_.reset(hb_ft_font_create_referenced(face));
    hb_ft_font_set_load_flags(font_.get(), loadFlags);
    readMetrics();
    return nullptr;
}

void Face::readMetrics() {
    const FT_Size_Metrics& metrics = face_->size->metrics;
    metrics_.ascent = (std::max)(Fixed{metrics.ascender}, Fixed{0});
    metrics_.descent = (std::max)(-Fixed{metrics.descender}, Fixed{0});
    metrics_.lineHeight = (std::max)(Fixed{metrics.height}, Fixed{0});
}

FixedBox Face::outlineBoxOf(std::uint32_t glyph) const {
    hb_glyph_extents_t extents;
    if (hb_font_get_glyph_extents(font_.get(), glyph, &extents) == 0)
        return {};
    FixedBox box;
    box.left = extents.x_bearing;
    box.top = extents.y_bearing;
    box.right = box.left + extents.width;
    box.bottom = box.top + extents.height;
    return box;
}

const FixedBox& Face::boxOf(std::uint32_t glyph) {
    const auto known = boxes_.find(glyph);
    if (known != boxes_.end())
        return known->second;
    return boxes_.emplace(glyph, outlineBoxOf(glyph)).first->second;
}

GlyphBitmap Face::render(std::uint32_t glyph) {
    GlyphBitmap result;
    FT_Face face = face_.get();
    if (FT_Load_Glyph(face, glyph, loadFlags) != 0)
        return result;
    FT_GlyphSlot slot = face->glyph;
    if (slot->format != FT_GLYPH_FORMAT_OUTLINE || isTooLarge(slot->outline) ||
        FT_Render_Glyph(slot, FT_RENDER_MODE_NORMAL) != 0)
        return result;
    const FT_Bitmap& bitmap = slot->bitmap;
    if (bitmap.pixel_mode != FT_PIXEL_MODE_GRAY || bitmap.width == 0 || bitmap.rows == 0)
        return result;
    copyRows(bitmap, result);
    result.left = slot->bitmap_left;
    result.top = slot->bitmap_top;
    return result;
}

} // namespace vellis::text
