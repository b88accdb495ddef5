#pragma once

#include <cstddef>

#include <vellis/gl.hpp>

namespace vellis::text {

/// Lets uploads to GL_TEXTURE_2D read the program's own memory row by row, whatever the caller has
/// set, and puts that back.
class UploadState {
public:
    UploadState() {
        glGetIntegerv(GL_TEXTURE_BINDING_2D, &texture_);
        glGetIntegerv(GL_PIXEL_UNPACK_BUFFER_BINDING, &buffer_);
        if (buffer_ != 0)
            glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
        for (std::size_t i = 0; i < numSettings; ++i) {
            glGetIntegerv(settings[i], &values_[i]);
            if (values_[i] != 0)
                glPixelStorei(settings[i], 0);
        }
    }
    ~UploadState() {
        for (std::size_t i = 0; i < numSettings; ++i) {
            if (values_[i] != 0)
                glPixelStorei(settings[i], values_[i]);
        }
        if (buffer_ != 0)
            glBindBuffer(GL_PIXEL_UNPACK_BUFFER, static_cast<GLuint>(buffer_));
        glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(texture_));
    }
    UploadState(const UploadState&) = delete;
    UploadState& operator=(const UploadState&) = delete;

private:
    static constexpr GLenum settings[] = {GL_UNPACK_ROW_LENGTH, GL_UNPACK_SKIP_ROWS,
                                          GL_UNPACK_SKIP_PIXELS};
    static constexpr std::size_t numSettings = sizeof(settings) / sizeof(settings[0]);

    GLint texture_ = 0;
    GLint buffer_ = 0;
    GLint values_[numSettings] = {};
};

} // namespace vellis::text
