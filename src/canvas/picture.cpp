#include <vellis/canvas/picture.hpp>

#include <utility>

#include "canvas/kept_drawing.hpp"

namespace vellis {

canvas::KeptDrawing::KeptDrawing() = default;
canvas::KeptDrawing::~KeptDrawing() = default;

Picture::Picture(std::unique_ptr<canvas::KeptDrawing> drawing) : drawing_(std::move(drawing)) {}

Picture::~Picture() = default;

std::size_t Picture::numBytes() const {
    return drawing_->numBytes;
}

} // namespace vellis
