#include "text/imgui.hpp"

#include <glm/gtc/matrix_transform.hpp>
#include <vellis/text/shaped_text.hpp>

#include "canvas/scenes.hpp"

namespace vellis::bench {
namespace {

constexpr auto edge = static_cast<float>(pictureSize);

/// What it calls a font's size: from the highest ascent to the lowest descent.
float lineHeight() {
    // Without rounding to whole pixels: a font of 1000 pixels has it to 1/1000.
    constexpr float large = 1000.f;
    const auto font = text::Font::load(fontPath, large);
    if (font == nullptr)
        std::exit(EXIT_FAILURE);
    const text::FontMetrics& metrics = font->metrics();
    return static_cast<float>(text::pixelsOf(metrics.ascent + metrics.descent)) * fontSize / large;
}

const ImguiLibrary& library() {
    static const ImguiLibrary library(fontPath, lineHeight());
    return library;
}

} // namespace

ImguiWords::ImguiWords(unsigned int size)
    : words_(words(size)),
      list_(library(), glm::ortho(0.f, edge, edge, 0.f)) {}

void ImguiWords::operator()() {
    const ImFont* const font = ImGui::GetFont();
    const ImU32 color = ImGui::ColorConvertFloat4ToU32(
        ImVec4(sceneColor.r, sceneColor.g, sceneColor.b, sceneColor.a));
    list_.draw([&](ImDrawList& list) {
        for (const Word& word : words_) {
            const ImVec2 upperLeft(word.corner.x, edge - word.corner.y - font->FontSize);
            list.AddText(font, font->FontSize, upperLeft, color, word.text.data(),
                         word.text.data() + word.text.size());
        }
    });
}

} // namespace vellis::bench
