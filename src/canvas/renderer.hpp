#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <glm/mat4x4.hpp>

#include "canvas/capabilities.hpp"
#include "canvas/drawing.hpp"
#include "canvas/gl_object.hpp"
#include "canvas/kept_drawing.hpp"
#include "canvas/overlap_mask.hpp"
#include "canvas/programs.hpp"
#include "canvas/saved_state.hpp"
#include "canvas/vertex_arrays.hpp"

namespace vellis::canvas {

/// How much an arena holds, in bytes, whose records go through one buffer again and again.
std::size_t streamedSize(std::size_t arena);

/// Has GL draw what was recorded.
class Renderer {
public:
    /// For the GL context that is current.
    Renderer();
    ~Renderer();
    Renderer(const Renderer&) = delete;
    Renderer& operator=(const Renderer&) = delete;

    const Capabilities& capabilities() const { return capabilities_; }

    /// Writes the arenas to their buffers, and draws the commands.
    void drawStreamed(Drawing& drawing);

    /// Draws what is kept, with its matrices behind \p matrix.
    void drawKept(const KeptDrawing& kept, const glm::mat4& matrix);

    /// Moves the records of a drawing into buffers of their own.
    static void keep(KeptDrawing& kept);

private:
    /// Where the records of a drawing are, and what applies to its matrices.
    struct Source {
        const Drawing& drawing;
        const KeptDrawing* kept; ///< null for streamed records
        const glm::mat4* matrix; ///< null for those of the commands alone
    };

    void draw(const Source& source, SavedState& saved);
    void drawCommand(const Source& source, const Command& command, SavedState& saved);
    void paint(const Source& source, const Command& command, const SavedState& saved);
    void drawStreamedRecords(const Command& command);
    void drawKeptRecords(const KeptDrawing& kept, const Command& command);
    void drawPoints(const Command& command, const BufferPoints& points);
    void drawPieces(unsigned int dimensions, const BufferPoints& points, std::size_t count);
    void endMask();
    void composite(const Overlap& overlap, const SavedState& saved);

    CanvasProgram& program(ProgramFamily family, unsigned int variants);
    CanvasProgram& programOf(Kind kind, const Look& look);
    void setUniforms(CanvasProgram& program, const Source& source, const Command& command,
                     const SavedState& saved) const;
    static glm::mat4 matrixOf(const Source& source, const Look& look);
    PixelBox boxOf(const Overlap& overlap, const glm::mat4& matrix, const SavedState& saved) const;

    Capabilities capabilities_;
    VertexArrays arrays_;
    OverlapMask mask_;
    std::array<BufferName, numArenas> streamed_;
    std::vector<CanvasProgram> programs_; ///< those that were needed so far
    std::uint64_t numDrawings_ = 0;
    PixelBox box_ = {}; ///< of the overlap that is being drawn
    bool isMasked_ = false;
};

} // namespace vellis::canvas
