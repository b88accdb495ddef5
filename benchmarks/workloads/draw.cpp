#include <glm/mat4x4.hpp>

#include <vellis/drawing.hpp>
#include <vellis/gl.hpp>

#include "workloads/groups.hpp"

namespace vellis::bench {
namespace {

/// What a draw needs besides GL.
const glm::mat4 mvp(0.5f);
const glm::vec4 color(0.2f, 0.4f, 0.6f, 1.f);

/// A program and a triangle for it.
struct Scene {
    using Triangle = drawable::Triangles<VertexAttribute<glm::vec2>>;

    std::shared_ptr<Program> program = flatProgram();
    std::shared_ptr<VertexAttributeBuffer<glm::vec2>> positions =
        VertexAttributeBuffer<glm::vec2>::make({{-0.5f, -0.5f}, {0.5f, -0.5f}, {0.f, 0.5f}},
                                               BufferUsage::Static, BufferAccess::Draw);
    std::shared_ptr<Triangle> triangle = Triangle::make(program, {"position", positions});

    /// The GL name of the triangle's vertex array object.
    unsigned int vertexArray() const {
        triangle->getAttributesBinding()->bind();
        int name = 0;
        glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &name);
        VertexAttributesBinding::unbind();
        return static_cast<unsigned int>(name);
    }
};

/// The two uniforms, and the draw between them and the end, of all raw sides.
void drawTriangle(int mvpLocation, int colorLocation) {
    glUniformMatrix4fv(mvpLocation, 1, GL_FALSE, &mvp[0][0]);
    glUniform4fv(colorLocation, 1, &color[0]);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glBindVertexArray(0);
    glUseProgram(0);
}

class RawDraw {
public:
    void operator()() const {
        glUseProgram(program_);
        glBindVertexArray(vertexArray_);
        drawTriangle(mvpLocation_, colorLocation_);
    }

private:
    Scene scene_;
    unsigned int program_ = scene_.program->id();
    unsigned int vertexArray_ = scene_.vertexArray();
    int mvpLocation_ = glGetUniformLocation(program_, "mvp");
    int colorLocation_ = glGetUniformLocation(program_, "color");
};

class RawDrawAskingForLocations {
public:
    void operator()() const {
        glUseProgram(program_);
        glBindVertexArray(vertexArray_);
        const int mvpLocation = glGetUniformLocation(program_, "mvp");
        const int colorLocation = glGetUniformLocation(program_, "color");
        drawTriangle(mvpLocation, colorLocation);
    }

private:
    Scene scene_;
    unsigned int program_ = scene_.program->id();
    unsigned int vertexArray_ = scene_.vertexArray();
};

/// A scene, and the handles of its program's uniforms.
class SceneWithHandles {
protected:
    Scene scene_;
    Program& program_ = *scene_.program;
    const Drawable& triangle_ = *scene_.triangle;
    Uniform<glm::mat4>& mvp_ = program_.getUniform<glm::mat4>("mvp");
    Uniform<glm::vec4>& color_ = program_.getUniform<glm::vec4>("color");
};

/// The values lie in the handles, as raw GL's lie in variables.
class DrawWithHandles : SceneWithHandles {
public:
    DrawWithHandles() {
        mvp_.value = mvp;
        color_.value = color;
    }
    void operator()() const {
        program_.bind(triangle_.getAttributesBinding());
        program_.setUniform(mvp_);
        program_.setUniform(color_);
        triangle_.draw(0, 3);
        program_.unbind();
    }
};

/// The values lie elsewhere and are written to the handles for each draw.
class DrawWithNewValues : SceneWithHandles {
public:
    void operator()() {
        program_.bind(triangle_.getAttributesBinding());
        mvp_.value = mvp;
        program_.setUniform(mvp_);
        color_.value = color;
        program_.setUniform(color_);
        triangle_.draw(0, 3);
        program_.unbind();
    }
};

/// The values lie in the handles, and one call draws with them.
class DrawWithValues : SceneWithHandles {
public:
    DrawWithValues() {
        mvp_.value = mvp;
        color_.value = color;
    }
    void operator()() const { program_.draw(triangle_, mvp_, color_); }
};

class DrawByName {
public:
    void operator()() const {
        program_.bind(triangle_.getAttributesBinding());
        program_.setUniform("mvp", mvp);
        program_.setUniform("color", color);
        triangle_.draw(0, 3);
        program_.unbind();
    }

private:
    Scene scene_;
    Program& program_ = *scene_.program;
    const Drawable& triangle_ = *scene_.triangle;
};

/// The same by one call with the names and the values.
class DrawWithNamedValues {
public:
    void operator()() const {
        program_.draw(triangle_, Uniform("mvp", mvp), Uniform("color", color));
    }

private:
    Scene scene_;
    Program& program_ = *scene_.program;
    const Drawable& triangle_ = *scene_.triangle;
};

} // namespace

std::vector<Workload> drawWorkloads() {
    return {
        {"draw/handles",
         "bind a program and a binding, set two uniforms by handle, draw, unbind",
         {{"raw", makeSide<RawDraw>}, {"vellis", makeSide<DrawWithHandles>}}},
        {"draw/new_values",
         "the same with values copied into the handles",
         {{"raw", makeSide<RawDraw>}, {"vellis", makeSide<DrawWithNewValues>}}},
        {"draw/names",
         "the same by name; raw GL keeps the locations",
         {{"raw", makeSide<RawDraw>}, {"vellis", makeSide<DrawByName>}}},
        {"draw/names_asked",
         "the same by name; raw GL asks for the locations",
         {{"raw", makeSide<RawDrawAskingForLocations>}, {"vellis", makeSide<DrawByName>}},
         Where::Both,
         Calls::Different},
        {"draw/values",
         "draw/handles in one call",
         {{"raw", makeSide<RawDraw>}, {"vellis", makeSide<DrawWithValues>}}},
        {"draw/values_by_name",
         "draw/names in one call",
         {{"raw", makeSide<RawDraw>}, {"vellis", makeSide<DrawWithNamedValues>}}},
        {"draw/values_by_name_asked",
         "draw/names_asked in one call",
         {{"raw", makeSide<RawDrawAskingForLocations>}, {"vellis", makeSide<DrawWithNamedValues>}},
         Where::Both,
         Calls::Different},
        {"draw/alternating",
         "draw/handles with one program, then with another",
         {{"raw", makeSide<Alternating<RawDraw>>},
          {"vellis", makeSide<Alternating<DrawWithHandles>>}}},
    };
}

} // namespace vellis::bench
