#pragma once

#include <memory>
#include <string>

#include <glm/gtc/type_precision.hpp>

#include <vellis/vellis.hpp>

/// \file
/// What the examples in the headers' comments take as given. They are compiled, not run, so nothing
/// is defined.

namespace given {

/// A pointer to texels of whatever type.
struct AnyTexels {
    template <class Texel>
    operator const Texel*() const;
};

extern const AnyTexels texels;
extern const char* const vertexSource;
extern const char* const fragmentSource;
extern const unsigned int location;
extern const int rows;
extern const vellis::Drawable& mesh;
extern const vellis::Drawable& triangle;
extern const vellis::Texture& texture;
extern const std::shared_ptr<vellis::Context> context;
extern const std::shared_ptr<vellis::Framebuffer> framebuffer;
extern const std::shared_ptr<vellis::Program> program;
extern const std::shared_ptr<vellis::VertexAttributeBuffer<float>> buffer;
extern const std::shared_ptr<vellis::VertexAttributeBuffer<glm::vec3>> positions;
extern const std::shared_ptr<vellis::VertexAttributeBuffer<glm::u8vec4>> colors;
extern const std::shared_ptr<vellis::VertexAttributesBinding> binding;

void drawOverlay();
void showError(const std::string& text);

} // namespace given
