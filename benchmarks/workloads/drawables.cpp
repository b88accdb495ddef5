#include <vellis/drawing.hpp>
#include <vellis/gl.hpp>

#include "workloads/groups.hpp"

namespace vellis::bench {
namespace {

using Triangles = drawable::Triangles<VertexAttribute<glm::vec2>>;

/// What the drawable is made of.
struct Parts {
    std::shared_ptr<Program> program = flatProgram();
    std::shared_ptr<VertexAttributeBuffer<glm::vec2>> positions =
        VertexAttributeBuffer<glm::vec2>::make({{-0.5f, -0.5f}, {0.5f, -0.5f}, {0.f, 0.5f}},
                                               BufferUsage::Static, BufferAccess::Draw);
};

class RawMake {
public:
    void operator()() const {
        unsigned int vertexArray = 0;
        glUseProgram(program_);
        glGenVertexArrays(1, &vertexArray);
        glBindVertexArray(vertexArray);
        glBindBuffer(GL_ARRAY_BUFFER, positions_);
        glVertexAttribPointer(location_, 2, GL_FLOAT, GL_FALSE, sizeof(glm::vec2), nullptr);
        glEnableVertexAttribArray(location_);
        glBindBuffer(GL_ARRAY_BUFFER, 0);
        glBindVertexArray(0);
        glUseProgram(0);
        glDeleteVertexArrays(1, &vertexArray);
    }

private:
    Parts parts_;
    unsigned int program_ = parts_.program->id();
    unsigned int positions_ = parts_.positions->id();
    unsigned int location_ = parts_.program->getAttribLoc("position");
};

class Make {
public:
    void operator()() const { Triangles::make(parts_.program, {"position", parts_.positions}); }

private:
    Parts parts_;
};

} // namespace

std::vector<Workload> drawableWorkloads() {
    return {
        {"drawable/make",
         "make a drawable over one vertex attribute, destroy it",
         {{"raw", makeSide<RawMake>}, {"vellis", makeSide<Make>}}},
    };
}

} // namespace vellis::bench
