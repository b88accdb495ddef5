#include <gallery/programs.hpp>

#include <stdexcept>
#include <string>
#include <vector>

#include <vellis/gl.hpp>

namespace gallery {
namespace {

constexpr char colourVertexSource[] = R"(
IN vec3 position;
IN vec3 colour;
OUT vec3 vertexColour;

void main() {
    vertexColour = colour;
    gl_Position = vec4(position.xy, -position.z, 1.0);
}
)";

constexpr char colourFragmentSource[] = R"(
IN vec3 vertexColour;
DECL_OUT0;

void main() {
    OUT0 = vec4(vertexColour, 1.0);
}
)";

constexpr char litVertexSource[] = R"(
IN vec3 position;
IN vec3 colour;
IN vec3 normal;
OUT vec3 vertexColour;
OUT vec3 vertexNormal;

void main() {
    vertexColour = colour;
    vertexNormal = normal;
    gl_Position = vec4(position.xy, -position.z, 1.0);
}
)";

constexpr char litFragmentSource[] = R"(
IN vec3 vertexColour;
IN vec3 vertexNormal;
DECL_OUT0;

const vec3 toLight = vec3(-0.42, 0.64, 0.64);
const vec3 toHalfway = vec3(-0.23, 0.35, 0.91);
const vec3 backColour = vec3(0.925, 0.784, 0.431);

void main() {
    vec3 surface = vertexColour;
    vec3 towards = normalize(vertexNormal);
#ifdef TWO_SIDED
    if (!gl_FrontFacing) {
        surface = backColour;
        towards = -towards;
    }
#endif
    float light = 0.7 + 0.38 * max(dot(towards, toLight), 0.0);
    float gloss = 0.14 * pow(max(dot(towards, toHalfway), 0.0), 24.0);
    OUT0 = vec4(surface * light + gloss, 1.0);
}
)";

constexpr char discVertexSource[] = R"(
IN vec3 position;
IN vec3 colour;
IN float size;
OUT vec3 vertexColour;

void main() {
    vertexColour = colour;
    gl_PointSize = size;
    gl_Position = vec4(position.xy, -position.z, 1.0);
}
)";

constexpr char discFragmentSource[] = R"(
IN vec3 vertexColour;
DECL_OUT0;

void main() {
    if (distance(gl_PointCoord, vec2(0.5)) > 0.5)
        discard;
    OUT0 = vec4(vertexColour, 1.0);
}
)";

using GetParameter = void(GLAD_API_PTR*)(GLuint, GLenum, GLint*);
using GetLog = void(GLAD_API_PTR*)(GLuint, GLsizei, GLsizei*, GLchar*);

/// What GL says about a shader or a program.
std::string infoLog(unsigned int name, GetParameter getParameter, GetLog getLog) {
    GLint size = 0;
    getParameter(name, GL_INFO_LOG_LENGTH, &size);
    if (size <= 0)
        return "the driver does not say why.";
    std::vector<char> log(static_cast<std::size_t>(size) + 1);
    getLog(name, size, nullptr, log.data());
    return log.data();
}

void requireCompiled(const vellis::Shader& shader, const char* stage) {
    if (shader.hasCompilationError()) {
        throw std::runtime_error("the " + std::string(stage) + " shader does not compile:\n" +
                                 infoLog(shader.id(), glGetShaderiv, glGetShaderInfoLog));
    }
}

/// \throws std::runtime_error with the driver's words where a shader or the program is wrong.
std::shared_ptr<vellis::Program> makeProgram(const std::string& vertexSource,
                                             const std::string& fragmentSource) {
    constexpr auto version = vellis::Shader::Version::V210;
    const auto vertexShader = vellis::VertexShader::make(vertexSource, version);
    requireCompiled(*vertexShader, "vertex");
    const auto fragmentShader = vellis::FragmentShader::make(fragmentSource, version);
    requireCompiled(*fragmentShader, "fragment");
    auto program = vellis::Program::make(vertexShader, fragmentShader);
    if (program->hasLinkError()) {
        throw std::runtime_error("the program does not link:\n" +
                                 infoLog(program->id(), glGetProgramiv, glGetProgramInfoLog));
    }
    return program;
}

} // namespace

std::shared_ptr<vellis::Program> makeColourProgram() {
    return makeProgram(colourVertexSource, colourFragmentSource);
}

std::shared_ptr<vellis::Program> makeLitProgram() {
    return makeProgram(litVertexSource, litFragmentSource);
}

std::shared_ptr<vellis::Program> makeTwoSidedProgram() {
    return makeProgram(litVertexSource, "#define TWO_SIDED\n" + std::string(litFragmentSource));
}

std::shared_ptr<vellis::Program> makeDiscProgram() {
    return makeProgram(discVertexSource, discFragmentSource);
}

} // namespace gallery
