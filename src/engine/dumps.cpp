#include <vellis/engine/dumps.hpp>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include <vellis/engine/diagnostics.hpp>
#include <vellis/gl.hpp>

#include "gl/enumerator_names.hpp"
#include "gl/labels.hpp"
#include "gl/loader.hpp"
#include "gl/log.hpp"
#include "shading/info_log.hpp"
#include "state/state_values.hpp"

namespace vellis::internal {
namespace {

constexpr StateRow limits[] = {
#define VELLIS_GL_LIMIT(name, kind, count) {#name, GL_##name, ValueKind::kind, count},
#include "engine/gl_limits.inc"
#undef VELLIS_GL_LIMIT
};
static_assert(haveRoom(limits));

const char* glString(unsigned int name) {
    return printable(reinterpret_cast<const char*>(glGetString(name)));
}

/// The start of the list of extensions, which a core context gives one by one.
std::string listedExtensions() {
    constexpr std::size_t numShown = 276; // of the line
    std::string names;
    int count = 0;
    glGetIntegerv(GL_NUM_EXTENSIONS, &count);
    for (int i = 0; i < count && names.size() < numShown; ++i) {
        const GLubyte* const name = glGetStringi(GL_EXTENSIONS, static_cast<unsigned int>(i));
        names.append(name != nullptr ? reinterpret_cast<const char*>(name) : "") += ' ';
    }
    return names;
}

/// Memory for a text of a length that GL gave, all zero, so that it ends whatever GL writes.
std::string textBuffer(int length) {
    return std::string(static_cast<std::size_t>(std::max(length, 0)), '\0');
}

/// What a format without arguments prints: `%%` is a percent sign, and a conversion, which has no
/// argument, stands as it is.
std::string formatted(std::string_view format) {
    std::string text;
    for (std::size_t i = 0; i < format.size(); ++i) {
        text += format[i];
        if (format.substr(i, 2) == "%%")
            ++i;
    }
    return text;
}

/// Prints a text that may be of any length, and that nobody wrote as a format, as one.
void logText(const char* title, std::string_view text) {
    printLine(title, formatted(text));
}

/// ` of 3 'lamp'` for what has a label, behind the title of its dump.
std::string whose(gl::Kind kind, unsigned int name) {
    return gl::labelOf(kind, name).empty() ? std::string() : " of " + gl::nameText(kind, name);
}

void printInfoLog(const char* title, const std::string& object, const std::string& infoLog) {
    if (!infoLog.empty()) // up to the first zero
        logText((title + object).c_str(), infoLog.c_str());
}

/// Prints the lines behind their title.
void printSource(const std::string& object, const char* source) {
    writeToFile({logTitle, ": Shader Source Code", object});
    std::string_view rest = printable(source);
    for (int number = 1; !rest.empty(); ++number) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        char title[16];
        std::snprintf(title, sizeof(title), "%4d", number);
        logText(title, rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

/// Where the active variables of one kind come from.
struct VariableQuery {
    unsigned int count;
    unsigned int maxLength;
    PFNGLGETACTIVEATTRIBPROC getActive;
};

VariableQuery attributes() {
    return {GL_ACTIVE_ATTRIBUTES, GL_ACTIVE_ATTRIBUTE_MAX_LENGTH, glGetActiveAttrib};
}

VariableQuery uniforms() {
    return {GL_ACTIVE_UNIFORMS, GL_ACTIVE_UNIFORM_MAX_LENGTH, glGetActiveUniform};
}

int programInteger(unsigned int program, unsigned int pname) {
    int value = 0;
    glGetProgramiv(program, pname, &value);
    return value;
}

/// Prints `loc = …, name = …, type = …` of each variable behind \p what, as far as there is room.
void printVariables(unsigned int program, const VariableQuery& query, const char* what) {
    const std::string object = whose(gl::Kind::Program, program);
    const int count = programInteger(program, query.count);
    const int maxLength = programInteger(program, query.maxLength);
    std::string name = textBuffer(maxLength);
    for (int i = 0; i < count; ++i) {
        int size = 0;
        unsigned int type = 0;
        query.getActive(program, static_cast<unsigned int>(i), maxLength, nullptr, &size, &type,
                        name.data());
        char line[257 + 1];
        std::snprintf(line, sizeof(line), "loc = %i, name = %s, type = %s", i, name.c_str(),
                      printable(gl::variableTypes.find(type)));
        writeToFile({logTitle, ": ", what, object, ": ", line});
    }
}

/// Whether the active uniform of that name and size answers to \p asked.
bool isNamed(const std::string& uniform, int size, const char* asked) {
    if (size == 1)
        return uniform == asked;
    if (size < 1)
        return false;
    std::size_t end = uniform.find('[');
    if (end == std::string::npos)
        end = uniform.find('.');
    return end != std::string::npos && std::strncmp(asked, uniform.c_str(), end) == 0;
}

} // namespace

void print_gl_info() {
    log(logTitle, "OpenGL vendor: %s", glString(GL_VENDOR));
    log(logTitle, "OpenGL renderer: %s", glString(GL_RENDERER));
    log(logTitle, "OpenGL version: %s", glString(GL_VERSION));
    log(logTitle, "OpenGL GLSL version: %s", glString(GL_SHADING_LANGUAGE_VERSION));
}

void print_gl_extensions() {
    log(logTitle, "OpenGL extensions: %s",
        loader::isCore() ? listedExtensions().c_str() : glString(GL_EXTENSIONS));
}

void print_gl_caps() {
    for (const StateRow& limit : limits)
        printState(limit);
}

void print_shader(const char* source) {
    printSource({}, source);
}

void print_shader(unsigned int shader) {
    int length = 0;
    glGetShaderiv(shader, GL_SHADER_SOURCE_LENGTH, &length);
    std::string source = textBuffer(length) + std::string(16, '\0');
    glGetShaderSource(shader, static_cast<int>(source.size()), nullptr, source.data());
    printSource(whose(gl::Kind::Shader, shader), source.c_str());
}

void print_shader(unsigned int program, int shaderType) {
    constexpr int maxShaders = 32;
    unsigned int shaders[maxShaders] = {};
    int count = 0;
    glGetAttachedShaders(program, maxShaders, &count, shaders);
    for (int i = 0; i < std::min(count, maxShaders); ++i) {
        int type = 0;
        glGetShaderiv(shaders[i], GL_SHADER_TYPE, &type);
        if (type == shaderType)
            print_shader(shaders[i]);
    }
}

void print_vertex_shader(unsigned int program) {
    print_shader(program, GL_VERTEX_SHADER);
}

void print_fragment_shader(unsigned int program) {
    print_shader(program, GL_FRAGMENT_SHADER);
}

void print_shader_compilation_info(unsigned int shader) {
    printInfoLog("Shader Compilation", whose(gl::Kind::Shader, shader), shaderInfoLog(shader));
}

void print_program_link_info(unsigned int program) {
    printInfoLog("Program Linkage", whose(gl::Kind::Program, program), programInfoLog(program));
}

void print_program_attributes(unsigned int program) {
    printVariables(program, attributes(), "Attrib");
}

void print_program_uniforms(unsigned int program) {
    printVariables(program, uniforms(), "Uniform");
}

unsigned int attrib_type(unsigned int program, const char* name) {
    if (name == nullptr)
        return 0;
    int size = 0;
    unsigned int type = 0;
    const int location = glGetAttribLocation(program, name);
    glGetActiveAttrib(program, static_cast<unsigned int>(location), 0, nullptr, &size, &type,
                      nullptr);
    return type;
}

unsigned int uniform_type(unsigned int program, const char* name) {
    if (name == nullptr)
        return 0;
    const int maxLength = programInteger(program, GL_ACTIVE_UNIFORM_MAX_LENGTH);
    const int count = programInteger(program, GL_ACTIVE_UNIFORMS);
    std::string uniform = textBuffer(maxLength);
    for (int i = 0; i < count; ++i) {
        int length = 0;
        int size = 0;
        unsigned int type = 0;
        glGetActiveUniform(program, static_cast<unsigned int>(i), maxLength, &length, &size, &type,
                           uniform.data());
        if (isNamed(uniform.c_str(), size, name))
            return type;
    }
    return 0;
}

} // namespace vellis::internal
