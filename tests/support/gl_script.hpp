#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <deque>
#include <initializer_list>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <vellis/gl.hpp>

#include "support/gl_answers.hpp"
#include "support/object_kind.hpp"

/// \file
/// What the fake GL answers: a small model of the objects and bindings of a context, and a script
/// that overrides it.

namespace vellis::test {

/// Stands for all shaders or all programs where a script takes one's name.
constexpr GLuint everyObject = 0;

/// An active uniform or attribute as a program reports it.
struct ActiveVariable {
    /// The location is the position in the list.
    static constexpr GLint byPosition = -2;

    std::string name;
    GLenum type = 0;
    GLint size = 1;
    GLint location = byPosition;
};

/// A value per object, or one for all of them.
template <class Value>
class PerObject {
public:
    void set(GLuint object, Value value) { values_[object] = std::move(value); }

    /// The value of that object, else the one of all objects, else a default one.
    const Value& operator[](GLuint object) const {
        static const Value none{};
        for (const GLuint key : {object, everyObject}) {
            const auto found = values_.find(key);
            if (found != values_.end())
                return found->second;
        }
        return none;
    }

private:
    std::map<GLuint, Value> values_;
};

/// The names of GL objects: which were made, and which deleted. They count up through all kinds of
/// objects, so that a mixed-up kind shows.
class ObjectNames {
public:
    /// \param before  The name before the first one.
    explicit ObjectNames(GLuint before = 0) : before_(before), last_(before) {}

    GLuint make(ObjectKind kind, bool remember);
    void remove(ObjectKind kind, GLuint name);

    std::vector<std::string> live() const;
    const std::vector<std::string>& wrongDeletes() const { return wrongDeletes_; }
    bool isLive(GLuint name) const;
    /// Whether an object of that kind was made here and not deleted, or made without being
    /// remembered.
    bool isLive(ObjectKind kind, GLuint name) const;
    /// The same, deleted or not.
    bool wasMade(ObjectKind kind, GLuint name) const;
    void forgetDeleted();

private:
    /// Whether the object was made, but is not remembered.
    bool wasMadeUnseen(GLuint name) const;

    GLuint before_;
    GLuint last_;
    std::map<GLuint, ObjectKind> made_;
    std::set<GLuint> live_; ///< of those, the few that tests ask for again and again
    std::vector<std::string> wrongDeletes_;
};

/// What is bound where.
class Bindings {
public:
    void bind(ObjectKind kind, GLenum target, GLuint name);
    /// Takes a deleted object from everywhere it is bound.
    void unbind(ObjectKind kind, GLuint name);
    void activateTextureUnit(GLenum unit) { activeTexture_ = unit; }

    /// The name bound at \p target; 0 where nothing is.
    GLuint bound(ObjectKind kind, GLenum target) const;
    /// The value of a binding that can be queried, or null.
    const GLuint* query(GLenum pname) const;

private:
    /// Puts aside what belongs to the vertex array that was bound, and takes what belongs to this.
    void changeVertexArray(GLuint before, GLuint name);

    static constexpr std::size_t numPoints = 19;
    static constexpr std::size_t numUnits = 32;

    /// The texture unit that counts for a kind of object: the first one for what has no units.
    std::size_t unit(ObjectKind kind) const;

    std::array<std::array<GLuint, numPoints>, numUnits> names_{};
    std::map<GLuint, GLuint> indexBuffers_; ///< of vertex arrays that are not bound
    GLuint activeTexture_ = GL_TEXTURE0;
};

/// The data stores of buffers.
class BufferStores {
public:
    struct Store {
        std::vector<unsigned char> bytes;
        GLenum usage = GL_STATIC_DRAW;
        bool mapped = false;
    };

    /// The store of a buffer, made empty where there is none.
    Store& operator[](GLuint buffer) { return stores_[buffer]; }
    const Store* find(GLuint buffer) const;
    void remove(GLuint buffer) { stores_.erase(buffer); }

    /// The bytes of a part of a store; null where the store does not have them all, or for no
    /// bytes.
    unsigned char* range(GLuint buffer, GLintptr offset, GLsizeiptr length);

    /// Memory of that many bytes, for mappings that nobody looks into.
    unsigned char* scratch(GLsizeiptr length);

private:
    std::map<GLuint, Store> stores_;
    std::vector<std::vector<unsigned char>> scratch_;
};

/// The script of a FakeGl: what its queries answer. See FakeGl for an overview.
///
/// What the script says of buffers, shaders and programs holds for all contexts that share them,
/// and may be said and asked on any thread; the rest on the thread where the context is current, or
/// while it is current on none.
class GlScript {
public:
    GlScript(const GlScript&) = delete;
    GlScript& operator=(const GlScript&) = delete;

    /// \name Objects
    /// @{

    /// Lets every glGen… and glCreate… give 0 from now on, or names again.
    void failToCreate(bool fail = true);
    /// Lets one of them give 0 from now on, or names again: `gl.failToCreate(glad_glCreateShader)`.
    template <class Result, class... Parameters>
    void failToCreate(Result(GLAD_API_PTR*& entryPoint)(Parameters...), bool fail = true) {
        failing_[index(entryPointAt(&entryPoint))] = fail;
    }

    /// The objects made and not deleted: `buffer 1`. Objects made while recording is off do not
    /// count.
    std::vector<std::string> liveNames() const;
    /// The deletions that hit no live object of that kind: a second one, one of a wrong kind.
    std::vector<std::string> doubleDeletes() const;
    /// Forgets which objects were deleted, so that a long run does not remember them all. A further
    /// deletion of their names counts for nothing, then.
    void forgetDeletedNames();
    /// @}

    /// \name State
    /// @{

    /// Lets every query of \p pname, of the context or of an object, give these values, converted
    /// to the type of the query: `setState(GL_VIEWPORT, {0, 0, 64, 64})`.
    template <class Number>
    void setState(GLenum pname, std::initializer_list<Number> values) {
        state_[pname].clear();
        for (const Number value : values)
            state_[pname].push_back(static_cast<double>(value));
    }
    void setState(GLenum pname, std::initializer_list<double> values) { state_[pname] = values; }
    void setState(GLenum pname, std::vector<double> values) { state_[pname] = std::move(values); }
    /// The values that setState() has given; none where it has not.
    std::vector<double> state(GLenum pname) const {
        const auto found = state_.find(pname);
        return found != state_.end() ? found->second : std::vector<double>();
    }
    /// Lets queries of \p pname give what the model knows again.
    void unsetState(GLenum pname) { state_.erase(pname); }
    /// Lets queries of \p pname write nothing, as GL does for what it does not know.
    void refuse(GLenum pname) { refused_.insert(pname); }
    /// What glGetString gives; null where nothing is set.
    void setString(GLenum name, std::string value) { strings_[name] = std::move(value); }
    /// Lets glGetString give null for every name, or what is set.
    void failToGetStrings(bool fail = true) { stringsFail_ = fail; }
    /// Lets the calls that make the storage of buffers, textures and renderbuffers make none, each
    /// with GL_OUT_OF_MEMORY in the queue.
    void runOutOfMemory(bool isOut = true) { isOutOfMemory_ = isOut; }
    /// Adds an error to the queue that glGetError takes from.
    void queueError(GLenum error) { errors_.push_back(error); }
    /// Calls what glDebugMessageCallback has set, as GL does with a debug message.
    void sendMessage(const std::string& text, GLenum severity = GL_DEBUG_SEVERITY_HIGH,
                     GLenum source = GL_DEBUG_SOURCE_API, GLenum type = GL_DEBUG_TYPE_ERROR,
                     GLuint id = 1) const;
    /// What glCheckFramebufferStatus gives; GL_FRAMEBUFFER_COMPLETE where nothing is set.
    void setFramebufferStatus(GLenum status) { framebufferStatus_ = status; }
    /// @}

    /// \name Buffers
    /// @{

    /// The byte that a store without contents is filled with.
    static constexpr unsigned char undefinedByte = 0xCD;

    /// The contents of a buffer's store; empty where it has none.
    std::vector<unsigned char> bufferBytes(GLuint buffer) const;
    /// The contents of a buffer's store as values of a type: `gl.bufferContents<float>(1)`.
    template <class T>
    std::vector<T> bufferContents(GLuint buffer) const {
        const std::vector<unsigned char> bytes = bufferBytes(buffer);
        std::vector<T> values(bytes.size() / sizeof(T));
        if (!values.empty())
            std::memcpy(values.data(), bytes.data(), values.size() * sizeof(T));
        return values;
    }
    /// Whether the buffer's store is mapped.
    bool isMapped(GLuint buffer) const;
    /// Lets mapping a buffer give null.
    void failToMap(bool fail = true) { mappingFails_ = fail; }
    /// @}

    /// \name Shaders and programs
    /// @{

    /// Lets a shader, or all of them, have a compile status of GL_FALSE and that log.
    void failToCompile(std::string log = "", GLuint shader = everyObject);
    /// Lets a program, or all of them, have a link status of GL_FALSE, that log, and no active
    /// uniforms and attributes.
    void failToLink(std::string log = "", GLuint program = everyObject);
    /// The log of a shader that has compiled.
    void setCompileLog(std::string log, GLuint shader = everyObject);
    /// The log of a program that has linked.
    void setLinkLog(std::string log, GLuint program = everyObject);
    /// The active uniforms of a program, or of all: `setActiveUniforms({{"mvp", GL_FLOAT_MAT4}})`.
    /// The location of an array is found by `name[0]`, `name` and, further on, `name[1]`.
    void setActiveUniforms(std::vector<ActiveVariable> uniforms, GLuint program = everyObject);
    /// The active attributes of a program, or of all.
    void setActiveAttributes(std::vector<ActiveVariable> attributes, GLuint program = everyObject);
    /// The source that glShaderSource gave a shader.
    std::string shaderSource(GLuint shader) const;
    /// @}

protected:
    /// The script of the only context of a test.
    GlScript();
    /// The script of one of several contexts, which has names of its own.
    /// \param sharing  Whose objects it shares, or null.
    explicit GlScript(const GlScript* sharing);
    ~GlScript();

    /// Lets the names of several contexts begin anew, unless there is one.
    static void restartNames();

    /// Makes the model answer its entry points. With \p recording off it stays cheap: stores and
    /// names are not kept.
    void answerAll(AnswerTable& answers, const bool& recording);

    const Bindings& bindings() const { return bindings_; }

    /// \copydoc ObjectNames::isLive(ObjectKind, GLuint) const
    bool isLive(ObjectKind kind, GLuint name) const;
    /// \copydoc ObjectNames::wasMade
    bool wasMade(ObjectKind kind, GLuint name) const;

private:
    struct Outcome {
        bool success = true;
        std::string log;
    };
    struct Shader {
        GLenum type = 0;
        std::string source;
    };
    using ActiveVariables = PerObject<std::vector<ActiveVariable>>;

    /// The objects that contexts share, and what the script says of them.
    struct SharedObjects {
        explicit SharedObjects(GLuint beforeNames = 0) : names(beforeNames) {}

        std::recursive_mutex mutex;
        ObjectNames names;
        BufferStores stores;
        std::map<GLuint, Shader> shaders;
        std::map<GLuint, std::vector<GLuint>> attached;
        PerObject<Outcome> compilations;
        PerObject<Outcome> links;
        ActiveVariables uniforms;
        ActiveVariables attributes;
    };
    using SharedLock = std::unique_lock<std::recursive_mutex>;

    /// Keeps the other contexts from the shared objects. The only context of a test needs no lock.
    SharedLock lockShared() const;
    /// Answers calls with a function that reads or changes shared objects.
    template <class Result, class... Parameters, class Function>
    void answerShared(AnswerTable& answers, Result(GLAD_API_PTR*& entryPoint)(Parameters...),
                      Function function);
    ObjectNames& names(ObjectKind kind);
    const ObjectNames& names(ObjectKind kind) const;

    void answerGeneratedNames(AnswerTable& answers);
    void answerExistence(AnswerTable& answers);
    void answerBindings(AnswerTable& answers);
    void answerBuffers(AnswerTable& answers);
    void answerState(AnswerTable& answers);
    void answerDebugMessages(AnswerTable& answers);
    void answerImages(AnswerTable& answers);
    void answerShaders(AnswerTable& answers);
    void answerPrograms(AnswerTable& answers);
    template <class Gen, class Delete>
    void answerGenAndDelete(AnswerTable& answers, Gen& gen, Delete& deleteAll, ObjectKind kind);
    template <class GetLocation, class GetActive>
    void answerVariables(AnswerTable& answers, GetLocation& getLocation, GetActive& getActive,
                         const ActiveVariables& variables);

    bool isRecording() const { return *recording_; }
    GLuint make(ObjectKind kind, EntryPoint entryPoint);
    void removeObject(ObjectKind kind, GLuint name);
    void allocate(GLenum target, GLsizeiptr size, const void* data, GLenum usage);
    void* map(GLenum target, GLintptr offset, GLsizeiptr length);
    bool unmap(GLenum target);
    void setSource(GLuint shader, GLsizei count, const GLchar* const* strings,
                   const GLint* lengths);
    const std::vector<ActiveVariable>& active(const ActiveVariables& variables,
                                              GLuint program) const;

    template <class T>
    void query(GLenum pname, double unscripted, T* out) const;
    template <class T>
    void queryContext(GLenum pname, T* out) const;
    GLint bufferValue(GLenum target, GLenum pname) const;
    GLint shaderValue(GLuint shader, GLenum pname) const;
    GLint programValue(GLuint program, GLenum pname) const;

    const bool* recording_ = nullptr;
    std::shared_ptr<SharedObjects> shared_;
    std::optional<ObjectNames> ownNames_; ///< of what is not shared; of one of several contexts
    Bindings bindings_;
    std::array<bool, entryPointCount> failing_{};
    bool mappingFails_ = false;
    bool stringsFail_ = false;
    bool isOutOfMemory_ = false;

    std::map<GLenum, std::vector<double>> state_;
    std::set<GLenum> refused_;
    std::map<GLenum, std::string> strings_;
    std::deque<GLenum> errors_;
    GLenum framebufferStatus_ = GL_FRAMEBUFFER_COMPLETE;
    GLDEBUGPROC debugCallback_ = nullptr;
    const void* debugParameter_ = nullptr;
};

} // namespace vellis::test
