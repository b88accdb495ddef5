#pragma once

#include <memory>
#include <utility>
#include <vector>

#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

#include <vellis/buffers.hpp>
#include <vellis/drawing.hpp>
#include <vellis/shading.hpp>

#include "gear_solid.hpp"
#include "gear_train.hpp"

namespace gears {

/// Where the gears are seen from: the angles by which they are turned from their front view.
struct View {
    float aroundX = -0.40f;
    float aroundY = -0.38f;
};

/// Three gears that turn each other.
class Scene {
public:
    /// \throws std::runtime_error with the driver's words where it refuses the shaders.
    Scene();

    /// Clears the framebuffer that is bound and draws the gears as large as fits.
    /// \param size         The framebuffer's, in pixels.
    /// \param driverAngle  By how much the first gear is turned.
    void draw(const glm::uvec2& size, const View& view, float driverAngle) const;

private:
    /// A gear in GL's memory.
    class Body {
    public:
        Body(const std::shared_ptr<vellis::Program>& program, unsigned int teeth);

        /// Draws it with these values of uniforms.
        template <class... Values>
        void draw(vellis::Program& program, Values&&... values) const {
            program.draw(triangles_, *indices_, std::forward<Values>(values)...);
        }

    private:
        Body(const std::shared_ptr<vellis::Program>& program, const Solid& solid);

        // A drawable does not keep its buffers.
        std::shared_ptr<vellis::VertexAttributeBuffer<glm::vec3>> positions_;
        std::shared_ptr<vellis::VertexAttributeBuffer<glm::vec3>> normals_;
        std::shared_ptr<vellis::IndexBuffer<unsigned short>> indices_;
        vellis::drawable::Triangles<vellis::VertexAttribute<glm::vec3>,
                                    vellis::VertexAttribute<glm::vec3>>
            triangles_;
    };

    std::shared_ptr<vellis::Program> program_;
    std::vector<Gear> train_;
    std::vector<Body> bodies_;
};

} // namespace gears
