/// How programs come to be, and end: their linking, and the tables of what is active in them.

#include <vellis/shading/program.hpp>

#include <algorithm>
#include <string>
#include <utility>

#include <vellis/detail/use.hpp>
#include <vellis/gl.hpp>

#include "gl/names.hpp"
#include "gl/operation.hpp"
#include "shading/info_log.hpp"
#include "shading/program_variables.hpp"
#include "shading/uniform_factory.hpp"

namespace vellis {
namespace {

/// How many active variables of a kind a program has, and room for the longest of their names.
struct ActiveVariables {
    ActiveVariables(unsigned int program, unsigned int countName, unsigned int lengthName) {
        glGetProgramiv(program, countName, &count);
        int length = 0;
        glGetProgramiv(program, lengthName, &length);
        // Also where GL tells nothing there is room for the final zero.
        name.resize(static_cast<std::size_t>(length > 0 ? length : 1));
    }

    std::size_t size() const { return static_cast<std::size_t>(std::max(count, 0)); }

    int count = 0;
    std::vector<char> name;
};

using GetActive = void(GLAD_API_PTR*)(GLuint, GLuint, GLsizei, GLsizei*, GLint*, GLenum*, GLchar*);

/// The active variable of that index: its name is left in \p variables.
struct ActiveVariable {
    ActiveVariable(GetActive get, unsigned int program, int index, ActiveVariables& variables) {
        variables.name[0] = '\0';
        get(program, static_cast<unsigned int>(index), static_cast<int>(variables.name.size()),
            nullptr, &size, &type, variables.name.data());
    }

    int size = 0;
    unsigned int type = 0;
};

} // namespace

std::shared_ptr<Program> Program::make() {
    return std::shared_ptr<Program>(new Program);
}

std::shared_ptr<Program> Program::make(const std::shared_ptr<VertexShader>& vertexShader,
                                       const std::shared_ptr<FragmentShader>& fragmentShader) {
    return std::shared_ptr<Program>(new Program(vertexShader, fragmentShader));
}

std::shared_ptr<Program> Program::make(const std::shared_ptr<VertexShader>& vertexShader,
                                       const std::shared_ptr<FragmentShader>& fragmentShader,
                                       std::initializer_list<unsigned int> outputs) {
    return std::shared_ptr<Program>(new Program(vertexShader, fragmentShader, outputs));
}

std::shared_ptr<Program> Program::make(const char* vertexSource, const char* fragmentSource) {
    const auto fragmentShader = FragmentShader::make(fragmentSource);
    return make(VertexShader::make(vertexSource), fragmentShader);
}

std::shared_ptr<Program> Program::make(const char* vertexSource, const char* fragmentSource,
                                       std::initializer_list<unsigned int> outputs) {
    const auto fragmentShader = FragmentShader::make(fragmentSource);
    return make(VertexShader::make(vertexSource), fragmentShader, outputs);
}

Program::Program() : Program(glCreateProgram()) {}

Program::Program(unsigned int id) : id_(id), usage_(gl::indexHere(gl::Kind::Program)) {}

Program::Program(const std::shared_ptr<VertexShader>& vertexShader,
                 const std::shared_ptr<FragmentShader>& fragmentShader)
    : Program() { // so that an exception from here on deletes the GL program
    vertexShader_ = vertexShader;
    fragmentShader_ = fragmentShader;
    link();
}

Program::Program(const std::shared_ptr<VertexShader>& vertexShader,
                 const std::shared_ptr<FragmentShader>& fragmentShader,
                 std::initializer_list<unsigned int> outputs)
    : Program() {
    vertexShader_ = vertexShader;
    fragmentShader_ = fragmentShader;
    link(outputs);
}

Program::~Program() {
    dispose();
    usage_.release(); // before the shaders
}

void Program::dispose() {
    if (id_ == 0)
        return;
    variables_.reset();
    if (gl::canDelete(gl::Kind::Program, usage_.group(), id_))
        glDeleteProgram(id_);
    id_ = 0;
}

bool Program::hasLinkError() const {
    int status = GL_FALSE;
    glGetProgramiv(gl::nameHere(gl::Kind::Program, usage_.group(), id_), GL_LINK_STATUS, &status);
    return status != GL_TRUE;
}

std::string Program::linkLog() const {
    return upToNul(programInfoLog(gl::nameHere(gl::Kind::Program, usage_.group(), id_)));
}

void Program::link() {
    if (!exists())
        return;
    const gl::Operation operation("Program::link");
    auto variables = std::make_shared<Variables>();
    gl_link();
    variables_ = std::move(variables);
    const detail::Use<Program> use(*this);
    try {
        initUniforms();
        initAttributes();
    } catch (...) {
        variables_.reset(); // half a table is none
        throw;
    }
}

void Program::link(std::initializer_list<unsigned int> outputs) {
    outputs_.reserve(outputs.size());
    link();
    clearOutputs();
    addOutputs(outputs);
}

void Program::initUniforms() {
    ActiveVariables variables(id_, GL_ACTIVE_UNIFORMS, GL_ACTIVE_UNIFORM_MAX_LENGTH);
    variables_->uniforms.reserve(variables.size());
    variables_->hasActiveUniforms = variables.size() != 0;
    unsigned int nextUnit = 0;
    for (int i = 0; i < variables.count; ++i) {
        const ActiveVariable uniform(glGetActiveUniform, id_, i, variables);
        addUniform(variables.name.data(), uniform.size, uniform.type, nextUnit);
    }
}

void Program::addUniform(const char* reportedName, int size, unsigned int type,
                         unsigned int& nextUnit) {
    std::string name = reportedName;
    int location = glGetUniformLocation(id_, name.c_str());
    std::unique_ptr<UniformVariable> handle;
    if (size < 2) {
        handle = UniformFactory::makeSingle(type, location, nextUnit);
    } else {
        name.resize(std::min(name.find('['), name.size()));
        if (location == -1)
            location = glGetUniformLocation(id_, name.c_str());
        if (location == -1)
            location = glGetUniformLocation(id_, (name + "[0]").c_str());
        handle = UniformFactory::makeArray(type, location, static_cast<std::size_t>(size));
    }
    if (handle != nullptr)
        variables_->uniforms.add(name, std::move(handle));
}

void Program::initAttributes() {
    ActiveVariables variables(id_, GL_ACTIVE_ATTRIBUTES, GL_ACTIVE_ATTRIBUTE_MAX_LENGTH);
    variables_->attributes.reserve(variables.size());
    for (int i = 0; i < variables.count; ++i) {
        const ActiveVariable attribute(glGetActiveAttrib, id_, i, variables);
        const char* const name = variables.name.data();
        const int location = glGetAttribLocation(id_, name);
        variables_->attributes.add(name, std::unique_ptr<Attrib>(new Attrib(location)));
    }
}

void Program::gl_link() {
    if (vertexShader_ != nullptr)
        glAttachShader(id_, vertexShader_->idToUse());
    if (fragmentShader_ != nullptr)
        glAttachShader(id_, fragmentShader_->idToUse());
    glLinkProgram(id_);
}

void Program::addOutputs(unsigned int output) {
    outputs_.push_back(output);
}

void Program::addOutputs(std::initializer_list<unsigned int> outputs) {
    for (const unsigned int output : outputs)
        addOutputs(output);
}

void Program::clearOutputs() {
    outputs_.clear();
}

} // namespace vellis
