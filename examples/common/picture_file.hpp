#pragma once

#include <filesystem>

#include <offscreen/image.hpp>

namespace common {

/// Writes a picture as a PNG file and says where on standard output.
/// \throws std::runtime_error with the path and the reason where that fails.
void writePicture(const std::filesystem::path& path, const offscreen::Image& image);

} // namespace common
