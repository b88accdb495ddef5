#pragma once

#include <memory>

#include <vellis/buffers/buffer_object.hpp>

namespace vellis {

/// A buffer that pixel transfers read from or write to while it is bound: the data pointer of the
/// transfer is then a byte offset into it.
///
/// \code
/// auto pixels = vellis::PixelBuffer::make(vellis::PixelBuffer::DataFlow::Download, 4 * 64 * 64,
///                                         vellis::BufferUsage::Stream,
///                                         vellis::BufferAccess::Read);
/// pixels->bind();
/// glReadPixels(0, 0, 64, 64, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
/// pixels->unbind();
/// const void* data = pixels->map(vellis::MapAccess::ReadOnly);
/// \endcode
class VELLIS_EXPORT PixelBuffer : public BufferObject {
public:
    /// The direction of the transfers, seen from the application.
    enum class DataFlow : unsigned int {
        Upload = 0,   ///< into GL, target `GL_PIXEL_UNPACK_BUFFER`
        Download = 1, ///< out of GL, target `GL_PIXEL_PACK_BUFFER`
    };

    /// A buffer of \p numBytes bytes with undefined contents. A \p flow that is not an enumerator
    /// gives target 0, which GL refuses.
    static std::shared_ptr<PixelBuffer> make(DataFlow flow, unsigned int numBytes,
                                             BufferUsage usage, BufferAccess access);

    /// Copies the GL name, not the store: see BufferObject.
    /// @{
    PixelBuffer(const PixelBuffer&) = default;
    PixelBuffer& operator=(const PixelBuffer&) = default;
    /// @}
    ~PixelBuffer() override;

    using BufferObject::bind;
    using BufferObject::flush;
    using BufferObject::flushAndUnmap;
    using BufferObject::id;
    using BufferObject::load;
    using BufferObject::map;
    using BufferObject::unbind;
    using BufferObject::unmap;

protected:
    /// What make() makes.
    PixelBuffer(DataFlow flow, unsigned int numBytes, BufferUsage usage, BufferAccess access);

private:
    static unsigned int target(DataFlow flow);
};

} // namespace vellis
