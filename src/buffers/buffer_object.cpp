#include <vellis/buffers/buffer_object.hpp>

#include <vellis/detail/hot.hpp>
#include <vellis/gl.hpp>

#include "buffers/buffer_object_inlined.hpp"
#include "gl/entry_point.hpp"
#include "gl/names.hpp"
#include "gl/operation.hpp"

namespace vellis {
namespace {

/// The GL usage hint, in whose number usage counts by four and access by one; or 0 where one of the
/// two is not an enumerator.
constexpr unsigned int usageHint(BufferUsage usage, BufferAccess access) {
    const auto row = static_cast<unsigned int>(usage);
    const auto column = static_cast<unsigned int>(access);
    return row < 3 && column < 3 ? GL_STREAM_DRAW + 4 * row + column : 0;
}

static_assert(usageHint(BufferUsage::Stream, BufferAccess::Draw) == GL_STREAM_DRAW);
static_assert(usageHint(BufferUsage::Stream, BufferAccess::Read) == GL_STREAM_READ);
static_assert(usageHint(BufferUsage::Stream, BufferAccess::Copy) == GL_STREAM_COPY);
static_assert(usageHint(BufferUsage::Static, BufferAccess::Draw) == GL_STATIC_DRAW);
static_assert(usageHint(BufferUsage::Static, BufferAccess::Read) == GL_STATIC_READ);
static_assert(usageHint(BufferUsage::Static, BufferAccess::Copy) == GL_STATIC_COPY);
static_assert(usageHint(BufferUsage::Dynamic, BufferAccess::Draw) == GL_DYNAMIC_DRAW);
static_assert(usageHint(BufferUsage::Dynamic, BufferAccess::Read) == GL_DYNAMIC_READ);
static_assert(usageHint(BufferUsage::Dynamic, BufferAccess::Copy) == GL_DYNAMIC_COPY);

/// The access bits of a mapping, or \p otherwise where \p access is not an enumerator.
unsigned int accessBits(MapAccess access, unsigned int otherwise) {
    static constexpr unsigned int bits[] = {
        GL_MAP_READ_BIT,
        GL_MAP_WRITE_BIT | GL_MAP_FLUSH_EXPLICIT_BIT,
        GL_MAP_READ_BIT | GL_MAP_WRITE_BIT | GL_MAP_FLUSH_EXPLICIT_BIT,
    };
    const auto index = static_cast<unsigned int>(access);
    return index < 3 ? bits[index] : otherwise;
}

} // namespace

BufferObject::BufferObject(unsigned int target, const void* data, unsigned int numBytes,
                           BufferUsage usage, BufferAccess access)
    : group_(gl::indexHere(gl::Kind::Buffer)),
      target_(target),
      usage_(usageHint(usage, access)),
      numBytes_(numBytes) {
    const gl::Operation operation("BufferObject::make");
    static_assert(arrayTarget == GL_ARRAY_BUFFER);
    static_assert(elementArrayTarget == GL_ELEMENT_ARRAY_BUFFER);
    glGenBuffers(1, &id_);
    allocate(data);
}

BufferObject::~BufferObject() {
    if (id_ != 0 && gl::canDelete(gl::Kind::Buffer, group_, id_))
        glDeleteBuffers(1, &id_);
}

void BufferObject::dispose() {
    if (id_ != 0 && gl::canDelete(gl::Kind::Buffer, group_, id_))
        glDeleteBuffers(1, &id_);
    id_ = 0;
}

unsigned int BufferObject::id() const {
    return exists() ? id_ : 0;
}

bool BufferObject::exists() const {
    return Inlined::exists(*this);
}

bool BufferObject::isUsable() const {
    if (exists())
        return true;
    gl::refuse(gl::Kind::Buffer);
    unbind();
    return false;
}

void BufferObject::bind() const {
    if (!Inlined::exists(*this))
        return bindNothing();
    Inlined::bindExisting(*this);
}

void BufferObject::unbind() const {
    Inlined::unbind(*this);
}

VELLIS_COLD void BufferObject::bindNothing() const {
    gl::refuse(gl::Kind::Buffer);
    bound_ = true;
    glBindBuffer(target_, 0);
}

inline void BufferObject::allocate(const void* data) {
    glBindBuffer(target_, id_);
    glBufferData(target_, numBytes_, nullptr, usage_);
    if (data != nullptr)
        glBufferSubData(target_, 0, numBytes_, data);
    glBindBuffer(target_, 0);
}

void BufferObject::alloc(unsigned int numBytes) {
    load(nullptr, numBytes);
}

void BufferObject::load(const void* data, unsigned int numBytes) {
    const gl::Operation operation("BufferObject::load");
    if (!isUsable())
        return;
    numBytes_ = numBytes;
    bound_ = false;
    allocate(data);
}

void BufferObject::load(const void* data, unsigned int offset, unsigned int numBytes) {
    const gl::Operation operation("BufferObject::load");
    if (!isUsable())
        return;
    if (data == nullptr)
        return unbind();
    bind();
    glBufferSubData(target_, offset, numBytes, data);
    unbind();
}

void* BufferObject::map(MapAccess access) {
    const gl::Operation operation("BufferObject::map");
    if (!isUsable())
        return nullptr;
    if (glMapBufferRange == nullptr) {
        unbind();
        return nullptr;
    }
    mapAccess_ = accessBits(access, mapAccess_);
    mapOffset_ = 0;
    mapLength_ = numBytes_;
    bind();
    void* const store = glMapBufferRange(target_, mapOffset_, mapLength_, mapAccess_);
    unbind();
    return store;
}

void BufferObject::flush(unsigned int offset, unsigned int length) {
    const gl::Operation operation("BufferObject::flush");
    if (!isMapped() || !isUsable())
        return;
    if (length == 0)
        length = mapLength_ - offset;
    bind();
    callIfLoaded(glFlushMappedBufferRange, target_, offset, length);
    unbind();
}

void BufferObject::flushAndUnmap() {
    unmap(true);
}

void BufferObject::flushAndUnmap(unsigned int offset, unsigned int length) {
    flush(offset, length);
    unmap(false);
}

void BufferObject::unmap(bool flush) {
    const gl::Operation operation("BufferObject::unmap");
    if (!isMapped() || !isUsable())
        return;
    bind();
    if (flush && isFlushable())
        callIfLoaded(glFlushMappedBufferRange, target_, 0, mapLength_);
    glUnmapBuffer(target_);
    unbind();
    mapAccess_ = 0;
    mapOffset_ = 0;
    mapLength_ = 0;
}

bool BufferObject::isFlushable() const {
    // Compares with the enumerators of glMapBuffer, which are no masks of access bits.
    return mapAccess_ == GL_WRITE_ONLY || mapAccess_ == GL_READ_WRITE;
}

} // namespace vellis
