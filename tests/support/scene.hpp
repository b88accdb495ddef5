#pragma once

#include <array>
#include <cstddef>
#include <memory>

#include <glm/vec2.hpp>
#include <glm/vec4.hpp>
#include <gtest/gtest.h>
#include <vellis/buffers/index_buffer.hpp>
#include <vellis/buffers/vertex_attribute_buffer.hpp>
#include <vellis/drawing/drawable.hpp>
#include <vellis/framebuffer/framebuffer.hpp>
#include <vellis/gl.hpp>
#include <vellis/shading/program.hpp>
#include <vellis/texture/renderbuffer.hpp>
#include <vellis/texture/texture_2d.hpp>

/// \file
/// What the tests of Context draw: objects of every kind, which leave a picture of two halves.

namespace vellis::test {

using Color = glm::u8vec4;

constexpr Color red(255, 0, 0, 255);
constexpr Color green(0, 255, 0, 255);
constexpr Color blue(0, 0, 255, 255);
constexpr Color yellow(255, 255, 0, 255);

/// The objects of a scene that GL shares between contexts.
struct SharedParts {
    /// With a texture of one texel of that colour.
    explicit SharedParts(const Color& color);

    std::shared_ptr<VertexAttributeBuffer<glm::vec2>> corners;
    std::shared_ptr<IndexBuffer<unsigned short>> indices;
    std::shared_ptr<Texture2D<Color>> texture;
    std::shared_ptr<Texture2D<Color>> target; ///< what the framebuffer's picture is
    std::shared_ptr<Renderbuffer<depth24_stencil8>> depth;
    std::shared_ptr<VertexShader> shader; ///< of no program
    std::shared_ptr<Program> program;
};

/// Those that belong to one context, on shared ones.
struct OwnParts {
    explicit OwnParts(const SharedParts& shared);

    std::shared_ptr<Drawable> square; ///< the whole viewport
    std::shared_ptr<Framebuffer> framebuffer;
};

/// How many kinds of objects there are.
constexpr std::size_t numKinds = 7;

/// A name of each kind: buffer, texture, renderbuffer, shader, program, vertex array, framebuffer.
using Names = std::array<GLuint, numKinds>;

/// How the kinds are called.
extern const char* const kindNames[numKinds];

/// Whether the names are those of objects in the GL context that is current, by glIsBuffer and its
/// like.
std::array<bool, numKinds> areLive(const Names& names);

/// How many objects of each kind the GL context that is current has, as far as their names are
/// below 200.
std::array<int, numKinds> countObjects();

/// Both kinds of parts.
struct Scene {
    /// \param color  That of the left half.
    explicit Scene(const Color& color) : shared(color), own(shared) {}

    /// The names of the objects that end() ends.
    Names names() const;

    /// Releases the object of that kind.
    void end(std::size_t kind);

    SharedParts shared;
    OwnParts own;
};

/// The width and height of the picture.
constexpr unsigned int sceneSize = 32;

/// Draws into the framebuffer, and with its picture on the left half of the default framebuffer.
void drawLeft(const SharedParts& shared, const OwnParts& own);

/// Draws the right half with the Toolbox.
void drawRight(const Color& color);

/// Makes the default framebuffer black.
void clear();

/// clear(), drawLeft(), drawRight().
void draw(const Scene& scene, const Color& right);

/// Whether each pixel of the default framebuffer's halves has that colour.
testing::AssertionResult shows(const Color& left, const Color& right);

/// Draws, and whether that shows.
testing::AssertionResult draws(const Scene& scene, const Color& left, const Color& right);

/// The colour of a texture that has one texel.
Color texelOf(const Texture2D<Color>& texture);

/// Whether there is no error of GL's, and nothing was used where it does not exist.
testing::AssertionResult isQuiet();

} // namespace vellis::test
