#include "text/once.hpp"

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <hb-ft.h>
#include <vellis/canvas.hpp>
#include <vellis/gl.hpp>
#include <vellis/text/draw.hpp>

#include "canvas/scenes.hpp"
#include "text/words.hpp"
#include "times/turns.hpp"

namespace vellis::bench {
namespace {

using Clock = std::chrono::steady_clock;

template <class Work>
double nanosecondsOf(Work work) {
    const Clock::time_point start = Clock::now();
    work();
    return std::chrono::duration<double, std::nano>(Clock::now() - start).count();
}

/// HarfBuzz as its manual shows it with a face of FreeType's.
class PlainShaper {
public:
    PlainShaper() {
        FT_Init_FreeType(&library_);
        FT_New_Face(library_, fontPath, 0, &face_);
        FT_Set_Char_Size(face_, 0, static_cast<FT_F26Dot6>(fontSize * 64.f), 72, 72);
        font_ = hb_ft_font_create_referenced(face_);
        hb_ft_font_set_load_flags(font_, FT_LOAD_NO_HINTING);
    }
    ~PlainShaper() {
        hb_buffer_destroy(buffer_);
        hb_font_destroy(font_);
        FT_Done_Face(face_);
        FT_Done_FreeType(library_);
    }
    PlainShaper(const PlainShaper&) = delete;
    PlainShaper& operator=(const PlainShaper&) = delete;

    void shape(std::string_view text) {
        hb_buffer_clear_contents(buffer_);
        hb_buffer_add_utf8(buffer_, text.data(), static_cast<int>(text.size()), 0, -1);
        hb_buffer_guess_segment_properties(buffer_);
        hb_shape(font_, buffer_, nullptr, 0);
    }

private:
    FT_Library library_ = nullptr;
    FT_Face face_ = nullptr;
    hb_font_t* font_ = nullptr;
    hb_buffer_t* buffer_ = hb_buffer_create();
};

/// The times of frames with new glyphs.
std::vector<double> timesOfFrames(const std::vector<std::string>& texts) {
    const auto font = loadFont();
    const auto canvas = Canvas::make();
    const glm::mat4 matrix = pixelsToClip();
    std::vector<double> times;
    for (const std::string& text : texts) {
        canvas->begin(matrix);
        times.push_back(nanosecondsOf([&] {
            text::draw(canvas, font, {10., 100.}, text, sceneColor);
        }));
        canvas->end();
        glFinish();
    }
    return times;
}

} // namespace

void printShaping() {
    constexpr unsigned int numWords = 10000;
    constexpr int numTurns = 9;
    const std::vector<Word> list = words(numWords);
    for (int turn = 0; turn < numTurns; ++turn) {
        PlainShaper plain;
        const double plainTime = nanosecondsOf([&] {
            for (const Word& word : list)
                plain.shape(word.text);
        });
        const auto font = loadFont();
        const double time = nanosecondsOf([&] {
            for (const Word& word : list)
                font->shape(word.text);
        });
        printSide("words/new", 1, "harfbuzz", plainTime / numWords);
        printSide("words/new", 1, "vellis", time / numWords);
    }
}

void printNewGlyphs() {
    constexpr unsigned int numGlyphs = 60;
    constexpr int numTurns = 15;
    const std::vector<std::string> texts = rareTexts(numGlyphs);
    std::vector<std::vector<double>> timesOfEach(texts.size());
    for (int turn = 0; turn < numTurns; ++turn) {
        const std::vector<double> times = timesOfFrames(texts);
        for (std::size_t i = 0; i < texts.size(); ++i)
            timesOfEach[i].push_back(times[i]);
    }
    std::vector<double> frames;
    for (const std::vector<double>& times : timesOfEach)
        frames.push_back(median(times));
    printSide("glyphs/new", numGlyphs, "median", median(frames));
    printSide("glyphs/new", numGlyphs, "longest", *std::max_element(frames.begin(), frames.end()));
}

} // namespace vellis::bench
