#include "support/gl_script.hpp"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <utility>

namespace vellis::test {
namespace {

const char* name(ObjectKind kind) {
    switch (kind) {
    case ObjectKind::Buffer:
        return "buffer";
    case ObjectKind::Texture:
        return "texture";
    case ObjectKind::VertexArray:
        return "vertex array";
    case ObjectKind::Framebuffer:
        return "framebuffer";
    case ObjectKind::Renderbuffer:
        return "renderbuffer";
    case ObjectKind::Query:
        return "query";
    case ObjectKind::Shader:
        return "shader";
    case ObjectKind::Program:
        return "program";
    }
    return "object";
}

std::string describe(ObjectKind kind, GLuint object) {
    return std::string(name(kind)) + ' ' + std::to_string(object);
}

struct BindingPoint {
    ObjectKind kind;
    GLenum target;
    GLenum pname;
};

// Kind by kind. Targets that are not named in the call are 0.
constexpr BindingPoint bindingPoints[] = {
    {ObjectKind::Buffer, GL_ARRAY_BUFFER, GL_ARRAY_BUFFER_BINDING},
    {ObjectKind::Buffer, GL_ELEMENT_ARRAY_BUFFER, GL_ELEMENT_ARRAY_BUFFER_BINDING},
    {ObjectKind::Buffer, GL_PIXEL_PACK_BUFFER, GL_PIXEL_PACK_BUFFER_BINDING},
    {ObjectKind::Buffer, GL_PIXEL_UNPACK_BUFFER, GL_PIXEL_UNPACK_BUFFER_BINDING},
    {ObjectKind::Buffer, GL_COPY_READ_BUFFER, GL_COPY_READ_BUFFER},
    {ObjectKind::Buffer, GL_COPY_WRITE_BUFFER, GL_COPY_WRITE_BUFFER},
    {ObjectKind::Buffer, GL_UNIFORM_BUFFER, GL_UNIFORM_BUFFER_BINDING},
    {ObjectKind::Texture, GL_TEXTURE_1D, GL_TEXTURE_BINDING_1D},
    {ObjectKind::Texture, GL_TEXTURE_2D, GL_TEXTURE_BINDING_2D},
    {ObjectKind::Texture, GL_TEXTURE_3D, GL_TEXTURE_BINDING_3D},
    {ObjectKind::Texture, GL_TEXTURE_CUBE_MAP, GL_TEXTURE_BINDING_CUBE_MAP},
    {ObjectKind::Texture, GL_TEXTURE_RECTANGLE, GL_TEXTURE_BINDING_RECTANGLE},
    {ObjectKind::Texture, GL_TEXTURE_1D_ARRAY, GL_TEXTURE_BINDING_1D_ARRAY},
    {ObjectKind::Texture, GL_TEXTURE_2D_ARRAY, GL_TEXTURE_BINDING_2D_ARRAY},
    {ObjectKind::VertexArray, 0, GL_VERTEX_ARRAY_BINDING},
    {ObjectKind::Framebuffer, GL_DRAW_FRAMEBUFFER, GL_DRAW_FRAMEBUFFER_BINDING},
    {ObjectKind::Framebuffer, GL_READ_FRAMEBUFFER, GL_READ_FRAMEBUFFER_BINDING},
    {ObjectKind::Renderbuffer, GL_RENDERBUFFER, GL_RENDERBUFFER_BINDING},
    {ObjectKind::Program, 0, GL_CURRENT_PROGRAM},
};
constexpr std::size_t numBindingPoints = std::size(bindingPoints);

/// Calls \p function with the position of each binding point of a kind. The null driver comes by
/// here with every call that binds: no search among the other kinds.
template <class Function>
void forEachPoint(ObjectKind kind, Function function) {
    static constexpr auto first = [] {
        std::array<std::size_t, numObjectKinds> positions{};
        for (std::size_t& position : positions)
            position = numBindingPoints;
        for (std::size_t i = numBindingPoints; i-- != 0;)
            positions[static_cast<std::size_t>(bindingPoints[i].kind)] = i;
        return positions;
    }();
    for (std::size_t i = first[static_cast<std::size_t>(kind)];
         i < numBindingPoints && bindingPoints[i].kind == kind; ++i)
        function(i);
}

std::vector<std::string> joined(std::vector<std::string> first,
                                const std::vector<std::string>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// Ranges of names, of which each table of one of several contexts takes one: the first begins with
/// 100001, the next with 200001.
class NameRanges {
public:
    /// The name before the first one of a range.
    static GLuint take() { return 100000 * ++numTaken_; }
    static void enter() { ++numContexts_; }
    static void leave() { --numContexts_; }
    static void restart() {
        if (numContexts_ == 0)
            numTaken_ = 0;
    }

private:
    inline static std::atomic<GLuint> numTaken_ = 0;
    inline static std::atomic<GLuint> numContexts_ = 0;
};

} // namespace

GLuint ObjectNames::make(ObjectKind kind, bool remember) {
    ++last_;
    if (remember) {
        made_[last_] = kind;
        live_.insert(last_);
    }
    return last_;
}

void ObjectNames::remove(ObjectKind kind, GLuint name) {
    if (name == 0 || wasMadeUnseen(name))
        return;
    if (isLive(name) && made_.at(name) == kind)
        live_.erase(name);
    else
        wrongDeletes_.push_back(describe(kind, name));
}

std::vector<std::string> ObjectNames::live() const {
    std::vector<std::string> names;
    for (const GLuint name : live_)
        names.push_back(describe(made_.at(name), name));
    return names;
}

bool ObjectNames::isLive(GLuint name) const {
    return live_.count(name) != 0;
}

bool ObjectNames::wasMadeUnseen(GLuint name) const {
    return name > before_ && name <= last_ && made_.count(name) == 0;
}

bool ObjectNames::isLive(ObjectKind kind, GLuint name) const {
    return wasMade(kind, name) && (isLive(name) || wasMadeUnseen(name));
}

bool ObjectNames::wasMade(ObjectKind kind, GLuint name) const {
    const auto object = made_.find(name);
    return object != made_.end() ? object->second == kind : wasMadeUnseen(name);
}

void ObjectNames::forgetDeleted() {
    for (auto object = made_.begin(); object != made_.end();)
        object = isLive(object->first) ? std::next(object) : made_.erase(object);
    wrongDeletes_.clear();
}

std::size_t Bindings::unit(ObjectKind kind) const {
    return kind == ObjectKind::Texture ? (activeTexture_ - GL_TEXTURE0) % numUnits : 0;
}

void Bindings::changeVertexArray(GLuint before, GLuint name) {
    if (before == name)
        return;
    const GLuint indexBuffer = bound(ObjectKind::Buffer, GL_ELEMENT_ARRAY_BUFFER);
    if (indexBuffer != 0)
        indexBuffers_[before] = indexBuffer;
    else
        indexBuffers_.erase(before);
    const auto found = indexBuffers_.find(name);
    bind(ObjectKind::Buffer, GL_ELEMENT_ARRAY_BUFFER,
         found != indexBuffers_.end() ? found->second : 0);
}

void Bindings::bind(ObjectKind kind, GLenum target, GLuint name) {
    static_assert(numPoints == numBindingPoints);
    if (kind == ObjectKind::VertexArray)
        changeVertexArray(bound(kind, target), name);
    forEachPoint(kind, [&](std::size_t i) {
        if (bindingPoints[i].target == target || target == GL_FRAMEBUFFER)
            names_[unit(kind)][i] = name;
    });
}

void Bindings::unbind(ObjectKind kind, GLuint name) {
    if (kind == ObjectKind::VertexArray) {
        if (bound(kind, 0) == name)
            bind(kind, 0, 0);
        indexBuffers_.erase(name);
    }
    forEachPoint(kind, [&](std::size_t i) {
        for (auto& names : names_) {
            if (names[i] == name)
                names[i] = 0;
        }
    });
}

GLuint Bindings::bound(ObjectKind kind, GLenum target) const {
    GLuint name = 0;
    forEachPoint(kind, [&](std::size_t i) {
        if (bindingPoints[i].target == target)
            name = names_[unit(kind)][i];
    });
    return name;
}

const GLuint* Bindings::query(GLenum pname) const {
    if (pname == GL_ACTIVE_TEXTURE)
        return &activeTexture_;
    for (std::size_t i = 0; i < numBindingPoints; ++i) {
        if (bindingPoints[i].pname == pname)
            return &names_[unit(bindingPoints[i].kind)][i];
    }
    return nullptr;
}

const BufferStores::Store* BufferStores::find(GLuint buffer) const {
    const auto store = stores_.find(buffer);
    return store != stores_.end() ? &store->second : nullptr;
}

unsigned char* BufferStores::range(GLuint buffer, GLintptr offset, GLsizeiptr length) {
    const auto store = stores_.find(buffer);
    if (store == stores_.end() || offset < 0 || length <= 0)
        return nullptr;
    std::vector<unsigned char>& bytes = store->second.bytes;
    const auto size = static_cast<GLsizeiptr>(bytes.size());
    return offset <= size && length <= size - offset ? bytes.data() + offset : nullptr;
}

unsigned char* BufferStores::scratch(GLsizeiptr length) {
    // Earlier blocks stay: mappings may still point into them.
    const auto size = static_cast<std::size_t>(std::max<GLsizeiptr>(length, 1));
    if (scratch_.empty() || scratch_.back().size() < size)
        scratch_.emplace_back(size);
    return scratch_.back().data();
}

GlScript::GlScript() : shared_(std::make_shared<SharedObjects>()) {}

GlScript::GlScript(const GlScript* sharing) {
    NameRanges::enter();
    shared_ =
        sharing != nullptr ? sharing->shared_ : std::make_shared<SharedObjects>(NameRanges::take());
    ownNames_.emplace(NameRanges::take());
}

GlScript::~GlScript() {
    if (ownNames_)
        NameRanges::leave();
}

void GlScript::restartNames() {
    NameRanges::restart();
}

GlScript::SharedLock GlScript::lockShared() const {
    return ownNames_ ? SharedLock(shared_->mutex) : SharedLock();
}

ObjectNames& GlScript::names(ObjectKind kind) {
    return ownNames_ && !isShareable(kind) ? *ownNames_ : shared_->names;
}

const ObjectNames& GlScript::names(ObjectKind kind) const {
    return ownNames_ && !isShareable(kind) ? *ownNames_ : shared_->names;
}

bool GlScript::isLive(ObjectKind kind, GLuint name) const {
    const SharedLock lock = lockShared();
    return names(kind).isLive(kind, name);
}

bool GlScript::wasMade(ObjectKind kind, GLuint name) const {
    const SharedLock lock = lockShared();
    return names(kind).wasMade(kind, name);
}

std::vector<std::string> GlScript::liveNames() const {
    const SharedLock lock = lockShared();
    return ownNames_ ? joined(shared_->names.live(), ownNames_->live()) : shared_->names.live();
}

std::vector<std::string> GlScript::doubleDeletes() const {
    const SharedLock lock = lockShared();
    return ownNames_ ? joined(shared_->names.wrongDeletes(), ownNames_->wrongDeletes())
                     : shared_->names.wrongDeletes();
}

void GlScript::failToCreate(bool fail) {
    failing_.fill(fail);
}

void GlScript::forgetDeletedNames() {
    const SharedLock lock = lockShared();
    shared_->names.forgetDeleted();
    if (ownNames_)
        ownNames_->forgetDeleted();
    auto& shaders = shared_->shaders;
    for (auto shader = shaders.begin(); shader != shaders.end();)
        shader = shared_->names.isLive(shader->first) ? std::next(shader) : shaders.erase(shader);
}

std::vector<unsigned char> GlScript::bufferBytes(GLuint buffer) const {
    const SharedLock lock = lockShared();
    const BufferStores::Store* store = shared_->stores.find(buffer);
    return store != nullptr ? store->bytes : std::vector<unsigned char>();
}

bool GlScript::isMapped(GLuint buffer) const {
    const SharedLock lock = lockShared();
    const BufferStores::Store* store = shared_->stores.find(buffer);
    return store != nullptr && store->mapped;
}

void GlScript::failToCompile(std::string log, GLuint shader) {
    const SharedLock lock = lockShared();
    shared_->compilations.set(shader, {false, std::move(log)});
}

void GlScript::failToLink(std::string log, GLuint program) {
    const SharedLock lock = lockShared();
    shared_->links.set(program, {false, std::move(log)});
}

void GlScript::setCompileLog(std::string log, GLuint shader) {
    const SharedLock lock = lockShared();
    shared_->compilations.set(shader, {true, std::move(log)});
}

void GlScript::setLinkLog(std::string log, GLuint program) {
    const SharedLock lock = lockShared();
    shared_->links.set(program, {true, std::move(log)});
}

void GlScript::setActiveUniforms(std::vector<ActiveVariable> uniforms, GLuint program) {
    const SharedLock lock = lockShared();
    shared_->uniforms.set(program, std::move(uniforms));
}

void GlScript::setActiveAttributes(std::vector<ActiveVariable> attributes, GLuint program) {
    const SharedLock lock = lockShared();
    shared_->attributes.set(program, std::move(attributes));
}

std::string GlScript::shaderSource(GLuint shader) const {
    const SharedLock lock = lockShared();
    const auto found = shared_->shaders.find(shader);
    return found != shared_->shaders.end() ? found->second.source : "";
}

} // namespace vellis::test
