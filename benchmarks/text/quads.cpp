#include "text/quads.hpp"

#include <cstdint>
#include <map>

#include <vellis/gl.hpp>
#include <vellis/text/layout.hpp>

#include "canvas/scenes.hpp"

namespace vellis::bench {
namespace {

// With the colour as a uniform of the fragments, a driver that draws with the processor takes a
// tenth longer.
constexpr const char* vertexSource = "#version 130\n"
                                     "uniform mat4 matrix;\n"
                                     "uniform vec4 color;\n"
                                     "in vec2 position, place;\n"
                                     "noperspective out vec2 texel;\n"
                                     "flat out vec4 paint;\n"
                                     "void main() {\n"
                                     "  texel = place;\n"
                                     "  paint = color;\n"
                                     "  gl_Position = matrix * vec4(position, 0.0, 1.0);\n"
                                     "}\n";
constexpr const char* fragmentSource =
    "#version 130\n"
    "uniform sampler2D atlas;\n"
    "noperspective in vec2 texel;\n"
    "flat in vec4 paint;\n"
    "void main() {\n"
    "  gl_FragColor = vec4(paint.rgb, paint.a * texture(atlas, texel).r);\n"
    "}\n";

struct Vertex {
    glm::vec2 position;
    glm::vec2 place;
};

/// Glyphs side by side, with an empty texel between them.
class Strip {
public:
    static constexpr unsigned int width = 1024;
    static constexpr unsigned int height = 32;

    struct Glyph {
        text::GlyphBitmap bitmap;
        unsigned int column;
    };

    const Glyph& add(text::Font& font, std::uint32_t index) {
        const auto [place, isNew] = glyphs_.try_emplace(index);
        Glyph& glyph = place->second;
        if (!isNew)
            return glyph;
        glyph = {font.render(index), end_};
        const text::GlyphBitmap& bitmap = glyph.bitmap;
        for (std::size_t i = 0; i < bitmap.coverage.size(); ++i)
            texels_[i / bitmap.width * width + end_ + i % bitmap.width] = bitmap.coverage[i];
        end_ += bitmap.width + 1;
        return glyph;
    }
    const std::uint8_t* texels() const { return texels_.data(); }

private:
    std::map<std::uint32_t, Glyph> glyphs_;
    std::vector<std::uint8_t> texels_ = std::vector<std::uint8_t>(width * height);
    unsigned int end_ = 1;
};

void addQuad(const Strip::Glyph& glyph, const glm::vec2& origin, std::vector<Vertex>& vertices) {
    const glm::vec2 size(glyph.bitmap.width, glyph.bitmap.height);
    const glm::vec2 upperLeft = origin + glm::vec2(glyph.bitmap.left, glyph.bitmap.top);
    for (int i = 0; i < 4; ++i) {
        const glm::vec2 part(i & 1, i / 2);
        const glm::vec2 texel = glm::vec2(glyph.column, 0.f) + part * size;
        vertices.push_back({upperLeft + part * glm::vec2(size.x, -size.y),
                            texel / glm::vec2(Strip::width, Strip::height)});
    }
}

std::vector<Vertex> verticesOf(text::Font& font, const std::vector<Word>& words, Strip& strip) {
    std::vector<Vertex> vertices;
    for (const Word& word : words) {
        for (const text::PlacedGlyph& glyph :
             text::place(font, word.text, text::Anchor::BottomLeft))
            addQuad(strip.add(font, glyph.index), word.corner + glyph.origin, vertices);
    }
    return vertices;
}

std::vector<std::uint32_t> indicesOf(std::size_t numQuads) {
    std::vector<std::uint32_t> indices;
    for (std::uint32_t i = 0; i < numQuads; ++i) {
        for (const std::uint32_t corner : {0u, 1u, 2u, 2u, 1u, 3u})
            indices.push_back(4 * i + corner);
    }
    return indices;
}

} // namespace

PlainQuads::PlainQuads(text::Font& font, const std::vector<Word>& words)
    : program_(Program::make(vertexSource, fragmentSource)) {
    Strip strip;
    const std::vector<Vertex> vertices = verticesOf(font, words, strip);
    const std::vector<std::uint32_t> indices = indicesOf(vertices.size() / 4);
    numIndices_ = indices.size();
    glGenVertexArrays(1, &vertexArray_);
    glGenBuffers(2, buffers_);
    glBindVertexArray(vertexArray_);
    glBindBuffer(GL_ARRAY_BUFFER, buffers_[0]);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertices.size() * sizeof vertices[0]),
                 vertices.data(), GL_STATIC_DRAW);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffers_[1]);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER,
                 static_cast<GLsizeiptr>(indices.size() * sizeof indices[0]), indices.data(),
                 GL_STATIC_DRAW);
    const auto attribute = [&](const char* name, std::size_t offset) {
        const unsigned int location = program_->getAttribLoc(name);
        glVertexAttribPointer(location, 2, GL_FLOAT, GL_FALSE, sizeof(Vertex),
                              reinterpret_cast<const void*>(offset));
        glEnableVertexAttribArray(location);
    };
    attribute("position", 0);
    attribute("place", sizeof(glm::vec2));
    glBindVertexArray(0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glGenTextures(1, &texture_);
    glBindTexture(GL_TEXTURE_2D, texture_);
    for (const GLenum filter : {GLenum{GL_TEXTURE_MIN_FILTER}, GLenum{GL_TEXTURE_MAG_FILTER}})
        glTexParameteri(GL_TEXTURE_2D, filter, GL_NEAREST);
    for (const GLenum wrap : {GLenum{GL_TEXTURE_WRAP_S}, GLenum{GL_TEXTURE_WRAP_T}})
        glTexParameteri(GL_TEXTURE_2D, wrap, GL_CLAMP_TO_EDGE);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_R8, Strip::width, Strip::height, 0, GL_RED, GL_UNSIGNED_BYTE,
                 strip.texels());
    glBindTexture(GL_TEXTURE_2D, 0);
    const glm::mat4 matrix = pixelsToClip();
    glUseProgram(program_->id());
    glUniformMatrix4fv(glGetUniformLocation(program_->id(), "matrix"), 1, GL_FALSE, &matrix[0][0]);
    glUniform4fv(glGetUniformLocation(program_->id(), "color"), 1, &sceneColor[0]);
    glUseProgram(0);
}

PlainQuads::~PlainQuads() {
    glDeleteTextures(1, &texture_);
    glDeleteBuffers(2, buffers_);
    glDeleteVertexArrays(1, &vertexArray_);
}

void PlainQuads::draw() const {
    glUseProgram(program_->id());
    glBindTexture(GL_TEXTURE_2D, texture_);
    glEnable(GL_BLEND);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glBindVertexArray(vertexArray_);
    glDrawElements(GL_TRIANGLES, static_cast<int>(numIndices_), GL_UNSIGNED_INT, nullptr);
    glBindVertexArray(0);
    glDisable(GL_BLEND);
    glBindTexture(GL_TEXTURE_2D, 0);
    glUseProgram(0);
}

} // namespace vellis::bench
