#include <vellis/shading/program.hpp>

#include <utility>

#include <vellis/gl.hpp>

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
    : id_(glCreateProgram()),
      vertexShader_(vertexShader),
      fragmentShader_(fragmentShader) {
    link();
}

Program::Program(const std::shared_ptr<VertexShader>& vertexShader,
                 const std::shared_ptr<FragmentShader>& fragmentShader,
                 std::initializer_list<unsigned int> outputs)
    : id_(glCreateProgram()),
      vertexShader_(vertexShader),
      fragmentShader_(fragmentShader) {
    link(outputs);
}

Program::~Program() {
    dispose();
}

void Program::dispose() {
    if (id_ == 0)
        return;
    glDeleteProgram(id_);
    id_ = 0;
}

bool Program::hasLinkError() const {
    int status = GL_FALSE;
    glGetProgramiv(id_, GL_LINK_STATUS, &status);
    return status != GL_TRUE;
}

void Program::bind() const {
    glUseProgram(id_);
    bound_ = true;
}

void Program::bind(const std::shared_ptr<VertexAttributesBinding>& binding) const {
    bind();
    attributesBinding_ = binding;
    if (attributesBinding_ != nullptr)
        attributesBinding_->bind();
}

void Program::bind(const Drawable& drawable) const {
    bind(drawable.getAttributesBinding());
}

void Program::unbind() const {
    if (attributesBinding_ != nullptr) {
        VertexAttributesBinding::unbind();
        attributesBinding_.reset();
    }
    glUseProgram(0);
    bound_ = false;
}

void Program::draw(const Drawable& drawable, unsigned int first, unsigned int count) const {
    bind(drawable);
    drawable.draw(first, count);
    unbind();
}

void Program::beginAttributesBinding() const {
    attributesBinding_ = VertexAttributesBinding::make();
    attributesBinding_->bind();
}

std::shared_ptr<VertexAttributesBinding> Program::finishAttributesBinding() const {
    VertexAttributesBinding::unbind();
    return std::move(attributesBinding_);
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
    gl_link();
    bind();
    unbind();
}

void Program::link(std::initializer_list<unsigned int> outputs) {
    link();
    clearOutputs();
    addOutputs(outputs);
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
