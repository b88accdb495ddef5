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

/// Points the attribute at the positions, in the vertex array object that is bound.
void bindAttribute(unsigned int location, unsigned int positions) {
    glBindBuffer(GL_ARRAY_BUFFER, positions);
    glVertexAttribPointer(location, 2, GL_FLOAT, GL_FALSE, sizeof(glm::vec2), nullptr);
    glEnableVertexAttribArray(location);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

class RawMake {
public:
    void operator()() const {
        unsigned int vertexArray = 0;
        glUseProgram(program_);
        glGenVertexArrays(1, &vertexArray);
        glBindVertexArray(vertexArray);
        bindAttribute(location_, positions_);
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

/// A vertex array object that several may own.
struct SharedVertexArray {
    SharedVertexArray() { glGenVertexArrays(1, &name); }
    ~SharedVertexArray() { glDeleteVertexArrays(1, &name); }
    SharedVertexArray(const SharedVertexArray&) = delete;
    SharedVertexArray& operator=(const SharedVertexArray&) = delete;

    unsigned int name = 0;
};

/// What has a share in one, and is shared itself.
struct SharedDrawable {
    SharedDrawable(unsigned int program, unsigned int location,
                   const std::shared_ptr<const unsigned int>& positions) {
        glUseProgram(program);
        vertexArray = std::make_shared<SharedVertexArray>();
        glBindVertexArray(vertexArray->name);
        bindAttribute(location, *positions);
        glBindVertexArray(0);
        glUseProgram(0);
    }

    std::shared_ptr<SharedVertexArray> vertexArray;
};

/// Like a VertexAttribute, what is made has a share in the positions.
class RawMakeSharing {
public:
    void operator()() const {
        const std::shared_ptr<const unsigned int> positions = positions_;
        std::make_shared<SharedDrawable>(program_, location_, positions);
    }

private:
    Parts parts_;
    unsigned int program_ = parts_.program->id();
    std::shared_ptr<const unsigned int> positions_ =
        std::make_shared<unsigned int>(parts_.positions->id());
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
        {"drawable/make_shared",
         "the same; raw GL shares the drawable, its vertex array object and its buffer, too",
         {{"raw", makeSide<RawMakeSharing>}, {"vellis", makeSide<Make>}}},
    };
}

} // namespace vellis::bench
