#pragma once

#include <memory>

#include <glm/gtc/matrix_transform.hpp>
#include <glm/mat4x4.hpp>

#include <gallery/frame/panel.hpp>
#include <vellis/canvas.hpp>

namespace gallery {

/// Places in pixels of the panel, from its upper left corner.
inline const glm::mat4 panelPixels = glm::ortho<float>(0.0f, panelSize, panelSize, 0.0f);

/// A canvas of the library's own, with a batch that ends where the object does; its widths and
/// sizes are in pixels of the panel.
class PanelCanvas {
public:
    explicit PanelCanvas(const Canvas& surface, const glm::mat4& mvp = panelPixels)
        : canvas_(vellis::Canvas::make()) {
        canvas_->setPixelRatio(surface.length(1.0f));
        canvas_->begin(mvp);
    }
    ~PanelCanvas() { canvas_->end(); }
    PanelCanvas(const PanelCanvas&) = delete;
    PanelCanvas& operator=(const PanelCanvas&) = delete;

    vellis::Canvas& operator*() const { return *canvas_; }
    vellis::Canvas* operator->() const { return canvas_.get(); }
    const std::shared_ptr<vellis::Canvas>& shared() const { return canvas_; }

private:
    std::shared_ptr<vellis::Canvas> canvas_;
};

} // namespace gallery
