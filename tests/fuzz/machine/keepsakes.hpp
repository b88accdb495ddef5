#pragma once

#include <memory>

#include <vellis/vellis.hpp>

namespace vellis::test {

/// An object of each kind, made in one Context to end elsewhere.
struct Keepsakes {
    std::shared_ptr<VertexAttributeBuffer<float>> buffer;
    std::shared_ptr<VertexShader> shader;
    std::shared_ptr<Program> program;
    std::shared_ptr<VertexAttributesBinding> binding;
    std::shared_ptr<Texture1D<float>> texture;
    std::shared_ptr<Renderbuffer<float>> renderbuffer;
    std::shared_ptr<Framebuffer> framebuffer;
    unsigned int contextNumber = 0; ///< of the Context in which they were made

    /// In the Context in use, which has that number.
    static Keepsakes make(unsigned int contextNumber) {
        Keepsakes all;
        all.contextNumber = contextNumber;
        all.buffer =
            VertexAttributeBuffer<float>::make(nullptr, 4, BufferUsage::Static, BufferAccess::Draw);
        all.shader = VertexShader::make("void main() {}");
        all.program = Program::make();
        all.program->beginAttributesBinding();
        all.binding = all.program->finishAttributesBinding();
        all.texture = Texture1D<float>::make(1);
        all.renderbuffer = Renderbuffer<float>::make(1, 1);
        all.framebuffer = Framebuffer::make();
        return all;
    }
};

} // namespace vellis::test
