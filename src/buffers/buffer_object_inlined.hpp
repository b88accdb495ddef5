#pragma once

#include <vellis/buffers/buffer_object.hpp>
#include <vellis/gl.hpp>

#include "gl/names.hpp"

namespace vellis {

/// What the recording of each vertex attribute does with a buffer, without calls into another
/// source. The benchmark drawable/make shows it.
struct BufferObject::Inlined {
    static bool exists(const BufferObject& buffer) {
        return gl::isHere(gl::Kind::Buffer, buffer.group_);
    }

    /// Binds a buffer that exists.
    static void bindExisting(const BufferObject& buffer) {
        buffer.bound_ = true;
        glBindBuffer(buffer.target_, buffer.id_);
    }

    static void unbind(const BufferObject& buffer) {
        buffer.bound_ = false;
        glBindBuffer(buffer.target_, 0);
    }
};

} // namespace vellis
