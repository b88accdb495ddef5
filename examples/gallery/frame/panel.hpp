#pragma once

#include <vector>

#include <gallery/frame/probe.hpp>

namespace gallery {

/// The width and height of every panel in pixels.
inline constexpr unsigned int panelSize = 240;

/// The most samples a panel may ask for along one side of a pixel.
inline constexpr unsigned int maxSampling = 4;

/// The surface that a panel draws on, for lengths that GL counts in pixels.
struct Canvas {
    /// How many pixels of the framebuffer make one pixel of the picture, along one side.
    unsigned int sampling;

    /// A length in pixels of the picture as one in pixels of the framebuffer.
    float length(float pixels) const { return pixels * static_cast<float>(sampling); }
};

/// One picture of the gallery.
struct Panel {
    /// Its file's name without the ending; also names it in messages.
    const char* name;

    /// What stands below it in the contact sheet.
    const char* caption;

    /// Each pixel is the mean of `sampling` × `sampling` drawn ones. Lines are drawn up to 10
    /// pixels wide and points up to 60 by any driver, so a panel that shows wide ones asks for 1.
    unsigned int sampling;

    /// Draws into the bound framebuffer, which has depth and stencil and is cleared to the colour
    /// of the paper; x and y run from -1 to 1 over the panel. GL attributes may be left changed.
    void (*draw)(const Canvas& canvas);

    /// What the picture must show.
    std::vector<Probe> probes;
};

/// Panels that belong together.
struct Group {
    /// What stands above them in the contact sheet.
    const char* heading;

    std::vector<Panel> panels;
};

/// All panels, in the order of the contact sheet.
const std::vector<Group>& groups();

/// The same without their groups.
const std::vector<Panel>& panels();

} // namespace gallery
