#include "text/test_font.hpp"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include <hb-ft.h>

namespace vellis::test {
namespace {

constexpr const char* fontFolder = "/usr/share/fonts";

} // namespace

std::string findFont(const std::string& name) {
    namespace fs = std::filesystem;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(fontFolder, error)) {
        if (entry.path().filename() == name)
            return entry.path().string();
    }
    return {};
}

std::vector<std::uint8_t> bytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

PlainFace::PlainFace(const std::string& path, float pixels) {
    const auto size = static_cast<FT_F26Dot6>(std::lround(pixels * 64.f));
    if (FT_Init_FreeType(&library_) != 0 || FT_New_Face(library_, path.c_str(), 0, &face_) != 0 ||
        FT_Set_Char_Size(face_, 0, size, 72, 72) != 0)
        throw std::runtime_error("FreeType does not open " + path);
}

PlainFace::~PlainFace() {
    FT_Done_Face(face_);
    FT_Done_FreeType(library_);
}

text::ShapedText shapePlainly(const PlainFace& face, std::string_view text) {
    hb_font_t* const font = hb_ft_font_create_referenced(face.face());
    hb_ft_font_set_load_flags(font, FT_LOAD_NO_HINTING);
    hb_buffer_t* const buffer = hb_buffer_create();
    hb_buffer_add_utf8(buffer, text.data(), static_cast<int>(text.size()), 0, -1);
    hb_buffer_guess_segment_properties(buffer);
    hb_buffer_set_language(buffer, HB_LANGUAGE_INVALID);
    hb_shape(font, buffer, nullptr, 0);
    unsigned int count = 0;
    const hb_glyph_info_t* const infos = hb_buffer_get_glyph_infos(buffer, &count);
    const hb_glyph_position_t* const positions = hb_buffer_get_glyph_positions(buffer, &count);
    text::ShapedText result;
    result.lines.resize(1);
    text::ShapedLine& line = result.lines[0];
    line.numGlyphs = count;
    for (unsigned int i = 0; i < count; ++i) {
        result.glyphs.push_back({infos[i].codepoint, infos[i].cluster,
                                 line.advance + positions[i].x_offset, positions[i].y_offset});
        line.advance += positions[i].x_advance;
    }
    hb_buffer_destroy(buffer);
    hb_font_destroy(font);
    return result;
}

namespace {

/// A number of each glyph of a line.
std::vector<std::uint32_t> ofGlyphs(const text::ShapedText& shape, std::size_t line,
                                    std::uint32_t text::ShapedGlyph::*number) {
    std::vector<std::uint32_t> numbers;
    const text::ShapedLine& which = shape.lines.at(line);
    for (std::size_t i = 0; i < which.numGlyphs; ++i)
        numbers.push_back(shape.glyphs.at(which.firstGlyph + i).*number);
    return numbers;
}

} // namespace

std::vector<std::uint32_t> indicesOf(const text::ShapedText& shape, std::size_t line) {
    return ofGlyphs(shape, line, &text::ShapedGlyph::index);
}

std::vector<std::uint32_t> bytesOf(const text::ShapedText& shape, std::size_t line) {
    return ofGlyphs(shape, line, &text::ShapedGlyph::byte);
}

} // namespace vellis::test
