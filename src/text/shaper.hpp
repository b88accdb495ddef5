#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include <hb.h>

#include <vellis/text/shaped_text.hpp>

#include "text/runs.hpp"
#include "text/utf8.hpp"

namespace vellis::text {

class Face;

/// Makes glyphs of texts.
class Shaper {
public:
    Shaper() : buffer_(hb_buffer_create()) {}

    /// The lines of a text with their glyphs.
    ShapedText shape(Face& face, std::string_view text);

private:
    struct EndBuffer {
        void operator()(hb_buffer_t* buffer) const { hb_buffer_destroy(buffer); }
    };
    /// The line at hand: its characters and what becomes of them.
    struct Work {
        Face& face;
        const std::uint32_t* characters;
        const std::uint32_t* bytes;
        std::size_t count;
        ShapedText& shape;
        ShapedLine& line;
    };

    void shapeLine(Face& face, const Characters& characters, std::size_t begin, std::size_t end,
                   ShapedText& shape);
    void shapeRun(const Work& work, const Run& run);

    std::unique_ptr<hb_buffer_t, EndBuffer> buffer_;
};

} // namespace vellis::text
