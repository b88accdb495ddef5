#include <vellis/shading/shader.hpp>

#include <string>
#include <string_view>

#include <vellis/gl.hpp>

#include "gl/loader.hpp"
#include "gl/names.hpp"
#include "gl/operation.hpp"
#include "shading/info_log.hpp"

namespace vellis {
namespace {

// The texts that are put in front of portable sources.

constexpr std::string_view version120 = "#version 120 \n";
constexpr std::string_view version330 = "#version 330 \n";
constexpr std::string_view version410 = "#version 410 \n";
constexpr std::string_view vertexMacros = "#if __VERSION__ >= 130 \n"
                                          "#define IN in \n"
                                          "#define OUT out \n"
                                          "#else \n"
                                          "#define IN attribute \n"
                                          "#define OUT varying \n"
                                          "#endif \n";
// DECL_OUT0; must compile as a declaration before GLSL 1.30, too.
constexpr std::string_view fragmentMacros =
    "#if __VERSION__ >= 130 \n"
    "#define IN in \n"
    "#define DECL_OUT0 layout(location = 0) out vec4 OUT0; \n"
    "#else \n"
    "#define IN varying \n"
    "#define DECL_OUT0 float null_var_to_avoid_compilation_error \n"
    "#define OUT0 gl_FragColor \n"
    "#endif \n";

std::string_view versionLine(Shader::Version version) {
    switch (version) {
    case Shader::Version::V210:
        return version120;
    case Shader::Version::V330:
        return version330;
    case Shader::Version::V410:
        break;
    }
    return version410;
}

// GLSL 1.20 is GLSL 1.50 in a core context, with its functions of textures; in as many lines, since
// compilers tell their numbers.
#define VELLIS_TEXTURES_150                                                                        \
    "#define texture1D texture \n"                                                                 \
    "#define texture2D texture \n"                                                                 \
    "#define texture3D texture \n"                                                                 \
    "#define textureCube texture \n"
constexpr std::string_view version150 = "#version 150 \n";
constexpr std::string_view vertexMacros150 = "#define IN in \n"
                                             "#define OUT out \n" VELLIS_TEXTURES_150 "\n";
constexpr std::string_view fragmentMacros150 =
    "#define IN in \n"
    "#define DECL_OUT0 out vec4 OUT0; \n" VELLIS_TEXTURES_150 "\n\n";
#undef VELLIS_TEXTURES_150

/// What is put in front of a source of that version.
std::string preamble(Shader::Version version, std::string_view macros, std::string_view macros150) {
    if (version == Shader::Version::V210 && loader::isCore())
        return std::string(version150).append(macros150);
    return std::string(versionLine(version)).append(macros);
}

} // namespace

Shader::Shader(unsigned int type)
    : id_(glCreateShader(type)),
      group_(gl::indexHere(gl::Kind::Shader)) {}

Shader::~Shader() {
    if (id_ != 0 && gl::canDelete(gl::Kind::Shader, group_, id_))
        glDeleteShader(id_);
}

unsigned int Shader::id() const {
    return gl::isHere(gl::Kind::Shader, group_) ? id_ : 0;
}

unsigned int Shader::idToUse() const {
    return gl::nameHere(gl::Kind::Shader, group_, id_);
}

bool Shader::hasCompilationError() const {
    int status = GL_FALSE;
    glGetShaderiv(idToUse(), GL_COMPILE_STATUS, &status);
    return status != GL_TRUE;
}

std::string Shader::compilationLog() const {
    return upToNul(shaderInfoLog(idToUse()));
}

void Shader::compile(const char* source) const {
    const gl::Operation operation("Shader::make");
    const char* const text = source != nullptr ? source : "";
    const unsigned int name = idToUse();
    glShaderSource(name, 1, &text, nullptr);
    glCompileShader(name);
}

void Shader::compileBehind(std::string preamble, std::string_view source) const {
    compile(preamble.append(source).c_str());
}

std::shared_ptr<VertexShader> VertexShader::make(const std::string& source) {
    return make(std::string_view(source));
}

std::shared_ptr<VertexShader> VertexShader::make(const std::string& source, Version version) {
    return make(std::string_view(source), version);
}

std::shared_ptr<VertexShader> VertexShader::make(std::string_view source) {
    return std::shared_ptr<VertexShader>(new VertexShader(source));
}

std::shared_ptr<VertexShader> VertexShader::make(std::string_view source, Version version) {
    return std::shared_ptr<VertexShader>(new VertexShader(source, version));
}

VertexShader::VertexShader(const std::string& source) : VertexShader(std::string_view(source)) {}

VertexShader::VertexShader(const std::string& source, Version version)
    : VertexShader(std::string_view(source), version) {}

VertexShader::VertexShader(std::string_view source) : Shader(GL_VERTEX_SHADER) {
    compileBehind({}, source);
}

VertexShader::VertexShader(std::string_view source, Version version) : Shader(GL_VERTEX_SHADER) {
    compileBehind(preamble(version, vertexMacros, vertexMacros150), source);
}

VertexShader::~VertexShader() = default;

std::shared_ptr<FragmentShader> FragmentShader::make(const std::string& source) {
    return make(std::string_view(source));
}

std::shared_ptr<FragmentShader> FragmentShader::make(const std::string& source, Version version) {
    return make(std::string_view(source), version);
}

std::shared_ptr<FragmentShader> FragmentShader::make(std::string_view source) {
    return std::shared_ptr<FragmentShader>(new FragmentShader(source));
}

std::shared_ptr<FragmentShader> FragmentShader::make(std::string_view source, Version version) {
    return std::shared_ptr<FragmentShader>(new FragmentShader(source, version));
}

FragmentShader::FragmentShader(const std::string& source)
    : FragmentShader(std::string_view(source)) {}

FragmentShader::FragmentShader(const std::string& source, Version version)
    : FragmentShader(std::string_view(source), version) {}

FragmentShader::FragmentShader(std::string_view source) : Shader(GL_FRAGMENT_SHADER) {
    compileBehind({}, source);
}

FragmentShader::FragmentShader(std::string_view source, Version version)
    : Shader(GL_FRAGMENT_SHADER) {
    compileBehind(preamble(version, fragmentMacros, fragmentMacros150), source);
}

FragmentShader::~FragmentShader() = default;

} // namespace vellis
