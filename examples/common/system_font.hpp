#pragma once

#include <string>

namespace common {

/// The path of a font file of that name in the folders where systems keep fonts, or in folders
/// below them; empty where there is none.
std::string findSystemFont(const std::string& name);

} // namespace common
