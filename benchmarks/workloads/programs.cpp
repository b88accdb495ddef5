#include <vellis/gl.hpp>
#include <vellis/shading.hpp>

#include "workloads/groups.hpp"

namespace vellis::bench {
namespace {

// --- Compile and link ---

/// The calls for an object of one source.
unsigned int compileRaw(unsigned int type, const char* source) {
    const unsigned int shader = glCreateShader(type);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    return shader;
}

/// What a program's tables hold of a variable, in plain memory.
struct RawVariable {
    char name[32];
    int location;
    unsigned int type;
};

using GetActive = void(GLAD_API_PTR*)(GLuint, GLuint, GLsizei, GLsizei*, GLint*, GLenum*, GLchar*);
using GetLocation = GLint(GLAD_API_PTR*)(GLuint, const GLchar*);

/// Reads the active variables of a kind. A careful caller asks how long names are, and so does this
/// one, though the room is there.
void readVariables(unsigned int program, unsigned int countName, unsigned int lengthName,
                   GetActive getActive, GetLocation getLocation,
                   std::vector<RawVariable>& variables) {
    int count = 0;
    int length = 0;
    glGetProgramiv(program, countName, &count);
    glGetProgramiv(program, lengthName, &length);
    variables.resize(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        RawVariable& variable = variables[static_cast<std::size_t>(i)];
        int size = 0;
        getActive(program, static_cast<unsigned int>(i), length, nullptr, &size, &variable.type,
                  variable.name);
        variable.location = getLocation(program, variable.name);
    }
}

class RawLink {
public:
    explicit RawLink(unsigned int size) : vertexSource_(manyUniformsSource(size)) {}

    void operator()() {
        const unsigned int fragment = compileRaw(GL_FRAGMENT_SHADER, flatFragmentSource);
        const unsigned int vertex = compileRaw(GL_VERTEX_SHADER, vertexSource_.c_str());
        const unsigned int program = glCreateProgram();
        glAttachShader(program, vertex);
        glAttachShader(program, fragment);
        glLinkProgram(program);
        glUseProgram(program);
        readVariables(program, GL_ACTIVE_UNIFORMS, GL_ACTIVE_UNIFORM_MAX_LENGTH, glGetActiveUniform,
                      glGetUniformLocation, uniforms_);
        readVariables(program, GL_ACTIVE_ATTRIBUTES, GL_ACTIVE_ATTRIBUTE_MAX_LENGTH,
                      glGetActiveAttrib, glGetAttribLocation, attributes_);
        glUseProgram(0);
        glDeleteProgram(program);
        glDeleteShader(fragment);
        glDeleteShader(vertex);
    }

private:
    std::string vertexSource_;
    std::vector<RawVariable> uniforms_;
    std::vector<RawVariable> attributes_;
};

class Link {
public:
    explicit Link(unsigned int size) : vertexSource_(manyUniformsSource(size)) {}

    void operator()() const { Program::make(vertexSource_.c_str(), flatFragmentSource); }

private:
    std::string vertexSource_;
};

// --- One uniform of many ---

/// A program with that many uniforms, and the one in the middle.
struct ManyUniforms {
    explicit ManyUniforms(unsigned int size)
        : program(Program::make(manyUniformsSource(size).c_str(), flatFragmentSource)),
          name(manyUniforms(size)[size / 2].name) {
        program->bind();
    }
    ~ManyUniforms() { program->unbind(); }
    ManyUniforms(const ManyUniforms&) = delete;
    ManyUniforms& operator=(const ManyUniforms&) = delete;

    std::shared_ptr<Program> program;
    std::string name;
    glm::vec4 value = glm::vec4(0.5f);
};

struct RawSet : ManyUniforms {
    using ManyUniforms::ManyUniforms;
    void operator()() const { glUniform4fv(location, 1, &value[0]); }
    int location = glGetUniformLocation(program->id(), name.c_str());
};

struct Set : ManyUniforms {
    using ManyUniforms::ManyUniforms;
    void operator()() const { program->setUniform(name.c_str(), value); }
};

} // namespace

std::vector<Workload> programWorkloads() {
    return {
        {"program/link",
         "compile two shaders, link, read the tables, destroy",
         {{"raw", makeSide<RawLink>}, {"vellis", makeSide<Link>}},
         Where::Both,
         Calls::Same,
         {1, 4, 16, 64, 256},
         manyUniforms},
        {"program/set_by_name",
         "set one uniform of many by name; raw GL keeps the location",
         {{"raw", makeSide<RawSet>}, {"vellis", makeSide<Set>}},
         Where::NullDriver,
         Calls::Same,
         {1, 4, 16, 64, 256},
         manyUniforms},
    };
}

} // namespace vellis::bench
