#pragma once

#include <cstddef>
#include <initializer_list>
#include <limits>
#include <memory>
#include <type_traits>
#include <vector>

#include <vellis/buffers/buffer_object.hpp>
#include <vellis/detail/make_shared.hpp>

namespace vellis {

/// The operations of a buffer that holds elements of one type, counted in elements. It is the
/// common part of VertexAttributeBuffer and IndexBuffer.
///
/// A store holds at most 4 GiB less one byte: a larger count is cut to what fits.
///
/// \tparam Buffer  The class that derives from this one, for what make() returns.
/// \tparam Base    The untyped buffer class, which fixes the GL target.
/// \tparam T       The element type; its bytes are copied.
template <class Buffer, class Base, class T>
class TypedBuffer : public Base {
    static_assert(std::is_trivially_copyable<T>::value, "GL copies the bytes of the elements");

public:
    /// A buffer of \p count elements with undefined contents.
    static std::shared_ptr<Buffer> make(unsigned int count, BufferUsage usage,
                                        BufferAccess access) {
        return make(nullptr, count, usage, access);
    }

    /// A buffer of \p count elements copied from \p data, unless that is null.
    static std::shared_ptr<Buffer> make(const T* data, unsigned int count, BufferUsage usage,
                                        BufferAccess access) {
        return detail::makeShared<Buffer>(data, count, usage, access);
    }

    /// A buffer that holds \p elements.
    static std::shared_ptr<Buffer> make(std::initializer_list<T> elements, BufferUsage usage,
                                        BufferAccess access) {
        return make(elements.begin(), cut(elements.size()), usage, access);
    }

    /// A buffer that holds \p elements.
    static std::shared_ptr<Buffer> make(const std::vector<T>& elements, BufferUsage usage,
                                        BufferAccess access) {
        return make(elements.data(), cut(elements.size()), usage, access);
    }

    /// The number of elements in the store.
    unsigned int count() const { return count_; }

    /// Makes a new store of \p count elements, copied from \p data unless that is null. The old
    /// store is orphaned.
    void load(const T* data, unsigned int count) {
        if (Base::exists())
            count_ = fitting(count);
        Base::load(data, bytes(fitting(count)));
    }

    /// Makes a new store that holds \p elements. The old store is orphaned.
    void load(const std::vector<T>& elements) { load(elements.data(), cut(elements.size())); }

    /// Replaces \p count elements from element \p first on. GL checks the range; count() stays as
    /// it is. Only binds 0 where \p data is null.
    void load(const T* data, unsigned int first, unsigned int count) {
        Base::load(data, bytes(first), bytes(fitting(count)));
    }

    /// Maps the whole store.
    /// \return its first element, or null where GL refuses or the context lacks map_buffer_range.
    T* map(MapAccess access) { return static_cast<T*>(Base::map(access)); }

    /// Hands \p count written elements from element \p first on to GL; a count of 0 means up to the
    /// end. Does nothing on an unmapped buffer.
    void flush(unsigned int first, unsigned int count) { Base::flush(bytes(first), bytes(count)); }

    /// Unmaps without an explicit flush: see unmap.
    void flushAndUnmap() { Base::flushAndUnmap(); }

    /// flush(first, count), then unmap.
    void flushAndUnmap(unsigned int first, unsigned int count) {
        Base::flushAndUnmap(bytes(first), bytes(count));
    }

    using Base::unmap;

protected:
    /// A buffer of \p count elements copied from \p data, unless that is null.
    TypedBuffer(const T* data, unsigned int count, BufferUsage usage, BufferAccess access)
        : Base(data, bytes(fitting(count)), usage, access),
          count_(fitting(count)) {}

private:
    static constexpr unsigned int maxCount = (std::numeric_limits<unsigned int>::max)() / sizeof(T);

    static constexpr unsigned int fitting(unsigned int count) {
        return count < maxCount ? count : maxCount;
    }

    /// A number of elements in 32 bits.
    static constexpr unsigned int cut(std::size_t count) {
        constexpr std::size_t most = (std::numeric_limits<unsigned int>::max)();
        return static_cast<unsigned int>(count < most ? count : most);
    }

    /// Sizes and offsets that 32 bits cannot hold become ones that GL refuses for any store.
    static constexpr unsigned int bytes(unsigned int count) {
        return count <= maxCount ? count * static_cast<unsigned int>(sizeof(T))
                                 : (std::numeric_limits<unsigned int>::max)();
    }

    unsigned int count_;
};

} // namespace vellis
