#pragma once

#include <glm/vec2.hpp>

#include <common/window.hpp>
#include <gallery/frame/panel.hpp>

#include "selection.hpp"

namespace window {

/// Shows one of the gallery's panels in a window, and others at the press of a key.
class Viewer {
public:
    /// \param window  Must live for as long as this does.
    Viewer(common::Window& window, const Selection& selection);
    Viewer(const Viewer&) = delete;
    Viewer& operator=(const Viewer&) = delete;

    /// Until the window is closed.
    void run();

private:
    void handle(int key);

    common::Window& window_;
    Selection selection_;
};

} // namespace window
