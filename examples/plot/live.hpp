#pragma once

#include <string>

namespace plot {

/// Shows the signal in a window until it is closed.
/// \param font  A file, as loadFonts() takes it.
/// \throws std::runtime_error with one sentence where there can be no window.
void showLive(const std::string& font);

} // namespace plot
