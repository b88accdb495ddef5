/// The answers of the model: one function per entry point that has any.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>

#include "support/gl_script.hpp"

namespace vellis::test {
namespace {

/// A number of the script in the type of a query.
template <class T>
T convert(double value) {
    // Through 64 bits, so that 0xFFFFFFFF becomes the integer of these bits.
    return static_cast<T>(std::llround(value));
}
template <>
GLfloat convert(double value) {
    return static_cast<GLfloat>(value);
}
template <>
GLdouble convert(double value) {
    return value;
}
template <>
GLboolean convert(double value) {
    return value != 0 ? GL_TRUE : GL_FALSE;
}

template <class T>
void store(T* out, T value) {
    if (out != nullptr)
        *out = value;
}

/// Writes as much of a text as fits, with an end, the way GL returns names, logs and sources.
void storeText(std::string_view text, GLsizei bufferSize, GLsizei* length, GLchar* out) {
    if (bufferSize <= 0 || out == nullptr) {
        store(length, GLsizei(0));
        return;
    }
    const std::size_t count = std::min(text.size(), static_cast<std::size_t>(bufferSize) - 1);
    std::copy_n(text.begin(), count, out);
    out[count] = '\0';
    store(length, static_cast<GLsizei>(count));
}

/// The room that a text needs with its end; 0 for none, as GL counts logs and sources.
GLint textLength(std::string_view text) {
    return text.empty() ? 0 : static_cast<GLint>(text.size() + 1);
}

GLint longestName(const std::vector<ActiveVariable>& variables) {
    GLint longest = 0;
    for (const ActiveVariable& variable : variables)
        longest = std::max(longest, textLength(variable.name));
    return longest;
}

GLint count(const std::vector<ActiveVariable>& variables) {
    return static_cast<GLint>(variables.size());
}

/// A name of a variable, taken apart: `w[2]` is the element 2 of `w`, and so is `w` the element 0.
struct ElementName {
    std::string_view base;
    GLint element = 0;

    explicit ElementName(std::string_view name) : base(name) {
        const std::size_t bracket = name.rfind('[');
        if (bracket == std::string_view::npos || name.back() != ']')
            return;
        base = name.substr(0, bracket);
        for (const char digit : name.substr(bracket + 1, name.size() - bracket - 2))
            element = element * 10 + (digit - '0');
    }
};

/// The location of a variable by name; -1 for one that is not active.
GLint location(const std::vector<ActiveVariable>& variables, const GLchar* name) {
    if (name == nullptr)
        return -1;
    const ElementName wanted(name);
    for (std::size_t i = 0; i < variables.size(); ++i) {
        const ActiveVariable& variable = variables[i];
        const bool isElement =
            ElementName(variable.name).base == wanted.base && wanted.element < variable.size;
        if (variable.name != name && !isElement)
            continue;
        const GLint first = variable.location == ActiveVariable::byPosition ? static_cast<GLint>(i)
                                                                            : variable.location;
        return first < 0 ? first : first + wanted.element;
    }
    return -1;
}

} // namespace

template <class Result, class... Parameters, class Function>
void GlScript::answerShared(AnswerTable& answers, Result(GLAD_API_PTR*& entryPoint)(Parameters...),
                            Function function) {
    answers.set(entryPoint, [this, function](Parameters... parameters) {
        const SharedLock lock = lockShared();
        return static_cast<Result>(function(parameters...));
    });
}

GLuint GlScript::make(ObjectKind kind, EntryPoint entryPoint) {
    if (failing_[index(entryPoint)])
        return 0;
    const SharedLock lock = isShareable(kind) ? lockShared() : SharedLock();
    return names(kind).make(kind, isRecording());
}

void GlScript::removeObject(ObjectKind kind, GLuint name) {
    bindings_.unbind(kind, name);
    const SharedLock lock = isShareable(kind) ? lockShared() : SharedLock();
    if (isRecording())
        names(kind).remove(kind, name);
    if (kind == ObjectKind::Buffer)
        shared_->stores.remove(name);
    if (kind == ObjectKind::Program)
        shared_->attached.erase(name);
}

template <class Gen, class Delete>
void GlScript::answerGenAndDelete(AnswerTable& answers, Gen& gen, Delete& deleteAll,
                                  ObjectKind kind) {
    const EntryPoint entryPoint = entryPointAt(&gen);
    answers.set(gen, [this, kind, entryPoint](GLsizei n, GLuint* names) {
        for (GLsizei i = 0; i < n; ++i)
            names[i] = make(kind, entryPoint);
    });
    answers.set(deleteAll, [this, kind](GLsizei n, const GLuint* names) {
        for (GLsizei i = 0; i < n; ++i)
            removeObject(kind, names[i]);
    });
}

void GlScript::answerGeneratedNames(AnswerTable& answers) {
    answerGenAndDelete(answers, glad_glGenBuffers, glad_glDeleteBuffers, ObjectKind::Buffer);
    answerGenAndDelete(answers, glad_glGenTextures, glad_glDeleteTextures, ObjectKind::Texture);
    answerGenAndDelete(answers, glad_glGenVertexArrays, glad_glDeleteVertexArrays,
                       ObjectKind::VertexArray);
    answerGenAndDelete(answers, glad_glGenFramebuffers, glad_glDeleteFramebuffers,
                       ObjectKind::Framebuffer);
    answerGenAndDelete(answers, glad_glGenRenderbuffers, glad_glDeleteRenderbuffers,
                       ObjectKind::Renderbuffer);
    answerGenAndDelete(answers, glad_glGenQueries, glad_glDeleteQueries, ObjectKind::Query);
}

void GlScript::answerExistence(AnswerTable& answers) {
    const auto isOfKind = [this](ObjectKind kind) {
        return [this, kind](GLuint object) { return object != 0 && isLive(kind, object); };
    };
    answers.set(glad_glIsBuffer, isOfKind(ObjectKind::Buffer));
    answers.set(glad_glIsTexture, isOfKind(ObjectKind::Texture));
    answers.set(glad_glIsVertexArray, isOfKind(ObjectKind::VertexArray));
    answers.set(glad_glIsFramebuffer, isOfKind(ObjectKind::Framebuffer));
    answers.set(glad_glIsRenderbuffer, isOfKind(ObjectKind::Renderbuffer));
    answers.set(glad_glIsQuery, isOfKind(ObjectKind::Query));
    answers.set(glad_glIsShader, isOfKind(ObjectKind::Shader));
    answers.set(glad_glIsProgram, isOfKind(ObjectKind::Program));
}

void GlScript::answerBindings(AnswerTable& answers) {
    const auto atTarget = [this](ObjectKind kind) {
        return [this, kind](GLenum target, GLuint name) { bindings_.bind(kind, target, name); };
    };
    answers.set(glad_glBindBuffer, atTarget(ObjectKind::Buffer));
    answers.set(glad_glBindTexture, atTarget(ObjectKind::Texture));
    answers.set(glad_glBindFramebuffer, atTarget(ObjectKind::Framebuffer));
    answers.set(glad_glBindRenderbuffer, atTarget(ObjectKind::Renderbuffer));
    answers.set(glad_glBindVertexArray,
                [this](GLuint name) { bindings_.bind(ObjectKind::VertexArray, 0, name); });
    answers.set(glad_glUseProgram,
                [this](GLuint name) { bindings_.bind(ObjectKind::Program, 0, name); });
    answers.set(glad_glActiveTexture, [this](GLenum unit) { bindings_.activateTextureUnit(unit); });
}

void* GlScript::map(GLenum target, GLintptr offset, GLsizeiptr length) {
    if (mappingFails_)
        return nullptr;
    if (!isRecording())
        return shared_->stores.scratch(length);
    const GLuint buffer = bindings_.bound(ObjectKind::Buffer, target);
    unsigned char* bytes = shared_->stores.range(buffer, offset, length);
    if (bytes != nullptr)
        shared_->stores[buffer].mapped = true;
    return bytes;
}

bool GlScript::unmap(GLenum target) {
    if (!isRecording())
        return true;
    const GLuint buffer = bindings_.bound(ObjectKind::Buffer, target);
    const bool wasMapped = isMapped(buffer);
    if (wasMapped)
        shared_->stores[buffer].mapped = false;
    return wasMapped;
}

void GlScript::allocate(GLenum target, GLsizeiptr size, const void* data, GLenum usage) {
    if (!isRecording())
        return;
    if (isOutOfMemory_) {
        queueError(GL_OUT_OF_MEMORY);
        return;
    }
    const GLuint buffer = bindings_.bound(ObjectKind::Buffer, target);
    if (buffer == 0 || size < 0)
        return;
    const auto numBytes = static_cast<std::size_t>(size);
    const auto* bytes = static_cast<const unsigned char*>(data);
    // A new vector, so that a pointer into the old store is seen to be stale by a sanitizer.
    BufferStores::Store store;
    store.bytes = bytes != nullptr ? std::vector<unsigned char>(bytes, bytes + numBytes)
                                   : std::vector<unsigned char>(numBytes, undefinedByte);
    store.usage = usage;
    shared_->stores[buffer] = std::move(store);
}

GLint GlScript::bufferValue(GLenum target, GLenum pname) const {
    const BufferStores::Store* store =
        shared_->stores.find(bindings_.bound(ObjectKind::Buffer, target));
    if (store == nullptr)
        return 0;
    switch (pname) {
    case GL_BUFFER_SIZE:
        return static_cast<GLint>(store->bytes.size());
    case GL_BUFFER_USAGE:
        return static_cast<GLint>(store->usage);
    case GL_BUFFER_MAPPED:
        return store->mapped ? 1 : 0;
    default:
        return 0;
    }
}

void GlScript::answerBuffers(AnswerTable& answers) {
    const auto range = [this](GLenum target, GLintptr offset, GLsizeiptr size) {
        return shared_->stores.range(bindings_.bound(ObjectKind::Buffer, target), offset, size);
    };
    answerShared(answers, glad_glBufferData,
                 [this](GLenum target, GLsizeiptr size, const void* data, GLenum usage) {
                     allocate(target, size, data, usage);
                 });
    answerShared(answers, glad_glBufferSubData,
                 [this, range](GLenum target, GLintptr offset, GLsizeiptr size, const void* data) {
                     if (!isRecording())
                         return;
                     if (unsigned char* bytes = range(target, offset, size))
                         std::memcpy(bytes, data, static_cast<std::size_t>(size));
                 });
    answerShared(answers, glad_glGetBufferSubData,
                 [range](GLenum target, GLintptr offset, GLsizeiptr size, void* data) {
                     if (const unsigned char* bytes = range(target, offset, size))
                         std::memcpy(data, bytes, static_cast<std::size_t>(size));
                 });
    answerShared(answers, glad_glMapBufferRange,
                 [this](GLenum target, GLintptr offset, GLsizeiptr length, GLbitfield) {
                     return map(target, offset, length);
                 });
    answerShared(answers, glad_glMapBuffer, [this](GLenum target, GLenum) {
        return map(target, 0, bufferValue(target, GL_BUFFER_SIZE));
    });
    answerShared(answers, glad_glUnmapBuffer, [this](GLenum target) { return unmap(target); });
    answerShared(answers, glad_glGetBufferParameteriv,
                 [this](GLenum target, GLenum pname, GLint* out) {
                     query(pname, bufferValue(target, pname), out);
                 });
}

/// Writes the values that the script has for \p pname, else \p unscripted.
template <class T>
void GlScript::query(GLenum pname, double unscripted, T* out) const {
    if (refused_.count(pname) != 0 || out == nullptr)
        return;
    const auto scripted = state_.find(pname);
    if (scripted == state_.end())
        *out = convert<T>(unscripted);
    else
        std::transform(scripted->second.begin(), scripted->second.end(), out, convert<T>);
}

template <class T>
void GlScript::queryContext(GLenum pname, T* out) const {
    const GLuint* name = bindings_.query(pname);
    query(pname, name != nullptr ? *name : 0, out);
}

void GlScript::answerState(AnswerTable& answers) {
    const auto queryOf = [this](auto type) {
        return [this](GLenum pname, decltype(type)* out) { queryContext(pname, out); };
    };
    answers.set(glad_glGetIntegerv, queryOf(GLint()));
    answers.set(glad_glGetInteger64v, queryOf(GLint64()));
    answers.set(glad_glGetFloatv, queryOf(GLfloat()));
    answers.set(glad_glGetDoublev, queryOf(GLdouble()));
    answers.set(glad_glGetBooleanv, queryOf(GLboolean()));
    answers.set(glad_glIsEnabled, [this](GLenum capability) {
        GLboolean enabled = GL_FALSE;
        queryContext(capability, &enabled);
        return enabled;
    });
    answers.set(glad_glGetString, [this](GLenum name) -> const GLubyte* {
        const auto found = strings_.find(name);
        if (stringsFail_ || found == strings_.end())
            return nullptr;
        return reinterpret_cast<const GLubyte*>(found->second.c_str());
    });
    answers.set(glad_glGetError, [this]() -> GLenum {
        if (errors_.empty())
            return GL_NO_ERROR;
        const GLenum error = errors_.front();
        errors_.pop_front();
        return error;
    });
    answers.set(glad_glCheckFramebufferStatus, [this](GLenum) { return framebufferStatus_; });
}

void GlScript::answerDebugMessages(AnswerTable& answers) {
    const auto setCallback = [this](GLDEBUGPROC callback, const void* parameter) {
        debugCallback_ = callback;
        debugParameter_ = parameter;
    };
    answers.set(glad_glDebugMessageCallback, setCallback);
    answers.set(glad_glDebugMessageCallbackARB, setCallback);
    answers.set(glad_glGetPointerv, [this](GLenum pname, void** out) {
        if (pname == GL_DEBUG_CALLBACK_FUNCTION)
            *out = reinterpret_cast<void*>(debugCallback_);
        else if (pname == GL_DEBUG_CALLBACK_USER_PARAM)
            *out = const_cast<void*>(debugParameter_);
    });
}

void GlScript::sendMessage(const std::string& text, GLenum severity, GLenum source, GLenum type,
                           GLuint id) const {
    if (debugCallback_ != nullptr)
        debugCallback_(source, type, id, severity, static_cast<GLsizei>(text.size()), text.c_str(),
                       debugParameter_);
}

void GlScript::answerImages(AnswerTable& answers) {
    // There are no images: what is known of them is the script's, and their storage can only fail.
    answers.set(glad_glGetTexLevelParameteriv,
                [this](GLenum, GLint, GLenum pname, GLint* out) { query(pname, 0, out); });
    const auto store = [this](auto&&...) {
        if (isOutOfMemory_)
            queueError(GL_OUT_OF_MEMORY);
    };
    answers.set(glad_glTexImage1D, store);
    answers.set(glad_glTexImage2D, store);
    answers.set(glad_glTexImage3D, store);
    answers.set(glad_glRenderbufferStorage, store);
    answers.set(glad_glRenderbufferStorageMultisample, store);
}

GLint GlScript::shaderValue(GLuint shader, GLenum pname) const {
    const auto found = shared_->shaders.find(shader);
    switch (pname) {
    case GL_COMPILE_STATUS:
        return shared_->compilations[shader].success ? GL_TRUE : GL_FALSE;
    case GL_INFO_LOG_LENGTH:
        return textLength(shared_->compilations[shader].log);
    case GL_SHADER_SOURCE_LENGTH:
        return textLength(shaderSource(shader));
    case GL_SHADER_TYPE:
        return found != shared_->shaders.end() ? static_cast<GLint>(found->second.type) : 0;
    default:
        return 0;
    }
}

void GlScript::setSource(GLuint shader, GLsizei count, const GLchar* const* strings,
                         const GLint* lengths) {
    if (!isRecording())
        return;
    std::string& source = shared_->shaders[shader].source;
    source.clear();
    for (GLsizei i = 0; i < count; ++i) {
        if (lengths != nullptr && lengths[i] >= 0)
            source.append(strings[i], static_cast<std::size_t>(lengths[i]));
        else
            source.append(strings[i]);
    }
}

void GlScript::answerShaders(AnswerTable& answers) {
    const EntryPoint create = entryPointAt(&glad_glCreateShader);
    answerShared(answers, glad_glCreateShader, [this, create](GLenum type) {
        const GLuint shader = make(ObjectKind::Shader, create);
        if (shader != 0 && isRecording())
            shared_->shaders[shader].type = type;
        return shader;
    });
    answerShared(answers, glad_glDeleteShader,
                 [this](GLuint name) { removeObject(ObjectKind::Shader, name); });
    answerShared(answers, glad_glShaderSource,
                 [this](GLuint shader, GLsizei count, const GLchar* const* strings,
                        const GLint* lengths) { setSource(shader, count, strings, lengths); });
    answerShared(answers, glad_glGetShaderiv, [this](GLuint shader, GLenum pname, GLint* out) {
        if (shader != 0) // which is none, so that GL tells nothing of it
            query(pname, shaderValue(shader, pname), out);
    });
    answerShared(answers, glad_glGetShaderInfoLog,
                 [this](GLuint shader, GLsizei size, GLsizei* length, GLchar* out) {
                     storeText(shared_->compilations[shader].log, size, length, out);
                 });
    answerShared(answers, glad_glGetShaderSource,
                 [this](GLuint shader, GLsizei size, GLsizei* length, GLchar* out) {
                     storeText(shaderSource(shader), size, length, out);
                 });
}

const std::vector<ActiveVariable>& GlScript::active(const ActiveVariables& variables,
                                                    GLuint program) const {
    static const std::vector<ActiveVariable> none;
    return shared_->links[program].success ? variables[program] : none;
}

GLint GlScript::programValue(GLuint program, GLenum pname) const {
    const auto attached = shared_->attached.find(program);
    switch (pname) {
    case GL_LINK_STATUS:
        return shared_->links[program].success ? GL_TRUE : GL_FALSE;
    case GL_INFO_LOG_LENGTH:
        return textLength(shared_->links[program].log);
    case GL_ATTACHED_SHADERS:
        return attached != shared_->attached.end() ? static_cast<GLint>(attached->second.size())
                                                   : 0;
    case GL_ACTIVE_UNIFORMS:
        return count(active(shared_->uniforms, program));
    case GL_ACTIVE_UNIFORM_MAX_LENGTH:
        return longestName(active(shared_->uniforms, program));
    case GL_ACTIVE_ATTRIBUTES:
        return count(active(shared_->attributes, program));
    case GL_ACTIVE_ATTRIBUTE_MAX_LENGTH:
        return longestName(active(shared_->attributes, program));
    default:
        return 0;
    }
}

void GlScript::answerPrograms(AnswerTable& answers) {
    const EntryPoint create = entryPointAt(&glad_glCreateProgram);
    answerShared(answers, glad_glCreateProgram,
                 [this, create] { return make(ObjectKind::Program, create); });
    answerShared(answers, glad_glDeleteProgram,
                 [this](GLuint name) { removeObject(ObjectKind::Program, name); });
    answerShared(answers, glad_glAttachShader, [this](GLuint program, GLuint shader) {
        if (!isRecording())
            return;
        std::vector<GLuint>& attached = shared_->attached[program];
        if (std::find(attached.begin(), attached.end(), shader) == attached.end())
            attached.push_back(shader);
    });
    answerShared(answers, glad_glDetachShader, [this](GLuint program, GLuint shader) {
        std::vector<GLuint>& attached = shared_->attached[program];
        attached.erase(std::remove(attached.begin(), attached.end(), shader), attached.end());
    });
    answerShared(answers, glad_glGetAttachedShaders,
                 [this](GLuint program, GLsizei maxCount, GLsizei* numShaders, GLuint* shaders) {
                     const std::vector<GLuint>& attached = shared_->attached[program];
                     const GLsizei n = std::min(maxCount, static_cast<GLsizei>(attached.size()));
                     std::copy_n(attached.begin(), n, shaders);
                     store(numShaders, n);
                 });
    answerShared(answers, glad_glGetProgramiv, [this](GLuint program, GLenum pname, GLint* out) {
        if (program != 0)
            query(pname, programValue(program, pname), out);
    });
    answerShared(answers, glad_glGetProgramInfoLog,
                 [this](GLuint program, GLsizei size, GLsizei* length, GLchar* out) {
                     storeText(shared_->links[program].log, size, length, out);
                 });
    answerVariables(answers, glad_glGetUniformLocation, glad_glGetActiveUniform, shared_->uniforms);
    answerVariables(answers, glad_glGetAttribLocation, glad_glGetActiveAttrib, shared_->attributes);
}

template <class GetLocation, class GetActive>
void GlScript::answerVariables(AnswerTable& answers, GetLocation& getLocation, GetActive& getActive,
                               const ActiveVariables& variables) {
    answerShared(answers, getLocation, [this, &variables](GLuint program, const GLchar* name) {
        return location(active(variables, program), name);
    });
    answerShared(answers, getActive,
                 [this, &variables](GLuint program, GLuint position, GLsizei bufferSize,
                                    GLsizei* length, GLint* size, GLenum* type, GLchar* name) {
                     const std::vector<ActiveVariable>& list = active(variables, program);
                     if (position >= list.size())
                         return;
                     const ActiveVariable& variable = list[position];
                     store(size, variable.size);
                     store(type, variable.type);
                     storeText(variable.name, bufferSize, length, name);
                 });
}

void GlScript::answerAll(AnswerTable& answers, const bool& recordingFlag) {
    recording_ = &recordingFlag;
    answerGeneratedNames(answers);
    answerExistence(answers);
    answerBindings(answers);
    answerBuffers(answers);
    answerState(answers);
    answerDebugMessages(answers);
    answerImages(answers);
    answerShaders(answers);
    answerPrograms(answers);
}

} // namespace vellis::test
