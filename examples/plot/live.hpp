#pragma once

namespace plot {

/// Shows the signal in a window until it is closed.
/// \throws std::runtime_error with one sentence where there can be no window.
void showLive();

} // namespace plot
