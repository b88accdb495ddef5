#pragma once

#include <vellis/export.hpp>

namespace vellis {

namespace detail {
struct AttributeRecorder;
}

/// How often the data of a buffer change. With BufferAccess it makes the GL usage hint:
/// `Static` and `Draw` give `GL_STATIC_DRAW`.
enum class BufferUsage : unsigned int {
    Stream = 0,  ///< written once, used a few times
    Static = 1,  ///< written once, used many times
    Dynamic = 2, ///< written again and again
};

/// Who reads the data of a buffer.
enum class BufferAccess : unsigned int {
    Draw = 0, ///< GL, to draw
    Read = 1, ///< the application
    Copy = 2, ///< GL, after GL wrote them
};

/// What a mapping of a buffer allows.
enum class MapAccess : unsigned int {
    ReadOnly = 0,  ///< `GL_MAP_READ_BIT`
    WriteOnly = 1, ///< `GL_MAP_WRITE_BIT | GL_MAP_FLUSH_EXPLICIT_BIT`
    ReadWrite = 2, ///< all three
};

/// A GL buffer object: its name, its binding target and usage hint, fixed at construction, its size
/// and the state of its mapping. The subclasses fix the target and choose which operations are
/// public.
///
/// Every operation that touches GL binds the buffer to its own target, works, and binds 0 there: a
/// buffer that was bound before is unbound after it. One that has nothing to work on, such as a
/// load of null, binds 0 all the same. Only bind leaves a buffer bound; flush and unmap of a buffer
/// that is not mapped make no GL call.
///
/// No operation checks GL errors. After dispose() the name is 0, and what is done with the buffer
/// goes to GL's name 0, which GL answers with an error. With a Context in use in which the buffer
/// does not exist, bind binds 0, and the others only do that and change nothing.
///
/// Copies copy the GL name, not the store, and each destructor deletes that name. Hold a buffer
/// through the shared pointer that made it, and copy the pointer.
class VELLIS_EXPORT BufferObject {
public:
    /// Copies the GL name, not the store.
    /// @{
    BufferObject(const BufferObject&) = default;
    BufferObject& operator=(const BufferObject&) = default;
    /// @}

    /// Deletes the GL buffer, as dispose() does.
    virtual ~BufferObject();

    /// Deletes the GL buffer with `glDeleteBuffers` and sets the name to 0; a second call does
    /// nothing. The buffer is not unmapped and, if BufferObjectManager holds it, not removed there.
    virtual void dispose();

    /// Binds the buffer to its target.
    void bind() const;

    /// Binds 0 to the buffer's target, whatever is bound there.
    void unbind() const;

    /// True between bind and unbind. GL is not asked, and each data operation ends unbound.
    bool isBound() const { return bound_; }

    /// The GL name, or 0 once disposed, and where the buffer does not exist: see Context.
    unsigned int id() const;

    /// Whether the buffer exists here: with a Context in use, whether that, or one that shares its
    /// objects, was in use when the buffer was made.
    bool exists() const;

    /// The size of the data store in bytes.
    unsigned int numBytes() const { return numBytes_; }

protected:
    static constexpr unsigned int arrayTarget = 0x8892;        ///< `GL_ARRAY_BUFFER`
    static constexpr unsigned int elementArrayTarget = 0x8893; ///< `GL_ELEMENT_ARRAY_BUFFER`

    /// Makes the GL buffer and its store: `glGenBuffers`, then bound, `glBufferData` without
    /// contents, and `glBufferSubData` where \p data is not null. The store is always allocated
    /// first and filled by an upload of its own.
    ///
    /// \param target    GL binding target.
    /// \param data      \p numBytes bytes to fill the store with, or null.
    /// \param numBytes  Size of the store.
    /// \param usage, access  The usage hint; a value that is not an enumerator gives hint 0, which
    ///                       GL refuses.
    BufferObject(unsigned int target, const void* data, unsigned int numBytes, BufferUsage usage,
                 BufferAccess access);

    /// Makes a new store of that size with undefined contents.
    void alloc(unsigned int numBytes);

    /// Makes a new store of that size and fills it from \p data, unless that is null. The old store
    /// is orphaned: GL may still draw from it.
    void load(const void* data, unsigned int numBytes);

    /// Replaces \p numBytes bytes from byte \p offset on. GL checks the range; the store's size
    /// stays as it is. Only binds 0 where \p data is null.
    void load(const void* data, unsigned int offset, unsigned int numBytes);

    /// Maps the whole store with `glMapBufferRange`. The mapping outlasts the binding.
    /// \return the store, or null where GL refuses or the context lacks map_buffer_range; 0 is
    /// bound
    ///         then, too.
    void* map(MapAccess access);

    /// Hands what was written to GL: \p length bytes from \p offset on, counted from the start of
    /// the mapping; a length of 0 means up to its end. Does nothing on an unmapped buffer.
    void flush(unsigned int offset, unsigned int length);

    /// unmap(true): no explicit flush is issued.
    void flushAndUnmap();

    /// flush(offset, length), then unmap.
    void flushAndUnmap(unsigned int offset, unsigned int length);

    /// Ends the mapping with `glUnmapBuffer`; does nothing on an unmapped buffer.
    ///
    /// Flushes nothing, whatever \p flush is: a flush would be made for an access of
    /// `GL_WRITE_ONLY` or `GL_READ_WRITE`, and map() has none of these. To have writes flushed,
    /// call flush(offset, length) first, or flushAndUnmap(offset, length).
    void unmap(bool flush);

private:
    friend struct detail::AttributeRecorder;

    /// Some of it for the library's own sources.
    struct Inlined;

    /// Makes a store of `numBytes_` bytes, and fills it unless \p data is null.
    void allocate(const void* data);

    /// Binds 0 in place of a buffer that does not exist.
    VELLIS_NO_EXPORT void bindNothing() const;

    /// The same, and where it does not exist binds 0.
    VELLIS_NO_EXPORT bool isUsable() const;

    bool isMapped() const { return mapAccess_ != 0; }
    VELLIS_NO_EXPORT bool isFlushable() const;

    unsigned int id_ = 0;
    unsigned int group_; ///< where it exists: see gl/names.hpp
    unsigned int target_;
    unsigned int usage_;
    unsigned int numBytes_;
    unsigned int mapAccess_ = 0;
    unsigned int mapOffset_ = 0;
    unsigned int mapLength_ = 0;
    mutable bool bound_ = false;
};

} // namespace vellis
