#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include <vellis/shading.hpp>

#include "text/words.hpp"

namespace vellis::bench {

/// GL alone: the quads of words from a buffer that was filled once, with one call. What text is
/// measured against.
class PlainQuads {
public:
    PlainQuads(text::Font& font, const std::vector<Word>& words);
    ~PlainQuads();
    PlainQuads(const PlainQuads&) = delete;
    PlainQuads& operator=(const PlainQuads&) = delete;

    void draw() const;

private:
    std::shared_ptr<Program> program_;
    std::size_t numIndices_ = 0;
    unsigned int vertexArray_ = 0;
    unsigned int buffers_[2] = {};
    unsigned int texture_ = 0;
};

} // namespace vellis::bench
