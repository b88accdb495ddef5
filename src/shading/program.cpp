#include <vellis/shading/program.hpp>

#include <algorithm>
#include <utility>

#include <vellis/gl.hpp>
#include <vellis/texture/texture.hpp>

#include "drawing/vertex_attributes_binding_inlined.hpp"
#include "shading/program_use.hpp"
#include "shading/program_variables.hpp"
#include "shading/uniform_factory.hpp"

namespace vellis {
namespace {

/// Stands for a GL program that somebody else owns.
class ProgramProxy : public Program {
public:
    // The name that the base class made is left behind: GL may give it a meaning elsewhere.
    ProgramProxy() { id_ = 0; }
    ~ProgramProxy() override { id_ = 0; }
    ProgramProxy(const ProgramProxy&) = delete;
    ProgramProxy& operator=(const ProgramProxy&) = delete;

    void setId(unsigned int id) { id_ = id; }
};

const char* textOrEmpty(const char* text) {
    return text != nullptr ? text : "";
}

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
    const auto fragmentShader = FragmentShader::make(textOrEmpty(fragmentSource));
    return make(VertexShader::make(textOrEmpty(vertexSource)), fragmentShader);
}

std::shared_ptr<Program> Program::make(const char* vertexSource, const char* fragmentSource,
                                       std::initializer_list<unsigned int> outputs) {
    const auto fragmentShader = FragmentShader::make(textOrEmpty(fragmentSource));
    return make(VertexShader::make(textOrEmpty(vertexSource)), fragmentShader, outputs);
}

Program::Program() : id_(glCreateProgram()) {}

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
}

void Program::dispose() {
    if (id_ == 0)
        return;
    variables_.reset();
    glDeleteProgram(id_);
    id_ = 0;
}

bool Program::hasLinkError() const {
    int status = GL_FALSE;
    glGetProgramiv(id_, GL_LINK_STATUS, &status);
    return status != GL_TRUE;
}

void Program::bind() const {
    bound_ = true;
    glUseProgram(id_);
}

void Program::bind(const std::shared_ptr<VertexAttributesBinding>& binding) const {
    bind();
    std::shared_ptr<VertexAttributesBinding>(binding).swap(attributesBinding_);
    if (attributesBinding_ != nullptr)
        VertexAttributesBinding::Inlined::bind(*attributesBinding_);
}

void Program::bind(const Drawable& drawable) const {
    bind(drawable.getAttributesBinding());
}

void Program::unbind() const {
    bound_ = false;
    if (attributesBinding_ != nullptr) {
        const std::shared_ptr<VertexAttributesBinding> unbound = std::move(attributesBinding_);
        VertexAttributesBinding::Inlined::unbind();
    }
    glUseProgram(0);
}

void Program::draw(const Drawable& drawable, unsigned int first, unsigned int count) const {
    bind(drawable);
    drawable.draw(first, count);
    unbind();
}

void Program::beginAttributesBinding() const {
    attributesBinding_ = VertexAttributesBinding::make();
    VertexAttributesBinding::Inlined::bind(*attributesBinding_);
}

std::shared_ptr<VertexAttributesBinding> Program::finishAttributesBinding() const {
    std::shared_ptr<VertexAttributesBinding> finished = std::move(attributesBinding_);
    VertexAttributesBinding::Inlined::unbind();
    return finished;
}

const Program& Program::current() {
    static ProgramProxy proxy;
    int id = 0;
    glGetIntegerv(GL_CURRENT_PROGRAM, &id);
    proxy.setId(static_cast<unsigned int>(id));
    return proxy;
}

const Program& Program::null() {
    static const ProgramProxy proxy;
    return proxy;
}

void Program::link() {
    auto variables = std::make_shared<Variables>();
    gl_link();
    variables_ = std::move(variables);
    const ProgramUse use(*this);
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

UniformVariable* Program::findUniform(const char* name, std::size_t length) const {
    return variables_ != nullptr ? variables_->uniforms.find(name, length) : nullptr;
}

const Attrib* Program::findAttrib(const char* name, std::size_t length) const {
    return variables_ != nullptr ? variables_->attributes.find(name, length) : nullptr;
}

const Attrib& Program::getAttrib(const char* name) const {
    static const Attrib none(-1);
    const Attrib* const attribute = findAttrib(name);
    return attribute != nullptr ? *attribute : none;
}

void Program::setUniform(const char* name, const Texture& texture) {
    if (Uniform<Texture>* const uniform = findUniform<Texture>(name)) {
        uniform->texture = &texture;
        setUniform(*uniform);
    }
}

void Program::setUniform(const Uniform<Texture>& uniform) {
    const Uniform<Texture>* const target =
        uniform.loc < 0 ? findUniform<Texture>(uniform.name) : &uniform;
    if (target != nullptr && uniform.texture != nullptr)
        setUniform(target->loc, static_cast<int>(target->unit), *uniform.texture);
}

void Program::setUniform(int location, int unit, const Texture& texture) {
    glUniform1i(location, unit);
    glActiveTexture(GL_TEXTURE0 + static_cast<unsigned int>(unit));
    texture.bind();
}

void Program::initUniforms() {
    ActiveVariables variables(id_, GL_ACTIVE_UNIFORMS, GL_ACTIVE_UNIFORM_MAX_LENGTH);
    variables_->uniforms.reserve(variables.size());
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
    std::shared_ptr<UniformVariable> handle;
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
        variables_->uniforms.add(std::move(name), std::move(handle));
}

void Program::initAttributes() {
    ActiveVariables variables(id_, GL_ACTIVE_ATTRIBUTES, GL_ACTIVE_ATTRIBUTE_MAX_LENGTH);
    variables_->attributes.reserve(variables.size());
    for (int i = 0; i < variables.count; ++i) {
        const ActiveVariable attribute(glGetActiveAttrib, id_, i, variables);
        const char* const name = variables.name.data();
        const int location = glGetAttribLocation(id_, name);
        variables_->attributes.add(name, std::shared_ptr<Attrib>(new Attrib(location)));
    }
}

void Program::gl_link() {
    if (vertexShader_ != nullptr)
        glAttachShader(id_, vertexShader_->id());
    if (fragmentShader_ != nullptr)
        glAttachShader(id_, fragmentShader_->id());
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
