#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include <glm/mat4x4.hpp>

#include "canvas/kept_drawing.hpp"
#include "canvas/recorder.hpp"
#include "canvas/renderer.hpp"

namespace vellis::canvas {

/// What a Canvas consists of: what it was told to draw, how, and what draws it.
class Painter final : private Room {
public:
    Painter();
    ~Painter();
    Painter(const Painter&) = delete;
    Painter& operator=(const Painter&) = delete;

    /// See Canvas.
    /// @{
    void begin(const glm::mat4& mvp);
    void flush();
    void end();
    void setTransform(const glm::mat4& transform);
    void setOrigin(const glm::dvec3& origin);
    void setPixelRatio(float ratio);
    void setPixelUp(float up) { setting_.pixelUp = up; }
    void setPaintsOnce(bool once) { setting_.paintsOnce = once; }
    void beginPicture(const glm::mat4& mvp);
    std::unique_ptr<KeptDrawing> endPicture();
    void draw(const KeptDrawing& kept);
    std::shared_ptr<void>* attachment(const void* key);
    /// @}

    /// What the groups of GL's calls are called, for debuggers; a name of our own where it is
    /// empty.
    /// @{
    const std::string& label() const { return label_; }
    void setLabel(std::string_view label) { label_ = label; }
    /// @}

    /// Where calls go now, or null where they are left out.
    Recorder* recorder();

    const Setting& setting() const { return setting_; }

    /// Draws points of the caller's buffer, or keeps them in the picture.
    void drawPoints(Kind kind, BufferPoints points,
                    const std::shared_ptr<const VertexBuffer>& buffer, unsigned int dimensions,
                    const Stroke* stroke);

private:
    void make(std::size_t arena, std::size_t numBytes) override;
    glm::vec2 viewportSize() override;

    bool isHere() const;
    std::string_view groupName() const {
        return label_.empty() ? std::string_view("vellis canvas") : std::string_view(label_);
    }
    Renderer& renderer();
    void setMatrices();
    glm::mat4 matrixOf(const glm::dvec3& origin) const;
    void readBack(Kind kind, const BufferPoints& points, unsigned int dimensions,
                  const Stroke* stroke);

    enum class Mode : unsigned char { Idle, Drawing, Recording };

    unsigned int index_; ///< of the Context that the canvas belongs to
    Mode mode_ = Mode::Idle;
    bool isHidden_ = false; ///< whether a matrix is not finite
    bool knowsViewport_ = false;
    glm::vec2 viewportSize_{0.f};
    glm::mat4 mvp_{1.f};
    glm::mat4 transform_{1.f};
    Setting setting_;
    std::string label_;
    Drawing drawing_;
    Recorder streaming_{drawing_, *this, false};
    std::unique_ptr<KeptDrawing> kept_;
    std::unique_ptr<Recorder> recording_;
    std::unique_ptr<Renderer> renderer_;
    std::map<const void*, std::shared_ptr<void>> attachments_;
};

} // namespace vellis::canvas
