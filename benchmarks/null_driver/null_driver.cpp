#include "null_driver/null_driver.hpp"

#include <cstring>
#include <utility>

#include <vellis/gl.hpp>

namespace vellis::bench {
namespace {

Variables activeUniforms;
Variables activeAttributes;
unsigned int lastName = 0;
alignas(16) unsigned char mappedStore[64 * 1024];

/// What an entry point does for which there is nothing to answer.
template <class Result, class... Parameters>
Result GLAD_API_PTR doNothing(Parameters...) {
    return Result();
}

template <class Result, class... Parameters>
void installNothing(Result(GLAD_API_PTR*& entryPoint)(Parameters...)) {
    entryPoint = doNothing<Result, Parameters...>;
}

void GLAD_API_PTR generateNames(GLsizei count, GLuint* names) {
    for (GLsizei i = 0; i < count; ++i)
        names[i] = ++lastName;
}

GLuint GLAD_API_PTR createShader(GLenum) {
    return ++lastName;
}

GLuint GLAD_API_PTR createProgram() {
    return ++lastName;
}

template <class T>
void GLAD_API_PTR getZero(GLenum, T* value) {
    *value = T();
}

void GLAD_API_PTR getShader(GLuint, GLenum pname, GLint* value) {
    *value = pname == GL_COMPILE_STATUS ? GL_TRUE : 0;
}

GLint count(const Variables& variables) {
    return static_cast<GLint>(variables.size());
}

/// Room for the names of all variables here.
constexpr GLint maxNameLength = 32;

void GLAD_API_PTR getProgram(GLuint, GLenum pname, GLint* value) {
    switch (pname) {
    case GL_LINK_STATUS:
        *value = GL_TRUE;
        break;
    case GL_ACTIVE_UNIFORMS:
        *value = count(activeUniforms);
        break;
    case GL_ACTIVE_ATTRIBUTES:
        *value = count(activeAttributes);
        break;
    case GL_ACTIVE_UNIFORM_MAX_LENGTH:
    case GL_ACTIVE_ATTRIBUTE_MAX_LENGTH:
        *value = maxNameLength;
        break;
    default:
        *value = 0;
    }
}

template <Variables& variables>
void GLAD_API_PTR getActive(GLuint, GLuint index, GLsizei, GLsizei*, GLint* size, GLenum* type,
                            GLchar* name) {
    const Variable& variable = variables[index];
    *size = 1;
    *type = variable.type;
    std::memcpy(name, variable.name.c_str(), variable.name.size() + 1);
}

void* GLAD_API_PTR mapBufferRange(GLenum, GLintptr, GLsizeiptr, GLbitfield) {
    return mappedStore;
}

GLboolean GLAD_API_PTR unmapBuffer(GLenum) {
    return GL_TRUE;
}

GLenum GLAD_API_PTR checkFramebufferStatus(GLenum) {
    return GL_FRAMEBUFFER_COMPLETE;
}

} // namespace

void NullDriver::install() {
#define VELLIS_ENTRY_POINT(name, member) installNothing(glad_##name);
#define VELLIS_LOADER_FLAG(name, member) name = 1;
#include "entry_points.inc"
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG
    glad_glGenBuffers = generateNames;
    glad_glGenFramebuffers = generateNames;
    glad_glGenRenderbuffers = generateNames;
    glad_glGenTextures = generateNames;
    glad_glGenVertexArrays = generateNames;
    glad_glCreateShader = createShader;
    glad_glCreateProgram = createProgram;
    glad_glGetBooleanv = getZero<GLboolean>;
    glad_glGetIntegerv = getZero<GLint>;
    glad_glGetFloatv = getZero<GLfloat>;
    glad_glGetDoublev = getZero<GLdouble>;
    glad_glGetShaderiv = getShader;
    glad_glGetProgramiv = getProgram;
    glad_glGetActiveUniform = getActive<activeUniforms>;
    glad_glGetActiveAttrib = getActive<activeAttributes>;
    glad_glMapBufferRange = mapBufferRange;
    glad_glUnmapBuffer = unmapBuffer;
    glad_glCheckFramebufferStatus = checkFramebufferStatus;
}

void NullDriver::setVariables(Variables uniforms, Variables attributes) {
    activeUniforms = std::move(uniforms);
    activeAttributes = std::move(attributes);
}

void* NullDriver::lookUp(const char* wanted) {
    const std::pair<const char*, void*> rows[] = {
#define VELLIS_ENTRY_POINT(name, member) {#name, reinterpret_cast<void*>(glad_##name)},
#define VELLIS_LOADER_FLAG(name, member)
#include "entry_points.inc"
#undef VELLIS_ENTRY_POINT
#undef VELLIS_LOADER_FLAG
    };
    for (const auto& [name, entryPoint] : rows) {
        if (std::strcmp(name, wanted) == 0)
            return entryPoint;
    }
    return nullptr;
}

} // namespace vellis::bench
