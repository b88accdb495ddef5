#pragma once

#include <offscreen/context.hpp>

namespace offscreen {

/// Loads the library's GL entry points from a context, which is current: through
/// vellis::engine::init, or through gladLoadGLLoader() where the platform has a lookup of its own.
/// \return false where they cannot be loaded.
bool loadEntryPoints(const Context& context);

} // namespace offscreen
