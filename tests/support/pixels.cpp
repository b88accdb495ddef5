#include "support/pixels.hpp"

#include "support/extension.hpp"

namespace vellis::test {
namespace {

constexpr const char* vertexSource = R"(#version 150
in vec3 position;
void main() { gl_Position = vec4(position, 1.0); }
)";

constexpr const char* fragmentSource = R"(#version 150
uniform vec4 color;
out vec4 results[4];
void main() { results[0] = results[1] = results[2] = results[3] = color; }
)";

void attach(GLuint program, GLenum type, const char* source) {
    const GLuint shader = glCreateShader(type);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    glAttachShader(program, shader);
    glDeleteShader(shader);
}

GLuint makeProgram() {
    const GLuint program = glCreateProgram();
    attach(program, GL_VERTEX_SHADER, vertexSource);
    attach(program, GL_FRAGMENT_SHADER, fragmentSource);
    glLinkProgram(program);
    return program;
}

/// Through objects that end with the call. Leaves the bindings as they were.
void drawInCore(GLenum primitive, const std::vector<glm::vec3>& points, const glm::vec4& color) {
    const auto inUse = static_cast<GLuint>(stateOf(GL_CURRENT_PROGRAM));
    const int arrayBefore = stateOf(GL_VERTEX_ARRAY_BINDING);
    const int bufferBefore = stateOf(GL_ARRAY_BUFFER_BINDING);
    const GLuint own = inUse == 0 ? makeProgram() : 0;
    const GLuint program = inUse + own;
    if (own != 0) {
        glUseProgram(own);
        glUniform4f(glGetUniformLocation(own, "color"), color.r, color.g, color.b, color.a);
    }
    GLuint array = 0;
    GLuint buffer = 0;
    glGenVertexArrays(1, &array);
    glBindVertexArray(array);
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(points.size() * sizeof(points[0])),
                 points.data(), GL_STREAM_DRAW);
    const auto position = static_cast<GLuint>(glGetAttribLocation(program, "position"));
    glVertexAttribPointer(position, 3, GL_FLOAT, GL_FALSE, 0, nullptr);
    glEnableVertexAttribArray(position);
    glDrawArrays(primitive, 0, static_cast<GLsizei>(points.size()));
    glUseProgram(inUse);
    glBindVertexArray(static_cast<GLuint>(arrayBefore));
    glBindBuffer(GL_ARRAY_BUFFER, static_cast<GLuint>(bufferBefore));
    glDeleteBuffers(1, &buffer);
    glDeleteVertexArrays(1, &array);
    glDeleteProgram(own);
}

} // namespace

void drawByGl(GLenum primitive, const std::vector<glm::vec3>& points, const glm::vec4& color) {
    if (isCore())
        return drawInCore(primitive, points, color);
    glColor4f(color.r, color.g, color.b, color.a);
    glBegin(primitive);
    for (const glm::vec3& point : points)
        glVertex3f(point.x, point.y, point.z);
    glEnd();
}

void fill(const glm::vec4& color, float depth, glm::vec2 from, glm::vec2 to) {
    const float z = 2.f * depth - 1.f;
    drawByGl(GL_TRIANGLE_FAN,
             {{from.x, from.y, z}, {to.x, from.y, z}, {to.x, to.y, z}, {from.x, to.y, z}}, color);
}

} // namespace vellis::test
