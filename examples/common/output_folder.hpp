#pragma once

#include <filesystem>

namespace common {

/// Makes a folder, and those above it, where it is not there.
/// \throws std::runtime_error with the path and the reason where that fails.
void makeFolder(const std::filesystem::path& folder);

} // namespace common
