#pragma once

/// \file
/// Pictures in memory and in PNG files.

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace offscreen {

/// A picture: rows from top to bottom, four bytes (red, green, blue, alpha) a pixel.
struct Image {
    unsigned int width = 0;
    unsigned int height = 0;
    std::vector<unsigned char> pixels;

    Image() = default;

    /// A transparent black picture.
    Image(unsigned int imageWidth, unsigned int imageHeight)
        : width(imageWidth),
          height(imageHeight),
          pixels(std::size_t{4} * imageWidth * imageHeight) {}

    /// The four bytes of a pixel, counted from the left and from the top.
    unsigned char* at(unsigned int x, unsigned int y) { return pixels.data() + offset(x, y); }

    /// \copydoc at
    const unsigned char* at(unsigned int x, unsigned int y) const {
        return pixels.data() + offset(x, y);
    }

private:
    std::size_t offset(unsigned int x, unsigned int y) const {
        return std::size_t{4} * (std::size_t{y} * width + x);
    }
};

/// Reads the lower left part of the current framebuffer through the library's GL entry points.
/// Needs vellis::engine::init; leaves all GL state as it was.
Image readPixels(unsigned int width, unsigned int height);

/// Writes a PNG file: whole, or not at all. An older file of that name stays until then.
/// \param error  Where the result is false: one sentence with the path and the reason.
bool writePng(const std::filesystem::path& path, const Image& image, std::string& error);

/// Reads a PNG file of any kind.
/// \param error  Where the result is false: one sentence with the path and the reason.
bool readPng(const std::filesystem::path& path, Image& image, std::string& error);

} // namespace offscreen
