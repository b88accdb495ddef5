#pragma once

#include <array>
#include <cstddef>

#include <glm/vec3.hpp>

#include "canvas/drawing.hpp"
#include "canvas/gl_object.hpp"

namespace vellis::canvas {

/// A drawing whose records stand in buffers of their own.
struct KeptDrawing {
    KeptDrawing();
    ~KeptDrawing();
    KeptDrawing(const KeptDrawing&) = delete;
    KeptDrawing& operator=(const KeptDrawing&) = delete;

    Drawing drawing;                           ///< with empty arenas
    std::array<BufferName, numArenas> buffers; ///< for each arena that has records
    glm::dvec3 origin{0.};                     ///< what was subtracted from the points
    std::size_t numBytes = 0;                  ///< of the buffers
    bool isInstanced = false;                  ///< whether a record stands there once
};

} // namespace vellis::canvas
