#include "canvas/plain.hpp"

#include <vellis/gl.hpp>
#include <vellis/shading.hpp>

#include "canvas/scenes.hpp"

namespace vellis::bench {
namespace {

using BuiltIn = ProgramManager::BuiltIn;

constexpr unsigned int softSwitches[] = {GL_BLEND, GL_POINT_SPRITE, GL_VERTEX_PROGRAM_POINT_SIZE};

const std::shared_ptr<Program>& programFor(unsigned int primitive) {
    return ProgramManager::instance().get(primitive == GL_POINTS ? BuiltIn::SoftPoints2D
                                                                 : BuiltIn::UniformColor2D);
}

} // namespace

Plain::Plain(unsigned int primitive, const std::vector<glm::vec2>& points)
    : primitive_(primitive),
      count_(static_cast<unsigned int>(points.size())),
      program_(programFor(primitive)->id()) {
    const unsigned int position = programFor(primitive)->getAttribLoc("position");
    glGenVertexArrays(1, &vertexArray_);
    glGenBuffers(1, &buffer_);
    glBindVertexArray(vertexArray_);
    glBindBuffer(GL_ARRAY_BUFFER, buffer_);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(points.size() * sizeof points[0]),
                 points.data(), GL_STATIC_DRAW);
    glVertexAttribPointer(position, 2, GL_FLOAT, GL_FALSE, sizeof points[0], nullptr);
    glEnableVertexAttribArray(position);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindVertexArray(0);

    const auto location = [&](const char* name) { return glGetUniformLocation(program_, name); };
    const glm::mat4 matrix = pixelsToClip();
    glUseProgram(program_);
    glUniform4fv(location("color"), 1, &sceneColor[0]);
    glUniformMatrix4fv(location("mvp"), 1, GL_FALSE, &matrix[0][0]);
    if (isSoft()) {
        glUniform1f(location("radius"), plainPointSize);
        glUniform1f(location("softness"), 0.1f);
    }
    glUseProgram(0);
}

Plain::~Plain() {
    glDeleteVertexArrays(1, &vertexArray_);
    glDeleteBuffers(1, &buffer_);
}

bool Plain::isSoft() const {
    return primitive_ == GL_POINTS;
}

void Plain::draw() const {
    glUseProgram(program_);
    glBindVertexArray(vertexArray_);
    if (isSoft()) {
        for (const unsigned int name : softSwitches)
            glEnable(name);
        glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    }
    glDrawArrays(primitive_, 0, static_cast<int>(count_));
    if (isSoft()) {
        for (const unsigned int name : softSwitches)
            glDisable(name);
    }
    glBindVertexArray(0);
    glUseProgram(0);
}

} // namespace vellis::bench
