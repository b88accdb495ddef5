#include <vellis/buffers/pixel_buffer.hpp>

#include <vellis/detail/make_shared.hpp>
#include <vellis/gl.hpp>

namespace vellis {

std::shared_ptr<PixelBuffer> PixelBuffer::make(DataFlow flow, unsigned int numBytes,
                                               BufferUsage usage, BufferAccess access) {
    return detail::makeShared<PixelBuffer>(flow, numBytes, usage, access);
}

PixelBuffer::PixelBuffer(DataFlow flow, unsigned int numBytes, BufferUsage usage,
                         BufferAccess access)
    : BufferObject(target(flow), nullptr, numBytes, usage, access) {}

PixelBuffer::~PixelBuffer() = default;

unsigned int PixelBuffer::target(DataFlow flow) {
    switch (flow) {
    case DataFlow::Upload:
        return GL_PIXEL_UNPACK_BUFFER;
    case DataFlow::Download:
        return GL_PIXEL_PACK_BUFFER;
    }
    return 0;
}

} // namespace vellis
