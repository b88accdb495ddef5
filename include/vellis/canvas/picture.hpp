#pragma once

#include <cstddef>
#include <memory>

#include <vellis/export.hpp>

namespace vellis {

namespace internal {
struct LabelAccess;
}

namespace canvas {
struct KeptDrawing;
}

/// A drawing that Canvas::beginPicture and Canvas::endPicture have recorded, in buffers of its own,
/// for Canvas::drawPicture to draw often, under any matrix. It cannot be changed.
///
/// The buffers belong to the Context in which it was recorded, and to those that share its objects;
/// any canvas of these draws it. Elsewhere it draws nothing. They take 20 bytes for a point of a
/// stroke in the plane and 24 in space, once more for each end; where GL has no instanced arrays,
/// four times that.
class VELLIS_EXPORT Picture {
public:
    ~Picture();
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    /// The size of its buffers in bytes.
    std::size_t numBytes() const;

private:
    friend class Canvas;
    friend struct internal::LabelAccess;
    explicit Picture(std::unique_ptr<canvas::KeptDrawing> drawing);

    std::unique_ptr<canvas::KeptDrawing> drawing_;
};

} // namespace vellis
